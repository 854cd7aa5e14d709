// The loops over whole vectors, compiled once for each instruction set.

#include "tone/ToneVector.h"

#include <algorithm>
#include <cstdlib>

#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/ToneVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "support/Blocks-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QyTone {
namespace HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR
namespace hn = hwy::HWY_NAMESPACE;
using namespace QyBlocks::HWY_NAMESPACE;
#endif

#if HWY_TARGET <= HWY_AVX3_DL

void MapBytesLoop(const uint8_t* src, uint8_t* dst, size_t count, const uint8_t* table) {
    const ByteTable bytes(table);
    ForEachBlock<1>(src, dst, count, [&](const uint8_t* in, uint8_t* out, size_t /*x*/) HWY_ATTR {
        hn::StoreU(bytes.Of(hn::LoadU(Bytes(), in)), Bytes(), out);
    });
}

#elif HWY_MAX_BYTES < 32

// With vectors of 16 bytes, the look-up would take as many steps as there are bytes.
void MapBytesLoop(const uint8_t* src, uint8_t* dst, size_t count, const uint8_t* table) {
    for (size_t i = 0; i < count; ++i) {
        dst[i] = table[src[i]];
    }
}

#else

/// Which bytes have a bit set.
template <int Bit>
HWY_INLINE hn::Mask<Bytes> HasBit(hn::Vec<Bytes> bytes) {
    const Bytes d;
    const auto bit = hn::Set(d, 1 << Bit);
    return hn::Eq(hn::And(bytes, bit), bit);
}

/// Bits of an index above the lowest four.
struct UpperBits {
    hn::Mask<Bytes> bit4;
    hn::Mask<Bytes> bit5;
    hn::Mask<Bytes> bit6;
    hn::Mask<Bytes> bit7;

    template <size_t Size>
    HWY_INLINE hn::Mask<Bytes> Half() const {
        return Size == 32 ? bit4 : (Size == 64 ? bit5 : (Size == 128 ? bit6 : bit7));
    }
};

/// Looks up all indices in each part of 16 bytes, and selects among the parts by the
/// upper bits, half by half.
template <size_t Size>
HWY_INLINE hn::Vec<Bytes> Lookup(const uint8_t* table, hn::Vec<Bytes> lower,
                                 const UpperBits& upper) {
    if constexpr (Size == 16) {
        return hn::TableLookupBytes(hn::LoadDup128(Bytes(), table), lower);
    } else {
        return hn::IfThenElse(upper.template Half<Size>(),
                              Lookup<Size / 2>(table + Size / 2, lower, upper),
                              Lookup<Size / 2>(table, lower, upper));
    }
}

void MapBytesLoop(const uint8_t* src, uint8_t* dst, size_t count, const uint8_t* table) {
    const Bytes d;
    alignas(16) uint8_t parts[256];
    std::copy_n(table, sizeof parts, parts);
    ForEachBlock<1>(src, dst, count, [&](const uint8_t* in, uint8_t* out, size_t /*x*/) HWY_ATTR {
        const auto index = hn::LoadU(d, in);
        const UpperBits upper{HasBit<4>(index), HasBit<5>(index), HasBit<6>(index),
                              HasBit<7>(index)};
        hn::StoreU(Lookup<256>(parts, hn::And(index, hn::Set(d, 15)), upper), d, out);
    });
}

#endif

#if HWY_TARGET == HWY_SCALAR

void SaturateLoop(const uint8_t* src, uint8_t* dst, size_t pixels, const SaturationMatrix& m) {
    const auto clip = [](int32_t sum) {
        return static_cast<uint8_t>(std::clamp(sum >> 8, 0, 255));
    };
    for (size_t i = 0; i < pixels * 3; i += 3) {
        const int32_t s0 = src[i];
        const int32_t s1 = src[i + 1];
        const int32_t s2 = src[i + 2];
        dst[i] = clip(m.c * s2 + m.b * s1 + m.a * s0);
        dst[i + 1] = clip(m.a * s1 + m.d * s0 + m.e * s2);
        dst[i + 2] = clip(m.c * s1 + m.b * s0 + m.a * s2);
    }
}

void ToGreyLoop(const uint8_t* src, uint8_t* dst, size_t pixels) {
    for (size_t i = 0; i < pixels * 3; i += 3) {
        const auto grey =
            static_cast<uint8_t>((150 * src[i + 1] + 77 * src[i] + 29 * src[i + 2]) >> 8);
        std::fill_n(dst + i, 3, grey);
    }
}

#else

using Vector = hn::Vec<Words>;

/// The three bytes of as many pixels as a vector has bytes.
struct Pixels {
    hn::Vec<Bytes> b0;
    hn::Vec<Bytes> b1;
    hn::Vec<Bytes> b2;
};

/// Changes pixels by `mix(pixels)`.
template <class Mix>
HWY_INLINE void MixPixels(const uint8_t* src, uint8_t* dst, size_t count, const Mix& mix) {
    ForEachBlock<3>(src, dst, count, [&](const uint8_t* in, uint8_t* out, size_t /*x*/) HWY_ATTR {
        const Bytes d;
        const Pixels mixed = mix(FastLoadInterleaved3Into<Pixels>(d, in));
        FastStoreInterleaved3(mixed.b0, mixed.b1, mixed.b2, d, out);
    });
}

/// The upper bytes of two vectors' lanes.
HWY_INLINE hn::Vec<Bytes> JoinUpper(Vector even, Vector odd) {
    return hn::BitCast(Bytes(),
                       hn::Or(hn::ShiftRight<8>(even), hn::And(odd, hn::Set(Words(), 0xFF00))));
}

/// A row of the matrix by magnitudes: by how much the coefficient of the byte itself
/// differs from 256, and the coefficients of the two others, whose sign is the opposite.
/// @tparam Gains  whether the saturation grows
template <bool Gains>
class Row {
public:
    Row(int32_t own, int32_t one, int32_t other)
        : m_own(Size(own - kOne)), m_one(Size(one)), m_other(Size(other)) {}

    HWY_INLINE hn::Vec<Bytes> Mix(hn::Vec<Bytes> own, hn::Vec<Bytes> one,
                                  hn::Vec<Bytes> other) const {
        const auto pairs = hn::BitCast(Words(), own);
        const auto owns = SplitBytes(Words(), own);
        const auto ones = SplitBytes(Words(), one);
        const auto others = SplitBytes(Words(), other);
        return JoinUpper(
            Sum(hn::ShiftLeft<8>(pairs), owns.even, ones.even, others.even),
            Sum(hn::And(pairs, hn::Set(Words(), 0xFF00)), owns.odd, ones.odd, others.odd));
    }

private:
    static constexpr int32_t kOne = 256;

    static Vector Size(int32_t factor) {
        return hn::Set(Words(), static_cast<uint16_t>(std::abs(factor)));
    }
    /// In 256ths. A sum that saturates at 16 bits would be limited to a byte anyway, and
    /// the difference fits because one of its parts is 0.
    HWY_INLINE Vector Sum(Vector scaled, Vector own, Vector one, Vector other) const {
        const Vector change = hn::Mul(own, m_own);
        const Vector mixed = hn::Add(hn::Mul(one, m_one), hn::Mul(other, m_other));
        const Vector up = Gains ? change : mixed;
        const Vector down = Gains ? mixed : change;
        return hn::SaturatedSub(hn::SaturatedAdd(scaled, hn::SaturatedSub(up, down)),
                                hn::SaturatedSub(down, up));
    }

    Vector m_own;
    Vector m_one;
    Vector m_other;
};

template <bool Gains>
void SaturateRows(const uint8_t* src, uint8_t* dst, size_t count, const SaturationMatrix& m) {
    const Row<Gains> ends(m.a, m.b, m.c);
    const Row<Gains> middle(m.a, m.d, m.e);
    MixPixels(src, dst, count, [&](const Pixels& p) HWY_ATTR {
        return Pixels{ends.Mix(p.b0, p.b1, p.b2), middle.Mix(p.b1, p.b0, p.b2),
                      ends.Mix(p.b2, p.b0, p.b1)};
    });
}

void SaturateLoop(const uint8_t* src, uint8_t* dst, size_t pixels, const SaturationMatrix& m) {
    constexpr int32_t kOne = 256;
    (m.a > kOne ? SaturateRows<true> : SaturateRows<false>)(src, dst, pixels, m);
}

HWY_INLINE Vector Grey(Vector s0, Vector s1, Vector s2) {
    const Words d;
    return hn::Add(hn::Add(hn::Mul(s1, hn::Set(d, 150)), hn::Mul(s0, hn::Set(d, 77))),
                   hn::Mul(s2, hn::Set(d, 29)));
}

void ToGreyLoop(const uint8_t* src, uint8_t* dst, size_t pixels) {
    MixPixels(src, dst, pixels, [](const Pixels& p) HWY_ATTR {
        const auto s0 = SplitBytes(Words(), p.b0);
        const auto s1 = SplitBytes(Words(), p.b1);
        const auto s2 = SplitBytes(Words(), p.b2);
        const auto grey = JoinUpper(Grey(s0.even, s1.even, s2.even), Grey(s0.odd, s1.odd, s2.odd));
        return Pixels{grey, grey, grey};
    });
}

#endif

}  // namespace HWY_NAMESPACE
}  // namespace QyTone
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyTone {

QY_DISPATCH(MapBytesLoop);
QY_DISPATCH(SaturateLoop);
QY_DISPATCH(ToGreyLoop);

void MapBytes(const uint8_t* src, uint8_t* dst, size_t count, const uint8_t* table) {
    MapBytesLoop(src, dst, count, table);
}

void Saturate(const uint8_t* src, uint8_t* dst, size_t pixels, const SaturationMatrix& matrix) {
    SaturateLoop(src, dst, pixels, matrix);
}

void ToGrey(const uint8_t* src, uint8_t* dst, size_t pixels) {
    ToGreyLoop(src, dst, pixels);
}

}  // namespace QyTone
#endif
