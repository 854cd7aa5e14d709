// The loops over whole vectors, compiled once for each instruction set.

// A table of 256 bytes fits the registers of this one.
#define HWY_WANT_AVX3_DL

// Vectors whose size the compiler doesn't know can't be members.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128)

#include "ToneVector.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "ToneVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "Blocks-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QyTone {
namespace HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR
namespace hn = hwy::HWY_NAMESPACE;
using namespace QyBlocks::HWY_NAMESPACE;
#endif

#if HWY_TARGET == HWY_AVX3_DL

void MapBytesLoop(const uint8_t* src, uint8_t* dst, size_t count, const uint8_t* table) {
    const Bytes d;
    const auto first = hn::LoadU(d, table);
    const auto second = hn::LoadU(d, table + 64);
    const auto third = hn::LoadU(d, table + 128);
    const auto fourth = hn::LoadU(d, table + 192);
    ForEachBlock<1>(src, dst, count, [&](const uint8_t* in, uint8_t* out, size_t /*x*/) HWY_ATTR {
        const auto index = hn::LoadU(d, in);
        const __m512i low = _mm512_permutex2var_epi8(first.raw, index.raw, second.raw);
        const __m512i high = _mm512_permutex2var_epi8(third.raw, index.raw, fourth.raw);
        const __m512i value = _mm512_mask_blend_epi8(_mm512_movepi8_mask(index.raw), low, high);
        hn::StoreU(hn::Vec<Bytes>{value}, d, out);
    });
}

#else

void MapBytesLoop(const uint8_t* src, uint8_t* dst, size_t count, const uint8_t* table) {
    for (size_t i = 0; i < count; ++i) {
        dst[i] = table[src[i]];
    }
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

using Vector = hn::Vec<Shorts>;

/// A coefficient in two parts, since its products leave 16 bits: twice the one,
/// plus the other, which is 0 or 1.
struct Factor {
    Vector half;
    Vector odd;

    explicit Factor(int32_t value)
        : half(hn::Set(Shorts(), static_cast<int16_t>(value >> 1))),
          odd(hn::Set(Shorts(), static_cast<int16_t>(-(value & 1)))) {}
};

/// A row of the matrix, without the 256 of the byte that it's for.
struct Row {
    Factor f0;
    Factor f1;
    Factor f2;

    /// own + ((f0 * s0 + f1 * s1 + f2 * s2) >> 8), from 0 to 255. What the halves
    /// leave out makes a whole 128th only in pairs.
    HWY_INLINE Vector Mix(Vector own, Vector s0, Vector s1, Vector s2) const {
        const Vector halves =
            hn::Add(hn::Add(hn::Mul(s0, f0.half), hn::Mul(s1, f1.half)), hn::Mul(s2, f2.half));
        const Vector ones =
            hn::Add(hn::Add(hn::And(s0, f0.odd), hn::And(s1, f1.odd)), hn::And(s2, f2.odd));
        const Vector sum = hn::Add(halves, hn::ShiftRight<1>(ones));
        const Vector mixed = hn::Add(own, hn::ShiftRight<7>(sum));
        const Shorts d;
        return hn::Min(hn::Max(mixed, hn::Zero(d)), hn::Set(d, 255));
    }
};

HWY_INLINE hn::Vec<Bytes> MixBytes(const Row& row, const Split& own, const Split& s0,
                                   const Split& s1, const Split& s2) {
    return JoinBytes(
        {row.Mix(own.even, s0.even, s1.even, s2.even), row.Mix(own.odd, s0.odd, s1.odd, s2.odd)});
}

void SaturateLoop(const uint8_t* src, uint8_t* dst, size_t pixels, const SaturationMatrix& m) {
    constexpr int32_t kOwn = 256;
    const Bytes d;
    const Row row0{Factor(m.a - kOwn), Factor(m.b), Factor(m.c)};
    const Row row1{Factor(m.d), Factor(m.a - kOwn), Factor(m.e)};
    const Row row2{Factor(m.b), Factor(m.c), Factor(m.a - kOwn)};
    ForEachBlock<3>(src, dst, pixels, [&](const uint8_t* in, uint8_t* out, size_t /*x*/) HWY_ATTR {
        hn::Vec<Bytes> b0;
        hn::Vec<Bytes> b1;
        hn::Vec<Bytes> b2;
        hn::LoadInterleaved3(d, in, b0, b1, b2);
        const Split s0 = SplitBytes(b0);
        const Split s1 = SplitBytes(b1);
        const Split s2 = SplitBytes(b2);
        hn::StoreInterleaved3(MixBytes(row0, s0, s0, s1, s2), MixBytes(row1, s1, s0, s1, s2),
                              MixBytes(row2, s2, s0, s1, s2), d, out);
    });
}

HWY_INLINE Vector Grey(Vector s0, Vector s1, Vector s2) {
    const Shorts d;
    const hn::RebindToUnsigned<Shorts> words;
    const Vector sum = hn::Add(hn::Add(hn::Mul(s1, hn::Set(d, 150)), hn::Mul(s0, hn::Set(d, 77))),
                               hn::Mul(s2, hn::Set(d, 29)));
    return hn::BitCast(d, hn::ShiftRight<8>(hn::BitCast(words, sum)));
}

void ToGreyLoop(const uint8_t* src, uint8_t* dst, size_t pixels) {
    const Bytes d;
    ForEachBlock<3>(src, dst, pixels, [&](const uint8_t* in, uint8_t* out, size_t /*x*/) HWY_ATTR {
        hn::Vec<Bytes> b0;
        hn::Vec<Bytes> b1;
        hn::Vec<Bytes> b2;
        hn::LoadInterleaved3(d, in, b0, b1, b2);
        const Split s0 = SplitBytes(b0);
        const Split s1 = SplitBytes(b1);
        const Split s2 = SplitBytes(b2);
        const auto grey =
            JoinBytes({Grey(s0.even, s1.even, s2.even), Grey(s0.odd, s1.odd, s2.odd)});
        hn::StoreInterleaved3(grey, grey, grey, d, out);
    });
}

#endif

}  // namespace HWY_NAMESPACE
}  // namespace QyTone
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyTone {

HWY_EXPORT(MapBytesLoop);
HWY_EXPORT(SaturateLoop);
HWY_EXPORT(ToGreyLoop);

void MapBytes(const uint8_t* src, uint8_t* dst, size_t count, const uint8_t* table) {
    HWY_DYNAMIC_DISPATCH(MapBytesLoop)(src, dst, count, table);
}

void Saturate(const uint8_t* src, uint8_t* dst, size_t pixels, const SaturationMatrix& matrix) {
    HWY_DYNAMIC_DISPATCH(SaturateLoop)(src, dst, pixels, matrix);
}

void ToGrey(const uint8_t* src, uint8_t* dst, size_t pixels) {
    HWY_DYNAMIC_DISPATCH(ToGreyLoop)(src, dst, pixels);
}

}  // namespace QyTone
#endif
