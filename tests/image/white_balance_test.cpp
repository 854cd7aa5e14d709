// The gains that make an image grey on average.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "Cases.h"
#include "Frames.h"
#include "InstructionSets.h"
#include "Refusals.h"

namespace {

using Ratios = std::array<double, 3>;

Ratios Measured(const uint8_t* image, int width, int height) {
    Ratios ratios{};
    EXPECT_EQ(QyGetWhiteBalanceRatio(image, width, height, ratios.data(), &ratios[1], &ratios[2]),
              QY_OK);
    return ratios;
}

/// The same, pixel by pixel.
Ratios Reference(const uint8_t* image, int width, int height) {
    double means[3] = {};
    for (int y = 2; y <= height - 3; ++y) {
        for (int x = 2; x <= width - 3; ++x) {
            for (int i = 0; i < 3; ++i) {
                means[i] += image[(y * width + x) * 3 + i];
            }
        }
    }
    for (double& mean : means) {
        mean /= static_cast<double>(width - 4) * (height - 4);
    }
    Ratios ratios = {means[0] < 1e-9 ? 0 : means[1] / means[0], means[1] < 1e-9 ? 0.0 : 1.0,
                     means[2] < 1e-9 ? 0 : means[1] / means[2]};
    const double least = std::min(ratios[0], ratios[2]);
    if (least > 0 && least < 1) {
        for (double& ratio : ratios) {
            ratio /= least;
        }
    }
    return ratios;
}

std::vector<uint8_t> Uniform(size_t pixels, std::array<uint8_t, 3> pixel) {
    std::vector<uint8_t> image;
    for (size_t i = 0; i < pixels; ++i) {
        image.insert(image.end(), pixel.begin(), pixel.end());
    }
    return image;
}

void ExpectSame(int width, int height, Content content, size_t offset) {
    const auto raw = MakeRaw(width * 3, height, content, 255);
    const SourceBytes<uint8_t> image(raw, offset);
    const Ratios expected = Reference(image.Data(), width, height);
    WithEachInstructionSet([&] {
        CountCase();
        EXPECT_EQ(Measured(image.Data(), width, height), expected)
            << width << " x " << height << " at " << offset;
    });
}

TEST(WhiteBalance, OfEveryWidthUpToSomeVectors) {
    for (int width = 5; width <= 150; ++width) {
        ExpectSame(width, 7, Content::Random, static_cast<size_t>(width % 5));
    }
}

TEST(WhiteBalance, OfEveryHeightFromTheSmallest) {
    for (int height = 5; height <= 20; ++height) {
        ExpectSame(31, height, Content::Ramp, 1);
    }
}

TEST(WhiteBalance, AtAnyAddress) {
    for (size_t offset = 0; offset < kAddresses; ++offset) {
        ExpectSame(77, 6, Content::Random, offset);
        ExpectSame(200, 6, Content::Random, offset);
    }
}

TEST(WhiteBalance, OfStructuredFrames) {
    for (const Content content : kContents) {
        ExpectSame(5, 5, content, 0);
        ExpectSame(400, 300, content, 0);
    }
    ExpectSame(900, 700, Content::Extremes, 0);
}

TEST(WhiteBalance, WhiteEverywhereIsSummedWithoutLoss) {
    WithEachInstructionSet([] {
        const auto image = Uniform(size_t{2000} * 300, {255, 255, 255});
        EXPECT_EQ(Measured(image.data(), 2000, 300), (Ratios{1, 1, 1}));
    });
}

TEST(WhiteBalance, AnAllBlackImageGivesZeros) {
    const auto image = Uniform(100, {0, 0, 0});
    EXPECT_EQ(Measured(image.data(), 10, 10), (Ratios{0, 0, 0}));
}

TEST(WhiteBalance, TheSmallestGainIsOne) {
    EXPECT_EQ(Measured(Uniform(25, {200, 100, 50}).data(), 5, 5), (Ratios{1, 2, 4}));
    EXPECT_EQ(Measured(Uniform(25, {50, 100, 200}).data(), 5, 5), (Ratios{4, 2, 1}));
    EXPECT_EQ(Measured(Uniform(25, {50, 100, 25}).data(), 5, 5), (Ratios{2, 1, 4}));
}

TEST(WhiteBalance, AChannelWithoutLightLeavesTheOthersAsTheyAre) {
    EXPECT_EQ(Measured(Uniform(25, {0, 100, 200}).data(), 5, 5), (Ratios{0, 1, 0.5}));
    EXPECT_EQ(Measured(Uniform(25, {200, 0, 200}).data(), 5, 5), (Ratios{0, 0, 0}));
    EXPECT_EQ(Measured(Uniform(25, {200, 100, 0}).data(), 5, 5), (Ratios{0.5, 1, 0}));
}

TEST(WhiteBalance, ABorderOfTwoPixelsStaysOut) {
    auto image = Uniform(25, {255, 0, 255});
    const size_t centre = size_t{12} * 3;
    image[centre] = 10;
    image[centre + 1] = 20;
    image[centre + 2] = 5;
    EXPECT_EQ(Measured(image.data(), 5, 5), (Ratios{2, 1, 4}));
}

/// A call that succeeds.
struct BalanceCall {
    std::vector<uint8_t> image = Uniform(25, {9, 9, 9});
    Ratios ratios{-1, -1, -1};
    const void* src = image.data();
    int32_t width = 5;
    int32_t height = 5;
    double* ratio0 = ratios.data();
    double* ratio1 = &ratios[1];
    double* ratio2 = &ratios[2];

    bool IsUntouched() const { return ratios == Ratios{-1, -1, -1}; }
};

TEST(WhiteBalanceChecks, ComeInOrder) {
    const std::vector<Refusal<BalanceCall>> refusals = {
        {"source", [](BalanceCall& c) { c.src = nullptr; }, QY_PARAMETER_INVALID},
        {"first ratio", [](BalanceCall& c) { c.ratio0 = nullptr; }, QY_PARAMETER_INVALID},
        {"second ratio", [](BalanceCall& c) { c.ratio1 = nullptr; }, QY_PARAMETER_INVALID},
        {"third ratio", [](BalanceCall& c) { c.ratio2 = nullptr; }, QY_PARAMETER_INVALID},
        {"four columns", [](BalanceCall& c) { c.width = 4; }, QY_PARAMETER_OUT_OF_BOUND},
        {"four rows", [](BalanceCall& c) { c.height = 4; }, QY_PARAMETER_OUT_OF_BOUND},
        {"negative width", [](BalanceCall& c) { c.width = -5; }, QY_PARAMETER_OUT_OF_BOUND},
        {"negative height", [](BalanceCall& c) { c.height = -5; }, QY_PARAMETER_OUT_OF_BOUND},
    };
    ExpectFirstRefusalDecides(refusals, [](const BalanceCall& c) {
        return QyGetWhiteBalanceRatio(c.src, c.width, c.height, c.ratio0, c.ratio1, c.ratio2);
    });
}

}  // namespace
