#include "camera/ListedCamera.h"

#include <nlohmann/json.hpp>

#include "support/Text.h"

namespace {

const char* AccessName(OV_ACCESS_STATUS status) {
    switch (status) {
        case OV_ACCESS_STATUS_READWRITE:
            return "read and write";
        case OV_ACCESS_STATUS_READONLY:
            return "read only";
        case OV_ACCESS_STATUS_NOACCESS:
            return "none";
        default:
            return "unknown";
    }
}

}  // namespace

const char* ClassName(OV_DEVICE_CLASS deviceClass) {
    switch (deviceClass) {
        case OV_DEVICE_CLASS_CUSTOM:
            return "custom";
        case OV_DEVICE_CLASS_GEV:
            return "GigE Vision";
        case OV_DEVICE_CLASS_U3V:
            return "USB3 Vision";
        case OV_DEVICE_CLASS_SMART:
            return "smart camera";
        default:
            return "unknown";
    }
}

Json ToJson(size_t index, const OV_DEVICE_BASE_INFO& camera) {
    return {{"index", index},
            {"vendor", FieldText(camera.szVendorName)},
            {"model", FieldText(camera.szModelName)},
            {"serialNumber", FieldText(camera.szSN)},
            {"userId", FieldText(camera.szUserID)},
            {"displayName", FieldText(camera.szDisplayName)},
            {"deviceId", FieldText(camera.szDeviceID)},
            {"class", ClassName(camera.deviceClass)},
            {"access", AccessName(camera.accessStatus)}};
}

Json CameraAddresses(const OV_DEVICE_IP_INFO& info) {
    return {{"mac", FieldText(info.szMAC)},
            {"ip", FieldText(info.szIP)},
            {"subnetMask", FieldText(info.szSubnetMask)},
            {"gateway", FieldText(info.szGateway)}};
}

Json AdapterAddresses(const OV_DEVICE_IP_INFO& info) {
    return {{"mac", FieldText(info.szNICMAC)},
            {"ip", FieldText(info.szNICIP)},
            {"subnetMask", FieldText(info.szNICSubnetMask)},
            {"gateway", FieldText(info.szNICGateway)},
            {"description", FieldText(info.szNICDescription)}};
}
