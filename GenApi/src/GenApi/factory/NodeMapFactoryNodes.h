#pragma once
/// Makes live nodes of data, and data of live nodes.

#include <memory>
#include <string>

#include "cache/CacheStream.h"
#include "map/NodeMap.h"
#include "nodes/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {

/// Makes the live nodes of preprocessed data, which they refer to and keep.
/// @param lock  shared with other maps; null for a lock of the map's own
std::unique_ptr<CNodeMap> BuildNodeMap(std::shared_ptr<const CNodeDataMap> data,
                                       const gcstring& deviceName, CLock* lock);

/// The same from the bytes of a cache file, without a data map in between. Returns null if the
/// reader has failed.
/// @param reader  at the beginning of the bytes
std::unique_ptr<CNodeMap> CreateNodeMapDirectFromCache(CCacheReader& reader,
                                                       std::shared_ptr<const std::string> bytes,
                                                       const gcstring& deviceName, CLock* lock);

/// Fills the empty data with what the live nodes return about themselves.
void DescribeNodeMap(INodeMap* nodeMap, CNodeDataMap& data);

}  // namespace GenApi_3_0_ORVANE
