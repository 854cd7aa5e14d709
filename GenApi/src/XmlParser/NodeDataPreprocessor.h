#pragma once

#include <cstddef>
#include <vector>

#include "NodeMapData/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {

class CNodeIDUnion;

/// One preprocessing of one map: the steps and the scratch lists on the nodes,
/// which are gone with this object, whatever a step throws.
class CNodeDataPreprocessor {
public:
    explicit CNodeDataPreprocessor(CNodeDataMap& map) : m_Map(map) {}
    CNodeDataPreprocessor(const CNodeDataPreprocessor&) = delete;
    CNodeDataPreprocessor& operator=(const CNodeDataPreprocessor&) = delete;
    ~CNodeDataPreprocessor() { ReleaseChildLists(); }

    void Run();

private:
    struct OrderWalk;
    struct TerminalWalk;
    struct PropertyCycleWalk;
    struct ReadingCycleWalk;
    struct SelectionWalk;
    struct FeatureWalk;
    /// One list of nodes per node.
    using NodeIDLists_t = std::vector<std::vector<NodeID_t>>;

    /// In the order in which they run.
    void CheckDanglingNodes() const;
    void MirrorSelected();
    void BuildChildLists();
    void PropagateDependencies();
    void PropagateTerminals();
    void PreProcessSelecting();
    void DetectSelectedCycles();
    void DetectReadCycles();
    void MarkFeatures();
    void ReleaseChildLists();

    static void BuildChildLists(CNodeData& node);
    std::vector<NodeID_t> DependencyOrder() const;
    NodeIDLists_t FindInvalidated() const;
    bool GatherDependencies(CNodeData& node, const std::vector<NodeID_t>& invalidated,
                            CNodeIDUnion& scratch);
    /// Appends one link per target of the range.
    template <typename Iterator>
    static void AppendLinks(CNodeData& node, CPropertyID id, Iterator begin, Iterator end) {
        CNodeData::PropertyVector_t& properties = node.GetProperties();
        properties.reserve(properties.size() + static_cast<size_t>(end - begin));
        for (; begin != end; ++begin) {
            node.AddProperty(id, *begin);
        }
    }

    NodeIDLists_t FindReaders() const;
    NodeIDLists_t FindSelected() const;
    void CheckSelectionEnds(CNodeData& selector, const NodeIDLists_t& readers,
                            const NodeIDLists_t& selected);
    void WidenSelection(CNodeData& selector, const NodeIDLists_t& readers, NodeIDLists_t& selected);
    bool IsReadCycleTolerated() const;

    static size_t ToIndex(NodeID_t nodeID) { return static_cast<size_t>(nodeID.ToIndex()); }
    size_t GetNumNodes() const { return m_Map.GetNumNodeIDs(); }
    CNodeData& Node(NodeID_t nodeID) const { return *m_Map.GetNodeData(nodeID); }
    CNodeData& Node(size_t index) const { return Node(NodeID_t(index)); }

    CNodeDataMap& m_Map;
};

}  // namespace GenApi_3_0_ORVANE
