#pragma once
/// Sums over the pixels of an image.

#include <array>
#include <cstddef>
#include <cstdint>

namespace QyWhiteBalance {

using Sums = std::array<uint64_t, 3>;

/// Sums each of the three bytes of the pixels of a part of an image.
/// @param pixels      the part's first pixel
/// @param rowBytes    bytes from one row to the next
Sums SumChannels(const uint8_t* pixels, size_t width, size_t height, size_t rowBytes);

}  // namespace QyWhiteBalance
