#include "Addresses.h"

#include <nlohmann/json.hpp>

#include "FieldText.h"

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
