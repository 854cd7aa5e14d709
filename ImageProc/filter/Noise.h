#pragma once
/// Noise reduction of images of three bytes a pixel.

#include <cstddef>
#include <cstdint>

namespace QyNoise {

/// Draws each pixel to those of its neighbours that differ little from it: first
/// to the nearest ones, then to those two pixels away. A border as wide as the
/// distance stays as it was.
/// @throws std::bad_alloc before anything is written
void Reduce(uint8_t* image, size_t width, size_t height);

}  // namespace QyNoise
