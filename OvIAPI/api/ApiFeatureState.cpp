// A feature's name, and whether it exists and can be read or written at present.

#include <cstring>

#include "OvIAPI.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassSupport/OvException.h"
#include "api/FeatureAccess.h"
#include "errors/OVIError.h"

using namespace OVTLClass;

OV_STATUS OVGetFeatureName(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, char* pszName,
                           size_t* pnSize) try {
    EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    const CFeatureName name = CDeviceManager::GetInstance().GetFeatureName(featureID);
    const size_t size = std::strlen(name.Get()) + 1;
    if (pszName != nullptr) {
        if (size > *pnSize) {
            OV_RAISE(CNeedMoreBufferError, "Need more buffer to get feature name");
        }
        std::memcpy(pszName, name.Get(), size);
    }
    *pnSize = size;
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVIsImplemented(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                          bool* pbIsImplemented) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pbIsImplemented);
    const CFeatureName name = CDeviceManager::GetInstance().GetFeatureName(featureID);
    *pbIsImplemented = GetFeatureControl(info, featureID).DoIsImplemented(name);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVIsReadable(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool* pbIsReadable) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    const CFeatureName name = CDeviceManager::GetInstance().GetFeatureName(featureID);
    OV_CHECK_POINTER(pbIsReadable);
    *pbIsReadable = GetFeatureControl(info, featureID).DoIsReadable(name);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVIsWritable(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool* pbIsWritable) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    const CFeatureName name = CDeviceManager::GetInstance().GetFeatureName(featureID);
    OV_CHECK_POINTER(pbIsWritable);
    *pbIsWritable = GetFeatureControl(info, featureID).DoIsWritable(name);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
