#pragma once

#include <memory>
#include <string>

#include "GenApi/NodeCallback.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassSupport/EventCallback.h"

namespace OVTLClass {

/// What a node calls; the node's own.
class CFeatureNodeCallback : public GenApi_3_0_ORVANE::CNodeCallback {
public:
    static GenApi_3_0_ORVANE::CallbackHandleType Register(
        GenApi_3_0_ORVANE::INode* node, std::unique_ptr<IFeatureCallback> callback) {
        std::unique_ptr<CFeatureNodeCallback> own(
            new CFeatureNodeCallback(node, std::move(callback)));
        const auto handle = node->RegisterCallback(own.get());
        static_cast<void>(own.release());  // the node's from here on
        return handle;
    }

    void operator()(GenApi_3_0_ORVANE::ECallbackType type) const override {
        if (type == GenApi_3_0_ORVANE::cbPostInsideLock) {
            (*m_callback)(m_pNode);
        }
    }
    void Destroy() override { delete this; }

private:
    CFeatureNodeCallback(GenApi_3_0_ORVANE::INode* node, std::unique_ptr<IFeatureCallback> callback)
        : CNodeCallback(node), m_callback(std::move(callback)) {}

    std::unique_ptr<IFeatureCallback> m_callback;
};

/// One registered feature callback: the feature and the engine's handle.
class CFeatureControl::CFeatureCallbackHandle : public IFeatureControl::IFeatureCallbackHandle {
public:
    explicit CFeatureCallbackHandle(std::string name) : m_name(std::move(name)) {}

    void SetEngineHandle(GenApi_3_0_ORVANE::CallbackHandleType handle) { m_engineHandle = handle; }
    GenApi_3_0_ORVANE::CallbackHandleType GetEngineHandle() const { return m_engineHandle; }
    const std::string& GetName() const { return m_name; }

private:
    std::string m_name;
    GenApi_3_0_ORVANE::CallbackHandleType m_engineHandle{};
};

}  // namespace OVTLClass
