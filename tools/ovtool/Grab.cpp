#include "Grab.h"

#include <array>
#include <cstdio>

#include "Error.h"
#include "Picture.h"

namespace {

/// An acquisition for the life of the object.
class Acquisition {
public:
    explicit Acquisition(OV_DEV_HANDLE camera) : m_camera(camera) {
        Check(OVStreamOn(camera), "start the acquisition");
    }
    ~Acquisition() { OVStreamOff(m_camera); }
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

private:
    OV_DEV_HANDLE m_camera;
};

RawFrame FetchFrame(OV_DEV_HANDLE camera, uint32_t timeout, uint64_t& frameId) {
    OV_FRAME_BUFFER* frame = nullptr;
    Check(OVDQBuf(camera, &frame, timeout), "get a frame");
    frameId = frame->nFrameID;
    RawFrame raw;
    raw.width = frame->nWidth;
    raw.height = frame->nHeight;
    raw.pixelFormat = frame->nPixelFormat;
    const bool complete = frame->nStatus == OV_FRAME_STATUS_SUCCESS && frame->nImgSize > 0;
    if (complete) {
        const auto* const begin = static_cast<const uint8_t*>(frame->pImgBuf);
        raw.bytes.assign(begin, begin + frame->nImgSize);
    }
    Check(OVQBuf(camera, frame), "give a frame back");
    if (!complete) {
        throw ToolError("frame " + std::to_string(frameId) + " is incomplete");
    }
    return raw;
}

std::string PathOf(const GrabOptions& options, uint32_t number, const char* extension) {
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "/frame-%04u.%s", number, extension);
    return options.folder + name.data();
}

}  // namespace

void Grab(const CameraChoice& choice, const GrabOptions& options) {
    const Camera camera(choice);
    const Acquisition acquisition(camera.Handle());
    for (uint32_t number = 1; number <= options.count; ++number) {
        uint64_t frameId = 0;
        const RawFrame frame = FetchFrame(camera.Handle(), options.timeout, frameId);
        std::printf("frame %llu: %dx%d, %zu bytes", static_cast<unsigned long long>(frameId),
                    frame.width, frame.height, frame.bytes.size());
        if (options.png) {
            const std::string path = PathOf(options, number, "png");
            WritePng(MakePicture(frame), path);
            std::printf(" -> %s", path.c_str());
        }
        if (options.raw) {
            const std::string path = PathOf(options, number, "raw");
            WriteRaw(frame, path);
            std::printf(" -> %s", path.c_str());
        }
        std::printf("\n");
    }
}
