#pragma once
/// The fast interpolations in loops over single pixels, two a step: what vectors
/// are measured against. For a mosaic that begins with R G.

#include "BayerNeighbour.h"

namespace ImagePlain {

using QyBayer::Image;

template <unsigned RedY, class Sample, int Width>
void PutCellRow(const Image<Sample, Width> image, size_t y) {
    const Sample* const top = image.Row(y);
    const Sample* const bottom = image.Row(y + 1);
    Sample* out = image.Out(y);
    size_t x = 0;
    for (; x + 2 < image.width; x += 2, out += 2 * Width) {
        QyBayer::PutCell(image, out, top + x, bottom + x, 0, RedY);
        QyBayer::PutCell(image, out + Width, top + x + 1, bottom + x + 1, 1, RedY);
    }
    QyBayer::PutCell(image, out, top + x, bottom + x, 0, RedY);
    QyBayer::PutCell(image, out + Width, top + x, bottom + x, 0, RedY);
}

template <bool HasRed, class Sample, int Width>
void PutInnerRow(const Image<Sample, Width> image, size_t y) {
    const Sample* const up = image.Row(y - 1);
    const Sample* const row = image.Row(y);
    const Sample* const down = image.Row(y + 1);
    Sample* const out = image.Out(y);
    constexpr unsigned kRedY = HasRed ? 0 : 1;
    const size_t last = image.width - 1;
    QyBayer::PutCell(image, out, row, down, 0, kRedY);
    for (size_t x = 1; x < last; x += 2) {
        const size_t green = HasRed ? x : x + 1;
        const size_t colour = HasRed ? x + 1 : x;
        QyBayer::PutAtGreen<HasRed>(image, out + green * Width, up + green, row + green,
                                    down + green);
        QyBayer::PutAtColour<HasRed>(image, out + colour * Width, up + colour, row + colour,
                                     down + colour);
    }
    QyBayer::PutCell(image, out + last * Width, row + last - 1, down + last - 1, 0, kRedY);
}

template <class Sample, int Width>
void Interpolate(const Image<Sample, Width>& image, bool isThreeByThree) {
    for (size_t y = 0; y + 1 < image.height; ++y) {
        const bool hasRed = y % 2 == 0;
        if (isThreeByThree && y != 0) {
            hasRed ? PutInnerRow<true>(image, y) : PutInnerRow<false>(image, y);
        } else {
            hasRed ? PutCellRow<0>(image, y) : PutCellRow<1>(image, y);
        }
    }
    QyBayer::PutLastRow(image, {0, 0});
}

}  // namespace ImagePlain
