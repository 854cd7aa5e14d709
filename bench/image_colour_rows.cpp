// Rows of the colour functions: records, pipelines, noise and ratios.

#include <array>

#include "QyImageProc.h"
#include "TestColourRecord.h"
#include "filter/Noise.h"
#include "image_row.h"

namespace ImageBench {

namespace {

constexpr double kGamma = 1.8;
constexpr int32_t kContrast = 20;

/// A record with strong but usual corrections.
class ColourRecord : public TestRecord {
public:
    ColourRecord() { SetMatrix({22, -4, -2, -5, 24, -3, -1, -7, 24}); }
};

const QyColorCorrectionRecord& Record() {
    static const ColourRecord record;
    return record.record;
}

using ToneTable = std::array<uint32_t, QY_TONE_RECORD_SIZE / sizeof(uint32_t)>;

ToneTable MakeContrast() {
    ToneTable table{};
    int32_t size = QY_TONE_RECORD_SIZE;
    QyGetContrastLut(kContrast, table.data(), &size);
    return table;
}

ToneTable MakeGamma() {
    ToneTable table{};
    int32_t size = QY_TONE_RECORD_SIZE;
    QyGetGammatLut(table.data(), &size, kGamma);
    return table;
}

void Improve(const uint8_t* src, uint8_t* dst, int width, int height) {
    static const ToneTable contrast = MakeContrast();
    static const ToneTable gamma = MakeGamma();
    QyImageImprovment(src, dst, width, height, &Record(), contrast.data(), gamma.data());
}

/// The tables for the stages of the raw pipeline.
struct RawStages {
    RawStages() {
        QyCalcCCParam(&Record(), 64, matrix.data(), sizeof matrix);
        auto size = static_cast<uint16_t>(table.size());
        QyGetLut(kContrast, 0, table.data(), &size, kGamma);
        record.CCParam = matrix.data();
        record.CCParamSize = sizeof matrix;
        record.Lut = table.data();
        record.LutSize = size;
        record.Method = QY_RAW2RGB_NEIGHBOUR3;
        record.Filter = QY_BAYER_RG;
    }

    std::array<uint16_t, 9> matrix{};
    std::array<uint8_t, 256> table{};
    QyRawImgRecord record{};
};

void Process(const uint8_t* src, uint8_t* dst, int width, int height) {
    static const RawStages stages;
    // The cast is safe: only the repair of defects changes the source, and it is off.
    QyRaw8ImgProcess(const_cast<uint8_t*>(src), dst, width, height, &stages.record);
}

void Ratios(const uint8_t* src, uint8_t* /*dst*/, int width, int height) {
    double ratios[3];
    QyGetWhiteBalanceRatio(src, width, height, &ratios[0], &ratios[1], &ratios[2]);
}

void ReduceNoise(const uint8_t* /*src*/, uint8_t* dst, int width, int height) {
    QyNoise::Reduce(dst, static_cast<size_t>(width), static_cast<size_t>(height));
}

}  // namespace

Row SharedRecordRow() {
    return {"improvement, record and both tables", Kind::ColoursAndTables, 24, 24, Improve};
}

std::vector<Row> ColourRows() {
    return {
        SharedRecordRow(),
        {"raw pipeline: method 2, matrix, table", Kind::RawPipeline, 8, 24, Process},
        {"white-balance ratios", Kind::ChannelSums, 24, 0, Ratios},
        {"noise reduction", Kind::NoiseReduction, 24, 24, ReduceNoise, true},
    };
}

}  // namespace ImageBench
