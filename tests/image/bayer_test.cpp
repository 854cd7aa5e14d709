// The mosaic interpolation at its edges.

#include <gtest/gtest.h>

#include <algorithm>

#include "Forms.h"

namespace {

std::vector<uint8_t> Frame(int width, int height, int (*sample)(int x, int y)) {
    std::vector<uint8_t> raw;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            raw.push_back(static_cast<uint8_t>(sample(x, y)));
        }
    }
    return raw;
}

/// Bytes of a picture in three bytes a pixel.
constexpr size_t RgbBytes(size_t width, size_t height) {
    return width * height * 3;
}

TEST(Bayer, FourByFourIsTooSmallForTheEdgeDirectedMethodAlone) {
    const auto raw = Frame(4, 4, [](int, int) { return 9; });
    std::vector<uint8_t> out(RgbBytes(4, 4));
    EXPECT_EQ(QyRaw8toRGB24(raw.data(), out.data(), 4, 4, 0, 1, 0), QY_OK);
    EXPECT_EQ(QyRaw8toRGB24(raw.data(), out.data(), 4, 4, 1, 1, 0), QY_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(QyRaw8toRGB24(raw.data(), out.data(), 4, 4, 2, 1, 0), QY_OK);
}

TEST(Bayer, FiveColumnsAreOutOfBoundWithEveryMethod) {
    const auto raw = Frame(5, 8, [](int, int) { return 9; });
    std::vector<uint8_t> out(RgbBytes(5, 8));
    for (int method = 0; method < 3; ++method) {
        EXPECT_EQ(QyRaw8toRGB24(raw.data(), out.data(), 5, 8, method, 1, 0),
                  QY_PARAMETER_OUT_OF_BOUND);
    }
}

TEST(Bayer, MonochromeGivesThreeEqualColoursWithoutAFrameCopied) {
    const auto raw = Frame(8, 6, [](int x, int y) { return 10 * y + x; });
    std::vector<uint8_t> out(RgbBytes(8, 6));
    ASSERT_EQ(QyRaw8toRGB24(raw.data(), out.data(), 8, 6, 1, QY_FILTER_NONE, 0), QY_OK);
    for (size_t i = 0; i < raw.size(); ++i) {
        EXPECT_EQ(out[3 * i], raw[i]);
        EXPECT_EQ(out[3 * i + 1], raw[i]);
        EXPECT_EQ(out[3 * i + 2], raw[i]);
    }
}

TEST(Bayer, AUniformFrameStaysUniform) {
    for (const int value : {0, 1, 127, 255}) {
        const std::vector<uint8_t> raw(120, static_cast<uint8_t>(value));
        for (int method = 0; method < 3; ++method) {
            for (int filter = 0; filter <= 4; ++filter) {
                std::vector<uint8_t> out(RgbBytes(12, 10), kGuard);
                ASSERT_EQ(QyRaw8toRGB24(raw.data(), out.data(), 12, 10, method, filter, 0), QY_OK);
                EXPECT_EQ(out, std::vector<uint8_t>(out.size(), static_cast<uint8_t>(value)))
                    << "method " << method << " filter " << filter;
            }
        }
    }
}

TEST(Bayer, TwoByTwoTakesItsColoursFromTheCell) {
    const auto raw = Frame(4, 4, [](int x, int y) { return 10 * y + x; });
    std::vector<uint8_t> out(RgbBytes(4, 4));
    ASSERT_EQ(QyRaw8toRGB24(raw.data(), out.data(), 4, 4, 0, QY_BAYER_RG, 0), QY_OK);
    const auto pixel = [&out](size_t x, size_t y) {
        const auto* at = out.data() + (y * 4 + x) * 3;
        return std::vector<int>(at, at + 3);
    };
    EXPECT_EQ(pixel(0, 0), (std::vector<int>{0, 5, 11}));
    EXPECT_EQ(pixel(3, 0), pixel(2, 0));
    EXPECT_EQ(pixel(1, 3), pixel(0, 3));
    EXPECT_EQ(pixel(1, 0), (std::vector<int>{2, 6, 11}));
    EXPECT_EQ(pixel(0, 1), (std::vector<int>{20, 15, 11}));
    EXPECT_EQ(pixel(0, 3), (std::vector<int>{20, 25, 31}));
    EXPECT_EQ(pixel(2, 3), (std::vector<int>{22, 27, 33}));
}

TEST(Bayer, TheOtherOrderExchangesFirstAndLastByte) {
    const auto raw = MakeRaw(26, 14, Content::Random, 255);
    const SourceBytes<uint8_t> src(raw, 0);
    for (int method = 0; method < 3; ++method) {
        for (int filter = 0; filter <= 4; ++filter) {
            std::vector<uint8_t> rgb(RgbBytes(26, 14));
            std::vector<uint8_t> same(rgb.size());
            std::vector<uint8_t> bgr(rgb.size());
            QyRaw8toRGB24(src.Data(), rgb.data(), 26, 14, method, filter, 0);
            QyRaw8toRGB24Ex(src.Data(), same.data(), 26, 14, method, filter, 0, QY_ORDER_RGB);
            QyRaw8toRGB24Ex(src.Data(), bgr.data(), 26, 14, method, filter, 0, QY_ORDER_BGR);
            EXPECT_EQ(rgb, same);
            for (size_t i = 0; i < bgr.size(); i += 3) {
                std::swap(bgr[i], bgr[i + 2]);
            }
            EXPECT_EQ(rgb, bgr) << "method " << method << " filter " << filter;
        }
    }
}

TEST(Bayer, AnUnknownLayoutWritesNothingWithTheFastMethods) {
    const std::vector<uint8_t> source(128, 1);
    for (const Form form : kForms) {
        for (const int method : {0, 2}) {
            for (const int filter : {5, 100, -1}) {
                Conversion conversion;
                conversion.form = form;
                conversion.options.method = method;
                conversion.options.filter = filter;
                GuardedBytes out(conversion.Bytes(8, 8), 0);
                EXPECT_EQ(CallLibrary(conversion, source.data(), out.Data(), 8, 8), QY_OK);
                EXPECT_TRUE(out.IsUntouched());
            }
        }
    }
}

TEST(Bayer, AnUnknownLayoutStillCopiesTheFrameWithTheEdgeDirectedMethod) {
    const std::vector<uint8_t> raw(64, 200);
    std::vector<uint8_t> out(RgbBytes(8, 8));
    for (size_t i = 0; i < out.size(); ++i) {
        out[i] = static_cast<uint8_t>(i);
    }
    const std::vector<uint8_t> before = out;
    ASSERT_EQ(QyRaw8toRGB24(raw.data(), out.data(), 8, 8, 1, 5, 0), QY_OK);
    for (size_t y = 0; y < 8; ++y) {
        for (size_t x = 0; x < 8; ++x) {
            const size_t from = (y < 4 ? 3 : 4) * 8 + (x < 4 ? 3 : 4);
            for (size_t c = 0; c < 3; ++c) {
                EXPECT_EQ(out[(y * 8 + x) * 3 + c], before[from * 3 + c]) << x << ',' << y;
            }
        }
    }
}

TEST(Bayer, TenBitsNeverGiveMoreThan1023) {
    for (int filter = 1; filter <= 4; ++filter) {
        const auto raw = MakeRaw(40, 40, Content::Extremes, 1023);
        const SourceBytes<uint16_t> src(raw, 0);
        std::vector<uint16_t> out(RgbBytes(40, 40));
        ASSERT_EQ(QyRaw16toRGB48(src.Data(), out.data(), 40, 40, 10, 1, filter, 0), QY_OK);
        EXPECT_LE(*std::max_element(out.begin(), out.end()), 1023);
        EXPECT_EQ(*std::min_element(out.begin(), out.end()), 0);
    }
}

TEST(Bayer, AWordAboveTheBitsIsLimitedToo) {
    const std::vector<uint16_t> raw(144, 60000);
    std::vector<uint16_t> out(RgbBytes(12, 12));
    ASSERT_EQ(QyRaw16toRGB48(raw.data(), out.data(), 12, 12, 10, 1, QY_BAYER_RG, 0), QY_OK);
    EXPECT_EQ(out, std::vector<uint16_t>(out.size(), 1023));
}

TEST(Bayer, AFlippedMonochromeFrameBeginsAtTheWidthAndNotAtTheStride) {
    constexpr size_t kWidth = 4;
    constexpr size_t kHeight = 4;
    constexpr size_t kStride = 6;
    const auto raw = Frame(kWidth, kHeight, [](int x, int y) { return 16 * y + x + 1; });
    // The last rows are written before dst, so dst begins inside the memory.
    constexpr size_t kPixelsBefore = 16;
    std::vector<uint8_t> memory((kPixelsBefore + kStride * kHeight) * 4, kGuard);
    ASSERT_EQ(QyRaw8toARGB32(raw.data(), memory.data() + kPixelsBefore * 4, kWidth, kHeight,
                             kStride, 0, QY_FILTER_NONE, 1, 9),
              QY_OK);
    std::vector<uint8_t> expected(memory.size(), kGuard);
    for (size_t y = 0; y < kHeight; ++y) {
        for (size_t x = 0; x < kWidth; ++x) {
            const size_t pixel = kPixelsBefore + (kHeight - 1) * kWidth - y * kStride + x;
            uint8_t* const at = expected.data() + pixel * 4;
            at[0] = at[1] = at[2] = raw[y * kWidth + x];
            at[3] = 9;
        }
    }
    EXPECT_EQ(memory, expected);
}

}  // namespace
