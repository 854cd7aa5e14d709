#pragma once
/// The interpolations with the widest vectors that the machine has.

#include "bayer/BayerCell.h"

namespace QyBayer {

enum class Neighbours { TwoByTwo, ThreeByThree };

/// Interpolates a frame with a mosaic and calls its onRow. The caller has checked the
/// sizes.
void InterpolateFast(const Image<uint8_t, 3>& image, Neighbours neighbours, Layout layout);
void InterpolateFast(const Image<uint8_t, 4>& image, Neighbours neighbours, Layout layout);
void InterpolateFast(const Image<Word, 3>& image, Neighbours neighbours, Layout layout);

/// Interpolates along edges. Doesn't call onRow, since the border is copied last.
void InterpolateAdaptive(const Image<uint8_t, 3>& image, Layout layout);
void InterpolateAdaptive(const Image<uint8_t, 4>& image, Layout layout);
void InterpolateAdaptive(const Image<Word, 3>& image, Layout layout);

}  // namespace QyBayer
