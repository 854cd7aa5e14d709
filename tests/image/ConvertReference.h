#pragma once
/// The conversions of raw formats, sample by sample.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ConvertReference {

inline std::vector<uint16_t> Unpack12(const std::vector<uint8_t>& packed, size_t samples) {
    std::vector<uint16_t> out;
    for (size_t unit = 0; unit < samples / 2; ++unit) {
        const int first = packed[unit * 3];
        const int shared = packed[unit * 3 + 1];
        const int last = packed[unit * 3 + 2];
        out.push_back(static_cast<uint16_t>(first + 256 * (shared % 16)));
        out.push_back(static_cast<uint16_t>(shared / 16 + 16 * last));
    }
    return out;
}

inline std::vector<uint16_t> Unpack10(const std::vector<uint8_t>& packed, size_t samples) {
    std::vector<uint16_t> out;
    for (size_t i = 0; i < samples; ++i) {
        uint32_t word = 0;
        for (size_t byte = 4; byte-- > 0;) {
            word = word * 256 + packed[i / 3 * 4 + byte];
        }
        out.push_back(static_cast<uint16_t>(word >> (10 * (i % 3)) & 1023U));
    }
    return out;
}

inline uint8_t Reduce(uint16_t sample, int validBit) {
    const int limit = (1 << (8 + validBit)) - 1;
    return static_cast<uint8_t>(std::min<int>(sample, limit) >> validBit);
}

}  // namespace ConvertReference
