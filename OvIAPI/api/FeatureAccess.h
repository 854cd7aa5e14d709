#pragma once
/// From a handle and an identifier to a feature.

#include "OvIDef.h"
#include "api/DeviceManager.h"

namespace OVTLClass {
class CFeatureControl;
}

/// Raises "FeatureID type error" for an identifier of another type.
void CheckFeatureType(OV_FEATURE_ID featureID, OV_FEATURE_TYPE type);

/// The control of the module that the identifier's level names, which knows the time
/// then.
OVTLClass::CFeatureControl& GetFeatureControl(const COvDeviceInfo& info, OV_FEATURE_ID featureID);

/// Whether a module of the camera has that callback registered.
bool HasFeatureCallback(const COvDeviceInfo& info, const void* handle);

/// The checks that every typed feature call begins with, in their order:
/// initialised, handle, type, name. The control is looked for later, since the
/// pointers of the caller are tested in between.
class CFeatureAccess {
public:
    CFeatureAccess(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, OV_FEATURE_TYPE type,
                   const OvPlace& place);

    const char* Name() const { return m_name; }
    OVTLClass::CFeatureControl& Control() const { return GetFeatureControl(m_info, m_featureID); }
    COvDeviceInfo& Info() const { return m_info; }

private:
    COvDeviceInfo& m_info;
    OV_FEATURE_ID m_featureID;
    const char* m_name;
};
