#pragma once

#include <memory>
#include <string>

#include "GenApi/NodeCallback.h"
#include "TLClassEvent/EventCallback.h"
#include "TLClassFeature/FeatureControl.h"

namespace OVTLClass {

/// What a node calls. Shared by the node and by the control that registered it:
/// the engine looks at its callbacks once more after it released its lock, when
/// another thread may have taken one away.
class CFeatureNodeCallback : public GenApi_3_0_ORVANE::CNodeCallback {
public:
    CFeatureNodeCallback(GenApi_3_0_ORVANE::INode* node, std::unique_ptr<IFeatureCallback> callback)
        : CNodeCallback(node), m_callback(std::move(callback)) {}

    /// Registers it with its node, which shares it from then on.
    GenApi_3_0_ORVANE::CallbackHandleType RegisterWithNode(
        const std::shared_ptr<CFeatureNodeCallback>& self) {
        const auto handle = m_pNode->RegisterCallback(this);
        m_self = self;
        return handle;
    }

    void operator()(GenApi_3_0_ORVANE::ECallbackType type) const override {
        if (type == GenApi_3_0_ORVANE::cbPostInsideLock && m_callback) {
            (*m_callback)(m_pNode);
        }
    }
    /// Called with the engine's lock held, as the callback is.
    void Destroy() override {
        m_callback.reset();
        m_self.reset();
    }

private:
    std::unique_ptr<IFeatureCallback> m_callback;
    std::shared_ptr<CFeatureNodeCallback> m_self;
};

/// One registered feature callback: the engine's handle, what the node calls, the
/// feature.
class CFeatureControl::CFeatureCallbackHandle : public IFeatureControl::IFeatureCallbackHandle {
public:
    CFeatureCallbackHandle(GenApi_3_0_ORVANE::CallbackHandleType engineHandle,
                           std::shared_ptr<CFeatureNodeCallback> callback, std::string name)
        : m_engineHandle(engineHandle), m_callback(std::move(callback)), m_name(std::move(name)) {}

    GenApi_3_0_ORVANE::CallbackHandleType GetEngineHandle() const { return m_engineHandle; }
    const std::shared_ptr<CFeatureNodeCallback>& GetCallback() const { return m_callback; }
    const std::string& GetName() const { return m_name; }

private:
    GenApi_3_0_ORVANE::CallbackHandleType m_engineHandle;
    std::shared_ptr<CFeatureNodeCallback> m_callback;
    std::string m_name;
};

}  // namespace OVTLClass
