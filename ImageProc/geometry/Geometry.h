#pragma once
/// Moves the bytes of an image to other places, not in place.

#include <cstddef>
#include <cstdint>

namespace QyGeometry {

/// The last byte of every row first.
void ReverseRows(const uint8_t* src, uint8_t* dst, size_t width, size_t height);
/// The last row first.
void ReverseOrderOfRows(const uint8_t* src, uint8_t* dst, size_t width, size_t height);
/// By a quarter: the result has `width` rows of `height` bytes.
void TurnClockwise(const uint8_t* src, uint8_t* dst, size_t width, size_t height);
void TurnCounterClockwise(const uint8_t* src, uint8_t* dst, size_t width, size_t height);

}  // namespace QyGeometry
