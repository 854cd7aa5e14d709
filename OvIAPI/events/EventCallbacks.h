#pragma once
/// The bridges from a camera's events to an application's callbacks.

#include "OvIDef.h"
#include "TLClassSupport/EventCallback.h"

namespace OVTLClass {
class IDevice;
}

class COvDeviceOfflineCallback : public OVTLClass::IDeviceOfflineCallback {
public:
    COvDeviceOfflineCallback(void* userParam, OVDeviceOfflineCallback function)
        : m_userParam(userParam), m_function(function) {}

    OVTLClass::IDeviceOfflineCallback* Clone() const override;
    /// Nothing for a null function.
    void operator()() override;

private:
    void* m_userParam;
    OVDeviceOfflineCallback m_function;
};

/// Knows the camera, which outlives it, to tell the calls that the callback makes
/// whose it is.
class COvFeatureCallback : public OVTLClass::IFeatureCallback {
public:
    COvFeatureCallback(OVTLClass::IDevice& camera, void* userParam, OVFeatureCallback function,
                       OV_FEATURE_ID featureID)
        : m_camera(camera), m_userParam(userParam), m_function(function), m_featureID(featureID) {}

    /// Tells the identifier that was registered, whatever node changed. Nothing
    /// for a null function.
    void operator()(GenApi_3_0_ORVANE::INode* node) override;
    OVTLClass::IFeatureCallback* Clone() const override;

private:
    OVTLClass::IDevice& m_camera;
    void* m_userParam;
    OVFeatureCallback m_function;
    OV_FEATURE_ID m_featureID;
};
