// The loops over whole vectors, compiled once for each instruction set.

#include <algorithm>

#include "colour/ColourMatrix.h"
#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colour/ColourMatrixVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "support/Blocks-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QyColour {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

void MixLoop(uint8_t* image, size_t pixels, const Matrix& m) {
    for (uint8_t* pixel = image; pixel != image + pixels * 3; pixel += 3) {
        const int32_t r = pixel[0];
        const int32_t g = pixel[1];
        const int32_t b = pixel[2];
        for (size_t i = 0; i < 3; ++i) {
            const int32_t sum = m[3 * i] * r + m[3 * i + 1] * g + m[3 * i + 2] * b;
            pixel[i] = static_cast<uint8_t>(std::clamp(sum >> 8, 0, 255));
        }
    }
}

#else

namespace hn = hwy::HWY_NAMESPACE;
using namespace QyBlocks::HWY_NAMESPACE;

using Quads = hn::Repartition<int32_t, Bytes>;
using Vector = hn::Vec<Shorts>;

/// Three vectors of pixels' bytes.
struct Colours {
    hn::Vec<Bytes> r;
    hn::Vec<Bytes> g;
    hn::Vec<Bytes> b;
};

/// Half of the bytes of some pixels in lanes of 16 bits, in the pairs that are multiplied and
/// added at once: red and green, blue and nothing.
struct Pairs {
    Vector redGreenLower;
    Vector redGreenUpper;
    Vector blueLower;
    Vector blueUpper;
};

/// The pixels at even and at odd places of a vector.
struct Halves {
    Pairs even;
    Pairs odd;
};

HWY_INLINE Pairs PairsOf(Vector r, Vector g, Vector b) {
    const Shorts d;
    const Vector zero = hn::Zero(d);
    return {hn::InterleaveLower(d, r, g), hn::InterleaveUpper(d, r, g),
            hn::InterleaveLower(d, b, zero), hn::InterleaveUpper(d, b, zero)};
}

/// A row of the matrix.
class Row {
public:
    explicit HWY_INLINE Row(const int16_t* row)
        : m_redGreen(hn::OddEven(hn::Set(Shorts(), row[1]), hn::Set(Shorts(), row[0]))),
          m_blue(hn::Set(Shorts(), row[2])) {}

    HWY_INLINE hn::Vec<Bytes> Mix(const Halves& halves) const {
        return hn::BitCast(Bytes(),
                           hn::Or(MixHalf(halves.even), hn::ShiftLeft<8>(MixHalf(halves.odd))));
    }

private:
    HWY_INLINE Vector MixHalf(const Pairs& pairs) const {
        const Shorts d;
        const Vector mixed = hn::ReorderDemote2To(d, Sum(pairs.redGreenLower, pairs.blueLower),
                                                  Sum(pairs.redGreenUpper, pairs.blueUpper));
        return hn::Min(hn::Max(mixed, hn::Zero(d)), hn::Set(d, 255));
    }
    HWY_INLINE hn::Vec<Quads> Sum(Vector redGreen, Vector blue) const {
        const Quads d;
        hn::Vec<Quads> rest = hn::Zero(d);
        auto sum = hn::ReorderWidenMulAccumulate(d, redGreen, m_redGreen, hn::Zero(d), rest);
        sum = hn::ReorderWidenMulAccumulate(d, blue, m_blue, sum, rest);
        return hn::ShiftRight<8>(hn::RearrangeToOddPlusEven(sum, rest));
    }

    Vector m_redGreen;
    Vector m_blue;
};

void MixLoop(uint8_t* image, size_t pixels, const Matrix& matrix) {
    const Row first(matrix.data());
    const Row second(matrix.data() + 3);
    const Row third(matrix.data() + 6);
    ForEachBlock<3>(
        image, image, pixels, [&](const uint8_t* in, uint8_t* out, size_t /*x*/) HWY_ATTR {
            const auto colours = FastLoadInterleaved3Into<Colours>(Bytes(), in);
            const auto r = SplitBytes(Shorts(), colours.r);
            const auto g = SplitBytes(Shorts(), colours.g);
            const auto b = SplitBytes(Shorts(), colours.b);
            const Halves halves{PairsOf(r.even, g.even, b.even), PairsOf(r.odd, g.odd, b.odd)};
            FastStoreInterleaved3(first.Mix(halves), second.Mix(halves), third.Mix(halves), Bytes(),
                                  out);
        });
}

#endif

}  // namespace HWY_NAMESPACE
}  // namespace QyColour
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyColour {

QY_DISPATCH(MixLoop);

void MixColours(uint8_t* image, size_t pixels, const Matrix& matrix) {
    MixLoop(image, pixels, matrix);
}

}  // namespace QyColour
#endif
