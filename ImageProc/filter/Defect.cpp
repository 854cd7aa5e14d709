// Repairs bright outliers of a raw frame.

#include "QyImageProc.h"
#include "filter/DefectRow.h"

namespace {

constexpr int32_t kReach = QyDefect::kReach;
constexpr int32_t kLeastLength = 2 * kReach + 1;

template <class Sample>
void RepairFrame(void* buffer, int32_t width, int32_t height, int32_t threshold) {
    const auto columns = static_cast<size_t>(width);
    auto* const samples = static_cast<Sample*>(buffer);
    for (int32_t y = kReach; y < height - kReach; ++y) {
        QyDefect::RepairRow(samples + static_cast<size_t>(y) * columns, columns, threshold);
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
    if (width < kLeastLength || height < kLeastLength || bits < kByteBits || bits > kMostBits) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    const int32_t threshold = kByteThreshold << (bits - kByteBits);
    const auto repair = bits == kByteBits ? RepairFrame<uint8_t> : RepairFrame<QyDefect::Word>;
    repair(buffer, width, height, threshold);
    return QY_OK;
}
