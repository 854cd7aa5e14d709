#include "TLClassInterface/GevInterface.h"

#include "TLClassDevice/DeviceFactory.h"
#include "TLClassInfo/FeatureAgency.h"
#include "TLClassModule/DeviceAddress.h"
#include "TLClassModule/IDevice.h"

namespace OVTLClass {

void CGevInterface::DoUpdateInterfaceInformation(const IF_INFO& info) {
    CInterface::DoUpdateInterfaceInformation(info);
    if (const auto* const gevInfo = dynamic_cast<const GEV_IF_INFO*>(info.pSpecialInfo)) {
        const CAutoLock lock(m_gevInfoLock);
        // Systems needn't know the addresses that the interface itself reported.
        m_gevInfo.Renew(*gevInfo);
    }
}

std::optional<GEV_IF_INFO> CGevInterface::DoGetGevInterfaceInfo() {
    const CAutoLock lock(m_gevInfoLock);
    return m_gevInfo;
}

void CGevInterface::__DoAcquireInterfaceSpecialInformation(const IFeatureControl& control) {
    const GEV_IF_INFO info = CGevFeatureAgency::GetInterfaceFeatureBySelf(control);
    const CAutoLock lock(m_gevInfoLock);
    m_gevInfo = info;
}

void CGevInterface::__DoResetInterfaceSpecialInformation() {
    const CAutoLock lock(m_gevInfoLock);
    m_gevInfo = {};
}

void CGevInterface::__DoAcquireAllDeviceSpecialInformation(const IFeatureControl& control,
                                                           size_t count) {
    std::vector<GEV_DEV_INFO> infos =
        CGevFeatureAgency::GetAllDeviceFeatureByInterface(control, count);
    m_gevDeviceInfos.swap(infos);
}

void CGevInterface::__DoResetAllDeviceSpecialInformation() {
    m_gevDeviceInfos.clear();
}

std::vector<SPECIAL_INFO*> CGevInterface::__DoGetAllDeviceSpecialInformation(size_t /*count*/) {
    std::vector<SPECIAL_INFO*> pointers;
    pointers.reserve(m_gevDeviceInfos.size());
    for (GEV_DEV_INFO& info : m_gevDeviceInfos) {
        pointers.push_back(&info);
    }
    return pointers;
}

std::shared_ptr<IDevice> CGevInterface::DoCreateDeviceByIPAddress(int64_t ip) {
    // Held over search and creation, so that two threads don't make one camera twice.
    const CAutoLock lock(m_createLock);
    const std::string id = IdOfAddress(ip);
    if (auto found = __SearchDeviceByIP(ip, id)) {
        return found;
    }
    // Blank: nothing is known of a camera that no search has found.
    COMMON_DEVICE_INFO common;
    GEV_DEV_INFO special;
    DEV_INFO info;
    info.id = {id, true};
    info.tlType = {GenTL::TLTYPE_GEV, true};
    info.pCommonInfo = &common;
    info.pSpecialInfo = &special;
    std::shared_ptr<IDevice> device(
        CDeviceFactory::CreateDevice(GetLibPointer(), GetSelf(), GetHandle(), info));
    _AddChild(device);
    return device;
}

std::shared_ptr<IDevice> CGevInterface::__SearchDeviceByIP(int64_t ip, const std::string& id) {
    for (const auto& device : DoGetDeviceList()) {
        const auto addresses = device->DoGetGevDeviceInfo();
        // A device made here has no address record; its ID has the address.
        if (addresses &&
            (addresses->ipAddress.value == ip || device->DoGetDeviceInfo().id.value == id)) {
            return device;
        }
    }
    return nullptr;
}

}  // namespace OVTLClass
