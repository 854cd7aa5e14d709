// The loops over whole vectors, compiled once for each instruction set.

// Vectors whose size the compiler doesn't know can't be kept in arrays.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128)

#include <algorithm>
#include <cstring>

#include "Geometry.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "GeometryVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace QyGeometry {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// A square of bytes as wide as a cache line, so that each line of source and
/// destination is taken once, however far apart the rows are.
constexpr size_t kSquare = 64;
using Square = uint8_t[kSquare][kSquare];

#if HWY_TARGET == HWY_SCALAR

void ReverseRow(const uint8_t* src, uint8_t* dst, size_t width) {
    std::reverse_copy(src, src + width, dst);
}

void TransposeSquare(const Square& in, Square& out) {
    for (size_t y = 0; y < kSquare; ++y) {
        for (size_t x = 0; x < kSquare; ++x) {
            out[x][y] = in[y][x];
        }
    }
}

#else

constexpr size_t kBlock = 16;

/// The last vector may do some bytes again.
void ReverseRow(const uint8_t* src, uint8_t* dst, size_t width) {
    const hn::ScalableTag<uint8_t> d;
    const size_t lanes = hn::Lanes(d);
    if (width < lanes) {
        std::reverse_copy(src, src + width, dst);
        return;
    }
    alignas(kBlock) static constexpr uint8_t kBackwards[kBlock] = {15, 14, 13, 12, 11, 10, 9, 8,
                                                                   7,  6,  5,  4,  3,  2,  1, 0};
    const auto backwards = hn::LoadDup128(d, kBackwards);
    for (size_t x = 0; x < width; x += lanes) {
        const size_t place = std::min(x, width - lanes);
        const auto bytes = hn::LoadU(d, src + width - lanes - place);
        hn::StoreU(hn::ReverseBlocks(d, hn::TableLookupBytes(bytes, backwards)), d, dst + place);
    }
}

/// Each round moves the highest bit of a byte's row to its column and the highest
/// bit of its column to its row: after four of them they have changed places.
HWY_INLINE void TransposeBlock(const uint8_t* in, uint8_t* out) {
    const hn::FixedTag<uint8_t, kBlock> d;
    using Vector = hn::Vec<decltype(d)>;
    constexpr int kRounds = 4;
    Vector rows[kBlock];
    for (size_t i = 0; i < kBlock; ++i) {
        rows[i] = hn::LoadU(d, in + i * kSquare);
    }
    for (int round = 0; round < kRounds; ++round) {
        Vector next[kBlock];
        for (size_t i = 0; i < kBlock / 2; ++i) {
            next[2 * i] = hn::InterleaveLower(d, rows[i], rows[i + kBlock / 2]);
            next[2 * i + 1] = hn::InterleaveUpper(d, rows[i], rows[i + kBlock / 2]);
        }
        std::copy_n(next, kBlock, rows);
    }
    for (size_t i = 0; i < kBlock; ++i) {
        hn::StoreU(rows[i], d, out + i * kSquare);
    }
}

void TransposeSquare(const Square& in, Square& out) {
    for (size_t y = 0; y < kSquare; y += kBlock) {
        for (size_t x = 0; x < kSquare; x += kBlock) {
            TransposeBlock(&in[y][x], &out[x][y]);
        }
    }
}

#endif

void ReverseRowsLoop(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    for (size_t y = 0; y < height; ++y) {
        ReverseRow(src + y * width, dst + y * width, width);
    }
}

/// Copies a part of an image; parts that are as wide as a square are the rule.
HWY_INLINE void CopyPart(const uint8_t* src, ptrdiff_t srcStep, uint8_t* dst, ptrdiff_t dstStep,
                         size_t width, size_t height) {
    if (width == kSquare) {
        for (size_t y = 0; y < height; ++y, src += srcStep, dst += dstStep) {
            std::memcpy(dst, src, kSquare);
        }
        return;
    }
    for (size_t y = 0; y < height; ++y, src += srcStep, dst += dstStep) {
        std::memcpy(dst, src, width);
    }
}

/// Rows become columns.
/// @param srcStep, dstStep  bytes from one row to the next
void TransposeLoop(const uint8_t* src, ptrdiff_t srcStep, uint8_t* dst, ptrdiff_t dstStep,
                   size_t width, size_t height) {
    Square in = {};
    Square out;
    for (size_t y = 0; y < height; y += kSquare) {
        const size_t rows = std::min(kSquare, height - y);
        for (size_t x = 0; x < width; x += kSquare) {
            const size_t columns = std::min(kSquare, width - x);
            const auto* const from = src + static_cast<ptrdiff_t>(y) * srcStep + x;
            auto* const to = dst + static_cast<ptrdiff_t>(x) * dstStep + y;
            CopyPart(from, srcStep, &in[0][0], kSquare, columns, rows);
            TransposeSquare(in, out);
            CopyPart(&out[0][0], kSquare, to, dstStep, rows, columns);
        }
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace QyGeometry
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyGeometry {

HWY_EXPORT(ReverseRowsLoop);
HWY_EXPORT(TransposeLoop);

void ReverseRows(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    HWY_DYNAMIC_DISPATCH(ReverseRowsLoop)(src, dst, width, height);
}

void ReverseOrderOfRows(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    for (size_t y = 0; y < height; ++y) {
        std::memcpy(dst + (height - 1 - y) * width, src + y * width, width);
    }
}

void TurnClockwise(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    HWY_DYNAMIC_DISPATCH(TransposeLoop)
    (src + (height - 1) * width, -static_cast<ptrdiff_t>(width), dst,
     static_cast<ptrdiff_t>(height), width, height);
}

void TurnCounterClockwise(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    HWY_DYNAMIC_DISPATCH(TransposeLoop)
    (src, static_cast<ptrdiff_t>(width), dst + (width - 1) * height,
     -static_cast<ptrdiff_t>(height), width, height);
}

}  // namespace QyGeometry
#endif
