#pragma once

#include <cstddef>
#include <string>

#include "NodeMapData/ContentType.h"

namespace GenApi_3_0_ORVANE {

class CNodeDataMap;

/// Turns a camera description into node data. The Parse operations only fill
/// the map, which may still refer to nodes that injected data brings; the
/// preprocessing completes it. The caller owns the map. One thread at a time.
class CNodeDataMapFactory {
public:
    CNodeDataMapFactory() = delete;

    /// Parses a file. Only the name of a zipped one may hold "$(VARIABLE)".
    /// @param suppressStrings leaves out the texts that only people read.
    /// @throws RuntimeException with line and column for what cannot be parsed,
    ///         PropertyException for a text that is no integer.
    static void ParseXmlFile(CNodeDataMap* pNodeDataMap, EContentType_t contentType,
                             const std::string& fileName, bool suppressStrings);
    /// Parses a block of memory; failures as for a file.
    static void ParseXmlBuffer(CNodeDataMap* pNodeDataMap, EContentType_t contentType,
                               const void* pData, size_t size, bool suppressStrings);
    /// Parses a text up to its zero; failures as for a file.
    static void ParseXmlString(CNodeDataMap* pNodeDataMap, const char* pText, bool suppressStrings);

    /// Adds what live nodes need and a description does not say: which nodes
    /// depend on one, in which terminal nodes its value ends, what a selector
    /// reaches, and which nodes are features. All of it is appended as
    /// properties. Once per map.
    /// @throws RuntimeException for a reference to a missing node and for a
    ///         cycle of links; the map is of no further use then.
    static void PreProcessNodeDataMap(CNodeDataMap* pNodeDataMap);
};

}  // namespace GenApi_3_0_ORVANE
