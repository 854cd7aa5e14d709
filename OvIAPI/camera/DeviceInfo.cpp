// One camera: what a search found out about it and, once it is open, what the interface
// keeps for it.

#include "camera/DeviceInfo.h"

#include "Base/EachFrame.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvString.h"

using namespace OVTLClass;

namespace {

std::string IpText(int64_t address) {
    return COvString::ConvertInt32ToIPString(static_cast<int32_t>(address));
}

}  // namespace

void OvAddresses::Set(const GEV_ADDRESS_INFO& info) {
    mac = info.macAddress.value;
    ip = info.ipAddress.value;
    subnetMask = info.subnetMask.value;
    gateway = info.gateway.value;
    macText = COvString::ConvertInt64ToMACString(mac);
    ipText = IpText(ip);
    subnetMaskText = IpText(subnetMask);
    gatewayText = IpText(gateway);
}

/// Only the description is copied. Locks, frames, gate, polling and nodes belong to one handle.
COvDeviceInfo::COvDeviceInfo(const COvDeviceInfo& other)
    : IOvDeviceInfo(other),
      vendorName(other.vendorName),
      modelName(other.modelName),
      serialNumber(other.serialNumber),
      displayName(other.displayName),
      deviceId(other.deviceId),
      deviceAddresses(other.deviceAddresses),
      adapterAddresses(other.adapterAddresses),
      adapterDescription(other.adapterDescription),
      m_device(other.m_device),
      m_openedByIp(other.m_openedByIp),
      m_userId(other.GetUserId()),
      m_deviceClass(other.m_deviceClass),
      m_accessStatus(other.m_accessStatus) {}

std::unique_ptr<COvDeviceInfo> COvDeviceInfo::Clone() const {
    return std::unique_ptr<COvDeviceInfo>(new COvDeviceInfo(*this));
}

void COvDeviceInfo::SetDeviceClass(const std::string& tlType, const std::string& tlId) {
    if (tlType == "GEV") {
        m_deviceClass = OV_DEVICE_CLASS_GEV;
    } else if (tlType == "U3V") {
        m_deviceClass = OV_DEVICE_CLASS_U3V;
    } else if (tlType == "Custom") {
        // There is no transport type for smart cameras; their producer's ID reveals them.
        m_deviceClass = tlId == "Smart_Camera_TL" ? OV_DEVICE_CLASS_SMART : OV_DEVICE_CLASS_CUSTOM;
    } else {
        m_deviceClass = OV_DEVICE_CLASS_UNKNOWN;
    }
}

OV_EACH_FRAME const std::shared_ptr<IDataStream>& COvDeviceInfo::GetStream() const {
    if (m_hasStream.load(std::memory_order_acquire)) {
        return m_stream;
    }
    const CAutoLock lock(m_streamLock);
    if (!m_stream) {
        const auto streams = m_device->DoGetDataStreamList();
        if (streams.empty()) {
            OV_RAISE(CUnexpectedError, "DataStream's number is 0");
        }
        m_stream = streams.front();
        m_hasStream.store(true, std::memory_order_release);
    }
    return m_stream;
}

void COvDeviceInfo::SetAccessStatus(int32_t producerStatus) {
    const bool known =
        producerStatus >= OV_ACCESS_STATUS_READWRITE && producerStatus <= OV_ACCESS_STATUS_NOACCESS;
    m_accessStatus = known ? producerStatus : OV_ACCESS_STATUS_UNKNOWN;
}

void COvDeviceInfo::SetUserId(const std::string& userId) {
    const CAutoLock lock(m_userIdLock);
    m_userId = userId;
}

std::string COvDeviceInfo::GetUserId() const {
    const CAutoLock lock(m_userIdLock);
    return m_userId;
}
