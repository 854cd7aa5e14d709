// Calls that the interface declares and this version doesn't serve yet: events,
// configuration files and raw ports.

#include "DeviceManager.h"
#include "OVIError.h"
#include "OvIAPI.h"
#include "TLClassLoadTL/OvException.h"

namespace {

[[noreturn]] void RefuseAsNotBuilt() {
    EnterApi();
    OV_RAISE(CNotImplementedError, "This version of the library does not offer the call");
}

}  // namespace

OV_STATUS OVRegisterDeviceOfflineCallback(OV_DEV_HANDLE /*hDevice*/, void* /*pUserParam*/,
                                          OVDeviceOfflineCallback /*callBackFun*/,
                                          OV_EVENT_CALLBACK_HANDLE* /*pHCallBack*/) try {
    RefuseAsNotBuilt();
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVUnregisterDeviceOfflineCallback(OV_DEV_HANDLE /*hDevice*/,
                                            OV_EVENT_CALLBACK_HANDLE /*pHCallBack*/) try {
    RefuseAsNotBuilt();
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVRegisterFeatureCallback(OV_DEV_HANDLE /*hDevice*/, void* /*pUserParam*/,
                                    OVFeatureCallback /*callBackFun*/, OV_FEATURE_ID /*featureID*/,
                                    OV_FEATURE_CALLBACK_HANDLE* /*pHCallBack*/) try {
    RefuseAsNotBuilt();
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVUnregisterFeatureCallback(OV_DEV_HANDLE /*hDevice*/, OV_FEATURE_ID /*featureID*/,
                                      OV_FEATURE_CALLBACK_HANDLE /*pHCallBack*/) try {
    RefuseAsNotBuilt();
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVFlushEvent(OV_DEV_HANDLE /*hDevice*/) try { RefuseAsNotBuilt(); } catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetEventNumInQueue(OV_DEV_HANDLE /*hDevice*/, uint32_t* /*pnEventNum*/) try {
    RefuseAsNotBuilt();
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVExportConfigFile(OV_DEV_HANDLE /*hDevice*/, const char* /*pszFilePath*/) try {
    RefuseAsNotBuilt();
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVImportConfigFile(OV_DEV_HANDLE /*hDevice*/, const char* /*pszFilePath*/,
                             bool /*bVerify*/) try {
    RefuseAsNotBuilt();
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVReadRemoteDevicePort(OV_DEV_HANDLE /*hDevice*/, uint64_t /*ui64Address*/,
                                 void* /*pBuffer*/, size_t* /*piSize*/) try {
    RefuseAsNotBuilt();
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVWriteRemoteDevicePort(OV_DEV_HANDLE /*hDevice*/, uint64_t /*ui64Address*/,
                                  const void* /*pBuffer*/, size_t* /*piSize*/) try {
    RefuseAsNotBuilt();
} catch (...) {
    return CaughtStatus();
}
