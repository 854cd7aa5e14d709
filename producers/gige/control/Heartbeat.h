#pragma once
/// Keeps control of a camera, and notices when it is gone.

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "gige/control/CameraMemory.h"

namespace OvGige {

/// Reads the camera's privilege on a thread of its own, three times within the camera's
/// heartbeat time-out, from its construction to its end. The time-out is read anew each time.
class Heartbeat {
public:
    /// @param onLoss  called once, on the heartbeat's thread, when the camera hasn't answered
    ///                for its time-out or says that it has another owner or none. It must not
    ///                end the heartbeat
    /// @param isOwner whether control was taken; without it, only answers are looked for
    Heartbeat(CameraMemory& camera, bool isOwner, std::function<void(const std::string&)> onLoss);
    /// Waits for the read that runs.
    ~Heartbeat();
    Heartbeat(const Heartbeat&) = delete;
    Heartbeat& operator=(const Heartbeat&) = delete;

    /// Reads at once: after a shorter time-out was set, the next read in turn may be too late.
    void BeatNow();

private:
    void Run();
    /// True as long as the camera is there.
    bool Beat();
    bool Refused(const Refusal& refusal);
    bool Unanswered();
    bool Lose(const std::string& why);
    std::chrono::milliseconds Silence() const;
    std::chrono::milliseconds Interval() const;
    /// @param begin  of the beat before
    bool WaitForNext(Clock::time_point begin);

    CameraMemory& m_camera;
    const bool m_isOwner;
    const std::function<void(const std::string&)> m_onLoss;
    std::chrono::milliseconds m_timeout;
    const Clock::time_point m_begin = Clock::now();
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_isEnding = false;
    bool m_isDue = false;
    std::thread m_thread;
};

}  // namespace OvGige
