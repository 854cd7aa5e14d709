// What the links of a node lead to through any chain: the nodes that depend on it, and the nodes
// in which its value ends.
//
// The dependents of all nodes are a closure that can be quadratic in the size of the description.
// It is built in one pass, circle by circle, each from the complete sets of those after it; the
// budget ends it before it takes more memory than any real camera needs.

#include "Base/GCException.h"
#include "preprocessing/LinkCycle.h"
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
    NodeID_t NextLink(NodeID_t nodeID, size_t& cursor) const {
        return NextMember(children[nodeID], cursor);
    }
    void OnDone(NodeID_t nodeID) { order.push_back(nodeID); }
    /// Dependencies may be mutual: two features may each invalidate the other.
    static void OnCycle(const WalkPath_t&, NodeID_t) {}

    const CNodeIDLists& children;
    CWalkStates states;
    NodeIDs_t order = {};
};

/// Every node before those that it depends on, as far as circles allow.
CNodeDataPreprocessor::NodeIDs_t CNodeDataPreprocessor::DependencyOrder() const {
    OrderWalk walk{m_InvalidatingChildren, CWalkStates(GetNumNodes())};
    WalkAllLinks(GetNumNodes(), walk);
    return {walk.order.rbegin(), walk.order.rend()};
}

/// Fills the circle with the nodes that depend on the node and on which it depends, with itself:
/// in dependency order those that lead to it and aren't in a circle yet. Leaves it empty for a
/// node that is in one. Most circles consist of one node.
void CNodeDataPreprocessor::FindCircle(NodeID_t nodeID, const CNodeIDLists& dependents,
                                       std::vector<bool>& isInCircle, NodeIDs_t& circle) {
    circle.clear();
    const auto enter = [&](NodeID_t member) {
        if (!isInCircle[ToIndex(member)]) {
            isInCircle[ToIndex(member)] = true;
            circle.push_back(member);
        }
    };
    enter(nodeID);
    for (size_t position = 0; position < circle.size(); ++position) {
        for (const NodeID_t dependent : dependents[circle[position]]) {
            enter(dependent);
        }
    }
}

/// All nodes of a circle depend on each other, so they share one set: the circle, those that
/// depend on it directly, and their sets. Those that are nearest come first, as their sets hold
/// most of the others, which are then skipped as a whole.
void CNodeDataPreprocessor::GatherDependencies(const NodeIDs_t& circle,
                                               const CNodeIDLists& dependents,
                                               CNodeIDUnion& scratch) {
    scratch.Clear();
    for (const NodeID_t member : circle) {
        scratch.Add(member);
    }
    for (const NodeID_t member : circle) {
        const std::span<const NodeID_t> direct = dependents[member];
        m_Budget.SpendSteps(1 + direct.size());
        for (auto nodeID = direct.rbegin(); nodeID != direct.rend(); ++nodeID) {
            if (!scratch.Has(*nodeID)) {
                const NodeIDs_t& further = m_AllDependingNodes[ToIndex(*nodeID)];
                m_Budget.SpendSteps(further.size());
                scratch.Add(*nodeID);
                scratch.Add(further);
            }
        }
    }
    for (const NodeID_t member : circle) {
        // Spent before the set is stored, so that the bound also bounds the memory.
        m_Budget.SpendProperties(scratch.Count() - 1);
        m_AllDependingNodes[ToIndex(member)] = scratch.GetMembers(member);
    }
}

/// The order has every node before those that it depends on, so the sets of all that lead
/// to a circle are complete when it is reached. Each set is made once, and not again and
/// again until none grows.
void CNodeDataPreprocessor::PropagateDependencies() {
    const NodeIDs_t order = DependencyOrder();
    // For every node those that depend on it directly, in that order.
    const CNodeIDLists dependents =
        m_InvalidatingChildren.Mirrored(order, [](NodeID_t, NodeID_t) { return true; });
    m_AllDependingNodes.resize(GetNumNodes());
    CNodeIDUnion scratch(GetNumNodes());
    std::vector<bool> isInCircle(GetNumNodes());
    NodeIDs_t circle;
    for (const NodeID_t nodeID : order) {
        FindCircle(nodeID, dependents, isInCircle, circle);
        if (!circle.empty()) {
            GatherDependencies(circle, dependents, scratch);
        }
    }
}

/// Finds for each node the terminal nodes of the nodes that it writes to. A circle of writes
/// would never end in a register, so it is refused.
struct CNodeDataPreprocessor::TerminalWalk {
    NodeID_t NextLink(NodeID_t nodeID, size_t& cursor) const {
        return IsTerminal(nodeID) ? NodeID_t() : NextMember(children[nodeID], cursor);
    }
    void OnDone(NodeID_t nodeID) {
        scratch.Clear();
        if (IsTerminal(nodeID)) {
            scratch.Add(nodeID);
        } else {
            for (const NodeID_t child : children[nodeID]) {
                const NodeIDs_t& further = terminals[ToIndex(child)];
                budget.SpendSteps(1 + further.size());
                scratch.Add(further);
            }
        }
        budget.SpendProperties(scratch.Count());
        terminals[ToIndex(nodeID)] = scratch.GetMembers();
    }
    [[noreturn]] void OnCycle(const WalkPath_t&, NodeID_t nodeID) const {
        RUNTIME_EXCEPTION("WARNING: PropagateTerminals cycle detected in node = '%s'\n",
                          map.GetNodeName(nodeID).c_str());
    }
    bool IsTerminal(NodeID_t nodeID) const {
        return IsTerminalNodeType(*map.GetNodeData(nodeID), !children[nodeID].empty());
    }

    const CNodeDataMap& map;
    const CNodeIDLists& children;
    std::vector<NodeIDs_t>& terminals;
    CPreprocessingBudget& budget;
    CNodeIDUnion scratch;
    CWalkStates states;
};

/// A node whose value ends in itself names itself, too.
void CNodeDataPreprocessor::PropagateTerminals() {
    m_AllTerminalNodes.resize(GetNumNodes());
    TerminalWalk walk{m_Map,    m_WritingChildren,           m_AllTerminalNodes,
                      m_Budget, CNodeIDUnion(GetNumNodes()), CWalkStates(GetNumNodes())};
    WalkAllLinks(GetNumNodes(), walk);
}

}  // namespace GenApi_3_0_ORVANE
