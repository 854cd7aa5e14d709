#pragma once

#include <cstddef>
#include <vector>

#include "nodes/NodeDataMap.h"
#include "preprocessing/PreprocessingBudget.h"

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
    NodeIDLists_t FindDependents(const std::vector<NodeID_t>& order) const;
    static void FindCircle(NodeID_t nodeID, const NodeIDLists_t& dependents,
                           std::vector<bool>& isInCircle, std::vector<NodeID_t>& circle);
    void GatherDependencies(const std::vector<NodeID_t>& circle, const NodeIDLists_t& dependents,
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
    void CheckSelectionEnds(Selection& selection);
    void WidenSelection(Selection& selection);
    bool IsReadCycleTolerated() const;

    static size_t ToIndex(NodeID_t nodeID) { return static_cast<size_t>(nodeID.ToIndex()); }
    size_t GetNumNodes() const { return m_Map.GetNumNodeIDs(); }
    CNodeData& Node(NodeID_t nodeID) const { return *m_Map.GetNodeData(nodeID); }
    CNodeData& Node(size_t index) const { return Node(NodeID_t(index)); }

    CNodeDataMap& m_Map;
    CPreprocessingBudget m_Budget;
};

}  // namespace GenApi_3_0_ORVANE
