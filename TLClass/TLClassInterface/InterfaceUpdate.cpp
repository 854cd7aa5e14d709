// How an interface renews its list of devices.

#include <algorithm>

#include "GenApi/NodeMapRef.h"
#include "TLClassDevice/DeviceFactory.h"
#include "TLClassInfo/FeatureAgency.h"
#include "TLClassInfo/InformationAgency.h"
#include "TLClassInterface/DeviceListCompare.h"
#include "TLClassInterface/Interface.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassModule/IDevice.h"
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

/// Lends each record its two further records.
void Lend(std::vector<DEV_INFO>& records, std::vector<COMMON_DEVICE_INFO>& common,
          const std::vector<SPECIAL_INFO*>& special) {
    if (common.size() != records.size() || special.size() != records.size()) {
        OV_RAISE(CUnexpectedError, kDifferentSize);
    }
    for (size_t i = 0; i < records.size(); ++i) {
        records[i].pCommonInfo = &common[i];
        records[i].pSpecialInfo = special[i];
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
        return record.tlType.value == "GEV" && record.pSpecialInfo == nullptr;
    }

    std::vector<GEV_DEV_INFO> m_infos;
};

template <class Devices>
auto FindById(const Devices& devices, const DEV_INFO& record) {
    return std::find_if(devices.begin(), devices.end(), [&record](const auto& candidate) {
        return candidate->DoGetDeviceInfo().id.value == record.id.value;
    });
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
    m_listIsStale = m_listIsStale || producerChanged != 0;
    if (!m_listIsStale) {
        __DropClosedLostDevices();
        OV_RUN_LOGGED([this] { __RefreshDevices(); });
        return;
    }
    OV_RUN_LOGGED([this, &changed] {
        __RenewDeviceList();
        m_listIsStale = false;
        changed = true;
    });
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
    Lend(records, common, __DoGetAllDeviceSpecialInformation(records.size()));
    const CForeignAddresses foreign(records, *GetFeatureControl());
    act(records);
}

void CInterface::__RenewDeviceList() {
    // What the module's features tell may be cached from before the change.
    GetNodeMapRef()->_InvalidateNodes();
    __WithDeviceRecords([this](std::vector<DEV_INFO>& records) { __TakeDeviceList(records); });
}

void CInterface::__RefreshDevices() {
    // A camera's name, addresses and access change without a change of the list.
    __WithDeviceRecords([this](const std::vector<DEV_INFO>& records) {
        const DeviceList known = DoGetDeviceList();
        for (const DEV_INFO& record : records) {
            const auto found = FindById(known, record);
            if (found != known.end()) {
                (*found)->DoUpdateDeviceInformation(record);
            }
        }
    });
}

void CInterface::__TakeDeviceList(std::vector<DEV_INFO>& records) {
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
        const auto found = FindById(known, record);
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
