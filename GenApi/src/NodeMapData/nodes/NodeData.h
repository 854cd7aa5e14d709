#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "properties/NodeID.h"
#include "properties/Property.h"
#include "properties/ToStringStyle.h"

namespace GenApi_3_0_ORVANE {

class INodeDataMap;

/// One node of a description: a type and a list of properties. Belongs to a
/// node data map once stored there. One thread at a time.
class CNodeData {
public:
    /// The numbers are written to the cache. The texts are those of Value2String.
    enum ENodeType_t {
        Node_ID = 0,
        Category_ID = 1,
        Integer_ID = 2,
        Enumeration_ID = 3,
        EnumEntry_ID = 4,
        MaskedIntReg_ID = 5,
        Register_ID = 6,
        IntReg_ID = 7,
        Float_ID = 8,
        FloatReg_ID = 9,
        SwissKnife_ID = 10,
        IntSwissKnife_ID = 11,
        IntKey_ID = 12,
        TextDesc_ID = 13,
        Port_ID = 14,
        ConfRom_ID = 15,
        AdvFeatureLock_ID = 16,
        SmartFeature_ID = 17,
        String_ID = 18,
        StringReg_ID = 19,
        Boolean_ID = 20,
        Command_ID = 21,
        Converter_ID = 22,
        IntConverter_ID = 23,
        StructReg_ID = 24,  ///< template of the parser, never stored in a map
        RegisterDescription_ID = 27,
        _NotImpl_ID = 28  ///< not a node
    };

    /// In the order in which they were added.
    using PropertyVector_t = std::vector<CProperty>;
    /// Nodes that a node leads to or is reached from, in the order of their links.
    using NodeIDs_t = std::vector<NodeID_t>;

    /// What preprocessing has found through chains of links. A description has ten times as many
    /// of these links as properties, so they are plain identifiers here. Everywhere else they
    /// count as properties, one for each.
    struct Closure {
        /// The nodes that depend on this one, pDependent, from the highest down.
        NodeIDs_t dependents = {};
        /// The nodes where the value ends, pTerminal, in ascending order.
        NodeIDs_t terminals = {};
        /// How many properties come before these links.
        size_t place = 0;

        size_t GetNumLinks() const { return dependents.size() + terminals.size(); }
    };

    /// A nameless node. @p pNodeDataMap is not owned and outlives the node.
    CNodeData(ENodeType_t nodeType, INodeDataMap* pNodeDataMap);
    /// A node that has its name among the properties it will get.
    CNodeData(ENodeType_t nodeType, NodeID_t nodeID, INodeDataMap* pNodeDataMap);
    /// Copies a node into another map under that identifier.
    /// @param keepOnlyKnownTargets  drops links to nodes that the target map doesn't know.
    ///         Without it, all links must be known there, and what preprocessing has added isn't
    ///         copied
    CNodeData(const CNodeData& source, NodeID_t nodeID, INodeDataMap* pTargetMap,
              bool keepOnlyKnownTargets);
    CNodeData(const CNodeData&) = delete;
    CNodeData& operator=(const CNodeData&) = delete;
    virtual ~CNodeData();

    /// Invalid until the node has a name.
    virtual NodeID_t GetNodeID() const { return m_NodeID; }
    /// Enters the name in the map, takes its identifier and adds the property
    /// Name.
    virtual void SetName(std::string_view name);
    /// The name in the map; the node must have one.
    virtual const std::string& GetName() const;
    /// Prints in the styles for nodes; any other is an assertion.
    virtual std::string ToString(EToStringStyle_t style) const;

    ENodeType_t GetNodeType() const { return m_NodeType; }
    INodeDataMap* GetNodeDataMap() const { return m_pNodeDataMap; }
    /// The properties without the links of the closure.
    const PropertyVector_t& GetProperties() const { return m_Properties; }
    PropertyVector_t& GetProperties() { return m_Properties; }
    const Closure& GetClosure() const { return m_Closure; }
    /// Puts the links of a closure after the properties of the present.
    void SetClosure(NodeIDs_t dependents, NodeIDs_t terminals) {
        m_Closure = {std::move(dependents), std::move(terminals), m_Properties.size()};
    }
    /// Calls `use` with all properties in their order, including the links of the closure.
    template <class Use>
    void ForEachProperty(const Use& use) const {
        const auto place = m_Properties.begin() + static_cast<ptrdiff_t>(m_Closure.place);
        std::for_each(m_Properties.begin(), place, use);
        for (const NodeID_t dependent : m_Closure.dependents) {
            use(CProperty(m_pNodeDataMap, CPropertyID::pDependent_ID, dependent));
        }
        for (const NodeID_t terminal : m_Closure.terminals) {
            use(CProperty(m_pNodeDataMap, CPropertyID::pTerminal_ID, terminal));
        }
        std::for_each(place, m_Properties.end(), use);
    }

    /// Appends a property, which must be initialised. The reference lives until
    /// the list next changes.
    CProperty& AddProperty(std::unique_ptr<CProperty> pProperty);
    CProperty& AddProperty(CProperty property);
    /// Appends a property of this node's map, made of what a constructor of CProperty takes after
    /// the map.
    template <typename... Value>
    CProperty& AddProperty(CPropertyID id, Value&&... value) {
        return AddProperty(CProperty(m_pNodeDataMap, id, std::forward<Value>(value)...));
    }
    /// The first property with the identifier, or null; lives until the list
    /// next changes. Not for the links of the closure.
    const CProperty* FindProperty(CPropertyID id) const;
    /// Deletes all properties with the identifier; the rest keep their order. Not for the links
    /// of the closure.
    void RemoveProperties(CPropertyID id);
    /// Writes the property list and the closure to a cache file.
    void ToFile(CCacheWriter& writer) const;
    /// Reads it back. Incomplete when the reader has failed afterwards.
    void FromFile(CCacheReader& reader, const CCacheCounts& counts);
    /// Gives back the memory that growing has reserved.
    void ShrinkToFit() { m_Properties.shrink_to_fit(); }

    /// -1 yields to, 1 replaces a node of the same name on injection; 0 when
    /// the node does not say.
    int64_t GetMergePriority() const;
    /// Marks the end of what the description itself says; properties that are added from now on
    /// are derived from it.
    void EndGivenProperties() { m_NumGiven = m_Properties.size(); }

    /// Whether this node says nothing that @p other, a node of the same name, doesn't say. Two
    /// nodes that can't be compared pair by pair (another type, identifier or number of
    /// properties, or no properties at all) count as equal, too.
    bool operator==(const CNodeData& other) const;

    /// The text of a node type, which is its XML element name. Asserts on the
    /// numbers that are no nodes of a map.
    static const char* Value2String(ENodeType_t nodeType);

private:
    CProperty& Append(CProperty* pProperty);
    std::string Dump() const;
    std::string StartTag() const;

    ENodeType_t m_NodeType;
    NodeID_t m_NodeID;
    PropertyVector_t m_Properties;
    Closure m_Closure;
    INodeDataMap* m_pNodeDataMap;
    /// How many of the properties come from the description.
    size_t m_NumGiven = SIZE_MAX;
};

}  // namespace GenApi_3_0_ORVANE
