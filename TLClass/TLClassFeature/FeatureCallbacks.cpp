// Callbacks on features, and the family that a feature belongs to.

#include <algorithm>
#include <set>

#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureCallbackHandle.h"
#include "TLClassSupport/OvLog.h"
#include "TLClassSupport/RunLogged.h"

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

bool IsHandle(const IFeatureControl::IFeatureCallbackHandle* callback, const void* handle) {
    return static_cast<const void*>(callback) == handle;
}

}  // namespace

CFeatureControl::CFeatureControl(CNodeMapRef* nodeMap) : m_nodeMap(nodeMap) {}

CFeatureControl::~CFeatureControl() {
    DoUnregisterAllFeatureCallback();
}

IFeatureControl::IFeatureCallbackHandle* CFeatureControl::DoRegisterFeatureCallback(
    CFeatureName name, const IFeatureCallback& callback) {
    std::unique_ptr<IFeatureCallback> clone(callback.Clone());
    // The handle's memory is taken before the node knows the callback.
    HandleList added;
    added.push_back(std::make_unique<CFeatureCallbackHandle>(name.Get()));
    CFeatureCallbackHandle& handle = *added.back();
    handle.SetEngineHandle(OV_ENGINE_REGISTER(
        CFeatureNodeCallback::Register(&__GetGenAPINode(name), std::move(clone))));
    __Keep(added);
    return &handle;
}

void CFeatureControl::__Keep(HandleList& handles) {
    const CAutoLock lock(m_callbacksLock);
    m_callbacks.splice(m_callbacks.end(), handles);
}

template <class Wanted>
void CFeatureControl::__Deregister(const Wanted& isWanted) {
    HandleList taken;
    {
        const CAutoLock lock(m_callbacksLock);
        for (auto next = m_callbacks.begin(); next != m_callbacks.end();) {
            const auto handle = next++;
            if (isWanted(handle->get())) {
                taken.splice(taken.end(), m_callbacks, handle);
            }
        }
    }
    // The engine's lock is taken here, which a thread may hold that registers in a
    // callback. What the engine doesn't release it may still call, so that stays.
    taken.remove_if([](const auto& handle) {
        bool done = false;
        OV_RUN_LOGGED([&] {
            Deregister(handle->GetEngineHandle());
            done = true;
        });
        return done;
    });
    __Keep(taken);
}

void CFeatureControl::DoUnregisterFeatureCallback(intptr_t handle) {
    __Deregister([handle](const IFeatureCallbackHandle* registered) {
        return reinterpret_cast<intptr_t>(registered) == handle;
    });
}

void CFeatureControl::DoUnregisterAllFeatureCallback() {
    __Deregister([](const IFeatureCallbackHandle* /*registered*/) { return true; });
}

bool CFeatureControl::CheckExist(const std::string& name, const void* handle) const {
    const CAutoLock lock(m_callbacksLock);
    return std::any_of(m_callbacks.begin(), m_callbacks.end(), [&](const auto& callback) {
        return IsHandle(callback.get(), handle) && callback->GetName() == name;
    });
}

bool CFeatureControl::CheckExist(const void* handle) const {
    const CAutoLock lock(m_callbacksLock);
    return std::any_of(m_callbacks.begin(), m_callbacks.end(),
                       [handle](const auto& callback) { return IsHandle(callback.get(), handle); });
}

bool CFeatureControl::CheckEventNode(CFeatureName name) const {
    std::set<const INode*> visited;
    return OV_ENGINE_GET(IsEventNode(__FindNode(name), visited));
}

}  // namespace OVTLClass
