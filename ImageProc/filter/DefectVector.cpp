// The loops over whole vectors, compiled once for each instruction set.

#include <algorithm>
#include <type_traits>

#include "filter/DefectRow.h"
#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filter/DefectVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace QyDefect {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Repairs samples one by one.
template <class Sample>
void RepairSamples(Sample* row, size_t begin, size_t end, ptrdiff_t width, int32_t threshold) {
    for (size_t x = begin; x < end; ++x) {
        Sample* const sample = row + x;
        const int32_t up = sample[-kReach * width];
        const int32_t down = sample[kReach * width];
        const int32_t left = sample[-kReach];
        const int32_t right = sample[kReach];
        if (*sample - std::max({up, down, left, right}) > threshold) {
            *sample = static_cast<Sample>((up + left + right + down) >> 2);
        }
    }
}

/// Whether a vector of samples has an outlier. If it has none, samples needn't be
/// examined one by one: only the repair of a sample can turn a later one into an outlier.
template <class D, class Sample>
HWY_INLINE bool HasOutlier(D d, const Sample* samples, ptrdiff_t width, hn::Vec<D> threshold) {
    using Lane = hn::TFromD<D>;
    const auto at = [&](ptrdiff_t offset) HWY_ATTR {
        return hn::LoadU(d, static_cast<const Lane*>(static_cast<const void*>(samples + offset)));
    };
    const auto most =
        hn::Max(hn::Max(at(-kReach * width), at(kReach * width)), hn::Max(at(-kReach), at(kReach)));
    // The rest is 0 unless the sample exceeds all four neighbours by more than the
    // threshold.
    const auto rest = hn::SaturatedSub(hn::SaturatedSub(at(0), most), threshold);
    return !hn::AllTrue(d, hn::Eq(rest, hn::Zero(d)));
}

template <class Sample>
void RepairLoop(Sample* row, size_t width, int32_t threshold) {
    using Lane = std::conditional_t<sizeof(Sample) == 1, uint8_t, uint16_t>;
    const hn::ScalableTag<Lane> d;
    const auto limit = hn::Set(d, static_cast<Lane>(threshold));
    const auto step = static_cast<ptrdiff_t>(width);
    const size_t lanes = hn::Lanes(d);
    const size_t end = width - kReach;
    size_t x = kReach;
    for (; x + lanes <= end; x += lanes) {
        if (HasOutlier(d, row + x, step, limit)) {
            RepairSamples(row, x, x + lanes, step, threshold);
        }
    }
    RepairSamples(row, x, end, step, threshold);
}

void RepairBytes(uint8_t* row, size_t width, int32_t threshold) {
    RepairLoop(row, width, threshold);
}

void RepairWords(Word* row, size_t width, int32_t threshold) {
    RepairLoop(row, width, threshold);
}

}  // namespace HWY_NAMESPACE
}  // namespace QyDefect
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyDefect {

QY_DISPATCH(RepairBytes);
QY_DISPATCH(RepairWords);

void RepairRow(uint8_t* row, size_t width, int32_t threshold) {
    RepairBytes(row, width, threshold);
}

void RepairRow(Word* row, size_t width, int32_t threshold) {
    RepairWords(row, width, threshold);
}

}  // namespace QyDefect
#endif
