/// @file
/// Numbers with their high byte first, as the camera sends them.
#ifndef OV_VIRTUAL_BIG_ENDIAN_H
#define OV_VIRTUAL_BIG_ENDIAN_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace OvVirtual {

/// Fills `out` with the lowest bytes of `value`.
inline void PutBigEndian(std::span<std::byte> out, std::uint64_t value) {
    for (std::size_t i = out.size(); i-- > 0; value >>= 8) {
        out[i] = static_cast<std::byte>(value);
    }
}

}  // namespace OvVirtual

#endif
