#pragma once
/// Mixes the colours of pixels.

#include <array>
#include <cstddef>
#include <cstdint>

namespace QyColour {

/// By rows, in 256ths.
using Matrix = std::array<int16_t, 9>;

/// Multiplies pixels of three bytes by a matrix, in place. Results are limited to 0 ..
/// 255.
void MixColours(uint8_t* image, size_t pixels, const Matrix& matrix);

}  // namespace QyColour
