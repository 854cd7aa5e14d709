// The edge-directed interpolation in whole vectors, compiled once for each
// instruction set.

#include <algorithm>

#include "bayer/BayerAdaptive.h"
#include "bayer/BayerVector.h"
#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "bayer/BayerAdaptiveVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

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

/// Vectors of samples, and vectors of half as many samples in signed lanes twice as wide.
/// A pair of columns has one R or B sample and one G sample; wide lanes hold only one
/// kind of them.
template <class Sample>
struct Lanes {
    using Narrow = hn::ScalableTag<LaneOf<Sample>>;
    using NarrowVector = hn::Vec<Narrow>;
    using Unsigned = hn::RepartitionToWide<Narrow>;
    using Wide = hn::RebindToSigned<Unsigned>;
    using Vector = hn::Vec<Wide>;
    using Lane = hn::TFromD<Wide>;

    static constexpr int kBits = 8 * sizeof(Sample);
    static constexpr int kMost = (1 << kBits) - 1;
    /// Pairs of columns in a vector.
    static constexpr size_t kPairs = hn::MaxLanes(Wide());

    static HWY_INLINE Vector Even(NarrowVector v) {
        const Unsigned du;
        return hn::BitCast(Wide(), hn::And(hn::BitCast(du, v), hn::Set(du, kMost)));
    }
    static HWY_INLINE Vector Odd(NarrowVector v) {
        return hn::BitCast(Wide(), hn::ShiftRight<kBits>(hn::BitCast(Unsigned(), v)));
    }
    static HWY_INLINE Vector Both(NarrowVector v) { return hn::Add(Even(v), Odd(v)); }
    static HWY_INLINE NarrowVector Join(Vector even, Vector odd) {
        return hn::BitCast(Narrow(), hn::Or(even, hn::ShiftLeft<kBits>(odd)));
    }
    static HWY_INLINE NarrowVector Distance(NarrowVector a, NarrowVector b) {
        return hn::Or(hn::SaturatedSub(a, b), hn::SaturatedSub(b, a));
    }
    static HWY_INLINE Vector Limited(Vector v, Vector limit) {
        return hn::Min(hn::Max(v, hn::Zero(Wide())), limit);
    }
};

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
    HWY_INLINE Vector LackOfGreen(Vector limit) const {
        const Vector c = Base::Even(At(0, 0));
        const Vector twice = hn::Add(c, c);
        const Vector beside = hn::Add(Base::Odd(At(-2, 0)), Base::Odd(At(0, 0)));
        const Vector above = hn::Add(Base::Even(At(0, -1)), Base::Even(At(0, 1)));
        const Vector alongRow = hn::Sub(twice, hn::Add(Base::Even(At(-2, 0)), Base::Odd(At(1, 0))));
        const Vector alongColumn =
            hn::Sub(twice, hn::Add(Base::Even(At(0, -2)), Base::Even(At(0, 2))));
        const Vector horizontal = hn::Add(ChangeOfRows(), hn::Abs(hn::Sub(beside, twice)));
        const Vector vertical = hn::Add(ChangeOfColumns(), hn::Abs(hn::Sub(above, twice)));
        const Vector ofRow = hn::ShiftRight<2>(hn::Add(alongRow, hn::Add(beside, beside)));
        const Vector ofColumn = hn::ShiftRight<2>(hn::Add(alongColumn, hn::Add(above, above)));
        const Vector ofBoth = hn::Add(hn::ShiftRight<2>(hn::Add(above, beside)),
                                      hn::ShiftRight<3>(hn::Add(alongRow, alongColumn)));
        const Vector green =
            hn::IfThenElse(hn::Eq(horizontal, vertical), ofBoth,
                           hn::IfThenElse(hn::Gt(horizontal, vertical), ofColumn, ofRow));
        return hn::Sub(c, Base::Limited(green, limit));
    }

private:
    HWY_INLINE NarrowVector At(ptrdiff_t dx, ptrdiff_t dy) const {
        return LoadSamples(Narrow(), m_centre + dy * m_width + dx);
    }
    HWY_INLINE NarrowVector Beside(ptrdiff_t dx, ptrdiff_t dy) const {
        return Base::Distance(At(dx, dy), At(dx + 2, dy));
    }
    HWY_INLINE NarrowVector Below(ptrdiff_t dx, ptrdiff_t dy) const {
        return Base::Distance(At(dx, dy), At(dx, dy + 2));
    }
    /// Sums the differences between samples of the same row: those two columns apart in
    /// the five rows around the centre, and also those beside it in the rows above and
    /// below. No load reads beyond the last column that is needed.
    HWY_INLINE Vector ChangeOfRows() const {
        const auto row = [this](ptrdiff_t dy) HWY_ATTR {
            return hn::Add(Base::Even(Beside(-2, dy)), Base::Odd(Beside(-1, dy)));
        };
        const auto near = [this](ptrdiff_t dy) HWY_ATTR {
            return hn::Add(Base::Even(Beside(-2, dy)), Base::Both(Beside(-1, dy)));
        };
        return hn::Add(hn::Add(hn::Add(row(-2), row(2)), hn::Add(near(-1), near(1))), row(0));
    }
    /// The same with rows and columns exchanged.
    HWY_INLINE Vector ChangeOfColumns() const {
        const auto half = [this](ptrdiff_t dy) HWY_ATTR {
            return hn::Add(hn::Add(Base::Both(Below(-2, dy)), Base::Both(Below(0, dy))),
                           Base::Odd(Below(1, dy)));
        };
        const Vector near = hn::Add(Base::Odd(Below(-2, -1)), Base::Odd(Below(0, -1)));
        return hn::Add(hn::Add(half(-2), half(0)), near);
    }

    const Sample* m_centre;
    ptrdiff_t m_width;
};

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
    /// Most pairs of columns of a strip. What is kept of its rows stays in the
    /// first-level cache, and the page of a row is looked up once for many columns.
    static constexpr size_t kMostPairs = 2048;
    /// Pairs of columns at either end of the image that are left to the border.
    static constexpr size_t kOuterPairs = 1;

    Strip(const Image<Sample, Width>& image, Layout layout, size_t begin, size_t end,
          QyWriting::WayOfWriting& way)
        : m_image(image), m_layout(layout), m_begin(begin), m_end(end), m_way(way) {}

    void Interpolate() {
        for (size_t y = 2; y + 2 < m_image.height; ++y) {
            ColourColumn(y) == 0 ? CompareRow<0>(y) : CompareRow<1>(y);
            if (y > kAdaptiveBorder) {
                PutRow(y - 1);
            }
        }
    }

private:
    bool HasRed(size_t y) const { return y % 2 == m_layout.redY; }
    unsigned ColourColumn(size_t y) const { return HasRed(y) ? m_layout.redX : 1 - m_layout.redX; }
    /// The kept differences of a row. The first one belongs to pair `m_begin` - 1.
    Lane* Lacks(size_t y) { return m_lacks[y % kRows]; }

    template <unsigned ColourX>
    void CompareRow(size_t y) {
        const Vector limit = hn::Set(Wide(), static_cast<Lane>(m_image.limit));
        const Sample* const row = m_image.Row(y) + ColourX;
        const size_t begin = std::max(m_begin - 1, kOuterPairs);
        const size_t end = std::min(m_end + 1, m_image.width / 2 - kOuterPairs);
        Lane* const lacks = Lacks(y);
        CoverByVectors(begin, end, Base::kPairs, [&](size_t pair) HWY_ATTR {
            PrefetchLine(row + 2 * pair + 4 * m_image.width);
            const Surroundings<Sample> around(row + 2 * pair, m_image.width);
            hn::StoreU(around.LackOfGreen(limit), Wide(), lacks + (pair - m_begin + 1));
        });
    }

    void PutRow(size_t y) {
        if (HasRed(y)) {
            m_layout.redX == 0 ? PutRow<true, 0>(y) : PutRow<true, 1>(y);
        } else {
            m_layout.redX == 0 ? PutRow<false, 1>(y) : PutRow<false, 0>(y);
        }
    }
    template <bool IsRed, unsigned ColourX>
    void PutRow(size_t y) {
        const bool isPast = m_way.IsPast((m_end - m_begin) * 2 * Width * sizeof(Sample));
        WithRow<Sample, Width>(isPast, m_image.Out(y), 2 * m_begin, [&](auto& pixels) HWY_ATTR {
            CoverByVectors(m_begin, m_end, Base::kPairs, [&](size_t pair) HWY_ATTR {
                PutVector<IsRed, ColourX>(pixels.At(2 * pair, 2 * Base::kPairs), y, pair);
            });
        });
    }
    template <bool IsRed, unsigned ColourX>
    HWY_INLINE void PutVector(Sample* pixels, size_t y, size_t pair) {
        const auto lacks = [this, at = pair - m_begin](size_t row, size_t next)
                               HWY_ATTR { return hn::LoadU(Wide(), Lacks(row) + at + next); };
        const auto both = [&](size_t next)
                              HWY_ATTR { return hn::Add(lacks(y - 1, next), lacks(y + 1, next)); };
        const Vector limit = hn::Set(Wide(), static_cast<Lane>(m_image.limit));
        const auto shifted = [limit](Vector by, Vector from)
                                 HWY_ATTR { return Base::Limited(hn::Add(by, from), limit); };
        const auto join = [](Vector ofColour, Vector ofGreen) HWY_ATTR {
            return ColourX == 0 ? Base::Join(ofColour, ofGreen) : Base::Join(ofGreen, ofColour);
        };
        const auto samples = LoadSamples(Narrow(), m_image.Row(y) + 2 * pair);
        const Vector even = Base::Even(samples);
        const Vector odd = Base::Odd(samples);
        const Vector colour = ColourX == 0 ? even : odd;
        const Vector greenOfColour = hn::Sub(colour, lacks(y, 1));
        const Vector green = Base::Limited(ColourX == 0 ? odd : even, limit);
        const Vector beside = hn::Add(lacks(y, 1 - ColourX), lacks(y, 2 - ColourX));
        const Vector diagonal = hn::Add(both(ColourX), both(ColourX + 1));
        const auto own =
            join(Base::Limited(colour, limit), shifted(hn::ShiftRight<1>(beside), green));
        const auto other = join(shifted(hn::ShiftRight<2>(diagonal), greenOfColour),
                                shifted(hn::ShiftRight<1>(both(1)), green));
        PutPixels(Narrow(), m_image, pixels, IsRed ? own : other, join(greenOfColour, green),
                  IsRed ? other : own);
    }

    static constexpr size_t kRows = 4;

    const Image<Sample, Width> m_image;
    const Layout m_layout;
    const size_t m_begin;
    const size_t m_end;
    QyWriting::WayOfWriting& m_way;
    Lane m_lacks[kRows][kMostPairs + 2] = {};
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
/// its border is copied from pixels that depend on the old content of the destination.
template <class Sample, int Width>
void FinishAdaptive(const Image<Sample, Width>& image, Layout layout, bool isDone) {
    if (!isDone) {
        BuildGreen(image, layout);
        BuildColours(image, layout);
    }
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
