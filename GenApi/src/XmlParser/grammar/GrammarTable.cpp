// The grammar of camera descriptions, as tables: which elements an element may have in which
// order, and what each of them means.

#include "grammar/GrammarTable.h"

#include <array>
#include <utility>

namespace GenApi_3_0_ORVANE {

namespace {

using P = CPropertyID;
using D = CProperty;
using N = CNodeData;

/// Parts that several elements share. None contains another, so one replacement is
/// enough.
constexpr std::array<std::pair<std::string_view, std::string_view>, 7> kShared{{
    {"@common",
     "Extension? ToolTip? Description? DisplayName? Visibility? DocuURL? IsDeprecated? EventID? "
     "pIsImplemented? pIsAvailable? pIsLocked? pBlockPolling? ImposedAccessMode? pError* pAlias? "
     "pCastAlias?"},
    {"@address", "(Address | IntSwissKnife | pAddress | pIndex)+"},
    {"@rest", "AccessMode pPort Cachable? PollingTime? pInvalidator*"},
    {"@bits", "(Bit | LSB MSB)"},
    {"@indexed", "pIndex (ValueIndexed | pValueIndexed)* (ValueDefault | pValueDefault)"},
    {"@limits", "(Min | pMin)? (Max | pMax)? (Inc | pInc)? Unit? Representation?"},
    {"@variables", "pInvalidator* Streamable? pVariable* Constant* Expression*"},
}};

constexpr std::string_view kNodes =
    "(Node | Category | Integer | IntReg | MaskedIntReg | Boolean | Command | Enumeration | "
    "EnumEntry | Float | FloatReg | String | StringReg | Register | Converter | IntConverter | "
    "SwissKnife | IntSwissKnife | Port | ConfRom | TextDesc | IntKey | AdvFeatureLock | "
    "SmartFeature | Group | StructReg)*";

constexpr Attributes kNode = Attributes::Node;

/// A context names the nodes inside it. No context can hold another one, because the map
/// remembers only one at a time. A string register isn't a context: a formula inside it
/// keeps its plain name, which then has to be unique in the whole description.
constexpr std::array kTypes{
    ElementType{"RegisterDescription", N::RegisterDescription_ID, Attributes::Root, false, kNodes},
    ElementType{"Group", N::_NotImpl_ID, Attributes::Comment, false, kNodes},
    ElementType{"Node", N::Node_ID, kNode, false, "@common pInvalidator*"},
    ElementType{"Category", N::Category_ID, kNode, false, "@common pInvalidator* pFeature*"},
    ElementType{"Integer", N::Integer_ID, kNode, false,
                "@common pInvalidator* Streamable? (Value | pValueCopy* pValue pValueCopy* | "
                "@indexed) @limits ValidValueSet? pSelected*"},
    ElementType{"Float", N::Float_ID, kNode, false,
                "@common pInvalidator* Streamable? (Value | pValue | @indexed) @limits "
                "DisplayNotation? DisplayPrecision?"},
    ElementType{"Boolean", N::Boolean_ID, kNode, false,
                "@common pInvalidator* Streamable? (Value | pValue) OnValue? OffValue? pSelected*"},
    ElementType{"Command", N::Command_ID, kNode, false,
                "@common pInvalidator* (Value | pValue) (CommandValue | pCommandValue) "
                "PollingTime?"},
    ElementType{"String", N::String_ID, kNode, false,
                "@common pInvalidator* Streamable? (Value | pValue)?"},
    ElementType{"Enumeration", N::Enumeration_ID, kNode, true,
                "@common pInvalidator* Streamable? EnumEntry+ (Value | pValue)? pSelected* "
                "PollingTime?"},
    ElementType{"EnumEntry", N::EnumEntry_ID, kNode, false,
                "@common pInvalidator* Value NumericValue? Symbolic? IsSelfClearing?"},
    ElementType{"Register", N::Register_ID, kNode, true,
                "@common Streamable? @address (Length | pLength) @rest"},
    ElementType{"IntReg", N::IntReg_ID, kNode, true,
                "@common Streamable? @address (Length | pLength) @rest Sign? Endianess? Unit? "
                "Representation? pSelected*"},
    ElementType{"MaskedIntReg", N::MaskedIntReg_ID, kNode, true,
                "@common Streamable? @address Length @rest @bits Sign? Endianess Unit? "
                "Representation? pSelected*"},
    ElementType{"FloatReg", N::FloatReg_ID, kNode, true,
                "@common Streamable? @address (Length | pLength) @rest Endianess? Unit? "
                "Representation? DisplayNotation? DisplayPrecision?"},
    ElementType{"StringReg", N::StringReg_ID, kNode, false,
                "@common Streamable? @address (Length | pLength) @rest"},
    ElementType{"StructReg", N::StructReg_ID, Attributes::Comment, true,
                "@common Streamable? @address (Length | pLength) @rest Endianess? StructEntry*"},
    ElementType{"StructEntry", N::MaskedIntReg_ID, kNode, false,
                "@common pInvalidator* AccessMode? Cachable? PollingTime? Streamable? @bits Sign? "
                "Unit? Representation? pSelected*"},
    ElementType{"AdvFeatureLock", N::AdvFeatureLock_ID, kNode, false,
                "@common Streamable? @address (Length | pLength) @rest FeatureID? Timeout?"},
    ElementType{"SmartFeature", N::SmartFeature_ID, kNode, false,
                "FeatureID (Address | IntSwissKnife | pAddress) pPort pIsImplemented? "
                "pIsAvailable?"},
    ElementType{"ConfRom", N::ConfRom_ID, kNode, true,
                "@common pInvalidator* Unit (Address | IntSwissKnife | pAddress) Length pPort "
                "(TextDesc | IntKey)*"},
    ElementType{"TextDesc", N::TextDesc_ID, kNode, false, "p1212Parser Key"},
    ElementType{"IntKey", N::IntKey_ID, kNode, false, "p1212Parser Key"},
    ElementType{"SwissKnife", N::SwissKnife_ID, kNode, false,
                "@common @variables Formula Unit? Representation? DisplayNotation? "
                "DisplayPrecision?"},
    ElementType{"IntSwissKnife", N::IntSwissKnife_ID, kNode, false,
                "@common @variables Formula Unit? Representation?"},
    ElementType{"Converter", N::Converter_ID, kNode, true,
                "@common @variables FormulaTo FormulaFrom pValue Unit? Representation? "
                "DisplayNotation? DisplayPrecision? Slope? IsLinear?"},
    ElementType{"IntConverter", N::IntConverter_ID, kNode, true,
                "@common @variables FormulaTo FormulaFrom pValue Unit? Representation? Slope?"},
    ElementType{"Port", N::Port_ID, kNode, false,
                "@common pInvalidator* (ChunkID | pChunkID)? SwapEndianess? CacheChunkData?"},
};

constexpr ElementRow Link(std::string_view name, P::EProperty_ID_t property) {
    return {name, property, Facet::Reference, D::Node_ID};
}
constexpr ElementRow Number(std::string_view name, P::EProperty_ID_t property,
                            Facet facet = Facet::Integer) {
    return {name, property, facet, D::Integer_ID};
}
constexpr ElementRow Real(std::string_view name, P::EProperty_ID_t property) {
    return {name, property, Facet::Double, D::Float_ID};
}
constexpr ElementRow Text(std::string_view name, P::EProperty_ID_t property,
                          Facet facet = Facet::AnyText) {
    return {name, property, facet, D::String_ID};
}
constexpr ElementRow Choice(std::string_view name, P::EProperty_ID_t property,
                            D::EDataType_t type) {
    return {name, property, Facet::Enumerated, type};
}
constexpr ElementRow operator|(ElementRow row, Rule rule) {
    row.rule = rule;
    return row;
}
constexpr ElementRow operator|(ElementRow row, Attributes attributes) {
    row.attributes = attributes;
    return row;
}
/// A row that holds only for these parents. It must come before the row for all others.
constexpr ElementRow In(std::string_view parents, ElementRow row) {
    row.parents = parents;
    return row;
}

constexpr std::array kRows{
    Text("Extension", P::Extension_ID) | Rule::Extension,
    Text("ToolTip", P::ToolTip_ID) | Rule::ReadersText,
    Text("Description", P::Description_ID) | Rule::ReadersText,
    Text("DisplayName", P::DisplayName_ID) | Rule::ReadersText,
    Choice("Visibility", P::Visibility_ID, D::EVisibility_ID),
    Text("DocuURL", P::DocuURL_ID),
    Choice("IsDeprecated", P::IsDeprecated_ID, D::EYesNo_ID),
    Text("EventID", P::EventID_ID, Facet::HexDigits),
    Link("pIsImplemented", P::pIsImplemented_ID),
    Link("pIsAvailable", P::pIsAvailable_ID),
    Link("pIsLocked", P::pIsLocked_ID),
    Link("pBlockPolling", P::pBlockPolling_ID),
    Choice("ImposedAccessMode", P::ImposedAccessMode_ID, D::EAccessMode_ID),
    Link("pError", P::pError_ID),
    Link("pAlias", P::pAlias_ID),
    Link("pCastAlias", P::pCastAlias_ID),
    Link("pInvalidator", P::pInvalidator_ID),
    Link("pFeature", P::pFeature_ID),
    Choice("Streamable", P::Streamable_ID, D::EYesNo_ID),
    In("Float", Real("Value", P::Value_ID)),
    In("String", Text("Value", P::Value_ID)),
    Number("Value", P::Value_ID),
    Link("pValue", P::pValue_ID),
    Link("pValueCopy", P::pValueCopy_ID),
    Link("pIndex", P::pIndex_ID) | Attributes::Offset,
    In("Float", Real("ValueIndexed", P::ValueIndexed_ID) | Attributes::Index),
    Number("ValueIndexed", P::ValueIndexed_ID) | Attributes::Index,
    Link("pValueIndexed", P::pValueIndexed_ID) | Attributes::Index,
    In("Float", Real("ValueDefault", P::ValueDefault_ID)),
    Number("ValueDefault", P::ValueDefault_ID),
    Link("pValueDefault", P::pValueDefault_ID),
    In("Float", Real("Min", P::Min_ID)),
    Number("Min", P::Min_ID),
    Link("pMin", P::pMin_ID),
    In("Float", Real("Max", P::Max_ID)),
    Number("Max", P::Max_ID),
    Link("pMax", P::pMax_ID),
    In("Float", Real("Inc", P::Inc_ID)),
    Number("Inc", P::Inc_ID),
    Link("pInc", P::pInc_ID),
    In("ConfRom", Number("Unit", P::Unit_ID)),
    Text("Unit", P::Unit_ID),
    Choice("Representation", P::Representation_ID, D::ERepresentation_ID),
    Text("ValidValueSet", P::ValidValueSet_ID),
    Link("pSelected", P::pSelected_ID),
    Choice("DisplayNotation", P::DisplayNotation_ID, D::EDisplayNotation_ID),
    Number("DisplayPrecision", P::DisplayPrecision_ID, Facet::NonNegative),
    Number("OnValue", P::OnValue_ID),
    Number("OffValue", P::OffValue_ID),
    Number("CommandValue", P::CommandValue_ID),
    Link("pCommandValue", P::pCommandValue_ID),
    Number("PollingTime", P::PollingTime_ID, Facet::NonNegative),
    Real("NumericValue", P::NumericValue_ID),
    Text("Symbolic", P::Symbolic_ID) | Rule::Symbolic,
    Choice("IsSelfClearing", P::IsSelfClearing_ID, D::EYesNo_ID),
    Number("Address", P::Address_ID, Facet::NonNegative),
    Link("pAddress", P::pAddress_ID),
    In("IntReg MaskedIntReg StructReg", Number("Length", P::Length_ID, Facet::IntegerLength)),
    In("FloatReg", Number("Length", P::Length_ID, Facet::FloatLength)),
    Number("Length", P::Length_ID, Facet::Positive),
    Link("pLength", P::pLength_ID),
    Choice("AccessMode", P::AccessMode_ID, D::EAccessMode_ID),
    Link("pPort", P::pPort_ID),
    Choice("Cachable", P::Cachable_ID, D::ECachingMode_ID),
    Choice("Sign", P::Sign_ID, D::ESign_ID),
    Choice("Endianess", P::Endianess_ID, D::EEndianess_ID),
    Number("Bit", P::LSB_ID, Facet::NonNegative) | Rule::Bit,
    Number("LSB", P::LSB_ID, Facet::NonNegative),
    Number("MSB", P::MSB_ID, Facet::NonNegative),
    In("SmartFeature", Text("FeatureID", P::FeatureID_ID)),
    Number("FeatureID", P::FeatureID_ID),
    Number("Timeout", P::Timeout_ID),
    Link("p1212Parser", P::p1212Parser_ID),
    Number("Key", P::Key_ID),
    In("ConfRom", Number("TextDesc", P::Key_ID) | Rule::Key | Attributes::KeyNode),
    In("ConfRom", Number("IntKey", P::Key_ID) | Rule::Key | Attributes::KeyNode),
    Link("pVariable", P::pVariable_ID) | Rule::Variable | Attributes::Name,
    In("IntSwissKnife IntConverter",
       Number("Constant", P::Value_ID) | Rule::Constant | Attributes::Name),
    Real("Constant", P::Value_ID) | Rule::Constant | Attributes::Name,
    Text("Expression", P::Formula_ID, Facet::NonEmptyText) | Rule::Expression | Attributes::Name,
    Text("Formula", P::Formula_ID, Facet::NonEmptyText),
    Text("FormulaTo", P::FormulaTo_ID, Facet::NonEmptyText) | Rule::FormulaTo,
    Text("FormulaFrom", P::FormulaFrom_ID, Facet::NonEmptyText) | Rule::FormulaFrom,
    Choice("Slope", P::Slope_ID, D::ESlope_ID),
    Choice("IsLinear", P::IsLinear_ID, D::EYesNo_ID),
    Text("ChunkID", P::ChunkID_ID, Facet::HexDigits),
    Link("pChunkID", P::pChunkID_ID),
    Choice("SwapEndianess", P::SwapEndianess_ID, D::EYesNo_ID),
    Choice("CacheChunkData", P::CacheChunkData_ID, D::EYesNo_ID),
};

constexpr ElementRow kNestedRow = ElementRow{} | Rule::Node;

constexpr std::array kNodeAttributes{
    AttributeRow{"Name", P::Name_ID, Facet::Reference, D::String_ID, true},
    AttributeRow{"NameSpace", P::NameSpace_ID, Facet::Enumerated, D::ENameSpace_ID},
    AttributeRow{"MergePriority", P::MergePriority_ID, Facet::MergePriority, D::Integer_ID},
    AttributeRow{"ExposeStatic", P::ExposeStatic_ID, Facet::Enumerated, D::EYesNo_ID},
};
constexpr size_t kKeyNodeAttributes = 2;  // the first ones of any node
constexpr std::array kRootAttributes{
    AttributeRow{"ModelName", P::ModelName_ID, Facet::AnyText, D::String_ID, true},
    AttributeRow{"VendorName", P::VendorName_ID, Facet::AnyText, D::String_ID, true},
    AttributeRow{"ToolTip", P::ToolTip_ID, Facet::AnyText, D::String_ID},
    AttributeRow{"StandardNameSpace", P::StandardNameSpace_ID, Facet::Enumerated,
                 D::EStandardNameSpace_ID, true},
    AttributeRow{"SchemaMajorVersion", P::SchemaMajorVersion_ID, Facet::Version, D::Integer_ID,
                 true},
    AttributeRow{"SchemaMinorVersion", P::SchemaMinorVersion_ID, Facet::Version, D::Integer_ID,
                 true},
    AttributeRow{"SchemaSubMinorVersion", P::SchemaSubMinorVersion_ID, Facet::Version,
                 D::Integer_ID, true},
    AttributeRow{"MajorVersion", P::MajorVersion_ID, Facet::Version, D::Integer_ID, true},
    AttributeRow{"MinorVersion", P::MinorVersion_ID, Facet::Version, D::Integer_ID, true},
    AttributeRow{"SubMinorVersion", P::SubMinorVersion_ID, Facet::Version, D::Integer_ID, true},
    AttributeRow{"ProductGuid", P::ProductGuid_ID, Facet::Guid, D::String_ID, true},
    AttributeRow{"VersionGuid", P::VersionGuid_ID, Facet::Guid, D::String_ID, true},
};
constexpr std::array kCommentAttributes{
    AttributeRow{"Comment", P::Comment_ID, Facet::AnyText, D::String_ID}};
constexpr std::array kOffsetAttributes{
    AttributeRow{"Offset", P::Offset_ID, Facet::Integer, D::Integer_ID},
    AttributeRow{"pOffset", P::pOffset_ID, Facet::Reference, D::Node_ID}};
constexpr std::array kIndexAttributes{
    AttributeRow{"Index", P::Index_ID, Facet::Integer, D::Integer_ID, true}};
constexpr std::array kNameAttributes{
    AttributeRow{"Name", P::Name_ID, Facet::VariableName, D::String_ID, true}};

}  // namespace

std::span<const ElementType> AllElementTypes() {
    return kTypes;
}

std::span<const ElementRow> AllElementRows() {
    return kRows;
}

const ElementRow& NestedRow() {
    return kNestedRow;
}

std::span<const AttributeRow> AttributesOf(Attributes kind) {
    switch (kind) {
        case Attributes::Node:
            return kNodeAttributes;
        case Attributes::KeyNode:
            return std::span(kNodeAttributes).first<kKeyNodeAttributes>();
        case Attributes::Comment:
            return kCommentAttributes;
        case Attributes::Root:
            return kRootAttributes;
        case Attributes::Offset:
            return kOffsetAttributes;
        case Attributes::Index:
            return kIndexAttributes;
        case Attributes::Name:
            return kNameAttributes;
        case Attributes::None:
            break;
    }
    return {};
}

std::string ExpandContent(std::string_view content) {
    std::string expanded(content);
    for (const auto& [mark, text] : kShared) {
        const size_t at = expanded.find(mark);
        if (at != std::string::npos) {
            expanded.replace(at, mark.size(), text);
        }
    }
    return expanded;
}

}  // namespace GenApi_3_0_ORVANE
