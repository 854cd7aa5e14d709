// How an interface renews its list of devices.

#include <algorithm>

#include "TLClassInfo/FeatureAgency.h"
#include "TLClassInfo/InformationAgency.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassMain/Device.h"
#include "TLClassMain/DeviceListCompare.h"
#include "TLClassMain/GcFactory.h"
#include "TLClassMain/Interface.h"

namespace OVTLClass {

/// Holds the special information of all devices for the length of one update.
class CInterface::CResetDeviceInformationAgency : public CAgency {
public:
    explicit CResetDeviceInformationAgency(CInterface& owner) {
        Arm([&owner] { owner.__DoResetAllDeviceSpecialInformation(); });
        owner.__DoAcquireAllDeviceSpecialInformation(*owner.GetFeatureControl());
    }
};

namespace {

/// Lends each record its two further records.
void Lend(std::vector<DEV_INFO>& records, std::vector<COMMON_DEVICE_INFO>& common,
          const std::vector<SPECIAL_INFO*>& special) {
    if (common.size() != records.size() || special.size() != records.size()) {
        OV_RAISE(CUnexpectedError, "The two device information vectors have different size");
    }
    for (size_t i = 0; i < records.size(); ++i) {
        records[i].pCommonInfo = &common[i];
        records[i].pSpecialInfo = special[i];
    }
}

}  // namespace

void CInterface::DoUpdateDeviceList(unsigned timeout, bool& changed) {
    const CAutoLock lock(m_updateLock);
    changed = false;
    if (!m_open) {
        return;
    }
    GenTL::bool8_t producerChanged = 0;
    const int32_t status = GetLib().IFUpdateDeviceList(m_handle, &producerChanged, timeout);
    OV_LOG_IF_FAILED(status, GetLib());
    if (status != 0) {
        return;
    }
    if (producerChanged == 0) {
        __DropClosedLostDevices();
        return;
    }
    OV_RUN_LOGGED([this, &changed] {
        __RenewDeviceList();
        changed = true;
    });
}

void CInterface::__DropClosedLostDevices() {
    __SetLostOpenDevices(CDeviceListCompare::RemoveClosedDevice(DoGetLostOpenDeviceList()));
}

void CInterface::__RenewDeviceList() {
    std::vector<DEV_INFO> records =
        COvInformationAgency::GetAllDeviceInformationOfInterface(GetLib(), m_handle);
    std::vector<COMMON_DEVICE_INFO> common =
        CCommonFeatureAgency::GetAllDeviceFeatureByInterface(*GetFeatureControl());
    const CResetDeviceInformationAgency acquired(*this);
    Lend(records, common, __DoGetAllDeviceSpecialInformation(records.size()));

    DeviceList known = DoGetDeviceList();
    const DeviceList lostBefore = DoGetLostOpenDeviceList();
    known.insert(known.end(), lostBefore.begin(), lostBefore.end());
    const DeviceList current = __CompareDeviceList(records, known);

    const CAutoLock listLock(m_deviceListLock);
    _UpdateChildrenList({current.begin(), current.end()});
    __SetLostOpenDevices(CDeviceListCompare::RemoveClosedDevice(
        CDeviceListCompare::CompareDeviceList(known, current)));
}

CInterface::DeviceList CInterface::__CompareDeviceList(std::vector<DEV_INFO>& records,
                                                       const DeviceList& known) {
    const std::shared_ptr<IInterface> self = GetSelf();
    DeviceList list;
    list.reserve(records.size());
    for (DEV_INFO& record : records) {
        const auto found =
            std::find_if(known.begin(), known.end(), [&record](const auto& candidate) {
                return candidate->DoGetDeviceInfo().id.value == record.id.value;
            });
        if (found != known.end()) {
            (*found)->DoUpdateDeviceInformation(record);
            list.push_back(*found);
        } else {
            list.emplace_back(
                CDeviceFactory::CreateDevice(GetLibPointer(), self, m_handle, record));
        }
    }
    return list;
}

}  // namespace OVTLClass
