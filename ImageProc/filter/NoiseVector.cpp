// The loops over whole vectors, compiled once for each instruction set.

#include <cstring>

#include "filter/NoiseRow.h"
#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/NoiseVector.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "support/FastInterleave3-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QyNoise {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<uint8_t>;
using Shorts = hn::ScalableTag<int16_t>;
using Vector = hn::Vec<Shorts>;

static_assert(size_t{2} * HWY_MAX_BYTES <= kPadding);

constexpr size_t kPixelBytes = 3;
/// Vectors of 16-bit lanes for the bytes of a vector.
constexpr size_t kParts = HWY_TARGET == HWY_SCALAR ? 1 : 2;

/// Lanes of 16 bits for the bytes of a vector.
struct Wide {
    Vector parts[kParts];
};

/// The bytes of some pixels, or values for them: one for each place within a pixel.
template <class Values>
struct Pixels {
    Values first;
    Values green;
    Values third;
};
using BytePixels = Pixels<hn::Vec<Bytes>>;

HWY_INLINE Wide Widen(hn::Vec<Bytes> bytes) {
#if HWY_TARGET == HWY_SCALAR
    return {{hn::PromoteTo(Shorts(), bytes)}};
#else
    const hn::Half<Bytes> half;
    return {{hn::PromoteTo(Shorts(), hn::LowerHalf(half, bytes)),
             hn::PromoteTo(Shorts(), hn::UpperHalf(half, bytes))}};
#endif
}

/// Keeps some pixels at column `x`.
HWY_INLINE void Keep(const BytePixels& pixels, const KeptRow& kept, size_t x) {
    const Shorts d;
    hn::StoreU(pixels.first, Bytes(), kept.first.reaches + x);
    hn::StoreU(pixels.green, Bytes(), kept.green.reaches + x);
    hn::StoreU(pixels.third, Bytes(), kept.third.reaches + x);
    const Wide first = Widen(pixels.first);
    const Wide green = Widen(pixels.green);
    const Wide third = Widen(pixels.third);
    for (size_t part = 0; part < kParts; ++part) {
        const Vector own = green.parts[part];
        const auto keep = [&](Vector values, int16_t* to) HWY_ATTR {
            hn::StoreU(hn::ShiftLeft<4>(values), d, to + x + part * hn::Lanes(d));
        };
        keep(hn::Sub(first.parts[part], own), kept.first.values);
        keep(own, kept.green.values);
        keep(hn::Sub(third.parts[part], own), kept.third.values);
    }
}

/// The sum of the differences between neighbours and the pixels in the middle, of which only
/// those within reach count.
///
/// A neighbour takes three steps: its distance from the upper end of the range, one comparison
/// for both ends, since what is above the range wraps, and one addition. Sums are of distances
/// with 1 in the lowest four bits, which so count the neighbours; that many distances between
/// the upper end and the middle, less the sum, are the differences. Where only lanes with signs
/// can be compared, half of their range is added to each distance; as often as its top bit is
/// summed, it is also in what the sum is taken from.
class Differences {
public:
    HWY_INLINE Differences(const KeptChannel& centre, size_t x)
        : Differences(hn::LoadU(Shorts(), centre.values + x), Reach(centre.reaches + x)) {}

    HWY_INLINE void Add(const int16_t* neighbours) {
        const Vector distance = hn::Sub(m_top, hn::LoadU(Shorts(), neighbours));
#if HWY_TARGET <= HWY_AVX3
        const Unsigned d;
        const auto isNear = hn::Lt(hn::BitCast(d, distance), hn::BitCast(d, m_limit));
        m_sum = AddWhere(hn::RebindMask(Shorts(), isNear), m_sum, distance);
#else
        m_sum = hn::Add(m_sum, hn::IfThenElseZero(hn::Lt(distance, m_limit), distance));
#endif
    }

    /// The middle, moved by a part of the sum, which is truncated towards zero.
    /// @tparam Inverse 65536 divided by the divisor, rounded up
    template <int16_t Inverse>
    HWY_INLINE Vector Moved() const {
        const Shorts d;
        const Vector count = hn::And(m_sum, hn::Set(d, 15));
        const Vector sum = hn::Sub(hn::Mul(count, m_step), m_sum);
        const Vector part = hn::MulHigh(sum, hn::Set(d, Inverse));
        const Vector moved = hn::Add(m_centre, part);
        const Vector one = hn::Set(d, 16);
#if HWY_TARGET <= HWY_AVX3
        return hn::ShiftRight<4>(AddWhere(hn::MaskFromVec(sum), moved, one));
#else
        return hn::ShiftRight<4>(hn::Add(moved, hn::And(hn::BroadcastSignBit(sum), one)));
#endif
    }

private:
    using Unsigned = hn::RebindToUnsigned<Shorts>;

    static constexpr int16_t kOne = 1;
    static constexpr int16_t kHalfRange = HWY_TARGET <= HWY_AVX3 ? 0 : -32768;

    HWY_INLINE Differences(Vector centre, Vector reach)
        : m_centre(centre),
          m_step(hn::Or(reach, hn::Set(Shorts(), kOne | kHalfRange))),
          m_top(hn::Add(centre, m_step)),
          m_limit(
              hn::Add(m_step, kHalfRange == 0 ? m_step : hn::Or(reach, hn::Set(Shorts(), kOne)))),
          m_sum(hn::Zero(Shorts())) {}

#if HWY_TARGET <= HWY_AVX3
    /// One instruction there; elsewhere a selection takes longer than a zero.
    static HWY_INLINE Vector AddWhere(hn::Mask<Shorts> mask, Vector to, Vector more) {
        return hn::IfThenElse(mask, hn::Add(to, more), to);
    }
#endif

    static HWY_INLINE Vector Reach(const uint8_t* reaches) {
        const hn::Rebind<uint8_t, Shorts> narrow;
        return hn::ShiftLeft<4>(hn::PromoteTo(Shorts(), hn::LoadU(narrow, reaches)));
    }

    Vector m_centre;
    Vector m_step;
    Vector m_top;
    Vector m_limit;
    Vector m_sum;
};

template <int16_t Inverse>
HWY_INLINE Vector Moved(const KeptRows& rows, KeptChannel KeptRow::*channel, size_t x,
                        size_t radius) {
    Differences differences(rows[1].*channel, x);
    const int16_t* const above = (rows[0].*channel).values + x;
    const int16_t* const beside = (rows[1].*channel).values + x;
    const int16_t* const below = (rows[2].*channel).values + x;
    differences.Add(above - radius);
    differences.Add(above);
    differences.Add(above + radius);
    differences.Add(beside - radius);
    differences.Add(beside + radius);
    differences.Add(below - radius);
    differences.Add(below);
    differences.Add(below + radius);
    return differences.Moved<Inverse>();
}

/// The pixels at column `x` in lanes of 16 bits. Green is damped more than the differences of
/// the others to it.
HWY_INLINE Pixels<Vector> ReducedPart(const KeptRows& rows, size_t x, size_t radius) {
    constexpr int16_t kFifteenth = 4370;
    constexpr int16_t kNinth = 7282;
    const Vector green = Moved<kFifteenth>(rows, &KeptRow::green, x, radius);
    return {hn::Add(Moved<kNinth>(rows, &KeptRow::first, x, radius), green), green,
            hn::Add(Moved<kNinth>(rows, &KeptRow::third, x, radius), green)};
}

#if HWY_TARGET == HWY_SCALAR

HWY_INLINE BytePixels Reduced(const KeptRows& rows, size_t x, size_t radius) {
    const Bytes d;
    const auto pixels = ReducedPart(rows, x, radius);
    return {hn::DemoteTo(d, pixels.first), hn::DemoteTo(d, pixels.green),
            hn::DemoteTo(d, pixels.third)};
}

#else

/// Limits to 0 .. 255.
HWY_INLINE hn::Vec<Bytes> Narrow(Vector low, Vector high) {
#if HWY_TARGET <= HWY_AVX3
    // Both halves at once; their blocks come in turns.
    const hn::Repartition<uint64_t, Bytes> d;
    alignas(64) static constexpr uint64_t kPlaces[8] = {0, 2, 4, 6, 1, 3, 5, 7};
    const hn::Vec<decltype(d)> blocks{_mm512_packus_epi16(low.raw, high.raw)};
    return hn::BitCast(Bytes(), hn::TableLookupLanes(blocks, hn::SetTableIndices(d, kPlaces)));
#else
    const hn::Half<Bytes> half;
    return hn::Combine(Bytes(), hn::DemoteTo(half, high), hn::DemoteTo(half, low));
#endif
}

/// The pixels at column `x`.
HWY_INLINE BytePixels Reduced(const KeptRows& rows, size_t x, size_t radius) {
    const auto low = ReducedPart(rows, x, radius);
    const auto high = ReducedPart(rows, x + hn::Lanes(Shorts()), radius);
    return {Narrow(low.first, high.first), Narrow(low.green, high.green),
            Narrow(low.third, high.third)};
}

#endif

/// Prefetches the lines of pixels that come some vectors later, for which the processor itself
/// waits where a page begins. They may be beyond the image.
HWY_INLINE void Prefetch(const uint8_t* pixels) {
    constexpr size_t kLine = 64;
    constexpr size_t kAhead = 32 * kLine;
    for (size_t i = 0; i < kPixelBytes * hn::MaxLanes(Bytes()); i += kLine) {
        hwy::Prefetch(pixels + kAhead + i);
    }
}

void KeepLoop(const uint8_t* row, size_t width, const KeptRow& kept) {
    const size_t lanes = hn::Lanes(Bytes());
    const auto load = [](const uint8_t* bytes) HWY_ATTR {
        return QyBlocks::HWY_NAMESPACE::FastLoadInterleaved3Into<BytePixels>(Bytes(), bytes);
    };
    size_t x = 0;
    for (; x + lanes <= width; x += lanes) {
        Prefetch(row + x * kPixelBytes);
        Keep(load(row + x * kPixelBytes), kept, x);
    }
    if (x < width) {
        uint8_t rest[HWY_MAX_BYTES * kPixelBytes] = {};
        std::memcpy(rest, row + x * kPixelBytes, (width - x) * kPixelBytes);
        Keep(load(rest), kept, x);
    }
}

void ToKeptLoop(const KeptRows& rows, size_t width, size_t radius, const KeptRow& result) {
    for (size_t x = 0; x < width; x += hn::Lanes(Bytes())) {
        Keep(Reduced(rows, x, radius), result, x);
    }
}

void ToPixelsLoop(const KeptRows& rows, size_t width, size_t radius, uint8_t* row) {
    const size_t lanes = hn::Lanes(Bytes());
    const auto store = [](const BytePixels& pixels, uint8_t* bytes) HWY_ATTR {
        QyBlocks::HWY_NAMESPACE::FastStoreInterleaved3(pixels.first, pixels.green, pixels.third,
                                                       Bytes(), bytes);
    };
    size_t x = 0;
    for (; x + lanes <= width; x += lanes) {
        store(Reduced(rows, x, radius), row + x * kPixelBytes);
    }
    if (x < width) {
        uint8_t rest[HWY_MAX_BYTES * kPixelBytes];
        store(Reduced(rows, x, radius), rest);
        std::memcpy(row + x * kPixelBytes, rest, (width - x) * kPixelBytes);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace QyNoise
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyNoise {

QY_DISPATCH(KeepLoop);
QY_DISPATCH(ToKeptLoop);
QY_DISPATCH(ToPixelsLoop);

void KeepRow(const uint8_t* row, size_t width, const KeptRow& kept) {
    KeepLoop(row, width, kept);
}

void ReduceToKept(const KeptRows& rows, size_t width, size_t radius, const KeptRow& result) {
    ToKeptLoop(rows, width, radius, result);
}

void ReduceToPixels(const KeptRows& rows, size_t width, size_t radius, uint8_t* row) {
    ToPixelsLoop(rows, width, radius, row);
}

}  // namespace QyNoise
#endif
