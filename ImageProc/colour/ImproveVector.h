#pragma once
/// Colour correction with the widest vectors that the machine has.

#include <array>
#include <cstddef>
#include <cstdint>

namespace QyImprove {

/// How the bytes of a pixel stand.
enum class PixelOrder { Rgb, Bgr, Rgba };

/// A matrix by rows in 4096ths, whose sums for any pixel stay within 16 bits.
using SmallMatrix = std::array<int16_t, 9>;

/// Multiplies pixels by a matrix. In place allowed; a fourth byte is copied.
/// @param tone  what becomes of a sum, limited to 0 .. 4095, in 8 bits; null for
///              a sixteenth of it. All bytes follow as they are.
void CorrectBySmallMatrix(const uint8_t* src, uint8_t* dst, size_t pixels, PixelOrder order,
                          const SmallMatrix& matrix, const uint8_t* tone);

}  // namespace QyImprove
