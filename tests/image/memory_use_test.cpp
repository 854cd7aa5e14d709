// How much memory the functions take beside the caller's.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FailingMemory.h"
#include "QyImageProc.h"
#include "TestColourRecord.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr int kFrameWidth = 64;
constexpr int kFrameHeight = 32;
constexpr int kFramePixels = kFrameWidth * kFrameHeight;

/// Memory that is larger than what any function reads or writes of a small frame.
struct WorkingMemory {
    Bytes src = Bytes(size_t{kFramePixels} * 6, 9);
    Bytes dst = Bytes(size_t{kFramePixels} * 6);
    std::vector<uint32_t> table = std::vector<uint32_t>(QY_TONE_RECORD_SIZE / sizeof(uint32_t));
    TestRecord record;
};

struct MeasuredFunction {
    const char* name;
    QY_STATUS (*run)(WorkingMemory& call);
};

template <int Method>
QY_STATUS Process(WorkingMemory& call) {
    Bytes& lut = call.src;
    uint16_t coefficients[9] = {256, 256, 256, 256, 256, 256, 256, 256, 256};
    QyRawImgRecord record{};
    record.DefectivePixelCorrect = 1;
    record.Method = Method;
    record.Filter = QY_BAYER_RG;
    record.CCParam = coefficients;
    record.CCParamSize = sizeof coefficients;
    record.Lut = lut.data();
    record.LutSize = 256;
    return QyRaw8ImgProcess(call.src.data(), call.dst.data(), kFrameWidth, kFrameHeight, &record);
}

template <int Method>
QY_STATUS Interpolate(WorkingMemory& c) {
    QY_STATUS status =
        QyRaw8toRGB24(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight, Method, 1, 0);
    const auto check = [&status](QY_STATUS next) { status = status == QY_OK ? next : status; };
    check(QyRaw8toRGB24Ex(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight, Method, 2, 1, 1));
    check(QyRaw8toARGB32(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight, kFrameWidth, Method,
                         3, 0, 0));
    check(QyRaw16toRGB48(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight, 12, Method, 4, 1));
    return status;
}

const MeasuredFunction kFrugal[] = {
    {"Unpack12",
     [](WorkingMemory& c) {
         return QyRaw12PackedToRaw16(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight);
     }},
    {"Unpack10",
     [](WorkingMemory& c) {
         return QyRaw10PackedToRaw16(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight);
     }},
    {"ReduceWords",
     [](WorkingMemory& c) {
         return QyRaw16toRaw8(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight, 2);
     }},
    {"ReducePixels",
     [](WorkingMemory& c) {
         return QyRGB48toRGB24(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight, 2);
     }},
    {"InterpolateTwoByTwo", Interpolate<QY_RAW2RGB_NEIGHBOUR>},
    {"InterpolateAlongEdges", Interpolate<QY_RAW2RGB_ADAPTIVE>},
    {"InterpolateThreeByThree", Interpolate<QY_RAW2RGB_NEIGHBOUR3>},
    {"GammaRecord",
     [](WorkingMemory& c) {
         int32_t size = QY_TONE_RECORD_SIZE;
         return QyGetGammatLut(c.table.data(), &size, 2);
     }},
    {"Saturation",
     [](WorkingMemory& c) { return QySaturation(c.src.data(), c.dst.data(), kFramePixels, 90); }},
    {"WhiteBalance",
     [](WorkingMemory& c) {
         double r[3] = {};
         return QyGetWhiteBalanceRatio(c.src.data(), kFrameWidth, kFrameHeight, &r[0], &r[1],
                                       &r[2]);
     }},
    {"Coefficients",
     [](WorkingMemory& c) {
         uint16_t words[9] = {};
         return QyCalcCCParam(&c.record.record, 70, words, sizeof words);
     }},
    {"Improvement",
     [](WorkingMemory& c) {
         return QyImageImprovment(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight,
                                  &c.record.record, nullptr, c.table.data());
     }},
    {"ImprovementByOrder",
     [](WorkingMemory& c) {
         return QyImageImprovmentEx(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight, nullptr,
                                    nullptr, c.table.data(), QY_ORDER_BGR);
     }},
    {"ImprovementOfFourBytes",
     [](WorkingMemory& c) {
         return QyARGBImageImprovment(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight,
                                      nullptr, nullptr, c.table.data());
     }},
    {"RawFrameTwoByTwo", Process<QY_RAW2RGB_NEIGHBOUR>},
    {"RawFrameAlongEdges", Process<QY_RAW2RGB_ADAPTIVE>},
    {"RawFrameThreeByThree", Process<QY_RAW2RGB_NEIGHBOUR3>},
    {"MonochromeFrame",
     [](WorkingMemory& c) {
         QyMonoImgRecord record{};
         record.DefectivePixelCorrect = 1;
         return QyMono8ImgProcess(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight, &record);
     }},
    {"MirrorHorizontally",
     [](WorkingMemory& c) {
         return QyImageMirror(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight, 0);
     }},
    {"MirrorVertically",
     [](WorkingMemory& c) {
         return QyImageMirror(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight, 1);
     }},
    {"TurnClockwise",
     [](WorkingMemory& c) {
         return QyRotate90CW8B(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight);
     }},
    {"TurnCounterClockwise",
     [](WorkingMemory& c) {
         return QyRotate90CCW8B(c.src.data(), c.dst.data(), kFrameWidth, kFrameHeight);
     }},
    {"DefectRepair",
     [](WorkingMemory& c) {
         return QyAutoRawDefectivePixelCorrect(c.src.data(), kFrameWidth, kFrameHeight, 12);
     }},
};

class MemoryFrugal : public testing::TestWithParam<MeasuredFunction> {};

TEST_P(MemoryFrugal, TakesNoMemoryOfItsOwn) {
    WorkingMemory call;
    const MemoryUse use;
    const QY_STATUS status = GetParam().run(call);
    const size_t used = use.Allocations();
    EXPECT_EQ(status, QY_OK);
    EXPECT_EQ(used, 0U);
}

INSTANTIATE_TEST_SUITE_P(All, MemoryFrugal, testing::ValuesIn(kFrugal),
                         [](const auto& test) { return std::string(test.param.name); });

/// A function that keeps rows of the image it works on.
struct RowKeeper {
    const char* name;
    int pixelBytes;
    QY_STATUS (*run)(uint8_t* image, int width, int height);
};

const RowKeeper kRowKeepers[] = {
    {"Sharpening", 3,
     [](uint8_t* image, int width, int height) {
         return QySharpen24B(image, image, width, height, 2);
     }},
    {"SharpeningOfAMonochromeFrame", 1,
     [](uint8_t* image, int width, int height) {
         QyMonoImgRecord record{};
         record.Sharpness = 1;
         record.SharpFactor = 2;
         return QyMono8ImgProcess(image, image, width, height, &record);
     }},
    {"NoiseReduction", 3,
     [](uint8_t* image, int width, int height) {
         // The frame's size keeps the interpolation out.
         Bytes none(1);
         QyRawImgRecord record{};
         record.Denoise = 1;
         return QyRaw8ImgProcess(none.data(), image, width, height, &record);
     }},
};

class MemoryOfRows : public testing::TestWithParam<RowKeeper> {
protected:
    static size_t Used(int width, int height) {
        const auto pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
        Bytes image(pixels * static_cast<size_t>(GetParam().pixelBytes), 50);
        const MemoryUse use;
        const QY_STATUS status = GetParam().run(image.data(), width, height);
        const size_t used = use.Bytes();
        EXPECT_EQ(status, QY_OK);
        EXPECT_EQ(use.Left(), 0U);
        return used;
    }
};

TEST_P(MemoryOfRows, IsAFewOfThemWhateverTheHeight) {
    constexpr int kWide = 4097;
    /// Eight rows at three bytes for each of theirs, in the noise reduction.
    constexpr size_t kFewRows = 26;
    /// What vectors may reach beyond the rows.
    constexpr size_t kBeyond = size_t{16} << 10;
    const size_t used = Used(kWide, 9);
    EXPECT_GT(used, 0U);
    EXPECT_LE(used, kFewRows * kWide * static_cast<size_t>(GetParam().pixelBytes) + kBeyond);
    EXPECT_EQ(Used(kWide, 301), used);
}

INSTANTIATE_TEST_SUITE_P(All, MemoryOfRows, testing::ValuesIn(kRowKeepers),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
