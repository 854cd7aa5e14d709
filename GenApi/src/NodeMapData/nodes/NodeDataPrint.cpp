// Nodes as text: for people, and as the tags of XML.

#include <array>

#include "nodes/NodeData.h"

namespace GenApi_3_0_ORVANE {

/// Names in the order of ENodeType_t. StructReg_ID has none, because no map keeps such a node.
const char* CNodeData::Value2String(ENodeType_t nodeType) {
    static constexpr std::array names = {
        "Node",     "Category",  "Integer", "Enumeration", "EnumEntry",      "MaskedIntReg",
        "Register", "IntReg",    "Float",   "FloatReg",    "SwissKnife",     "IntSwissKnife",
        "IntKey",   "TextDesc",  "Port",    "ConfRom",     "AdvFeatureLock", "SmartFeature",
        "String",   "StringReg", "Boolean", "Command",     "Converter",      "IntConverter"};
    if (nodeType == RegisterDescription_ID) {
        return "RegisterDescription";
    }
    if (static_cast<size_t>(nodeType) >= names.size()) {
        OV_ASSERT(false);
    }
    return names[static_cast<size_t>(nodeType)];
}

std::string CNodeData::ToString(EToStringStyle_t style) const {
    switch (style) {
        case tssText:
            return Dump();
        case tssXmlStartTag:
            return StartTag();
        case tssXmlEndTag:
            return std::string("</") + Value2String(m_NodeType) + '>';
        default:
            OV_ASSERT(false);
            return {};
    }
}

std::string CNodeData::Dump() const {
    std::string text = Value2String(m_NodeType);
    text.append("::").append(GetName());
    text.append("\n  NodeID = ").append(std::to_string(m_NodeID.ToIndex())).append("\n");
    ForEachProperty([&text](const CProperty& property) {
        text += "  ";
        property.AppendTo(text, tssText);
        text += '\n';
    });
    return text;
}

/// The name space is always written, so that no reader has to know the default.
std::string CNodeData::StartTag() const {
    std::string text = std::string("<") + Value2String(m_NodeType);
    for (const CProperty& property : m_Properties) {
        switch (property.GetPropertyID()) {
            case CPropertyID::Name_ID:
            case CPropertyID::NameSpace_ID:
            case CPropertyID::ExposeStatic_ID:
                text += ' ';
                property.AppendTo(text, tssXmlAttribute);
                break;
            default:
                break;
        }
    }
    if (FindProperty(CPropertyID::NameSpace_ID) == nullptr) {
        text += " NameSpace=\"Custom\"";
    }
    return text + '>';
}

}  // namespace GenApi_3_0_ORVANE
