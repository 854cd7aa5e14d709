// The repair of bright outliers.

#include <gtest/gtest.h>

#include <algorithm>

#include "Bytes.h"
#include "GeometryReference.h"
#include "Refusals.h"

namespace {

using BayerReference::Raw;

/// A frame like a photograph's, with defects strewn over it: lone ones, and rows
/// of them in one colour.
Raw MakeDefective(int width, int height, int limit, unsigned every) {
    Raw raw = MakeRaw(width, height, Content::Random, limit / 16);
    std::mt19937 random(static_cast<unsigned>(width * 31 + height));
    for (int& sample : raw.samples) {
        if (random() % every == 0) {
            sample = static_cast<int>(random() % static_cast<unsigned>(limit + 1));
        }
    }
    return raw;
}

template <class Sample>
void ExpectSame(const Raw& raw, int bits, size_t offset) {
    const SourceBytes<Sample> src(raw, offset);
    const Raw repaired = GeometryReference::Repair(raw, bits);
    const SourceBytes<Sample> samples(repaired, 0);
    const size_t size = raw.samples.size() * sizeof(Sample);
    const std::vector<uint8_t> expected(samples.Data(), samples.Data() + size);
    WithEachInstructionSet([&] {
        GuardedBytes frame(size, offset);
        std::copy_n(src.Data(), size, frame.Data());
        CountCase();
        ASSERT_EQ(QyAutoRawDefectivePixelCorrect(frame.Data(), raw.width, raw.height, bits), QY_OK);
        EXPECT_EQ(Difference(frame, expected), "")
            << raw.width << " x " << raw.height << " of " << bits << " bits at " << offset;
    });
}

void ExpectSame(const Raw& raw, int bits, size_t offset) {
    bits == 8 ? ExpectSame<uint8_t>(raw, bits, offset) : ExpectSame<uint16_t>(raw, bits, offset);
}

/// Bits of a sample.
class Defects : public testing::TestWithParam<int> {
protected:
    static int Limit() { return (1 << GetParam()) - 1; }
};

TEST_P(Defects, EveryWidthUpToSomeVectors) {
    for (int width = 5; width <= 150; ++width) {
        const auto offset = static_cast<size_t>(width % 4);
        ExpectSame(MakeDefective(width, 9, Limit(), 2), GetParam(), offset);
        ExpectSame(MakeDefective(width, 6, Limit(), 20), GetParam(), offset);
    }
}

TEST_P(Defects, AtAnyAddress) {
    for (size_t offset = 0; offset < kAddresses; ++offset) {
        ExpectSame(MakeDefective(75, 6, Limit(), 4), GetParam(), offset);
    }
}

TEST_P(Defects, StructuredFrames) {
    for (const Content content : kContents) {
        ExpectSame(MakeRaw(83, 21, content, Limit()), GetParam(), 0);
        ExpectSame(MakeRaw(5, 5, content, Limit()), GetParam(), 1);
    }
}

TEST_P(Defects, EveryHeightFromTheSmallest) {
    for (int height = 5; height <= 20; ++height) {
        ExpectSame(MakeDefective(40, height, Limit(), 3), GetParam(), 1);
    }
}

TEST_P(Defects, WordsAboveTheBitsAreTakenAsTheyAre) {
    if (GetParam() > 8) {
        ExpectSame(MakeDefective(60, 12, 65535, 3), GetParam(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(All, Defects, testing::Values(8, 9, 10, 12, 14, 15, 16));

/// A call that succeeds and repairs a sample.
struct DefectCall {
    DefectCall() {
        for (size_t i = 0; i < frame.Size(); ++i) {
            frame.Data()[i] = kGuard;
        }
        frame.Data()[kCentre] = 255;
    }
    static constexpr size_t kCentre = 12;
    GuardedBytes frame{50, 0};
    void* buffer = frame.Data();
    int32_t width = 5;
    int32_t height = 5;
    int32_t bits = 8;

    bool IsUntouched() {
        const bool isSame = frame.Data()[kCentre] == 255;
        frame.Data()[kCentre] = kGuard;
        return isSame && frame.IsUntouched();
    }
};

TEST(DefectChecks, ComeInOrder) {
    const std::vector<Refusal<DefectCall>> refusals = {
        {"buffer", [](DefectCall& c) { c.buffer = nullptr; }, QY_PARAMETER_INVALID},
        {"four columns", [](DefectCall& c) { c.width = 4; }, QY_PARAMETER_OUT_OF_BOUND},
        {"four rows", [](DefectCall& c) { c.height = 4; }, QY_PARAMETER_OUT_OF_BOUND},
        {"negative width", [](DefectCall& c) { c.width = -5; }, QY_PARAMETER_OUT_OF_BOUND},
        {"negative height", [](DefectCall& c) { c.height = -5; }, QY_PARAMETER_OUT_OF_BOUND},
        {"seven bits", [](DefectCall& c) { c.bits = 7; }, QY_PARAMETER_OUT_OF_BOUND},
        {"seventeen bits", [](DefectCall& c) { c.bits = 17; }, QY_PARAMETER_OUT_OF_BOUND},
        {"negative bits", [](DefectCall& c) { c.bits = -8; }, QY_PARAMETER_OUT_OF_BOUND},
    };
    ExpectFirstRefusalDecides(refusals, [](const DefectCall& c) {
        return QyAutoRawDefectivePixelCorrect(c.buffer, c.width, c.height, c.bits);
    });
}

std::vector<uint8_t> Repaired(std::vector<uint8_t> frame, int32_t width) {
    const auto height = static_cast<int32_t>(frame.size()) / width;
    EXPECT_EQ(QyAutoRawDefectivePixelCorrect(frame.data(), width, height, 8), QY_OK);
    return frame;
}

TEST(DefectRepair, ASampleThatExceedsOneNeighbourByTenStays) {
    std::vector<uint8_t> frame(25, 100);
    frame[12] = 111;
    EXPECT_EQ(Repaired(frame, 5)[12], 100);
    for (const size_t neighbour : {2U, 10U, 14U, 22U}) {
        auto close = frame;
        close[neighbour] = 101;
        EXPECT_EQ(Repaired(close, 5), close);
    }
}

TEST(DefectRepair, FiveByFiveLooksAtTheCentreAlone) {
    for (size_t i = 0; i < 25; ++i) {
        std::vector<uint8_t> frame(25, 20);
        frame[i] = 200;
        const auto expected = i == 12 ? std::vector<uint8_t>(25, 20) : frame;
        EXPECT_EQ(Repaired(frame, 5), expected) << i;
    }
}

TEST(DefectRepair, ADarkSampleStays) {
    std::vector<uint8_t> frame(25, 200);
    frame[12] = 0;
    EXPECT_EQ(Repaired(frame, 5), frame);
}

// Seven columns. Two samples of the middle row are bright, two columns apart.
TEST(DefectRepair, OfTwoBrightNeighboursTheSecondFollowsTheFirstOnlyOnceThatIsLowEnough) {
    std::vector<uint8_t> frame(35, 20);
    constexpr size_t kFirst = 2 * 7 + 2;
    constexpr size_t kSecond = kFirst + 2;
    frame[kFirst] = 200;
    frame[kSecond] = 180;
    EXPECT_EQ(Repaired(frame, 7), [&] {
        auto expected = frame;
        expected[kFirst] = (20 + 20 + 20 + 180) >> 2;
        expected[kSecond] = (20 + 20 + 20 + 60) >> 2;
        return expected;
    }());
    // The first is repaired to 60, which is within ten of the second.
    frame[kFirst] = 200;
    frame[kSecond] = 30;
    frame[kSecond + 7 * 2] = 19;
    EXPECT_EQ(Repaired(frame, 7)[kFirst], (20 + 20 + 20 + 30) >> 2);
    EXPECT_EQ(Repaired(frame, 7)[kSecond], 30);
    // The brighter one after the first keeps the first from being repaired.
    frame[kFirst] = 180;
    frame[kSecond] = 200;
    EXPECT_EQ(Repaired(frame, 7)[kFirst], 180);
    EXPECT_EQ(Repaired(frame, 7)[kSecond], (20 + 20 + 180 + 19) >> 2);
}

TEST(DefectRepair, TheThresholdGrowsWithTheBits) {
    for (int bits = 9; bits <= 16; ++bits) {
        const int threshold = 10 << (bits - 8);
        for (const int excess : {threshold, threshold + 1}) {
            std::vector<uint16_t> frame(25, 100);
            frame[12] = static_cast<uint16_t>(100 + excess);
            ASSERT_EQ(QyAutoRawDefectivePixelCorrect(frame.data(), 5, 5, bits), QY_OK);
            EXPECT_EQ(frame[12], excess > threshold ? 100 : 100 + excess) << bits;
        }
    }
}

}  // namespace
