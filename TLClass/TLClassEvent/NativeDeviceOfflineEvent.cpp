#include "Base/GCException.h"
#include "TLClassEvent/DeviceOfflineEvent.h"
#include "TLClassEvent/RegisterEventAgency.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassLoadTL/OvLog.h"

namespace OVTLClass {

CNativeDeviceOfflineEvent::CNativeDeviceOfflineEvent(const CGenTLLib& lib) : m_lib(lib) {}

CNativeDeviceOfflineEvent::~CNativeDeviceOfflineEvent() = default;

void CNativeDeviceOfflineEvent::RegisterDeviceOfflineEvent(void* deviceHandle) {
    try {
        m_registration = std::make_unique<CGCRegisterEventAgency>(m_lib, deviceHandle,
                                                                  GenTL::EVENT_DEVICE_OFFLINE);
        m_event = m_registration->GetEventHandle();
    } catch (const CNotImplementedError& error) {
        OV_LOG(error.what());
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        OV_LOG(error.what());
    }
}

void CNativeDeviceOfflineEvent::UnRegisterDeviceOfflineEvent() {
    if (!IsRegistered()) {
        return;
    }
    EventKill();
    m_registration.reset();
}

int32_t CNativeDeviceOfflineEvent::GetOfflineEvent() const {
    size_t size = 0;
    const int32_t status = m_lib.EventGetData(m_event, nullptr, &size, GenTL::GENTL_INFINITE);
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
