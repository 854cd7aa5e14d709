// Gains that make an image grey on average.

#include <algorithm>
#include <cmath>

#include "QyImageProc.h"
#include "colour/ChannelSums.h"
#include "support/FrameSize.h"

namespace {

using Means = std::array<double, 3>;

/// Width of the border that doesn't count: its colours were interpolated from fewer
/// samples.
constexpr int32_t kBorder = 2;
constexpr int32_t kLeastSide = 2 * kBorder + 1;
constexpr size_t kRgbBytes = 3;

Means MeansOf(const uint8_t* image, int32_t width, int32_t height) {
    const auto innerWidth = static_cast<size_t>(width - 2 * kBorder);
    const auto innerHeight = static_cast<size_t>(height - 2 * kBorder);
    const size_t rowBytes = static_cast<size_t>(width) * kRgbBytes;
    const auto sums = QyWhiteBalance::SumChannels(image + kBorder * rowBytes + kBorder * kRgbBytes,
                                                  innerWidth, innerHeight, rowBytes);
    const double count = static_cast<double>(innerWidth) * static_cast<double>(innerHeight);
    Means means{};
    std::transform(sums.begin(), sums.end(), means.begin(),
                   [count](uint64_t sum) { return static_cast<double>(sum) / count; });
    return means;
}

/// The factor from one mean to another; 0 for a channel without light.
double Ratio(double to, double from) {
    constexpr double kNothing = 1e-9;
    return std::abs(from) < kNothing ? 0 : to / from;
}

/// Scales the gains so that the smallest one is 1 and none darkens its channel.
void Raise(Means& ratios) {
    const double least = std::min(ratios[0], ratios[2]);
    if (least > 0 && least < 1) {
        for (double& ratio : ratios) {
            ratio /= least;
        }
    }
}

}  // namespace

QY_STATUS QyGetWhiteBalanceRatio(const void* src, int32_t width, int32_t height, double* ratio0,
                                 double* ratio1, double* ratio2) {
    if (src == nullptr || ratio0 == nullptr || ratio1 == nullptr || ratio2 == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    if (width < kLeastSide || height < kLeastSide ||
        !QySize::IsPossible(width, height, kRgbBytes)) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    const Means means = MeansOf(static_cast<const uint8_t*>(src), width, height);
    Means ratios = {Ratio(means[1], means[0]), Ratio(means[1], means[1]),
                    Ratio(means[1], means[2])};
    Raise(ratios);
    *ratio0 = ratios[0];
    *ratio1 = ratios[1];
    *ratio2 = ratios[2];
    return QY_OK;
}
