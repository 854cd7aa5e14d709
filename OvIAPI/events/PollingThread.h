#pragma once
/// The thread that polls the cameras that have feature callbacks.

#include <chrono>
#include <condition_variable>
#include <vector>

#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvLock.h"
#include "TLClassSupport/VxThread.h"
#include "camera/CameraPolling.h"

/// One thread serves all cameras. It runs as long as a camera has both listeners and
/// polled features. AddListener() and RemoveListener() don't wait for the thread: their
/// callers may hold the lock of a node map for which the thread is waiting.
class CPollingThread {
public:
    CPollingThread() = default;
    CPollingThread(const CPollingThread&) = delete;
    CPollingThread& operator=(const CPollingThread&) = delete;

    /// Does nothing for a camera without polled features. Throws if the system can't
    /// start a thread; the listener isn't counted then.
    void AddListener(CCameraPolling& camera);
    void RemoveListener(CCameraPolling& camera);
    /// Removes all listeners and waits until the thread doesn't use the camera any more;
    /// if it was the last camera, until the thread has ended. Must not be called from a
    /// callback of this camera.
    void Detach(CCameraPolling& camera);

private:
    using Clock = std::chrono::steady_clock;

    struct Watched {
        CCameraPolling* camera;
        unsigned listeners;
        Clock::time_point due;
    };

    static void* __OnThread(void* self);
    std::vector<Watched>::iterator __Find(const CCameraPolling& camera);
    void __Drop(std::vector<Watched>::iterator watched);
    /// Waits until a camera is due and returns it. Returns null if there is no camera
    /// left; the thread must end then.
    CCameraPolling* __WaitForNext();
    void __EndPoll();
    void __JoinIfIdle();

    /// Held while the thread is started or joined. It is only joined after it has left
    /// its loop.
    OVTLClass::CLock m_threadLock{OVTLClass::LockRank::PollingThread};
    OVTLClass::CVxThread m_thread;

    OVTLClass::CLock m_lock{OVTLClass::LockRank::Polling};
    std::condition_variable_any m_changed;
    std::vector<Watched> m_cameras;
    const CCameraPolling* m_polled = nullptr;
    bool m_working = false;
};

/// Adds a listener of a camera, and removes it again unless it is committed.
class CListenerAgency : public OVTLClass::CAgency {
public:
    CListenerAgency(CPollingThread& thread, CCameraPolling& camera) {
        Arm([&thread, &camera] { thread.RemoveListener(camera); });
        try {
            thread.AddListener(camera);
        } catch (...) {
            Commit();
            throw;
        }
    }
};
