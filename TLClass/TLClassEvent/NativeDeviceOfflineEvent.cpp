#include "TLClassEvent/NativeDeviceOfflineEvent.h"

#include "TLClassEvent/RegisterEventAgency.h"

namespace OVTLClass {

CNativeDeviceOfflineEvent::CNativeDeviceOfflineEvent(const CGenTLLib& lib) : m_lib(lib) {}

CNativeDeviceOfflineEvent::~CNativeDeviceOfflineEvent() = default;

void CNativeDeviceOfflineEvent::RegisterDeviceOfflineEvent(void* deviceHandle) {
    m_registration = OV_REGISTER_OFFERED_EVENT(m_lib, deviceHandle, GenTL::EVENT_DEVICE_OFFLINE);
    m_event = IsRegistered() ? m_registration->GetEventHandle() : nullptr;
}

void CNativeDeviceOfflineEvent::UnRegisterDeviceOfflineEvent() {
    if (!IsRegistered()) {
        return;
    }
    // Some producers end a wait only by a kill.
    EventKill();
    m_registration.reset();
}

int32_t CNativeDeviceOfflineEvent::GetOfflineEvent() const {
    size_t size = 0;
    const int32_t status = m_lib.EventGetData(m_event, nullptr, &size, GenTL::GENTL_INFINITE);
    // An abort is the end that a close asks for.
    if (status != GenTL::GC_ERR_ABORT) {
        OV_LOG_IF_FAILED(status, m_lib);
    }
    return status;
}

bool CNativeDeviceOfflineEvent::EventKill() const {
    const int32_t status = m_lib.EventKill(m_event);
    OV_LOG_IF_FAILED(status, m_lib);
    return status == 0;
}

}  // namespace OVTLClass
