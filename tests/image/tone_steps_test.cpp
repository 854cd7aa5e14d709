// Tone tables as steps.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "colour/ToneSteps.h"

namespace {

using QyImprove::ToneSteps;
using QyImprove::ToneStepsOf;
using Tone = std::vector<uint8_t>;

constexpr size_t kValues = 4096;

Tone MakeCurve(double gamma) {
    Tone tone;
    for (size_t i = 0; i < kValues; ++i) {
        tone.push_back(
            static_cast<uint8_t>(std::pow(static_cast<double>(i) / kValues, 1 / gamma) * 256));
    }
    return tone;
}

/// The byte of a value, by the steps.
int ByteOf(const ToneSteps& steps, size_t value) {
    if (value < steps.low.size()) {
        return steps.low[value];
    }
    const size_t part = value / ToneSteps::kPartValues;
    const auto grown = [&](const ToneSteps::Table& before) {
        return value % ToneSteps::kPartValues > before[part];
    };
    const auto end = steps.before.begin() + static_cast<ptrdiff_t>(steps.count);
    return steps.first[part] + static_cast<int>(std::count_if(steps.before.begin(), end, grown));
}

void ExpectTheSame(const Tone& tone) {
    const auto steps = ToneStepsOf(tone.data());
    ASSERT_TRUE(steps);
    for (size_t i = 0; i < kValues; ++i) {
        ASSERT_EQ(ByteOf(*steps, i), tone[i]) << i;
    }
}

TEST(ToneSteps, HaveEveryValueOfACurve) {
    for (const double gamma : {0.5, 1.0, 1.8, 2.2, 4.0}) {
        ExpectTheSame(MakeCurve(gamma));
    }
}

TEST(ToneSteps, AreAsManyAsTheSteepestPartNeeds) {
    EXPECT_EQ(ToneStepsOf(Tone(kValues, 7).data())->count, 0U);
    EXPECT_EQ(ToneStepsOf(MakeCurve(1).data())->count, 0U);
    Tone tone(kValues, 3);
    std::fill(tone.begin() + 1003, tone.end(), uint8_t{5});
    std::fill(tone.begin() + 1005, tone.end(), uint8_t{7});
    EXPECT_EQ(ToneStepsOf(tone.data())->count, 4U);
    ExpectTheSame(tone);
}

TEST(ToneSteps, LeaveTheLowestValuesInAnyOrder) {
    Tone tone(kValues, 255);
    for (size_t i = 0; i < 256; ++i) {
        tone[i] = static_cast<uint8_t>(i * 167 + 13);
    }
    ExpectTheSame(tone);
}

TEST(ToneSteps, AreNoneIfTheTableFalls) {
    Tone tone = MakeCurve(1.8);
    tone[3000] = static_cast<uint8_t>(tone[3000] - 2);
    EXPECT_FALSE(ToneStepsOf(tone.data()));
}

TEST(ToneSteps, AreNoneIfAPartGrowsTooMuch) {
    Tone tone(kValues, 3);
    std::fill(tone.begin() + 4090, tone.end(), uint8_t{8});
    EXPECT_FALSE(ToneStepsOf(tone.data()));
}

TEST(ToneSteps, MayFallAndGrowBetweenParts) {
    Tone tone(kValues, 200);
    std::fill(tone.begin() + 1024, tone.begin() + 2048, uint8_t{9});
    ExpectTheSame(tone);
}

}  // namespace
