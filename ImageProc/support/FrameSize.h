#pragma once
/// Which sizes a frame can have.

#include <cstddef>
#include <cstdint>
#include <limits>

namespace QySize {

/// Whether a frame of that many pixels can exist: a side is a positive number of
/// 32 bits, so that one that is negative in the caller is none, whatever type
/// it comes as; and no memory is longer than the distance of two pointers.
/// @param pixelBytes  bytes of a pixel where it takes most, source or destination
constexpr bool IsPossible(int64_t width, int64_t height, int64_t pixelBytes) {
    constexpr int64_t kMostSide = std::numeric_limits<int32_t>::max();
    constexpr int64_t kMostBytes = std::numeric_limits<ptrdiff_t>::max();
    return width >= 1 && height >= 1 && width <= kMostSide && height <= kMostSide &&
           width * height <= kMostBytes / pixelBytes;
}

}  // namespace QySize
