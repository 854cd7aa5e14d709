#pragma once
/// The mosaic interpolation for those of our functions that go on with its pixels.

#include <cstdint>

#include "QyImageProc.h"
#include "bayer/BayerCell.h"

namespace QyBayer {

struct Conversion {
    QyInterpolationMethod method;
    QyColorFilter filter;
    uint8_t flip;
    QyChannelOrder order;
};

/// QyRaw8toRGB24Ex with a known order.
/// @param onRow  done once with each row that was interpolated; null for nothing
QY_STATUS ConvertRaw8(const void* src, void* dst, uint32_t width, uint32_t height,
                      const Conversion& conversion, const RowWork<uint8_t>* onRow);

}  // namespace QyBayer
