#pragma once

#include <cstdint>

namespace GenApi_3_0_ORVANE {

/// How large a description is.
struct NodeStatistics_t {
    uint32_t NumNodes = 0;       ///< with the root element
    uint32_t NumProperties = 0;  ///< entries of the nodes' lists
    uint32_t NumLinks = 0;       ///< those of them that link to a node
    uint32_t NumStrings = 0;     ///< texts, equal ones counted each time
};

}  // namespace GenApi_3_0_ORVANE
