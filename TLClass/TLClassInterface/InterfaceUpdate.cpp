// How an interface renews its list of devices.

#include <algorithm>

#include "GenApi/NodeMapRef.h"
#include "TLClassDevice/DeviceFactory.h"
#include "TLClassInfo/FeatureAgency.h"
#include "TLClassInfo/InformationAgency.h"
#include "TLClassInterface/DeviceListCompare.h"
#include "TLClassInterface/Interface.h"
#include "TLClassModule/ChildList.h"
#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvException.h"

namespace OVTLClass {

/// Holds the special information of all devices for the length of one update.
class CInterface::CResetDeviceInformationAgency : public CAgency {
public:
    CResetDeviceInformationAgency(CInterface& owner, size_t count) {
        Arm([&owner] { owner.__DoResetAllDeviceSpecialInformation(); });
        owner.__DoAcquireAllDeviceSpecialInformation(*owner.GetFeatureControl(), count);
    }
};

namespace {

constexpr const char* kDifferentSize = "The two device information vectors have different size";

void LendCommonInformation(std::vector<DEV_INFO>& records,
                           std::vector<COMMON_DEVICE_INFO>& common) {
    if (common.size() != records.size()) {
        OV_RAISE(CUnexpectedError, kDifferentSize);
    }
    for (size_t i = 0; i < records.size(); ++i) {
        records[i].pCommonInfo = &common[i];
    }
}

/// The addresses of GigE Vision cameras on an interface of another type, for as
/// long as they are lent.
class CForeignAddresses {
public:
    CForeignAddresses(std::vector<DEV_INFO>& records, const IFeatureControl& control) {
        if (std::none_of(records.begin(), records.end(), &IsWithoutAddresses)) {
            return;
        }
        m_infos = CGevFeatureAgency::GetAllDeviceFeatureByInterface(control, records.size());
        if (m_infos.size() != records.size()) {
            OV_RAISE(CUnexpectedError, kDifferentSize);
        }
        for (size_t i = 0; i < records.size(); ++i) {
            if (IsWithoutAddresses(records[i])) {
                records[i].pSpecialInfo = &m_infos[i];
            }
        }
    }

private:
    static bool IsWithoutAddresses(const DEV_INFO& record) {
        return record.tlType.value == GenTL::TLTYPE_GEV && record.pSpecialInfo == nullptr;
    }

    std::vector<GEV_DEV_INFO> m_infos;
};

}  // namespace

void CInterface::DoUpdateDeviceList(unsigned timeout, bool& changed) {
    const auto ask = [&](GenTL::bool8_t* producerChanged) {
        return GetLib().IFUpdateDeviceList(m_handle, producerChanged, timeout);
    };
    const auto refresh = [this] {
        __DropClosedLostDevices();
        __RefreshDevices();
    };
    const auto renew = [this] { __RenewDeviceList(); };
    changed = OV_UPDATE_LIST(m_update, m_open, GetLib(), ask, refresh, renew);
}

void CInterface::__DropClosedLostDevices() {
    __SetLostOpenDevices(CDeviceListCompare::RemoveClosedDevice(DoGetLostOpenDeviceList()));
}

template <class Act>
void CInterface::__WithDeviceRecords(const Act& act) {
    std::vector<DEV_INFO> records =
        COvInformationAgency::GetAllDeviceInformationOfInterface(GetLib(), m_handle);
    std::vector<COMMON_DEVICE_INFO> common =
        CCommonFeatureAgency::GetAllDeviceFeatureByInterface(*GetFeatureControl(), records.size());
    const CResetDeviceInformationAgency acquired(*this, records.size());
    LendCommonInformation(records, common);
    LendSpecialInformation(records, __DoGetAllDeviceSpecialInformation(records.size()),
                           kDifferentSize);
    const CForeignAddresses foreign(records, *GetFeatureControl());
    act(records);
}

void CInterface::__RenewDeviceList() {
    // What the module's features say may be cached from before the change.
    GetNodeMapRef()->_InvalidateNodes();
    __WithDeviceRecords([this](std::vector<DEV_INFO>& records) { __TakeDeviceList(records); });
}

void CInterface::__RefreshDevices() {
    // A camera's name, addresses and access change without a change of the list.
    __WithDeviceRecords(
        [this](const std::vector<DEV_INFO>& records) { TakeRecords(DoGetDeviceList(), records); });
}

void CInterface::__TakeDeviceList(std::vector<DEV_INFO>& records) {
    DeviceList known = DoGetDeviceList();
    const DeviceList lostBefore = DoGetLostOpenDeviceList();
    // A camera that comes back is the same object, with its handle and callbacks.
    known.insert(known.end(), lostBefore.begin(), lostBefore.end());
    const DeviceList current = __CompareDeviceList(records, known);

    // A camera that is being opened finds itself in the old list or the new one.
    const CAutoLock listLock(m_deviceListLock);
    _UpdateChildrenList({current.begin(), current.end()});
    __SetLostOpenDevices(CDeviceListCompare::RemoveClosedDevice(
        CDeviceListCompare::CompareDeviceList(known, current)));
}

CInterface::DeviceList CInterface::__CompareDeviceList(std::vector<DEV_INFO>& records,
                                                       const DeviceList& known) {
    const std::shared_ptr<IInterface> self = GetSelf();
    return MatchChildren(records, known, [&](DEV_INFO& record) {
        return std::shared_ptr<IDevice>(
            CDeviceFactory::CreateDevice(GetLibPointer(), self, m_handle, record));
    });
}

}  // namespace OVTLClass
