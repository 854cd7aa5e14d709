// Extracting a node, with everything that it needs, into a description of its own.

#include <algorithm>
#include <set>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "nodes/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {
namespace {

constexpr std::string_view rootName = "Root";

/// Adds a node and all that its value, availability and invalidation need. By a list of open
/// nodes rather than recursion: chains are as long as the description likes.
void CollectSubtree(const CNodeDataMap& map, NodeID_t start, std::set<NodeID_t>& collected) {
    std::vector<NodeID_t> pending{start};
    while (!pending.empty()) {
        const NodeID_t nodeID = pending.back();
        pending.pop_back();
        if (!collected.insert(nodeID).second) {
            continue;
        }
        const CNodeData* const pNodeData = map.GetNodeData(nodeID);
        OV_ASSERT(pNodeData != NULL);  // NOLINT(modernize-use-nullptr): a failure prints it
        for (const CProperty& property : pNodeData->GetProperties()) {
            if (property.GetPropertyID().IsInvalidatingLink()) {
                pending.push_back(property.NodeID());
            }
        }
    }
}

/// Reserves the identifiers of the collected nodes in the new map before any of them is copied,
/// so that links between them resolve in both directions.
class NodeIDTranslator {
public:
    NodeIDTranslator(const CNodeDataMap& source, const std::set<NodeID_t>& nodes,
                     CNodeDataMap& target) {
        m_Pairs.reserve(nodes.size());
        for (const NodeID_t nodeID : nodes) {
            const CNodeData* const pNodeData = source.GetNodeData(nodeID);
            OV_ASSERT(pNodeData != NULL);  // NOLINT(modernize-use-nullptr): a failure prints it
            m_Pairs.emplace_back(pNodeData, target.GetNodeID(pNodeData->GetName(), true));
        }
    }

    /// Nodes of the source and their identifiers in the target.
    const std::vector<std::pair<const CNodeData*, NodeID_t>>& Pairs() const { return m_Pairs; }

private:
    std::vector<std::pair<const CNodeData*, NodeID_t>> m_Pairs;
};

/// Collecting doesn't follow attributes, so an attribute's target may be missing. A link
/// without its attribute would mean something else, so that is a failure.
void RequireTargetsOfAttributes(const CNodeData& node, const CNodeDataMap& target) {
    for (const CProperty& property : node.GetProperties()) {
        const CProperty* const attribute = property.GetAttribute();
        if (attribute == nullptr || attribute->GetDataType() != CProperty::Node_ID) {
            continue;
        }
        const std::string& name = node.GetNodeDataMap()->GetNodeName(attribute->NodeID());
        if (!target.FindNodeID(name).IsValid()) {
            RUNTIME_EXCEPTION("TargetNodeID != NodeID_t()");
        }
    }
}

/// What is a feature depends on the tree of categories, which the extract doesn't have unless its
/// root comes along.
void CopyNodes(const NodeIDTranslator& translator, CNodeDataMap& target, bool keepIsFeature) {
    for (const auto& [pNodeData, nodeID] : translator.Pairs()) {
        RequireTargetsOfAttributes(*pNodeData, target);
        auto pCopy = std::make_unique<CNodeData>(*pNodeData, nodeID, &target, true);
        if (!keepIsFeature) {
            pCopy->RemoveProperties(CPropertyID::IsFeature_ID);
        }
        target.SetNodeData(std::move(pCopy), false);
    }
}

}  // namespace

void CNodeDataMap::ExtractIndependentSubtree(CNodeDataMap& toExtractTree, std::string_view name,
                                             bool renameToRoot) const {
    const NodeID_t start = FindNodeID(name);
    if (!start.IsValid()) {
        INVALID_ARGUMENT_EXCEPTION("Node '%s' not found", std::string(name).c_str());
    }
    const CNodeData* const pStart = GetNodeData(start);
    const bool isCategory = pStart != nullptr && pStart->GetNodeType() == CNodeData::Category_ID;
    if (renameToRoot && !isCategory) {
        INVALID_ARGUMENT_EXCEPTION("Only category nodes can be renamed to \"Root\"");
    }

    // In the order of the source's identifiers, the root comes first here, too.
    std::set<NodeID_t> nodes{FindNodeID(kRootNodeName)};
    CollectSubtree(*this, start, nodes);
    const NodeIDTranslator translator(*this, nodes, toExtractTree);
    const bool hasRoot = toExtractTree.FindNodeID(rootName).IsValid();
    CopyNodes(translator, toExtractTree, hasRoot || renameToRoot);

    if (renameToRoot && name != rootName) {
        if (hasRoot) {
            INVALID_ARGUMENT_EXCEPTION(
                "Cannot rename to \"Root\" because a node named \"Root\" already exists after "
                "extracting the subtree.");
        }
        RenameToRoot(toExtractTree, name);
    }
}

/// The identifier stays, so that links to the node lead to it under its new name.
void CNodeDataMap::RenameToRoot(CNodeDataMap& toExtractTree, std::string_view name) {
    const auto pos = toExtractTree.m_pNodeName2NodeID->find(name);
    OV_ASSERT(pos != toExtractTree.m_pNodeName2NodeID->end());
    const NodeID_t nodeID = pos->second;
    // The table of names points into the entry, which stays where it is.
    auto entry = toExtractTree.m_pNodeName2NodeID->extract(pos);
    entry.key() = rootName;
    toExtractTree.m_pNodeName2NodeID->insert(std::move(entry));

    CNodeData& node = *toExtractTree.GetNodeData(nodeID);
    node.RemoveProperties(CPropertyID::Name_ID);
    node.AddProperty(CPropertyID::Name_ID, rootName);
}

}  // namespace GenApi_3_0_ORVANE
