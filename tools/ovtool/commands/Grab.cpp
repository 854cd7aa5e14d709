#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "camera/Session.h"
#include "commands/Commands.h"
#include "pipeline/Picture.h"
#include "pipeline/Pipeline.h"
#include "pipeline/PixelFormat.h"
#include "support/Error.h"
#include "support/Json.h"

namespace {

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

const PixelFormat& FormatOf(const RawFrame& frame) {
    const auto code = static_cast<uint32_t>(frame.pixelFormat);
    if (const PixelFormat* const format = FindPixelFormat(code)) {
        return *format;
    }
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "can't show pixel format 0x%08X; save raw files", code);
    throw ToolError(text.data());
}

/// The frame as files; gives their paths.
std::vector<std::string> Save(const RawFrame& frame, const GrabOptions& options, uint32_t number) {
    std::vector<std::string> paths;
    if (options.png) {
        paths.push_back(PathOf(options, number, "png"));
        WritePng(ProcessFrame(frame, FormatOf(frame), options.pipeline), paths.back());
    }
    if (options.raw) {
        paths.push_back(PathOf(options, number, "raw"));
        WriteBytes(frame.bytes, paths.back());
    }
    return paths;
}

Json Describe(const RawFrame& frame, uint64_t id, const std::vector<std::string>& paths) {
    return {{"id", id},
            {"width", frame.width},
            {"height", frame.height},
            {"pixelFormat", static_cast<uint32_t>(frame.pixelFormat)},
            {"bytes", frame.bytes.size()},
            {"files", paths}};
}

void Print(const RawFrame& frame, uint64_t id, const std::vector<std::string>& paths) {
    std::printf("frame %llu: %dx%d, %zu bytes", static_cast<unsigned long long>(id), frame.width,
                frame.height, frame.bytes.size());
    for (const std::string& path : paths) {
        std::printf(" -> %s", path.c_str());
    }
    std::printf("\n");
}

}  // namespace

void Grab(const CameraChoice& choice, const GrabOptions& options, bool json) {
    const Camera camera(choice);
    const Acquisition acquisition(camera.Handle());
    Json frames = Json::array();
    for (uint32_t number = 1; number <= options.count; ++number) {
        uint64_t id = 0;
        const RawFrame frame = FetchFrame(camera.Handle(), options.timeout, id);
        const std::vector<std::string> paths = Save(frame, options, number);
        if (json) {
            frames.push_back(Describe(frame, id, paths));
        } else {
            Print(frame, id, paths);
        }
    }
    if (json) {
        PrintJson({{"frames", frames}});
    }
}
