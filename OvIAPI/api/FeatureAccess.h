#pragma once
/// From a handle and an identifier to a feature.

#include <string>

#include "OvIDef.h"
#include "api/DeviceManager.h"

namespace OVTLClass {
class CFeatureControl;
}

/// Throws "FeatureID type error" for an identifier of another type.
void CheckFeatureType(OV_FEATURE_ID featureID, OV_FEATURE_TYPE type);

/// The control of the module that the identifier's level names. Values of polled features
/// whose time has passed are dropped first.
OVTLClass::CFeatureControl& GetFeatureControl(const COvDeviceInfo& info, OV_FEATURE_ID featureID);

/// Whether the callback is registered on a module of the camera.
bool HasFeatureCallback(const COvDeviceInfo& info, const void* handle);

/// Takes a user ID that the camera has accepted: cameras are also opened by it, and the lists
/// keep the one that a search found.
void TakeUserId(COvDeviceInfo& info, const std::string& userId);

/// The checks at the beginning of every typed feature call, in this order: initialised,
/// handle, type, name. The control is looked up later because the caller's pointers are
/// checked before it.
class CFeatureAccess {
public:
    CFeatureAccess(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, OV_FEATURE_TYPE type,
                   const OvPlace& place);

    OVTLClass::CFeatureName Name() const { return m_name; }
    OVTLClass::CFeatureControl& Control() const { return GetFeatureControl(m_info, m_featureID); }
    COvDeviceInfo& Info() const { return m_info; }

private:
    COvDeviceInfo& m_info;
    OV_FEATURE_ID m_featureID;
    OVTLClass::CFeatureName m_name;
};
