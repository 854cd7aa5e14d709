// Properties as text: for people, as XML elements and attributes, and as values alone.

#include <algorithm>
#include <array>
#include <charconv>

#include "properties/Property.h"
#include "properties/PropertyEnum.h"

namespace GenApi_3_0_ORVANE {
namespace {

/// The texts that people write freely, and that may hold markup characters. All others are
/// printed as they are.
constexpr std::array escapedProperties = {CPropertyID::Description_ID, CPropertyID::ToolTip_ID,
                                          CPropertyID::DisplayName_ID, CPropertyID::Unit_ID,
                                          CPropertyID::Formula_ID,     CPropertyID::FormulaTo_ID,
                                          CPropertyID::FormulaFrom_ID, CPropertyID::Comment_ID};

void AppendEscaped(std::string& text, std::string_view raw) {
    for (const char c : raw) {
        switch (c) {
            case '&':
                text += "&amp;";
                break;
            case '<':
                text += "&lt;";
                break;
            case '>':
                text += "&gt;";
                break;
            case '"':
                text += "&quot;";
                break;
            default:
                text += c;
        }
    }
}

/// The shortest text that reads back as the same number, in any locale.
template <typename Number>
void AppendNumber(std::string& text, Number number) {
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text.append(digits.data(), end);
}

}  // namespace

std::string CProperty::ToString(EToStringStyle_t style) const {
    std::string text;
    AppendTo(text, style);
    return text;
}

void CProperty::AppendTo(std::string& text, EToStringStyle_t style) const {
    switch (style) {
        case tssText:
            AppendDump(text);
            break;
        case tssXmlElement:
            AppendElement(text);
            break;
        case tssXmlAttribute:
            text.append(m_PropertyID.ToString()).append("=\"");
            AppendValue(text);
            text += '"';
            break;
        case tssValue:
            AppendValue(text);
            break;
        default:
            OV_ASSERT(false);
    }
}

/// The number of a text or a node is printed before it, so that a dump can be compared with a
/// cache file.
void CProperty::AppendDump(std::string& text) const {
    text.append(m_PropertyID.ToString()).append(" = ");
    if (m_DataType != Float_ID) {
        AppendNumber(text, m_Value);
    }
    if (m_DataType == String_ID) {
        text += " '";
        AppendValue(text);
        text += '\'';
    } else if (m_DataType == Node_ID) {
        text += " (";
        AppendValue(text);
        text += ')';
    } else if (IsEnumeration(m_DataType)) {
        text += " <";
        AppendValue(text);
        text += '>';
    } else if (m_DataType == Float_ID) {
        AppendValue(text);
    }
    if (const CProperty* pAttribute = GetAttribute()) {
        text += " ( ";
        pAttribute->AppendDump(text);
        text += " ) ";
    }
}

/// The attribute goes into the tag; a property has one at most.
void CProperty::AppendElement(std::string& text) const {
    const std::string name = m_PropertyID.ToString();
    text.append("<").append(name);
    if (const CProperty* pAttribute = GetAttribute()) {
        text += ' ';
        pAttribute->AppendTo(text, tssXmlAttribute);
    }
    text += '>';
    const bool isEscaped =
        m_DataType == String_ID && std::find(escapedProperties.begin(), escapedProperties.end(),
                                             m_PropertyID) != escapedProperties.end();
    if (isEscaped) {
        AppendEscaped(text, String());
    } else {
        AppendValue(text);
    }
    text.append("</").append(name).append(">");
}

void CProperty::AppendValue(std::string& text) const {
    switch (m_DataType) {
        case String_ID:
            text += String();
            break;
        case Node_ID:
            text += GetNodeDataMap()->GetNodeName(NodeID());
            break;
        case Float_ID:
            AppendNumber(text, Float());
            break;
        case Integer_ID:
            AppendNumber(text, m_Value);
            break;
        default:
            text += EnumNumberToText(m_DataType, static_cast<int32_t>(m_Value));
    }
}

}  // namespace GenApi_3_0_ORVANE
