// Widens what a selector selects to the nodes that read what it selects. A description
// says that a selector selects the gain; the gain in decibels, which reads it, changes as
// well when the selector does, and programs must be told so.

#include "preprocessing/LinkCycle.h"
#include "preprocessing/LinkWalk.h"
#include "preprocessing/NodeDataPreprocessor.h"
#include "preprocessing/NodeIDUnion.h"

namespace GenApi_3_0_ORVANE {

/// For every node the other nodes that read it directly, in ascending order.
/// Categories do not count: they list nodes and take no value from them.
CNodeIDLists CNodeDataPreprocessor::FindReaders() const {
    NodeIDs_t order;
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        if (Node(index).GetNodeType() != CNodeData::Category_ID) {
            order.emplace_back(index);
        }
    }
    return m_ReadingChildren.Mirrored(
        order, [](NodeID_t reader, NodeID_t child) { return child != reader; });
}

/// What widening the selectors, one after the other, needs to know.
struct CNodeDataPreprocessor::Selection {
    Selection(size_t numNodes, CNodeIDLists readersOfNodes)
        : readers(std::move(readersOfNodes)),
          selected(numNodes),
          selectors(numNodes),
          states(numNodes),
          selecting(numNodes),
          selectingIt(numNodes) {}

    void Select(NodeID_t nodeID, NodeID_t target) {
        selected[ToIndex(nodeID)].push_back(target);
        selectors[ToIndex(target)].push_back(nodeID);
    }
    /// Prepares for the next selector.
    void Begin(const CNodeData& node) {
        selector = node.GetNodeID();
        selecting.Clear();
        selectingIt.Clear();
        for (const CProperty& property : node.GetProperties()) {
            if (property.GetPropertyID() == CPropertyID::pSelecting_ID) {
                selecting.Add(property.NodeID());
            }
        }
        for (const NodeID_t other : selectors[ToIndex(selector)]) {
            selectingIt.Add(other);
        }
    }

    const CNodeIDLists readers;
    /// For every node the targets of its pSelected properties, in list order,
    /// and the nodes among whose targets it is.
    std::vector<NodeIDs_t> selected;
    std::vector<NodeIDs_t> selectors;
    /// The states of the walk. Every walk leaves them untouched for the next.
    CWalkStates states;
    NodeID_t selector;
    /// The nodes in the pSelecting properties of the selector, and those that
    /// have it in their pSelected properties.
    CNodeIDUnion selecting;
    CNodeIDUnion selectingIt;
};

/// Names the nodes of a read cycle in the direction of reading.
struct CNodeDataPreprocessor::ReadingCycleWalk {
    NodeID_t NextLink(NodeID_t nodeID, size_t& cursor) const {
        return NextMember(children[nodeID], cursor);
    }
    static void OnDone(NodeID_t) {}
    [[noreturn]] void OnCycle(const WalkPath_t& path, NodeID_t nodeID) const {
        ThrowLinkCycle(readCycleText, path, nodeID, map);
    }

    const CNodeDataMap& map;
    const CNodeIDLists& children;
    CWalkStates states;
};

/// Follows from a selected node the readers that its selection would draw in.
struct CNodeDataPreprocessor::SelectionWalk {
    NodeID_t NextLink(NodeID_t nodeID, size_t& cursor) const {
        const std::span<const NodeID_t> list = selection.readers[nodeID];
        while (cursor < list.size()) {
            const NodeID_t reader = list[cursor++];
            budget.SpendSteps(1);
            if (!selection.selectingIt.Has(reader)) {
                return reader;
            }
        }
        return NodeID_t();
    }
    void OnDone(NodeID_t nodeID) { walked.push_back(nodeID); }
    /// This walk goes against the direction of reading, while the message names the cycle
    /// in that direction. So a walk of its own looks for it, and may meet another cycle
    /// first.
    void OnCycle(const WalkPath_t&, NodeID_t) const {
        const size_t numNodes = map.GetNumNodeIDs();
        ReadingCycleWalk walk{map, readingChildren, CWalkStates(numNodes)};
        WalkAllLinks(numNodes, walk);
    }

    const CNodeDataMap& map;
    const CNodeIDLists& readingChildren;
    Selection& selection;
    CPreprocessingBudget& budget;
    CWalkStates& states;
    NodeIDs_t walked = {};
};

/// Nodes that read each other would draw each other into the selection for ever, so they
/// are found before the lists begin to grow.
void CNodeDataPreprocessor::CheckSelectionEnds(Selection& selection) {
    SelectionWalk walk{m_Map, m_ReadingChildren, selection, m_Budget, selection.states};
    WalkPath_t path;
    for (const NodeID_t target : selection.selected[ToIndex(selection.selector)]) {
        WalkLinks(target, path, walk);
    }
    for (const NodeID_t nodeID : walk.walked) {
        // Only what was walked is reset: clearing the whole list for every selector would
        // take the square of the map's size.
        selection.states[nodeID] = Untouched;
    }
}

/// Walks the selected nodes, including those added on the way. A repeat is looked for in
/// the list of the other node, so a reader that is reached along two ways is entered
/// twice. That stays: another result wouldn't match the caches in use. A selector that
/// reads what it selects is entered as selecting itself, which is all that a live node
/// needs to refuse its use.
void CNodeDataPreprocessor::WidenSelection(Selection& selection) {
    const NodeID_t nodeID = selection.selector;
    const NodeIDs_t& mine = selection.selected[ToIndex(nodeID)];
    for (size_t position = 0; position < mine.size(); ++position) {
        const std::span<const NodeID_t> readers = selection.readers[mine[position]];
        m_Budget.SpendSteps(readers.size());
        for (const NodeID_t reader : readers) {
            if (!selection.selecting.Has(reader)) {
                if (reader == nodeID) {
                    selection.selecting.Add(nodeID);
                }
                m_Budget.SpendProperties(1);
                Node(reader).AddProperty(CPropertyID::pSelecting_ID, nodeID);
            }
            if (reader != nodeID && !selection.selectingIt.Has(reader)) {
                m_Budget.SpendProperties(1);
                selection.Select(nodeID, reader);
                Node(nodeID).AddProperty(CPropertyID::pSelected_ID, reader);
            }
        }
    }
}

void CNodeDataPreprocessor::PreProcessSelecting() {
    Selection selection(GetNumNodes(), FindReaders());
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        for (const CProperty& property : Node(index).GetProperties()) {
            if (property.GetPropertyID() == CPropertyID::pSelected_ID) {
                selection.Select(NodeID_t(index), property.NodeID());
            }
        }
    }
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        if (!selection.selected[index].empty()) {
            selection.Begin(Node(index));
            CheckSelectionEnds(selection);
            WidenSelection(selection);
        }
    }
}

}  // namespace GenApi_3_0_ORVANE
