// The loops over whole vectors, compiled once for each instruction set.

#include <cstring>

#include "filter/NoiseRow.h"
#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/NoiseVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace QyNoise {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Shorts = hn::ScalableTag<int16_t>;
using Bytes = hn::Rebind<uint8_t, Shorts>;
using Vector = hn::Vec<Shorts>;

static_assert(HWY_MAX_BYTES <= kPadding);

constexpr size_t kPixelBytes = 3;

/// The bytes of some pixels, or values for them: one vector for each place within a
/// pixel.
struct Pixels {
    Vector first;
    Vector green;
    Vector third;
};

HWY_INLINE Pixels LoadPixels(const uint8_t* bytes) {
    hn::Vec<Bytes> first;
    hn::Vec<Bytes> green;
    hn::Vec<Bytes> third;
    hn::LoadInterleaved3(Bytes(), bytes, first, green, third);
    const Shorts d;
    return {hn::PromoteTo(d, first), hn::PromoteTo(d, green), hn::PromoteTo(d, third)};
}

/// Limits to 0 .. 255.
HWY_INLINE void StorePixels(const Pixels& pixels, uint8_t* bytes) {
    const Bytes d;
    hn::StoreInterleaved3(hn::DemoteTo(d, pixels.first), hn::DemoteTo(d, pixels.green),
                          hn::DemoteTo(d, pixels.third), d, bytes);
}

HWY_INLINE Pixels LoadKept(const KeptRow& row, size_t x) {
    const Shorts d;
    return {hn::LoadU(d, row.first + x), hn::LoadU(d, row.green + x), hn::LoadU(d, row.third + x)};
}

void KeepLoop(const uint8_t* row, size_t width, const KeptRow& kept) {
    const Shorts d;
    const auto keep = [&](const uint8_t* bytes, size_t x) HWY_ATTR {
        const Pixels pixels = LoadPixels(bytes);
        hn::StoreU(hn::Sub(pixels.first, pixels.green), d, kept.first + x);
        hn::StoreU(pixels.green, d, kept.green + x);
        hn::StoreU(hn::Sub(pixels.third, pixels.green), d, kept.third + x);
    };
    const size_t lanes = hn::Lanes(d);
    size_t x = 0;
    for (; x + lanes <= width; x += lanes) {
        keep(row + x * kPixelBytes, x);
    }
    if (x < width) {
        uint8_t rest[HWY_MAX_BYTES * kPixelBytes] = {};
        std::memcpy(rest, row + x * kPixelBytes, (width - x) * kPixelBytes);
        keep(rest, x);
    }
}

/// A quotient, truncated towards zero. The dividend is a sum of eight differences, each
/// between -256 and 256.
/// @tparam Inverse 65536 divided by the divisor, rounded up
template <int16_t Inverse>
HWY_INLINE Vector Part(Vector sum) {
    const Vector sign = hn::BroadcastSignBit(sum);
    const Vector part = hn::MulHigh(hn::Abs(sum), hn::Set(Shorts(), Inverse));
    return hn::Sub(hn::Xor(part, sign), sign);
}

/// Sums of the differences between neighbours and the pixels in the middle. Only those
/// below a tolerance count.
class Differences {
public:
    Differences(const Pixels& centre, const Pixels& tolerances)
        : m_centre(centre),
          m_tolerances(tolerances),
          m_sums{hn::Zero(Shorts()), hn::Zero(Shorts()), hn::Zero(Shorts())} {}

    HWY_INLINE void Add(const KeptRow& row, size_t x) {
        const Pixels neighbours = LoadKept(row, x);
        AddTo(m_sums.first, neighbours.first, m_centre.first, m_tolerances.first);
        AddTo(m_sums.green, neighbours.green, m_centre.green, m_tolerances.green);
        AddTo(m_sums.third, neighbours.third, m_centre.third, m_tolerances.third);
    }

    /// Green is damped more than the differences of the others to it.
    HWY_INLINE Pixels Result() const {
        constexpr int16_t kFifteenth = 4370;
        constexpr int16_t kNinth = 7282;
        const Vector green = hn::Add(m_centre.green, Part<kFifteenth>(m_sums.green));
        return {hn::Add(hn::Add(m_centre.first, green), Part<kNinth>(m_sums.first)), green,
                hn::Add(hn::Add(m_centre.third, green), Part<kNinth>(m_sums.third))};
    }

private:
    static HWY_INLINE void AddTo(Vector& sum, Vector neighbour, Vector centre, Vector tolerance) {
        const Vector difference = hn::Sub(neighbour, centre);
        const auto isNear = hn::Lt(hn::Abs(difference), tolerance);
        sum = hn::Add(sum, hn::IfThenElseZero(isNear, difference));
    }

    Pixels m_centre;
    Pixels m_tolerances;
    Pixels m_sums;
};

HWY_INLINE Pixels Reduced(const KeptRows& rows, const uint8_t* tolerances, size_t x,
                          size_t radius) {
    Differences differences(LoadKept(rows[1], x), LoadPixels(tolerances + x * kPixelBytes));
    differences.Add(rows[0], x - radius);
    differences.Add(rows[0], x);
    differences.Add(rows[0], x + radius);
    differences.Add(rows[1], x - radius);
    differences.Add(rows[1], x + radius);
    differences.Add(rows[2], x - radius);
    differences.Add(rows[2], x);
    differences.Add(rows[2], x + radius);
    return differences.Result();
}

void ReduceLoop(const KeptRows& rows, const uint8_t* tolerances, uint8_t* dst, size_t width,
                size_t radius) {
    const size_t lanes = hn::Lanes(Shorts());
    const size_t end = width - radius;
    size_t x = radius;
    for (; x + lanes <= end; x += lanes) {
        StorePixels(Reduced(rows, tolerances, x, radius), dst + x * kPixelBytes);
    }
    if (x < end) {
        uint8_t rest[HWY_MAX_BYTES * kPixelBytes];
        StorePixels(Reduced(rows, tolerances, x, radius), rest);
        std::memcpy(dst + x * kPixelBytes, rest, (end - x) * kPixelBytes);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace QyNoise
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyNoise {

QY_DISPATCH(KeepLoop);
QY_DISPATCH(ReduceLoop);

void KeepRow(const uint8_t* row, size_t width, const KeptRow& kept) {
    KeepLoop(row, width, kept);
}

void ReduceRow(const KeptRows& rows, const uint8_t* tolerances, uint8_t* dst, size_t width,
               size_t radius) {
    ReduceLoop(rows, tolerances, dst, width, radius);
}

}  // namespace QyNoise
#endif
