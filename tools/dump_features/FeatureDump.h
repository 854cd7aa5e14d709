#pragma once
/// All nodes of a description as lines of text, for two engines or two versions
/// of one to be compared.

#include <string>
#include <vector>

#include "GenApi/INodeMap.h"

/// How values are read.
enum class ReadMode {
    Uncached,  ///< always from the device
    Cached     ///< all once beforehand, so that caches are full
};

/// One line per node, sorted by name: name, type of interface, access mode,
/// value, range, what came of writing the value back, and the value that the
/// device has after all have been written back. What fails shows the text of its exception.
/// @param map  with all its ports connected
std::vector<std::string> DumpFeatures(GenApi_3_0_ORVANE::INodeMap& map, ReadMode mode);

/// Connects every port of the map; a producer's modules name theirs otherwise
/// than cameras do. Gives the number of ports.
size_t ConnectAllPorts(GenApi_3_0_ORVANE::INodeMap& map, GenApi_3_0_ORVANE::IPort& port);
