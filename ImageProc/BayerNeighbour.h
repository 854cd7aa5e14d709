#pragma once
/// The fast interpolations: two by two, and three by three.

#include "BayerCell.h"

namespace QyBayer {

/// The colour of the two by two cell whose top left sample is given: its R, its
/// B, and the mean of its two G.
/// @tparam RedX, RedY  parity of the cell's R sample within the cell
template <unsigned RedX, unsigned RedY, class Sample, int Width>
inline void PutCell(const Image<Sample, Width>& image, Sample* pixel, const Sample* top,
                    const Sample* bottom) {
    const Sample* const redRow = RedY == 0 ? top : bottom;
    const Sample* const blueRow = RedY == 0 ? bottom : top;
    constexpr unsigned kBlueX = 1 - RedX;
    const int green = redRow[kBlueX] + blueRow[RedX];
    image.Put(pixel, redRow[RedX], static_cast<Sample>(green >> 1), blueRow[kBlueX]);
}

/// A row of cells, of which the last pixel repeats. The layout is that of the
/// row's first cell.
template <unsigned RedX, unsigned RedY, class Sample, int Width>
void PutCellRow(const Image<Sample, Width>& image, Sample* out, const Sample* top,
                const Sample* bottom) {
    size_t x = 0;
    for (; x + 2 < image.width; x += 2, out += 2 * Width) {
        PutCell<RedX, RedY>(image, out, top + x, bottom + x);
        PutCell<1 - RedX, RedY>(image, out + Width, top + x + 1, bottom + x + 1);
    }
    PutCell<RedX, RedY>(image, out, top + x, bottom + x);
    PutCell<RedX, RedY>(image, out + Width, top + x, bottom + x);
}

/// The last row, whose pixels come in pairs from the cells of the row before.
template <unsigned RedX, unsigned RedY, class Sample, int Width>
void PutLastRow(const Image<Sample, Width>& image) {
    const Sample* const top = image.Row(image.height - 2);
    const Sample* const bottom = image.Row(image.height - 1);
    Sample* out = image.Out(image.height - 1);
    for (size_t x = 0; x < image.width; x += 2, out += 2 * Width) {
        PutCell<RedX, RedY>(image, out, top + x, bottom + x);
        PutCell<RedX, RedY>(image, out + Width, top + x, bottom + x);
    }
}

template <unsigned RedX, unsigned RedY, class Sample, int Width>
void InterpolateNeighbour(const Image<Sample, Width>& image) {
    for (size_t y = 0; y + 1 < image.height; y += 2) {
        PutCellRow<RedX, RedY>(image, image.Out(y), image.Row(y), image.Row(y + 1));
        if (y + 2 < image.height) {
            PutCellRow<RedX, 1 - RedY>(image, image.Out(y + 1), image.Row(y + 1), image.Row(y + 2));
        }
    }
    PutLastRow<RedX, RedY>(image);
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
/// @tparam IsRedBeside  whether R stands left and right of it
template <bool IsRedBeside, class Sample, int Width>
inline void PutAtGreen(const Image<Sample, Width>& image, Sample* pixel, const Sample* up,
                       const Sample* row, const Sample* down) {
    const auto green = static_cast<Sample>((4 * row[0] + up[-1] + up[1] + down[-1] + down[1]) >> 3);
    const auto beside = static_cast<Sample>((row[-1] + row[1]) >> 1);
    const auto above = static_cast<Sample>((up[0] + down[0]) >> 1);
    image.Put(pixel, IsRedBeside ? beside : above, green, IsRedBeside ? above : beside);
}

/// A row between others. The parities are those of an R sample, seen from the
/// row's first sample.
template <unsigned RedX, unsigned RedY, class Sample, int Width>
void PutInnerRow(const Image<Sample, Width>& image, size_t y) {
    const Sample* const up = image.Row(y - 1);
    const Sample* const row = image.Row(y);
    const Sample* const down = image.Row(y + 1);
    Sample* const out = image.Out(y);
    const size_t last = image.width - 1;
    PutCell<RedX, RedY>(image, out, row, down);
    // In a row with R, R stands at columns of its parity; in one with B, B at
    // those of the other.
    constexpr bool kHasRed = RedY == 0;
    constexpr unsigned kColourX = kHasRed ? RedX : 1 - RedX;
    for (size_t x = 1; x < last; x += 2) {
        Sample* const pixel = out + x * Width;
        if constexpr (kColourX == 1) {
            PutAtColour<kHasRed>(image, pixel, up + x, row + x, down + x);
            PutAtGreen<kHasRed>(image, pixel + Width, up + x + 1, row + x + 1, down + x + 1);
        } else {
            PutAtGreen<kHasRed>(image, pixel, up + x, row + x, down + x);
            PutAtColour<kHasRed>(image, pixel + Width, up + x + 1, row + x + 1, down + x + 1);
        }
    }
    PutCell<RedX, RedY>(image, out + last * Width, row + last - 1, down + last - 1);
}

template <unsigned RedX, unsigned RedY, class Sample, int Width>
void InterpolateNeighbour3(const Image<Sample, Width>& image) {
    PutCellRow<RedX, RedY>(image, image.Out(0), image.Row(0), image.Row(1));
    for (size_t y = 1; y + 1 < image.height; ++y) {
        if (y % 2 == 0) {
            PutInnerRow<RedX, RedY>(image, y);
        } else {
            PutInnerRow<RedX, 1 - RedY>(image, y);
        }
    }
    PutLastRow<RedX, RedY>(image);
}

}  // namespace QyBayer
