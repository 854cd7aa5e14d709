// Callbacks on features, and the family that a feature belongs to.

#include <algorithm>
#include <set>

#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureCallbackHandle.h"
#include "TLClassLoadTL/OvLog.h"
#include "TLClassMain/Agency.h"

namespace OVTLClass {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace): one layer below

namespace {

/// Whether a way up from the node meets "EventControl" before "Root". Old
/// descriptions may hold circles: none is gone round twice.
bool IsEventNode(INode* node, std::set<const INode*>& visited) {
    if (node == nullptr || !visited.insert(node).second) {
        return false;
    }
    node_vector parents;
    node->GetParents(parents);
    for (INode* const parent : parents) {
        const gcstring name = parent->GetName();
        if (name == "Root") {
            return false;
        }
        if (name == "EventControl" || IsEventNode(parent, visited)) {
            return true;
        }
    }
    return false;
}

}  // namespace

CFeatureControl::CFeatureControl(CNodeMapRef* nodeMap) : m_nodeMap(nodeMap) {}

CFeatureControl::~CFeatureControl() {
    DoUnregisterAllFeatureCallback();
}

IFeatureControl::IFeatureCallbackHandle* CFeatureControl::DoRegisterFeatureCallback(
    const std::string& name, const IFeatureCallback& callback) {
    std::unique_ptr<IFeatureCallback> clone(callback.Clone());
    const CallbackHandleType engineHandle = OV_ENGINE_REGISTER(
        CFeatureNodeCallback::Register(&__GetGenAPINode(name), std::move(clone)));
    CRollback registered([engineHandle] { Deregister(engineHandle); });
    m_callbacks.push_back(std::make_unique<CFeatureCallbackHandle>(engineHandle, name));
    registered.Commit();
    return m_callbacks.back().get();
}

bool CFeatureControl::__Deregister(const CFeatureCallbackHandle& handle) {
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
    // The engine may still call what it didn't give back, so that stays.
    std::erase_if(m_callbacks, [this](const auto& callback) { return __Deregister(*callback); });
}

bool CFeatureControl::CheckExist(const std::string& name,
                                 const IFeatureCallbackHandle* handle) const {
    return std::any_of(m_callbacks.begin(), m_callbacks.end(), [&](const auto& callback) {
        return callback.get() == handle && callback->GetName() == name;
    });
}

bool CFeatureControl::CheckEventNode(const std::string& name) const {
    std::set<const INode*> visited;
    return OV_ENGINE_GET(IsEventNode(__FindNode(name), visited));
}

}  // namespace OVTLClass
