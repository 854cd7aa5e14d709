#pragma once
/// Adjustments of whole images with the widest vectors that the machine has. All
/// may work in place.

#include <cstddef>
#include <cstdint>

namespace QyTone {

/// Puts each byte through a table of 256 bytes.
void MapBytes(const uint8_t* src, uint8_t* dst, size_t count, const uint8_t* table);

/// Coefficients of a saturation, in 256ths.
struct SaturationMatrix {
    int32_t a;
    int32_t b;
    int32_t c;
    int32_t d;
    int32_t e;
};

/// Mixes the three bytes of each pixel. The matrix is that of a saturation: `a`
/// differs from 256 by less than 180 and the others from 0 by less than 160.
void Saturate(const uint8_t* src, uint8_t* dst, size_t pixels, const SaturationMatrix& matrix);

/// The lightness of each pixel of three bytes in all three.
void ToGrey(const uint8_t* src, uint8_t* dst, size_t pixels);

}  // namespace QyTone
