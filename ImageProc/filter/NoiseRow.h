#pragma once
/// Reduces the noise in a row of an image.

#include <array>
#include <cstddef>
#include <cstdint>

namespace QyNoise {

/// Samples that vectors may read before a kept row.
constexpr size_t kFront = 64;
/// Samples that vectors may read or write beyond a kept row.
constexpr size_t kPadding = 256;

/// What is kept of one channel of a row, with room for kFront more samples before it and for
/// kPadding at its end.
struct KeptChannel {
    /// Sixteenfold: the second byte of each pixel, or the difference of another byte to it.
    int16_t* values;
    /// The bytes themselves, of which the caller makes the largest differences at which a
    /// neighbour counts.
    uint8_t* reaches;
};

/// A copy of a row as it was.
struct KeptRow {
    KeptChannel first;
    KeptChannel green;
    KeptChannel third;
};

/// The rows above, in the middle and below.
using KeptRows = std::array<KeptRow, 3>;

void KeepRow(const uint8_t* row, size_t width, const KeptRow& kept);

/// Reduces the noise of a row and keeps the result. Borders, which have no neighbours on one
/// side, come out wrong.
/// @param rows    `radius` rows apart
/// @param radius  columns from a pixel to its neighbours
void ReduceToKept(const KeptRows& rows, size_t width, size_t radius, const KeptRow& result);

/// The same, with pixels as the result.
void ReduceToPixels(const KeptRows& rows, size_t width, size_t radius, uint8_t* row);

}  // namespace QyNoise
