// The edge-directed interpolation in whole vectors, compiled once for each
// instruction set.

#include <algorithm>
#include <limits>

#include "bayer/BayerAdaptive.h"
#include "bayer/BayerVector.h"
#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "bayer/BayerAdaptiveVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "bayer/BayerChanges-inl.h"
#include "bayer/BayerMixer-inl.h"
#include "bayer/BayerPixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QyBayer {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

template <class Sample, int Width>
bool InterpolateInside(const Image<Sample, Width>& /*image*/, Layout /*layout*/) {
    return false;
}

#else

/// The surroundings of samples of one colour, which are in every second column from
/// `centre` on: in the even lanes of At(0, 0).
template <class Sample>
class Surroundings : private Lanes<Sample> {
    using Base = Lanes<Sample>;
    using typename Base::Narrow;
    using typename Base::NarrowVector;
    using typename Base::Vector;

public:
    HWY_INLINE Surroundings(const Sample* centre, size_t width)
        : m_centre(centre), m_width(static_cast<ptrdiff_t>(width)) {}

    /// The colour's samples minus the green at their places, which is interpolated in the
    /// direction that changes less.
    /// @param change  how much more samples two columns apart change than those two rows apart
    HWY_INLINE Vector LackOfGreen(Vector change, Vector limit) const {
        const Vector c = Base::Even(At(0, 0));
        const Vector twice = hn::Add(c, c);
        const Vector beside = hn::Add(Base::Odd(At(-2, 0)), Base::Odd(At(0, 0)));
        const Vector above = hn::Add(Base::Even(At(0, -1)), Base::Even(At(0, 1)));
        const Vector alongRow = hn::Sub(twice, hn::Add(Base::Even(At(-2, 0)), Base::Odd(At(1, 0))));
        const Vector alongColumn =
            hn::Sub(twice, hn::Add(Base::Even(At(0, -2)), Base::Even(At(0, 2))));
        const Vector horizontal = hn::Add(change, hn::Abs(hn::Sub(beside, twice)));
        const Vector vertical = hn::Abs(hn::Sub(above, twice));
        const auto isColumn = hn::Gt(horizontal, vertical);
        const Vector along = hn::IfThenElse(isColumn, alongColumn, alongRow);
        const Vector next = hn::IfThenElse(isColumn, above, beside);
        const Vector ofOne = hn::ShiftRight<2>(hn::Add(along, hn::Add(next, next)));
        const Vector ofBoth = hn::Add(hn::ShiftRight<2>(hn::Add(above, beside)),
                                      hn::ShiftRight<3>(hn::Add(alongRow, alongColumn)));
        const Vector green = hn::IfThenElse(hn::Eq(horizontal, vertical), ofBoth, ofOne);
        return hn::Sub(c, Base::Limited(green, limit));
    }

private:
    /// No load reads beyond the last column that is needed.
    HWY_INLINE NarrowVector At(ptrdiff_t dx, ptrdiff_t dy) const {
        return LoadSamples(Narrow(), m_centre + dy * m_width + dx);
    }

    const Sample* m_centre;
    ptrdiff_t m_width;
};

/// Copies the pixels of the border from the pixel next to it.
/// @tparam Step  from a pixel of the border to the next one towards the middle
template <ptrdiff_t Step, class Sample>
HWY_INLINE void CopyOutwards(Sample* pixel) {
    const Sample* const from = pixel;
    for (size_t i = 0; i < kAdaptiveBorder; ++i) {
        pixel -= Step;
        std::copy_n(from, std::abs(Step), pixel);
    }
}

/// A part of the image of some columns, from top to bottom. Keeps the differences between
/// colour samples and their interpolated green for as many rows as neighbours need them.
template <class Sample, int Width>
class Strip : private Lanes<Sample> {
    using Base = Lanes<Sample>;
    using typename Base::Lane;
    using typename Base::Narrow;
    using typename Base::Vector;
    using typename Base::Wide;

public:
    /// Most pairs of columns of a strip. The page of a row is looked up once for many columns:
    /// that spares more than first-level caches would if they held all that is kept of the rows.
    static constexpr size_t kMostPairs = 4096 / sizeof(Lane);
    /// Pairs of columns at either end of the image that are left to the border.
    static constexpr size_t kOuterPairs = 1;

    Strip(const Image<Sample, Width>& image, Layout layout, size_t begin, size_t end,
          QyWriting::WayOfWriting& way)
        : m_image(image),
          m_layout(layout),
          m_begin(begin),
          m_end(end),
          m_keptBegin(std::max(begin - 1, kOuterPairs)),
          m_keptEnd(std::min(end + 1, OuterEnd())),
          m_way(way),
          m_changes(image.src + 2 * (m_keptBegin - 1), image.width, m_keptEnd - m_keptBegin + 2) {}

    /// The first two rows that are put are the border's, which is copied last.
    void Interpolate() {
        m_changes.TakeFirstRows();
        for (size_t y = 2; y + 2 < m_image.height; ++y) {
            ColourColumn(y) == 0 ? Interpolate<0>(y) : Interpolate<1>(y);
        }
    }

private:
    /// Pairs of columns after which the loops over a row take turns. The memory is busy with some
    /// pixels while the next ones are made.
    static constexpr size_t kTurn = 256 / sizeof(Lane);
    static constexpr size_t kRows = 3;

    bool HasRed(size_t y) const { return y % 2 == m_layout.redY; }
    unsigned ColourColumn(size_t y) const { return HasRed(y) ? m_layout.redX : 1 - m_layout.redX; }
    size_t OuterEnd() const { return m_image.width / 2 - kOuterPairs; }
    /// The kept differences of a row from the pair before `m_keptBegin` on.
    Lane* Lacks(size_t y) { return m_lacks[y % kRows] + Base::kPairs - 1; }

    /// Compares a row, and puts the one above.
    template <unsigned ColourX>
    void Interpolate(size_t y) {
        auto taking = m_changes.TakingRow(y + 2);
        auto summing = m_changes.template SummingRows<ColourX>(y);
        auto comparing = ComparingRow<ColourX>(y);
        PutRow<1 - ColourX>(y - 1, [&](auto& putting) QY_ALWAYS_INLINE {
            constexpr size_t kAll = std::numeric_limits<size_t>::max();
            const size_t pairs = m_keptEnd - m_keptBegin;
            for (size_t end = 0; end != kAll;) {
                end = end + kTurn + 2 * Base::kPairs < pairs ? end + kTurn : kAll;
                taking.UpTo(end);
                summing.UpTo(end);
                comparing.UpTo(end - Base::kPairs);
                putting.UpTo(end - 2 * Base::kPairs);
            }
        });
    }

    /// What compares the directions in a row. It goes a vector behind what sums.
    template <unsigned ColourX>
    HWY_INLINE auto ComparingRow(size_t y) {
        const auto compare = [row = m_image.Row(y) + 2 * m_keptBegin + ColourX,
                              width = m_image.width, limit = m_image.limit, changes = &m_changes,
                              lacks = Lacks(y) + 1](size_t at) QY_ALWAYS_INLINE {
            const Surroundings<Sample> around(row + 2 * at, width);
            const Vector most = hn::Set(Wide(), static_cast<Lane>(limit));
            hn::StoreU(around.LackOfGreen(changes->At(at + 1), most), Wide(), lacks + at);
        };
        return Cover(m_keptEnd - m_keptBegin, Base::kPairs, compare);
    }

    /// Calls `run` with what puts a row's pixels, which goes a vector behind what compares the
    /// next row. Puts the row's border, too: past the caches, it would be read again from far
    /// away.
    template <unsigned ColourX, class Run>
    void PutRow(size_t y, const Run& run) {
        const size_t before = m_begin == kOuterPairs ? kOuterPairs : 0;
        const size_t after = m_end == OuterEnd() ? kOuterPairs : 0;
        const bool isPast = m_way.IsPast((m_end - m_begin) * 2 * Width * sizeof(Sample));
        const size_t first = m_begin - m_keptBegin + 1;
        const Mixer<Sample, ColourX> mixer(m_image.Row(y) + 2 * m_begin, Lacks(y - 1) + first,
                                           Lacks(y) + first, Lacks(y + 1) + first, m_image.limit);
        const bool isOwnFirst = HasRed(y) == (m_image.red == 0);
        const auto withPixels = [=, this](auto& pixels) QY_ALWAYS_INLINE {
            const auto put = [&,
                              last = m_end - m_begin - Base::kPairs](size_t at) QY_ALWAYS_INLINE {
                Sample* const to = pixels.At(2 * (m_begin + at), 2 * (Base::kPairs + after));
                const auto mixed = mixer.At(at);
                if (isOwnFirst) {
                    PutOrdered(Narrow(), m_image, to, mixed.own, mixed.green, mixed.other);
                } else {
                    PutOrdered(Narrow(), m_image, to, mixed.other, mixed.green, mixed.own);
                }
                if (at == 0 && before != 0) {
                    CopyOutwards<Width>(to + Width);
                }
                if (at == last && after != 0) {
                    CopyOutwards<-Width>(to + 2 * (Base::kPairs - 1) * Width);
                }
            };
            Cover putting(m_end - m_begin, Base::kPairs, put);
            run(putting);
        };
        WithRow<Sample, Width>(isPast, m_image.Out(y), 2 * m_begin, 2 * before, withPixels);
    }

    const Image<Sample, Width> m_image;
    const Layout m_layout;
    const size_t m_begin;
    const size_t m_end;
    /// The pairs whose differences are kept: one more on each side, if it isn't the outermost.
    const size_t m_keptBegin;
    const size_t m_keptEnd;
    QyWriting::WayOfWriting& m_way;
    Changes<Sample, kMostPairs + 4> m_changes;
    /// What is kept begins at cache lines.
    alignas(64) Lane m_lacks[kRows][kMostPairs + 4 * Base::kPairs] = {};
};

template <class Sample, int Width>
bool InterpolateInside(const Image<Sample, Width>& image, Layout layout) {
    using Part = Strip<Sample, Width>;
    constexpr size_t kLeast = Lanes<Sample>::kPairs;
    const size_t end = image.width / 2 - Part::kOuterPairs;
    if (end < Part::kOuterPairs + kLeast || image.height <= 2 * kAdaptiveBorder) {
        return false;
    }
    QyWriting::WayOfWriting way = WayOf(image);
    for (size_t first = Part::kOuterPairs; first < end; first += Part::kMostPairs) {
        const size_t begin = std::min(first, end - kLeast);
        Part(image, layout, begin, std::min(begin + Part::kMostPairs, end), way).Interpolate();
    }
    hwy::FlushStream();
    return true;
}

#endif

bool InsideToThreeBytes(const Image<uint8_t, 3>& image, Layout layout) {
    return InterpolateInside(image, layout);
}

bool InsideToFourBytes(const Image<uint8_t, 4>& image, Layout layout) {
    return InterpolateInside(image, layout);
}

bool InsideToThreeWords(const Image<Word, 3>& image, Layout layout) {
    return InterpolateInside(image, layout);
}

}  // namespace HWY_NAMESPACE
}  // namespace QyBayer
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyBayer {

namespace {

QY_DISPATCH(InsideToThreeBytes);
QY_DISPATCH(InsideToFourBytes);
QY_DISPATCH(InsideToThreeWords);

/// Interpolates pixel by pixel where no vector fits, and where an image is so small that
/// its border is copied from pixels that depend on the old content of the destination. Vectors
/// leave only the rows of the border.
template <class Sample, int Width>
void FinishAdaptive(const Image<Sample, Width>& image, Layout layout, bool isDone) {
    if (isDone) {
        CopyBorderRows(image);
        return;
    }
    BuildGreen(image, layout);
    BuildColours(image, layout);
    CopyBorder(image);
}

}  // namespace

void InterpolateAdaptive(const Image<uint8_t, 3>& image, Layout layout) {
    FinishAdaptive(image, layout, InsideToThreeBytes(image, layout));
}

void InterpolateAdaptive(const Image<uint8_t, 4>& image, Layout layout) {
    FinishAdaptive(image, layout, InsideToFourBytes(image, layout));
}

void InterpolateAdaptive(const Image<Word, 3>& image, Layout layout) {
    FinishAdaptive(image, layout, InsideToThreeWords(image, layout));
}

}  // namespace QyBayer
#endif
