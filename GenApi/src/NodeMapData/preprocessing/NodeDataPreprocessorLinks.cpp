// What the links of a node lead to through any chain: the nodes that depend on it, and the nodes
// in which its value ends.
//
// The dependents of all nodes are a closure that can be quadratic in the size of the description.
// It is built in one pass, circle by circle, each from the complete sets of those after it; the
// budget ends it before it takes more memory than any real camera needs.

#include "Base/GCException.h"
#include "preprocessing/LinkWalk.h"
#include "preprocessing/NodeDataPreprocessor.h"
#include "preprocessing/NodeIDUnion.h"

namespace GenApi_3_0_ORVANE {
namespace {

/// Whether a write to anything that leads to the node ends there, because it touches the
/// device or holds the value itself.
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

/// Collects the nodes, each after those that it depends on.
struct CNodeDataPreprocessor::OrderWalk {
    explicit OrderWalk(const CNodeDataMap& map) : states(map.GetNumNodeIDs()) {}

    uint8_t& State(const CNodeData& node) { return states[ToIndex(node.GetNodeID())]; }
    static NodeID_t NextLink(const CNodeData& node, size_t& cursor) {
        const CNodeIDSet& children = *node.m_pInvalidatingChildren;
        return cursor < children.size() ? children[cursor++] : NodeID_t();
    }
    void OnDone(const CNodeData& node) { order.push_back(node.GetNodeID()); }
    /// Dependencies may be mutual: two features may each invalidate the other.
    static void OnCycle(const WalkPath_t&, const CNodeData&) {}

    std::vector<uint8_t> states;
    std::vector<NodeID_t> order;
};

/// Every node before those that it depends on, as far as circles allow.
std::vector<NodeID_t> CNodeDataPreprocessor::DependencyOrder() const {
    OrderWalk walk(m_Map);
    WalkAllLinks(m_Map, walk);
    return {walk.order.rbegin(), walk.order.rend()};
}

/// For every node those that depend on it directly, in the given order.
CNodeDataPreprocessor::NodeIDLists_t CNodeDataPreprocessor::FindDependents(
    const std::vector<NodeID_t>& order) const {
    NodeIDLists_t dependents(GetNumNodes());
    for (const NodeID_t nodeID : order) {
        for (const NodeID_t child : *Node(nodeID).m_pInvalidatingChildren) {
            dependents[ToIndex(child)].push_back(nodeID);
        }
    }
    return dependents;
}

/// Fills the circle with the nodes that depend on the node and on which it depends, with itself:
/// in dependency order those that lead to it and aren't in a circle yet. Leaves it empty for a
/// node that is in one. Most circles consist of one node.
void CNodeDataPreprocessor::FindCircle(NodeID_t nodeID, const NodeIDLists_t& dependents,
                                       std::vector<bool>& isInCircle,
                                       std::vector<NodeID_t>& circle) {
    circle.clear();
    const auto enter = [&](NodeID_t member) {
        if (!isInCircle[ToIndex(member)]) {
            isInCircle[ToIndex(member)] = true;
            circle.push_back(member);
        }
    };
    enter(nodeID);
    for (size_t position = 0; position < circle.size(); ++position) {
        for (const NodeID_t dependent : dependents[ToIndex(circle[position])]) {
            enter(dependent);
        }
    }
}

/// All nodes of a circle depend on each other, so they share one set: the circle, those that
/// depend on it directly, and their sets. Those that are nearest come first, as their sets hold
/// most of the others, which are then skipped as a whole.
void CNodeDataPreprocessor::GatherDependencies(const std::vector<NodeID_t>& circle,
                                               const NodeIDLists_t& dependents,
                                               CNodeIDUnion& scratch) {
    scratch.Clear();
    for (const NodeID_t member : circle) {
        scratch.Add(member);
    }
    for (const NodeID_t member : circle) {
        const std::vector<NodeID_t>& direct = dependents[ToIndex(member)];
        m_Budget.SpendSteps(1 + direct.size());
        for (auto nodeID = direct.rbegin(); nodeID != direct.rend(); ++nodeID) {
            if (!scratch.Has(*nodeID)) {
                const CNodeIDSet& further = *Node(*nodeID).m_pAllDependingNodes;
                m_Budget.SpendSteps(further.size());
                scratch.Add(*nodeID);
                scratch.Add(further);
            }
        }
    }
    for (const NodeID_t member : circle) {
        // Spent before the set is stored, so that the bound also bounds the memory.
        m_Budget.SpendProperties(scratch.Count() - 1);
        scratch.Store(*Node(member).m_pAllDependingNodes, member);
    }
}

/// The order has every node before those that it depends on, so the sets of all that lead
/// to a circle are complete when it is reached. Each set is made once, and not again and
/// again until none grows.
void CNodeDataPreprocessor::PropagateDependencies() {
    const std::vector<NodeID_t> order = DependencyOrder();
    const NodeIDLists_t dependents = FindDependents(order);
    CNodeIDUnion scratch(GetNumNodes());
    std::vector<bool> isInCircle(GetNumNodes());
    std::vector<NodeID_t> circle;
    for (const NodeID_t nodeID : order) {
        FindCircle(nodeID, dependents, isInCircle, circle);
        if (!circle.empty()) {
            GatherDependencies(circle, dependents, scratch);
        }
    }
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        const CNodeIDSet& depending = *Node(index).m_pAllDependingNodes;
        // From the highest down: caches and printed maps have them in this order.
        AppendLinks(Node(index), CPropertyID::pDependent_ID, depending.rbegin(), depending.rend());
    }
}

/// Enters in each node the terminal nodes of the nodes that it writes to. A circle of writes
/// would never end in a register, so it is refused.
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
                const CNodeIDSet& terminals = *map.GetNodeData(child)->m_pAllTerminalNodes;
                budget.SpendSteps(1 + terminals.size());
                scratch.Add(terminals);
            }
        }
        budget.SpendProperties(scratch.Count());
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
    CPreprocessingBudget& budget;
    CNodeIDUnion scratch;
};

/// A node whose value ends in itself names itself, too.
void CNodeDataPreprocessor::PropagateTerminals() {
    TerminalWalk walk{m_Map, m_Budget, CNodeIDUnion(GetNumNodes())};
    WalkAllLinks(m_Map, walk);
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        const CNodeIDSet& terminals = *Node(index).m_pAllTerminalNodes;
        AppendLinks(Node(index), CPropertyID::pTerminal_ID, terminals.begin(), terminals.end());
    }
}

}  // namespace GenApi_3_0_ORVANE
