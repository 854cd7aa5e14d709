#pragma once
/// The thread that polls the cameras whose features somebody listens to.

#include <chrono>
#include <condition_variable>
#include <vector>

#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvLock.h"
#include "TLClassSupport/VxThread.h"
#include "camera/CameraPolling.h"

/// One thread for all cameras, as long as one of them has listeners and polled
/// features. Whoever adds or removes a listener may hold the lock of a map, for
/// which the thread may wait; so these never wait for the thread.
class CPollingThread {
public:
    CPollingThread() = default;
    CPollingThread(const CPollingThread&) = delete;
    CPollingThread& operator=(const CPollingThread&) = delete;

    /// Nothing for a camera without polled features. Raises when the system gives
    /// no thread; the listener isn't counted then.
    void AddListener(CCameraPolling& camera);
    void RemoveListener(CCameraPolling& camera);
    /// Removes all listeners, and waits until the thread is off the camera, and for
    /// its end if it was the last one. Not from a callback of this camera.
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
    /// The camera that is due, after waiting for it. Null when there is none left, and
    /// the thread has ended its work then.
    CCameraPolling* __WaitForNext();
    void __EndPoll();
    void __JoinIfIdle();

    /// Held while the thread is started or joined, which has ended its work then.
    OVTLClass::CLock m_threadLock{OVTLClass::LockRank::PollingThread};
    OVTLClass::CVxThread m_thread;

    OVTLClass::CLock m_lock{OVTLClass::LockRank::Polling};
    std::condition_variable_any m_changed;
    std::vector<Watched> m_cameras;
    const CCameraPolling* m_polled = nullptr;
    bool m_working = false;
};

/// One listener of a camera, unless it is committed.
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
