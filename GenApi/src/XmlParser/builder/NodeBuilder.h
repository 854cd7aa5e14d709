#pragma once
/// Turns checked elements into nodes and properties.

#include <memory>
#include <string_view>
#include <vector>

#include "builder/Conversion.h"
#include "grammar/Grammar.h"
#include "nodes/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {

/// The checked attribute of an element that holds a text; without a row, there
/// is none.
struct TextAttribute {
    const AttributeRow* row = nullptr;
    std::string_view value;
};

/// A node under construction, with the two formula nodes of a converter.
struct OpenNode {
    std::unique_ptr<CNodeData> node;
    std::unique_ptr<CNodeData> formulaTo;
    std::unique_ptr<CNodeData> formulaFrom;
    /// The node's own, else that of the node around it.
    int64_t mergePriority = 0;
    /// The places of the variables among the node's properties.
    std::vector<size_t> variables;

    bool IsConverter() const { return formulaTo != nullptr; }
};

/// The semantics of the grammar's rows. Failures of the data leave as
/// RuntimeException or PropertyException, of single values as ValueError.
class CNodeBuilder {
public:
    CNodeBuilder(CNodeDataMap& map, bool suppressStrings)
        : m_Map(map), m_SuppressStrings(suppressStrings) {}

    /// Opens an element with content of its own.
    /// @param parent  the element around it; null for the outermost
    OpenNode OpenElement(const ElementType& type, const OpenNode* parent);
    /// Opens a key node inside a configuration ROM.
    OpenNode OpenKey(std::string_view elementName, const OpenNode& parent);
    void TakeAttribute(OpenNode& open, const AttributeRow& row, std::string_view value);
    /// All attributes have been taken.
    static void EndAttributes(OpenNode& open);
    /// Takes an element that holds a text.
    void TakeText(OpenNode& open, const ElementRow& row, std::string_view text,
                  const TextAttribute& attribute);
    /// Stores the node.
    /// @return its identifier; the invalid one for an element that leaves no node
    NodeID_t CloseElement(OpenNode& open, const ElementType& type);
    void CloseKey(OpenNode& open, std::string_view text);
    /// Links a node to one that was stored inside it.
    void TakeChild(OpenNode& parent, const ElementType& childType, NodeID_t child);

    /// Forgets the context node, as after a failure.
    void Abandon();

private:
    void SetName(const OpenNode& open, std::string_view name);
    static void InheritMergePriority(CNodeData& node, int64_t mergePriority);
    void Store(std::unique_ptr<CNodeData> node);
    void CloseConverter(OpenNode& open);
    void CopyTemplate(const CNodeData& source, NodeID_t target);
    void CountCopies(size_t count);
    void AddVariable(OpenNode& open, NodeID_t target, std::string_view name);
    NodeID_t StoreImpliedNode(const OpenNode& open, const ElementRow& row, std::string_view text,
                              std::string_view name);
    void CopyVariables(const OpenNode& source, CNodeData& target);
    static std::string_view Replacement(const CNodeData& node, const ElementRow& row,
                                        std::string_view text);
    /// Makes a property with a value of that type from a text.
    CProperty MakeProperty(CPropertyID::EProperty_ID_t id, CProperty::EDataType_t type,
                           std::string_view text);
    CProperty MakeProperty(const ElementRow& row, std::string_view text,
                           const TextAttribute& attribute);

    CNodeDataMap& m_Map;
    bool m_SuppressStrings;
    int64_t m_SchemaMajor = 0;
    int64_t m_SchemaMinor = 0;
    size_t m_NumCopies = 0;
};

}  // namespace GenApi_3_0_ORVANE
