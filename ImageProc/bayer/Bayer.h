#pragma once
/// The mosaic interpolation for functions that process its pixels further.

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

/// Like QyRaw8toRGB24Ex(), for an order that exists.
/// @param onRow  is called once for each finished row; may be null
QY_STATUS ConvertRaw8(const void* src, void* dst, uint32_t width, uint32_t height,
                      const Conversion& conversion, const RowWork<uint8_t>* onRow);

}  // namespace QyBayer
