#pragma once
/// The interpolations with the widest vectors that the machine has.

#include "bayer/BayerCell.h"

namespace QyBayer {

enum class Neighbours { TwoByTwo, ThreeByThree };

/// Interpolates a frame with a mosaic, and finishes its rows; the sizes have been
/// checked.
void InterpolateFast(const Image<uint8_t, 3>& image, Neighbours neighbours, Layout layout);
void InterpolateFast(const Image<uint8_t, 4>& image, Neighbours neighbours, Layout layout);
void InterpolateFast(const Image<Word, 3>& image, Neighbours neighbours, Layout layout);

/// Interpolates the same by edges, but for the border, and finishes nothing.
void InterpolateAdaptive(const Image<uint8_t, 3>& image, Layout layout);
void InterpolateAdaptive(const Image<uint8_t, 4>& image, Layout layout);
void InterpolateAdaptive(const Image<Word, 3>& image, Layout layout);

}  // namespace QyBayer
