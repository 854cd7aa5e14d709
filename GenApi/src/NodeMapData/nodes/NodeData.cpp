// One node of a description: a type and its properties in the order in which they were added.
// Nodes of a large description have a quarter of a million properties together, so lists are
// shrunk when they are complete.

#include "nodes/NodeData.h"

#include <algorithm>

#include "properties/INodeDataMap.h"

namespace GenApi_3_0_ORVANE {
namespace {

/// A link to a node whose name the target map doesn't know.
bool HasUnknownTarget(const CProperty& property, INodeDataMap& targetMap) {
    if (property.GetDataType() != CProperty::Node_ID) {
        return false;
    }
    const std::string& name = property.GetNodeDataMap()->GetNodeName(property.NodeID());
    return !targetMap.GetNodeID(name, false).IsValid();
}

}  // namespace

CNodeData::CNodeData(ENodeType_t nodeType, INodeDataMap* pNodeDataMap)
    : m_NodeType(nodeType),
      m_pPropertyVector(std::make_unique<PropertyVector_t>()),
      m_pNodeDataMap(pNodeDataMap) {}

CNodeData::CNodeData(ENodeType_t nodeType, NodeID_t nodeID, INodeDataMap* pNodeDataMap)
    : CNodeData(nodeType, pNodeDataMap) {
    m_NodeID = nodeID;
}

/// For a merge, what preprocessing added to the source is left out: it is derived anew from the
/// whole. For a subtree it is kept, and links out of the subtree are dropped.
CNodeData::CNodeData(const CNodeData& source, NodeID_t nodeID, INodeDataMap* pTargetMap,
                     bool keepOnlyKnownTargets)
    : CNodeData(source.m_NodeType, pTargetMap) {
    m_NodeID = nodeID;
    if (keepOnlyKnownTargets) {
        m_TerminalState = source.m_TerminalState;
    }
    const PropertyVector_t& properties = *source.m_pPropertyVector;
    const size_t count =
        keepOnlyKnownTargets ? properties.size() : std::min(properties.size(), source.m_NumGiven);
    m_pPropertyVector->reserve(count);
    for (size_t i = 0; i < count; ++i) {
        if (!keepOnlyKnownTargets || !HasUnknownTarget(properties[i], *pTargetMap)) {
            AddProperty(CProperty(properties[i], pTargetMap));
        }
    }
}

/// A node that ends with scratch lists means that a preprocessing was left without its end.
CNodeData::~CNodeData() {
    m_pPropertyVector.reset();
    // NOLINTBEGIN(modernize-use-nullptr): a failure prints the condition
    OV_ASSERT(m_pWritingChildren == NULL);
    OV_ASSERT(m_pReadingChildren == NULL);
    OV_ASSERT(m_pParents == NULL);
    OV_ASSERT(m_pInvalidatingChildren == NULL);
    OV_ASSERT(m_pAllDependingNodes == NULL);
    OV_ASSERT(m_pAllTerminalNodes == NULL);
    // NOLINTEND(modernize-use-nullptr)
}

void CNodeData::SetName(std::string_view name) {
    m_NodeID = m_pNodeDataMap->GetNodeID(name, true);
    AddProperty(CPropertyID::Name_ID, name);
}

/// Only the map holds names, and it finds nodes by them.
const std::string& CNodeData::GetName() const {
    return m_pNodeDataMap->GetNodeName(GetNodeID());
}

CProperty& CNodeData::AddProperty(std::unique_ptr<CProperty> pProperty) {
    return Append(pProperty.get());
}

CProperty& CNodeData::AddProperty(CProperty property) {
    return Append(&property);
}

/// A property without an identifier or a type would be read as garbage later; whoever adds it is
/// mistaken here.
CProperty& CNodeData::Append(CProperty* pProperty) {
    OV_ASSERT(m_pPropertyVector);
    OV_ASSERT(pProperty);
    OV_ASSERT(pProperty->IsInitialized());
    return m_pPropertyVector->emplace_back(std::move(*pProperty));
}

const CProperty* CNodeData::FindProperty(CPropertyID id) const {
    const auto found =
        std::find_if(m_pPropertyVector->begin(), m_pPropertyVector->end(),
                     [id](const CProperty& property) { return property.GetPropertyID() == id; });
    return found == m_pPropertyVector->end() ? nullptr : &*found;
}

void CNodeData::RemoveProperties(CPropertyID id) {
    std::erase_if(*m_pPropertyVector,
                  [id](const CProperty& property) { return property.GetPropertyID() == id; });
}

/// The priority is rare, and looked for only during merges.
int64_t CNodeData::GetMergePriority() const {
    const CProperty* pMergePriority = FindProperty(CPropertyID::MergePriority_ID);
    return pMergePriority == nullptr ? 0 : pMergePriority->Integer();
}

/// Nodes that can't be compared pair by pair count as equal. The question is whether a repeated
/// node says something else.
bool CNodeData::operator==(const CNodeData& other) const {
    const PropertyVector_t& mine = *m_pPropertyVector;
    const PropertyVector_t& others = *other.m_pPropertyVector;
    if (m_NodeType != other.m_NodeType || m_NodeID != other.m_NodeID ||
        mine.size() != others.size() || mine.empty()) {
        return true;
    }
    return mine == others;
}

}  // namespace GenApi_3_0_ORVANE
