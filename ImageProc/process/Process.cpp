// The exported functions that run all stages on a raw frame in one call.

#include <cstring>
#include <tuple>

#include "QyImageProc.h"
#include "bayer/Bayer.h"
#include "colour/ColourMatrix.h"
#include "filter/Noise.h"
#include "filter/Sharpen.h"
#include "support/FrameSize.h"
#include "support/Memory.h"
#include "tone/ToneVector.h"

namespace {

constexpr uint32_t kLutEntries = 256;
constexpr int32_t kFrameBits = 8;
constexpr size_t kThreeBytes = 3;

/// The checks that both functions begin with.
template <class Record>
QY_STATUS CheckFrame(const void* src, const void* dst, int32_t width, int32_t height,
                     int64_t pixelBytes, const Record* record) {
    if (record == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    if (record->Accelerate != 0) {
        return QY_ACCELERATE_UNAVAILABLE;
    }
    if (src == nullptr || dst == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    return QySize::IsPossible(width, height, pixelBytes) ? QY_OK : QY_PARAMETER_OUT_OF_BOUND;
}

bool IsWhole(const void* table, uint32_t size, uint32_t wanted) {
    return table == nullptr || size == wanted;
}

QY_STATUS CheckStages(const QyRawImgRecord& record) {
    constexpr uint32_t kParamSize = std::tuple_size_v<QyColour::Matrix> * sizeof *record.CCParam;
    if (!IsWhole(record.CCParam, record.CCParamSize, kParamSize) ||
        !IsWhole(record.Lut, record.LutSize, kLutEntries)) {
        return QY_PARAMETER_INVALID;
    }
    const bool isKnown = static_cast<uint32_t>(record.Method) <= QY_RAW2RGB_NEIGHBOUR3 &&
                         static_cast<uint32_t>(record.Filter) <= QY_BAYER_BG;
    return isKnown ? QY_OK : QY_NOT_SUPPORTED;
}

/// The matrix, by rows, of an array that begins with the diagonal and has an offset on
/// the other coefficients.
QyColour::Matrix MatrixOf(const uint16_t* words) {
    constexpr int kOffset = 256;
    const auto beside = [words](size_t i) { return static_cast<int16_t>(words[i] - kOffset); };
    const auto diagonal = [words](size_t i) { return static_cast<int16_t>(words[i]); };
    return {diagonal(0), beside(3), beside(5), beside(6),  diagonal(1),
            beside(4),   beside(8), beside(7), diagonal(2)};
}

/// Applies matrix and table to a row.
class ColourWork final : public QyBayer::RowWork<uint8_t> {
public:
    ColourWork(size_t width, const QyRawImgRecord& record)
        : m_width(width), m_hasMatrix(record.CCParam != nullptr), m_lut(record.Lut) {
        if (m_hasMatrix) {
            m_matrix = MatrixOf(record.CCParam);
        }
    }

    bool IsAny() const { return m_hasMatrix || m_lut != nullptr; }

    void Do(uint8_t* row) const override {
        if (m_hasMatrix) {
            QyColour::MixColours(row, m_width, m_matrix);
        }
        if (m_lut != nullptr) {
            QyTone::MapBytes(row, row, m_width * kThreeBytes, m_lut);
        }
    }

private:
    size_t m_width;
    bool m_hasMatrix;
    QyColour::Matrix m_matrix{};
    const uint8_t* m_lut;
};

/// Interpolates a frame and corrects the colours of each row as soon as it is finished. A
/// monochrome frame isn't corrected.
void MakeColours(const void* src, void* dst, int32_t width, int32_t height,
                 const QyRawImgRecord& record) {
    const ColourWork work(static_cast<size_t>(width), record);
    QyBayer::ConvertRaw8(src, dst, static_cast<uint32_t>(width), static_cast<uint32_t>(height),
                         {record.Method, record.Filter, record.Flip, QY_ORDER_RGB},
                         work.IsAny() ? &work : nullptr);
}

}  // namespace

// A stage that fails changes nothing, and the stages after it still run.

QY_STATUS QyRaw8ImgProcess(void* src, void* dst, int32_t width, int32_t height,
                           const QyRawImgRecord* record) {
    QY_STATUS status = CheckFrame(src, dst, width, height, kThreeBytes, record);
    if (status == QY_OK) {
        status = CheckStages(*record);
    }
    if (status != QY_OK) {
        return status;
    }
    auto* const image = static_cast<uint8_t*>(dst);
    if (record->DefectivePixelCorrect != 0) {
        QyAutoRawDefectivePixelCorrect(src, width, height, kFrameBits);
    }
    MakeColours(src, image, width, height, *record);
    if (record->Denoise != 0) {
        QyMemory::OrNotEnough([&] {
            QyNoise::Reduce(image, static_cast<size_t>(width), static_cast<size_t>(height));
            return QY_OK;
        });
    }
    if (record->Sharpness != 0) {
        QySharpen24B(image, image, width, height, record->SharpFactor);
    }
    return QY_OK;
}

QY_STATUS QyMono8ImgProcess(void* src, void* dst, int32_t width, int32_t height,
                            const QyMonoImgRecord* record) {
    const QY_STATUS status = CheckFrame(src, dst, width, height, 1, record);
    if (status != QY_OK) {
        return status;
    }
    if (!IsWhole(record->Lut, record->LutSize, kLutEntries)) {
        return QY_PARAMETER_INVALID;
    }
    const auto columns = static_cast<size_t>(width);
    const auto rows = static_cast<size_t>(height);
    auto* const image = static_cast<uint8_t*>(dst);
    if (record->DefectivePixelCorrect != 0) {
        QyAutoRawDefectivePixelCorrect(src, width, height, kFrameBits);
    }
    if (record->Lut != nullptr) {
        QyTone::MapBytes(static_cast<const uint8_t*>(src), image, columns * rows, record->Lut);
    } else {
        std::memmove(image, src, columns * rows);
    }
    if (record->Sharpness != 0 && QySharpen::IsFactor(record->SharpFactor)) {
        QyMemory::OrNotEnough([&] {
            QySharpen::OneByte(image, image, columns, rows, record->SharpFactor);
            return QY_OK;
        });
    }
    return QY_OK;
}
