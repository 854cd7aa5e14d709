// Mirroring and turning in whole vectors, compiled once for each instruction set.

#include <algorithm>
#include <cstring>

#include "geometry/Geometry.h"
#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "geometry/GeometryVector.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace QyGeometry {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Turns images in squares of bytes as wide as a cache line, so that each line of source
/// and destination is fetched once, however long the rows are.
constexpr size_t kSquare = 64;
using Square = uint8_t[kSquare][kSquare];

/// Rows at equal distances in memory.
template <class Byte>
struct Rows {
    Byte* first;
    ptrdiff_t step;

    HWY_INLINE Byte* At(size_t y) const { return first + static_cast<ptrdiff_t>(y) * step; }
    HWY_INLINE Rows From(size_t x, size_t y) const { return {At(y) + x, step}; }
};
using Source = Rows<const uint8_t>;
using Destination = Rows<uint8_t>;

#if HWY_TARGET == HWY_SCALAR

void ReverseRow(const uint8_t* src, uint8_t* dst, size_t width) {
    std::reverse_copy(src, src + width, dst);
}

void TransposeSquare(const Source& in, const Destination& out) {
    for (size_t y = 0; y < kSquare; ++y) {
        for (size_t x = 0; x < kSquare; ++x) {
            out.At(x)[y] = in.At(y)[x];
        }
    }
}

#else

constexpr size_t kBlock = 16;

/// The last vector may overlap the one before it. A processor fetches ahead only up to the end
/// of a page, so the next row is prefetched explicitly; its address may be past the end of the
/// image, which does no harm.
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
        hwy::Prefetch(src + 2 * width - lanes - place);
        const auto bytes = hn::LoadU(d, src + width - lanes - place);
        hn::StoreU(hn::ReverseBlocks(d, hn::TableLookupBytes(bytes, backwards)), d, dst + place);
    }
}

/// Rows become columns within each block of 16 by 16 bytes. Each round moves the
/// highest bit of a byte's row to its column and the highest bit of its column to
/// its row: after four of them they have changed places.
HWY_INLINE void TransposeBlocks(const Source& in, uint8_t* out) {
    const hn::ScalableTag<uint8_t> d;
    using Vector = hn::Vec<decltype(d)>;
    constexpr int kRounds = 4;
    Vector rows[kBlock];
    for (size_t i = 0; i < kBlock; ++i) {
        rows[i] = hn::LoadU(d, in.At(i));
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
        hn::Store(rows[i], d, out + i * kSquare);
    }
}

/// Loads a vector from blocks at equal distances in memory.
template <class D>
HWY_INLINE hn::Vec<D> GatherBlocks(D d, const uint8_t* blocks, size_t step) {
    constexpr size_t kCount = hn::MaxLanes(D()) / kBlock;
    if constexpr (kCount == 1) {
        return hn::Load(d, blocks);
    } else {
        const hn::Half<D> half;
        return hn::Combine(d, GatherBlocks(half, blocks + kCount / 2 * step, step),
                           GatherBlocks(half, blocks, step));
    }
}

/// Each row of the destination is continued only after many others, which no processor fetches
/// ahead for. So the last line of its part of the next square is prefetched; the first one is
/// there, because it is this square's last one.
void TransposeSquare(const Source& in, const Destination& out) {
    const hn::ScalableTag<uint8_t> d;
    const size_t lanes = hn::Lanes(d);
    constexpr size_t kStep = kBlock * kSquare;
    alignas(kSquare) Square turned;
    for (size_t y = 0; y < kSquare; y += kBlock) {
        for (size_t x = 0; x < kSquare; x += lanes) {
            TransposeBlocks(in.From(x, y), &turned[y][x]);
        }
    }
    for (size_t y = 0; y < kSquare; ++y) {
        const uint8_t* const blocks = &turned[y % kBlock][y / kBlock * kBlock];
        hwy::Prefetch(out.At(y) + 2 * kSquare - 1);
        for (size_t x = 0; x < kSquare; x += lanes) {
            hn::StoreU(GatherBlocks(d, blocks + x / kBlock * kStep, kStep), d, out.At(y) + x);
        }
    }
}

#endif

void ReverseRowsLoop(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    for (size_t y = 0; y < height; ++y) {
        ReverseRow(src + y * width, dst + y * width, width);
    }
}

void CopyPart(const Source& src, const Destination& dst, size_t width, size_t height) {
    for (size_t y = 0; y < height; ++y) {
        std::memcpy(dst.At(y), src.At(y), width);
    }
}

/// Turns an image with a side that is shorter than that of a square.
void TransposeNarrow(const Source& src, const Destination& dst, size_t width, size_t height) {
    Square in = {};
    Square out;
    for (size_t y = 0; y < height; y += kSquare) {
        const size_t rows = std::min(kSquare, height - y);
        for (size_t x = 0; x < width; x += kSquare) {
            const size_t columns = std::min(kSquare, width - x);
            CopyPart(src.From(x, y), {&in[0][0], kSquare}, columns, rows);
            TransposeSquare({&in[0][0], kSquare}, {&out[0][0], kSquare});
            CopyPart({&out[0][0], kSquare}, dst.From(y, x), rows, columns);
        }
    }
}

/// The squares that together cover a side of an image. The first two and the last two may
/// overlap.
class Squares {
public:
    /// @param size    of the side, at least kSquare
    /// @param second  start of the second square, at most kSquare
    HWY_INLINE Squares(size_t size, size_t second) : m_size(size), m_second(second) {}

    HWY_INLINE size_t Count() const { return 1 + (m_size - m_second + kSquare - 1) / kSquare; }
    HWY_INLINE size_t Start(size_t i) const {
        return i == 0 ? 0 : std::min(m_second + (i - 1) * kSquare, m_size - kSquare);
    }

private:
    size_t m_size;
    size_t m_second;
};

/// Rows become columns. Squares are aligned to the source's cache lines, so that none is read
/// twice. They are processed in bands of some columns, along the rows of the destination, so
/// that its cache lines are written whole; a band is wide enough that each row of the source
/// is worth finding its page, and narrow enough that the pages of the destination stay found.
void TransposeLoop(const uint8_t* src, ptrdiff_t srcStep, uint8_t* dst, ptrdiff_t dstStep,
                   size_t width, size_t height) {
    constexpr size_t kBand = 8;
    const Source from{src, srcStep};
    const Destination to{dst, dstStep};
    if (width < kSquare || height < kSquare) {
        TransposeNarrow(from, to, width, height);
        return;
    }
    const Squares columns(width, kSquare - reinterpret_cast<uintptr_t>(src) % kSquare);
    const Squares rows(height, kSquare);
    for (size_t band = 0; band < columns.Count(); band += kBand) {
        const size_t end = std::min(band + kBand, columns.Count());
        for (size_t row = 0; row < rows.Count(); ++row) {
            const size_t y = rows.Start(row);
            for (size_t column = band; column < end; ++column) {
                const size_t x = columns.Start(column);
                TransposeSquare(from.From(x, y), to.From(y, x));
            }
        }
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace QyGeometry
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyGeometry {

QY_DISPATCH(ReverseRowsLoop);
QY_DISPATCH(TransposeLoop);

void ReverseRows(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    ReverseRowsLoop(src, dst, width, height);
}

void ReverseOrderOfRows(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    for (size_t y = 0; y < height; ++y) {
        std::memcpy(dst + (height - 1 - y) * width, src + y * width, width);
    }
}

void TurnClockwise(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    TransposeLoop(src + (height - 1) * width, -static_cast<ptrdiff_t>(width), dst,
                  static_cast<ptrdiff_t>(height), width, height);
}

void TurnCounterClockwise(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    TransposeLoop(src, static_cast<ptrdiff_t>(width), dst + (width - 1) * height,
                  -static_cast<ptrdiff_t>(height), width, height);
}

}  // namespace QyGeometry
#endif
