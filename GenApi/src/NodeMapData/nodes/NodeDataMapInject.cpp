// Merging one description into another. Nodes that only one of them has are taken over. For a
// node that both have, its merge priority decides; categories and enumerations are merged by
// their content.

#include <set>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "nodes/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {
namespace {

/// Categories and enumerations are what injected descriptions extend, by features and entries, so
/// those of both count.
bool IsMergedByContent(const CNodeData& node) {
    return node.GetNodeType() == CNodeData::Category_ID ||
           node.GetNodeType() == CNodeData::Enumeration_ID;
}

/// All nodes of an injected map except its root, whose attributes describe the file and not the
/// camera.
std::vector<const CNodeData*> NodesToInject(const CNodeDataMap& other) {
    std::vector<const CNodeData*> nodes;
    for (size_t index = 0; index < other.GetNumNodeIDs(); ++index) {
        const CNodeData* pNodeData = other.GetNodeData(NodeID_t(index));
        if (pNodeData != nullptr && pNodeData->GetNodeType() != CNodeData::RegisterDescription_ID) {
            nodes.push_back(pNodeData);
        }
    }
    return nodes;
}

/// Reserves the names that are new, so that links between injected nodes can be translated.
/// Conflicts are found here, before anything is changed.
/// @return the nodes to merge by content
std::vector<const CNodeData*> ReserveNames(const std::vector<const CNodeData*>& nodes,
                                           CNodeDataMap& target) {
    std::vector<const CNodeData*> shared;
    for (const CNodeData* pNodeData : nodes) {
        const std::string& name = pNodeData->GetName();
        // A name without a node is no conflict: other nodes have referred to it, and it
        // waits for this one.
        if (target.GetNodeData(target.GetNodeID(name, true)) == nullptr) {
            continue;
        }
        const int64_t priority = pNodeData->GetMergePriority();
        if (priority == -1 || priority == 1) {
            continue;
        }
        if (!IsMergedByContent(*pNodeData)) {
            RUNTIME_EXCEPTION("Merge conflict with node '%s'", name.c_str());
        }
        shared.push_back(pNodeData);
    }
    return shared;
}

/// A node with the priority 1 takes the place of the one that is there; all others only fill
/// gaps.
void CopyNodes(const std::vector<const CNodeData*>& nodes, CNodeDataMap& target) {
    for (const CNodeData* pNodeData : nodes) {
        const NodeID_t NodeIDTarget = target.FindNodeID(pNodeData->GetName());
        OV_ASSERT(NodeIDTarget != NodeID_t());
        const bool isOccupied = target.GetNodeData(NodeIDTarget) != nullptr;
        if (!isOccupied || pNodeData->GetMergePriority() == 1) {
            target.SetNodeData(
                std::make_unique<CNodeData>(*pNodeData, NodeIDTarget, &target, false), isOccupied);
        }
    }
}

/// Appends the links of one kind that the existing node doesn't have yet.
void MergeLinks(const CNodeData& source, CNodeData& existing, CPropertyID id,
                CNodeDataMap& target) {
    std::set<NodeID_t> known;
    for (const CProperty& property : existing.GetProperties()) {
        if (property.GetPropertyID() == id) {
            known.insert(property.NodeID());
        }
    }
    for (const CProperty& property : source.GetProperties()) {
        if (property.GetPropertyID() != id) {
            continue;
        }
        CProperty copy(property, &target);
        if (known.insert(copy.NodeID()).second) {
            existing.AddProperty(std::move(copy));
        }
    }
}

/// Merges into those existing nodes that are of the given type. The type of the existing
/// node counts: an injected category may meet an enumeration of its name, into which no
/// feature belongs.
void MergeByContent(const std::vector<const CNodeData*>& shared, CNodeData::ENodeType_t type,
                    CPropertyID id, CNodeDataMap& target) {
    for (const CNodeData* pNodeData : shared) {
        CNodeData* pExisting = target.GetNodeData(target.FindNodeID(pNodeData->GetName()));
        if (pExisting->GetNodeType() == type) {
            MergeLinks(*pNodeData, *pExisting, id, target);
        }
    }
}

}  // namespace

/// Nodes come first and contents second: by then every link has a node to lead to.
void CNodeDataMap::Inject(const CNodeDataMap& other) {
    const std::vector<const CNodeData*> nodes = NodesToInject(other);
    const std::vector<const CNodeData*> shared = ReserveNames(nodes, *this);
    CopyNodes(nodes, *this);
    MergeByContent(shared, CNodeData::Category_ID, CPropertyID::pFeature_ID, *this);
    MergeByContent(shared, CNodeData::Enumeration_ID, CPropertyID::pEnumEntry_ID, *this);
}

}  // namespace GenApi_3_0_ORVANE
