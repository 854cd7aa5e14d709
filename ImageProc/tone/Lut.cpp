// The exported functions that make tables. A null table asks for its size.

#include <array>
#include <cmath>
#include <vector>

#include "support/Memory.h"
#include "tone/ToneCurve.h"

namespace {

constexpr uint32_t kGammaLut = 0;
constexpr uint32_t kContrastLut = 1;
constexpr uint16_t kLutSize = 256;

/// What is left to do after the sizes were checked.
enum class Answer { Make, SizeOnly, Refused };

template <class Size, class Fits>
Answer AskSize(const void* table, Size* size, Size needed, const Fits& fits) {
    if (size == nullptr) {
        return Answer::Refused;
    }
    if (table == nullptr) {
        *size = needed;
        return Answer::SizeOnly;
    }
    if (!fits(*size)) {
        *size = needed;
        return Answer::Refused;
    }
    return Answer::Make;
}

QY_STATUS StatusOf(Answer answer) {
    return answer == Answer::Refused ? QY_PARAMETER_INVALID : QY_OK;
}

Answer AskRecordSize(const uint32_t* record, int32_t* size) {
    return AskSize(record, size, QY_TONE_RECORD_SIZE,
                   [](int32_t given) { return given >= QY_TONE_RECORD_SIZE; });
}

void Finish(uint32_t* record, uint32_t kind, int32_t* size) {
    record[QyTone::kRecordWords] = kind;
    *size = QY_TONE_RECORD_SIZE;
}

/// The table that is being made, and the next one, which is applied to its results.
struct Work {
    std::vector<uint32_t> tone = std::vector<uint32_t>(QyTone::kRecordWords);
    std::vector<uint32_t> next = std::vector<uint32_t>(QyTone::kRecordWords);

    void Append() {
        for (uint32_t& value : tone) {
            value = next[value];
        }
    }
};

QY_STATUS MakeLut(int32_t contrast, int32_t lightness, double gamma, uint8_t* lut) {
    using QyTone::kRecordBits;
    Work work;
    QY_STATUS status = QyTone::MakeGammaTable(kRecordBits, work.tone.data(), gamma);
    if (status == QY_OK) {
        status = QyTone::MakeLightnessTable(lightness, kRecordBits, work.next.data());
    }
    if (status == QY_OK) {
        work.Append();
        status = QyTone::MakeContrastTable(contrast, kRecordBits, work.next.data());
    }
    if (status != QY_OK) {
        return status;
    }
    work.Append();
    for (size_t i = 0; i < kLutSize; ++i) {
        lut[i] = static_cast<uint8_t>(work.tone[i * 16] >> 4);
    }
    return QY_OK;
}

}  // namespace

QY_STATUS QyGetGammatLut(uint32_t* lut, int32_t* size, double gamma) {
    if (const Answer answer = AskRecordSize(lut, size); answer != Answer::Make) {
        return StatusOf(answer);
    }
    if (!QyTone::IsGamma(gamma)) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    // Scaled by the number of entries instead of the last one, so that a gamma of 1 makes
    // an exact identity.
    constexpr auto kScale = static_cast<double>(QyTone::kRecordWords);
    for (size_t i = 0; i < QyTone::kRecordWords; ++i) {
        lut[i] = static_cast<uint32_t>(std::pow(static_cast<double>(i) * (1 / kScale), 1 / gamma) *
                                       kScale);
    }
    Finish(lut, kGammaLut, size);
    return QY_OK;
}

QY_STATUS QyGetContrastLut(int32_t contrast, uint32_t* lut, int32_t* size) {
    if (const Answer answer = AskRecordSize(lut, size); answer != Answer::Make) {
        return StatusOf(answer);
    }
    const QY_STATUS status = QyTone::MakeContrastTable(contrast, QyTone::kRecordBits, lut);
    if (status == QY_OK) {
        Finish(lut, kContrastLut, size);
    }
    return status;
}

QY_STATUS QyGetLut(int32_t contrast, int32_t lightness, uint8_t* lut, uint16_t* size,
                   double gamma) {
    const Answer answer =
        AskSize(lut, size, kLutSize, [](uint16_t given) { return given == kLutSize; });
    if (answer != Answer::Make) {
        return StatusOf(answer);
    }
    if (!QyTone::IsContrast(contrast) || !QyTone::IsLightness(lightness) ||
        !QyTone::IsGamma(gamma)) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    return QyMemory::OrNotEnough([&] { return MakeLut(contrast, lightness, gamma, lut); });
}
