#pragma once
/// Reduces the noise in a row of an image.

#include <array>
#include <cstddef>
#include <cstdint>

namespace QyNoise {

/// Pixels that vectors may read or write beyond a kept row.
constexpr size_t kPadding = 256;

/// A copy of a row as it was: the second byte of each pixel, and the differences of the
/// other two to it. Each array has room for kPadding more samples at its end.
struct KeptRow {
    int16_t* green;
    int16_t* first;
    int16_t* third;
};

/// The rows above, in the middle and below.
using KeptRows = std::array<KeptRow, 3>;

void KeepRow(const uint8_t* row, size_t width, const KeptRow& kept);

/// Reduces the noise of a row between its borders.
/// @param rows        `radius` rows apart
/// @param tolerances  for each byte of the row, the difference that a neighbour must stay
///                    below to count; followed by kPadding pixels
/// @param dst         the first pixel of the row
/// @param radius      columns from a pixel to its neighbours
void ReduceRow(const KeptRows& rows, const uint8_t* tolerances, uint8_t* dst, size_t width,
               size_t radius);

}  // namespace QyNoise
