// The loops over whole vectors, compiled once for each instruction set.

#include "colour/ImproveVector.h"

#include <algorithm>
#include <cstring>

#include "colour/ToneSteps.h"
#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colour/ImproveVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "support/Blocks-inl.h"

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

/// The bytes of some pixels, one vector for each place within a pixel.
template <int Width>
struct Pixels {
    hn::Vec<Bytes> bytes[Width];
};

template <int Width>
HWY_INLINE Pixels<Width> LoadPixels(const uint8_t* in) {
    if constexpr (Width == 4) {
        hn::Vec<Bytes> a;
        hn::Vec<Bytes> b;
        hn::Vec<Bytes> c;
        hn::Vec<Bytes> d;
        hn::LoadInterleaved4(Bytes(), in, a, b, c, d);
        return {{a, b, c, d}};
    } else {
        return FastLoadInterleaved3Into<Pixels<Width>>(Bytes(), in);
    }
}

template <int Width>
HWY_INLINE void StorePixels(const Pixels<Width>& p, uint8_t* out) {
    if constexpr (Width == 4) {
        hn::StoreInterleaved4(p.bytes[0], p.bytes[1], p.bytes[2], p.bytes[3], Bytes(), out);
    } else {
        FastStoreInterleaved3(p.bytes[0], p.bytes[1], p.bytes[2], Bytes(), out);
    }
}

/// A row of the matrix.
class Row {
public:
    explicit Row(const int16_t* row)
        : m_red(hn::Set(Shorts(), row[0])),
          m_green(hn::Set(Shorts(), row[1])),
          m_blue(hn::Set(Shorts(), row[2])) {}

    /// The sums of some pixels, limited to 12 bits.
    HWY_INLINE Vector Of(Vector r, Vector g, Vector b) const {
        const Shorts d;
        const Vector sum =
            hn::Add(hn::Add(hn::Mul(r, m_red), hn::Mul(g, m_green)), hn::Mul(b, m_blue));
        return hn::Min(hn::Max(sum, hn::Zero(d)), hn::Set(d, kTop));
    }
    HWY_INLINE Split<Shorts> Of(const Split<Shorts>& r, const Split<Shorts>& g,
                                const Split<Shorts>& b) const {
        return {Of(r.even, g.even, b.even), Of(r.odd, g.odd, b.odd)};
    }

private:
    Vector m_red;
    Vector m_green;
    Vector m_blue;
};

HWY_INLINE hn::Vec<Bytes> Sixteenth(const Split<Shorts>& sums) {
    const auto odd = hn::ShiftLeft<8>(hn::ShiftRight<4>(sums.odd));
    return hn::BitCast(Bytes(), hn::Or(hn::ShiftRight<4>(sums.even), odd));
}

/// The rows of the matrix.
struct Rows {
    Row red;
    Row green;
    Row blue;

    explicit Rows(const SmallMatrix& matrix)
        : red(matrix.data()), green(matrix.data() + 3), blue(matrix.data() + 6) {}
};

/// @param toBytes  makes bytes of the sums of one colour
template <int Width, size_t Red, class ToBytes>
void CorrectColours(const uint8_t* src, uint8_t* dst, size_t pixels, const Rows& rows,
                    const ToBytes& toBytes) {
    constexpr size_t kBlue = 2 - Red;
    ForEachBlock<Width>(src, dst, pixels,
                        [&](const uint8_t* in, uint8_t* out, size_t /*x*/) HWY_ATTR {
                            Pixels<Width> p = LoadPixels<Width>(in);
                            const auto r = SplitBytes(Shorts(), p.bytes[Red]);
                            const auto g = SplitBytes(Shorts(), p.bytes[1]);
                            const auto b = SplitBytes(Shorts(), p.bytes[kBlue]);
                            p.bytes[Red] = toBytes(rows.red.Of(r, g, b));
                            p.bytes[1] = toBytes(rows.green.Of(r, g, b));
                            p.bytes[kBlue] = toBytes(rows.blue.Of(r, g, b));
                            StorePixels(p, out);
                        });
}

#if HWY_TARGET <= HWY_AVX3_DL

/// Looks up the sums of one colour in a table that grows slowly.
class SteppedTone {
public:
    explicit HWY_INLINE SteppedTone(const ToneSteps& steps)
        : m_steps(steps), m_low(steps.low.data()), m_first(steps.first.data()) {}

    HWY_INLINE hn::Vec<Bytes> operator()(const Split<Shorts>& sums) const {
        const Bytes d;
        const auto part = Sixteenth(sums);
        const auto lower = hn::BitCast(
            d, hn::Or(hn::And(sums.even, hn::Set(Shorts(), 0xFF)), hn::ShiftLeft<8>(sums.odd)));
        const auto place = hn::And(lower, hn::Set(d, ToneSteps::kPartValues - 1));
        auto byte = m_first.Of(part);
        for (size_t i = 0; i < m_steps.count; ++i) {
            const auto before = ByteTable(m_steps.before[i].data()).Of(part);
            byte = hn::IfThenElse(hn::Gt(place, before), hn::Add(byte, hn::Set(d, 1)), byte);
        }
        const auto isLow = hn::Lt(part, hn::Set(d, ToneSteps::kParts / ToneSteps::kPartValues));
        return hn::IfThenElse(isLow, m_low.Of(lower), byte);
    }

private:
    const ToneSteps& m_steps;
    ByteTable m_low;
    ByteTable m_first;
};

/// Corrects pixels, if the table grows slowly.
template <int Width, size_t Red>
bool CorrectBySteps(const uint8_t* src, uint8_t* dst, size_t pixels, const Rows& rows,
                    const uint8_t* tone) {
    const auto steps = ToneStepsOf(tone);
    if (steps) {
        CorrectColours<Width, Red>(src, dst, pixels, rows, SteppedTone(*steps));
    }
    return steps.has_value();
}

#else

// Without a table in registers, the look-ups would take longer than in memory.
template <int Width, size_t Red>
bool CorrectBySteps(const uint8_t* /*src*/, uint8_t* /*dst*/, size_t /*pixels*/,
                    const Rows& /*rows*/, const uint8_t* /*tone*/) {
    return false;
}

#endif

/// Half of a vector's bytes, in lanes of 16 bits.
template <bool Upper>
HWY_INLINE Vector HalfOf(hn::Vec<Bytes> bytes) {
    const hn::Half<Bytes> half;
    if constexpr (Upper) {
        return hn::PromoteTo(Shorts(), hn::UpperHalf(half, bytes));
    } else {
        return hn::PromoteTo(Shorts(), hn::LowerHalf(half, bytes));
    }
}

/// Places in the table of the results for the bytes of half a vector of pixels.
template <int Width, size_t Red, bool Upper>
HWY_INLINE void StorePlaces(const Pixels<Width>& p, const Rows& rows, int16_t* places) {
    const Vector r = HalfOf<Upper>(p.bytes[Red]);
    const Vector g = HalfOf<Upper>(p.bytes[1]);
    const Vector b = HalfOf<Upper>(p.bytes[2 - Red]);
    const Vector first = (Red == 0 ? rows.red : rows.blue).Of(r, g, b);
    const Vector second = rows.green.Of(r, g, b);
    const Vector third = (Red == 0 ? rows.blue : rows.red).Of(r, g, b);
    if constexpr (Width == 4) {
        const Vector same = hn::Add(HalfOf<Upper>(p.bytes[3]), hn::Set(Shorts(), kTop + 1));
        hn::StoreInterleaved4(first, second, third, same, Shorts(), places);
    } else {
        FastStoreInterleaved3(first, second, third, Shorts(), places);
    }
}

/// Looks up places in the table. Eight results are stored at once, because a store for
/// each byte would delay the loads.
HWY_INLINE void LookUp(const int16_t* places, uint8_t* out, size_t count, const uint8_t* tone) {
    const auto look = [places, tone](size_t i) { return tone[static_cast<uint16_t>(places[i])]; };
    size_t i = 0;
    for (; i + sizeof(uint64_t) <= count; i += sizeof(uint64_t)) {
        uint64_t bytes = 0;
        for (size_t k = 0; k < sizeof bytes; ++k) {
            bytes |= uint64_t{look(i + k)} << (8 * k);
        }
        std::memcpy(out + i, &bytes, sizeof bytes);
    }
    for (; i < count; ++i) {
        out[i] = look(i);
    }
}

/// Computes the sums of many pixels before it looks any of them up: a processor stalls
/// when it reads parts of a vector that it has only just stored.
template <int Width, size_t Red>
void CorrectThroughTable(const uint8_t* src, uint8_t* dst, size_t pixels, const Rows& rows,
                         const uint8_t* tone) {
    constexpr size_t kPart = 512;
    constexpr size_t kHalf = hn::MaxLanes(Shorts());
    alignas(HWY_MAX_BYTES) int16_t places[kPart * Width];
    for (size_t done = 0; done < pixels; done += kPart) {
        const size_t count = std::min(kPart, pixels - done);
        ForEachBlock<Width>(src + done * Width, count, [&](const uint8_t* in, size_t x) HWY_ATTR {
            const Pixels<Width> p = LoadPixels<Width>(in);
            StorePlaces<Width, Red, false>(p, rows, places + x * Width);
            StorePlaces<Width, Red, true>(p, rows, places + (x + kHalf) * Width);
        });
        LookUp(places, dst + done * Width, count * Width, tone);
    }
}

template <int Width, size_t Red>
void CorrectLoop(const uint8_t* src, uint8_t* dst, size_t pixels, const SmallMatrix& matrix,
                 const uint8_t* tone) {
    const Rows rows(matrix);
    if (tone == nullptr) {
        CorrectColours<Width, Red>(src, dst, pixels, rows, [](const Split<Shorts>& sums) HWY_ATTR {
            return Sixteenth(sums);
        });
    } else if (!CorrectBySteps<Width, Red>(src, dst, pixels, rows, tone)) {
        CorrectThroughTable<Width, Red>(src, dst, pixels, rows, tone);
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

QY_DISPATCH(CorrectRgb);
QY_DISPATCH(CorrectBgr);
QY_DISPATCH(CorrectRgba);

void CorrectBySmallMatrix(const uint8_t* src, uint8_t* dst, size_t pixels, PixelOrder order,
                          const SmallMatrix& matrix, const uint8_t* tone) {
    switch (order) {
        case PixelOrder::Rgb:
            CorrectRgb(src, dst, pixels, matrix, tone);
            break;
        case PixelOrder::Bgr:
            CorrectBgr(src, dst, pixels, matrix, tone);
            break;
        case PixelOrder::Rgba:
            CorrectRgba(src, dst, pixels, matrix, tone);
            break;
    }
}

}  // namespace QyImprove
#endif
