// From the texts and attributes of elements to properties and implied nodes: the constants and
// expressions inside formulas, which become nodes of their own.

#include <string>

#include "Base/Log.h"
#include "builder/NodeBuilder.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::CLog;

namespace {

using P = CPropertyID;

/// Two elements have no property of their own. Messages name them by these numbers.
constexpr uint32_t kBitNumber = 113;
constexpr uint32_t kConstantNumber = 114;

bool IsIntegerKind(CNodeData::ENodeType_t type) {
    return type == CNodeData::IntSwissKnife_ID || type == CNodeData::IntConverter_ID;
}

/// A constant or an expression has the numbers of the formula that it is part of.
CNodeData::ENodeType_t ImpliedType(const CNodeData& parent, Rule rule) {
    if (IsIntegerKind(parent.GetNodeType())) {
        return rule == Rule::Constant ? CNodeData::Integer_ID : CNodeData::IntSwissKnife_ID;
    }
    return rule == Rule::Constant ? CNodeData::Float_ID : CNodeData::SwissKnife_ID;
}

}  // namespace

/// Some real cameras write an empty element where they mean "No". Refusing it would lose
/// the whole camera; the log says which node did it.
std::string_view CNodeBuilder::Replacement(const CNodeData& node, const ElementRow& row,
                                           std::string_view text) {
    if (row.property != P::Streamable_ID || !Trimmed(text).empty()) {
        return text;
    }
    if (CLog::Exist("GenApi")) {
        GCLOGWARN(CLog::GetLogger("GenApi.XmlParser"),
                  "Node '%s' : the empty element 'Streamable' counts as 'No'",
                  node.GetNodeID().IsValid() ? node.GetName().c_str() : "");
    }
    return "No";
}

/// A link reserves an identifier for a name that may not have a node yet.
CProperty CNodeBuilder::MakeProperty(P::EProperty_ID_t id, CProperty::EDataType_t type,
                                     std::string_view text) {
    switch (type) {
        case CProperty::String_ID:
            return {&m_Map, id, text};
        case CProperty::Node_ID:
            return {&m_Map, id, m_Map.GetNodeID(text, true)};
        case CProperty::Integer_ID:
            return {&m_Map, id, IntegerOf(text, id)};
        case CProperty::Float_ID:
            return {&m_Map, id, RealOf(text)};
        default:
            return {&m_Map, id, type, ChoiceOf(type, text)};
    }
}

CProperty CNodeBuilder::MakeProperty(const ElementRow& row, std::string_view text,
                                     const TextAttribute& attribute) {
    CProperty property = MakeProperty(row.property, row.dataType, text);
    if (attribute.row != nullptr) {
        const AttributeRow& kind = *attribute.row;
        property.SetAttribute(std::make_unique<CProperty>(
            MakeProperty(kind.property, kind.dataType, attribute.value)));
    }
    return property;
}

/// The versions are remembered, since later elements are judged by them.
void CNodeBuilder::TakeAttribute(OpenNode& open, const AttributeRow& row, std::string_view value) {
    if (open.node == nullptr) {
        return;
    }
    const std::string_view text = Checked(row.facet, value);
    // A name isn't stored as it stands: the context decides on its prefix.
    if (row.property == P::Name_ID) {
        SetName(open, text);
        return;
    }
    const CProperty& property =
        open.node->AddProperty(MakeProperty(row.property, row.dataType, text));
    if (row.property == P::SchemaMajorVersion_ID) {
        m_SchemaMajor = property.Integer();
    } else if (row.property == P::SchemaMinorVersion_ID) {
        m_SchemaMinor = property.Integer();
    }
}

/// The table of the grammar says what each element means; this is where it is done.
void CNodeBuilder::TakeText(OpenNode& open, const ElementRow& row, std::string_view rawText,
                            const TextAttribute& attribute) {
    CNodeData& node = *open.node;
    const std::string_view text = Checked(row.facet, Replacement(node, row, rawText));
    switch (row.rule) {
        case Rule::ReadersText:
            if (m_SuppressStrings) {
                break;
            }
            [[fallthrough]];
        case Rule::Value:
        case Rule::Extension:
            node.AddProperty(MakeProperty(row, text, attribute));
            break;
        case Rule::Bit:
            // A single bit is a field that begins and ends with it.
            node.AddProperty(P::LSB_ID, IntegerOf(text, kBitNumber));
            node.AddProperty(P::MSB_ID, IntegerOf(text, kBitNumber));
            break;
        case Rule::Variable:
            AddVariable(open, m_Map.GetNodeID(text, true), attribute.value);
            break;
        case Rule::Constant:
        case Rule::Expression:
            // To a formula, both are variables whose node happens to be written in place.
            AddVariable(open, StoreImpliedNode(open, row, text, attribute.value), attribute.value);
            break;
        case Rule::FormulaTo:
            // The converter keeps the text for those who print it; only the formula nodes
            // evaluate it.
            node.AddProperty(row.property, text);
            open.formulaTo->AddProperty(P::Formula_ID, text);
            break;
        case Rule::FormulaFrom:
            node.AddProperty(row.property, text);
            open.formulaFrom->AddProperty(P::Formula_ID, text);
            break;
        case Rule::Symbolic:
            // The entry's name has already become its symbolic text, unless it is an
            // entry outside of an enumeration, which has no use for one.
            for (CProperty& property : node.GetProperties()) {
                if (property.GetPropertyID() == P::Symbolic_ID) {
                    property.SetStringID(m_Map.SetString(text));
                }
            }
            break;
        // The reader closes these by calls of their own.
        case Rule::Key:
        case Rule::Node:
            break;
    }
}

/// A converter has no formula itself. Its variables go to both formulas, and to the converter as
/// nodes to watch. Places and not pointers are noted, since the list of properties moves while it
/// grows.
void CNodeBuilder::AddVariable(OpenNode& open, NodeID_t target, std::string_view name) {
    open.variables.push_back(open.node->GetProperties().size());
    for (CNodeData* const node : {open.node.get(), open.formulaTo.get(), open.formulaFrom.get()}) {
        if (node != nullptr) {
            CProperty variable(&m_Map, P::pVariable_ID, target);
            variable.SetAttribute(std::make_unique<CProperty>(&m_Map, P::Name_ID, name));
            node->AddProperty(std::move(variable));
        }
    }
}

/// The underscore keeps the name apart from the description's own names.
NodeID_t CNodeBuilder::StoreImpliedNode(const OpenNode& open, const ElementRow& row,
                                        std::string_view text, std::string_view name) {
    const CNodeData& parent = *open.node;
    auto implied = std::make_unique<CNodeData>(ImpliedType(parent, row.rule), &m_Map);
    implied->SetName("_" + parent.GetName() + "_" + std::string(name));
    InheritMergePriority(*implied, open.mergePriority);
    if (row.rule == Rule::Expression) {
        CopyVariables(open, *implied);
        implied->AddProperty(row.property, text);
    } else if (row.dataType == CProperty::Integer_ID) {
        implied->AddProperty(row.property, IntegerOf(text, kConstantNumber));
    } else {
        implied->AddProperty(row.property, RealOf(text));
    }
    const NodeID_t id = implied->GetNodeID();
    Store(std::move(implied));
    return id;
}

/// An expression may use what comes before it: variables, constants and other expressions.
void CNodeBuilder::CopyVariables(const OpenNode& source, CNodeData& target) {
    CountCopies(source.variables.size());
    for (const size_t place : source.variables) {
        target.AddProperty(CProperty(source.node->GetProperties()[place]));
    }
}

}  // namespace GenApi_3_0_ORVANE
