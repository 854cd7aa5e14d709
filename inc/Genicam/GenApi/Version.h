#pragma once

#include <cstdint>

namespace GenApi_3_0_ORVANE {

/// A version of a schema, a description or this engine: three numbers, the most significant one
/// first.
struct Version_t {
    uint16_t Major = 0;
    uint16_t Minor = 0;
    uint16_t SubMinor = 0;
};

}  // namespace GenApi_3_0_ORVANE
