#pragma once
/// The bridges from a camera's events to an application's callbacks.

#include "OvIDef.h"
#include "TLClassEvent/EventCallback.h"

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

class COvFeatureCallback : public OVTLClass::IFeatureCallback {
public:
    COvFeatureCallback(void* userParam, OVFeatureCallback function, OV_FEATURE_ID featureID)
        : m_userParam(userParam), m_function(function), m_featureID(featureID) {}

    /// Tells the identifier that was registered, whatever node changed. Nothing
    /// for a null function.
    void operator()(GenApi_3_0_ORVANE::INode* node) override;
    OVTLClass::IFeatureCallback* Clone() const override;

private:
    void* m_userParam;
    OVFeatureCallback m_function;
    OV_FEATURE_ID m_featureID;
};
