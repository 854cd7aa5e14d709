#pragma once
/// Numbers whose highest byte comes first, as the camera sends them.

#include <cstddef>
#include <cstdint>
#include <span>

namespace OvVirtual {

/// Fills `out` with the lowest bytes of `value`.
inline void PutBigEndian(std::span<std::byte> out, uint64_t value) {
    for (size_t i = out.size(); i-- > 0; value >>= 8) {
        out[i] = static_cast<std::byte>(value);
    }
}

}  // namespace OvVirtual
