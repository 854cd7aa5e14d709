#pragma once
/// How the application hears that a camera is gone.

#include <memory>
#include <vector>

#include "TLClassEvent/EventCallback.h"
#include "TLClassLoadTL/GenTLLib.h"
#include "TLClassLoadTL/OvLock.h"
#include "TLClassLoadTL/VxThread.h"
#include "TLClassMain/Agency.h"

namespace OVTLClass {

class CGCRegisterEventAgency;

/// The GenTL event that a producer signals once its device is gone.
class CNativeDeviceOfflineEvent : public CUnCopyable {
public:
    explicit CNativeDeviceOfflineEvent(const CGenTLLib& lib);
    ~CNativeDeviceOfflineEvent();

    /// A producer without that event is no failure: it is logged, and the event
    /// stays unregistered.
    void RegisterDeviceOfflineEvent(void* deviceHandle);
    void UnRegisterDeviceOfflineEvent();
    /// Waits for the signal, without end.
    /// @return the producer's status: 0 for the signal
    int32_t GetOfflineEvent() const;
    /// Ends the wait. False, and a line in the log, when the producer refuses.
    bool EventKill() const;
    bool IsRegistered() const { return m_registration != nullptr; }

private:
    const CGenTLLib& m_lib;
    /// Read by the waiting thread, which is started after it was stored.
    void* m_event = nullptr;
    std::unique_ptr<CGCRegisterEventAgency> m_registration;
};

/// Adds the callbacks, and the thread that waits for the signal.
///
/// The thread holds the lock of the callbacks while it calls them, so taking one
/// away waits for a running one. It runs once: whoever is told that the camera
/// is gone has to close it.
class CDeviceOfflineEvent : public CUnCopyable {
public:
    explicit CDeviceOfflineEvent(const CGenTLLib& lib) : m_native(lib) {}
    ~CDeviceOfflineEvent();

    /// Nothing while it is registered.
    /// @return whether this call registered it
    bool RegisterDeviceOfflineEvent(void* deviceHandle);
    void UnregisterDeviceOfflineEvent();

    /// Nothing without the event, and nothing when it was started before, be the
    /// thread still there or not.
    void StartGetDeviceOfflineEventThread();
    /// Ends the thread. What goes wrong is logged.
    void StopGetDeviceOfflineEventThread();

    /// Keeps a clone, whose address as an IEventCallback is the handle. Callbacks
    /// are called in the order of their registration.
    void* RegisterDeviceOfflineCallback(const IDeviceOfflineCallback& callback);
    /// Nothing for an unknown handle.
    void UnRegisterDeviceOfflineCallback(void* handle);
    void UnRegisterAllDeviceOfflineCallback();

    /// Whether the signal came. Never waits for a callback.
    bool IsDeviceOffineLine();
    /// The device counts as present again.
    void Clear() { __SetDeviceOfflineStatus(false); }
    /// 0 unless the thread runs: an ended thread's identity may be given anew.
    pthread_t GetOfflineThreadID() const {
        return m_thread.IsRunning() ? m_thread.GetCurrentObjThreadID() : 0;
    }
    CNativeDeviceOfflineEvent& GetNativeDeviceOfflineEvent() { return m_native; }

private:
    static void* __OnThreadGetDeviceOfflineEvent(void* self);
    void __WaitForOffline();
    void __CallAll();
    void __SetDeviceOfflineStatus(bool offline);

    std::vector<std::unique_ptr<IDeviceOfflineCallback>> m_callbacks;
    CLock m_callbackLock;
    bool m_offline = false;
    CLock m_offlineLock;
    bool m_started = false;
    CNativeDeviceOfflineEvent m_native;
    CVxThread m_thread;
};

}  // namespace OVTLClass
