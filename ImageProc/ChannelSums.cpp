// The loops over whole vectors, compiled once for each instruction set.

// Vectors whose size the compiler doesn't know can't be members.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128)

#include "ChannelSums.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "ChannelSums.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "Blocks-inl.h"

HWY_BEFORE_NAMESPACE();
namespace QyWhiteBalance {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

Sums SumLoop(const uint8_t* pixels, size_t width, size_t height, size_t rowBytes) {
    Sums sums{};
    for (size_t y = 0; y < height; ++y) {
        const uint8_t* const row = pixels + y * rowBytes;
        for (size_t i = 0; i < width * 3; ++i) {
            sums[i % 3] += row[i];
        }
    }
    return sums;
}

#else

namespace hn = hwy::HWY_NAMESPACE;
using namespace QyBlocks::HWY_NAMESPACE;

Sums SumLoop(const uint8_t* pixels, size_t width, size_t height, size_t rowBytes) {
    const Bytes d;
    const hn::Repartition<uint64_t, Bytes> wide;
    auto sum0 = hn::Zero(wide);
    auto sum1 = hn::Zero(wide);
    auto sum2 = hn::Zero(wide);
    for (size_t y = 0; y < height; ++y) {
        ForEachBlock<3>(pixels + y * rowBytes, width,
                        [&](const uint8_t* in, size_t /*x*/) HWY_ATTR {
                            hn::Vec<Bytes> b0;
                            hn::Vec<Bytes> b1;
                            hn::Vec<Bytes> b2;
                            hn::LoadInterleaved3(d, in, b0, b1, b2);
                            sum0 = hn::Add(sum0, hn::SumsOf8(b0));
                            sum1 = hn::Add(sum1, hn::SumsOf8(b1));
                            sum2 = hn::Add(sum2, hn::SumsOf8(b2));
                        });
    }
    return {hn::GetLane(hn::SumOfLanes(wide, sum0)), hn::GetLane(hn::SumOfLanes(wide, sum1)),
            hn::GetLane(hn::SumOfLanes(wide, sum2))};
}

#endif

}  // namespace HWY_NAMESPACE
}  // namespace QyWhiteBalance
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyWhiteBalance {

HWY_EXPORT(SumLoop);

Sums SumChannels(const uint8_t* pixels, size_t width, size_t height, size_t rowBytes) {
    return HWY_DYNAMIC_DISPATCH(SumLoop)(pixels, width, height, rowBytes);
}

}  // namespace QyWhiteBalance
#endif
