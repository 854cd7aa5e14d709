// One property: what it is, a value in 64 bits and, rarely, an attribute. The pointers to map and
// attribute share a place, since an attribute has the same map.

#include "properties/Property.h"

#include <utility>

namespace GenApi_3_0_ORVANE {

CProperty::CProperty(const CProperty& source)
    : m_PropertyID(source.m_PropertyID),
      m_DataType(source.m_DataType),
      m_Value(source.m_Value),
      m_Context{source.GetNodeDataMap()} {
    if (const CProperty* pAttribute = source.GetAttribute()) {
        SetAttribute(std::make_unique<CProperty>(*pAttribute));
    }
}

/// Identifiers mean something in their own map only, so texts and names go by their characters.
CProperty::CProperty(const CProperty& source, INodeDataMap* pTargetMap)
    : m_PropertyID(source.m_PropertyID),
      m_DataType(source.m_DataType),
      m_Value(source.m_Value),
      m_Context{pTargetMap} {
    if (m_DataType == String_ID) {
        m_Value = pTargetMap->SetString(source.String()).ToIndex();
    } else if (m_DataType == Node_ID) {
        const std::string& name = source.GetNodeDataMap()->GetNodeName(source.NodeID());
        const NodeID_t TargetNodeID = pTargetMap->GetNodeID(name, false);
        OV_ASSERT(TargetNodeID != NodeID_t());
        m_Value = TargetNodeID.ToIndex();
    }
    if (const CProperty* pAttribute = source.GetAttribute()) {
        SetAttribute(std::make_unique<CProperty>(*pAttribute, pTargetMap));
    }
}

CProperty& CProperty::operator=(CProperty source) noexcept {
    Swap(source);
    return *this;
}

void CProperty::Swap(CProperty& other) noexcept {
    std::swap(m_PropertyID, other.m_PropertyID);
    std::swap(m_DataType, other.m_DataType);
    std::swap(m_HasAttribute, other.m_HasAttribute);
    std::swap(m_Value, other.m_Value);
    std::swap(m_Context, other.m_Context);
}

std::string_view CProperty::String() const {
    return GetNodeDataMap()->GetString(StringID());
}

/// Through the attribute where there is one, which has the map in the shared place.
INodeDataMap* CProperty::GetNodeDataMap() const {
    return m_HasAttribute ? m_Context.m_pAttribute->GetNodeDataMap() : m_Context.m_pNodeDataMap;
}

bool CProperty::IsInitialized() const {
    return m_DataType != _UndefinedDataType_ID && m_PropertyID.IsInitialized();
}

/// The attribute takes the place of the pointer to the map, which it holds itself. So the
/// map is asked for first, and put back when there is no attribute any more.
void CProperty::SetAttribute(std::unique_ptr<CProperty> pAttribute) {
    INodeDataMap* const pNodeDataMap = GetNodeDataMap();
    OV_ASSERT(pAttribute == nullptr || pAttribute->GetNodeDataMap() == pNodeDataMap);
    if (m_HasAttribute) {
        delete m_Context.m_pAttribute;
    }
    m_HasAttribute = pAttribute != nullptr;
    if (m_HasAttribute) {
        m_Context.m_pAttribute = pAttribute.release();
    } else {
        m_Context.m_pNodeDataMap = pNodeDataMap;
    }
}

void CProperty::SetStringID(StringID_t value) {
    OV_ASSERT(m_DataType == String_ID);
    m_Value = value.ToIndex();
}

StringID_t CProperty::StringID() const {
    OV_ASSERT(m_DataType == String_ID);
    return StringID_t(static_cast<int32_t>(m_Value));
}

NodeID_t CProperty::NodeID() const {
    OV_ASSERT(m_DataType == Node_ID);
    return NodeID_t(static_cast<int32_t>(m_Value));
}

int64_t CProperty::Integer() const {
    OV_ASSERT(m_DataType == Integer_ID);
    return m_Value;
}

double CProperty::Float() const {
    OV_ASSERT(m_DataType == Float_ID);
    return std::bit_cast<double>(m_Value);
}

/// Texts compare by content, since each map numbers them on its own. The attribute never decides.
bool CProperty::operator==(const CProperty& other) const {
    if (m_PropertyID != other.m_PropertyID || m_DataType != other.m_DataType) {
        return false;
    }
    switch (m_DataType) {
        case String_ID:
            return String() == other.String();
        case Float_ID:
            return Float() == other.Float();
        default:
            const bool isIdentical =
                m_DataType == Node_ID || m_DataType == Integer_ID || IsEnumeration(m_DataType);
            OV_ASSERT(isIdentical && "Undefined comparison in DataTypeID:");
            return m_Value == other.m_Value;
    }
}

}  // namespace GenApi_3_0_ORVANE
