// Samples and pixels of the mosaic interpolation in whole vectors. Included once
// for each instruction set, within foreach_target.

#if defined(QY_BAYER_PIXELS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QY_BAYER_PIXELS_INL_H
#undef QY_BAYER_PIXELS_INL_H
#else
#define QY_BAYER_PIXELS_INL_H
#endif

#include <hwy/highway.h>

#include <type_traits>

#include "BayerCell.h"
#include "Threes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QyBayer {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// The type of a vector's lane that holds a sample.
template <class Sample>
using LaneOf = std::conditional_t<sizeof(Sample) == 1, uint8_t, uint16_t>;

template <class D, class Sample>
HWY_INLINE hn::Vec<D> LoadSamples(D d, const Sample* samples) {
    return hn::LoadU(d, static_cast<const hn::TFromD<D>*>(static_cast<const void*>(samples)));
}

template <class D, class Sample, int Width, class V = hn::Vec<D>>
HWY_INLINE void PutPixels(D d, const Image<Sample, Width>& image, Sample* pixels, V r, V g, V b) {
    auto* const lanes = static_cast<hn::TFromD<D>*>(static_cast<void*>(pixels));
    const V first = image.red == 0 ? r : b;
    const V third = image.red == 0 ? b : r;
    if constexpr (Width == 4) {
        hn::StoreInterleaved4(first, g, third, hn::Set(d, image.alpha), d, lanes);
    } else {
        QyBlocks::HWY_NAMESPACE::StoreThrees(first, g, third, d, lanes);
    }
}

/// Calls `at` with every whole vector from `begin` on. The last one ends at `end`,
/// so that it may do some lanes again; there must be room for it.
template <class At>
HWY_INLINE void CoverByVectors(size_t begin, size_t end, size_t lanes, const At& at) {
    for (size_t i = begin; i + lanes < end; i += lanes) {
        at(i);
    }
    at(end - lanes);
}

}  // namespace HWY_NAMESPACE
}  // namespace QyBayer
HWY_AFTER_NAMESPACE();

#endif
