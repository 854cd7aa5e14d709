#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "NodeMapData/ContentType.h"

namespace GenApi_3_0_ORVANE {

class CNodeDataMap;

/// Turns a camera description into node data. Parsing only fills the map, which
/// may still refer to nodes that injected data brings; the preprocessing
/// completes it. The caller owns the map. One thread at a time.
class CNodeDataMapFactory {
public:
    CNodeDataMapFactory() = delete;

    /// Returns the text of a file. Only the name of a zipped one may hold "$(VARIABLE)".
    /// @throws RuntimeException for what can't be read or unpacked
    static std::string ReadXmlFile(EContentType_t contentType, const std::string& fileName);
    /// Returns the text of a block of memory: the block itself, or what it unpacks to, which
    /// @p unpacked then keeps. Failures as for a file.
    static std::string_view ReadXmlBuffer(EContentType_t contentType, const void* pData,
                                          size_t size, std::string& unpacked);

    /// Fills the empty map with the nodes of a text.
    /// @param suppressStrings leaves out the texts that only people read.
    /// @throws RuntimeException with line and column for what cannot be parsed,
    ///         PropertyException for a text that is no integer.
    static void ParseXml(CNodeDataMap* pNodeDataMap, std::string_view document,
                         bool suppressStrings);

    /// Adds what live nodes need and a description does not say: which nodes
    /// depend on one, in which terminal nodes its value ends, what a selector
    /// reaches, and which nodes are features. All of it is appended as
    /// properties. Once per map.
    /// @throws RuntimeException for a reference to a missing node and for a
    ///         cycle of links; the map is of no further use then.
    static void PreProcessNodeDataMap(CNodeDataMap* pNodeDataMap);
};

}  // namespace GenApi_3_0_ORVANE
