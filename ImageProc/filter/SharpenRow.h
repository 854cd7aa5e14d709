#pragma once
/// Sharpens a row of an image.

#include <array>
#include <cstddef>
#include <cstdint>

namespace QySharpen {

/// Rows and columns that the neighbourhood of a pixel reaches to each side.
constexpr size_t kBorder = 2;
constexpr size_t kRows = 2 * kBorder + 1;
/// Samples that vectors may read or write beyond a kept row.
constexpr size_t kPadding = 256;

/// A copy of the bytes of a row that are sharpened, as they were in the source: those of
/// even columns, and those of odd ones. Each array has room for kPadding more samples at
/// its end.
struct KeptRow {
    int16_t* even;
    int16_t* odd;
};

using KeptRows = std::array<KeptRow, kRows>;

/// Copies a row of an image.
template <int Width>
void KeepRow(const uint8_t* row, size_t width, const KeptRow& kept);

/// Sharpens the pixels of a row between its borders.
/// @param rows      the row in the middle of its neighbours
/// @param src, dst  the first pixel of the row; may be the same
/// @param strength  256ths of the filter's value that are added
template <int Width>
void SharpenRow(const KeptRows& rows, const uint8_t* src, uint8_t* dst, size_t width,
                int32_t strength);

template <>
void KeepRow<1>(const uint8_t* row, size_t width, const KeptRow& kept);
template <>
void KeepRow<3>(const uint8_t* row, size_t width, const KeptRow& kept);
template <>
void SharpenRow<1>(const KeptRows& rows, const uint8_t* src, uint8_t* dst, size_t width,
                   int32_t strength);
template <>
void SharpenRow<3>(const KeptRows& rows, const uint8_t* src, uint8_t* dst, size_t width,
                   int32_t strength);

}  // namespace QySharpen
