// The exported functions that adjust whole images: checks, tables and matrices.

#include <algorithm>
#include <array>

#include "QyImageProc.h"
#include "tone/ToneCurve.h"
#include "tone/ToneVector.h"

namespace {

constexpr size_t kLevels = 256;

QY_STATUS CheckBytes(const void* src, const void* dst, int32_t count) {
    if (src == nullptr || dst == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    return count < 1 ? QY_PARAMETER_OUT_OF_BOUND : QY_OK;
}

using MakeTable = QY_STATUS (*)(int32_t factor, int32_t bits, uint32_t* table);

/// Maps bytes by a table of 8 bits.
QY_STATUS Adjust(const void* src, void* dst, int32_t count, int32_t factor, MakeTable make) {
    if (const QY_STATUS status = CheckBytes(src, dst, count); status != QY_OK) {
        return status;
    }
    std::array<uint32_t, kLevels> words{};
    if (const QY_STATUS status = make(factor, 8, words.data()); status != QY_OK) {
        return status;
    }
    std::array<uint8_t, kLevels> table{};
    std::transform(words.begin(), words.end(), table.begin(),
                   [](uint32_t word) { return static_cast<uint8_t>(word); });
    QyTone::MapBytes(static_cast<const uint8_t*>(src), static_cast<uint8_t*>(dst),
                     static_cast<size_t>(count), table.data());
    return QY_OK;
}

QyTone::SaturationMatrix MatrixOf(int32_t factor) {
    constexpr int32_t kOne = 1024;
    constexpr int32_t kScale = 1 << 20;
    const int32_t k = kOne - 16 * factor;
    return {256 + -k * 183552 / kScale, k * 103936 / kScale, k * 79616 / kScale,
            k * 153856 / kScale, k * 29952 / kScale};
}

}  // namespace

QY_STATUS QyBrightness(const void* src, void* dst, int32_t count, int32_t factor) {
    return Adjust(src, dst, count, factor, QyTone::MakeLightnessTable);
}

QY_STATUS QyContrast(const void* src, void* dst, int32_t count, int32_t factor) {
    return Adjust(src, dst, count, factor, QyTone::MakeContrastTable);
}

QY_STATUS QySaturation(const void* src, void* dst, int32_t pixelCount, int32_t factor) {
    constexpr uint32_t kMost = 128;
    if (const QY_STATUS status = CheckBytes(src, dst, pixelCount); status != QY_OK) {
        return status;
    }
    if (static_cast<uint32_t>(factor) > kMost) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    const auto* const in = static_cast<const uint8_t*>(src);
    auto* const out = static_cast<uint8_t*>(dst);
    const auto pixels = static_cast<size_t>(pixelCount);
    if (factor == 0) {
        QyTone::ToGrey(in, out, pixels);
    } else {
        QyTone::Saturate(in, out, pixels, MatrixOf(factor));
    }
    return QY_OK;
}
