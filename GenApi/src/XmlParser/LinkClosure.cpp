// What a node's links lead to through any chain: the nodes that depend on it,
// and the nodes in which its value ends.

#include "Base/GCException.h"
#include "LinkWalk.h"
#include "NodeDataPreprocessor.h"
#include "NodeIDUnion.h"

namespace GenApi_3_0_ORVANE {
namespace {

/// A node that touches the device or holds a value, so that a write to
/// whatever leads to it ends there.
bool IsTerminalNodeType(const CNodeData& node, bool hasWritingChildren) {
    switch (node.GetNodeType()) {
        case CNodeData::Node_ID:
        case CNodeData::EnumEntry_ID:
        case CNodeData::MaskedIntReg_ID:
        case CNodeData::Register_ID:
        case CNodeData::IntReg_ID:
        case CNodeData::FloatReg_ID:
        case CNodeData::AdvFeatureLock_ID:
        case CNodeData::StringReg_ID:
            return true;
        case CNodeData::Integer_ID:
        case CNodeData::Enumeration_ID:
        case CNodeData::Float_ID:
        case CNodeData::String_ID:
        case CNodeData::Boolean_ID:
        case CNodeData::Command_ID:
        case CNodeData::Converter_ID:
        case CNodeData::IntConverter_ID:
            return !hasWritingChildren;
        default:
            return false;
    }
}

}  // namespace

/// Collects the nodes, each behind those that it depends on.
struct CNodeDataPreprocessor::OrderWalk {
    explicit OrderWalk(const CNodeDataMap& map) : states(map.GetNumNodeIDs()) {}

    uint8_t& State(const CNodeData& node) { return states[ToIndex(node.GetNodeID())]; }
    static NodeID_t NextLink(const CNodeData& node, size_t& cursor) {
        const CNodeIDSet& children = *node.m_pInvalidatingChildren;
        return cursor < children.size() ? children[cursor++] : NodeID_t();
    }
    void OnDone(const CNodeData& node) { order.push_back(node.GetNodeID()); }
    /// Dependencies may be mutual.
    static void OnCycle(const WalkPath_t&, const CNodeData&) {}

    std::vector<uint8_t> states;
    std::vector<NodeID_t> order;
};

/// Every node before those that it depends on, as far as cycles let.
std::vector<NodeID_t> CNodeDataPreprocessor::DependencyOrder() const {
    OrderWalk walk(m_Map);
    WalkPath_t path;
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        WalkLinks(m_Map, Node(index), path, walk);
    }
    return {walk.order.rbegin(), walk.order.rend()};
}

/// For every node those that depend on it directly.
CNodeDataPreprocessor::NodeIDLists_t CNodeDataPreprocessor::FindInvalidated() const {
    NodeIDLists_t invalidated(GetNumNodes());
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        for (const NodeID_t child : *Node(index).m_pInvalidatingChildren) {
            invalidated[ToIndex(child)].emplace_back(index);
        }
    }
    return invalidated;
}

/// Who depends on a node: those that do directly, and who depends on these.
/// Answers whether the set has grown.
bool CNodeDataPreprocessor::GatherDependencies(CNodeData& node,
                                               const std::vector<NodeID_t>& invalidated,
                                               CNodeIDUnion& scratch) {
    scratch.Clear();
    for (const NodeID_t nodeID : invalidated) {
        scratch.Add(nodeID);
        scratch.Add(*Node(nodeID).m_pAllDependingNodes);
    }
    scratch.Remove(node.GetNodeID());
    if (scratch.Count() == node.m_pAllDependingNodes->size()) {
        return false;
    }
    scratch.Store(*node.m_pAllDependingNodes);
    return true;
}

/// Links without cycles are done with in one round, thanks to the order. Cycles
/// take more, until no set grows any further.
void CNodeDataPreprocessor::PropagateDependencies() {
    const std::vector<NodeID_t> order = DependencyOrder();
    const NodeIDLists_t invalidated = FindInvalidated();
    CNodeIDUnion scratch(GetNumNodes());
    std::vector<bool> isStale(GetNumNodes(), true);
    for (bool hasNews = true; hasNews;) {
        hasNews = false;
        for (const NodeID_t nodeID : order) {
            const size_t index = ToIndex(nodeID);
            if (!isStale[index]) {
                continue;
            }
            isStale[index] = false;
            if (GatherDependencies(Node(nodeID), invalidated[index], scratch)) {
                hasNews = true;
                for (const NodeID_t child : *Node(nodeID).m_pInvalidatingChildren) {
                    isStale[ToIndex(child)] = true;
                }
            }
        }
    }
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        const CNodeIDSet& depending = *Node(index).m_pAllDependingNodes;
        AppendLinks(Node(index), CPropertyID::pDependent_ID, depending.rbegin(), depending.rend());
    }
}

/// Inserts in each node the terminal nodes of the nodes that it writes to.
struct CNodeDataPreprocessor::TerminalWalk {
    static int32_t& State(CNodeData& node) { return node.m_TerminalState; }
    static NodeID_t NextLink(const CNodeData& node, size_t& cursor) {
        const std::vector<NodeID_t>& children = *node.m_pWritingChildren;
        return !IsTerminal(node) && cursor < children.size() ? children[cursor++] : NodeID_t();
    }
    void OnDone(const CNodeData& node) {
        scratch.Clear();
        if (IsTerminal(node)) {
            scratch.Add(node.GetNodeID());
        } else {
            for (const NodeID_t child : *node.m_pWritingChildren) {
                scratch.Add(*map.GetNodeData(child)->m_pAllTerminalNodes);
            }
        }
        scratch.Store(*node.m_pAllTerminalNodes);
    }
    [[noreturn]] static void OnCycle(const WalkPath_t&, const CNodeData& node) {
        RUNTIME_EXCEPTION("WARNING: PropagateTerminals cycle detected in node = '%s'\n",
                          node.GetName().c_str());
    }
    static bool IsTerminal(const CNodeData& node) {
        return IsTerminalNodeType(node, !node.m_pWritingChildren->empty());
    }

    const CNodeDataMap& map;
    CNodeIDUnion scratch;
};

void CNodeDataPreprocessor::PropagateTerminals() {
    WalkAllLinks(m_Map, TerminalWalk{m_Map, CNodeIDUnion(GetNumNodes())});
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        const CNodeIDSet& terminals = *Node(index).m_pAllTerminalNodes;
        AppendLinks(Node(index), CPropertyID::pTerminal_ID, terminals.begin(), terminals.end());
    }
}

}  // namespace GenApi_3_0_ORVANE
