#pragma once
/// The rules of the fast interpolations for one pixel. They are used where no whole
/// vector fits.

#include "bayer/BayerCell.h"

namespace QyBayer {

/// The colour of the two by two cell whose top left sample is given: its R, its
/// B, and the mean of its two G.
/// @param redX, redY  parity of the cell's R sample within the cell
template <class Sample, int Width>
inline void PutCell(const Image<Sample, Width>& image, Sample* pixel, const Sample* top,
                    const Sample* bottom, unsigned redX, unsigned redY) {
    const Sample* const redRow = redY == 0 ? top : bottom;
    const Sample* const blueRow = redY == 0 ? bottom : top;
    const unsigned blueX = 1 - redX;
    const int green = redRow[blueX] + blueRow[redX];
    image.Put(pixel, redRow[redX], static_cast<Sample>(green >> 1), blueRow[blueX]);
}

/// An R or B sample with its neighbours around.
template <bool IsRed, class Sample, int Width>
inline void PutAtColour(const Image<Sample, Width>& image, Sample* pixel, const Sample* up,
                        const Sample* row, const Sample* down) {
    const auto green = static_cast<Sample>((row[-1] + row[1] + up[0] + down[0]) >> 2);
    const auto other = static_cast<Sample>((up[-1] + up[1] + down[-1] + down[1]) >> 2);
    image.Put(pixel, IsRed ? row[0] : other, green, IsRed ? other : row[0]);
}

/// A G sample with its neighbours around.
/// @tparam IsRedBeside whether the samples left and right of it are R
template <bool IsRedBeside, class Sample, int Width>
inline void PutAtGreen(const Image<Sample, Width>& image, Sample* pixel, const Sample* up,
                       const Sample* row, const Sample* down) {
    const auto green = static_cast<Sample>((4 * row[0] + up[-1] + up[1] + down[-1] + down[1]) >> 3);
    const auto beside = static_cast<Sample>((row[-1] + row[1]) >> 1);
    const auto above = static_cast<Sample>((up[0] + down[0]) >> 1);
    image.Put(pixel, IsRedBeside ? beside : above, green, IsRedBeside ? above : beside);
}

/// The last row, whose pixels come in pairs from the cells of the row before.
template <class Sample, int Width>
void PutLastRow(const Image<Sample, Width>& image, Layout layout) {
    const Sample* const top = image.Row(image.height - 2);
    const Sample* const bottom = image.Row(image.height - 1);
    Sample* out = image.Out(image.height - 1);
    for (size_t x = 0; x < image.width; x += 2, out += 2 * Width) {
        PutCell(image, out, top + x, bottom + x, layout.redX, layout.redY);
        PutCell(image, out + Width, top + x, bottom + x, layout.redX, layout.redY);
    }
}

}  // namespace QyBayer
