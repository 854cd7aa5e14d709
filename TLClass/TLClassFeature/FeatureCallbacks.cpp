// Callbacks on features, and the family that a feature belongs to.

#include <algorithm>

#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureCallbackHandle.h"
#include "TLClassLoadTL/OvLog.h"

namespace OVTLClass {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace): one layer below

CFeatureControl::CFeatureControl(CNodeMapRef* nodeMap) : m_nodeMap(nodeMap) {}

CFeatureControl::~CFeatureControl() {
    DoUnregisterAllFeatureCallback();
}

IFeatureControl::IFeatureCallbackHandle* CFeatureControl::DoRegisterFeatureCallback(
    const std::string& name, const IFeatureCallback& callback) {
    std::unique_ptr<IFeatureCallback> clone(callback.Clone());
    INode& node = __GetGenAPINode(name);
    const CallbackHandleType engineHandle =
        OV_ENGINE_SET(Register(&node, *clone, &IFeatureCallback::operator(), cbPostInsideLock));
    m_callbacks.push_back(
        std::make_unique<CFeatureCallbackHandle>(engineHandle, std::move(clone), name));
    return m_callbacks.back().get();
}

bool CFeatureControl::__Deregister(const CFeatureCallbackHandle& handle) const {
    bool done = false;
    OV_RUN_LOGGED([&] {
        Deregister(handle.GetEngineHandle());
        done = true;
    });
    return done;
}

void CFeatureControl::DoUnregisterFeatureCallback(intptr_t handle) {
    const auto found =
        std::find_if(m_callbacks.begin(), m_callbacks.end(), [handle](const auto& callback) {
            return reinterpret_cast<intptr_t>(
                       static_cast<IFeatureCallbackHandle*>(callback.get())) == handle;
        });
    if (found != m_callbacks.end() && __Deregister(**found)) {
        m_callbacks.erase(found);
    }
}

void CFeatureControl::DoUnregisterAllFeatureCallback() {
    for (const auto& callback : m_callbacks) {
        __Deregister(*callback);
    }
    m_callbacks.clear();
}

bool CFeatureControl::CheckExist(const std::string& name,
                                 const IFeatureCallbackHandle* handle) const {
    return std::any_of(m_callbacks.begin(), m_callbacks.end(), [&](const auto& callback) {
        return callback.get() == handle && callback->GetName() == name;
    });
}

bool CFeatureControl::CheckEventNode(const std::string& name) const {
    INode* const node = __FindNode(name);
    if (node == nullptr) {
        return false;
    }
    node_vector parents;
    OV_ENGINE_GET(node->GetParents(parents));
    for (INode* const parent : parents) {
        const gcstring parentName = OV_ENGINE_GET(parent->GetName());
        if (parentName == "Root") {
            return false;
        }
        if (parentName == "EventControl" || CheckEventNode(parentName.c_str())) {
            return true;
        }
    }
    return false;
}

}  // namespace OVTLClass
