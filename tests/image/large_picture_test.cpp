// Pictures larger than the caches, which rows reach another way, against pictures
// of a few of their rows.

#include <gtest/gtest.h>

#include "forms.h"
#include "instruction_sets.h"

namespace {

using testing::Combine;
using testing::Values;

constexpr int kWidth = 6002;
/// Rows of a small picture, of which those away from the cut are the same.
constexpr int kPart = 24;
constexpr int kSame = 16;

std::vector<uint8_t> MakeSource(size_t bytes) {
    std::vector<uint8_t> source(bytes);
    uint32_t state = 7;
    for (uint8_t& byte : source) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<uint8_t>(state >> 24);
    }
    return source;
}

/// Form, method.
class LargePicture : public testing::TestWithParam<std::tuple<Form, int>> {
protected:
    void SetUp() override {
        constexpr size_t kBytes = 17 << 20;
        m_conversion.form = std::get<0>(GetParam());
        m_conversion.options.method = std::get<1>(GetParam());
        m_height = static_cast<int>(kBytes / m_conversion.Bytes(kWidth, 2) + 1) * 2;
        m_source = MakeSource(RawBytes(m_height));
    }
    size_t RawBytes(int rows) const {
        return BayerReference::Place(kWidth, 0, rows) * m_conversion.SampleBytes();
    }
    /// The picture of some rows of the source.
    std::vector<uint8_t> Picture(int first, int rows) const {
        std::vector<uint8_t> picture(m_conversion.Bytes(kWidth, rows));
        EXPECT_EQ(CallLibrary(m_conversion, m_source.data() + RawBytes(first), picture.data(),
                              kWidth, rows),
                  QY_OK);
        return picture;
    }
    void ExpectSameAtBothEnds(size_t offset) const {
        GuardedBytes large(m_conversion.Bytes(kWidth, m_height), offset);
        ASSERT_EQ(CallLibrary(m_conversion, m_source.data(), large.Data(), kWidth, m_height),
                  QY_OK);
        EXPECT_TRUE(large.IsGuardWhole());
        const size_t size = m_conversion.Bytes(kWidth, kSame);
        const std::vector<uint8_t> top = Picture(0, kPart);
        EXPECT_EQ(std::memcmp(large.Data(), top.data(), size), 0);
        const std::vector<uint8_t> bottom = Picture(m_height - kPart, kPart);
        EXPECT_EQ(std::memcmp(large.Data() + m_conversion.Bytes(kWidth, m_height - kSame),
                              bottom.data() + bottom.size() - size, size),
                  0);
    }

    Conversion m_conversion;
    int m_height = 0;
    std::vector<uint8_t> m_source;
};

TEST_P(LargePicture, HasTheRowsOfSmallOnes) {
    ExpectSameAtBothEnds(1);
}

INSTANTIATE_TEST_SUITE_P(All, LargePicture,
                         Combine(Values(Form::Rgb24, Form::Argb32, Form::Rgb48), Values(0, 1, 2)));

/// What takes the least time.
class LargePictureInstructionSets : public LargePicture {};

TEST_P(LargePictureInstructionSets, AllGiveTheRowsOfSmallOnes) {
    WithEachInstructionSet([this] { ExpectSameAtBothEnds(16); });
}

INSTANTIATE_TEST_SUITE_P(All, LargePictureInstructionSets,
                         Combine(Values(Form::Rgb24, Form::Rgb48), Values(0)));

}  // namespace
