#pragma once
/// The edge-directed interpolation: first a green plane, interpolated along the weaker
/// gradient, then the other colours by their differences to green, last the border.

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "bayer/BayerCell.h"

namespace QyBayer {

constexpr size_t kAdaptiveBorder = 3;

template <class Sample, int Width>
inline Sample Limited(const Image<Sample, Width>& image, int32_t value) {
    return static_cast<Sample>(std::clamp(value, 0, image.limit));
}

/// Samples around one, by offset.
template <class Sample>
class Window {
public:
    Window(const Sample* centre, size_t width)
        : m_centre(centre), m_width(static_cast<ptrdiff_t>(width)) {}
    int32_t operator()(ptrdiff_t dx, ptrdiff_t dy) const { return m_centre[dy * m_width + dx]; }

private:
    const Sample* m_centre;
    ptrdiff_t m_width;
};

/// How much changes along one axis; the other axis is the same with the offsets
/// exchanged.
template <class At>
inline int32_t Gradient(const At& p, int32_t c) {
    return std::abs(p(-1, 2) - p(-1, 0)) + std::abs(p(1, 2) - p(1, 0)) +
           std::abs(p(-1, -2) - p(-1, 0)) + std::abs(p(1, -2) - p(1, 0)) +
           std::abs(p(-2, 2) - p(-2, 0)) + std::abs(p(2, 2) - p(2, 0)) +
           std::abs(p(-2, -2) - p(-2, 0)) + std::abs(p(2, -2) - p(2, 0)) + std::abs(p(0, -2) - c) +
           std::abs(p(0, 2) - c) + std::abs(p(-1, -1) - p(-1, 1)) + std::abs(p(1, -1) - p(1, 1)) +
           std::abs(p(0, -1) + p(0, 1) - 2 * c);
}

/// Green at an R or B sample.
template <class Sample>
inline int32_t GreenAt(const Window<Sample>& p) {
    const int32_t c = p(0, 0);
    const int32_t vertical = Gradient(p, c);
    const int32_t horizontal = Gradient([&p](ptrdiff_t dx, ptrdiff_t dy) { return p(dy, dx); }, c);
    const int32_t alongRow = 2 * c - p(-2, 0) - p(2, 0);
    const int32_t alongColumn = 2 * c - p(0, -2) - p(0, 2);
    if (horizontal == vertical) {
        return ((p(0, -1) + p(0, 1) + p(-1, 0) + p(1, 0)) >> 2) + ((alongRow + alongColumn) >> 3);
    }
    if (horizontal > vertical) {
        return (alongColumn + 2 * (p(0, -1) + p(0, 1))) >> 2;
    }
    return (alongRow + 2 * (p(-1, 0) + p(1, 0))) >> 2;
}

/// Where colour and green samples alternate in a row: which column of each pair
/// holds the R or B sample, and which of the two it is.
template <bool HasRedRow, unsigned ColourColumn>
struct RowPattern {
    static constexpr bool kHasRed = HasRedRow;
    static constexpr size_t kColourX = ColourColumn;
    static constexpr size_t kGreenX = 1 - ColourColumn;
};

/// Calls `run` with the pattern of row y, so that loops over columns need not ask.
template <class Run>
void WithRowPattern(Layout layout, size_t y, const Run& run) {
    const bool hasRed = y % 2 == layout.redY;
    const bool isColourFirst = hasRed == (layout.redX == 0);
    if (hasRed) {
        isColourFirst ? run(RowPattern<true, 0>()) : run(RowPattern<true, 1>());
    } else {
        isColourFirst ? run(RowPattern<false, 0>()) : run(RowPattern<false, 1>());
    }
}

/// Calls `run` with the row, its pattern and the first column of each pair of columns
/// that has two neighbours on every side. `run` should hold the image by value: through a
/// reference, the compiler must read its fields again after each byte that is stored.
template <class Sample, int Width, class Run>
void ForEachInnerPair(const Image<Sample, Width>& image, Layout layout, const Run& run) {
    for (size_t y = 2; y + 2 < image.height; ++y) {
        WithRowPattern(layout, y, [&](auto pattern) {
            for (size_t x = 2; x + 2 < image.width; x += 2) {
                run(pattern, x, y);
            }
        });
    }
}

template <class Sample, int Width>
void BuildGreen(const Image<Sample, Width>& image, Layout layout) {
    ForEachInnerPair(image, layout, [image](auto pattern, size_t x, size_t y) {
        const Sample* const in = image.Row(y) + x;
        Sample* const out = image.Out(y) + x * Width + G;
        const Window<Sample> around(in + pattern.kColourX, image.width);
        out[pattern.kColourX * Width] = Limited(image, GreenAt(around));
        out[pattern.kGreenX * Width] = Limited(image, in[pattern.kGreenX]);
    });
}

/// The colours beside green, from samples and the green plane.
template <class Sample, int Width>
class ColourBuilder {
public:
    ColourBuilder(const Image<Sample, Width>& image, size_t x, size_t y)
        : m_image(image),
          m_source(image.Row(y) + x, image.width),
          m_out(image.Out(y) + x * Width),
          m_rowStep(image.flip ? -static_cast<ptrdiff_t>(image.stride)
                               : static_cast<ptrdiff_t>(image.stride)) {}

    Sample Own() const { return Limited(m_image, m_source(0, 0)); }
    Sample Diagonal() const {
        const int32_t sum =
            Difference(-1, -1) + Difference(1, -1) + Difference(-1, 1) + Difference(1, 1);
        return Limited(m_image, (sum >> 2) + Green(0, 0));
    }
    Sample Beside() const {
        return Limited(m_image, ((Difference(-1, 0) + Difference(1, 0)) >> 1) + Green(0, 0));
    }
    Sample Above() const {
        return Limited(m_image, ((Difference(0, -1) + Difference(0, 1)) >> 1) + Green(0, 0));
    }
    void Put(Sample r, Sample b) const { m_image.Put(m_out, r, m_out[1], b); }

private:
    int32_t Green(ptrdiff_t dx, ptrdiff_t dy) const {
        return m_out[dy * m_rowStep + dx * Width + 1];
    }
    int32_t Difference(ptrdiff_t dx, ptrdiff_t dy) const {
        return m_source(dx, dy) - Green(dx, dy);
    }

    const Image<Sample, Width>& m_image;
    Window<Sample> m_source;
    Sample* m_out;
    ptrdiff_t m_rowStep;
};

template <class Sample, int Width>
void BuildColours(const Image<Sample, Width>& image, Layout layout) {
    ForEachInnerPair(image, layout, [image](auto pattern, size_t x, size_t y) {
        const ColourBuilder<Sample, Width> colour(image, x + pattern.kColourX, y);
        const ColourBuilder<Sample, Width> green(image, x + pattern.kGreenX, y);
        if constexpr (pattern.kHasRed) {
            colour.Put(colour.Own(), colour.Diagonal());
            green.Put(green.Beside(), green.Above());
        } else {
            colour.Put(colour.Diagonal(), colour.Own());
            green.Put(green.Above(), green.Beside());
        }
    });
}

/// Copies the lines of the border from the line next to it, first at the start, then at
/// the end. The order matters for small images, where the two overlap.
template <class Copy>
void CopyBorderLines(size_t count, const Copy& copy) {
    for (size_t i = 0; i < kAdaptiveBorder; ++i) {
        copy(i, kAdaptiveBorder);
    }
    for (size_t i = 0; i < kAdaptiveBorder; ++i) {
        copy(count - 1 - i, count - 1 - kAdaptiveBorder);
    }
}

/// Copies the rows of the border, in the order of the destination.
template <class Sample, int Width>
void CopyBorderRows(const Image<Sample, Width>& image) {
    const size_t rowBytes = image.width * Width * sizeof(Sample);
    const auto row = [&image](size_t y) { return image.dst + y * image.stride; };
    CopyBorderLines(image.height, [&](size_t to, size_t from) {
        if (to != from) {
            std::memcpy(row(to), row(from), rowBytes);
        }
    });
}

/// Copies the border of the image from the lines next to it, rows first.
template <class Sample, int Width>
void CopyBorder(const Image<Sample, Width>& image) {
    CopyBorderRows(image);
    for (size_t y = 0; y < image.height; ++y) {
        Sample* const pixels = image.dst + y * image.stride;
        CopyBorderLines(image.width, [pixels](size_t to, size_t from) {
            std::copy_n(pixels + from * Width, Width, pixels + to * Width);
        });
    }
}

}  // namespace QyBayer
