#pragma once
/// The GenTL event that a producer signals once its device is gone.

#include <memory>

#include "TLClassLoadTL/GenTLLib.h"
#include "TLClassSupport/UnCopyable.h"

namespace OVTLClass {

class CGCRegisterEventAgency;

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

}  // namespace OVTLClass
