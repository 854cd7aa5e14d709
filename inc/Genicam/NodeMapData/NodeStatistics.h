#pragma once

#include <cstdint>

namespace GenApi_3_0_ORVANE {

/// What a description amounts to.
struct NodeStatistics_t {
    uint32_t NumNodes = 0;
    uint32_t NumProperties = 0;  ///< entries of the nodes' lists
    uint32_t NumLinks = 0;       ///< those of them that link to a node
    uint32_t NumStrings = 0;
};

}  // namespace GenApi_3_0_ORVANE
