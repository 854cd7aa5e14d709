/// @file
/// The frames that the virtual cameras make.
#include "virtual/Scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "virtual/Backdrop.h"
#include "virtual/CameraSettings.h"

using namespace OvVirtual;

namespace {

/// A window of the sensor, unpacked.
struct Image {
    std::size_t width;
    std::vector<unsigned> pixels;

    unsigned At(std::size_t x, std::size_t y) const { return pixels[y * width + x]; }
    double Mean() const {
        return std::accumulate(pixels.begin(), pixels.end(), 0.0) /
               static_cast<double>(pixels.size());
    }
};

FrameSettings Window(bool color, std::size_t x, std::size_t y, std::size_t width,
                     std::size_t height) {
    FrameSettings settings = FrameSettingsOf(FactorySettings(color), color, 0);
    settings.format = color ? PixelFormat::BayerRG12 : PixelFormat::Mono12;
    settings.offsetX = x;
    settings.offsetY = y;
    settings.width = width;
    settings.height = height;
    return settings;
}

std::vector<std::byte> Bytes(const FrameSettings& settings, std::uint64_t frame = 0) {
    std::vector<std::byte> out(FrameSize(settings));
    EXPECT_TRUE(FrameRenderer().Render(settings, frame, out));
    return out;
}

/// Renders a format of one or two whole bytes a pixel.
Image Render(const FrameSettings& settings, std::uint64_t frame = 0) {
    const std::vector<std::byte> bytes = Bytes(settings, frame);
    const std::size_t step = BitsOf(settings.format) / 8;
    Image image{settings.width, {}};
    for (std::size_t i = 0; i < bytes.size(); i += step) {
        const auto low = static_cast<unsigned>(bytes[i]);
        image.pixels.push_back(step == 1 ? low : low | static_cast<unsigned>(bytes[i + 1]) << 8);
    }
    return image;
}

/// Mean of each colour of a Bayer image.
std::array<double, 3> Colors(const Image& image) {
    std::array<double, 3> sum{};
    std::array<double, 3> count{};
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        const std::size_t channel = FilterAt(i % image.width, i / image.width);
        sum[channel] += image.pixels[i];
        ++count[channel];
    }
    return {sum[0] / count[0], sum[1] / count[1], sum[2] / count[2]};
}

// Places of the scene, in pixels of the sensor.
const FrameSettings kHouseWall = Window(true, 400, 1440, 32, 32);
const FrameSettings kSky = Window(true, 1600, 500, 32, 32);
const FrameSettings kMeadow = Window(true, 1300, 1580, 32, 32);
const FrameSettings kWhitePatch = Window(true, 1650, 1500, 32, 32);

TEST(Scene, SameSettingsAndNumberGiveTheSameFrame) {
    EXPECT_EQ(Bytes(kHouseWall, 5), Bytes(kHouseWall, 5));
}

TEST(Scene, RendererKeepsNothingOfEarlierFrames) {
    FrameRenderer renderer;
    std::vector<std::byte> out(FrameSize(kSky));
    std::vector<std::byte> earlier(std::size_t{64} * 64 * 2);
    renderer.Render(Window(false, 0, 0, 64, 64), 9, earlier);
    renderer.Render(kSky, 3, out);
    EXPECT_EQ(out, Bytes(kSky, 3));
}

TEST(Scene, HouseIsRed) {
    const auto [red, green, blue] = Colors(Render(kHouseWall));
    EXPECT_GT(red, 4 * green);
    EXPECT_GT(red, 4 * blue);
}

TEST(Scene, SkyIsBlue) {
    const auto [red, green, blue] = Colors(Render(kSky));
    EXPECT_GT(blue, green);
    EXPECT_GT(green, red);
}

TEST(Scene, MeadowIsGreen) {
    const auto [red, green, blue] = Colors(Render(kMeadow));
    EXPECT_GT(green, red);
    EXPECT_GT(red, blue);
}

TEST(Scene, FactoryBalanceMakesWhiteWhite) {
    const auto [red, green, blue] = Colors(Render(kWhitePatch));
    EXPECT_NEAR(red / green, 1.0, 0.01);
    EXPECT_NEAR(blue / green, 1.0, 0.01);
    EXPECT_GT(green, 3000);
}

TEST(Scene, BalanceChangesOneColorOnly) {
    FrameSettings warm = kWhitePatch;
    warm.balance[0] /= 2;
    const auto before = Colors(Render(kWhitePatch));
    const auto after = Colors(Render(warm));
    EXPECT_NEAR(after[0] / before[0], 0.5, 0.01);
    EXPECT_EQ(after[1], before[1]);
    EXPECT_EQ(after[2], before[2]);
}

TEST(Scene, HalfTheExposureIsHalfTheLight) {
    FrameSettings dark = kMeadow;
    dark.exposure /= 2;
    EXPECT_NEAR(Render(dark).Mean() / Render(kMeadow).Mean(), 0.5, 0.01);
}

TEST(Scene, SixDecibelsDoubleTheSignal) {
    FrameSettings dark = kMeadow;
    dark.exposure /= 4;
    FrameSettings amplified = dark;
    amplified.gain = 20 * std::log10(2.0);
    EXPECT_NEAR(Render(amplified).Mean() / Render(dark).Mean(), 2.0, 0.01);
}

TEST(Scene, TooMuchLightSaturates) {
    FrameSettings bright = kSky;
    bright.exposure = 1e6;
    const Image image = Render(bright);
    EXPECT_TRUE(std::all_of(image.pixels.begin(), image.pixels.end(),
                            [](unsigned level) { return level == kTopLevel; }));
}

TEST(Scene, BlackLevelLiftsTheDark) {
    FrameSettings lifted = kMeadow;
    lifted.exposure = 20;
    lifted.blackLevel = 100;
    const Image image = Render(lifted);
    EXPECT_GE(*std::min_element(image.pixels.begin(), image.pixels.end()), 100U);
}

TEST(Scene, GammaBelowOneBrightens) {
    FrameSettings bent = kMeadow;
    bent.gamma = 0.5;
    EXPECT_GT(Render(bent).Mean(), Render(kMeadow).Mean());
}

TEST(Scene, LookUpTableHasTheLastWord) {
    FrameSettings inverted = kMeadow;
    auto table = std::make_shared<LookUpTable>();
    for (std::size_t i = 0; i < kLevels; ++i) {
        (*table)[i] = static_cast<std::uint16_t>(kTopLevel - i);
    }
    inverted.lut = table;
    const Image plain = Render(kMeadow);
    const Image image = Render(inverted);
    for (std::size_t i = 0; i < plain.pixels.size(); ++i) {
        ASSERT_EQ(image.pixels[i], kTopLevel - plain.pixels[i]);
    }
}

TEST(Scene, BalloonMovesAndTheLandscapeStands) {
    const FrameSettings way = Window(true, 0, 100, kSensorWidth, 128);
    EXPECT_NE(Bytes(way, 0), Bytes(way, 40));
    EXPECT_EQ(Bytes(kHouseWall, 0), Bytes(kHouseWall, 40));
}

TEST(Scene, CamerasSeeDifferentMoments) {
    FrameSettings first = Window(true, 0, 1690, kSensorWidth, 130);
    FrameSettings second = first;
    second.camera = 1;
    EXPECT_NE(Bytes(first), Bytes(second));
}

TEST(Scene, OffsetCutsFromTheWholePicture) {
    const Image whole = Render(Window(true, 400, 1400, 64, 64));
    const Image part = Render(Window(true, 416, 1410, 32, 32));
    for (std::size_t y = 0; y < 32; ++y) {
        for (std::size_t x = 0; x < 32; ++x) {
            ASSERT_EQ(part.At(x, y), whole.At(x + 16, y + 10));
        }
    }
}

TEST(Scene, MonochromeMirrorTurnsEachLine) {
    FrameSettings settings = Window(false, 0, 1000, kSensorWidth, 16);
    const Image plain = Render(settings);
    settings.reverseX = true;
    const Image mirrored = Render(settings);
    for (std::size_t x = 0; x < kSensorWidth; ++x) {
        ASSERT_EQ(mirrored.At(x, 3), plain.At(kSensorWidth - 1 - x, 3));
    }
}

TEST(Scene, ColorMirrorKeepsTheFilterInPhase) {
    FrameSettings settings = kHouseWall;
    settings.offsetX = kSensorWidth - kHouseWall.offsetX - kHouseWall.width;
    settings.offsetY = kSensorHeight - kHouseWall.offsetY - kHouseWall.height;
    settings.reverseX = true;
    settings.reverseY = true;
    const auto plain = Colors(Render(kHouseWall));
    const auto mirrored = Colors(Render(settings));
    for (std::size_t channel = 0; channel < 3; ++channel) {
        EXPECT_NEAR(mirrored[channel], plain[channel], 1e-9);
    }
}

TEST(Scene, BinningTakesTheMeanOfItsPixels) {
    const Image fine = Render(Window(false, 400, 1400, 64, 64));
    FrameSettings settings = Window(false, 200, 700, 32, 32);
    settings.binningX = 2;
    settings.binningY = 2;
    const Image binned = Render(settings);
    for (std::size_t y = 0; y < 32; ++y) {
        for (std::size_t x = 0; x < 32; ++x) {
            const unsigned sum = fine.At(2 * x, 2 * y) + fine.At(2 * x + 1, 2 * y) +
                                 fine.At(2 * x, 2 * y + 1) + fine.At(2 * x + 1, 2 * y + 1);
            ASSERT_EQ(binned.At(x, y), (sum + 2) / 4);
        }
    }
}

TEST(Scene, SummedBinningIsBrighter) {
    FrameSettings settings = Window(false, 200, 700, 32, 32);
    settings.exposure = 1000;
    settings.binningX = 2;
    settings.binningY = 2;
    const double average = Render(settings).Mean();
    settings.sumX = true;
    settings.sumY = true;
    EXPECT_NEAR(Render(settings).Mean() / average, 4.0, 0.05);
}

TEST(Scene, BinnedColorsStayApart) {
    FrameSettings settings = kHouseWall;
    settings.binningX = 2;
    settings.binningY = 2;
    settings.offsetX = kHouseWall.offsetX / 2;
    settings.offsetY = kHouseWall.offsetY / 2;
    settings.width = 16;
    settings.height = 16;
    const auto fine = Colors(Render(kHouseWall));
    const auto binned = Colors(Render(settings));
    for (std::size_t channel = 0; channel < 3; ++channel) {
        EXPECT_NEAR(binned[channel], fine[channel], 1.0);
    }
}

TEST(Scene, GreyOfAColorSensorIsTheMeanOfAQuad) {
    FrameSettings settings = kHouseWall;
    const Image bayer = Render(settings);
    settings.format = PixelFormat::Mono8;
    const Image grey = Render(settings);
    const unsigned sum = bayer.At(4, 4) + bayer.At(5, 4) + bayer.At(4, 5) + bayer.At(5, 5);
    EXPECT_EQ(grey.At(4, 4), ((sum + 2) / 4) >> 4);
}

TEST(Scene, AbortBreaksTheFrameOff) {
    std::stop_source stop;
    stop.request_stop();
    std::vector<std::byte> out(FrameSize(kSky));
    EXPECT_FALSE(FrameRenderer().Render(kSky, 0, out, stop.get_token()));
}

// --- Test patterns. ---

FrameSettings PatternOf(TestPattern pattern, bool color = false) {
    FrameSettings settings = Window(color, 0, 0, 512, 300);
    settings.pattern = pattern;
    return settings;
}

TEST(Pattern, BlackAndWhite) {
    EXPECT_EQ(Render(PatternOf(TestPattern::Black)).Mean(), 0);
    EXPECT_EQ(Render(PatternOf(TestPattern::White)).Mean(), kTopLevel);
}

TEST(Pattern, RampsGrowByOneOf256) {
    const Image across = Render(PatternOf(TestPattern::GreyHorizontalRamp));
    const Image down = Render(PatternOf(TestPattern::GreyVerticalRamp));
    EXPECT_EQ(across.At(7, 100), 7U << 4);
    EXPECT_EQ(across.At(256 + 7, 0), 7U << 4);
    EXPECT_EQ(down.At(100, 7), 7U << 4);
}

TEST(Pattern, MovingRampsMoveWithTheFrame) {
    EXPECT_EQ(Render(PatternOf(TestPattern::GreyHorizontalRampMoving), 5).At(7, 0), 12U << 4);
    EXPECT_EQ(Render(PatternOf(TestPattern::GreyVerticalRampMoving), 5).At(0, 7), 12U << 4);
}

TEST(Pattern, LinesMoveWithTheFrame) {
    const Image lying = Render(PatternOf(TestPattern::HorizontalLineMoving), 302);
    EXPECT_EQ(lying.At(9, 2), kTopLevel);
    EXPECT_EQ(lying.At(9, 3), 0U);
    const Image upright = Render(PatternOf(TestPattern::VerticalLineMoving), 3);
    EXPECT_EQ(upright.At(3, 9), kTopLevel);
    EXPECT_EQ(upright.At(4, 9), 0U);
}

TEST(Pattern, ColorBarGoesThroughTheFilter) {
    const Image image = Render(PatternOf(TestPattern::ColorBar, true));
    const auto quad = [&](std::size_t bar) {
        const std::size_t x = bar * 64 + 10;
        return std::array{image.At(x, 10), image.At(x + 1, 10), image.At(x + 1, 11)};
    };
    constexpr unsigned top = kTopLevel;
    EXPECT_EQ(quad(0), (std::array{top, top, top}));
    EXPECT_EQ(quad(1), (std::array{top, top, 0U}));
    EXPECT_EQ(quad(5), (std::array{top, 0U, 0U}));
    EXPECT_EQ(quad(6), (std::array{0U, 0U, top}));
    EXPECT_EQ(quad(7), (std::array{0U, 0U, 0U}));
}

TEST(Pattern, DoesNotDependOnTheExposure) {
    FrameSettings settings = PatternOf(TestPattern::GreyHorizontalRamp);
    const std::vector<std::byte> before = Bytes(settings);
    settings.exposure = 20;
    EXPECT_EQ(Bytes(settings), before);
}

// --- Packing: four levels into each format. ---

struct PackCase {
    PixelFormat format;
    std::vector<unsigned> bytes;
};
class Packing : public testing::TestWithParam<PackCase> {};

TEST_P(Packing, PutsTheBitsInTheirPlaces) {
    const std::uint16_t levels[] = {0xABC, 0x123, 0xFED, 0x456};
    std::vector<std::byte> out(GetParam().bytes.size());
    PackRow(GetParam().format, levels, out.data());
    for (std::size_t i = 0; i < out.size(); ++i) {
        EXPECT_EQ(static_cast<unsigned>(out[i]), GetParam().bytes[i]) << "byte " << i;
    }
    EXPECT_EQ(out.size(), 4 * BitsOf(GetParam().format) / 8);
}

// The 10-bit values of the levels are 0x2AF, 0x048, 0x3FB and 0x115.
INSTANTIATE_TEST_SUITE_P(
    Formats, Packing,
    testing::Values(PackCase{PixelFormat::Mono8, {0xAB, 0x12, 0xFE, 0x45}},
                    PackCase{PixelFormat::BayerRG8, {0xAB, 0x12, 0xFE, 0x45}},
                    PackCase{PixelFormat::Mono10, {0xAF, 0x02, 0x48, 0x00, 0xFB, 0x03, 0x15, 0x01}},
                    PackCase{PixelFormat::Mono12, {0xBC, 0x0A, 0x23, 0x01, 0xED, 0x0F, 0x56, 0x04}},
                    PackCase{PixelFormat::Mono16, {0xC0, 0xAB, 0x30, 0x12, 0xD0, 0xFE, 0x60, 0x45}},
                    PackCase{PixelFormat::BayerRG12Packed, {0xAB, 0x3C, 0x12, 0xFE, 0x6D, 0x45}},
                    PackCase{PixelFormat::BayerRG12p, {0xBC, 0x3A, 0x12, 0xED, 0x6F, 0x45}},
                    PackCase{PixelFormat::BayerRG10Packed, {0xAB, 0x03, 0x12, 0xFE, 0x13, 0x45}},
                    PackCase{PixelFormat::BayerRG10p, {0xAF, 0x22, 0xB1, 0x7F, 0x45}}));

}  // namespace
