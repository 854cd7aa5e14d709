#pragma once
/// Noise reduction of images of three bytes a pixel.

#include <cstddef>
#include <cstdint>

namespace QyNoise {

/// Moves each pixel towards those of its neighbours that differ little from it: first
/// towards the nearest ones, then towards those two pixels away. A border as wide as the
/// distance isn't changed.
/// @throws std::bad_alloc before anything is written
void Reduce(uint8_t* image, size_t width, size_t height);

}  // namespace QyNoise
