// The loops over whole vectors, compiled once for each instruction set.

#include "ImproveVector.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "ImproveVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "Blocks-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QyImprove {
namespace HWY_NAMESPACE {

constexpr int kTop = 4095;

#if HWY_TARGET == HWY_SCALAR

template <int Width, size_t Red>
void CorrectLoop(const uint8_t* src, uint8_t* dst, size_t pixels, const SmallMatrix& m,
                 const uint8_t* tone) {
    constexpr size_t kPlaces[3] = {Red, 1, 2 - Red};
    for (size_t i = 0; i < pixels * Width; i += Width) {
        const int r = src[i + Red];
        const int g = src[i + 1];
        const int b = src[i + 2 - Red];
        for (size_t row = 0; row < 3; ++row) {
            const int sum = m[3 * row] * r + m[3 * row + 1] * g + m[3 * row + 2] * b;
            const int limited = std::clamp(sum, 0, kTop);
            dst[i + kPlaces[row]] =
                tone == nullptr ? static_cast<uint8_t>(limited >> 4) : tone[limited];
        }
        if constexpr (Width == 4) {
            dst[i + 3] = src[i + 3];
        }
    }
}

#else

namespace hn = hwy::HWY_NAMESPACE;
using namespace QyBlocks::HWY_NAMESPACE;

using Vector = hn::Vec<Shorts>;

/// The bytes of pixels, by their place.
template <int Width>
struct Pixels {
    hn::Vec<Bytes> bytes[Width];
};

template <int Width>
HWY_INLINE Pixels<Width> LoadPixels(const uint8_t* in) {
    Pixels<Width> p;
    if constexpr (Width == 4) {
        hn::LoadInterleaved4(Bytes(), in, p.bytes[0], p.bytes[1], p.bytes[2], p.bytes[3]);
    } else {
        LoadThrees(Bytes(), in, p.bytes[0], p.bytes[1], p.bytes[2]);
    }
    return p;
}

template <int Width>
HWY_INLINE void StorePixels(const Pixels<Width>& p, uint8_t* out) {
    if constexpr (Width == 4) {
        hn::StoreInterleaved4(p.bytes[0], p.bytes[1], p.bytes[2], p.bytes[3], Bytes(), out);
    } else {
        StoreThrees(p.bytes[0], p.bytes[1], p.bytes[2], Bytes(), out);
    }
}

/// The colours of pixels.
struct Colours {
    Split<Shorts> r;
    Split<Shorts> g;
    Split<Shorts> b;
};

/// A row of the matrix.
struct Row {
    Vector r;
    Vector g;
    Vector b;

    explicit Row(const int16_t* row)
        : r(hn::Set(Shorts(), row[0])),
          g(hn::Set(Shorts(), row[1])),
          b(hn::Set(Shorts(), row[2])) {}

    HWY_INLINE Split<Shorts> Of(const Colours& c) const {
        return {Limited(c.r.even, c.g.even, c.b.even), Limited(c.r.odd, c.g.odd, c.b.odd)};
    }

private:
    HWY_INLINE Vector Limited(Vector red, Vector green, Vector blue) const {
        const Shorts d;
        const Vector sum = hn::Add(hn::Add(hn::Mul(red, r), hn::Mul(green, g)), hn::Mul(blue, b));
        return hn::Min(hn::Max(sum, hn::Zero(d)), hn::Set(d, kTop));
    }
};

/// What a table of bytes has for each sum.
HWY_INLINE hn::Vec<Bytes> LookUp(const uint8_t* tone, const Split<Shorts>& sums) {
    constexpr size_t kMost = HWY_MAX_BYTES / sizeof(int16_t);
    alignas(HWY_MAX_BYTES) int16_t even[kMost];
    alignas(HWY_MAX_BYTES) int16_t odd[kMost];
    alignas(HWY_MAX_BYTES) uint16_t pairs[kMost];
    hn::Store(sums.even, Shorts(), even);
    hn::Store(sums.odd, Shorts(), odd);
    for (size_t i = 0; i < hn::Lanes(Shorts()); ++i) {
        pairs[i] = static_cast<uint16_t>(tone[even[i]] | tone[odd[i]] << 8);
    }
    return hn::BitCast(Bytes(), hn::Load(Words(), pairs));
}

HWY_INLINE hn::Vec<Bytes> Sixteenth(const Split<Shorts>& sums) {
    const auto odd = hn::ShiftLeft<8>(hn::ShiftRight<4>(sums.odd));
    return hn::BitCast(Bytes(), hn::Or(hn::ShiftRight<4>(sums.even), odd));
}

/// @param toBytes  makes bytes of the sums of a vector's pixels
template <int Width, size_t Red, class ToBytes>
HWY_INLINE void CorrectBlocks(const uint8_t* src, uint8_t* dst, size_t pixels,
                              const SmallMatrix& matrix, const ToBytes& toBytes) {
    constexpr size_t kBlue = 2 - Red;
    const Row red(matrix.data());
    const Row green(matrix.data() + 3);
    const Row blue(matrix.data() + 6);
    const auto at = [&](const uint8_t* in, uint8_t* out, size_t /*x*/) HWY_ATTR {
        Pixels<Width> p = LoadPixels<Width>(in);
        const Colours colours{SplitBytes(Shorts(), p.bytes[Red]), SplitBytes(Shorts(), p.bytes[1]),
                              SplitBytes(Shorts(), p.bytes[kBlue])};
        p.bytes[Red] = toBytes(red.Of(colours));
        p.bytes[1] = toBytes(green.Of(colours));
        p.bytes[kBlue] = toBytes(blue.Of(colours));
        StorePixels(p, out);
    };
    ForEachBlock<Width>(src, dst, pixels, at);
}

template <int Width, size_t Red>
void CorrectLoop(const uint8_t* src, uint8_t* dst, size_t pixels, const SmallMatrix& matrix,
                 const uint8_t* tone) {
    if (tone == nullptr) {
        CorrectBlocks<Width, Red>(src, dst, pixels, matrix, [](const Split<Shorts>& sums) HWY_ATTR {
            return Sixteenth(sums);
        });
    } else {
        CorrectBlocks<Width, Red>(src, dst, pixels, matrix,
                                  [tone](const Split<Shorts>& sums)
                                      HWY_ATTR { return LookUp(tone, sums); });
    }
}

#endif

void CorrectRgb(const uint8_t* src, uint8_t* dst, size_t pixels, const SmallMatrix& matrix,
                const uint8_t* tone) {
    CorrectLoop<3, 0>(src, dst, pixels, matrix, tone);
}

void CorrectBgr(const uint8_t* src, uint8_t* dst, size_t pixels, const SmallMatrix& matrix,
                const uint8_t* tone) {
    CorrectLoop<3, 2>(src, dst, pixels, matrix, tone);
}

void CorrectRgba(const uint8_t* src, uint8_t* dst, size_t pixels, const SmallMatrix& matrix,
                 const uint8_t* tone) {
    CorrectLoop<4, 0>(src, dst, pixels, matrix, tone);
}

}  // namespace HWY_NAMESPACE
}  // namespace QyImprove
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyImprove {

HWY_EXPORT(CorrectRgb);
HWY_EXPORT(CorrectBgr);
HWY_EXPORT(CorrectRgba);

void CorrectBySmallMatrix(const uint8_t* src, uint8_t* dst, size_t pixels, PixelOrder order,
                          const SmallMatrix& matrix, const uint8_t* tone) {
    switch (order) {
        case PixelOrder::Rgb:
            HWY_DYNAMIC_DISPATCH(CorrectRgb)(src, dst, pixels, matrix, tone);
            break;
        case PixelOrder::Bgr:
            HWY_DYNAMIC_DISPATCH(CorrectBgr)(src, dst, pixels, matrix, tone);
            break;
        case PixelOrder::Rgba:
            HWY_DYNAMIC_DISPATCH(CorrectRgba)(src, dst, pixels, matrix, tone);
            break;
    }
}

}  // namespace QyImprove
#endif
