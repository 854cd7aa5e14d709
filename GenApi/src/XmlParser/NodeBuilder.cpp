#include "NodeBuilder.h"

#include <array>
#include <vector>

#include "Base/GCException.h"
#include "NodeMapData/PropertyEnum.h"

namespace GenApi_3_0_ORVANE {

namespace {

using P = CPropertyID;

/// The numbers by which messages name two elements that have no property.
constexpr uint32_t kBitNumber = 113;
constexpr uint32_t kConstantNumber = 114;

struct RootAttribute {
    std::string_view name;
    P::EProperty_ID_t property;
    Facet facet;
};

constexpr std::array kRootAttributes{
    RootAttribute{"ModelName", P::ModelName_ID, Facet::AnyText},
    RootAttribute{"VendorName", P::VendorName_ID, Facet::AnyText},
    RootAttribute{"ToolTip", P::ToolTip_ID, Facet::AnyText},
    RootAttribute{"StandardNameSpace", P::StandardNameSpace_ID, Facet::Enumerated},
    RootAttribute{"SchemaMajorVersion", P::SchemaMajorVersion_ID, Facet::Version},
    RootAttribute{"SchemaMinorVersion", P::SchemaMinorVersion_ID, Facet::Version},
    RootAttribute{"SchemaSubMinorVersion", P::SchemaSubMinorVersion_ID, Facet::Version},
    RootAttribute{"MajorVersion", P::MajorVersion_ID, Facet::Version},
    RootAttribute{"MinorVersion", P::MinorVersion_ID, Facet::Version},
    RootAttribute{"SubMinorVersion", P::SubMinorVersion_ID, Facet::Version},
    RootAttribute{"ProductGuid", P::ProductGuid_ID, Facet::Guid},
    RootAttribute{"VersionGuid", P::VersionGuid_ID, Facet::Guid},
};

void Require(Facet facet, std::string_view text) {
    if (const char* const error = CheckFacet(facet, text)) {
        throw ValueError{error};
    }
}

int64_t IntegerOf(std::string_view text, uint32_t propertyNumber) {
    int64_t value = 0;
    if (!TextToInteger(text, value)) {
        const std::string type =
            CPropertyID(static_cast<P::EProperty_ID_t>(propertyNumber)).ToString();
        PROPERTY_EXCEPTION("Error in property of type '%s': cannot convert '%s' to int64_t",
                           type.c_str(), std::string(text).c_str());
    }
    return value;
}

double RealOf(std::string_view text) {
    double value = 0;
    if (!TextToDouble(text, value)) {
        throw ValueError{"invalid double value"};
    }
    return value;
}

CEnumNumber ChoiceOf(CProperty::EDataType_t type, std::string_view text) {
    const auto value = EnumNumberFromText(type, text);
    if (!value) {
        throw ValueError{"value is not in enumeration"};
    }
    return *value;
}

bool IsIntegerKind(CNodeData::ENodeType_t type) {
    return type == CNodeData::IntSwissKnife_ID || type == CNodeData::IntConverter_ID;
}

}  // namespace

void CNodeBuilder::Abandon() {
    if (m_Map.GetContextNode() != nullptr) {
        m_Map.SetContextNode(nullptr);
    }
}

OpenNode CNodeBuilder::OpenElement(const ElementType& type) {
    OpenNode open;
    if (type.nodeType == CNodeData::_NotImpl_ID) {
        return open;
    }
    if (type.nodeType == CNodeData::EnumEntry_ID && m_Map.GetContextNode() == nullptr &&
        !(m_SchemaMajor == 1 && m_SchemaMinor == 0)) {
        RUNTIME_EXCEPTION(
            "Standalone <EnumEntry> node detected which is ignored in schema v1.0 "
            "but forbidden otherwise");
    }
    open.node = std::make_unique<CNodeData>(type.nodeType, &m_Map);
    if (type.nodeType == CNodeData::RegisterDescription_ID) {
        open.node->SetName("_RegisterDescription");
    }
    if (type.isContext) {
        m_Map.SetContextNode(open.node.get());
    }
    const bool isIntConverter = type.nodeType == CNodeData::IntConverter_ID;
    if (isIntConverter || type.nodeType == CNodeData::Converter_ID) {
        const auto knife = isIntConverter ? CNodeData::IntSwissKnife_ID : CNodeData::SwissKnife_ID;
        constexpr CEnumNumber kTo(1);
        constexpr CEnumNumber kFrom(0);
        open.formulaTo = std::make_unique<CNodeData>(knife, &m_Map);
        open.formulaTo->AddProperty(P::InputDirection_ID, CProperty::EInputDirection_ID, kTo);
        open.formulaFrom = std::make_unique<CNodeData>(knife, &m_Map);
        open.formulaFrom->AddProperty(P::InputDirection_ID, CProperty::EInputDirection_ID, kFrom);
    }
    return open;
}

void CNodeBuilder::SetName(CNodeData& node, std::string_view name) {
    const CNodeData* const context = m_Map.GetContextNode();
    if (context == nullptr || context == &node || !context->GetNodeID().IsValid() ||
        context->GetNodeType() == CNodeData::ConfRom_ID) {
        node.SetName(name);
        return;
    }
    std::string fullName = "_" + context->GetName() + "_";
    if (context->GetNodeType() == CNodeData::Enumeration_ID) {
        node.AddProperty(P::Symbolic_ID, name);
        if (const int64_t priority = context->GetMergePriority(); priority != 0) {
            node.AddProperty(P::MergePriority_ID, priority);
        }
        fullName.insert(0, "EnumEntry");
    }
    node.SetName(fullName.append(name));
}

void CNodeBuilder::TakeNodeAttribute(OpenNode& open, const XmlAttribute& attribute) {
    const std::string_view value = Trimmed(attribute.value);
    if (attribute.name == "Name") {
        Require(Facet::Reference, value);
        SetName(*open.node, value);
        open.ownName = value;
    } else if (attribute.name == "NameSpace") {
        open.node->AddProperty(P::NameSpace_ID, CProperty::ENameSpace_ID,
                               ChoiceOf(CProperty::ENameSpace_ID, value));
    } else if (attribute.name == "MergePriority") {
        Require(Facet::MergePriority, value);
        open.node->AddProperty(P::MergePriority_ID, IntegerOf(value, P::MergePriority_ID));
    } else {
        open.node->AddProperty(P::ExposeStatic_ID, CProperty::EYesNo_ID,
                               ChoiceOf(CProperty::EYesNo_ID, value));
    }
}

void CNodeBuilder::TakeRootAttribute(OpenNode& open, const XmlAttribute& attribute) {
    for (const RootAttribute& row : kRootAttributes) {
        if (row.name != attribute.name) {
            continue;
        }
        if (row.facet == Facet::AnyText) {
            open.node->AddProperty(row.property, attribute.value);
            return;
        }
        const std::string_view value = Trimmed(attribute.value);
        Require(row.facet, value);
        if (row.facet == Facet::Guid) {
            open.node->AddProperty(row.property, value);
        } else if (row.facet == Facet::Enumerated) {
            open.node->AddProperty(row.property, CProperty::EStandardNameSpace_ID,
                                   ChoiceOf(CProperty::EStandardNameSpace_ID, value));
        } else {
            const int64_t number = IntegerOf(value, row.property);
            open.node->AddProperty(row.property, number);
            if (row.property == P::SchemaMajorVersion_ID) {
                m_SchemaMajor = number;
            } else if (row.property == P::SchemaMinorVersion_ID) {
                m_SchemaMinor = number;
            }
        }
        return;
    }
}

void CNodeBuilder::Store(std::unique_ptr<CNodeData> node) {
    const CNodeData* const stored = m_Map.GetNodeData(node->GetNodeID());
    const bool isRepeatedEntry =
        stored != nullptr && node->GetNodeType() == CNodeData::EnumEntry_ID && *node == *stored;
    if (!isRepeatedEntry) {
        m_Map.SetNodeData(std::move(node), false);
    }
}

NodeID_t CNodeBuilder::CloseElement(OpenNode& open, const ElementType& type) {
    if (open.node == nullptr) {
        return {};
    }
    if (open.IsConverter()) {
        const NodeID_t id = open.node->GetNodeID();
        CloseConverter(open);
        return id;
    }
    if (type.isContext) {
        m_Map.SetContextNode(nullptr);
    }
    if (type.nodeType == CNodeData::StructReg_ID) {
        return {};
    }
    const NodeID_t id = open.node->GetNodeID();
    OV_ASSERT(id.IsValid());
    open.node->ShrinkToFit();
    Store(std::move(open.node));
    return id;
}

void CNodeBuilder::CloseConverter(OpenNode& open) {
    m_Map.SetContextNode(nullptr);
    const int64_t mergePriority = open.node->GetMergePriority();
    auto formulaTo = std::move(open.formulaTo);
    auto formulaFrom = std::move(open.formulaFrom);
    const NodeID_t id = open.node->GetNodeID();
    Store(std::move(open.node));
    CNodeData& converter = *m_Map.GetNodeData(id);
    const std::string name = converter.GetName();
    const auto finish = [&](std::unique_ptr<CNodeData> formula, const char* suffix,
                            P::EProperty_ID_t link) {
        formula->SetName(name + suffix);
        converter.AddProperty(link, formula->GetNodeID());
        if (mergePriority != 0) {
            formula->AddProperty(P::MergePriority_ID, mergePriority);
        }
        Store(std::move(formula));
    };
    finish(std::move(formulaTo), "_ConvertTo", P::pSwissKnifeTo_ID);
    finish(std::move(formulaFrom), "_ConvertFrom", P::pSwissKnifeFrom_ID);
    converter.ShrinkToFit();
}

void CNodeBuilder::TakeChild(OpenNode& parent, const ElementType& childType, NodeID_t child) {
    if (parent.node == nullptr || !child.IsValid()) {
        return;
    }
    switch (childType.nodeType) {
        case CNodeData::EnumEntry_ID:
            if (parent.node->GetNodeType() == CNodeData::Enumeration_ID) {
                parent.node->AddProperty(P::pEnumEntry_ID, child);
            }
            break;
        case CNodeData::IntSwissKnife_ID:
            if (parent.node->GetNodeType() != CNodeData::RegisterDescription_ID) {
                parent.node->AddProperty(P::pAddress_ID, child);
            }
            break;
        case CNodeData::MaskedIntReg_ID:
            if (parent.node->GetNodeType() == CNodeData::StructReg_ID) {
                CopyTemplate(*parent.node, child);
            }
            break;
        default:
            break;
    }
}

void CNodeBuilder::CopyTemplate(const CNodeData& source, NodeID_t target) {
    CNodeData& entry = *m_Map.GetNodeData(target);
    std::vector<CProperty> copies;
    for (const CProperty& property : source.GetProperties()) {
        if (entry.FindProperty(property.GetPropertyID()) == nullptr) {
            copies.emplace_back(property);
        }
    }
    for (CProperty& copy : copies) {
        entry.AddProperty(std::move(copy));
    }
}

CProperty CNodeBuilder::MakeLink(P::EProperty_ID_t id, std::string_view name) {
    return {&m_Map, id, m_Map.GetNodeID(name, true)};
}

void CNodeBuilder::AddVariable(OpenNode& open, std::string_view name, NodeID_t target) {
    for (CNodeData* const node : {open.node.get(), open.formulaTo.get(), open.formulaFrom.get()}) {
        if (node != nullptr) {
            CProperty variable(&m_Map, P::pVariable_ID, target);
            variable.SetAttribute(std::make_unique<CProperty>(&m_Map, P::Name_ID, name));
            node->AddProperty(std::move(variable));
        }
    }
}

void CNodeBuilder::AddImpliedNode(OpenNode& open, const ElementRow& row, std::string_view text,
                                  std::string_view name) {
    const bool isInteger = IsIntegerKind(open.node->GetNodeType());
    const bool isConstant = row.rule == Rule::Constant;
    CNodeData::ENodeType_t type =
        isInteger ? CNodeData::IntSwissKnife_ID : CNodeData::SwissKnife_ID;
    if (isConstant) {
        type = isInteger ? CNodeData::Integer_ID : CNodeData::Float_ID;
    }
    auto implied = std::make_unique<CNodeData>(type, &m_Map);
    implied->SetName("_" + open.node->GetName() + "_" + std::string(name));
    if (!isConstant) {
        // An expression speaks of what stands before it: variables, constants
        // and other expressions.
        for (const CProperty& property : open.node->GetProperties()) {
            if (property.GetPropertyID() == P::pVariable_ID) {
                implied->AddProperty(CProperty(property));
            }
        }
        implied->AddProperty(P::Formula_ID, text);
    } else if (isInteger) {
        Require(Facet::Integer, Trimmed(text));
        implied->AddProperty(P::Value_ID, IntegerOf(Trimmed(text), kConstantNumber));
    } else {
        implied->AddProperty(P::Value_ID, RealOf(Trimmed(text)));
    }
    const NodeID_t id = implied->GetNodeID();
    Store(std::move(implied));
    AddVariable(open, name, id);
}

void CNodeBuilder::AddIndexed(CNodeData& node, const ElementRow& row, std::string_view text,
                              std::string_view index) {
    Require(Facet::Integer, index);
    CProperty property(&m_Map);
    if (row.rule == Rule::IndexedReal) {
        property = CProperty(&m_Map, row.property, RealOf(text));
    } else if (row.rule == Rule::IndexedNumber) {
        property = CProperty(&m_Map, row.property, IntegerOf(text, row.property));
    } else {
        property = MakeLink(row.property, text);
    }
    property.SetAttribute(
        std::make_unique<CProperty>(&m_Map, P::Index_ID, IntegerOf(index, P::Index_ID)));
    node.AddProperty(std::move(property));
}

void CNodeBuilder::AddIndexedLink(CNodeData& node, std::string_view text, std::string_view offset,
                                  bool isReference) {
    CProperty property = MakeLink(P::pIndex_ID, text);
    if (!offset.empty() && isReference) {
        Require(Facet::Reference, offset);
        property.SetAttribute(std::make_unique<CProperty>(MakeLink(P::pOffset_ID, offset)));
    } else if (!offset.empty()) {
        Require(Facet::Integer, offset);
        property.SetAttribute(
            std::make_unique<CProperty>(&m_Map, P::Offset_ID, IntegerOf(offset, P::Offset_ID)));
    }
    node.AddProperty(std::move(property));
}

void CNodeBuilder::TakeText(OpenNode& open, const ElementRow& row, std::string_view rawText,
                            std::string_view attribute, bool isReference) {
    CNodeData& node = *open.node;
    const bool keepsBlanks = row.dataType == CProperty::String_ID || row.rule == Rule::Extension ||
                             row.rule == Rule::Symbolic;
    const std::string_view text =
        keepsBlanks && row.facet != Facet::HexDigits ? rawText : Trimmed(rawText);
    Require(row.facet, text);
    switch (row.rule) {
        case Rule::Link:
            node.AddProperty(MakeLink(row.property, text));
            break;
        case Rule::ReadersText:
            if (!m_SuppressStrings) {
                node.AddProperty(row.property, text);
            }
            break;
        case Rule::Text:
        case Rule::Extension:
            node.AddProperty(row.property, text);
            break;
        case Rule::Number:
            node.AddProperty(row.property, IntegerOf(text, row.property));
            break;
        case Rule::Real:
            node.AddProperty(row.property, RealOf(text));
            break;
        case Rule::Choice:
            node.AddProperty(row.property, row.dataType, ChoiceOf(row.dataType, text));
            break;
        case Rule::Bit:
            node.AddProperty(P::LSB_ID, IntegerOf(text, kBitNumber));
            node.AddProperty(P::MSB_ID, IntegerOf(text, kBitNumber));
            break;
        case Rule::IndexedLink:
            AddIndexedLink(node, text, Trimmed(attribute), isReference);
            break;
        case Rule::IndexedNumber:
        case Rule::IndexedReal:
        case Rule::IndexedNode:
            AddIndexed(node, row, text, Trimmed(attribute));
            break;
        case Rule::Variable:
            Require(Facet::VariableName, Trimmed(attribute));
            AddVariable(open, Trimmed(attribute), m_Map.GetNodeID(text, true));
            break;
        case Rule::Constant:
        case Rule::Expression:
            Require(Facet::VariableName, Trimmed(attribute));
            AddImpliedNode(open, row, text, Trimmed(attribute));
            break;
        case Rule::FormulaTo:
            node.AddProperty(row.property, text);
            open.formulaTo->AddProperty(P::Formula_ID, text);
            break;
        case Rule::FormulaFrom:
            node.AddProperty(row.property, text);
            open.formulaFrom->AddProperty(P::Formula_ID, text);
            break;
        case Rule::Symbolic:
            for (CProperty& property : node.GetProperties()) {
                if (property.GetPropertyID() == P::Symbolic_ID) {
                    property.SetStringID(m_Map.SetString(text));
                }
            }
            break;
        case Rule::None:
        case Rule::Key:
        case Rule::Node:
            break;
    }
}

void CNodeBuilder::TakeKey(std::string_view elementName, std::string_view name,
                           std::string_view text) {
    const bool isText = elementName == "TextDesc";
    auto key =
        std::make_unique<CNodeData>(isText ? CNodeData::TextDesc_ID : CNodeData::IntKey_ID, &m_Map);
    SetName(*key, name);
    key->AddProperty(P::p1212Parser_ID, m_Map.GetContextNode()->GetNodeID());
    int64_t number = 0;
    if (!TextToInteger(Trimmed(text), number)) {
        RUNTIME_EXCEPTION("%s it not a valid integer", std::string(text).c_str());
    }
    key->AddProperty(P::Key_ID, number);
    Store(std::move(key));
}

}  // namespace GenApi_3_0_ORVANE
