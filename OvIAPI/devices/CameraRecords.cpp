// From strings of any length to the fixed fields of the public records.

#include "devices/CameraRecords.h"

#include <algorithm>
#include <cstring>

#include "camera/DeviceInfo.h"

namespace {

/// Zero-terminated copy of at most `limit` characters into a zeroed field.
template <size_t Size>
void CopyText(char (&field)[Size], const std::string& text, size_t limit) {
    static_assert(Size > 0);
    std::memcpy(field, text.c_str(), std::min({text.size(), limit, Size - 1}));
}

constexpr size_t kShortText = 31;
constexpr size_t kIdText = 64;
constexpr size_t kLongText = 128;

}  // namespace

void FillRecord(OV_DEVICE_BASE_INFO& record, const COvDeviceInfo& camera) {
    record = {};
    CopyText(record.szVendorName, camera.vendorName, kShortText);
    CopyText(record.szModelName, camera.modelName, kShortText);
    CopyText(record.szSN, camera.serialNumber, kShortText);
    CopyText(record.szDisplayName, camera.displayName, kLongText);
    CopyText(record.szDeviceID, camera.deviceId, kIdText);
    CopyText(record.szUserID, camera.GetUserId(), kIdText);
    record.accessStatus = camera.GetAccessStatus();
    record.deviceClass = camera.GetDeviceClass();
}

void FillRecord(OV_DEVICE_IP_INFO& record, const COvDeviceInfo& camera) {
    record = {};
    CopyText(record.szDeviceID, camera.deviceId, kIdText);
    CopyText(record.szMAC, camera.deviceAddresses.macText, kShortText);
    CopyText(record.szIP, camera.deviceAddresses.ipText, kShortText);
    CopyText(record.szSubnetMask, camera.deviceAddresses.subnetMaskText, kShortText);
    CopyText(record.szGateway, camera.deviceAddresses.gatewayText, kShortText);
    CopyText(record.szNICMAC, camera.adapterAddresses.macText, kShortText);
    CopyText(record.szNICIP, camera.adapterAddresses.ipText, kShortText);
    CopyText(record.szNICSubnetMask, camera.adapterAddresses.subnetMaskText, kShortText);
    CopyText(record.szNICGateway, camera.adapterAddresses.gatewayText, kShortText);
    CopyText(record.szNICDescription, camera.adapterDescription, kLongText);
}
