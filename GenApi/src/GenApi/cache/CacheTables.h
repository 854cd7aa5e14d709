#pragma once
/// The parts of a cache file in their order: texts, node table, and for each node its property
/// list and its closure. The operations of the data classes that write and read them are defined
/// here too, where all of the disk cache is. Two readers share them, the one of the data map and
/// the one that makes live nodes at once.

#include <string_view>
#include <vector>

#include "cache/CacheStream.h"
#include "cache/PropertyForms.h"
#include "nodes/NodeData.h"

namespace GenApi_3_0_ORVANE {

/// How many identifiers of each kind a file knows.
struct CCacheCounts {
    size_t strings;
    size_t nodes;
};

/// All that comes before the property lists.
struct CCacheTables {
    std::vector<std::string_view> strings;      ///< by StringID_t; in the file's bytes
    std::vector<CNodeData::ENodeType_t> types;  ///< by NodeID_t; the first is the map's own
    size_t numClosureLinks = 0;                 ///< of all nodes together

    CCacheCounts Count() const { return {strings.size(), types.size()}; }
};

/// Reads what comes before the property lists. Incomplete when the reader has failed afterwards.
CCacheTables ReadCacheTables(CCacheReader& reader);

/// Reads the property list of one node and hands each property on: one that such a
/// node can have, of which every identifier is one that the tables have.
/// @param pNodeDataMap  resolves the identifiers
template <class Take>
void ReadCacheProperties(CCacheReader& reader, const CCacheCounts& counts,
                         CNodeData::ENodeType_t node, INodeDataMap* pNodeDataMap,
                         const Take& take) {
    const auto count = reader.Number<4>();
    for (uint64_t i = 0; i < count && reader.IsGood(); ++i) {
        CProperty property = CProperty::FromFile(reader, counts, pNodeDataMap);
        if (!reader.IsGood()) {
            return;
        }
        if (!IsPropertyOf(node, property)) {
            reader.Fail(CCacheReader::State::Corrupt);
            return;
        }
        take(std::move(property));
    }
}

/// Appends the links of one kind in the closure of a node, each of which leads to a node.
/// @param room  how many links the list may have afterwards
/// @return how many there are
size_t ReadCacheLinks(CCacheReader& reader, const CCacheCounts& counts, size_t room,
                      CNodeData::NodeIDs_t& links);
/// Reads how many properties come before a node's closure.
size_t ReadClosurePlace(CCacheReader& reader);

}  // namespace GenApi_3_0_ORVANE
