#pragma once
/// The bridge from the stream's frames to an application's capture callback.

#include "OvIDef.h"
#include "TLClassSupport/EventCallback.h"

namespace OVTLClass {
class IDevice;
}

/// Knows the camera, which outlives it, to tell the calls that the callback makes
/// whose it is.
class COvNewBufferCallback : public OVTLClass::INewBufferCallback {
public:
    COvNewBufferCallback(const OVTLClass::IDevice& camera, void* userParam,
                         OVCaptureCallback function)
        : m_camera(camera), m_userParam(userParam), m_function(function) {}

    OVTLClass::INewBufferCallback* Clone() const override;
    /// Nothing for a null function.
    void operator()(const OVTLClass::BUFFER_INFO& info) override;

private:
    const OVTLClass::IDevice& m_camera;
    void* m_userParam;
    OVCaptureCallback m_function;
};
