#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "cache/CacheTables.h"
#include "cache/DirectNodeDataMap.h"
#include "core/INodeDescriptions.h"
#include "core/INodePrivate.h"

namespace GenApi_3_0_ORVANE {

/// The bytes of a cache file, from which live nodes are made and which keep their texts.
class CCachedDescriptions final : public INodeDescriptions {
public:
    /// Reads what comes before the property lists.
    /// @param reader  at the beginning of the bytes
    CCachedDescriptions(std::shared_ptr<const std::string> bytes, CCacheReader& reader);

    size_t GetNumNodes() const { return m_Types.size(); }
    CNodeData::ENodeType_t GetType(NodeID_t nodeID) const {
        return m_Types[static_cast<size_t>(nodeID.ToIndex())];
    }
    /// Reads the next node and hands its properties to whom they are for: a node, or the map for
    /// the first.
    template <class Taker>
    void ReadNode(CCacheReader& reader, NodeID_t nodeID, Taker& taker);
    /// Checks what shows only when all nodes were read.
    void CheckEnd(CCacheReader& reader) const;

    void ForEachProperty(NodeID_t nodeID,
                         const std::function<void(const CProperty&)>& use) const override;

private:
    /// The two lists of a closure, which are in a row in the list of all links.
    struct Links {
        NodeIDSpan dependents;
        NodeIDSpan terminals;
    };
    Links ReadClosure(CCacheReader& reader, size_t numProperties);
    NodeIDSpan ReadLinks(CCacheReader& reader);

    std::shared_ptr<const std::string> m_Bytes;
    std::vector<CNodeData::ENodeType_t> m_Types;
    CCacheCounts m_Counts{};
    size_t m_NumLinks = 0;
    /// Properties refer to it as to the map that they are part of.
    mutable DirectNodeDataMap m_Texts;
    /// Where the property list of each node begins.
    std::vector<size_t> m_Places;
    /// The links of all closures. The nodes point to them, so it never grows beyond what is
    /// reserved.
    CNodeData::NodeIDs_t m_Links;
};

template <class Taker>
void CCachedDescriptions::ReadNode(CCacheReader& reader, NodeID_t nodeID, Taker& taker) {
    m_Places.push_back(m_Bytes->size() - reader.GetRest());
    size_t numProperties = 0;
    // Names aren't stored apart: each arrives as a property of its node.
    ReadCacheProperties(reader, m_Counts, GetType(nodeID), &m_Texts,
                        [&](const CProperty& property) {
                            if (property.GetPropertyID() == CPropertyID::Name_ID &&
                                !m_Texts.SetNodeName(nodeID, property.StringID())) {
                                reader.Fail(CCacheReader::State::Corrupt);
                            }
                            ++numProperties;
                            taker.SetProperty(property);
                        });
    const Links links = ReadClosure(reader, numProperties);
    if constexpr (requires { taker.SetClosure(links.dependents, links.terminals); }) {
        taker.SetClosure(links.dependents, links.terminals);
    }
}

}  // namespace GenApi_3_0_ORVANE
