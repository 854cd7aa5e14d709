// The two channels of events that hang on an open camera.

#include "TLClassMain/Device.h"

namespace OVTLClass {

/// A device of which the application hears when it is gone. Undone only by the
/// call that registered the event: others' callbacks stay.
class CDevice::CRegisterDeviceOfflineEventAgency : public CAgency {
public:
    CRegisterDeviceOfflineEventAgency(CDeviceOfflineEvent& event, void* deviceHandle) {
        if (event.RegisterDeviceOfflineEvent(deviceHandle)) {
            Arm([&event] {
                event.StopGetDeviceOfflineEventThread();
                event.UnregisterDeviceOfflineEvent();
            });
        }
    }
};

void* CDevice::DoRegisterDeviceOfflineCallback(const IDeviceOfflineCallback& callback) {
    const CAutoLock lock(m_offlineEventLock);
    CRegisterDeviceOfflineEventAgency registered(m_offlineEvent, m_handle);
    m_offlineEvent.StartGetDeviceOfflineEventThread();
    void* const handle = m_offlineEvent.RegisterDeviceOfflineCallback(callback);
    registered.Commit();
    return handle;
}

void CDevice::DoUnregisterDeviceOfflineCallback(void* handle) {
    m_offlineEvent.UnRegisterDeviceOfflineCallback(handle);
}

void CDevice::DoActiveRemoteDeviceEventThread() {
    const CAutoLock lock(m_remoteEventLock);
    m_remoteEvent.StartGetRemoteDeviceEventThread(m_handle, *m_remoteXml.GetNodeMapRef());
}

}  // namespace OVTLClass
