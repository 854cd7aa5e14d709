#pragma once
/// Adjusts whole images with the widest vectors that the machine has. In place allowed.

#include <cstddef>
#include <cstdint>

namespace QyTone {

/// Maps each byte by a table of 256 bytes.
void MapBytes(const uint8_t* src, uint8_t* dst, size_t count, const uint8_t* table);

/// Coefficients of a saturation, in 256ths.
struct SaturationMatrix {
    int32_t a;
    int32_t b;
    int32_t c;
    int32_t d;
    int32_t e;
};

/// Mixes the three bytes of each pixel. The matrix must be that of a saturation, whose
/// `a` differs from 256 by less than 180, and whose others are between -160 and 160.
void Saturate(const uint8_t* src, uint8_t* dst, size_t pixels, const SaturationMatrix& matrix);

/// Sets all three bytes of each pixel to its lightness.
void ToGrey(const uint8_t* src, uint8_t* dst, size_t pixels);

}  // namespace QyTone
