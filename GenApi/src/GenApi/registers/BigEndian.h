#pragma once
/// Numbers of four bytes as an IEEE 1394 bus transfers them.

#include <cstdint>

namespace GenApi_3_0_ORVANE {

inline void PutBigEndian(uint32_t number, uint8_t* bytes) {
    for (int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<uint8_t>(number >> (24 - 8 * i));
    }
}

inline uint32_t GetBigEndian(const uint8_t* bytes) {
    return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

}  // namespace GenApi_3_0_ORVANE
