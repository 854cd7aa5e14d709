#pragma once
/// Mirrors and turns images of bytes. Not in place.

#include <cstddef>
#include <cstdint>

namespace QyGeometry {

/// Reverses every row.
void ReverseRows(const uint8_t* src, uint8_t* dst, size_t width, size_t height);
/// Reverses the order of the rows.
void ReverseOrderOfRows(const uint8_t* src, uint8_t* dst, size_t width, size_t height);
/// Turns by a quarter. The result has `width` rows of `height` bytes.
void TurnClockwise(const uint8_t* src, uint8_t* dst, size_t width, size_t height);
void TurnCounterClockwise(const uint8_t* src, uint8_t* dst, size_t width, size_t height);

}  // namespace QyGeometry
