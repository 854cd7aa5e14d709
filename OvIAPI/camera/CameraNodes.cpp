#include "camera/CameraNodes.h"

#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/INodeMap.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "TLClassFeature/IFeatureControl.h"
#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvException.h"
#include "camera/FeatureTree.h"
#include "camera/NodeTable.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

namespace {

/// Takes every interface that the node has.
template <class... Interfaces>
void Take(INode& node, std::tuple<Interfaces*...>& interfaces) {
    ((std::get<Interfaces*>(interfaces) = dynamic_cast<Interfaces*>(&node)), ...);
}

NodeRole RoleOf(OV_NODE_MODULE module, INode& node) {
    if (module != OV_NODE_MODULE_CAMERA) {
        return NodeRole::None;
    }
    const gcstring name = node.GetName();
    if (name == "DeviceUserID") {
        return NodeRole::UserId;
    }
    if (name == "AcquisitionStart") {
        return NodeRole::AcquisitionStart;
    }
    return name == "AcquisitionStop" ? NodeRole::AcquisitionStop : NodeRole::None;
}

}  // namespace

CNodeRecord::CNodeRecord(COvDeviceInfo& ofCamera, OV_NODE_MODULE ofModule, INode& itself)
    : camera(ofCamera), module(ofModule), node(itself), role(RoleOf(ofModule, itself)) {
    Take(itself, interfaces);
}

OV_NODE_HANDLE CCameraNodes::HandleOf(COvDeviceInfo& camera, OV_NODE_MODULE module, INode& node) {
    {
        const CAutoLock lock(m_lock);
        const auto known = m_entries.find(&node);
        if (known != m_entries.end() && !m_isReleased) {
            return known->second.handle;
        }
    }
    // The node's name takes the lock of its map, for which other threads may wait that are here.
    const CNodeRecord record(camera, module, node);
    const CAutoLock lock(m_lock);
    if (m_isReleased) {
        OV_RAISE(CInvalidHandleError, "Invalid device handle");
    }
    const auto [entry, isNew] = m_entries.try_emplace(&node, Entry{record});
    if (isNew) {
        CRollback forget([this, &node] { m_entries.erase(&node); });
        entry->second.handle = CNodeTable::GetInstance().Add(entry->second.record);
        forget.Commit();
    }
    return entry->second.handle;
}

std::shared_ptr<const std::vector<OV_NODE_HANDLE>> CCameraNodes::GetTree(COvDeviceInfo& camera,
                                                                         OV_NODE_MODULE module,
                                                                         INodeMap& map) {
    auto& tree = m_trees[static_cast<size_t>(module)];
    {
        const CAutoLock lock(m_lock);
        if (tree != nullptr && !m_isReleased) {
            return tree;
        }
    }
    auto walked = std::make_shared<std::vector<OV_NODE_HANDLE>>();
    for (INode* const feature : FeaturesInTreeOrder(map)) {
        walked->push_back(HandleOf(camera, module, *feature));
    }
    const CAutoLock lock(m_lock);
    tree = std::move(walked);
    return tree;
}

void CCameraNodes::KeepCallback(IFeatureControl& control, INodeMap& map, const void* callback) {
    const CAutoLock lock(m_lock);
    m_callbacks.push_back({control, map, callback});
}

bool CCameraNodes::ForgetCallback(const void* callback) {
    const CAutoLock lock(m_lock);
    return m_callbacks.remove_if(
               [callback](const OuterCallback& kept) { return kept.handle == callback; }) != 0;
}

void CCameraNodes::Release() noexcept {
    OuterCallbacks callbacks;
    {
        const CAutoLock lock(m_lock);
        m_isReleased = true;
        for (const auto& [node, entry] : m_entries) {
            CNodeTable::GetInstance().Remove(entry.handle);
        }
        callbacks.swap(m_callbacks);
    }
    for (const OuterCallback& callback : callbacks) {
        callback.control.DoUnregisterFeatureCallback(reinterpret_cast<intptr_t>(callback.handle));
        // A callback runs with the lock of its map held: whoever gets the lock has waited for it.
        const AutoLock waited(callback.map.GetLock());
    }
}
