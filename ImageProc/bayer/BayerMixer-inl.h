// Pixels of the edge-directed interpolation from samples and what they lack of green. Included
// once for each instruction set, within foreach_target.

#if defined(QY_BAYER_MIXER_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QY_BAYER_MIXER_INL_H
#undef QY_BAYER_MIXER_INL_H
#else
#define QY_BAYER_MIXER_INL_H
#endif

#include <hwy/highway.h>

#include "bayer/BayerLanes-inl.h"

#if HWY_TARGET != HWY_SCALAR

HWY_BEFORE_NAMESPACE();
namespace QyBayer {
namespace HWY_NAMESPACE {

/// Mixes the pixels of a row from its samples and from what the samples there, in the row above
/// and in the row below lack of green.
/// @tparam ColourX  the place in a pair of the colour that the row has samples of
template <class Sample, unsigned ColourX>
class Mixer : private Lanes<Sample> {
    using Base = Lanes<Sample>;
    using typename Base::Lane;
    using typename Base::Narrow;
    using typename Base::NarrowVector;
    using typename Base::Vector;
    using typename Base::Wide;

public:
    /// Samples of pixels: those of the row's own colour, of green, and of the other colour.
    struct Colours {
        NarrowVector own;
        NarrowVector green;
        NarrowVector other;
    };

    HWY_INLINE Mixer(const Sample* row, const Lane* above, const Lane* here, const Lane* below,
                     int32_t limit)
        : m_row(row), m_above(above), m_here(here), m_below(below), m_limit(limit) {}

    HWY_INLINE Colours At(size_t pair) const {
        const Vector limit = hn::Set(Wide(), static_cast<Lane>(m_limit));
        const NarrowVector samples = LoadSamples(Narrow(), m_row + 2 * pair);
        const Vector even = Base::Even(samples);
        const Vector odd = Base::Odd(samples);
        const Vector colour = ColourX == 0 ? even : odd;
        const Vector green = Base::LimitedSamples(ColourX == 0 ? odd : even, limit);
        const Vector greenOfColour = hn::Sub(colour, Load(m_here + pair));
        // The pairs whose colours lie beside the first pair's green.
        const size_t left = pair - ColourX;
        const size_t right = left + 1;
        const Vector beside = hn::Add(Load(m_here + left), Load(m_here + right));
        const Vector both = Both(pair);
        const Vector diagonal = hn::Add(both, Both(ColourX == 0 ? pair - 1 : pair + 1));
        const auto join = [limit](Vector ofColour, Vector ofGreen) HWY_ATTR {
            return ColourX == 0 ? Base::JoinLimited(ofColour, ofGreen, limit)
                                : Base::JoinLimited(ofGreen, ofColour, limit);
        };
        return {join(colour, hn::Add(hn::ShiftRight<1>(beside), green)), join(greenOfColour, green),
                join(hn::Add(hn::ShiftRight<2>(diagonal), greenOfColour),
                     hn::Add(hn::ShiftRight<1>(both), green))};
    }

private:
    static HWY_INLINE Vector Load(const Lane* at) { return hn::LoadU(Wide(), at); }
    HWY_INLINE Vector Both(size_t pair) const {
        return hn::Add(Load(m_above + pair), Load(m_below + pair));
    }
    const Sample* m_row;
    const Lane* m_above;
    const Lane* m_here;
    const Lane* m_below;
    int32_t m_limit;
};

}  // namespace HWY_NAMESPACE
}  // namespace QyBayer
HWY_AFTER_NAMESPACE();

#endif

#endif
