// Which properties a node of a type can have, and in which form. The parser can't make others,
// and live nodes rely on that, so properties read from a cache file are checked against this table.

#include "cache/PropertyForms.h"

#include <algorithm>
#include <array>

#include "grammar/GrammarTable.h"

namespace GenApi_3_0_ORVANE {
namespace {

using P = CPropertyID;
using D = CProperty;
using N = CNodeData;

/// The forms of all properties by type of node. The grammar says what the parser makes of a
/// description; what the parser and the preprocessing add of their own is entered by hand.
class PropertyForms {
public:
    static const PropertyForms& GetInstance() {
        static const PropertyForms forms;
        return forms;
    }

    bool Allows(N::ENodeType_t node, const CProperty& property) const {
        const uint32_t dataType = 1U << property.GetDataType();
        if (property.GetAttribute() == nullptr) {
            return (m_PlainDataTypes[node][property.GetPropertyID()] & dataType) != 0;
        }
        const Form& form = m_Forms[node][property.GetPropertyID()];
        return (form.dataTypes & dataType) != 0 &&
               HasAttribute(form.attributes, *property.GetAttribute());
    }

private:
    struct Form {
        uint32_t dataTypes = 0;  ///< a bit for each
        Attributes attributes = Attributes::None;
    };

    PropertyForms() {
        for (const CElementGrammar& grammar : CGrammar::GetInstance().GetAll()) {
            const ElementType& type = grammar.GetType();
            // A StructReg isn't kept: each of its entries becomes a MaskedIntReg that inherits
            // its properties.
            const auto node = type.nodeType == N::StructReg_ID ? N::MaskedIntReg_ID : type.nodeType;
            if (node != N::_NotImpl_ID) {
                AddElement(node, grammar);
            }
        }
        for (const AttributeRow& row : AttributesOf(Attributes::Root)) {
            Add(N::RegisterDescription_ID, row.property, row.dataType);
        }
        AddImplied();
    }

    void AddElement(N::ENodeType_t node, const CElementGrammar& grammar) {
        for (size_t state = 1; state < grammar.GetModel().GetStateCount(); ++state) {
            AddRow(node, grammar.RowAt(static_cast<CContentModel::State>(state)));
        }
        AddOfAllNodes(node);
    }

    void AddRow(N::ENodeType_t node, const ElementRow& row) {
        switch (row.rule) {
            case Rule::Constant:
            case Rule::Expression:
            case Rule::Key:
            case Rule::Node:
                return;  // they make nodes of their own
            case Rule::Bit:
                Add(node, P::MSB_ID, row.dataType);
                break;
            default:
                break;
        }
        Add(node, row.property, row.dataType, row.attributes);
    }

    void AddOfAllNodes(N::ENodeType_t node) {
        for (const AttributeRow& row : AttributesOf(Attributes::Node)) {
            Add(node, row.property, row.dataType);
        }
        Add(node, P::Comment_ID, D::String_ID);
        Add(node, P::IsFeature_ID, D::EYesNo_ID);
        for (const auto link : {P::pSelected_ID, P::pSelecting_ID}) {
            Add(node, link, D::Node_ID);
        }
    }

    void AddImplied() {
        for (const auto knife : {N::SwissKnife_ID, N::IntSwissKnife_ID}) {
            Add(knife, P::InputDirection_ID, D::EInputDirection_ID);
        }
        for (const auto converter : {N::Converter_ID, N::IntConverter_ID}) {
            Add(converter, P::pSwissKnifeTo_ID, D::Node_ID);
            Add(converter, P::pSwissKnifeFrom_ID, D::Node_ID);
        }
        Add(N::Enumeration_ID, P::pEnumEntry_ID, D::Node_ID);
    }

    void Add(N::ENodeType_t node, P::EProperty_ID_t property, D::EDataType_t dataType,
             Attributes attributes = Attributes::None) {
        Form& form = m_Forms[node][property];
        form.dataTypes |= 1U << dataType;
        form.attributes = attributes;
        m_PlainDataTypes[node][property] = NeedsAttribute(attributes) ? 0 : form.dataTypes;
    }

    static bool NeedsAttribute(Attributes kind) {
        const auto rows = AttributesOf(kind);
        return std::any_of(rows.begin(), rows.end(),
                           [](const AttributeRow& row) { return row.isRequired; });
    }

    static bool HasAttribute(Attributes kind, const CProperty& attribute) {
        const auto rows = AttributesOf(kind);
        return std::any_of(rows.begin(), rows.end(), [&attribute](const AttributeRow& row) {
            return attribute.GetPropertyID() == row.property &&
                   attribute.GetDataType() == row.dataType;
        });
    }

    template <class Value>
    using Table = std::array<std::array<Value, P::_Undefined_ID>, N::_NotImpl_ID>;

    Table<Form> m_Forms{};
    /// The data types of properties without an attribute, which nearly all are: a table of
    /// its own stays in the processor's caches.
    Table<uint32_t> m_PlainDataTypes{};
};

}  // namespace

bool IsPropertyOf(CNodeData::ENodeType_t node, const CProperty& property) {
    return PropertyForms::GetInstance().Allows(node, property);
}

}  // namespace GenApi_3_0_ORVANE
