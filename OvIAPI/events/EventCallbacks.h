#pragma once
/// Pass a camera's events to the application's callbacks.

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
    /// Does nothing if the function is null.
    void operator()() override;

private:
    void* m_userParam;
    OVDeviceOfflineCallback m_function;
};

/// Refers to the camera, which must outlive it: while the callback runs, calls that it
/// makes are recognised as calls from a callback of this camera.
class COvFeatureCallback : public OVTLClass::IFeatureCallback {
public:
    COvFeatureCallback(OVTLClass::IDevice& camera, void* userParam, OVFeatureCallback function,
                       OV_FEATURE_ID featureID)
        : m_camera(camera), m_userParam(userParam), m_function(function), m_featureID(featureID) {}

    /// Passes the identifier that was registered, whichever node changed. Does nothing if
    /// the function is null.
    void operator()(GenApi_3_0_ORVANE::INode* node) override;
    OVTLClass::IFeatureCallback* Clone() const override;

private:
    OVTLClass::IDevice& m_camera;
    void* m_userParam;
    OVFeatureCallback m_function;
    OV_FEATURE_ID m_featureID;
};
