#pragma once
/// Turns checked elements into nodes and properties.

#include <memory>
#include <string>
#include <string_view>

#include "Grammar.h"
#include "NodeMapData/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {

/// A value that breaks a rule of the grammar; the reader knows where.
struct ValueError {
    const char* text;
};

/// An attribute as the tokeniser gives it.
struct XmlAttribute {
    std::string_view name;
    std::string_view value;
};

/// A node under construction, with the two formula nodes of a converter.
struct OpenNode {
    std::unique_ptr<CNodeData> node;
    std::unique_ptr<CNodeData> formulaTo;
    std::unique_ptr<CNodeData> formulaFrom;
    /// What the node was called by its own element.
    std::string ownName;

    bool IsConverter() const { return formulaTo != nullptr; }
};

/// The semantics of the grammar's rows. Failures of the data leave as
/// RuntimeException or PropertyException, of single values as ValueError.
class CNodeBuilder {
public:
    CNodeBuilder(CNodeDataMap& map, bool suppressStrings)
        : m_Map(map), m_SuppressStrings(suppressStrings) {}

    /// Opens an element with content of its own.
    OpenNode OpenElement(const ElementType& type);
    void TakeNodeAttribute(OpenNode& open, const XmlAttribute& attribute);
    void TakeRootAttribute(OpenNode& open, const XmlAttribute& attribute);
    /// Stores the node and gives its identifier; the invalid one for an
    /// element that leaves no node.
    NodeID_t CloseElement(OpenNode& open, const ElementType& type);
    /// Tells a node of one that was stored inside it.
    void TakeChild(OpenNode& parent, const ElementType& childType, NodeID_t child);
    /// Takes an element that holds a text.
    /// @param attribute  the value of its one attribute; for an offset with
    ///                   `isReference` telling which of the two
    void TakeText(OpenNode& open, const ElementRow& row, std::string_view text,
                  std::string_view attribute, bool isReference);
    void TakeKey(std::string_view elementName, std::string_view name, std::string_view text);

    /// Forgets the context node, as after a failure.
    void Abandon();

private:
    void SetName(CNodeData& node, std::string_view name);
    void Store(std::unique_ptr<CNodeData> node);
    void CloseConverter(OpenNode& open);
    void CopyTemplate(const CNodeData& source, NodeID_t target);
    void AddVariable(OpenNode& open, std::string_view name, NodeID_t target);
    void AddImpliedNode(OpenNode& open, const ElementRow& row, std::string_view text,
                        std::string_view name);
    void AddIndexed(CNodeData& node, const ElementRow& row, std::string_view text,
                    std::string_view index);
    void AddIndexedLink(CNodeData& node, std::string_view text, std::string_view offset,
                        bool isReference);
    CProperty MakeLink(CPropertyID::EProperty_ID_t id, std::string_view name);

    CNodeDataMap& m_Map;
    bool m_SuppressStrings;
    int64_t m_SchemaMajor = 0;
    int64_t m_SchemaMinor = 0;
};

}  // namespace GenApi_3_0_ORVANE
