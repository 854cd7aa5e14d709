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
using Vector = hn::Vec<Quads>;

/// Three vectors of pixels' bytes.
struct Colours {
    hn::Vec<Bytes> r;
    hn::Vec<Bytes> g;
    hn::Vec<Bytes> b;
};

/// Every fourth byte of a vector, from `Place` on, in wider lanes.
template <int Place>
HWY_INLINE Vector Quarter(hn::Vec<Bytes> bytes) {
    const hn::RebindToUnsigned<Quads> words;
    const auto moved = hn::ShiftRight<Place * 8>(hn::BitCast(words, bytes));
    return hn::BitCast(Quads(), hn::And(moved, hn::Set(words, 0xFF)));
}

/// A row of the matrix.
struct Row {
    Vector r;
    Vector g;
    Vector b;

    explicit Row(const int16_t* row)
        : r(hn::Set(Quads(), row[0])), g(hn::Set(Quads(), row[1])), b(hn::Set(Quads(), row[2])) {}

    HWY_INLINE hn::Vec<Bytes> Mix(const Colours& colours) const {
        const Vector low = hn::Or(MixQuarter<0>(colours), MixQuarter<1>(colours));
        const Vector high = hn::Or(MixQuarter<2>(colours), MixQuarter<3>(colours));
        return hn::BitCast(Bytes(), hn::Or(low, high));
    }

private:
    template <int Place>
    HWY_INLINE Vector MixQuarter(const Colours& colours) const {
        const Vector sum = hn::Add(
            hn::Add(hn::Mul(Quarter<Place>(colours.r), r), hn::Mul(Quarter<Place>(colours.g), g)),
            hn::Mul(Quarter<Place>(colours.b), b));
        const Vector mixed =
            hn::Min(hn::Max(hn::ShiftRight<8>(sum), hn::Zero(Quads())), hn::Set(Quads(), 255));
        return hn::ShiftLeft<Place * 8>(mixed);
    }
};

void MixLoop(uint8_t* image, size_t pixels, const Matrix& matrix) {
    const Row first(matrix.data());
    const Row second(matrix.data() + 3);
    const Row third(matrix.data() + 6);
    ForEachBlock<3>(image, image, pixels,
                    [&](const uint8_t* in, uint8_t* out, size_t /*x*/) HWY_ATTR {
                        const auto colours = FastLoadInterleaved3Into<Colours>(Bytes(), in);
                        FastStoreInterleaved3(first.Mix(colours), second.Mix(colours),
                                              third.Mix(colours), Bytes(), out);
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
