#pragma once
/// The bridge from the stream's frames to an application's capture callback.

#include "OvIDef.h"
#include "TLClassEvent/EventCallback.h"

class COvNewBufferCallback : public OVTLClass::INewBufferCallback {
public:
    COvNewBufferCallback(void* userParam, OVCaptureCallback function)
        : m_userParam(userParam), m_function(function) {}

    OVTLClass::INewBufferCallback* Clone() const override;
    /// Nothing for a null function.
    void operator()(const OVTLClass::BUFFER_INFO& info) override;

private:
    void* m_userParam;
    OVCaptureCallback m_function;
};
