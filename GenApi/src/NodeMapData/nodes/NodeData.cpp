// One node of a description: a type and its properties in the order in which they were added.
// Nodes of a large description have a quarter of a million properties together, so lists are
// shrunk when they are complete.

#include "nodes/NodeData.h"

#include <algorithm>

#include "properties/INodeDataMap.h"

namespace GenApi_3_0_ORVANE {
namespace {

/// As many properties as most nodes have, so that their lists grow once.
constexpr size_t kUsualProperties = 8;

/// A node of one map in another; invalid where that one doesn't know its name.
NodeID_t Translated(NodeID_t nodeID, const INodeDataMap& sourceMap, INodeDataMap& targetMap) {
    return targetMap.GetNodeID(sourceMap.GetNodeName(nodeID), false);
}

/// A link to a node whose name the target map doesn't know.
bool HasUnknownTarget(const CProperty& property, INodeDataMap& targetMap) {
    return property.GetDataType() == CProperty::Node_ID &&
           !Translated(property.NodeID(), *property.GetNodeDataMap(), targetMap).IsValid();
}

/// The nodes of one map that another one knows, as nodes of that one.
CNodeData::NodeIDs_t KnownIn(INodeDataMap& targetMap, const CNodeData::NodeIDs_t& nodes,
                             const INodeDataMap& sourceMap) {
    CNodeData::NodeIDs_t known;
    for (const NodeID_t nodeID : nodes) {
        if (const NodeID_t target = Translated(nodeID, sourceMap, targetMap); target.IsValid()) {
            known.push_back(target);
        }
    }
    return known;
}

}  // namespace

CNodeData::CNodeData(ENodeType_t nodeType, INodeDataMap* pNodeDataMap)
    : m_NodeType(nodeType), m_pNodeDataMap(pNodeDataMap) {}

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
    const PropertyVector_t& properties = source.m_Properties;
    const size_t count =
        keepOnlyKnownTargets ? properties.size() : std::min(properties.size(), source.m_NumGiven);
    m_Properties.reserve(count);
    const auto copyClosure = [&] {
        const INodeDataMap& sourceMap = *source.m_pNodeDataMap;
        SetClosure(KnownIn(*pTargetMap, source.m_Closure.dependents, sourceMap),
                   KnownIn(*pTargetMap, source.m_Closure.terminals, sourceMap));
    };
    for (size_t i = 0; i < count; ++i) {
        if (keepOnlyKnownTargets && i == source.m_Closure.place) {
            copyClosure();
        }
        if (!keepOnlyKnownTargets || !HasUnknownTarget(properties[i], *pTargetMap)) {
            AddProperty(CProperty(properties[i], pTargetMap));
        }
    }
    if (keepOnlyKnownTargets && source.m_Closure.place >= count) {
        copyClosure();
    }
}

CNodeData::~CNodeData() = default;

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
    OV_ASSERT(pProperty);
    OV_ASSERT(pProperty->IsInitialized());
    if (m_Properties.capacity() == 0) {
        m_Properties.reserve(kUsualProperties);
    }
    return m_Properties.emplace_back(std::move(*pProperty));
}

const CProperty* CNodeData::FindProperty(CPropertyID id) const {
    const auto found =
        std::find_if(m_Properties.begin(), m_Properties.end(),
                     [id](const CProperty& property) { return property.GetPropertyID() == id; });
    return found == m_Properties.end() ? nullptr : &*found;
}

void CNodeData::RemoveProperties(CPropertyID id) {
    const auto isRemoved = [id](const CProperty& property) {
        return property.GetPropertyID() == id;
    };
    const auto closure = m_Properties.begin() + static_cast<ptrdiff_t>(m_Closure.place);
    m_Closure.place -= static_cast<size_t>(std::count_if(m_Properties.begin(), closure, isRemoved));
    std::erase_if(m_Properties, isRemoved);
}

/// The priority is rare, and looked for only during merges.
int64_t CNodeData::GetMergePriority() const {
    const CProperty* pMergePriority = FindProperty(CPropertyID::MergePriority_ID);
    return pMergePriority == nullptr ? 0 : pMergePriority->Integer();
}

/// Nodes that can't be compared pair by pair count as equal. The question is whether a repeated
/// node says something else.
bool CNodeData::operator==(const CNodeData& other) const {
    const PropertyVector_t& mine = m_Properties;
    const PropertyVector_t& others = other.m_Properties;
    if (m_NodeType != other.m_NodeType || m_NodeID != other.m_NodeID ||
        mine.size() != others.size() || mine.empty()) {
        return true;
    }
    return mine == others;
}

}  // namespace GenApi_3_0_ORVANE
