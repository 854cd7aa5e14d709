// Repairs bright outliers of a raw frame.

#include <algorithm>

#include "BayerCell.h"
#include "QyImageProc.h"

namespace {

using QyBayer::Word;

/// Samples from one to the next of the same colour, and around a frame that has
/// no such neighbour on every side.
constexpr int32_t kReach = 2;
constexpr int32_t kLeast = 2 * kReach + 1;

/// Looks at a sample and its nearest ones of the same colour. A repair is seen
/// by the samples behind it.
template <class Sample>
void RepairSample(Sample* sample, ptrdiff_t width, int32_t threshold) {
    const int32_t up = sample[-kReach * width];
    const int32_t down = sample[kReach * width];
    const int32_t left = sample[-kReach];
    const int32_t right = sample[kReach];
    if (*sample - std::max({up, down, left, right}) > threshold) {
        *sample = static_cast<Sample>((up + left + right + down) >> 2);
    }
}

template <class Sample>
void RepairFrame(void* buffer, int32_t width, int32_t height, int32_t threshold) {
    auto* const samples = static_cast<Sample*>(buffer);
    for (ptrdiff_t y = kReach; y < height - kReach; ++y) {
        for (ptrdiff_t x = kReach; x < width - kReach; ++x) {
            RepairSample(samples + y * width + x, width, threshold);
        }
    }
}

}  // namespace

QY_STATUS QyAutoRawDefectivePixelCorrect(void* buffer, int32_t width, int32_t height,
                                         int32_t bits) {
    constexpr int32_t kByteBits = 8;
    constexpr int32_t kMostBits = 16;
    constexpr int32_t kByteThreshold = 10;
    if (buffer == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    if (width < kLeast || height < kLeast || bits < kByteBits || bits > kMostBits) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    const int32_t threshold = kByteThreshold << (bits - kByteBits);
    const auto repair = bits == kByteBits ? RepairFrame<uint8_t> : RepairFrame<Word>;
    repair(buffer, width, height, threshold);
    return QY_OK;
}
