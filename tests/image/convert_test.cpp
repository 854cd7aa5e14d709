// Raw formats: what the functions refuse, and what their edges are.

#include "Frames.h"
#include "QyImageProc.h"
#include "Refusals.h"

namespace {

struct ConversionCall {
    std::vector<uint8_t> source = std::vector<uint8_t>(64);
    GuardedBytes destination{64, 0};
    const void* src = source.data();
    void* dst = destination.Data();
    int32_t width = 4;
    int32_t height = 2;
    int32_t validBit = 0;

    bool IsUntouched() const { return destination.IsUntouched(); }
};

using ConversionRefusals = std::vector<Refusal<ConversionCall>>;

const ConversionRefusals kFrame = {
    {"source", [](ConversionCall& c) { c.src = nullptr; }, QY_PARAMETER_INVALID},
    {"destination", [](ConversionCall& c) { c.dst = nullptr; }, QY_PARAMETER_INVALID},
    {"no width", [](ConversionCall& c) { c.width = 0; }, QY_PARAMETER_OUT_OF_BOUND},
    {"no height", [](ConversionCall& c) { c.height = 0; }, QY_PARAMETER_OUT_OF_BOUND},
    {"negative width", [](ConversionCall& c) { c.width = -4; }, QY_PARAMETER_OUT_OF_BOUND},
    {"negative height", [](ConversionCall& c) { c.height = -2; }, QY_PARAMETER_OUT_OF_BOUND},
};

ConversionRefusals FrameAnd(const ConversionRefusals& more) {
    ConversionRefusals all = kFrame;
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

/// A source without a destination of its own. An argument that is null as well
/// stays null.
const ConversionRefusals kPacked =
    FrameAnd({{"same memory", [](ConversionCall& c) { c.src = c.dst; }, QY_PARAMETER_INVALID}});

const ConversionRefusals kReduced = FrameAnd(
    {{"bits", [](ConversionCall& c) { c.validBit = 5; }, QY_PARAMETER_OUT_OF_BOUND},
     {"negative bits", [](ConversionCall& c) { c.validBit = -1; }, QY_PARAMETER_OUT_OF_BOUND}});

TEST(ConvertRefusals, OfPacked12ComeInOrder) {
    ExpectFirstRefusalDecides(kPacked, [](ConversionCall& c) {
        return QyRaw12PackedToRaw16(c.src, c.dst, c.width, c.height);
    });
}

TEST(ConvertRefusals, OfPacked10ComeInOrder) {
    ExpectFirstRefusalDecides(kPacked, [](ConversionCall& c) {
        return QyRaw10PackedToRaw16(c.src, c.dst, c.width, c.height);
    });
}

TEST(ConvertRefusals, OfWordsComeInOrder) {
    ExpectFirstRefusalDecides(kReduced, [](ConversionCall& c) {
        return QyRaw16toRaw8(c.src, c.dst, c.width, c.height, c.validBit);
    });
}

TEST(ConvertRefusals, OfThreeWordsAPixelComeInOrder) {
    ExpectFirstRefusalDecides(kReduced, [](ConversionCall& c) {
        return QyRGB48toRGB24(c.src, c.dst, c.width, c.height, c.validBit);
    });
}

TEST(ConvertRaw16, SaturatesBeforeItShifts) {
    const uint16_t words[] = {0x0FF0, 0x1000, 0x0010, 0xFFFF, 0x000F};
    uint8_t bytes[5] = {};
    EXPECT_EQ(QyRaw16toRaw8(words, bytes, 5, 1, QY_BIT_4_11), QY_OK);
    EXPECT_EQ(bytes[0], 255);
    EXPECT_EQ(bytes[1], 255);
    EXPECT_EQ(bytes[2], 1);
    EXPECT_EQ(bytes[3], 255);
    EXPECT_EQ(bytes[4], 0);
}

TEST(ConvertRaw16, KnowsFiveChoicesOfBits) {
    const uint16_t word = 0x1234;
    uint8_t byte = kGuard;
    EXPECT_EQ(QyRaw16toRaw8(&word, &byte, 1, 1, 5), QY_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(QyRGB48toRGB24(&word, &byte, 1, 1, 5), QY_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(byte, kGuard);
}

TEST(ConvertRgb48, KeepsTheOrderOfTheChannels) {
    const uint16_t pixel[] = {0x10, 0x21, 0x32};
    uint8_t bytes[3] = {};
    EXPECT_EQ(QyRGB48toRGB24(pixel, bytes, 1, 1, QY_BIT_0_7), QY_OK);
    EXPECT_EQ(bytes[0], 0x10);
    EXPECT_EQ(bytes[1], 0x21);
    EXPECT_EQ(bytes[2], 0x32);
}

TEST(ConvertPacked12, HasTwoSamplesInThreeBytes) {
    const uint8_t packed[] = {0xAB, 0xCD, 0xEF};
    uint16_t samples[2] = {};
    EXPECT_EQ(QyRaw12PackedToRaw16(packed, samples, 2, 1), QY_OK);
    EXPECT_EQ(samples[0], 0xDAB);
    EXPECT_EQ(samples[1], 0xEFC);
}

TEST(ConvertPacked12, LeavesTheLastOfAnOddNumberOfSamples) {
    const uint8_t packed[] = {0xAB, 0xCD, 0xEF};
    uint16_t samples[3] = {0, 0, 0x5A5A};
    EXPECT_EQ(QyRaw12PackedToRaw16(packed, samples, 3, 1), QY_OK);
    EXPECT_EQ(samples[1], 0xEFC);
    EXPECT_EQ(samples[2], 0x5A5A);
}

TEST(ConvertPacked12, WritesNothingForOneSample) {
    const uint8_t packed[] = {0xAB, 0xCD, 0xEF};
    uint16_t sample = 0x5A5A;
    EXPECT_EQ(QyRaw12PackedToRaw16(packed, &sample, 1, 1), QY_OK);
    EXPECT_EQ(sample, 0x5A5A);
}

TEST(ConvertPacked10, TakesTheFourthSampleFromTheSecondWord) {
    const std::vector<uint32_t> packed = {0xC0000000U | 3U << 20 | 2U << 10 | 1U,
                                          0xC0000000U | 6U << 20 | 5U << 10 | 1023U};
    uint16_t samples[5] = {0, 0, 0, 0, 0x5A5A};
    EXPECT_EQ(QyRaw10PackedToRaw16(packed.data(), samples, 2, 2), QY_OK);
    EXPECT_EQ(samples[0], 1);
    EXPECT_EQ(samples[1], 2);
    EXPECT_EQ(samples[2], 3);
    EXPECT_EQ(samples[3], 1023);
    EXPECT_EQ(samples[4], 0x5A5A);
}

}  // namespace
