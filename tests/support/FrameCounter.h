#pragma once
/// Counts frames that a capture callback receives.

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "OvIAPI.h"

/// Counts the frames of an acquisition, and waits for them.
class FrameCounter {
public:
    static void OnFrame(OV_FRAME_CALLBACK_PARAM* frame) {
        static_cast<FrameCounter*>(frame->pUserParam)->Count();
    }

    /// Waits until that many frames have arrived in total.
    void WaitFor(uint64_t frames) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_count >= frames; });
    }

    /// Waits for that many frames from now on.
    void WaitForMore(uint64_t frames) { WaitFor(GetCount() + frames); }

    uint64_t GetCount() {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }

private:
    void Count() {
        const std::lock_guard lock(m_mutex);
        ++m_count;
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    uint64_t m_count = 0;
};
