#pragma once
/// Makes frames for the functions.

#include <cstdint>
#include <vector>

#include "image_row.h"

namespace ImageBench {

/// A scene with gradients, edges and the noise of a sensor, as samples of a mosaic that
/// begins with R G, or as pixels of three samples.
/// @param bits  bits of a pixel; packed samples are bytes like any others
std::vector<uint8_t> MakeScene(double bits, Size size);

}  // namespace ImageBench
