#pragma once

#include <cstddef>
#include <vector>

#include "nodes/NodeDataMap.h"
#include "preprocessing/NodeIDLists.h"
#include "preprocessing/PreprocessingBudget.h"

namespace GenApi_3_0_ORVANE {

class CNodeIDUnion;

/// One preprocessing of one map: the steps and their scratch lists.
class CNodeDataPreprocessor {
public:
    explicit CNodeDataPreprocessor(CNodeDataMap& map) : m_Map(map) {}
    CNodeDataPreprocessor(const CNodeDataPreprocessor&) = delete;
    CNodeDataPreprocessor& operator=(const CNodeDataPreprocessor&) = delete;

    void Run();
    /// What has been spent so far.
    const CPreprocessingBudget& GetBudget() const { return m_Budget; }

private:
    struct OrderWalk;
    struct TerminalWalk;
    struct PropertyCycleWalk;
    struct ReadingCycleWalk;
    struct Selection;
    struct SelectionWalk;
    struct FeatureWalk;
    using NodeIDs_t = CNodeData::NodeIDs_t;

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

    void BuildChildLists(const CNodeData& node);
    NodeIDs_t DependencyOrder() const;
    static void FindCircle(NodeID_t nodeID, const CNodeIDLists& dependents,
                           std::vector<bool>& isInCircle, NodeIDs_t& circle);
    void GatherDependencies(const NodeIDs_t& circle, const CNodeIDLists& dependents,
                            CNodeIDUnion& scratch);
    void StoreClosures();

    CNodeIDLists FindReaders() const;
    void CheckSelectionEnds(Selection& selection);
    void WidenSelection(Selection& selection);
    bool IsReadCycleTolerated() const;

    static size_t ToIndex(NodeID_t nodeID) { return static_cast<size_t>(nodeID.ToIndex()); }
    size_t GetNumNodes() const { return m_Map.GetNumNodeIDs(); }
    CNodeData& Node(NodeID_t nodeID) const { return *m_Map.GetNodeData(nodeID); }
    CNodeData& Node(size_t index) const { return Node(NodeID_t(index)); }

    CNodeDataMap& m_Map;
    CPreprocessingBudget m_Budget;
    // For every node the targets of its links, those of the attributes included. The lists keep
    // repeats and the order of the description, the sets have neither.
    CNodeIDLists m_ReadingChildren;
    CNodeIDLists m_WritingChildren;
    /// A set.
    CNodeIDLists m_InvalidatingChildren;
    /// For every node the set of those that depend on it, and of those in which its value ends.
    std::vector<NodeIDs_t> m_AllDependingNodes;
    std::vector<NodeIDs_t> m_AllTerminalNodes;
};

}  // namespace GenApi_3_0_ORVANE
