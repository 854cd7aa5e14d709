// Samples and pixels of the mosaic interpolation in whole vectors. Included once
// for each instruction set, within foreach_target.

#if defined(QY_BAYER_PIXELS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QY_BAYER_PIXELS_INL_H
#undef QY_BAYER_PIXELS_INL_H
#else
#define QY_BAYER_PIXELS_INL_H
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <type_traits>

#include "bayer/BayerCell.h"
#include "support/FastInterleave3-inl.h"
#include "support/Stream-inl.h"
#include "support/WayOfWriting.h"

HWY_BEFORE_NAMESPACE();
namespace QyBayer {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// For a lambda that is called for each vector: what it loads before its work is then loaded once.
#define QY_ALWAYS_INLINE HWY_ATTR __attribute__((always_inline))

/// The type of a vector's lane that holds a sample.
template <class Sample>
using LaneOf = std::conditional_t<sizeof(Sample) == 1, uint8_t, uint16_t>;

template <class D, class Sample>
HWY_INLINE hn::Vec<D> LoadSamples(D d, const Sample* samples) {
    return hn::LoadU(d, static_cast<const hn::TFromD<D>*>(static_cast<const void*>(samples)));
}

/// Prefetches a line, and the page table entry of its page, while other lines are being
/// processed. The address may be beyond the image.
template <class T>
HWY_INLINE void PrefetchLine(const T* line) {
    hwy::Prefetch(line);
}

/// How a picture is to be written: through the caches if its rows are read again at once.
template <class Sample, int Width>
QyWriting::WayOfWriting WayOf(const Image<Sample, Width>& image) {
    const size_t bytes = image.height * image.stride * sizeof(Sample);
    return {image.onRow == nullptr ? bytes : 0, image.machine};
}

/// Stores pixels whose samples come in the order of the destination.
template <class D, class Sample, int Width, class V = hn::Vec<D>>
HWY_INLINE void PutOrdered(D d, const Image<Sample, Width>& image, Sample* pixels, V first, V g,
                           V third) {
    auto* const lanes = static_cast<hn::TFromD<D>*>(static_cast<void*>(pixels));
    if constexpr (Width == 4) {
        hn::StoreInterleaved4(first, g, third, hn::Set(d, image.alpha), d, lanes);
    } else {
        QyBlocks::HWY_NAMESPACE::FastStoreInterleaved3(first, g, third, d, lanes);
    }
}

template <class D, class Sample, int Width, class V = hn::Vec<D>>
HWY_INLINE void PutPixels(D d, const Image<Sample, Width>& image, Sample* pixels, V r, V g, V b) {
    image.red == 0 ? PutOrdered(d, image, pixels, r, g, b) : PutOrdered(d, image, pixels, b, g, r);
}

/// Stores the pixels of a row at their places in memory.
template <class Sample, int Width>
class DirectRow {
public:
    explicit HWY_INLINE DirectRow(Sample* out) : m_out(out) {}

    /// Where `count` pixels from column `x` on are to be stored.
    HWY_INLINE Sample* At(size_t x, size_t /*count*/) const { return m_out + x * Width; }

private:
    Sample* m_out;
};

/// The same, past the caches and by way of a buffer. Columns must be ascending, each vector
/// following the one before or overlapping it. hwy::FlushStream() must follow the last row, so
/// that other threads see the pixels.
template <class Sample, int Width>
class StreamedRow {
public:
    /// @param begin   the first column
    /// @param before  how many pixels are put before it, together with the first ones
    HWY_INLINE StreamedRow(Sample* out, size_t begin, size_t before)
        : m_out(static_cast<uint8_t*>(static_cast<void*>(out))),
          m_first(begin),
          m_next(begin),
          m_left(before * kPixelBytes) {}

    HWY_INLINE Sample* At(size_t x, size_t count) {
        if (x >= m_first + kPixels) {
            WriteLines();
        }
        m_next = x + count;
        return static_cast<Sample*>(static_cast<void*>(Pixels() + (x - m_first) * kPixelBytes));
    }
    HWY_INLINE void Finish() { Write((m_next - m_first) * kPixelBytes); }

private:
    static constexpr size_t kLine = 64;
    static constexpr size_t kPixelBytes = Width * sizeof(Sample);
    /// So few that lines are on their way to the memory while the next pixels are made.
    static constexpr size_t kPixels = 256;
    static constexpr size_t kMostLanes = hn::MaxLanes(hn::ScalableTag<uint8_t>());
    static_assert(kPixels % kMostLanes == 0);

    HWY_INLINE uint8_t* Pixels() { return m_buffer + kLine; }

    /// Writes all whole lines of a full buffer. What is left of the last one waits for the next
    /// pixels, because a line that is written in parts is read first.
    HWY_INLINE void WriteLines() {
        constexpr size_t kBytes = kPixels * kPixelBytes;
        const auto end = reinterpret_cast<uintptr_t>(m_out + (m_first + kPixels) * kPixelBytes);
        const size_t left = end % kLine;
        Write(kBytes - left);
        std::memcpy(m_buffer, Pixels() + kBytes - kLine, kLine);
        m_left = left;
        m_first += kPixels;
    }
    /// Writes what is left of a line and some bytes of the pixels.
    HWY_INLINE void Write(size_t bytes) {
        QyStream::HWY_NAMESPACE::CopyPastCaches(
            Pixels() - m_left, m_out + m_first * kPixelBytes - m_left, m_left + bytes);
    }

    /// A line, and pixels that begin where vectors are aligned. The last vector may begin before
    /// the buffer's end.
    alignas(kLine) uint8_t m_buffer[kLine + (kPixels + kMostLanes) * kPixelBytes];
    uint8_t* m_out;
    size_t m_first;
    size_t m_next;
    /// Bytes before the first pixel that aren't written yet.
    size_t m_left;
};

/// Calls `run` with a row whose pixels from column `begin` on are written past the caches or
/// through them. Up to two pixels before are put together with the first ones.
template <class Sample, int Width, class Run>
HWY_INLINE void WithRow(bool isPast, Sample* out, size_t begin, size_t before, const Run& run) {
    if (isPast) {
        StreamedRow<Sample, Width> row(out, begin, before);
        run(row);
        row.Finish();
    } else {
        DirectRow<Sample, Width> row(out);
        run(row);
    }
}

/// Calls a function for whole vectors that cover 0 to `end`, in parts, so that several loops can
/// take turns. The last vector ends at `end` and so may repeat some lanes; the range must be at
/// least one vector long.
template <class At>
class Cover {
public:
    HWY_INLINE Cover(size_t end, size_t lanes, const At& at)
        : m_end(end), m_lanes(lanes), m_at(at) {}

    /// Calls `at` for the vectors before a place. The last one begins before its own place.
    HWY_INLINE void UpTo(size_t place) {
        const size_t end = std::min(place, m_end);
        for (; m_next < end; m_next += m_lanes) {
            m_at(std::min(m_next, m_end - m_lanes));
        }
    }

private:
    size_t m_next = 0;
    size_t m_end;
    size_t m_lanes;
    At m_at;
};

}  // namespace HWY_NAMESPACE
}  // namespace QyBayer
HWY_AFTER_NAMESPACE();

#endif
