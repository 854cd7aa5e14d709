// What a feature is called, and what can be done with it now.

#include <cstring>

#include "FeatureAccess.h"
#include "OVIError.h"
#include "OvIAPI.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassLoadTL/OvException.h"

using namespace OVTLClass;

OV_STATUS OVGetFeatureName(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, char* pszName,
                           size_t* pnSize) try {
    const CDeviceManager& manager = EnterApi();
    VerifyDeviceHandle(hDevice, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    const char* const name = manager.GetFeatureName(featureID);
    const size_t size = std::strlen(name) + 1;
    if (pszName != nullptr) {
        if (size > *pnSize) {
            OV_RAISE(CNeedMoreBufferError, "Need more buffer to get feature name");
        }
        std::memcpy(pszName, name, size);
    }
    *pnSize = size;
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVIsImplemented(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                          bool* pbIsImplemented) try {
    const CDeviceManager& manager = EnterApi();
    const COvDeviceInfo& info = VerifyDeviceHandle(hDevice, OV_HERE);
    OV_CHECK_POINTER(pbIsImplemented);
    const char* const name = manager.GetFeatureName(featureID);
    *pbIsImplemented = GetFeatureControl(info, featureID).DoIsImplemented(name);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVIsReadable(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool* pbIsReadable) try {
    const CDeviceManager& manager = EnterApi();
    const COvDeviceInfo& info = VerifyDeviceHandle(hDevice, OV_HERE);
    const char* const name = manager.GetFeatureName(featureID);
    OV_CHECK_POINTER(pbIsReadable);
    *pbIsReadable = GetFeatureControl(info, featureID).DoIsReadable(name);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVIsWritable(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool* pbIsWritable) try {
    const CDeviceManager& manager = EnterApi();
    const COvDeviceInfo& info = VerifyDeviceHandle(hDevice, OV_HERE);
    const char* const name = manager.GetFeatureName(featureID);
    OV_CHECK_POINTER(pbIsWritable);
    *pbIsWritable = GetFeatureControl(info, featureID).DoIsWritable(name);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
