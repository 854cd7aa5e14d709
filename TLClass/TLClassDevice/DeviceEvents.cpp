// The two channels of events that hang on an open camera.

#include "TLClassDevice/Device.h"
#include "TLClassSupport/Agency.h"

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
    // Kept before the thread starts, which calls what it finds and ends.
    void* const handle = m_offlineEvent.RegisterDeviceOfflineCallback(callback);
    CRollback kept([this, handle] { m_offlineEvent.UnRegisterDeviceOfflineCallback(handle); });
    m_offlineEvent.StartGetDeviceOfflineEventThread();
    kept.Commit();
    registered.Commit();
    return handle;
}

void CDevice::DoUnregisterDeviceOfflineCallback(void* handle) {
    m_offlineEvent.UnRegisterDeviceOfflineCallback(handle);
}

void CDevice::DoActiveRemoteDeviceEventThread() {
    GenApi_3_0_ORVANE::CNodeMapRef& map = *m_remoteXml.GetNodeMapRef();
    // One start at a time. The start takes this lock anyway, and a feature callback
    // holds it: under another lock the two would wait for one another.
    const GenICam_3_0_ORVANE::AutoLock lock(map.GetMap()->GetLock());
    m_remoteEvent.StartGetRemoteDeviceEventThread(m_handle, map);
}

}  // namespace OVTLClass
