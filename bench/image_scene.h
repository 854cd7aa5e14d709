#pragma once
/// Frames to work on.

#include <cstdint>
#include <vector>

#include "image_row.h"

namespace ImageBench {

/// A scene of slopes, edges and the noise of a sensor, as samples of a mosaic that
/// begins with R G, or as pixels of three samples.
/// @param bits  of a pixel; of packed samples every byte is taken for one
std::vector<uint8_t> MakeScene(double bits, Size size);

}  // namespace ImageBench
