#pragma once
/// Pass a camera's events to the application's callbacks.

#include <memory>

#include "OvIDef.h"
#include "TLClassEvent/CallbackScope.h"
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

/// A feature's callback runs on the thread that changes the feature. If that is the thread of
/// the camera's events, the rules for callbacks of events apply.
OVTLClass::CallbackKind KindOfFeatureCallback(OVTLClass::IDevice& camera);

/// Passes what the application registered it for, whichever node changed. Refers to the camera,
/// which must outlive it: while the callback runs, calls that it makes are recognised as calls
/// from a callback of this camera.
template <class Feature>
class COvChangeCallback : public OVTLClass::IFeatureCallback {
public:
    using Function = void (*)(Feature feature, void* userParam);

    COvChangeCallback(OVTLClass::IDevice& camera, void* userParam, Function function,
                      Feature feature)
        : m_camera(camera), m_userParam(userParam), m_function(function), m_feature(feature) {}

    /// Does nothing if the function is null.
    void operator()(GenApi_3_0_ORVANE::INode* /*node*/) override {
        if (m_function != nullptr) {
            const OVTLClass::CCallbackScope scope(KindOfFeatureCallback(m_camera), &m_camera);
            m_function(m_feature, m_userParam);
        }
    }
    OVTLClass::IFeatureCallback* Clone() const override {
        return std::make_unique<COvChangeCallback>(m_camera, m_userParam, m_function, m_feature)
            .release();
    }

private:
    OVTLClass::IDevice& m_camera;
    void* m_userParam;
    Function m_function;
    Feature m_feature;
};

using COvFeatureCallback = COvChangeCallback<OV_FEATURE_ID>;
