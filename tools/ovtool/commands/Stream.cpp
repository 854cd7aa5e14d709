#include <chrono>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "camera/Features.h"
#include "camera/Session.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Json.h"

namespace {

using Clock = std::chrono::steady_clock;

/// A counter of the stream, or nothing when its producer has none.
using Counter = std::optional<int64_t>;

struct Counters {
    Counter delivered;
    Counter lost;
    Counter incomplete;
};

Counter ReadCounter(OV_DEV_HANDLE camera, OV_FEATURE_ID feature) {
    const auto value = TryReadFeature(camera, feature);
    return value ? Counter(std::get<int64_t>(*value)) : std::nullopt;
}

Counters ReadCounters(OV_DEV_HANDLE camera) {
    return {ReadCounter(camera, OV_FEATURE_StreamDeliveredFrameCount),
            ReadCounter(camera, OV_FEATURE_StreamLostFrameCount),
            ReadCounter(camera, OV_FEATURE_StreamIncompleteFrameCount)};
}

Counter Difference(const Counter& later, const Counter& earlier) {
    return later && earlier ? Counter(*later - *earlier) : std::nullopt;
}

/// Takes frames and gives them back at once; tells how many there were.
int64_t TakeFrames(OV_DEV_HANDLE camera, Clock::time_point end) {
    constexpr uint32_t kTimeout = 100;
    int64_t count = 0;
    while (Clock::now() < end) {
        OV_FRAME_BUFFER* frame = nullptr;
        const OV_STATUS status = OVDQBuf(camera, &frame, kTimeout);
        if (status != OV_STATUS_TIMEOUT) {
            Check(status, "get a frame");
            Check(OVQBuf(camera, frame), "give a frame back");
            ++count;
        }
    }
    return count;
}

Json ToJson(const Counter& counter) {
    return counter ? Json(*counter) : Json();
}

std::string ToText(const Counter& counter) {
    return counter ? std::to_string(*counter) : "unknown";
}

struct Measurement {
    double seconds;
    int64_t frames;
    Counter lost;
    Counter incomplete;
};

void Print(const Measurement& result, bool json) {
    const double rate = static_cast<double>(result.frames) / result.seconds;
    if (json) {
        PrintJson({{"seconds", result.seconds},
                   {"frames", result.frames},
                   {"framesPerSecond", rate},
                   {"lost", ToJson(result.lost)},
                   {"incomplete", ToJson(result.incomplete)}});
        return;
    }
    std::printf("%lld frames in %.1f s, %.1f a second, %s lost, %s incomplete\n",
                static_cast<long long>(result.frames), result.seconds, rate,
                ToText(result.lost).c_str(), ToText(result.incomplete).c_str());
}

Measurement Measure(OV_DEV_HANDLE camera, double seconds) {
    const Counters before = ReadCounters(camera);
    const auto begin = Clock::now();
    const int64_t taken = TakeFrames(camera, begin + std::chrono::duration_cast<Clock::duration>(
                                                         std::chrono::duration<double>(seconds)));
    const Counters after = ReadCounters(camera);
    const std::chrono::duration<double> elapsed = Clock::now() - begin;
    return {elapsed.count(), Difference(after.delivered, before.delivered).value_or(taken),
            Difference(after.lost, before.lost), Difference(after.incomplete, before.incomplete)};
}

}  // namespace

void MeasureStream(const CameraChoice& choice, double seconds, bool json) {
    const Camera camera(choice);
    const Acquisition acquisition(camera.Handle());
    Print(Measure(camera.Handle(), seconds), json);
}
