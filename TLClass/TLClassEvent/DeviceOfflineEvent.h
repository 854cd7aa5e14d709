#pragma once
/// How the application hears that a camera is gone.

#include <condition_variable>
#include <memory>
#include <vector>

#include "TLClassEvent/NativeDeviceOfflineEvent.h"
#include "TLClassSupport/EventCallback.h"
#include "TLClassSupport/OvLock.h"
#include "TLClassSupport/VxThread.h"

namespace OVTLClass {

/// Adds the callbacks, and the thread that waits for the signal.
///
/// The thread calls every callback once, holding no lock, and ends when it has called
/// all. A callback that is registered later starts it again: each one that an
/// application registers learns of the loss, as somebody has to close the camera.
class CDeviceOfflineEvent : public CUnCopyable {
public:
    CDeviceOfflineEvent(const CGenTLLib& lib, const void* camera);
    ~CDeviceOfflineEvent();

    /// No effect while it is registered.
    /// @return whether this call registered it
    bool RegisterDeviceOfflineEvent(void* deviceHandle);
    void UnregisterDeviceOfflineEvent();

    /// No effect without the event, while the thread works, and after it has called
    /// all callbacks. One caller at a time.
    void StartGetDeviceOfflineEventThread();
    /// Ends the thread. What goes wrong is logged.
    void StopGetDeviceOfflineEventThread();

    /// Keeps a clone, whose address as an IEventCallback is the handle. Callbacks
    /// are called in the order of their registration.
    void* RegisterDeviceOfflineCallback(const IDeviceOfflineCallback& callback);
    /// The callback of the handle may be gone: only addresses are compared.
    bool HasDeviceOfflineCallback(const void* handle);
    /// An unknown handle has no effect. Waits for a running callback, except in any
    /// callback: that one may wait for this thread.
    void UnRegisterDeviceOfflineCallback(void* handle);
    /// Waits for a running callback.
    void UnRegisterAllDeviceOfflineCallback();

    /// Whether the signal came. Never waits for a callback.
    bool IsDeviceOffineLine();
    /// The device counts as present again.
    void Clear();
    /// 0 unless the thread runs: the system may reuse the identity of an ended thread.
    pthread_t GetOfflineThreadID() const {
        return m_thread.IsRunning() ? m_thread.GetCurrentObjThreadID() : 0;
    }
    CNativeDeviceOfflineEvent& GetNativeDeviceOfflineEvent() { return m_native; }

private:
    struct Registered {
        std::unique_ptr<IDeviceOfflineCallback> callback;
        bool isCalled = false;

        const void* GetHandle() const { return static_cast<const IEventCallback*>(callback.get()); }
    };
    using Entry = std::shared_ptr<Registered>;

    static void* __OnThreadGetDeviceOfflineEvent(void* self);
    void __RunThread();
    /// Whether the camera is gone; ends with the signal, or without it.
    bool __WaitForOffline();
    void __CallAll();
    /// The next callback to call. Null when there is none, and the thread has ended
    /// its work then.
    Entry __TakeNext();
    void __EndCall();
    std::vector<Entry>::iterator __FindUncalled();
    /// Whether the thread has something to do; it counts as working from here.
    bool __BeginWork();
    void __EndWork();
    bool __IsWorking();

    const void* m_camera;
    CLock m_lock;
    std::vector<Entry> m_callbacks;
    /// The handle of the callback that runs.
    const void* m_running = nullptr;
    std::condition_variable_any m_returned;
    bool m_offline = false;
    /// Waiting for the signal or calling. A registration either finds it so, and the
    /// thread sees the callback, or starts the thread again.
    bool m_working = false;
    CNativeDeviceOfflineEvent m_native;
    CVxThread m_thread;
};

}  // namespace OVTLClass
