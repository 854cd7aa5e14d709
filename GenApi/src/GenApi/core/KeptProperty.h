#pragma once
/// What a node was told, kept so that it can be told on.

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "core/INodeMapPrivate.h"
#include "properties/Property.h"

namespace GenApi_3_0_ORVANE {

/// A property that has outlived its data map: links are nodes, texts are texts.
class CKeptProperty {
public:
    /// @param map  has the nodes that links lead to
    CKeptProperty(const CProperty& property, INodeMapPrivate& map);

    CPropertyID GetID() const { return m_ID; }
    /// The property for another data map, in which a link reserves the name of
    /// its node.
    CProperty Make(INodeDataMap& nodeDataMap) const;

private:
    CProperty MakeValue(INodeDataMap& nodeDataMap) const;

    CPropertyID m_ID;
    CProperty::EDataType_t m_Type;
    // Texts are rare beside numbers and links, and four times as large.
    std::variant<int64_t, double, INodePrivate*, std::unique_ptr<std::string>> m_Value;
    std::unique_ptr<CKeptProperty> m_pAttribute;
};

}  // namespace GenApi_3_0_ORVANE
