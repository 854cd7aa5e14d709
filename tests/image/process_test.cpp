// Whole pipelines from raw frames.

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "Forms.h"
#include "GeometryReference.h"
#include "NoiseReference.h"
#include "Refusals.h"
#include "ToneReference.h"

namespace {

using BayerReference::Raw;
using Bytes = std::vector<uint8_t>;

/// A scene with some samples that are far too bright.
Raw MakeScene(int width, int height, Content content) {
    Raw raw = MakeRaw(width, height, content, 200);
    std::mt19937 random(static_cast<unsigned>(width * height));
    for (int& sample : raw.samples) {
        if (random() % 16 == 0) {
            sample = 255;
        }
    }
    return raw;
}

Bytes ToBytes(const Raw& raw) {
    return {raw.samples.begin(), raw.samples.end()};
}

/// A table that isn't its own inverse and has no order.
Bytes MakeLut() {
    Bytes lut(256);
    for (size_t i = 0; i < lut.size(); ++i) {
        lut[i] = static_cast<uint8_t>(i * 167 + 13);
    }
    return lut;
}

Bytes ThroughLut(Bytes bytes, const Bytes& lut) {
    for (uint8_t& byte : bytes) {
        byte = lut[byte];
    }
    return bytes;
}

/// The array of a matrix by rows.
std::vector<uint16_t> MakeParam(const std::array<int, 9>& m) {
    std::vector<uint16_t> words;
    for (const int word : {m[0], m[4], m[8], m[1] + 256, m[5] + 256, m[2] + 256, m[3] + 256,
                           m[7] + 256, m[6] + 256}) {
        words.push_back(static_cast<uint16_t>(word));
    }
    return words;
}

Bytes Mixed(Bytes image, const std::array<int, 9>& m) {
    for (size_t i = 0; i < image.size(); i += 3) {
        const int r = image[i];
        const int g = image[i + 1];
        const int b = image[i + 2];
        image[i] = ToneReference::Clip((m[1] * g + m[0] * r + m[2] * b) >> 8);
        image[i + 1] = ToneReference::Clip((m[4] * g + m[3] * r + m[5] * b) >> 8);
        image[i + 2] = ToneReference::Clip((m[7] * g + m[6] * r + m[8] * b) >> 8);
    }
    return image;
}

constexpr std::array<int, 9> kMatrix = {400, -96, -48, -64, 352, -32, 16, -144, 384};

/// A raw frame on its way, with whatever stages.
struct RawProcess {
    QyRawImgRecord record{};
    std::array<int, 9> matrix = kMatrix;
    std::vector<uint16_t> param;
    Bytes lut;
    size_t offset = 0;

    void SetMatrix(const std::array<int, 9>& m) {
        matrix = m;
        param = MakeParam(m);
        record.CCParam = param.data();
        record.CCParamSize = 18;
    }
    void SetLut() {
        lut = MakeLut();
        record.Lut = lut.data();
        record.LutSize = 256;
    }

    bool HasSize(int width, int height) const {
        const int least = record.Method == 1 ? 6 : 4;
        return width % 2 == 0 && height % 2 == 0 && width >= least && height >= least;
    }
    Bytes Interpolated(const Raw& raw, const Bytes& old) const {
        if (!HasSize(raw.width, raw.height)) {
            return old;
        }
        Conversion conversion;
        conversion.options.method = record.Method;
        conversion.options.filter = record.Filter;
        conversion.options.flip = record.Flip != 0;
        Bytes image = Expected(conversion, raw, old);
        if (record.Filter != QY_FILTER_NONE && record.CCParam != nullptr) {
            image = Mixed(image, matrix);
        }
        return record.Filter != QY_FILTER_NONE && record.Lut != nullptr ? ThroughLut(image, lut)
                                                                        : image;
    }
    Bytes Reference(const Raw& raw, const Bytes& old) const {
        Bytes image = Interpolated(raw, old);
        if (record.Denoise != 0) {
            image = NoiseReference::Reduce(image, raw.width, raw.height);
        }
        if (record.Sharpness != 0) {
            image = ToneReference::Sharpening(image, raw.width, raw.height, 3, record.SharpFactor)
                        .Run();
        }
        return image;
    }
    void ExpectSame(const Raw& raw) const {
        const bool isRepaired =
            record.DefectivePixelCorrect != 0 && raw.width >= 5 && raw.height >= 5;
        const Raw repaired = isRepaired ? GeometryReference::Repair(raw, 8) : raw;
        const Bytes bytes = ToBytes(raw);
        const Bytes old = OldBytes(bytes.size() * 3);
        const Bytes expected = Reference(repaired, old);
        WithEachInstructionSet([&] {
            GuardedBytes source(bytes.size(), SourceOffset(offset));
            std::copy(bytes.begin(), bytes.end(), source.Data());
            GuardedBytes out(old.size(), offset);
            std::copy(old.begin(), old.end(), out.Data());
            CountCase();
            ASSERT_EQ(QyRaw8ImgProcess(source.Data(), out.Data(), raw.width, raw.height, &record),
                      QY_OK);
            EXPECT_EQ(Difference(out, expected), "") << raw.width << " x " << raw.height;
            EXPECT_EQ(Difference(source, ToBytes(repaired)), "") << "source";
        });
    }
};

/// Method, layout, and the stages by bits.
class RawProcessing : public testing::TestWithParam<std::tuple<int, int, int>> {
protected:
    void SetUp() override {
        const auto& [method, filter, stages] = GetParam();
        m_process.record.Method = method;
        m_process.record.Filter = filter;
        m_process.record.Flip = static_cast<uint8_t>(filter % 2);
        m_process.record.DefectivePixelCorrect = (stages & 1) != 0;
        m_process.record.Denoise = (stages & 2) != 0;
        m_process.record.Sharpness = (stages & 4) != 0;
        m_process.record.SharpFactor = 1.5F;
        if ((stages & 8) != 0) {
            m_process.SetMatrix(kMatrix);
        }
        if ((stages & 16) != 0) {
            m_process.SetLut();
        }
    }
    RawProcess m_process;
};

TEST_P(RawProcessing, GivesWhatItsStagesGive) {
    for (const auto& [width, height] :
         {std::pair{4, 4}, {6, 6}, {6, 12}, {14, 6}, {30, 10}, {70, 12}, {7, 9}, {5, 5}, {3, 2}}) {
        m_process.ExpectSame(MakeScene(width, height, Content::Random));
    }
    m_process.offset = 3;
    m_process.record.Flip = m_process.record.Flip == 0 ? 2 : 0;
    for (const Content content : kContents) {
        m_process.ExpectSame(MakeScene(38, 8, content));
    }
}

INSTANTIATE_TEST_SUITE_P(All, RawProcessing,
                         testing::Combine(testing::Values(0, 1, 2), testing::Range(0, 5),
                                          testing::Range(0, 32)));

/// Method.
class RawProcessingWidths : public testing::TestWithParam<int> {};

TEST_P(RawProcessingWidths, EveryWidthUpToSomeVectors) {
    RawProcess process;
    process.record.DefectivePixelCorrect = 1;
    process.record.Denoise = 1;
    process.record.Sharpness = 1;
    process.record.SharpFactor = 0.7F;
    process.record.Method = GetParam();
    process.SetMatrix(kMatrix);
    process.SetLut();
    for (int width = 4; width <= 140; width += 2) {
        process.record.Filter = width / 2 % 4 + 1;
        process.record.Flip = static_cast<uint8_t>(width / 8 % 2);
        process.offset = static_cast<size_t>(width / 2 % 5);
        process.ExpectSame(MakeScene(width, 8, Content::Random));
    }
}

INSTANTIATE_TEST_SUITE_P(All, RawProcessingWidths, testing::Values(0, 1, 2));

TEST(RawProcessingKernels, AnyMatrixIsMixedExactly) {
    constexpr int kMost = 32767;
    constexpr int kLeast = -32768;
    for (const auto& matrix :
         {std::array<int, 9>{kMost, kMost, kMost, kLeast, kLeast, kLeast, kMost, kLeast, 1},
          {256, 0, 0, 0, 256, 0, 0, 0, 256},
          {77, 150, 29, 77, 150, 29, 77, 150, 29},
          {-1, -1, -1, 1, -256, 255, 300, -20, -24}}) {
        RawProcess process;
        process.record.Filter = QY_BAYER_RG;
        process.SetMatrix(matrix);
        process.ExpectSame(MakeScene(72, 8, Content::Random));
        process.ExpectSame(MakeScene(72, 8, Content::Extremes));
    }
}

TEST(RawProcessingStages, MonochromeFramesHaveNoColoursToCorrect) {
    RawProcess process;
    process.SetMatrix(kMatrix);
    process.SetLut();
    const Raw raw = MakeScene(8, 6, Content::Random);
    Bytes source = ToBytes(raw);
    Bytes out(source.size() * 3);
    ASSERT_EQ(QyRaw8ImgProcess(source.data(), out.data(), 8, 6, &process.record), QY_OK);
    for (size_t i = 0; i < source.size(); ++i) {
        EXPECT_EQ((Bytes{out[3 * i], out[3 * i + 1], out[3 * i + 2]}), Bytes(3, source[i]));
    }
}

TEST(RawProcessingStages, NoiseReductionLeavesAnImageThatIsTooLowForItAsInterpolated) {
    RawProcess process;
    process.record.Filter = QY_BAYER_RG;
    const Raw raw = MakeScene(20, 4, Content::Random);
    Bytes source = ToBytes(raw);
    Bytes plain(source.size() * 3);
    Bytes reduced(source.size() * 3);
    ASSERT_EQ(QyRaw8ImgProcess(source.data(), plain.data(), 20, 4, &process.record), QY_OK);
    process.record.Denoise = 1;
    ASSERT_EQ(QyRaw8ImgProcess(source.data(), reduced.data(), 20, 4, &process.record), QY_OK);
    // Four rows are twice the second radius: that pass finds no inner pixel.
    EXPECT_EQ(reduced, NoiseReference::Pass(plain, 20, 4, 1));
    // Two rows are twice the first.
    for (const int height : {1, 2}) {
        Bytes low = OldBytes(size_t{20} * static_cast<size_t>(height) * 3);
        const Bytes before = low;
        ASSERT_EQ(QyRaw8ImgProcess(source.data(), low.data(), 20, height, &process.record), QY_OK);
        EXPECT_EQ(low, before);
    }
}

TEST(RawProcessingStages, ASharpeningFactorOutOfRangeLeavesTheImageUnsharpened) {
    const Raw raw = MakeScene(20, 10, Content::Random);
    Bytes source = ToBytes(raw);
    RawProcess process;
    process.record.Filter = QY_BAYER_RG;
    Bytes plain(source.size() * 3);
    ASSERT_EQ(QyRaw8ImgProcess(source.data(), plain.data(), 20, 10, &process.record), QY_OK);
    process.record.Sharpness = 1;
    for (const float factor :
         {0.0F, 0.09F, 5.01F, -1.0F, std::numeric_limits<float>::quiet_NaN()}) {
        process.record.SharpFactor = factor;
        Bytes out(plain.size());
        EXPECT_EQ(QyRaw8ImgProcess(source.data(), out.data(), 20, 10, &process.record), QY_OK);
        EXPECT_EQ(out, plain);
    }
}

TEST(RawProcessingStages, ASizeThatInterpolationRefusesStillGoesThroughTheLaterStages) {
    RawProcess process;
    process.record.Filter = QY_BAYER_RG;
    process.record.Sharpness = 1;
    process.record.SharpFactor = 2;
    process.SetLut();
    Bytes source(size_t{7} * 7, 90);
    const Bytes old = OldBytes(source.size() * 3);
    Bytes out = old;
    ASSERT_EQ(QyRaw8ImgProcess(source.data(), out.data(), 7, 7, &process.record), QY_OK);
    EXPECT_EQ(out, ToneReference::Sharpening(old, 7, 7, 3, 2).Run());
    EXPECT_NE(out, old);
}

TEST(RawProcessingStages, RepairsTheCallersSource) {
    Bytes source(36, 10);
    source[14] = 250;
    RawProcess process;
    process.record.Filter = QY_BAYER_RG;
    process.record.DefectivePixelCorrect = 1;
    Bytes out(source.size() * 3);
    ASSERT_EQ(QyRaw8ImgProcess(source.data(), out.data(), 6, 6, &process.record), QY_OK);
    EXPECT_EQ(source, Bytes(36, 10));
    EXPECT_EQ(out, Bytes(36 * 3, 10));
}

/// The stages of a monochrome frame by bits.
class MonoProcessing : public testing::TestWithParam<int> {
protected:
    void ExpectSame(int width, int height, Content content, size_t offset) {
        Bytes lut = MakeLut();
        QyMonoImgRecord record{};
        record.DefectivePixelCorrect = (GetParam() & 1) != 0;
        record.Sharpness = (GetParam() & 2) != 0;
        record.SharpFactor = 2.3F;
        record.Lut = (GetParam() & 4) != 0 ? lut.data() : nullptr;
        record.LutSize = record.Lut != nullptr ? 256 : 0;
        Raw raw = MakeScene(width, height, content);
        const Bytes bytes = ToBytes(raw);
        if (record.DefectivePixelCorrect != 0 && width >= 5 && height >= 5) {
            raw = GeometryReference::Repair(raw, 8);
        }
        Bytes expected = ToBytes(raw);
        if (record.Lut != nullptr) {
            expected = ThroughLut(expected, lut);
        }
        if (record.Sharpness != 0) {
            expected =
                ToneReference::Sharpening(expected, width, height, 1, record.SharpFactor).Run();
        }
        const Bytes repaired = ToBytes(raw);
        WithEachInstructionSet([&] {
            GuardedBytes source(bytes.size(), SourceOffset(offset));
            std::copy(bytes.begin(), bytes.end(), source.Data());
            GuardedBytes out(bytes.size(), offset);
            CountCase();
            ASSERT_EQ(QyMono8ImgProcess(source.Data(), out.Data(), width, height, &record), QY_OK);
            EXPECT_EQ(Difference(out, expected), "") << width << " x " << height;
            EXPECT_EQ(Difference(source, repaired), "") << "source";
            std::copy(bytes.begin(), bytes.end(), source.Data());
            CountCase();
            ASSERT_EQ(QyMono8ImgProcess(source.Data(), source.Data(), width, height, &record),
                      QY_OK);
            EXPECT_EQ(Difference(source, expected), "") << "in place";
        });
    }
};

TEST_P(MonoProcessing, GivesWhatItsStagesGive) {
    for (int width = 1; width <= 100; ++width) {
        ExpectSame(width, 7, Content::Random, static_cast<size_t>(width % 3));
    }
    for (int height = 1; height <= 12; ++height) {
        ExpectSame(20, height, Content::Random, 0);
    }
    for (const Content content : kContents) {
        ExpectSame(150, 20, content, 1);
    }
}

INSTANTIATE_TEST_SUITE_P(All, MonoProcessing, testing::Range(0, 8));

TEST(MonoProcessingStages, ASharpeningFactorOutOfRangeLeavesTheImageUnsharpened) {
    Bytes source = ToBytes(MakeScene(20, 10, Content::Random));
    QyMonoImgRecord record{};
    record.Sharpness = 1;
    for (const float factor : {0.0F, 0.09F, 5.01F, std::numeric_limits<float>::quiet_NaN()}) {
        record.SharpFactor = factor;
        Bytes out(source.size());
        EXPECT_EQ(QyMono8ImgProcess(source.data(), out.data(), 20, 10, &record), QY_OK);
        EXPECT_EQ(out, source);
    }
}

/// A call that succeeds.
template <class Record>
struct Call {
    Call() {
        stages.Lut = lut.data();
        stages.LutSize = 256;
    }
    Bytes lut = MakeLut();
    std::vector<uint16_t> param = MakeParam(kMatrix);
    Bytes source = Bytes(36, 7);
    GuardedBytes destination{108, 0};
    Record stages{};
    const Record* record = &stages;
    void* src = source.data();
    void* dst = destination.Data();
    int32_t width = 6;
    int32_t height = 6;

    bool IsUntouched() const { return destination.IsUntouched() && source == Bytes(36, 7); }
};

template <class Record>
std::vector<Refusal<Call<Record>>> FrameRefusals() {
    using TheCall = Call<Record>;
    return {
        {"record", [](TheCall& c) { c.record = nullptr; }, QY_PARAMETER_INVALID},
        {"acceleration", [](TheCall& c) { c.stages.Accelerate = 1; }, QY_ACCELERATE_UNAVAILABLE},
        {"source", [](TheCall& c) { c.src = nullptr; }, QY_PARAMETER_INVALID},
        {"destination", [](TheCall& c) { c.dst = nullptr; }, QY_PARAMETER_INVALID},
        {"no width", [](TheCall& c) { c.width = 0; }, QY_PARAMETER_OUT_OF_BOUND},
        {"no height", [](TheCall& c) { c.height = 0; }, QY_PARAMETER_OUT_OF_BOUND},
        {"negative width", [](TheCall& c) { c.width = -6; }, QY_PARAMETER_OUT_OF_BOUND},
        {"negative height", [](TheCall& c) { c.height = -6; }, QY_PARAMETER_OUT_OF_BOUND},
    };
}

TEST(ProcessingChecks, ComeInOrderForRawFrames) {
    using TheCall = Call<QyRawImgRecord>;
    auto refusals = FrameRefusals<QyRawImgRecord>();
    const std::vector<Refusal<TheCall>> more = {
        {"size of the coefficients",
         [](TheCall& c) {
             c.stages.CCParam = c.param.data();
             c.stages.CCParamSize = 9;
         },
         QY_PARAMETER_INVALID},
        {"size of the table", [](TheCall& c) { c.stages.LutSize = 255; }, QY_PARAMETER_INVALID},
        {"method", [](TheCall& c) { c.stages.Method = 3; }, QY_NOT_SUPPORTED},
        {"negative method", [](TheCall& c) { c.stages.Method = -1; }, QY_NOT_SUPPORTED},
        {"layout", [](TheCall& c) { c.stages.Filter = 5; }, QY_NOT_SUPPORTED},
        {"negative layout", [](TheCall& c) { c.stages.Filter = -1; }, QY_NOT_SUPPORTED},
    };
    refusals.insert(refusals.end(), more.begin(), more.end());
    ExpectFirstRefusalDecides(refusals, [](const TheCall& c) {
        return QyRaw8ImgProcess(c.src, c.dst, c.width, c.height, c.record);
    });
}

TEST(ProcessingChecks, ComeInOrderForMonochromeFrames) {
    using TheCall = Call<QyMonoImgRecord>;
    auto refusals = FrameRefusals<QyMonoImgRecord>();
    refusals.push_back(
        {"size of the table", [](TheCall& c) { c.stages.LutSize = 257; }, QY_PARAMETER_INVALID});
    ExpectFirstRefusalDecides(refusals, [](const TheCall& c) {
        return QyMono8ImgProcess(c.src, c.dst, c.width, c.height, c.record);
    });
}

TEST(ProcessingChecks, AccelerationIsUnavailableBeforeTheBuffersAreLookedAt) {
    QyRawImgRecord raw{};
    raw.Accelerate = 1;
    EXPECT_EQ(QyRaw8ImgProcess(nullptr, nullptr, 0, 0, &raw), QY_ACCELERATE_UNAVAILABLE);
    QyMonoImgRecord mono{};
    mono.Accelerate = 1;
    EXPECT_EQ(QyMono8ImgProcess(nullptr, nullptr, 0, 0, &mono), QY_ACCELERATE_UNAVAILABLE);
}

TEST(ProcessingChecks, SizesOfWhatIsAbsentDoNotMatter) {
    Bytes source(36, 7);
    Bytes out(108);
    QyRawImgRecord raw{};
    raw.LutSize = 5;
    raw.CCParamSize = 5;
    EXPECT_EQ(QyRaw8ImgProcess(source.data(), out.data(), 6, 6, &raw), QY_OK);
    QyMonoImgRecord mono{};
    mono.LutSize = 5;
    EXPECT_EQ(QyMono8ImgProcess(source.data(), out.data(), 6, 6, &mono), QY_OK);
}

}  // namespace
