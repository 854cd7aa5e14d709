#include "Names.h"

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
