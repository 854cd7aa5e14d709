#pragma once
/// Descriptions for the parser in a few lines of XML.

#include <cstddef>
#include <string>
#include <vector>

#include "support/NodeDataBuilder.h"

namespace NodeDataTest {

/// The root's attributes without the namespace; a test may leave one out or
/// write another.
inline std::string RootAttributes(int minor = 1) {
    return R"(ModelName="M" VendorName="V" ToolTip="Tip" StandardNameSpace="GEV")"
           R"( SchemaMajorVersion="1" SchemaMinorVersion=")" +
           std::to_string(minor) +
           R"(" SchemaSubMinorVersion="2" MajorVersion="3" MinorVersion="4" SubMinorVersion="5")"
           R"( ProductGuid="11111111-2222-3333-4444-555555555555")"
           R"( VersionGuid="66666666-7777-8888-9999-AAAAAAAAaaaa")";
}

/// The body begins in line 2, column 0.
inline std::string DescribeWith(const std::string& rootAttributes, const std::string& body,
                                int minor = 1) {
    return "<RegisterDescription xmlns=\"http://www.genicam.org/GenApi/Version_1_" +
           std::to_string(minor) + "\" " + rootAttributes + ">\n" + body + "</RegisterDescription>";
}

inline std::string Describe(const std::string& body, int minor = 1) {
    return DescribeWith(RootAttributes(minor), body, minor);
}

/// The message of a document that breaks the schema or XML.
inline std::string ErrorAt(unsigned line, unsigned column, const std::string& text) {
    return "Error while parsing XML stream at line " + std::to_string(line) + " and column " +
           std::to_string(column) + " : '" + text + "'";
}

/// The message of data that contradicts itself.
inline std::string BuilderErrorAt(unsigned line, unsigned column, const std::string& text) {
    return "XML Parse error at line " + std::to_string(line) + " and column " +
           std::to_string(column) + ", " + text;
}

/// What a document of the newest version with an element out of place gives:
/// it is tried as an older one, and fails at its root.
inline std::string OutOfPlace() {
    return ErrorAt(1, 0, "unexpected element encountered");
}

/// The rest of a register behind its addresses.
inline const char* const kRegisterRest =
    "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>";

class Parser : public testing::Test {
protected:
    void ParseText(const std::string& document, bool suppress = false) {
        CNodeDataMapFactory::ParseXml(&m_Map, document.c_str(), suppress);
    }
    void ParseFile(EContentType_t type, const std::string& name) {
        CNodeDataMapFactory::ParseXml(&m_Map, CNodeDataMapFactory::ReadXmlFile(type, name), false);
    }
    void ParseBlock(EContentType_t type, const void* data, size_t size) {
        std::string unpacked;
        CNodeDataMapFactory::ParseXml(
            &m_Map, CNodeDataMapFactory::ReadXmlBuffer(type, data, size, unpacked), false);
    }
    void Parse(const std::string& body, int minor = 1) { ParseText(Describe(body, minor)); }

    /// The description of the failure of a body.
    template <class Exception = GenICam_3_0_ORVANE::RuntimeException>
    std::string FailureOfBody(const std::string& body, int minor = 1) {
        return FailureText<Exception>([&] { Parse(body, minor); });
    }
    std::string FailureOfText(const std::string& document) {
        return FailureText([&] { ParseText(document); });
    }

    /// A node's properties as XML elements, without its Name.
    std::vector<std::string> PropertiesOf(const char* name) const {
        std::vector<std::string> texts;
        for (const CProperty& property : NodeOf(m_Map, name).GetProperties()) {
            if (property.GetPropertyID() != ID::Name_ID) {
                texts.push_back(property.ToString(tssXmlElement));
            }
        }
        return texts;
    }
    /// The names of the nodes in the order of their identifiers; "?" stands
    /// before one that is referred to only.
    std::vector<std::string> NodeNames() const {
        std::vector<std::string> names;
        for (size_t i = 0; i < m_Map.GetNumNodeIDs(); ++i) {
            const NodeID_t id(i);
            names.push_back((m_Map.GetNodeData(id) == nullptr ? "?" : "") + m_Map.GetNodeName(id));
        }
        return names;
    }
    bool IsDefined(const char* name) const {
        const NodeID_t id = m_Map.FindNodeID(name);
        return id.IsValid() && m_Map.GetNodeData(id) != nullptr;
    }

    CNodeDataMap m_Map;
};

using testing::ElementsAre;
using testing::IsEmpty;

}  // namespace NodeDataTest
