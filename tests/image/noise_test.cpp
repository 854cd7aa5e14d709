// The noise reduction.

#include "filter/Noise.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "Bytes.h"
#include "NoiseReference.h"

namespace {

/// A scene with noise, three bytes a pixel.
std::vector<uint8_t> MakeNoisy(int width, int height, int strength) {
    const auto scene = MakeRaw(width * 3, height, Content::Edges, 200);
    std::mt19937 random(static_cast<unsigned>(width + height));
    std::vector<uint8_t> image;
    for (const int sample : scene.samples) {
        const int noise = static_cast<int>(random() % static_cast<unsigned>(strength));
        image.push_back(static_cast<uint8_t>(std::min(255, sample + noise)));
    }
    return image;
}

std::vector<uint8_t> MakeContent(int width, int height, Content content) {
    const auto raw = MakeRaw(width * 3, height, content, 255);
    return {raw.samples.begin(), raw.samples.end()};
}

void ExpectSame(const std::vector<uint8_t>& image, int width, int height, size_t offset) {
    const auto expected = NoiseReference::Reduce(image, width, height);
    WithEachInstructionSet([&] {
        GuardedBytes memory(image.size(), offset);
        std::copy(image.begin(), image.end(), memory.Data());
        CountCase();
        QyNoise::Reduce(memory.Data(), static_cast<size_t>(width), static_cast<size_t>(height));
        EXPECT_EQ(Difference(memory, expected), "") << width << " x " << height << " at " << offset;
    });
}

TEST(NoiseReduction, EveryWidthUpToSomeVectors) {
    for (int width = 1; width <= 80; ++width) {
        const auto offset = static_cast<size_t>(width % 3);
        ExpectSame(MakeNoisy(width, 7, 40), width, 7, offset);
        ExpectSame(MakeContent(width, 6, Content::Random), width, 6, offset);
    }
}

TEST(NoiseReduction, WidthsOfManyVectors) {
    for (const int width : {127, 128, 129, 130, 190, 194, 258, 1023}) {
        ExpectSame(MakeContent(width, 7, Content::Random), width, 7, 0);
        ExpectSame(MakeContent(width, 7, Content::Extremes), width, 7, 2);
    }
}

TEST(NoiseReduction, EveryHeight) {
    for (int height = 1; height <= 16; ++height) {
        ExpectSame(MakeNoisy(12, height, 30), 12, height, 0);
    }
}

TEST(NoiseReduction, StructuredFrames) {
    for (const Content content : kContents) {
        ExpectSame(MakeContent(70, 20, content), 70, 20, 0);
        ExpectSame(MakeContent(5, 5, content), 5, 5, 1);
    }
}

TEST(NoiseReduction, AtAnyAddress) {
    for (size_t offset = 0; offset < kAddresses; ++offset) {
        ExpectSame(MakeNoisy(40, 8, 60), 40, 8, offset);
    }
}

// Blocks of three by three pixels side by side, each of one difference.
TEST(NoiseReduction, EveryLevelHasItsTolerance) {
    constexpr int kWidth = 256 * 3;
    for (int level = 0; level < 256; ++level) {
        std::vector<uint8_t> image(size_t{kWidth} * 3 * 3);
        for (size_t i = 0; i < image.size(); ++i) {
            image[i] = static_cast<uint8_t>(i % (kWidth * 3) / 9);
        }
        for (size_t block = 0; block < 256; ++block) {
            uint8_t* const centre = image.data() + (kWidth + block * 3 + 1) * 3;
            std::fill_n(centre, 3, static_cast<uint8_t>(level));
            centre[1] = static_cast<uint8_t>(255 - level);
        }
        ExpectSame(image, kWidth, 3, 0);
    }
}

TEST(NoiseReduction, AFlatAreaStays) {
    const std::vector<uint8_t> flat(size_t{9} * 9 * 3, 77);
    auto image = flat;
    QyNoise::Reduce(image.data(), 9, 9);
    EXPECT_EQ(image, flat);
}

TEST(NoiseReduction, AnImageThatHasNoInnerPixelStays) {
    for (const auto& [width, height] : {std::pair{40, 2}, {2, 40}, {1, 1}}) {
        const auto image = MakeNoisy(width, height, 100);
        auto reduced = image;
        QyNoise::Reduce(reduced.data(), static_cast<size_t>(width), static_cast<size_t>(height));
        EXPECT_EQ(reduced, image);
    }
}

}  // namespace
