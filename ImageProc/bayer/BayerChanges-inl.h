// In which direction samples change less. Included once for each instruction set, within
// foreach_target.

#if defined(QY_BAYER_CHANGES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QY_BAYER_CHANGES_INL_H
#undef QY_BAYER_CHANGES_INL_H
#else
#define QY_BAYER_CHANGES_INL_H
#endif

#include <hwy/highway.h>

#include "bayer/BayerLanes-inl.h"

#if HWY_TARGET != HWY_SCALAR

HWY_BEFORE_NAMESPACE();
namespace QyBayer {
namespace HWY_NAMESPACE {

/// How much more samples change along rows than along columns, around the samples of one colour:
/// the sums of the differences between samples two columns apart and between those two rows
/// apart.
///
/// A difference counts for up to ten samples. So each is taken once, when its row comes, and
/// kept; then the rows around one are summed for each pair of columns, and last three such sums
/// of neighbouring pairs.
template <class Sample, size_t MostPairs>
class Changes : private Lanes<Sample> {
    using Base = Lanes<Sample>;
    using typename Base::Lane;
    using typename Base::Narrow;
    using typename Base::NarrowVector;
    using typename Base::Vector;
    using typename Base::Wide;

public:
    /// @param samples  the first row's, from the first pair of columns on
    /// @param pairs    how many there are; the first and the last one only serve their neighbours
    Changes(const Sample* samples, size_t width, size_t pairs)
        : m_samples(samples), m_width(width), m_pairs(pairs) {}

    /// Takes the rows before those that the first sums take.
    void TakeFirstRows() {
        for (size_t y = 0; y < 4; ++y) {
            TakingRow(y).UpTo(m_pairs);
        }
        for (size_t y = 0; y < 2; ++y) {
            const auto take = [this, y](size_t at) QY_ALWAYS_INLINE {
                const Sample* const samples = Row(y) + 2 * at;
                m_below[y].Put(at, Base::Distance(Load(samples), Load(samples + 2 * m_width)));
            };
            Cover(m_pairs, Base::kPairs, take).UpTo(m_pairs);
        }
    }

    /// What takes the differences within a row, vector by vector. The last pair has none: there
    /// may be no further samples.
    HWY_INLINE auto TakingRow(size_t y) {
        const auto take = [row = Row(y), ahead = 2 * m_width,
                           to = &m_beside[y % kBesideRows]](size_t at) QY_ALWAYS_INLINE {
            const Sample* const samples = row + 2 * at;
            PrefetchLine(samples + ahead);
            to->Put(at, Base::Distance(Load(samples), Load(samples + 2)));
        };
        return Cover(m_pairs - 1, Base::kPairs, take);
    }

    /// What takes the differences between a row and the next but one, and sums those around the
    /// row. It goes behind what takes the next row but one.
    /// @tparam ColourX  the place in a pair of the colour
    template <unsigned ColourX>
    HWY_INLINE auto SummingRows(size_t y) {
        const auto sum = [row = Row(y), ahead = 2 * m_width, around = Around(y),
                          to = &m_below[y % kBelowRows],
                          sums = &m_sums](size_t at) QY_ALWAYS_INLINE {
            const Sample* const samples = row + 2 * at;
            const NarrowVector below = Base::Distance(Load(samples), Load(samples + ahead));
            to->Put(at, below);
            around.template Sum<ColourX>(at, {Base::Even(below), Base::Odd(below)}, *sums);
        };
        return Cover(m_pairs, Base::kPairs, sum);
    }

    /// What is summed of the pairs from the one at a place on. It isn't the first one.
    HWY_INLINE Vector At(size_t at) const {
        const Vector left = hn::LoadU(Wide(), m_sums.left + at - 1);
        const Vector own = hn::LoadU(Wide(), m_sums.own + at);
        const Vector right = hn::LoadU(Wide(), m_sums.right + at + 1);
        return hn::Sub(hn::Add(left, own), right);
    }

private:
    static constexpr size_t kLine = 64;
    static constexpr size_t kBesideRows = 5;
    static constexpr size_t kBelowRows = 3;
    /// With room that keeps rows from lying at equal places in pages: a store would hold up loads
    /// there.
    static constexpr size_t kRoom = MostPairs + Base::kPairs;

    /// Differences of the samples of a row at even and at odd columns.
    struct Kept {
        alignas(kLine) Lane even[kRoom];
        alignas(kLine) Lane odd[kRoom];

        HWY_INLINE void Put(size_t at, NarrowVector differences) {
            hn::StoreU(Base::Even(differences), Wide(), even + at);
            hn::StoreU(Base::Odd(differences), Wide(), odd + at);
        }
        template <unsigned X>
        HWY_INLINE Vector Of(size_t at) const {
            return hn::LoadU(Wide(), (X == 0 ? even : odd) + at);
        }
    };
    /// What counts for the pair on the right, for the pair itself, and, negated, for the pair on
    /// the left.
    struct Sums {
        alignas(kLine) Lane left[kRoom];
        alignas(kLine) Lane own[kRoom];
        alignas(kLine) Lane right[kRoom];
    };

    /// The kept rows around one.
    struct RowsAround {
        const Kept* beside[kBesideRows];
        const Kept* below[2];

        /// @param last  the differences between the row and the next but one
        template <unsigned ColourX>
        HWY_INLINE void Sum(size_t at, const Vector (&last)[2], Sums& to) const {
            constexpr unsigned kGreenX = 1 - ColourX;
            const auto next = [&](size_t i)
                                  HWY_ATTR { return beside[i]->template Of<ColourX>(at); };
            const Vector besideColour =
                hn::Add(hn::Add(hn::Add(next(0), next(1)), hn::Add(next(3), next(4))), next(2));
            const Vector besideGreen =
                hn::Add(beside[1]->template Of<kGreenX>(at), beside[3]->template Of<kGreenX>(at));
            const Vector belowColour = hn::Add(below[0]->template Of<ColourX>(at), last[ColourX]);
            const Vector belowGreen = hn::Add(
                hn::Add(below[0]->template Of<kGreenX>(at), below[1]->template Of<kGreenX>(at)),
                last[kGreenX]);
            const Vector belowBoth = hn::Add(belowColour, belowGreen);
            const Vector own = hn::Sub(besideColour, belowBoth);
            const Vector all = hn::Add(own, besideGreen);
            const auto put = [at](Vector sums, Lane* lanes)
                                 HWY_ATTR { hn::StoreU(sums, Wide(), lanes + at); };
            put(ColourX == 0 ? all : hn::Sub(besideColour, belowColour), to.left);
            put(ColourX == 0 ? own : all, to.own);
            put(ColourX == 0 ? belowColour : belowBoth, to.right);
        }
    };
    RowsAround Around(size_t y) const {
        RowsAround rows;
        for (size_t i = 0; i < kBesideRows; ++i) {
            rows.beside[i] = &m_beside[(y + i - 2) % kBesideRows];
        }
        for (size_t i = 0; i < 2; ++i) {
            rows.below[i] = &m_below[(y + i - 2) % kBelowRows];
        }
        return rows;
    }

    const Sample* Row(size_t y) const { return m_samples + y * m_width; }
    static HWY_INLINE NarrowVector Load(const Sample* at) { return LoadSamples(Narrow(), at); }

    const Sample* const m_samples;
    const size_t m_width;
    const size_t m_pairs;
    Kept m_beside[kBesideRows] = {};
    Kept m_below[kBelowRows];
    Sums m_sums;
};

}  // namespace HWY_NAMESPACE
}  // namespace QyBayer
HWY_AFTER_NAMESPACE();

#endif

#endif
