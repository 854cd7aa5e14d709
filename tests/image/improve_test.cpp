// Colour correction and tone of whole images.

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <random>
#include <system_error>
#include <vector>

#include "Bytes.h"
#include "ImproveReference.h"
#include "Refusals.h"
#include "TestColourRecord.h"

namespace {

using ImproveReference::Improvement;
using ToneRecord = std::vector<uint32_t>;

ToneRecord MakeGamma(double gamma) {
    ToneRecord record(QY_TONE_RECORD_SIZE / sizeof(uint32_t));
    int32_t size = QY_TONE_RECORD_SIZE;
    EXPECT_EQ(QyGetGammatLut(record.data(), &size, gamma), QY_OK);
    return record;
}

ToneRecord MakeContrast(int contrast) {
    ToneRecord record(QY_TONE_RECORD_SIZE / sizeof(uint32_t));
    int32_t size = QY_TONE_RECORD_SIZE;
    EXPECT_EQ(QyGetContrastLut(contrast, record.data(), &size), QY_OK);
    return record;
}

/// A record without any order.
ToneRecord MakeNoise(uint32_t kind, uint32_t most) {
    ToneRecord record;
    std::mt19937 random(most);
    while (record.size() < 4096) {
        record.push_back(static_cast<uint32_t>(random() % (uint64_t{most} + 1)));
    }
    record.push_back(kind);
    return record;
}

/// One of the three functions.
struct ImprovementFunction {
    const char* name;
    size_t width;
    size_t red;
    QY_STATUS (*run)(const void* src, void* dst, int width, int height, const Improvement& how);
};

const ImprovementFunction kImprovementFunctions[] = {
    {"Rgb", 3, 0,
     [](const void* src, void* dst, int width, int height, const Improvement& how) {
         return QyImageImprovment(src, dst, width, height, how.record, how.contrast, how.gamma);
     }},
    {"RgbByOrder", 3, 0,
     [](const void* src, void* dst, int width, int height, const Improvement& how) {
         return QyImageImprovmentEx(src, dst, width, height, how.record, how.contrast, how.gamma,
                                    QY_ORDER_RGB);
     }},
    {"BgrByOrder", 3, 2,
     [](const void* src, void* dst, int width, int height, const Improvement& how) {
         return QyImageImprovmentEx(src, dst, width, height, how.record, how.contrast, how.gamma,
                                    QY_ORDER_BGR);
     }},
    {"Argb", 4, 0,
     [](const void* src, void* dst, int width, int height, const Improvement& how) {
         return QyARGBImageImprovment(src, dst, width, height, how.record, how.contrast, how.gamma);
     }},
};

/// ImprovementFunction, and which of record, contrast and gamma are given, by bits.
class Improve : public testing::TestWithParam<std::tuple<ImprovementFunction, int>> {
protected:
    Improve() : m_contrast(MakeContrast(60)), m_gamma(MakeGamma(0.6)) {
        m_record.SetMatrix({25, -6, -3, -4, 22, -2, 1, -9, 24});
    }

    const ImprovementFunction& TheFunction() const { return std::get<0>(GetParam()); }
    Improvement Make() const {
        Improvement how;
        const int given = std::get<1>(GetParam());
        how.record = (given & 1) != 0 ? &m_record.record : nullptr;
        how.contrast = (given & 2) != 0 ? m_contrast.data() : nullptr;
        how.gamma = (given & 4) != 0 ? m_gamma.data() : nullptr;
        how.width = TheFunction().width;
        how.red = TheFunction().red;
        how.blue = 2 - how.red;
        return how;
    }
    void ExpectSame(int width, int height, Content content, size_t offset) const {
        const Improvement how = Make();
        const auto pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
        const auto image = MakeBytes(pixels * how.width, content);
        const auto expected = ImproveReference::Improve(image, how);
        const BytesCall call = [&](const void* src, void* dst) {
            return TheFunction().run(src, dst, width, height, how);
        };
        ExpectSameOnAll(call, image, expected, offset);
    }
    void ExpectAllSame() const {
        for (const Content content : kContents) {
            ExpectSame(70, 9, content, 0);
        }
    }

    TestRecord m_record;
    ToneRecord m_contrast;
    ToneRecord m_gamma;
};

TEST_P(Improve, StructuredFrames) {
    ExpectAllSame();
}

TEST_P(Improve, EveryWidthUpToSomeVectors) {
    for (int width = 1; width <= 100; ++width) {
        ExpectSame(width, 1, Content::Random, static_cast<size_t>(width % 4));
    }
    ExpectSame(33, 21, Content::Random, 3);
}

TEST_P(Improve, AtAnyAddress) {
    for (size_t offset = 0; offset < kAddresses; ++offset) {
        ExpectSame(75, 2, Content::Random, offset);
    }
}

TEST_P(Improve, TablesWithoutAnyOrder) {
    m_record.SetNoise(1, -2000, 4000);
    m_contrast = MakeNoise(1, 4095);
    m_gamma = MakeNoise(0, 4095);
    ExpectAllSame();
    m_record.SetNoise(2, -32768, 32767);
    m_contrast = MakeNoise(1, 0xFFFFFFFF);
    ExpectAllSame();
}

TEST_P(Improve, SumsThatLeaveSixteenBits) {
    constexpr int kMatrices[][9] = {
        {128, -128, 128, -128, -128, -128, 128, 128, 128},
        {42, 43, 43, 43, 43, 43, -43, -43, -42},
        {0, 0, 0, 100, 28, 0, 1, -1, 0},
    };
    for (const auto& matrix : kMatrices) {
        m_record.SetMatrix(matrix);
        ExpectAllSame();
    }
}

TEST_P(Improve, TablesOfWhichOneEntryIsNoMultiple) {
    m_record.record.table[4][200] = 4000;
    ExpectAllSame();
}

TEST_P(Improve, GentleTables) {
    for (const double gamma : {0.1, 0.45, 1.0, 1.8, 2.2, 10.0}) {
        m_gamma = MakeGamma(gamma);
        for (const int contrast : {-50, 0, 20, 100}) {
            m_contrast = MakeContrast(contrast);
            ExpectSame(40, 7, Content::Random, 0);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, Improve, testing::Combine(testing::ValuesIn(kImprovementFunctions), testing::Range(1, 8)),
    [](const auto& test) {
        return std::string(std::get<0>(test.param).name) + std::to_string(std::get<1>(test.param));
    });

TEST(ImproveOrder, SwapsTheRolesOfFirstAndLastByteAndLeavesTheMatrix) {
    TestRecord record;
    record.SetMatrix({16, 0, 8, 0, 16, 0, 0, 0, 4});
    const uint8_t rgb[3] = {100, 50, 40};
    const uint8_t bgr[3] = {40, 50, 100};
    uint8_t out[3] = {};
    ASSERT_EQ(QyImageImprovmentEx(rgb, out, 1, 1, &record.record, nullptr, nullptr, 0), QY_OK);
    EXPECT_EQ((std::vector<int>{out[0], out[1], out[2]}), (std::vector<int>{120, 50, 10}));
    ASSERT_EQ(QyImageImprovmentEx(bgr, out, 1, 1, &record.record, nullptr, nullptr, 1), QY_OK);
    EXPECT_EQ((std::vector<int>{out[0], out[1], out[2]}), (std::vector<int>{10, 50, 120}));
}

TEST(ImproveOrder, MakesNoDifferenceWithToneTablesAlone) {
    const auto image = MakeBytes(300, Content::Random);
    const auto contrast = MakeContrast(30);
    const auto gamma = MakeGamma(2);
    std::vector<uint8_t> rgb(300);
    std::vector<uint8_t> bgr(300);
    for (const uint32_t* const ofGamma : {gamma.data(), static_cast<const uint32_t*>(nullptr)}) {
        const auto run = [&](std::vector<uint8_t>& out, int order) {
            return QyImageImprovmentEx(image.data(), out.data(), 10, 10, nullptr, contrast.data(),
                                       ofGamma, order);
        };
        ASSERT_EQ(run(rgb, QY_ORDER_RGB), QY_OK);
        ASSERT_EQ(run(bgr, QY_ORDER_BGR), QY_OK);
        EXPECT_EQ(rgb, bgr);
    }
}

/// Runs `improve` from one image to another and in place, and compares.
template <class Run>
void ExpectTheSameInPlace(const Run& improve) {
    constexpr size_t kSize = 37 * 11 * 4;
    std::vector<uint8_t> source(kSize);
    std::mt19937 random(7);
    std::generate(source.begin(), source.end(), [&] { return static_cast<uint8_t>(random()); });
    std::vector<uint8_t> expected = source;
    ASSERT_EQ(improve(source.data(), expected.data()), QY_OK);
    EXPECT_NE(expected, source);
    ASSERT_EQ(improve(source.data(), source.data()), QY_OK);
    EXPECT_EQ(source, expected);
}

TEST(ImproveInPlace, GivesTheSameImageWithAMatrixOrATableAlone) {
    TestRecord small;
    small.SetMatrix({20, -3, -1, -2, 21, -3, 1, -5, 20});
    TestRecord rough;
    rough.SetNoise(3, -4000, 4000);
    std::vector<uint32_t> gamma(QY_TONE_RECORD_SIZE / sizeof(uint32_t));
    int32_t size = QY_TONE_RECORD_SIZE;
    ASSERT_EQ(QyGetGammatLut(gamma.data(), &size, 2.0), QY_OK);
    for (const QyColorCorrectionRecord* const record :
         {&small.record, &rough.record, static_cast<QyColorCorrectionRecord*>(nullptr)}) {
        ExpectTheSameInPlace([&](const uint8_t* src, uint8_t* dst) {
            return QyImageImprovment(src, dst, 37, 11, record, nullptr, gamma.data());
        });
        ExpectTheSameInPlace([&](const uint8_t* src, uint8_t* dst) {
            return QyImageImprovmentEx(src, dst, 37, 11, record, nullptr, gamma.data(),
                                       QY_ORDER_BGR);
        });
        ExpectTheSameInPlace([&](const uint8_t* src, uint8_t* dst) {
            return QyARGBImageImprovment(src, dst, 37, 11, record, nullptr, gamma.data());
        });
    }
}

TEST(ImproveLock, ThatFailsIsASystemErrorAndWritesNothing) {
    TestRecord record;
    const auto image = MakeBytes(16, Content::Random);
    GuardedBytes out(16, 0);
    Improvement how;
    how.record = &record.record;
    const auto codeOf = [&](const ImprovementFunction& function) {
        try {
            function.run(image.data(), out.Data(), 2, 2, how);
            return 0;
        } catch (const std::system_error& error) {
            return error.code().value();
        }
    };
    ASSERT_EQ(pthread_mutex_lock(record.Mutex()), 0);
    for (const ImprovementFunction& function : kImprovementFunctions) {
        EXPECT_EQ(codeOf(function), EDEADLK) << function.name;
    }
    EXPECT_EQ(pthread_mutex_unlock(record.Mutex()), 0);
    record.record.lock = nullptr;
    for (const ImprovementFunction& function : kImprovementFunctions) {
        EXPECT_EQ(codeOf(function), EINVAL) << function.name;
    }
    EXPECT_TRUE(out.IsUntouched());
}

TEST(ImproveLock, IsLeftFree) {
    TestRecord record;
    const auto image = MakeBytes(16, Content::Random);
    std::vector<uint8_t> out(16);
    Improvement how;
    how.record = &record.record;
    for (const ImprovementFunction& function : kImprovementFunctions) {
        EXPECT_EQ(function.run(image.data(), out.data(), 2, 2, how), QY_OK);
        EXPECT_EQ(pthread_mutex_lock(record.Mutex()), 0) << function.name;
        EXPECT_EQ(pthread_mutex_unlock(record.Mutex()), 0) << function.name;
    }
}

TEST(ImproveLock, IsNotTakenByACallThatIsRefused) {
    TestRecord record;
    record.record.lock = nullptr;
    const auto image = MakeBytes(16, Content::Random);
    Improvement how;
    how.record = &record.record;
    for (const ImprovementFunction& function : kImprovementFunctions) {
        EXPECT_EQ(function.run(image.data(), nullptr, 2, 2, how), QY_PARAMETER_INVALID);
    }
}

/// A call that succeeds.
struct ImprovementCall {
    TestRecord owner;
    ToneRecord contrastRecord = MakeNoise(1, 4095);
    ToneRecord gammaRecord = MakeNoise(0, 4095);
    std::vector<uint8_t> image = std::vector<uint8_t>(64);
    GuardedBytes destination{64, 0};
    const void* src = image.data();
    void* dst = destination.Data();
    int32_t width = 4;
    int32_t height = 4;
    Improvement how{&owner.record, contrastRecord.data(), gammaRecord.data()};
    int32_t order = QY_ORDER_RGB;

    bool IsUntouched() const { return destination.IsUntouched(); }
};

void GiveGammaForContrast(ImprovementCall& call) {
    if (call.how.contrast != nullptr) {
        call.contrastRecord.back() = 0;
    }
}

const std::vector<Refusal<ImprovementCall>> kImprovementRefusals = {
    {"source", [](ImprovementCall& c) { c.src = nullptr; }, QY_PARAMETER_INVALID},
    {"destination", [](ImprovementCall& c) { c.dst = nullptr; }, QY_PARAMETER_INVALID},
    {"no width", [](ImprovementCall& c) { c.width = 0; }, QY_PARAMETER_OUT_OF_BOUND},
    {"no height", [](ImprovementCall& c) { c.height = 0; }, QY_PARAMETER_OUT_OF_BOUND},
    {"negative width", [](ImprovementCall& c) { c.width = -4; }, QY_PARAMETER_OUT_OF_BOUND},
    {"negative height", [](ImprovementCall& c) { c.height = -4; }, QY_PARAMETER_OUT_OF_BOUND},
    {"kind of the contrast", GiveGammaForContrast, QY_PARAMETER_INVALID},
    {"kind of the gamma", [](ImprovementCall& c) { c.gammaRecord.back() = 1; },
     QY_PARAMETER_INVALID},
    {"nothing to do", [](ImprovementCall& c) { c.how = Improvement(); }, QY_PARAMETER_INVALID},
};

TEST(ImproveChecks, ComeInOrder) {
    for (const ImprovementFunction& function : kImprovementFunctions) {
        SCOPED_TRACE(function.name);
        ExpectFirstRefusalDecides(kImprovementRefusals, [&](const ImprovementCall& c) {
            return function.run(c.src, c.dst, c.width, c.height, c.how);
        });
    }
}

TEST(ImproveChecks, AnUnknownOrderComesBeforeEverythingElse) {
    std::vector<Refusal<ImprovementCall>> refusals = {
        {"order", [](ImprovementCall& c) { c.order = 2; }, QY_NOT_SUPPORTED},
        {"negative order", [](ImprovementCall& c) { c.order = -1; }, QY_NOT_SUPPORTED},
    };
    refusals.insert(refusals.end(), kImprovementRefusals.begin(), kImprovementRefusals.end());
    ExpectFirstRefusalDecides(refusals, [](const ImprovementCall& c) {
        return QyImageImprovmentEx(c.src, c.dst, c.width, c.height, c.how.record, c.how.contrast,
                                   c.how.gamma, c.order);
    });
}

TEST(ImproveChecks, NothingToDoIsInvalidAndNoSuccess) {
    const std::vector<uint8_t> image(12);
    std::vector<uint8_t> out(12);
    for (const ImprovementFunction& function : kImprovementFunctions) {
        EXPECT_EQ(function.run(image.data(), out.data(), 3, 1, {}), QY_PARAMETER_INVALID);
    }
}

TEST(ImproveChecks, AGammaRecordIsNoContrast) {
    const std::vector<uint8_t> image(12);
    std::vector<uint8_t> out(12);
    const auto gamma = MakeGamma(1);
    const auto contrast = MakeContrast(0);
    for (const ImprovementFunction& function : kImprovementFunctions) {
        Improvement how;
        how.contrast = gamma.data();
        EXPECT_EQ(function.run(image.data(), out.data(), 3, 1, how), QY_PARAMETER_INVALID);
        how.contrast = nullptr;
        how.gamma = contrast.data();
        EXPECT_EQ(function.run(image.data(), out.data(), 3, 1, how), QY_PARAMETER_INVALID);
    }
}

}  // namespace
