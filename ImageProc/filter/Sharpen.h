#pragma once
/// Sharpening of whole images, in place too.

#include <cstddef>
#include <cstdint>

namespace QySharpen {

/// Whether a factor is in its range, 0.1 to 5.0.
bool IsFactor(float factor);

/// Sharpens an image of one byte a pixel. In place allowed.
/// @param factor  in its range
/// @throws std::bad_alloc before anything is written
void OneByte(const uint8_t* src, uint8_t* dst, size_t width, size_t height, float factor);
/// The same for three bytes a pixel: the second is sharpened, and the others
/// change as much as it does.
void ThreeBytes(const uint8_t* src, uint8_t* dst, size_t width, size_t height, float factor);

}  // namespace QySharpen
