#pragma once
/// The order of the bytes of a number in a register.

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

/// Puts a register's bytes into the machine's order, or back.
inline void SwapToMachine(std::span<uint8_t> bytes, EEndianess endianess) {
    if ((endianess == BigEndian) == (std::endian::native == std::endian::little)) {
        std::reverse(bytes.begin(), bytes.end());
    }
}

}  // namespace GenApi_3_0_ORVANE
