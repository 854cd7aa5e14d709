// Sizes that no frame has: those that are negative in the caller, and those
// whose bytes no memory holds.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "QyImageProc.h"

namespace {

constexpr uint32_t kNegative = 0x80000000;
constexpr uint32_t kMinusTwo = 0xFFFFFFFE;
constexpr uint32_t kLargestEven = 0x7FFFFFFE;

/// Memory for one small frame: a function that goes on with a size that it
/// should refuse leaves it.
struct Memory {
    alignas(8) std::array<uint8_t, 4096> src{};
    alignas(8) std::array<uint8_t, 4096> dst{};
    std::vector<uint32_t> gamma = std::vector<uint32_t>(QY_TONE_RECORD_SIZE / sizeof(uint32_t));

    Memory() {
        int32_t size = QY_TONE_RECORD_SIZE;
        EXPECT_EQ(QyGetGammatLut(gamma.data(), &size, 1.0), QY_OK);
    }
};

struct LimitedFunction {
    std::string name;
    QY_STATUS (*call)(Memory& memory, uint32_t width, uint32_t height);
};

int32_t Signed(uint32_t side) {
    return static_cast<int32_t>(side);
}

/// A wrong stride would be refused first.
int32_t StrideOf(uint32_t width) {
    return width > INT32_MAX ? INT32_MAX : Signed(width);
}

const std::vector<LimitedFunction> kOneOrTwoBytes = {
    {"QyRaw12PackedToRaw16",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyRaw12PackedToRaw16(m.src.data(), m.dst.data(), Signed(w), Signed(h));
     }},
    {"QyRaw10PackedToRaw16",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyRaw10PackedToRaw16(m.src.data(), m.dst.data(), Signed(w), Signed(h));
     }},
    {"QyRaw16toRaw8",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyRaw16toRaw8(m.src.data(), m.dst.data(), Signed(w), Signed(h), QY_BIT_0_7);
     }},
    {"QyMono8ImgProcess",
     [](Memory& m, uint32_t w, uint32_t h) {
         const QyMonoImgRecord record{};
         return QyMono8ImgProcess(m.src.data(), m.dst.data(), Signed(w), Signed(h), &record);
     }},
    {"QyImageMirror",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyImageMirror(m.src.data(), m.dst.data(), Signed(w), Signed(h),
                              QY_MIRROR_HORIZONTAL);
     }},
    {"QyRotate90CW8B",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyRotate90CW8B(m.src.data(), m.dst.data(), Signed(w), Signed(h));
     }},
    {"QyRotate90CCW8B",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyRotate90CCW8B(m.src.data(), m.dst.data(), Signed(w), Signed(h));
     }},
    {"QyAutoRawDefectivePixelCorrect",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyAutoRawDefectivePixelCorrect(m.dst.data(), Signed(w), Signed(h), 8);
     }},
};

const std::vector<LimitedFunction> kMoreBytes = {
    {"QyRGB48toRGB24",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyRGB48toRGB24(m.src.data(), m.dst.data(), Signed(w), Signed(h), QY_BIT_0_7);
     }},
    {"QyRaw8toRGB24",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyRaw8toRGB24(m.src.data(), m.dst.data(), w, h, QY_RAW2RGB_NEIGHBOUR, QY_BAYER_RG,
                              0);
     }},
    {"QyRaw8toRGB24Ex",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyRaw8toRGB24Ex(m.src.data(), m.dst.data(), w, h, QY_RAW2RGB_ADAPTIVE, QY_BAYER_GR,
                                1, QY_ORDER_BGR);
     }},
    {"QyRaw8toARGB32",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyRaw8toARGB32(m.src.data(), m.dst.data(), w, h, StrideOf(w), QY_RAW2RGB_NEIGHBOUR3,
                               QY_BAYER_RG, 0, 255);
     }},
    {"QyRaw16toRGB48",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyRaw16toRGB48(m.src.data(), m.dst.data(), w, h, 12, QY_RAW2RGB_NEIGHBOUR,
                               QY_FILTER_NONE, 0);
     }},
    {"QySharpen24B",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QySharpen24B(m.src.data(), m.dst.data(), Signed(w), Signed(h), 1.0F);
     }},
    {"QyGetWhiteBalanceRatio",
     [](Memory& m, uint32_t w, uint32_t h) {
         std::array<double, 3> ratios{};
         return QyGetWhiteBalanceRatio(m.src.data(), Signed(w), Signed(h), &ratios[0], &ratios[1],
                                       &ratios[2]);
     }},
    {"QyImageImprovment",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyImageImprovment(m.src.data(), m.dst.data(), Signed(w), Signed(h), nullptr,
                                  nullptr, m.gamma.data());
     }},
    {"QyImageImprovmentEx",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyImageImprovmentEx(m.src.data(), m.dst.data(), Signed(w), Signed(h), nullptr,
                                    nullptr, m.gamma.data(), QY_ORDER_BGR);
     }},
    {"QyARGBImageImprovment",
     [](Memory& m, uint32_t w, uint32_t h) {
         return QyARGBImageImprovment(m.src.data(), m.dst.data(), Signed(w), Signed(h), nullptr,
                                      nullptr, m.gamma.data());
     }},
    {"QyRaw8ImgProcess",
     [](Memory& m, uint32_t w, uint32_t h) {
         QyRawImgRecord record{};
         record.Filter = QY_BAYER_RG;
         return QyRaw8ImgProcess(m.src.data(), m.dst.data(), Signed(w), Signed(h), &record);
     }},
};

std::vector<LimitedFunction> All() {
    std::vector<LimitedFunction> all = kOneOrTwoBytes;
    all.insert(all.end(), kMoreBytes.begin(), kMoreBytes.end());
    return all;
}

void ExpectRefused(const LimitedFunction& function, uint32_t width, uint32_t height) {
    Memory memory;
    EXPECT_EQ(function.call(memory, width, height), QY_PARAMETER_OUT_OF_BOUND)
        << width << " x " << height;
    EXPECT_EQ(memory.dst, (std::array<uint8_t, 4096>{})) << width << " x " << height;
}

std::string NameOf(const testing::TestParamInfo<LimitedFunction>& info) {
    return info.param.name;
}

class SizeOfEveryFunction : public testing::TestWithParam<LimitedFunction> {};

TEST_P(SizeOfEveryFunction, ServesASmallFrame) {
    Memory memory;
    EXPECT_EQ(GetParam().call(memory, 8, 8), QY_OK);
}

TEST_P(SizeOfEveryFunction, IsRefusedWhenTheHeightIsNegativeInTheCaller) {
    for (const uint32_t side : {kNegative, kMinusTwo}) {
        ExpectRefused(GetParam(), 8, side);
    }
}

TEST_P(SizeOfEveryFunction, IsRefusedWhenTheWidthIsNegativeInTheCaller) {
    if (GetParam().name == "QyRaw8toARGB32") {
        // No stride is as large, and a stride below the width is refused first.
        Memory memory;
        EXPECT_EQ(GetParam().call(memory, kNegative, 8), QY_PARAMETER_INVALID);
        return;
    }
    for (const uint32_t side : {kNegative, kMinusTwo}) {
        ExpectRefused(GetParam(), side, 8);
        ExpectRefused(GetParam(), side, side);
    }
}

INSTANTIATE_TEST_SUITE_P(All, SizeOfEveryFunction, testing::ValuesIn(All()), NameOf);

class SizeOfWidePixels : public testing::TestWithParam<LimitedFunction> {};

TEST_P(SizeOfWidePixels, IsRefusedWhenNoMemoryHoldsTheBytes) {
    ExpectRefused(GetParam(), kLargestEven, kLargestEven);
}

INSTANTIATE_TEST_SUITE_P(All, SizeOfWidePixels, testing::ValuesIn(kMoreBytes), NameOf);

TEST(SizeOfFourBytes, IsRefusedWhenNoMemoryHoldsTheStride) {
    Memory memory;
    EXPECT_EQ(QyRaw8toARGB32(memory.src.data(), memory.dst.data(), 8, kLargestEven, INT32_MAX,
                             QY_RAW2RGB_NEIGHBOUR, QY_BAYER_RG, 0, 0),
              QY_PARAMETER_OUT_OF_BOUND);
}

}  // namespace
