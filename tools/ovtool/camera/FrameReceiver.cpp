#include "camera/FrameReceiver.h"

#include <algorithm>
#include <chrono>
#include <string>

#include "camera/Features.h"
#include "support/Error.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// How long a loss or an interrupt may go unnoticed.
constexpr milliseconds kUnnoticed(50);

bool WaitsForTrigger(OV_DEV_HANDLE camera) {
    const auto mode = TryReadFeature(camera, RowOf(OV_FEATURE_TriggerMode));
    return mode && ToText(*mode) == "On";
}

}  // namespace

LossWatch::LossWatch(OV_DEV_HANDLE camera) : m_camera(camera) {
    Check(OVRegisterDeviceOfflineCallback(
              camera, &m_isLost, [](void* lost) { *static_cast<std::atomic<bool>*>(lost) = true; },
              &m_callback),
          "hear of a loss of the camera");
}

LossWatch::~LossWatch() {
    OVUnregisterDeviceOfflineCallback(m_camera, m_callback);
}

OV_FRAME_BUFFER* FrameReceiver::TryTake(uint32_t timeout) {
    OV_FRAME_BUFFER* frame = nullptr;
    const OV_STATUS status = OVDQBuf(m_camera, &frame, timeout);
    if (status == OV_STATUS_SUCCESS) {
        return frame;
    }
    // The fetch may hear of it before the callback does.
    if (status == OV_STATUS_OFFLINE) {
        throw LossOfCamera();
    }
    if (status != OV_STATUS_TIMEOUT && !m_loss.IsLost()) {
        Check(status, "get a frame");
    }
    return nullptr;
}

OV_FRAME_BUFFER* FrameReceiver::Take(uint32_t timeout) {
    const auto end = Clock::now() + milliseconds(timeout);
    while (!m_interrupts.Came()) {
        const bool wasLost = m_loss.IsLost();
        const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
        const milliseconds wait =
            wasLost ? milliseconds(0) : std::clamp(left, milliseconds(0), kUnnoticed);
        if (OV_FRAME_BUFFER* const frame = TryTake(static_cast<uint32_t>(wait.count()))) {
            return frame;
        }
        if (wasLost) {
            throw LossOfCamera();
        }
        if (Clock::now() >= end && !m_loss.IsLost()) {
            return nullptr;
        }
    }
    return nullptr;
}

OV_FRAME_BUFFER* FrameReceiver::Await(uint32_t timeout) {
    OV_FRAME_BUFFER* const frame = Take(timeout);
    if (frame == nullptr && !m_interrupts.Came()) {
        FailToGetOne(timeout);
    }
    return frame;
}

void FrameReceiver::FailToGetOne(uint32_t timeout) const {
    const char* const hint =
        WaitsForTrigger(m_camera)
            ? "It waits for a trigger: send one, or let frames flow by: ovtool set TriggerMode Off"
            : "Look at the exposure time, the frame rate and the link: ovtool features";
    throw ToolError("the camera sent no frame for " + std::to_string(timeout) + " ms\n" + hint,
                    ExitCode::TimedOut);
}

void FrameReceiver::GiveBack(OV_FRAME_BUFFER* frame) {
    const OV_STATUS status = OVQBuf(m_camera, frame);
    // What can't be given back to a camera that is gone is freed with the acquisition.
    if (!m_loss.IsLost()) {
        Check(status, "give a frame back");
    }
}

bool IsComplete(const OV_FRAME_BUFFER& frame) {
    return frame.nStatus == OV_FRAME_STATUS_SUCCESS && frame.nImgSize > 0;
}

ToolError IncompleteFrame(uint64_t id) {
    return ToolError("frame " + std::to_string(id) + " is incomplete\n" + kCheckLink,
                     ExitCode::Incomplete);
}
