// Processes pixels in whole vectors. Included once for each instruction set, within
// foreach_target.

#if defined(QY_BLOCKS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QY_BLOCKS_INL_H
#undef QY_BLOCKS_INL_H
#else
#define QY_BLOCKS_INL_H
#endif

#include <hwy/highway.h>

#include <cstring>

#include "support/FastInterleave3-inl.h"

#if HWY_TARGET != HWY_SCALAR

HWY_BEFORE_NAMESPACE();
namespace QyBlocks {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<uint8_t>;
using Shorts = hn::Repartition<int16_t, Bytes>;
using Words = hn::Repartition<uint16_t, Bytes>;

/// Two vectors of wider lanes: the bytes at even and at odd places.
template <class D>
struct Split {
    hn::Vec<D> even;
    hn::Vec<D> odd;
};

template <class D>
HWY_INLINE Split<D> SplitBytes(D d, hn::Vec<Bytes> bytes) {
    const auto pairs = hn::BitCast(Words(), bytes);
    return {hn::BitCast(d, hn::And(pairs, hn::Set(Words(), 0xFF))),
            hn::BitCast(d, hn::ShiftRight<8>(pairs))};
}

#if HWY_TARGET <= HWY_AVX3_DL

/// A table of 256 bytes, in four registers.
class ByteTable {
public:
    explicit HWY_INLINE ByteTable(const uint8_t* table)
        : m_first(hn::LoadU(Bytes(), table)),
          m_second(hn::LoadU(Bytes(), table + 64)),
          m_third(hn::LoadU(Bytes(), table + 128)),
          m_fourth(hn::LoadU(Bytes(), table + 192)) {}

    HWY_INLINE hn::Vec<Bytes> Of(hn::Vec<Bytes> index) const {
        const __m512i low = _mm512_permutex2var_epi8(m_first.raw, index.raw, m_second.raw);
        const __m512i high = _mm512_permutex2var_epi8(m_third.raw, index.raw, m_fourth.raw);
        return hn::Vec<Bytes>{_mm512_mask_blend_epi8(_mm512_movepi8_mask(index.raw), low, high)};
    }

private:
    hn::Vec<Bytes> m_first;
    hn::Vec<Bytes> m_second;
    hn::Vec<Bytes> m_third;
    hn::Vec<Bytes> m_fourth;
};

#endif

/// Calls `at(in, out, first pixel)` for whole vectors of pixels. The pixels that don't
/// fill a vector are copied to a buffer and back, so that nothing is read or written
/// beyond the images, and no pixel is overwritten before it is read.
template <int Width, class At>
HWY_INLINE void ForEachBlock(const uint8_t* src, uint8_t* dst, size_t pixels, const At& at) {
    const size_t lanes = hn::Lanes(Bytes());
    size_t x = 0;
    for (; x + lanes <= pixels; x += lanes) {
        at(src + x * Width, dst + x * Width, x);
    }
    if (x < pixels) {
        uint8_t rest[HWY_MAX_BYTES * Width] = {};
        const size_t size = (pixels - x) * Width;
        std::memcpy(rest, src + x * Width, size);
        at(rest, rest, x);
        std::memcpy(dst + x * Width, rest, size);
    }
}

/// The same for pixels that are only read: calls `at(in, first pixel)`.
template <int Width, class At>
HWY_INLINE void ForEachBlock(const uint8_t* src, size_t pixels, const At& at) {
    const size_t lanes = hn::Lanes(Bytes());
    size_t x = 0;
    for (; x + lanes <= pixels; x += lanes) {
        at(src + x * Width, x);
    }
    if (x < pixels) {
        uint8_t rest[HWY_MAX_BYTES * Width] = {};
        std::memcpy(rest, src + x * Width, (pixels - x) * Width);
        at(rest, x);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace QyBlocks
HWY_AFTER_NAMESPACE();

#endif

#endif
