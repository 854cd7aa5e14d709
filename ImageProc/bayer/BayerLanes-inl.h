// Samples of the edge-directed interpolation in lanes that have room for sums. Included once
// for each instruction set, within foreach_target.

#if defined(QY_BAYER_LANES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QY_BAYER_LANES_INL_H
#undef QY_BAYER_LANES_INL_H
#else
#define QY_BAYER_LANES_INL_H
#endif

#include <hwy/highway.h>

#include "bayer/BayerPixels-inl.h"

#if HWY_TARGET != HWY_SCALAR

HWY_BEFORE_NAMESPACE();
namespace QyBayer {
namespace HWY_NAMESPACE {

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
    static HWY_INLINE NarrowVector Join(Vector even, Vector odd) {
        return hn::BitCast(Narrow(), hn::Or(even, hn::ShiftLeft<kBits>(odd)));
    }
    /// Joins samples after limiting them, the upper end of bytes being that of their lanes.
    static HWY_INLINE NarrowVector JoinLimited(Vector even, Vector odd, Vector limit) {
#if HWY_TARGET <= HWY_AVX3
        // One instruction limits and narrows, so that two do the work of six.
        if constexpr (sizeof(Sample) == 1) {
            alignas(16) static constexpr uint8_t kPlaces[16] = {0, 8,  1, 9,  2, 10, 3, 11,
                                                                4, 12, 5, 13, 6, 14, 7, 15};
            const NarrowVector halves{_mm512_packus_epi16(even.raw, odd.raw)};
            return hn::TableLookupBytes(halves, hn::LoadDup128(Narrow(), kPlaces));
        }
#endif
        return Join(Limited(even, limit), Limited(odd, limit));
    }
    static HWY_INLINE NarrowVector Distance(NarrowVector a, NarrowVector b) {
        return hn::Or(hn::SaturatedSub(a, b), hn::SaturatedSub(b, a));
    }
    static HWY_INLINE Vector Limited(Vector v, Vector limit) {
        return hn::Min(hn::Max(v, hn::Zero(Wide())), limit);
    }
    /// The same for samples, or for what lies between some of them: whole bytes are within
    /// their limit.
    static HWY_INLINE Vector LimitedSamples(Vector v, Vector limit) {
        return sizeof(Sample) == 1 ? v : hn::Min(v, limit);
    }
};

}  // namespace HWY_NAMESPACE
}  // namespace QyBayer
HWY_AFTER_NAMESPACE();

#endif

#endif
