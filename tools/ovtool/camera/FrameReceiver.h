#pragma once
/// The frames of a running acquisition, and what became of those that didn't come.

#include <atomic>
#include <cstdint>

#include "OvIAPI.h"
#include "support/Error.h"
#include "support/Interrupts.h"

/// Hears of the loss of a camera for the life of the object.
class LossWatch {
public:
    explicit LossWatch(OV_DEV_HANDLE camera);
    ~LossWatch();
    LossWatch(const LossWatch&) = delete;
    LossWatch& operator=(const LossWatch&) = delete;

    bool IsLost() const { return m_isLost; }

private:
    OV_DEV_HANDLE m_camera;
    OV_EVENT_CALLBACK_HANDLE m_callback = nullptr;
    std::atomic<bool> m_isLost = false;
};

/// Lends frames. A wait ends with the camera and with an interrupt, whatever its time-out.
class FrameReceiver {
public:
    FrameReceiver(OV_DEV_HANDLE camera, Interrupts& interrupts)
        : m_camera(camera), m_interrupts(interrupts), m_loss(camera) {}

    /// The next frame; null when none came in time or an interrupt came. Raises the loss of
    /// the camera, but after the frames that came before it.
    /// @param timeout  in milliseconds
    OV_FRAME_BUFFER* Take(uint32_t timeout);
    /// As above, but raises a frame that doesn't come in time; null for an interrupt alone.
    OV_FRAME_BUFFER* Await(uint32_t timeout);
    void GiveBack(OV_FRAME_BUFFER* frame);

private:
    OV_FRAME_BUFFER* TryTake(uint32_t timeout);
    [[noreturn]] void FailToGetOne(uint32_t timeout) const;

    OV_DEV_HANDLE m_camera;
    Interrupts& m_interrupts;
    LossWatch m_loss;
};

/// What to try when frames come without some of their data.
constexpr const char* kCheckLink =
    "Check the cable, the packet size and other traffic on the link.";

/// Whether the frame has all its data.
bool IsComplete(const OV_FRAME_BUFFER& frame);
/// The failure of a command that needs all data of that frame.
ToolError IncompleteFrame(uint64_t id);
