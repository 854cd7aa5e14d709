#pragma once

#include <memory>
#include <string>

#include "GenApi/NodeCallback.h"
#include "TLClassEvent/EventCallback.h"
#include "TLClassFeature/FeatureControl.h"

namespace OVTLClass {

/// One registered feature callback: the engine's handle, the clone that is
/// called, the feature.
class CFeatureControl::CFeatureCallbackHandle : public IFeatureControl::IFeatureCallbackHandle {
public:
    CFeatureCallbackHandle(GenApi_3_0_ORVANE::CallbackHandleType engineHandle,
                           std::unique_ptr<IFeatureCallback> callback, std::string name)
        : m_engineHandle(engineHandle), m_callback(std::move(callback)), m_name(std::move(name)) {}

    GenApi_3_0_ORVANE::CallbackHandleType GetEngineHandle() const { return m_engineHandle; }
    const std::string& GetName() const { return m_name; }

private:
    GenApi_3_0_ORVANE::CallbackHandleType m_engineHandle;
    std::unique_ptr<IFeatureCallback> m_callback;
    std::string m_name;
};

}  // namespace OVTLClass
