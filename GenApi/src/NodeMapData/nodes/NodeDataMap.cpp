// A whole description as data. Names and texts are tables here and numbers everywhere else, so
// that a property is small and a link needs no search.

#include "nodes/NodeDataMap.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

#include "Base/GCException.h"
#include "Base/OvAssert.h"

namespace GenApi_3_0_ORVANE {
namespace {

/// The name comes from the node's own map, which may be another implementation with failures of
/// its own.
[[noreturn]] void ThrowDuplicate(const CNodeData& node) {
    try {
        RUNTIME_EXCEPTION("Found a duplicate node'%s'.", node.GetName().c_str());
    } catch (const std::out_of_range& e) {
        RUNTIME_EXCEPTION("Inconsistent node map, index out of range: %s", e.what());
    } catch (const std::exception& e) {
        RUNTIME_EXCEPTION("Failed to SetNodeData: %s", e.what());
    }
}

}  // namespace

CNodeDataMap::CNodeDataMap()
    : m_pNodeName2NodeID(std::make_unique<NodeNameMap_t>()),
      m_pNodeID2NodeName(std::make_unique<std::vector<const std::string*>>()),
      m_pNodeID2NodeData(std::make_unique<std::vector<std::unique_ptr<CNodeData>>>()),
      m_pStringID2String(std::make_unique<CTextStore>()) {}

CNodeDataMap::~CNodeDataMap() = default;

NodeID_t CNodeDataMap::FindNodeID(std::string_view name) const {
    const auto pos = m_pNodeName2NodeID->find(name);
    return pos == m_pNodeName2NodeID->end() ? NodeID_t() : pos->second;
}

/// Identifiers follow the order in which a description first mentions the names.
NodeID_t CNodeDataMap::GetNodeID(std::string_view name, bool create) {
    const NodeID_t known = FindNodeID(name);
    if (known.IsValid() || !create) {
        return known;
    }
    const NodeID_t nodeID(m_pNodeID2NodeName->size());
    // A name that is only referred to has an empty slot, so that the node which is
    // defined later takes the identifier that links already hold.
    const auto pos = m_pNodeName2NodeID->emplace(name, nodeID).first;
    m_pNodeID2NodeName->push_back(&pos->first);
    m_pNodeID2NodeData->emplace_back();
    return nodeID;
}

const std::string& CNodeDataMap::GetNodeName(NodeID_t NodeID) const {
    OV_ASSERT(NodeID.IsValid());
    OV_ASSERT((size_t)NodeID.ToIndex() < m_pNodeID2NodeName->size());
    return *(*m_pNodeID2NodeName)[static_cast<size_t>(NodeID.ToIndex())];
}

StringID_t CNodeDataMap::SetString(std::string_view text) {
    return m_pStringID2String->Add(text);
}

std::string_view CNodeDataMap::GetString(StringID_t StringID) const {
    OV_ASSERT(StringID.IsValid());
    OV_ASSERT((size_t)StringID.ToIndex() < m_pStringID2String->size());
    return (*m_pStringID2String)[static_cast<size_t>(StringID.ToIndex())];
}

CNodeData* CNodeDataMap::GetNodeData(NodeID_t NodeID) const {
    OV_ASSERT(NodeID.IsValid());
    OV_ASSERT((size_t)NodeID.ToIndex() < m_pNodeID2NodeData->size());
    return (*m_pNodeID2NodeData)[static_cast<size_t>(NodeID.ToIndex())].get();
}

CNodeData* CNodeDataMap::GetLastNodeData() const {
    return m_LastNodeID.IsValid() ? GetNodeData(m_LastNodeID) : nullptr;
}

/// Replacing is for merges. Otherwise a second node of one name is a mistake of the description,
/// which the exception names.
void CNodeDataMap::SetNodeData(std::unique_ptr<CNodeData> pNodeData, bool replace) {
    OV_ASSERT(pNodeData);
    const NodeID_t nodeID = pNodeData->GetNodeID();
    OV_ASSERT(nodeID.IsValid());
    const auto nodeIdIndex = static_cast<size_t>(nodeID.ToIndex());
    OV_ASSERT(nodeIdIndex < m_pNodeID2NodeData->size());
    OV_ASSERT(nodeIdIndex < m_pNodeID2NodeName->size());
    std::unique_ptr<CNodeData>& slot = (*m_pNodeID2NodeData)[nodeIdIndex];
    if (replace) {
        const std::unique_ptr<CNodeData> pOldNodeData = std::move(slot);
        OV_ASSERT(pOldNodeData);
    }
    if (slot != nullptr) {
        // The first node stays in place.
        ThrowDuplicate(*pNodeData);
    }
    slot = std::move(pNodeData);
    m_LastNodeID = nodeID;
}

/// Context nodes don't nest, which the assertion makes sure of.
void CNodeDataMap::SetContextNode(CNodeData* pContextNode) {
    // NOLINTBEGIN(modernize-use-nullptr): a failure prints the condition
    OV_ASSERT((pContextNode == NULL && m_pContextNode != NULL) ||
              (pContextNode != NULL && m_pContextNode == NULL));
    // NOLINTEND(modernize-use-nullptr)
    m_pContextNode = pContextNode;
}

/// May run while another exception is on its way.
void CNodeDataMap::Clear() noexcept {
    OV_ASSERT(m_pContextNode == NULL);  // NOLINT(modernize-use-nullptr): a failure prints it
    m_pNodeID2NodeData->clear();
    m_pNodeID2NodeName->clear();
    m_pNodeName2NodeID->clear();
    m_pStringID2String->clear();
    m_LastNodeID = NodeID_t();
}

/// A name that was only referred to has an empty slot.
NodeID_t CNodeDataMap::FindDanglingNode() const {
    const auto& nodes = *m_pNodeID2NodeData;
    const auto hole = std::find(nodes.begin(), nodes.end(), nullptr);
    return hole == nodes.end() ? NodeID_t() : NodeID_t(static_cast<size_t>(hole - nodes.begin()));
}

void CNodeDataMap::CheckConsistency() const {
    const NodeID_t dangling = FindDanglingNode();
    if (dangling.IsValid()) {
        RUNTIME_EXCEPTION("Fatal error : Dangling node reference '%s'",
                          GetNodeName(dangling).c_str());
    }
}

/// Names that were only referred to don't count as nodes.
void CNodeDataMap::GetNodeStatistics(NodeStatistics_t& statistics) const {
    statistics = {};
    for (const auto& pNodeData : *m_pNodeID2NodeData) {
        if (pNodeData == nullptr) {
            continue;
        }
        const auto& properties = pNodeData->GetProperties();
        ++statistics.NumNodes;
        const size_t numDerived = pNodeData->GetClosure().GetNumLinks();
        statistics.NumProperties += static_cast<uint32_t>(properties.size() + numDerived);
        const auto numLinks = std::count_if(
            properties.begin(), properties.end(),
            [](const CProperty& property) { return property.GetPropertyID().IsLink(); });
        statistics.NumLinks += static_cast<uint32_t>(numLinks) + static_cast<uint32_t>(numDerived);
    }
    statistics.NumStrings = static_cast<uint32_t>(m_pStringID2String->size());
}

}  // namespace GenApi_3_0_ORVANE
