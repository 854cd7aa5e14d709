#pragma once
/// Colour correction with the widest vectors that the machine has.

#include <array>
#include <cstddef>
#include <cstdint>

namespace QyImprove {

/// The order of a pixel's bytes.
enum class PixelOrder { Rgb, Bgr, Rgba };

/// A matrix by rows in 4096ths, whose sums for any pixel stay within 16 bits.
using SmallMatrix = std::array<int16_t, 9>;

/// Multiplies pixels by a matrix. In place allowed; a fourth byte is copied.
/// @param tone  the byte for each sum from 0 to 4095, followed by the 256 bytes in order;
///              null for a sixteenth of the sum. Sums are limited to that range
void CorrectBySmallMatrix(const uint8_t* src, uint8_t* dst, size_t pixels, PixelOrder order,
                          const SmallMatrix& matrix, const uint8_t* tone);

}  // namespace QyImprove
