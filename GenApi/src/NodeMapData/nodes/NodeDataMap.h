#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "NodeMapData/NodeStatistics.h"
#include "nodes/NodeData.h"
#include "nodes/TextStore.h"
#include "properties/INodeDataMap.h"
#include "properties/NodeID.h"
#include "properties/ToStringStyle.h"

namespace GenApi_3_0_ORVANE {

/// A whole camera description as data: the nodes, their names and all texts.
/// Filled by the parser or from the cache, merged with injected maps,
/// preprocessed once and then only read. One thread at a time.
class CNodeDataMap : public INodeDataMap {
public:
    using NodeStatistics_t = GenApi_3_0_ORVANE::NodeStatistics_t;

    CNodeDataMap();
    CNodeDataMap(const CNodeDataMap&) = delete;
    CNodeDataMap& operator=(const CNodeDataMap&) = delete;

    NodeID_t GetNodeID(std::string_view name, bool create) override;
    const std::string& GetNodeName(NodeID_t NodeID) const override;
    StringID_t SetString(std::string_view text) override;
    std::string_view GetString(StringID_t StringID) const override;
    virtual ~CNodeDataMap();

    /// The identifier of a name; invalid when the name is unknown.
    NodeID_t FindNodeID(std::string_view name) const;
    /// Returns the number of identifiers in use, also of names that have no node yet.
    size_t GetNumNodeIDs() const { return m_pNodeID2NodeData->size(); }
    size_t GetNumStrings() const { return m_pStringID2String->size(); }
    /// Returns the node of a valid identifier; null while only its name is known.
    CNodeData* GetNodeData(NodeID_t NodeID) const;
    /// The node stored last, or null. Owned by the map.
    CNodeData* GetLastNodeData() const;

    /// Stores a named node of this map in its slot.
    /// @param replace the slot holds a node, which is deleted; without it the
    ///        slot must be free.
    /// @throws RuntimeException when the name is taken by another node.
    void SetNodeData(std::unique_ptr<CNodeData> pNodeData, bool replace);

    /// The node whose XML element is open and names its children; null when
    /// there is none. Not owned. Setting and clearing must alternate.
    CNodeData* GetContextNode() const { return m_pContextNode; }
    void SetContextNode(CNodeData* pContextNode);

    /// Empties the map. There must be no context node.
    void Clear() noexcept;

    /// Merges the nodes of @p other into this map. @p other is consistent and keeps its content.
    /// @throws RuntimeException if both define a node and neither its type nor its merge priority
    ///         says how to merge them
    void Inject(const CNodeDataMap& other);

    /// The first identifier that is referred to and has no node; invalid when
    /// every reference is met.
    NodeID_t FindDanglingNode() const;
    /// @throws RuntimeException that names the first node that is referred to
    ///         and not defined.
    void CheckConsistency() const;

    /// Copies the node @p name and all it needs into the empty map
    /// @p toExtractTree.
    /// @param renameToRoot the node is a category and is called "Root" there.
    /// @throws InvalidArgumentException when the node is missing or cannot be
    ///         renamed.
    void ExtractIndependentSubtree(CNodeDataMap& toExtractTree, std::string_view name,
                                   bool renameToRoot) const;

    /// Writes the map, which is consistent and within kCacheFileMaxCount, in the binary form of
    /// the cache. Equal maps make equal bytes.
    void ToFile(CCacheWriter& writer) const;
    /// Fills the empty map. Of no use when the reader has failed afterwards.
    void FromFile(CCacheReader& reader);

    void GetNodeStatistics(NodeStatistics_t& statistics) const;

    /// Prints in the styles for maps; any other is an assertion.
    static void Print(std::ostream& stream, const CNodeDataMap& map, EToStringStyle_t style);

private:
    /// Finds a name without a copy of it.
    struct NameHash {
        using is_transparent = void;
        size_t operator()(std::string_view name) const {
            return std::hash<std::string_view>()(name);
        }
    };
    using NodeNameMap_t = std::unordered_map<std::string, NodeID_t, NameHash, std::equal_to<>>;

    void NameNodesFromFile(CCacheReader& reader);
    static void RenameToRoot(CNodeDataMap& toExtractTree, std::string_view name);

    std::unique_ptr<NodeNameMap_t> m_pNodeName2NodeID;
    /// The names are those of the map above.
    std::unique_ptr<std::vector<const std::string*>> m_pNodeID2NodeName;
    std::unique_ptr<std::vector<std::unique_ptr<CNodeData>>> m_pNodeID2NodeData;
    std::unique_ptr<CTextStore> m_pStringID2String;
    CNodeData* m_pContextNode = nullptr;
    NodeID_t m_LastNodeID;
};

}  // namespace GenApi_3_0_ORVANE
