#pragma once
/// The parts of a cache file in their order: texts, node table, property lists. The
/// operations of the data classes that write and read them are defined here too, where
/// all of the disk cache is.
/// Two readers share them, the one of the data map and the one that makes live
/// nodes at once.

#include <string>
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
    std::vector<std::string> strings;           ///< by StringID_t
    std::vector<CNodeData::ENodeType_t> types;  ///< by NodeID_t; the first is the map's own

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

}  // namespace GenApi_3_0_ORVANE
