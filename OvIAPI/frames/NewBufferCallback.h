#pragma once
/// Passes the stream's frames to the application's capture callback.

#include "OvIDef.h"
#include "TLClassSupport/EventCallback.h"

namespace OVTLClass {
class IDevice;
}

/// Refers to the camera, which must outlive it: while the callback runs, calls that it
/// makes are recognised as calls from a callback of this camera.
class COvNewBufferCallback : public OVTLClass::INewBufferCallback {
public:
    COvNewBufferCallback(const OVTLClass::IDevice& camera, void* userParam,
                         OVCaptureCallback function)
        : m_camera(camera), m_userParam(userParam), m_function(function) {}

    OVTLClass::INewBufferCallback* Clone() const override;
    /// Does nothing if the function is null.
    void operator()(const OVTLClass::BUFFER_INFO& info) override;

private:
    const OVTLClass::IDevice& m_camera;
    void* m_userParam;
    OVCaptureCallback m_function;
};
