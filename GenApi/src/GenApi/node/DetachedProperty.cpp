#include "node/DetachedProperty.h"

#include "node/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

CDetachedProperty::CDetachedProperty(const CProperty& property, INodeMapPrivate& map)
    : m_ID(property.GetPropertyID()), m_Type(property.GetDataType()) {
    switch (m_Type) {
        case CProperty::String_ID:
            m_Value = std::make_unique<std::string>(property.String());
            break;
        case CProperty::Node_ID:
            m_Value = map.GetNodeByID(property.NodeID());
            break;
        case CProperty::Float_ID:
            m_Value = property.Float();
            break;
        case CProperty::Integer_ID:
            m_Value = property.Integer();
            break;
        default:
            m_Value = property.EnumNumber();
    }
    if (const CProperty* const attribute = property.GetAttribute()) {
        m_pAttribute = std::make_unique<CDetachedProperty>(*attribute, map);
    }
}

CProperty CDetachedProperty::MakeValue(INodeDataMap& nodeDataMap) const {
    switch (m_Type) {
        case CProperty::String_ID:
            return {&nodeDataMap, m_ID,
                    std::string_view(*std::get<std::unique_ptr<std::string>>(m_Value))};
        case CProperty::Node_ID: {
            INodePrivate* const target = std::get<INodePrivate*>(m_Value);
            // Only the root element has a name and no node.
            return target != nullptr
                       ? CNodeImpl::MakeLink(nodeDataMap, m_ID, *target)
                       : CProperty(&nodeDataMap, m_ID, nodeDataMap.GetNodeID(kRootNodeName, true));
        }
        case CProperty::Float_ID:
            return {&nodeDataMap, m_ID, std::get<double>(m_Value)};
        case CProperty::Integer_ID:
            return {&nodeDataMap, m_ID, std::get<int64_t>(m_Value)};
        default:
            return {&nodeDataMap, m_ID, m_Type,
                    CEnumNumber(static_cast<int32_t>(std::get<int64_t>(m_Value)))};
    }
}

CProperty CDetachedProperty::Make(INodeDataMap& nodeDataMap) const {
    CProperty property = MakeValue(nodeDataMap);
    if (m_pAttribute != nullptr) {
        property.SetAttribute(std::make_unique<CProperty>(m_pAttribute->Make(nodeDataMap)));
    }
    return property;
}

}  // namespace GenApi_3_0_ORVANE
