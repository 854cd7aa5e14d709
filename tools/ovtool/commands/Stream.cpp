#include <chrono>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>

#include "camera/FeatureReference.h"
#include "camera/FrameReceiver.h"
#include "camera/FrameTally.h"
#include "camera/Session.h"
#include "camera/StreamAccount.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Json.h"

namespace {

using Clock = std::chrono::steady_clock;

/// From one frame, whose arrival begins the measurement, to the last.
class Measurement {
public:
    explicit Measurement(const OV_FRAME_BUFFER& first) { m_tally.Count(first.nFrameID); }

    void Count(const OV_FRAME_BUFFER& frame) {
        m_tally.Count(frame.nFrameID);
        m_incomplete += IsComplete(frame) ? 0 : 1;
    }
    Clock::duration Elapsed() const { return Clock::now() - m_begin; }
    void End() { m_seconds = std::chrono::duration<double>(Elapsed()).count(); }
    int64_t Incomplete() const { return m_incomplete; }

    /// @param account  the producer's, if it keeps one
    void Print(const std::optional<StreamAccount>& account, bool json) const {
        // The first frame took its time before the measurement.
        const int64_t frames = m_tally.Frames() - 1;
        const double rate = static_cast<double>(frames) / m_seconds;
        const auto lost = m_tally.Lost();
        if (json) {
            Json document{{"seconds", m_seconds},
                          {"frames", frames},
                          {"framesPerSecond", rate},
                          {"lost", lost ? Json(*lost) : Json()},
                          {"incomplete", m_incomplete}};
            if (account) {
                document["account"] = account->ToJson();
            }
            PrintJson(document);
            return;
        }
        std::printf("%lld frames in %.1f s, %.1f a second, %s lost, %lld incomplete\n",
                    static_cast<long long>(frames), m_seconds, rate,
                    lost ? std::to_string(*lost).c_str() : "unknown",
                    static_cast<long long>(m_incomplete));
        if (account) {
            account->Print();
        }
    }

private:
    Clock::time_point m_begin = Clock::now();
    FrameTally m_tally;
    int64_t m_incomplete = 0;
    double m_seconds = 0;
};

/// Takes frames and gives them back at once, until the time is over.
void TakeFramesFor(FrameReceiver& receiver, Interrupts& interrupts, Clock::duration time,
                   Measurement& result) {
    constexpr uint32_t kTimeout = 100;
    while (result.Elapsed() < time && !interrupts.Came()) {
        if (OV_FRAME_BUFFER* const frame = receiver.Take(kTimeout)) {
            result.Count(*frame);
            receiver.GiveBack(frame);
        }
    }
}

void Prepare(OV_DEV_HANDLE camera, const std::vector<Assignment>& settings) {
    for (const auto& [target, value] : settings) {
        SelectedEntries selected(camera, target.choices);
        WriteFeature(camera, target.feature, value.value_or(""));
        selected.PutBack();
    }
}

/// Measures from the first frame on; nothing if an interrupt came before it.
/// @param failure  what ended the measurement before its time
std::optional<Measurement> Measure(FrameReceiver& receiver, Interrupts& interrupts,
                                   const StreamOptions& options,
                                   std::optional<ToolError>& failure) {
    OV_FRAME_BUFFER* const first = receiver.Await(options.timeout);
    if (first == nullptr) {
        return std::nullopt;
    }
    std::optional<Measurement> result(*first);
    receiver.GiveBack(first);
    const auto time =
        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(options.seconds));
    failure = FailureOf([&] { TakeFramesFor(receiver, interrupts, time, *result); });
    result->End();
    return result;
}

/// The account of a camera that is lost may be lost with it.
std::optional<StreamAccount> AccountOf(OV_DEV_HANDLE camera) {
    std::optional<StreamAccount> account;
    const auto failure = FailureOf([&] { account = StreamAccount::Read(camera); });
    if (failure && failure->Code() != ExitCode::Lost) {
        throw *failure;
    }
    return account;
}

}  // namespace

void MeasureStream(const CameraChoice& choice, const StreamOptions& options, bool json) {
    Interrupts interrupts;
    const std::vector<Assignment> settings = ParseAssignments(options.settings);
    const Camera camera(choice, Access::Control);
    Prepare(camera.Handle(), settings);
    std::optional<Measurement> result;
    std::optional<ToolError> failure;
    {
        const Acquisition acquisition(camera.Handle());
        FrameReceiver receiver(camera.Handle(), interrupts);
        result = Measure(receiver, interrupts, options, failure);
    }
    // The account has all frames only when the stream is over.
    if (result) {
        result->Print(AccountOf(camera.Handle()), json);
    }
    if (failure) {
        throw *failure;
    }
    if (result && result->Incomplete() != 0 && !interrupts.Came()) {
        throw ToolError(
            std::to_string(result->Incomplete()) + " frames are incomplete\n" + kCheckLink,
            ExitCode::Incomplete);
    }
    interrupts.Check();
}
