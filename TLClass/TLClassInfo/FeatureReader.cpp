#include "TLClassInfo/FeatureReader.h"

#include <limits>

#include "Base/GCException.h"

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
    info.valid = Succeeds([&] { info.value = control.DoGetInt(name); });
}

void ReadString(const IFeatureControl& control, const char* name, InfoString& info) {
    info.valid = Succeeds([&] { info.value = control.DoGetString(name); });
}

int64_t CountOf(const IFeatureControl& control, const char* selector) {
    const int64_t last = control.DoGetIntRange(selector).max;
    return last < std::numeric_limits<int64_t>::max() ? last + 1 : last;
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

int64_t CGevTLFeature::GetInterfaceCount() const {
    return CountOf(m_control, kInterfaceSelector);
}

GEV_TL_INFO CGevTLFeature::GetGevTLInfo() const {
    GEV_TL_INFO info;
    ReadInt(m_control, "GevVersionMajor", info.versionMajor);
    ReadInt(m_control, "GevVersionMinor", info.versionMinor);
    return info;
}

GEV_IF_INFO CGevTLFeature::GetGevInterfaceInfoByIndex(int64_t index) const {
    m_control.DoSetInt(kInterfaceSelector, index);
    return ReadAddresses<GEV_IF_INFO>(m_control, kInterfaceInSystem);
}

int64_t CGevInterfaceFeature::GetDeviceCount() const {
    return CountOf(m_control, kDeviceSelector);
}

GEV_IF_INFO CGevInterfaceFeature::GetGevInterfaceInfo() const {
    return ReadAddresses<GEV_IF_INFO>(m_control, kInterfaceItself);
}

GEV_DEV_INFO CGevInterfaceFeature::GetGevDeviceInfoByIndex(int64_t index) const {
    m_control.DoSetInt(kDeviceSelector, index);
    return ReadAddresses<GEV_DEV_INFO>(m_control, kDevice);
}

GEV_DEV_INFO CGevDeviceFeature::GetGevDeviceInfo() const {
    return ReadAddresses<GEV_DEV_INFO>(m_control, kDevice);
}

int64_t CCommonInterfaceFeature::GetDeviceCount() const {
    return CountOf(m_control, kDeviceSelector);
}

COMMON_INTERFACE_INFO CCommonInterfaceFeature::GetCommonInterfaceInfo() const {
    COMMON_INTERFACE_INFO info;
    ReadString(m_control, "InterfaceDescription", info.description);
    return info;
}

COMMON_DEVICE_INFO CCommonInterfaceFeature::GetCommonDeviceInfoByIndex(int64_t index) const {
    m_control.DoSetInt(kDeviceSelector, index);
    return ReadCommonDevice(m_control);
}

COMMON_DEVICE_INFO CCommonDeviceFeature::GetCommonDeviceInfo() const {
    return ReadCommonDevice(m_control);
}

}  // namespace OVTLClass
