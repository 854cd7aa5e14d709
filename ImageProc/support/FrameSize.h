#pragma once
/// The sizes that a frame can have.

#include <cstddef>
#include <cstdint>
#include <limits>

namespace QySize {

/// Whether a frame of that size can exist. A side is a positive number of 32 bits with a
/// sign: a negative size of a caller is refused even where the parameter is unsigned. The
/// bytes of the frame must be within the distance that two pointers can have.
/// @param pixelBytes  bytes of a pixel of the source or of the destination, whichever has
///                    more
constexpr bool IsPossible(int64_t width, int64_t height, int64_t pixelBytes) {
    constexpr int64_t kMostSide = std::numeric_limits<int32_t>::max();
    constexpr int64_t kMostBytes = std::numeric_limits<ptrdiff_t>::max();
    return width >= 1 && height >= 1 && width <= kMostSide && height <= kMostSide &&
           width * height <= kMostBytes / pixelBytes;
}

}  // namespace QySize
