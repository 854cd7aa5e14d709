// Completes a description with what live nodes need and it doesn't say: the other ends of links,
// which nodes depend on one, where writes end, what a selector reaches, and which nodes are
// features. Everything is appended as properties, in an order that never changes, since cache
// files hold the result.

#include "preprocessing/NodeDataPreprocessor.h"

#include <algorithm>
#include <utility>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "preprocessing/LinkCycle.h"
#include "preprocessing/LinkWalk.h"

namespace GenApi_3_0_ORVANE {
namespace {

/// The numbers of the enumeration that IsFeature holds.
enum EFeature : int32_t { FeatureYes = 1 };

}  // namespace

/// The steps build on one another. What the description itself has said ends before the first:
/// merges copy only that.
void CNodeDataPreprocessor::Run() {
    CheckDanglingNodes();
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        Node(index).EndGivenProperties();
    }
    MirrorSelected();
    BuildChildLists();
    PropagateDependencies();
    PropagateTerminals();
    StoreClosures();
    PreProcessSelecting();
    DetectSelectedCycles();
    DetectReadCycles();
    MarkFeatures();
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        // Nothing is appended after this.
        Node(index).ShrinkToFit();
    }
}

/// All later steps follow links without asking whether there is a node.
void CNodeDataPreprocessor::CheckDanglingNodes() const {
    const NodeID_t dangling = m_Map.FindDanglingNode();
    if (dangling.IsValid()) {
        RUNTIME_EXCEPTION("Error in XML stream : dangling node reference '%s'",
                          m_Map.GetNodeName(dangling).c_str());
    }
}

/// Descriptions say which features a selector selects; features have to know their selectors as
/// well.
void CNodeDataPreprocessor::MirrorSelected() {
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        // A node may select itself, so the list may grow while it is walked.
        const CNodeData::PropertyVector_t& properties = Node(index).GetProperties();
        for (size_t position = 0; position < properties.size(); ++position) {
            if (properties[position].GetPropertyID() == CPropertyID::pSelected_ID) {
                Node(properties[position].NodeID())
                    .AddProperty(CPropertyID::pSelecting_ID, NodeID_t(index));
            }
        }
    }
}

/// Links are looked through once here, and many times later.
void CNodeDataPreprocessor::BuildChildLists() {
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        BuildChildLists(Node(index));
    }
}

/// Attributes may be links, too: the offset of an index, for example.
void CNodeDataPreprocessor::BuildChildLists(const CNodeData& node) {
    const auto addReader = [this](const CProperty& property) {
        if (property.GetPropertyID().IsInvalidatingLink()) {
            m_InvalidatingChildren.Add(property.NodeID());
        }
        if (property.GetPropertyID().IsReadingLink()) {
            m_ReadingChildren.Add(property.NodeID());
        }
    };
    for (const CProperty& property : node.GetProperties()) {
        addReader(property);
        if (property.GetPropertyID().IsWritingLink()) {
            m_WritingChildren.Add(property.NodeID());
        }
        // An attribute is read together with its link, and never written.
        if (const CProperty* pAttribute = property.GetAttribute()) {
            addReader(*pAttribute);
        }
    }
    m_ReadingChildren.End();
    m_WritingChildren.End();
    m_InvalidatingChildren.EndAsSet();
}

/// Dependents from the highest down: printed maps and clients of the graph have them in this order.
void CNodeDataPreprocessor::StoreClosures() {
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        NodeIDs_t& dependents = m_AllDependingNodes[index];
        std::reverse(dependents.begin(), dependents.end());
        Node(index).SetClosure(std::move(dependents), std::move(m_AllTerminalNodes[index]));
    }
}

namespace {

/// The next feature of a category; the invalid identifier at the end.
NodeID_t NextFeature(const CNodeData& node, size_t& cursor) {
    return NextProperty(node, cursor,
                        [](CPropertyID id) { return id == CPropertyID::pFeature_ID; });
}

}  // namespace

/// Collects the categories and their features, each after what it lists.
struct CNodeDataPreprocessor::FeatureWalk {
    explicit FeatureWalk(const CNodeDataMap& dataMap)
        : map(dataMap), states(dataMap.GetNumNodeIDs()) {}

    NodeID_t NextLink(NodeID_t nodeID, size_t& cursor) const {
        return NextFeature(*map.GetNodeData(nodeID), cursor);
    }
    void OnDone(NodeID_t nodeID) { order.push_back(nodeID); }
    /// Only descriptions whose read links weren't checked get here. Without this their
    /// walk would never end.
    [[noreturn]] void OnCycle(const WalkPath_t& path, NodeID_t nodeID) const {
        ThrowLinkCycle(readCycleText, path, nodeID, map);
    }

    const CNodeDataMap& map;
    CWalkStates states;
    NodeIDs_t order;
};

/// Marks each node once for every way that leads to it from the root. The ways are counted and
/// not walked, as there may be very many: categories that are nested as diamonds double them with
/// each level.
void CNodeDataPreprocessor::MarkFeatures() {
    const NodeID_t root = m_Map.FindNodeID("Root");
    if (!root.IsValid() || Node(root).GetNodeType() != CNodeData::Category_ID) {
        return;
    }
    WalkPath_t path;
    FeatureWalk walk(m_Map);
    WalkLinks(root, path, walk);
    std::vector<size_t> numWays(GetNumNodes());
    numWays[ToIndex(root)] = 1;
    // In reverse, every category comes before what it lists, so its own count is complete
    // when it is passed on.
    for (auto nodeID = walk.order.rbegin(); nodeID != walk.order.rend(); ++nodeID) {
        CNodeData& node = Node(*nodeID);
        const size_t count = numWays[ToIndex(*nodeID)];
        m_Budget.SpendProperties(count);
        size_t cursor = 0;
        for (NodeID_t feature = NextFeature(node, cursor); feature.IsValid();
             feature = NextFeature(node, cursor)) {
            numWays[ToIndex(feature)] += count;
        }
        for (size_t way = 0; way < count; ++way) {
            node.AddProperty(CPropertyID::IsFeature_ID, CProperty::EYesNo_ID, FeatureYes);
        }
    }
}

}  // namespace GenApi_3_0_ORVANE
