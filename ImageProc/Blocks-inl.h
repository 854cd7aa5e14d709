// Pixels in whole vectors. Included once for each instruction set, within
// foreach_target.

#if defined(QY_BLOCKS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QY_BLOCKS_INL_H
#undef QY_BLOCKS_INL_H
#else
#define QY_BLOCKS_INL_H
#endif

#include <hwy/highway.h>

#include <cstring>

#if HWY_TARGET != HWY_SCALAR

HWY_BEFORE_NAMESPACE();
namespace QyBlocks {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<uint8_t>;
using Shorts = hn::Repartition<int16_t, Bytes>;

/// Two vectors of wider lanes: the bytes at even and at odd places.
struct Split {
    hn::Vec<Shorts> even;
    hn::Vec<Shorts> odd;
};

HWY_INLINE Split SplitBytes(hn::Vec<Bytes> bytes) {
    const hn::Repartition<uint16_t, Bytes> words;
    const auto pairs = hn::BitCast(words, bytes);
    return {hn::BitCast(Shorts(), hn::And(pairs, hn::Set(words, 0xFF))),
            hn::BitCast(Shorts(), hn::ShiftRight<8>(pairs))};
}

/// The bytes of two vectors whose lanes are from 0 to 255.
HWY_INLINE hn::Vec<Bytes> JoinBytes(const Split& split) {
    return hn::BitCast(Bytes(), hn::Or(split.even, hn::ShiftLeft<8>(split.odd)));
}

/// Gives `at(in, out, first pixel)` whole vectors of pixels. Those left over are
/// taken to a place of their own and back, so that neither memory is left and a
/// pixel is read before it is written, in place too.
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

/// The same for pixels that are only read: `at(in, first pixel)`.
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
