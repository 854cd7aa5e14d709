#include "TLClassInfo/FeatureReader.h"

#include "Base/GCException.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvLog.h"

namespace OVTLClass {

namespace {

constexpr const char* kInterfaceSelector = "InterfaceSelector";
constexpr const char* kDeviceSelector = "DeviceSelector";

/// Whether `read` went through without an exception of either family.
template <class Read>
bool Succeeds(const Read& read) {
    try {
        read();
        return true;
    } catch (const std::exception&) {
        return false;
    } catch (const GenICam_3_0_ORVANE::GenericException&) {
        return false;
    }
}

void ReadInt(const IFeatureControl& control, const char* name, InfoInt64& info) {
    info.valid = Succeeds([&] { info.value = control.DoReadInt(name); });
}

void ReadString(const IFeatureControl& control, const char* name, InfoString& info) {
    info.valid = Succeeds([&] { info.value = control.DoReadString(name); });
}

/// Whether the selector takes the index. A description may bound its selector
/// wrongly or lack it; the module is listed all the same.
bool Selects(const IFeatureControl& control, const char* selector, int64_t index) {
    // Without a selector every index would read the same values.
    if (!control.DoIsImplemented(selector)) {
        return false;
    }
    try {
        control.DoSetInt(selector, index);
        return true;
    } catch (const COutOfRangeError& error) {
        OV_LOG(error.what());
        return false;
    }
}

struct AddressNames {
    const char* mac;
    const char* ip;
    const char* mask;
    const char* gateway;
};

constexpr AddressNames kInterfaceInSystem{"GevInterfaceMACAddress", "GevInterfaceDefaultIPAddress",
                                          "GevInterfaceDefaultSubnetMask",
                                          "GevInterfaceDefaultGateway"};
constexpr AddressNames kInterfaceItself{"GevInterfaceMACAddress", "GevInterfaceSubnetIPAddress",
                                        "GevInterfaceSubnetMask", "GevInterfaceGateway"};
constexpr AddressNames kDevice{"GevDeviceMACAddress", "GevDeviceIPAddress", "GevDeviceSubnetMask",
                               "GevDeviceGateway"};

template <class Record>
Record ReadAddresses(const IFeatureControl& control, const AddressNames& names) {
    Record record;
    ReadInt(control, names.mac, record.macAddress);
    ReadInt(control, names.ip, record.ipAddress);
    ReadInt(control, names.mask, record.subnetMask);
    ReadInt(control, names.gateway, record.gateway);
    return record;
}

COMMON_DEVICE_INFO ReadCommonDevice(const IFeatureControl& control) {
    COMMON_DEVICE_INFO info;
    ReadString(control, "DeviceVersion", info.version);
    ReadString(control, "DeviceSerialNumber", info.serialNumber);
    ReadString(control, "DeviceUserID", info.userId);
    return info;
}

}  // namespace

GEV_TL_INFO CGevTLFeature::GetGevTLInfo() const {
    GEV_TL_INFO info;
    ReadInt(m_control, "GevVersionMajor", info.versionMajor);
    ReadInt(m_control, "GevVersionMinor", info.versionMinor);
    return info;
}

GEV_IF_INFO CGevTLFeature::GetGevInterfaceInfoByIndex(int64_t index) const {
    if (!Selects(m_control, kInterfaceSelector, index)) {
        return {};
    }
    return ReadAddresses<GEV_IF_INFO>(m_control, kInterfaceInSystem);
}

GEV_IF_INFO CGevInterfaceFeature::GetGevInterfaceInfo() const {
    return ReadAddresses<GEV_IF_INFO>(m_control, kInterfaceItself);
}

GEV_DEV_INFO CGevInterfaceFeature::GetGevDeviceInfoByIndex(int64_t index) const {
    if (!Selects(m_control, kDeviceSelector, index)) {
        return {};
    }
    return ReadAddresses<GEV_DEV_INFO>(m_control, kDevice);
}

GEV_DEV_INFO CGevDeviceFeature::GetGevDeviceInfo() const {
    return ReadAddresses<GEV_DEV_INFO>(m_control, kDevice);
}

COMMON_INTERFACE_INFO CCommonInterfaceFeature::GetCommonInterfaceInfo() const {
    COMMON_INTERFACE_INFO info;
    ReadString(m_control, "InterfaceDescription", info.description);
    return info;
}

COMMON_DEVICE_INFO CCommonInterfaceFeature::GetCommonDeviceInfoByIndex(int64_t index) const {
    if (!Selects(m_control, kDeviceSelector, index)) {
        return {};
    }
    return ReadCommonDevice(m_control);
}

COMMON_DEVICE_INFO CCommonDeviceFeature::GetCommonDeviceInfo() const {
    return ReadCommonDevice(m_control);
}

}  // namespace OVTLClass
