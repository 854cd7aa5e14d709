// The loops over whole vectors, compiled once for each instruction set.

#include <algorithm>
#include <cstring>

#include "filter/SharpenRow.h"
#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/SharpenVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "support/Blocks-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QySharpen {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

/// The sample of a column.
inline int16_t& Sample(const KeptRow& row, size_t x) {
    int16_t* const half = x % 2 == 0 ? row.even : row.odd;
    return half[x / 2];
}

/// The samples left and right of a column.
inline int Beside(const KeptRow& row, size_t x, size_t distance) {
    return Sample(row, x - distance) + Sample(row, x + distance);
}

/// The samples above and below the row in the middle.
inline int Above(const KeptRows& rows, size_t x, size_t distance) {
    return Sample(rows[kBorder - distance], x) + Sample(rows[kBorder + distance], x);
}

inline int Filter(const KeptRows& rows, size_t x) {
    const KeptRow& row = rows[kBorder];
    const int near = Beside(row, x, 1) + Above(rows, x, 1);
    const int far = Beside(row, x, 2) + Above(rows, x, 2);
    const int askew = Beside(rows[0], x, 1) + Beside(rows[1], x, 2) + Beside(rows[3], x, 2) +
                      Beside(rows[4], x, 1);
    return 8 * Sample(row, x) + 2 * (near - far) - askew;
}

/// Divides by 256, and maps values of less than half of that to 0.
inline int Step(int value) {
    constexpr int kDead = 128;
    if (value < -kDead) {
        return (value + kDead) >> 8;
    }
    return value > kDead ? (value - kDead) >> 8 : 0;
}

inline uint8_t Clip(int value) {
    return static_cast<uint8_t>(std::clamp(value, 0, 255));
}

template <int Width>
void KeepLoop(const uint8_t* row, size_t width, const KeptRow& kept) {
    for (size_t x = 0; x < width; ++x) {
        Sample(kept, x) = row[x * Width + Width / 2];
    }
}

template <int Width>
void SharpenLoop(const KeptRows& rows, const uint8_t* src, uint8_t* dst, size_t width,
                 int32_t strength) {
    for (size_t x = kBorder; x + kBorder < width; ++x) {
        const uint8_t* const in = src + x * Width;
        const int own = in[Width / 2];
        const int change = Clip(own + Step(Filter(rows, x) * strength)) - own;
        for (size_t i = 0; i < Width; ++i) {
            dst[x * Width + i] = Clip(in[i] + change);
        }
    }
}

#else

namespace hn = hwy::HWY_NAMESPACE;
using namespace QyBlocks::HWY_NAMESPACE;

static_assert(HWY_MAX_BYTES <= kPadding);

using Vector = hn::Vec<Shorts>;

template <int Width>
void KeepLoop(const uint8_t* row, size_t width, const KeptRow& kept) {
    ForEachBlock<Width>(row, width, [&](const uint8_t* in, size_t x) HWY_ATTR {
        const Bytes d;
        hn::Vec<Bytes> bytes;
        if constexpr (Width == 3) {
            hn::Vec<Bytes> first;
            hn::Vec<Bytes> third;
            FastLoadInterleaved3(d, in, first, bytes, third);
        } else {
            bytes = hn::LoadU(d, in);
        }
        const auto split = SplitBytes(Shorts(), bytes);
        hn::StoreU(split.even, Shorts(), kept.even + x / 2);
        hn::StoreU(split.odd, Shorts(), kept.odd + x / 2);
    });
}

HWY_INLINE Vector At(const int16_t* samples) {
    return hn::LoadU(Shorts(), samples);
}

HWY_INLINE Vector Sum(const int16_t* one, const int16_t* other) {
    return hn::Add(At(one), At(other));
}

HWY_INLINE Vector Twice(Vector v) {
    return hn::Add(v, v);
}

/// The filter's value for pixels in columns of one parity: how much they differ from
/// their surroundings.
/// @param own, beside the rows' samples in columns of that parity, and in the others
/// @param i            place of the first pixel; its right neighbour's is i + right
template <class Own, class Beside>
HWY_INLINE Vector Filter(const KeptRows& rows, const Own& own, const Beside& beside, size_t i,
                         size_t right) {
    const auto* const row = own(rows[2]) + i;
    const auto* const up = own(rows[1]) + i;
    const auto* const down = own(rows[3]) + i;
    const size_t next = i + right;
    const Vector near =
        hn::Add(Sum(up, down), Sum(beside(rows[2]) + next - 1, beside(rows[2]) + next));
    const Vector far = hn::Add(Sum(own(rows[0]) + i, own(rows[4]) + i), Sum(row - 1, row + 1));
    const Vector askew = hn::Add(hn::Add(Sum(up - 1, up + 1), Sum(down - 1, down + 1)),
                                 hn::Add(Sum(beside(rows[0]) + next - 1, beside(rows[0]) + next),
                                         Sum(beside(rows[4]) + next - 1, beside(rows[4]) + next)));
    const Vector centre = hn::ShiftLeft<3>(At(row));
    return hn::Sub(hn::Add(centre, Twice(hn::Sub(near, far))), askew);
}

/// By how much bytes grow or shrink. One of the two is 0.
struct Change {
    hn::Vec<Bytes> up;
    hn::Vec<Bytes> down;
};

/// The bytes of two vectors whose lanes are from 0 to 255.
HWY_INLINE hn::Vec<Bytes> JoinBytes(Vector even, Vector odd) {
    return hn::BitCast(Bytes(), hn::Or(even, hn::ShiftLeft<8>(odd)));
}

/// A filter's value times the strength in 256ths. Results of less than half of one become
/// 0.
class Steps {
public:
    explicit Steps(int32_t strength)
        : m_strength(hn::Set(Shorts(), static_cast<int16_t>(strength * 16))) {}

    HWY_INLINE Change Of(const Split<Shorts>& filter) const {
        const Vector even = Rounded(filter.even);
        const Vector odd = Rounded(filter.odd);
        return {JoinBytes(Up(even), Up(odd)), JoinBytes(Down(even), Down(odd))};
    }

private:
    /// (filter * strength + 128) >> 8.
    HWY_INLINE Vector Rounded(Vector filter) const {
        return hn::MulFixedPoint15(hn::ShiftLeft<3>(filter), m_strength);
    }
    static HWY_INLINE Vector ToByte(Vector v) {
        const Shorts d;
        return hn::Min(hn::Max(v, hn::Zero(d)), hn::Set(d, 255));
    }
    /// Above the dead zone, the result is rounded down as well.
    static HWY_INLINE Vector Up(Vector rounded) {
        return ToByte(hn::Sub(rounded, hn::Set(Shorts(), 1)));
    }
    static HWY_INLINE Vector Down(Vector rounded) { return ToByte(hn::Neg(rounded)); }

    Vector m_strength;
};

HWY_INLINE hn::Vec<Bytes> Changed(hn::Vec<Bytes> bytes, const Change& change) {
    return hn::SaturatedSub(hn::SaturatedAdd(bytes, change.up), change.down);
}

template <int Width>
HWY_INLINE void Apply(const Change& change, const uint8_t* in, uint8_t* out) {
    const Bytes d;
    if constexpr (Width == 1) {
        hn::StoreU(Changed(hn::LoadU(d, in), change), d, out);
    } else {
        hn::Vec<Bytes> first;
        hn::Vec<Bytes> second;
        hn::Vec<Bytes> third;
        FastLoadInterleaved3(d, in, first, second, third);
        const auto sharp = Changed(second, change);
        const Change same{hn::SaturatedSub(sharp, second), hn::SaturatedSub(second, sharp)};
        FastStoreInterleaved3(Changed(first, same), sharp, Changed(third, same), d, out);
    }
}

template <int Width>
void SharpenLoop(const KeptRows& rows, const uint8_t* src, uint8_t* dst, size_t width,
                 int32_t strength) {
    constexpr size_t kMargin = kBorder * Width;
    const auto evens = [](const KeptRow& row) { return row.even; };
    const auto odds = [](const KeptRow& row) { return row.odd; };
    const Steps steps(strength);
    ForEachBlock<Width>(src + kMargin, dst + kMargin, width - 2 * kBorder,
                        [&](const uint8_t* in, uint8_t* out, size_t x) HWY_ATTR {
                            const size_t i = (kBorder + x) / 2;
                            const Split<Shorts> filter{Filter(rows, evens, odds, i, 0),
                                                       Filter(rows, odds, evens, i, 1)};
                            Apply<Width>(steps.Of(filter), in, out);
                        });
}

#endif

void KeepOneByte(const uint8_t* row, size_t width, const KeptRow& kept) {
    KeepLoop<1>(row, width, kept);
}

void KeepThreeBytes(const uint8_t* row, size_t width, const KeptRow& kept) {
    KeepLoop<3>(row, width, kept);
}

void SharpenOneByte(const KeptRows& rows, const uint8_t* src, uint8_t* dst, size_t width,
                    int32_t strength) {
    SharpenLoop<1>(rows, src, dst, width, strength);
}

void SharpenThreeBytes(const KeptRows& rows, const uint8_t* src, uint8_t* dst, size_t width,
                       int32_t strength) {
    SharpenLoop<3>(rows, src, dst, width, strength);
}

}  // namespace HWY_NAMESPACE
}  // namespace QySharpen
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QySharpen {

QY_DISPATCH(KeepOneByte);
QY_DISPATCH(KeepThreeBytes);
QY_DISPATCH(SharpenOneByte);
QY_DISPATCH(SharpenThreeBytes);

template <>
void KeepRow<1>(const uint8_t* row, size_t width, const KeptRow& kept) {
    KeepOneByte(row, width, kept);
}

template <>
void KeepRow<3>(const uint8_t* row, size_t width, const KeptRow& kept) {
    KeepThreeBytes(row, width, kept);
}

template <>
void SharpenRow<1>(const KeptRows& rows, const uint8_t* src, uint8_t* dst, size_t width,
                   int32_t strength) {
    SharpenOneByte(rows, src, dst, width, strength);
}

template <>
void SharpenRow<3>(const KeptRows& rows, const uint8_t* src, uint8_t* dst, size_t width,
                   int32_t strength) {
    SharpenThreeBytes(rows, src, dst, width, strength);
}

}  // namespace QySharpen
#endif
