// Writes rows past the caches. Included once for each instruction set, within
// foreach_target.

#if defined(QY_STREAM_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QY_STREAM_INL_H
#undef QY_STREAM_INL_H
#else
#define QY_STREAM_INL_H
#endif

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace QyStream {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Copies bytes without fetching the lines of the destination into the caches, except the
/// partial lines at its ends. hwy::FlushStream() must follow before other threads read
/// the bytes.
HWY_INLINE void CopyPastCaches(const uint8_t* src, uint8_t* dst, size_t size) {
    const hn::ScalableTag<uint8_t> d;
    const size_t lanes = hn::Lanes(d);
    constexpr size_t kLine = 64;
    const size_t before = (kLine - reinterpret_cast<uintptr_t>(dst) % kLine) % kLine;
    if (before + kLine > size) {
        std::memcpy(dst, src, size);
        return;
    }
    std::memcpy(dst, src, before);
    size_t i = before;
    for (; i + kLine <= size; i += kLine) {
        for (size_t part = 0; part < kLine; part += lanes) {
            hn::Stream(hn::LoadU(d, src + i + part), d, dst + i + part);
        }
    }
    std::memcpy(dst + i, src + i, size - i);
}

}  // namespace HWY_NAMESPACE
}  // namespace QyStream
HWY_AFTER_NAMESPACE();

#endif
