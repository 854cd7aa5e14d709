// The loops over whole vectors, compiled once for each instruction set.

#include "bayer/BayerVector.h"

#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "bayer/BayerVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "bayer/BayerNeighbour.h"
#include "bayer/BayerPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QyBayer {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// How many samples ahead lines are prefetched.
constexpr size_t kAhead = 4096;

/// (a + b) >> 1 without wider lanes. hn::AverageRound() overflows on
/// some instruction sets.
template <class V>
HWY_INLINE V Mean(V a, V b) {
    return hn::Add(hn::And(a, b), hn::ShiftRight<1>(hn::Xor(a, b)));
}

/// (a + b + c + e) >> 2. The mean of two means is too small by one only where both of
/// them have lost a half and their own mean loses one, too.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V Mean(D d, V a, V b, V c, V e) {
    const V first = Mean(a, b);
    const V second = Mean(c, e);
    const V lost = hn::And(hn::And(hn::Xor(a, b), hn::Xor(c, e)), hn::Set(d, 1));
    return hn::Add(Mean(first, second), hn::And(lost, hn::Xor(first, second)));
}

/// Takes the lanes of a parity from `there` and the others from `between`.
template <unsigned Parity, class V>
HWY_INLINE V Alternate(V there, V between) {
    return Parity == 1 ? hn::OddEven(there, between) : hn::OddEven(between, there);
}

/// Calls `at` for vectors that cover the columns from `begin` to `end`. They begin at
/// columns of the parity of `begin`, and the last one may repeat some columns.
template <class At>
HWY_INLINE size_t ForEachVector(size_t begin, size_t end, size_t lanes, const At& at) {
    if (lanes < 2 || begin + lanes > end) {
        return begin;
    }
    size_t x = begin;
    for (; x + lanes <= end; x += lanes) {
        at(x);
    }
    if (x + 1 < end) {
        x = end - lanes - (end - begin) % 2;
        at(x);
        x += lanes;
    }
    return x;
}

/// Calls `at(pixels, x)` for vectors that cover the columns of a row from `begin` on
/// without the last column; `pixels` says where their pixels are to be stored.
template <class Sample, int Width, class At>
HWY_INLINE size_t PutVectors(const Image<Sample, Width>& image, bool isPast, Sample* out,
                             size_t begin, const At& at) {
    const size_t lanes = hn::Lanes(hn::ScalableTag<LaneOf<Sample>>());
    size_t x = begin;
    WithRow<Sample, Width>(isPast, out, begin, 0, [&](auto& pixels) HWY_ATTR {
        x = ForEachVector(begin, image.width - 1, lanes,
                          [&](size_t column) HWY_ATTR { at(pixels, column); });
    });
    return x;
}

/// Makes a row of cells, whose last pixel repeats the one before. RedX and RedY are the
/// layout of the row's first cell.
template <unsigned RedX, unsigned RedY, class Sample, int Width>
void PutCellRow(const Image<Sample, Width>& image, bool isPast, Sample* out, const Sample* top,
                const Sample* bottom) {
    const hn::ScalableTag<LaneOf<Sample>> d;
    const Sample* const redRow = RedY == 0 ? top : bottom;
    const Sample* const blueRow = RedY == 0 ? bottom : top;
    const auto atVector = [&](auto& pixels, size_t x) HWY_ATTR {
        PrefetchLine(bottom + x + kAhead);
        const auto red = LoadSamples(d, redRow + x);
        const auto redNext = LoadSamples(d, redRow + x + 1);
        const auto blue = LoadSamples(d, blueRow + x);
        const auto blueNext = LoadSamples(d, blueRow + x + 1);
        const auto greenOfRed = Alternate<RedX>(redNext, red);
        const auto greenOfBlue = Alternate<RedX>(blue, blueNext);
        PutPixels(d, image, pixels.At(x, hn::Lanes(d)), Alternate<RedX>(red, redNext),
                  Mean(greenOfRed, greenOfBlue), Alternate<RedX>(blueNext, blue));
    };
    const size_t last = image.width - 1;
    size_t x = PutVectors(image, isPast, out, 0, atVector);
    for (; x < last; ++x) {
        PutCell(image, out + x * Width, top + x, bottom + x, (RedX + x) % 2, RedY);
    }
    PutCell(image, out + last * Width, top + last - 1, bottom + last - 1, RedX, RedY);
}

/// Makes a row that has neighbours above and below. RedX and RedY are the layout as seen
/// from the row's first sample.
template <unsigned RedX, unsigned RedY, class Sample, int Width>
void PutInnerRow(const Image<Sample, Width>& image, bool isPast, size_t y) {
    const Sample* const up = image.Row(y - 1);
    const Sample* const row = image.Row(y);
    const Sample* const down = image.Row(y + 1);
    Sample* const out = image.Out(y);
    const hn::ScalableTag<LaneOf<Sample>> d;
    // The row's R or B samples have columns of one parity, its G samples those of the
    // other. Vectors begin at column 1, so that lanes have the opposite parity.
    constexpr bool kHasRed = RedY == 0;
    constexpr unsigned kColourX = kHasRed ? RedX : 1 - RedX;
    constexpr unsigned kColourLane = 1 - kColourX;
    const auto atVector = [&](auto& pixels, size_t x) HWY_ATTR {
        PrefetchLine(down + x + kAhead);
        const auto c = LoadSamples(d, row + x);
        const auto left = LoadSamples(d, row + x - 1);
        const auto right = LoadSamples(d, row + x + 1);
        const auto above = LoadSamples(d, up + x);
        const auto below = LoadSamples(d, down + x);
        const auto diagonal = Mean(d, LoadSamples(d, up + x - 1), LoadSamples(d, up + x + 1),
                                   LoadSamples(d, down + x - 1), LoadSamples(d, down + x + 1));
        const auto own = Alternate<kColourLane>(c, Mean(left, right));
        const auto other = Alternate<kColourLane>(diagonal, Mean(above, below));
        const auto green =
            Alternate<kColourLane>(Mean(d, left, right, above, below), Mean(c, diagonal));
        PutPixels(d, image, pixels.At(x, hn::Lanes(d)), kHasRed ? own : other, green,
                  kHasRed ? other : own);
    };
    const size_t last = image.width - 1;
    PutCell(image, out, row, down, RedX, RedY);
    size_t x = PutVectors(image, isPast, out, 1, atVector);
    for (; x < last; ++x) {
        Sample* const pixel = out + x * Width;
        if (x % 2 == kColourX) {
            PutAtColour<kHasRed>(image, pixel, up + x, row + x, down + x);
        } else {
            PutAtGreen<kHasRed>(image, pixel, up + x, row + x, down + x);
        }
    }
    PutCell(image, out + last * Width, row + last - 1, down + last - 1, RedX, RedY);
}

template <unsigned RedX, unsigned RedY, class Sample, int Width>
void InterpolateRows(const Image<Sample, Width>& image, Neighbours neighbours) {
    const bool hasInner = neighbours == Neighbours::ThreeByThree;
    QyWriting::WayOfWriting way = WayOf(image);
    for (size_t y = 0; y + 1 < image.height; ++y) {
        const bool isInner = hasInner && y != 0;
        const bool isPast = way.IsPast(image.width * Width * sizeof(Sample));
        Sample* const out = image.Out(y);
        const Sample* const row = image.Row(y);
        if (isInner && y % 2 == 0) {
            PutInnerRow<RedX, RedY>(image, isPast, y);
        } else if (isInner) {
            PutInnerRow<RedX, 1 - RedY>(image, isPast, y);
        } else if (y % 2 == 0) {
            PutCellRow<RedX, RedY>(image, isPast, out, row, row + image.width);
        } else {
            PutCellRow<RedX, 1 - RedY>(image, isPast, out, row, row + image.width);
        }
        image.Finish(out);
    }
    hwy::FlushStream();
    PutLastRow(image, {RedX, RedY});
    image.Finish(image.Out(image.height - 1));
}

template <class Sample, int Width>
void InterpolateLayout(const Image<Sample, Width>& image, Neighbours neighbours, Layout layout) {
    using Rows = void (*)(const Image<Sample, Width>&, Neighbours);
    constexpr Rows kRows[2][2] = {
        {InterpolateRows<0, 0, Sample, Width>, InterpolateRows<0, 1, Sample, Width>},
        {InterpolateRows<1, 0, Sample, Width>, InterpolateRows<1, 1, Sample, Width>}};
    kRows[layout.redX][layout.redY](image, neighbours);
}

void FastToThreeBytes(const Image<uint8_t, 3>& image, Neighbours neighbours, Layout layout) {
    InterpolateLayout(image, neighbours, layout);
}

void FastToFourBytes(const Image<uint8_t, 4>& image, Neighbours neighbours, Layout layout) {
    InterpolateLayout(image, neighbours, layout);
}

void FastToThreeWords(const Image<Word, 3>& image, Neighbours neighbours, Layout layout) {
    InterpolateLayout(image, neighbours, layout);
}

}  // namespace HWY_NAMESPACE
}  // namespace QyBayer
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyBayer {

QY_DISPATCH(FastToThreeBytes);
QY_DISPATCH(FastToFourBytes);
QY_DISPATCH(FastToThreeWords);

void InterpolateFast(const Image<uint8_t, 3>& image, Neighbours neighbours, Layout layout) {
    FastToThreeBytes(image, neighbours, layout);
}

void InterpolateFast(const Image<uint8_t, 4>& image, Neighbours neighbours, Layout layout) {
    FastToFourBytes(image, neighbours, layout);
}

void InterpolateFast(const Image<Word, 3>& image, Neighbours neighbours, Layout layout) {
    FastToThreeWords(image, neighbours, layout);
}

}  // namespace QyBayer
#endif
