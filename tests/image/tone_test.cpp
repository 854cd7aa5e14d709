// Adjustments of whole images: what they refuse, and what their edges are.

#include <cmath>
#include <limits>

#include "Bytes.h"
#include "QyImageProc.h"
#include "Refusals.h"
#include "ToneReference.h"

namespace {

struct Call {
    std::vector<uint8_t> source = std::vector<uint8_t>(108, 7);
    GuardedBytes destination{108, 0};
    const void* src = source.data();
    void* dst = destination.Data();
    int32_t count = 36;
    int32_t width = 6;
    int32_t height = 6;
    int32_t factor = 30;
    float sharpness = 1;

    bool IsUntouched() const { return destination.IsUntouched(); }
};

using Refusals = std::vector<Refusal<Call>>;

const Refusal<Call> kSource = {"source", [](Call& c) { c.src = nullptr; }, QY_PARAMETER_INVALID};
const Refusal<Call> kDestination = {"destination", [](Call& c) { c.dst = nullptr; },
                                    QY_PARAMETER_INVALID};

/// Refusals of a function with a count and a factor in a range.
template <int32_t Below, int32_t Above>
Refusals OfCounted() {
    return {kSource,
            kDestination,
            {"no bytes", [](Call& c) { c.count = 0; }, QY_PARAMETER_OUT_OF_BOUND},
            {"negative count", [](Call& c) { c.count = -1; }, QY_PARAMETER_OUT_OF_BOUND},
            {"factor too small", [](Call& c) { c.factor = Below; }, QY_PARAMETER_OUT_OF_BOUND},
            {"factor too large", [](Call& c) { c.factor = Above; }, QY_PARAMETER_OUT_OF_BOUND}};
}

TEST(ToneRefusals, OfBrightnessComeInOrder) {
    ExpectFirstRefusalDecides(OfCounted<-151, 151>(), [](Call& c) {
        return QyBrightness(c.src, c.dst, c.count, c.factor);
    });
}

TEST(ToneRefusals, OfContrastComeInOrder) {
    ExpectFirstRefusalDecides(OfCounted<-51, 101>(),
                              [](Call& c) { return QyContrast(c.src, c.dst, c.count, c.factor); });
}

TEST(ToneRefusals, OfSaturationComeInOrder) {
    ExpectFirstRefusalDecides(OfCounted<-1, 129>(), [](Call& c) {
        return QySaturation(c.src, c.dst, c.count, c.factor);
    });
}

TEST(ToneRefusals, OfSharpeningComeInOrder) {
    const Refusals refusals = {
        kSource,
        kDestination,
        {"no width", [](Call& c) { c.width = 0; }, QY_PARAMETER_OUT_OF_BOUND},
        {"no height", [](Call& c) { c.height = 0; }, QY_PARAMETER_OUT_OF_BOUND},
        {"negative width", [](Call& c) { c.width = -6; }, QY_PARAMETER_OUT_OF_BOUND},
        {"negative height", [](Call& c) { c.height = -6; }, QY_PARAMETER_OUT_OF_BOUND},
        {"factor too small", [](Call& c) { c.sharpness = std::nextafter(0.1F, 0.0F); },
         QY_PARAMETER_OUT_OF_BOUND},
        {"factor too large", [](Call& c) { c.sharpness = std::nextafter(5.0F, 6.0F); },
         QY_PARAMETER_OUT_OF_BOUND},
        {"factor of no value",
         [](Call& c) { c.sharpness = std::numeric_limits<float>::quiet_NaN(); },
         QY_PARAMETER_OUT_OF_BOUND}};
    ExpectFirstRefusalDecides(refusals, [](Call& c) {
        return QySharpen24B(c.src, c.dst, c.width, c.height, c.sharpness);
    });
}

TEST(ToneRanges, IncludeTheirEnds) {
    Call c;
    for (const int factor : {-150, 150}) {
        EXPECT_EQ(QyBrightness(c.src, c.dst, c.count, factor), QY_OK);
    }
    for (const int factor : {-50, 100}) {
        EXPECT_EQ(QyContrast(c.src, c.dst, c.count, factor), QY_OK);
    }
    for (const int factor : {0, 128}) {
        EXPECT_EQ(QySaturation(c.src, c.dst, c.count, factor), QY_OK);
    }
    for (const float factor : {0.1F, 5.0F}) {
        EXPECT_EQ(QySharpen24B(c.src, c.dst, c.width, c.height, factor), QY_OK);
    }
}

TEST(ToneBrightness, OfZeroKeepsBytesUpToTheCurve) {
    std::vector<uint8_t> bytes(256);
    for (size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<uint8_t>(i);
    }
    std::vector<uint8_t> out(256);
    ASSERT_EQ(QyBrightness(bytes.data(), out.data(), 256, 0), QY_OK);
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(out[160], 160);
    EXPECT_EQ(out[255], 255);
    EXPECT_TRUE(std::is_sorted(out.begin(), out.end()));
    EXPECT_EQ(out, ToneReference::ThroughTable(bytes, ToneReference::Lightness(0, 8)));
}

TEST(ToneSaturation, OfSixtyFourKeepsThePixels) {
    const auto bytes = MakeBytes(3 * 500, Content::Random);
    std::vector<uint8_t> out(bytes.size());
    ASSERT_EQ(QySaturation(bytes.data(), out.data(), 500, 64), QY_OK);
    EXPECT_EQ(out, bytes);
}

TEST(ToneSaturation, OfZeroIsGrey) {
    const uint8_t pixel[] = {10, 100, 200};
    uint8_t out[3] = {};
    ASSERT_EQ(QySaturation(pixel, out, 1, 0), QY_OK);
    for (const uint8_t byte : out) {
        EXPECT_EQ(byte, (150 * 100 + 77 * 10 + 29 * 200) >> 8);
    }
}

TEST(ToneSaturation, IsRefusedAboveItsLargestAndBelowZero) {
    Call c;
    EXPECT_EQ(QySaturation(c.src, c.dst, 1, 129), QY_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(QySaturation(c.src, c.dst, 1, -1), QY_PARAMETER_OUT_OF_BOUND);
    EXPECT_TRUE(c.IsUntouched());
    EXPECT_EQ(QySaturation(c.src, c.dst, 1, 128), QY_OK);
}

TEST(ToneSharpening, CopiesWhatHasNoInnerPixels) {
    for (const auto& [width, height] : {std::pair{40, 4}, {4, 40}, {1, 1}, {40, 1}, {1, 40}}) {
        const auto bytes = MakeBytes(3 * static_cast<size_t>(width) * static_cast<size_t>(height),
                                     Content::Random);
        const auto call = [w = width, h = height](const void* src, void* dst) {
            return QySharpen24B(src, dst, w, h, 5);
        };
        EXPECT_EQ(CompareBytes(call, bytes, bytes, 0), "") << width << " x " << height;
        EXPECT_EQ(CompareInPlace(call, bytes, bytes, 0), "") << width << " x " << height;
    }
}

TEST(ToneSharpening, LeavesFlatAreas) {
    const std::vector<uint8_t> bytes(3 * 30 * 30, 77);
    std::vector<uint8_t> out(bytes.size());
    ASSERT_EQ(QySharpen24B(bytes.data(), out.data(), 30, 30, 5), QY_OK);
    EXPECT_EQ(out, bytes);
}

TEST(ToneSharpening, TakesTheFactorInSinglePrecision) {
    // A little below 0.35, of which 20 make 7 in that precision and less in another.
    constexpr float kFactor = 0.35F;
    static_assert(double{kFactor} * 20 < 7);
    std::vector<uint8_t> bytes(3 * 5 * 5, 100);
    bytes[3 * 12 + 1] = 140;
    ASSERT_EQ(QySharpen24B(bytes.data(), bytes.data(), 5, 5, kFactor), QY_OK);
    EXPECT_EQ(bytes[3 * 12 + 1], 140 + ((8 * 40 * 7 - 128) >> 8));
}

TEST(ToneSharpening, OfAPointRaisesAllItsBytesAlike) {
    std::vector<uint8_t> bytes(3 * 5 * 5, 100);
    uint8_t* const pixel = &bytes[3 * 12];
    pixel[0] = 10;
    pixel[1] = 110;
    pixel[2] = 250;
    ASSERT_EQ(QySharpen24B(bytes.data(), bytes.data(), 5, 5, 1), QY_OK);
    const int delta = (80 * 20 - 128) >> 8;
    EXPECT_EQ(pixel[0], 10 + delta);
    EXPECT_EQ(pixel[1], 110 + delta);
    EXPECT_EQ(pixel[2], 255);
}

}  // namespace
