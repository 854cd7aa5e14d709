// The coefficients of a record of colour correction.

#include <gtest/gtest.h>

#include <array>
#include <system_error>

#include "Frames.h"
#include "Refusals.h"
#include "TestColourRecord.h"

namespace {

using Words = std::array<uint16_t, 9>;

/// The words in the order and by the formulas of a plain table.
Words Expected(const int (&c)[9], int saturation) {
    if (saturation == 0) {
        return {77, 150, 29, 406, 285, 285, 333, 406, 333};
    }
    const int v = saturation * 16;
    const int p = (v - 1024) * 183552 / 1048576;
    const int q = 1024 - v;
    const int words[9] = {c[0] * 16 + p,
                          c[4] * 16 + p,
                          c[8] * 16 + p,
                          c[1] * 16 + q * 153856 / 1048576 + 256,
                          c[5] * 16 + q * 29952 / 1048576 + 256,
                          c[2] * 16 + q * 29952 / 1048576 + 256,
                          c[3] * 16 + q * 153856 / 1048576 + 256,
                          c[7] * 16 + q * 79616 / 1048576 + 256,
                          c[6] * 16 + q * 103936 / 1048576 + 256};
    Words result{};
    for (size_t i = 0; i < result.size(); ++i) {
        result[i] = static_cast<uint16_t>(words[i]);
    }
    return result;
}

Words Calculated(const QyColorCorrectionRecord& record, int saturation) {
    Words words{};
    EXPECT_EQ(QyCalcCCParam(&record, static_cast<int16_t>(saturation), words.data(), 18), QY_OK);
    return words;
}

TEST(Coefficients, FollowTheSaturation) {
    constexpr int kMatrices[][9] = {
        {25, -6, -3, -4, 22, -2, 1, -9, 24},
        {0, 0, 0, 0, 0, 0, 0, 0, 0},
        {-2048, 2047, 1000, 3, -7, 9, 4096, -4096, 128},
    };
    TestRecord record;
    for (const auto& matrix : kMatrices) {
        for (int k = 0; k < 9; ++k) {
            record.record.table[k][1] = static_cast<int16_t>(matrix[k]);
        }
        for (int saturation = 0; saturation <= 128; ++saturation) {
            EXPECT_EQ(Calculated(record.record, saturation), Expected(matrix, saturation))
                << saturation;
        }
    }
}

TEST(Coefficients, AtTheNeutralSaturationAreTheMatrixDiagonalFirst) {
    TestRecord record;
    record.SetMatrix({16, 1, 2, 3, 17, 5, 6, 7, 18});
    EXPECT_EQ(Calculated(record.record, 64),
              (Words{256, 272, 288, 16 + 256, 80 + 256, 32 + 256, 48 + 256, 112 + 256, 96 + 256}));
}

TEST(Coefficients, WithoutSaturationGiveTheGreyImage) {
    TestRecord record;
    record.SetMatrix({25, -6, -3, -4, 22, -2, 1, -9, 24});
    EXPECT_EQ(Calculated(record.record, 0), (Words{77, 150, 29, 406, 285, 285, 333, 406, 333}));
}

TEST(Coefficients, ComeFromEntryOneOfEachTable) {
    TestRecord record;
    record.SetNoise(5, -100, 100);
    int entries[9];
    for (int k = 0; k < 9; ++k) {
        entries[k] = record.record.table[k][1];
    }
    EXPECT_EQ(Calculated(record.record, 100), Expected(entries, 100));
}

TEST(Coefficients, ANegativeSaturationIsTooLarge) {
    const TestRecord record;
    Words words{};
    EXPECT_EQ(QyCalcCCParam(&record.record, -1, words.data(), 18), QY_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(words, Words{});
}

TEST(Coefficients, LeaveTheLockFree) {
    TestRecord record;
    Calculated(record.record, 64);
    EXPECT_EQ(pthread_mutex_lock(record.Mutex()), 0);
    EXPECT_EQ(pthread_mutex_unlock(record.Mutex()), 0);
}

TEST(Coefficients, ALockThatFailsIsASystemError) {
    TestRecord record;
    Words words{};
    ASSERT_EQ(pthread_mutex_lock(record.Mutex()), 0);
    try {
        QyCalcCCParam(&record.record, 0, words.data(), 18);
        ADD_FAILURE() << "the lock was held twice";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), EDEADLK);
    }
    EXPECT_EQ(pthread_mutex_unlock(record.Mutex()), 0);
    record.record.lock = nullptr;
    EXPECT_THROW(QyCalcCCParam(&record.record, 64, words.data(), 18), std::system_error);
    EXPECT_EQ(words, Words{});
}

/// A call that succeeds.
struct CoefficientCall {
    TestRecord owner;
    GuardedBytes words{sizeof(Words), 0};
    const QyColorCorrectionRecord* record = &owner.record;
    void* coefficients = words.Data();
    int16_t saturation = 64;
    uint8_t size = 18;

    bool IsUntouched() const { return words.IsUntouched(); }
};

TEST(CoefficientChecks, ComeInOrder) {
    const std::vector<Refusal<CoefficientCall>> refusals = {
        {"coefficients", [](CoefficientCall& c) { c.coefficients = nullptr; },
         QY_PARAMETER_INVALID},
        {"size", [](CoefficientCall& c) { c.size = 17; }, QY_PARAMETER_INVALID},
        {"larger size", [](CoefficientCall& c) { c.size = 19; }, QY_PARAMETER_INVALID},
        {"saturation", [](CoefficientCall& c) { c.saturation = 129; }, QY_PARAMETER_OUT_OF_BOUND},
        {"negative saturation", [](CoefficientCall& c) { c.saturation = -64; },
         QY_PARAMETER_OUT_OF_BOUND},
        {"record", [](CoefficientCall& c) { c.record = nullptr; }, QY_PARAMETER_INVALID},
    };
    ExpectFirstRefusalDecides(refusals, [](const CoefficientCall& c) {
        const auto status =
            QyCalcCCParam(c.record, c.saturation, static_cast<uint16_t*>(c.coefficients), c.size);
        EXPECT_TRUE(c.words.IsGuardWhole());
        return status;
    });
}

}  // namespace
