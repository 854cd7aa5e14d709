// Samples and pixels of the mosaic interpolation in whole vectors. Included once
// for each instruction set, within foreach_target.

#if defined(QY_BAYER_PIXELS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QY_BAYER_PIXELS_INL_H
#undef QY_BAYER_PIXELS_INL_H
#else
#define QY_BAYER_PIXELS_INL_H
#endif

#include <hwy/highway.h>

#include <type_traits>

#include "bayer/BayerCell.h"
#include "support/FastInterleave3-inl.h"
#include "support/Stream-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QyBayer {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

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

/// Whether a picture is larger than the caches, so that writing past them is faster. Not
/// if its rows are read again at once.
template <class Sample, int Width>
bool IsLarge(const Image<Sample, Width>& image) {
    return image.onRow == nullptr && image.height * image.stride * sizeof(Sample) > image.cached;
}

template <class D, class Sample, int Width, class V = hn::Vec<D>>
HWY_INLINE void PutPixels(D d, const Image<Sample, Width>& image, Sample* pixels, V r, V g, V b) {
    auto* const lanes = static_cast<hn::TFromD<D>*>(static_cast<void*>(pixels));
    const V first = image.red == 0 ? r : b;
    const V third = image.red == 0 ? b : r;
    if constexpr (Width == 4) {
        hn::StoreInterleaved4(first, g, third, hn::Set(d, image.alpha), d, lanes);
    } else {
        QyBlocks::HWY_NAMESPACE::FastStoreInterleaved3(first, g, third, d, lanes);
    }
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

/// The same, past the caches and by way of a buffer. hwy::FlushStream() must follow the
/// last row, so that other threads see the pixels.
template <class Sample, int Width>
class StreamedRow {
public:
    explicit HWY_INLINE StreamedRow(Sample* out) : m_out(out) {}

    HWY_INLINE Sample* At(size_t x, size_t count) {
        if (x != m_next || x + count - m_first > kPixels) {
            Finish();
            m_first = x;
        }
        m_next = x + count;
        return m_buffer + (x - m_first) * Width;
    }
    HWY_INLINE void Finish() {
        auto* const to = static_cast<uint8_t*>(static_cast<void*>(m_out + m_first * Width));
        QyStream::HWY_NAMESPACE::CopyPastCaches(
            static_cast<const uint8_t*>(static_cast<const void*>(m_buffer)), to,
            (m_next - m_first) * Width * sizeof(Sample));
    }

private:
    /// Lines at the ends of the buffer are written through the caches, so the buffer has as
    /// many lines as leave room for the source in the first-level cache.
    static constexpr size_t kBytes = size_t{12} << 10;
    static constexpr size_t kPixels = kBytes / (Width * sizeof(Sample));

    Sample* m_out;
    size_t m_first = 0;
    size_t m_next = 0;
    alignas(64) Sample m_buffer[kPixels * Width];
};

/// Calls `run` with a DirectRow or a StreamedRow, depending on the size of the picture.
template <class Sample, int Width, class Run>
HWY_INLINE void WithRowOf(const Image<Sample, Width>& image, Sample* out, const Run& run) {
    if (IsLarge(image)) {
        StreamedRow<Sample, Width> row(out);
        run(row);
        row.Finish();
    } else {
        DirectRow<Sample, Width> row(out);
        run(row);
    }
}

/// Calls `at` for whole vectors that cover `begin` to `end`. The last one ends at `end`
/// and so may repeat some lanes; the range must be at least one vector long.
template <class At>
HWY_INLINE void CoverByVectors(size_t begin, size_t end, size_t lanes, const At& at) {
    for (size_t i = begin; i + lanes < end; i += lanes) {
        at(i);
    }
    at(end - lanes);
}

}  // namespace HWY_NAMESPACE
}  // namespace QyBayer
HWY_AFTER_NAMESPACE();

#endif
