// The loops over whole vectors, compiled once for each instruction set.

#include "colour/ChannelSums.h"

#include <array>

#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colour/ChannelSums.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "support/Blocks-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QyWhiteBalance {
namespace HWY_NAMESPACE {

Sums SumEach(const uint8_t* pixels, size_t width, size_t height, size_t rowBytes) {
    Sums sums{};
    for (size_t y = 0; y < height; ++y) {
        const uint8_t* const row = pixels + y * rowBytes;
        for (size_t i = 0; i < width * 3; ++i) {
            sums[i % 3] += row[i];
        }
    }
    return sums;
}

#if HWY_TARGET == HWY_SCALAR

Sums SumLoop(const uint8_t* pixels, size_t width, size_t height, size_t rowBytes) {
    return SumEach(pixels, width, height, rowBytes);
}

#else

namespace hn = hwy::HWY_NAMESPACE;
using namespace QyBlocks::HWY_NAMESPACE;

using Wide = hn::Repartition<uint64_t, Bytes>;

/// Channels of a pixel. As many vectors of bytes hold whole pixels.
constexpr size_t kThree = 3;
/// How many bytes ahead lines are prefetched, from the delay of main memory.
constexpr size_t kAhead = 8192;

/// Sums the three channels in the lanes of vectors. It clears the bytes of the other two
/// channels before each sum, which costs less than collecting the bytes of one channel.
class ChannelAdder {
public:
    HWY_INLINE ChannelAdder()
        : m_sum0(hn::Zero(Wide())), m_sum1(hn::Zero(Wide())), m_sum2(hn::Zero(Wide())) {
        StartAt(0);
    }

    /// Sets how many bytes of the row precede the next vector.
    HWY_INLINE void StartAt(size_t offset) {
        m_third0 = Thirds(offset);
        m_third1 = Thirds(offset + 2);
        m_third2 = Thirds(offset + 1);
    }
    /// Adds vector `K` of three consecutive ones.
    template <size_t K>
    HWY_INLINE void Add(hn::Vec<Bytes> bytes) {
        constexpr size_t kBefore = K * hn::MaxLanes(Bytes()) % kThree;
        const auto third0 = hn::And(bytes, m_third0);
        const auto third1 = hn::And(bytes, m_third1);
        const auto third2 = hn::And(bytes, m_third2);
        AddTo(m_sum0, kBefore == 0 ? third0 : (kBefore == 1 ? third2 : third1));
        AddTo(m_sum1, kBefore == 0 ? third1 : (kBefore == 1 ? third0 : third2));
        AddTo(m_sum2, kBefore == 0 ? third2 : (kBefore == 1 ? third1 : third0));
    }
    HWY_INLINE Sums Total() const { return {Total(m_sum0), Total(m_sum1), Total(m_sum2)}; }

private:
    /// Selects every third byte of a vector that begins `offset` bytes after a pixel.
    static HWY_INLINE hn::Vec<Bytes> Thirds(size_t offset) {
        static constexpr auto kPattern = [] {
            std::array<uint8_t, HWY_MAX_BYTES + kThree> pattern{};
            for (size_t i = 0; i < pattern.size(); i += kThree) {
                pattern[i] = 0xFF;
            }
            return pattern;
        }();
        return hn::LoadU(Bytes(), kPattern.data() + offset % kThree);
    }
    static HWY_INLINE uint64_t Total(hn::Vec<Wide> sum) {
        return hn::GetLane(hn::SumOfLanes(Wide(), sum));
    }
    static HWY_INLINE void AddTo(hn::Vec<Wide>& sum, hn::Vec<Bytes> bytes) {
        sum = hn::Add(sum, hn::SumsOf8(bytes));
    }

    hn::Vec<Bytes> m_third0;
    hn::Vec<Bytes> m_third1;
    hn::Vec<Bytes> m_third2;
    hn::Vec<Wide> m_sum0;
    hn::Vec<Wide> m_sum1;
    hn::Vec<Wide> m_sum2;
};

/// Adds a row that is longer than a vector. The vectors between its ends are aligned in
/// memory: otherwise each would wait for two prefetched lines.
HWY_INLINE void AddRow(ChannelAdder& adder, const uint8_t* row, size_t size) {
    const Bytes d;
    const size_t lanes = hn::Lanes(d);
    size_t i = (lanes - reinterpret_cast<uintptr_t>(row) % lanes) % lanes;
    adder.StartAt(0);
    adder.Add<0>(hn::IfThenElseZero(hn::FirstN(d, i), hn::LoadU(d, row)));
    adder.StartAt(i);
    for (; i + kThree * lanes <= size; i += kThree * lanes) {
        hwy::Prefetch(row + i + kAhead);
        hwy::Prefetch(row + i + kAhead + lanes);
        hwy::Prefetch(row + i + kAhead + 2 * lanes);
        adder.Add<0>(hn::Load(d, row + i));
        adder.Add<1>(hn::Load(d, row + i + lanes));
        adder.Add<2>(hn::Load(d, row + i + 2 * lanes));
    }
    for (; i + lanes <= size; i += lanes) {
        adder.StartAt(i);
        adder.Add<0>(hn::Load(d, row + i));
    }
    const auto done = hn::FirstN(d, lanes - (size - i));
    adder.StartAt(size - lanes);
    adder.Add<0>(hn::IfThenZeroElse(done, hn::LoadU(d, row + size - lanes)));
}

Sums SumLoop(const uint8_t* pixels, size_t width, size_t height, size_t rowBytes) {
    if (width < hn::Lanes(Bytes())) {
        return SumEach(pixels, width, height, rowBytes);
    }
    ChannelAdder adder;
    for (size_t y = 0; y < height; ++y) {
        AddRow(adder, pixels + y * rowBytes, width * kThree);
    }
    return adder.Total();
}

#endif

}  // namespace HWY_NAMESPACE
}  // namespace QyWhiteBalance
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyWhiteBalance {

QY_DISPATCH(SumLoop);

Sums SumChannels(const uint8_t* pixels, size_t width, size_t height, size_t rowBytes) {
    return SumLoop(pixels, width, height, rowBytes);
}

}  // namespace QyWhiteBalance
#endif
