#pragma once
/// The grammar of camera descriptions, as data: one row for each element that
/// holds others, and one for each that holds a text.

#include <cstdint>
#include <string_view>
#include <vector>

#include "grammar/ContentModel.h"
#include "grammar/SimpleTypes.h"
#include "nodes/NodeData.h"

namespace GenApi_3_0_ORVANE {

/// What becomes of an element.
enum class Rule : uint8_t {
    Value,        ///< a property whose data type tells how to read the text
    ReadersText,  ///< a text that only people read; may be suppressed
    Extension,    ///< any XML, kept as text
    Bit,          ///< LSB and MSB in one
    Variable,     ///< an input of a formula; a converter's formulas have it too
    Constant,     ///< a variable whose node is implied
    Expression,   ///< likewise, with a formula
    FormulaTo,
    FormulaFrom,
    Symbolic,
    Key,  ///< a key node of a configuration ROM
    Node  ///< an element with content of its own
};

/// Which attributes an element has.
enum class Attributes : uint8_t { None, Node, KeyNode, Comment, Root, Offset, Index, Name };

/// An attribute of one of these kinds.
struct AttributeRow {
    std::string_view name;
    CPropertyID::EProperty_ID_t property;
    Facet facet;
    CProperty::EDataType_t dataType;
    bool isRequired = false;
};

/// An element inside certain parents.
struct ElementRow {
    std::string_view name;
    CPropertyID::EProperty_ID_t property = CPropertyID::_Undefined_ID;
    Facet facet = Facet::AnyText;
    CProperty::EDataType_t dataType = CProperty::_UndefinedDataType_ID;
    Rule rule = Rule::Value;
    Attributes attributes = Attributes::None;
    /// The parents for which the row holds; empty for all that have no other.
    std::string_view parents = {};
};

/// An element with content of its own.
struct ElementType {
    std::string_view name;
    CNodeData::ENodeType_t nodeType;
    Attributes attributes;
    /// Whether it names the nodes inside it.
    bool isContext;
    std::string_view content;
};

/// A compiled element type: what follows what, and what it turns into.
class CElementGrammar {
public:
    CElementGrammar(const ElementType& type, CContentModel model,
                    std::vector<const ElementRow*> rows,
                    std::vector<const CElementGrammar*> children);

    const ElementType& GetType() const { return m_Type; }
    const CContentModel& GetModel() const { return m_Model; }
    /// The row of the element that led to a state.
    const ElementRow& RowAt(CContentModel::State state) const { return *m_Rows[state]; }
    /// The grammar of that element where it has content of its own.
    const CElementGrammar* ChildAt(CContentModel::State state) const { return m_Children[state]; }
    void SetChildren(std::vector<const CElementGrammar*> children) {
        m_Children = std::move(children);
    }

private:
    const ElementType& m_Type;
    CContentModel m_Model;
    std::vector<const ElementRow*> m_Rows;
    std::vector<const CElementGrammar*> m_Children;
};

/// The whole grammar. Made at the first use, constant afterwards.
class CGrammar {
public:
    static const CGrammar& GetInstance();

    /// The number of an element's name; kNoElement for an unknown one.
    ElementNumber NumberOf(std::string_view name) const;
    const CElementGrammar& GetRoot() const { return *m_Root; }
    const std::vector<CElementGrammar>& GetAll() const { return m_Grammars; }

private:
    CGrammar();
    void CollectNames();
    void AddName(std::string_view name);
    const CElementGrammar* FindGrammar(std::string_view name) const;
    size_t SlotOf(std::string_view name) const;

    std::vector<std::string_view> m_Names;
    /// Open hash table of numbers.
    std::vector<ElementNumber> m_Slots;
    std::vector<CElementGrammar> m_Grammars;
    const CElementGrammar* m_Root = nullptr;
};

}  // namespace GenApi_3_0_ORVANE
