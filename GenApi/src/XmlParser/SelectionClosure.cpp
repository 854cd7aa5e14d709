// Widens what a selector selects to the nodes that read what it selects.

#include <algorithm>

#include "Base/OvAssert.h"
#include "LinkCycle.h"
#include "LinkWalk.h"
#include "NodeDataPreprocessor.h"

namespace GenApi_3_0_ORVANE {
namespace {

bool Contains(const std::vector<NodeID_t>& list, NodeID_t nodeID) {
    return std::find(list.begin(), list.end(), nodeID) != list.end();
}

}  // namespace

/// For every node the other nodes that read it directly, in ascending order.
/// Categories do not count: they list nodes and take no value from them.
CNodeDataPreprocessor::NodeIDLists_t CNodeDataPreprocessor::FindReaders() const {
    NodeIDLists_t readers(GetNumNodes());
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        const NodeID_t reader(index);
        if (Node(reader).GetNodeType() == CNodeData::Category_ID) {
            continue;
        }
        for (const NodeID_t child : *Node(reader).m_pReadingChildren) {
            std::vector<NodeID_t>& list = readers[ToIndex(child)];
            if (child != reader && (list.empty() || list.back() != reader)) {
                list.push_back(reader);
            }
        }
    }
    return readers;
}

/// For every node the targets of its pSelected properties, in list order.
CNodeDataPreprocessor::NodeIDLists_t CNodeDataPreprocessor::FindSelected() const {
    NodeIDLists_t selected(GetNumNodes());
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        for (const CProperty& property : Node(index).GetProperties()) {
            if (property.GetPropertyID() == CPropertyID::pSelected_ID) {
                selected[index].push_back(property.NodeID());
            }
        }
    }
    return selected;
}

/// Names the nodes of a read cycle in the direction of reading.
struct CNodeDataPreprocessor::ReadingCycleWalk {
    static uint8_t& State(CNodeData& node) { return node.m_ReadVisited; }
    static NodeID_t NextLink(const CNodeData& node, size_t& cursor) {
        const std::vector<NodeID_t>& children = *node.m_pReadingChildren;
        return cursor < children.size() ? children[cursor++] : NodeID_t();
    }
    static void OnDone(const CNodeData&) {}
    [[noreturn]] static void OnCycle(const WalkPath_t& path, const CNodeData& node) {
        ThrowLinkCycle(readCycleText, path, node);
    }
};

/// Follows from a selected node the readers that its selection would draw in.
struct CNodeDataPreprocessor::SelectionWalk {
    uint8_t& State(const CNodeData& node) { return states[ToIndex(node.GetNodeID())]; }
    NodeID_t NextLink(const CNodeData& node, size_t& cursor) const {
        const std::vector<NodeID_t>& list = readers[ToIndex(node.GetNodeID())];
        while (cursor < list.size()) {
            const NodeID_t reader = list[cursor++];
            if (!Contains(selected[ToIndex(reader)], selector)) {
                return reader;
            }
        }
        return NodeID_t();
    }
    static void OnDone(const CNodeData&) {}
    /// The walk goes against the direction of reading, so the way round is told
    /// by a walk of its own, which meets this cycle or another one before it.
    void OnCycle(const WalkPath_t&, const CNodeData&) const {
        WalkAllLinks(map, ReadingCycleWalk());
    }

    const CNodeDataMap& map;
    const NodeIDLists_t& readers;
    const NodeIDLists_t& selected;
    NodeID_t selector;
    std::vector<uint8_t> states;
};

/// Nodes that read each other would draw each other into the selection for
/// ever, so they are found before the lists begin to grow.
void CNodeDataPreprocessor::CheckSelectionEnds(CNodeData& selector, const NodeIDLists_t& readers,
                                               const NodeIDLists_t& selected) {
    const NodeID_t nodeID = selector.GetNodeID();
    SelectionWalk walk{m_Map, readers, selected, nodeID, std::vector<uint8_t>(GetNumNodes())};
    WalkPath_t path;
    for (const NodeID_t target : selected[ToIndex(nodeID)]) {
        WalkLinks(m_Map, Node(target), path, walk);
    }
}

/// Walks the selected nodes, those added on the way too. A repeat is looked for
/// in the list of the other node, so a reader that is reached along two ways is
/// entered twice. That stays: a new result would not match the caches in use.
void CNodeDataPreprocessor::WidenSelection(CNodeData& selector, const NodeIDLists_t& readers,
                                           NodeIDLists_t& selected) {
    const NodeID_t nodeID = selector.GetNodeID();
    std::vector<bool> isSelecting(GetNumNodes());
    for (const CProperty& property : selector.GetProperties()) {
        if (property.GetPropertyID() == CPropertyID::pSelecting_ID) {
            isSelecting[ToIndex(property.NodeID())] = true;
        }
    }
    std::vector<NodeID_t>& mine = selected[ToIndex(nodeID)];
    for (size_t position = 0; position < mine.size(); ++position) {
        for (const NodeID_t reader : readers[ToIndex(mine[position])]) {
            if (!isSelecting[ToIndex(reader)]) {
                if (reader == nodeID) {
                    OV_ASSERT(false);
                }
                Node(reader).AddProperty(CPropertyID::pSelecting_ID, nodeID);
            }
            if (!Contains(selected[ToIndex(reader)], nodeID)) {
                mine.push_back(reader);
                selector.AddProperty(CPropertyID::pSelected_ID, reader);
            }
        }
    }
}

void CNodeDataPreprocessor::PreProcessSelecting() {
    const NodeIDLists_t readers = FindReaders();
    NodeIDLists_t selected = FindSelected();
    for (size_t index = 0; index < GetNumNodes(); ++index) {
        if (!selected[index].empty()) {
            CheckSelectionEnds(Node(index), readers, selected);
            WidenSelection(Node(index), readers, selected);
        }
    }
}

}  // namespace GenApi_3_0_ORVANE
