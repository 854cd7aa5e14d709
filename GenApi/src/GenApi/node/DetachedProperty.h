#pragma once
/// A property of a node, kept beyond the description that it came from.

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "core/INodeMapPrivate.h"
#include "properties/Property.h"

namespace GenApi_3_0_ORVANE {

/// A property that doesn't need its data map any more: it has links as nodes, and texts as texts.
class CDetachedProperty {
public:
    /// @param map  holds the nodes that links lead to
    CDetachedProperty(const CProperty& property, INodeMapPrivate& map);

    CPropertyID GetID() const { return m_ID; }
    /// Makes the property again for another data map, in which a link reserves the name of its
    /// node.
    CProperty Make(INodeDataMap& nodeDataMap) const;

private:
    CProperty MakeValue(INodeDataMap& nodeDataMap) const;

    CPropertyID m_ID;
    CProperty::EDataType_t m_Type;
    // A pointer to a text, because texts are rare among numbers and links, and four times as
    // large.
    std::variant<int64_t, double, INodePrivate*, std::unique_ptr<std::string>> m_Value;
    std::unique_ptr<CDetachedProperty> m_pAttribute;
};

}  // namespace GenApi_3_0_ORVANE
