#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>

#include "camera/FrameReceiver.h"
#include "camera/FrameTally.h"
#include "camera/Session.h"
#include "commands/Commands.h"
#include "commands/FrameWriter.h"
#include "pipeline/Picture.h"
#include "pipeline/Pipeline.h"
#include "pipeline/PixelFormat.h"
#include "support/Error.h"
#include "support/Interrupts.h"
#include "support/Json.h"
#include "support/Output.h"

namespace {

/// Nothing when an interrupt came.
std::optional<TakenFrame> FetchFrame(FrameReceiver& receiver, uint32_t timeout, FrameTally& tally) {
    OV_FRAME_BUFFER* const frame = receiver.Await(timeout);
    if (frame == nullptr) {
        return std::nullopt;
    }
    tally.Count(frame->nFrameID);
    TakenFrame taken{frame->nFrameID, {frame->nWidth, frame->nHeight, frame->nPixelFormat, {}}};
    const bool complete = IsComplete(*frame);
    if (complete) {
        const auto* const begin = static_cast<const uint8_t*>(frame->pImgBuf);
        taken.raw.bytes.assign(begin, begin + frame->nImgSize);
    }
    receiver.GiveBack(frame);
    if (!complete) {
        throw IncompleteFrame(taken.id);
    }
    return taken;
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

/// The frame as files; returns their paths.
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

Json Describe(const TakenFrame& frame, const std::vector<std::string>& paths) {
    return {{"id", frame.id},
            {"width", frame.raw.width},
            {"height", frame.raw.height},
            {"pixelFormat", static_cast<uint32_t>(frame.raw.pixelFormat)},
            {"bytes", frame.raw.bytes.size()},
            {"files", paths}};
}

/// What is told of the frames, from the writer's thread.
class GrabReport {
public:
    explicit GrabReport(bool json) : m_json(json) {}

    void Tell(const TakenFrame& frame, const std::vector<std::string>& paths) {
        if (m_json) {
            m_frames.push_back(Describe(frame, paths));
        } else {
            Print(frame, paths);
        }
    }
    /// Once the writer has ended.
    void End(const std::optional<int64_t>& lost) const {
        if (m_json) {
            PrintJson({{"frames", m_frames}, {"lost", lost ? Json(*lost) : Json()}});
        } else {
            std::printf("%zu frame%s, %s lost\n", m_count, m_count == 1 ? "" : "s",
                        lost ? std::to_string(*lost).c_str() : "unknown");
        }
    }

private:
    void Print(const TakenFrame& frame, const std::vector<std::string>& paths) {
        std::printf("frame %llu: %dx%d, %zu bytes", static_cast<unsigned long long>(frame.id),
                    frame.raw.width, frame.raw.height, frame.raw.bytes.size());
        for (const std::string& path : paths) {
            std::printf(" -> %s", path.c_str());
        }
        std::printf("\n");
        FlushOutput();
        ++m_count;
    }

    const bool m_json;
    size_t m_count = 0;
    Json m_frames = Json::array();
};

void TakeFramesToWrite(OV_DEV_HANDLE camera, Interrupts& interrupts, const GrabOptions& options,
                       FrameWriter& writer, FrameTally& tally) {
    const Acquisition acquisition(camera);
    FrameReceiver receiver(camera, interrupts);
    for (uint32_t number = 1; number <= options.count; ++number) {
        std::optional<TakenFrame> frame = FetchFrame(receiver, options.timeout, tally);
        if (!frame || !writer.Put(*std::move(frame))) {
            return;
        }
    }
}

}  // namespace

void Grab(const CameraChoice& choice, const GrabOptions& options, bool json) {
    Interrupts interrupts;
    const Camera camera(choice, Access::Control);
    GrabReport report(json);
    uint32_t number = 0;
    FrameWriter writer(
        options.memory ? *options.memory << 20 : MemoryForFrames(),
        [&](const TakenFrame& frame) { report.Tell(frame, Save(frame.raw, options, ++number)); });
    FrameTally tally;
    // Whatever ends the frames, those that came are written first, and told of.
    const auto notTaken =
        FailureOf([&] { TakeFramesToWrite(camera.Handle(), interrupts, options, writer, tally); });
    const auto notWritten = FailureOf([&] { writer.Finish(); });
    report.End(tally.Lost());
    for (const auto& failure : {notWritten, notTaken}) {
        if (failure) {
            throw *failure;
        }
    }
    interrupts.Check();
}
