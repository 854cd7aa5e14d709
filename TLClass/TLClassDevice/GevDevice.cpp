#include "TLClassDevice/GevDevice.h"

namespace OVTLClass {

CGevDevice::CGevDevice(std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<IInterface> owner,
                       void* interfaceHandle, const DEV_INFO& info, const GEV_DEV_INFO& gevInfo)
    : CDevice(std::move(lib), std::move(owner), interfaceHandle, info), m_gevInfo(gevInfo) {}

std::optional<GEV_DEV_INFO> CGevDevice::DoGetGevDeviceInfo() {
    const CAutoLock lock(m_gevInfoLock);
    return m_gevInfo;
}

void CGevDevice::DoUpdateDeviceInformation(const DEV_INFO& info) {
    CDevice::DoUpdateDeviceInformation(info);
    // A record of a search by another transport's interface has no addresses.
    if (const auto* const gevInfo = dynamic_cast<const GEV_DEV_INFO*>(info.pSpecialInfo)) {
        const CAutoLock lock(m_gevInfoLock);
        m_gevInfo.Renew(*gevInfo);
    }
}

}  // namespace OVTLClass
