// Floats as text: what is printed is taken back, and is as near as it can be.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "text/FloatText.h"
#include "text/Value2String.h"

namespace ValueTest {

namespace {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

constexpr double kEndless = std::numeric_limits<double>::infinity();

struct Case {
    const char* name;
    EDisplayNotation notation;
    int64_t precision;
    double value;
    double min;
    double max;
    std::string text;
};

class LimitedText : public testing::TestWithParam<Case> {};

TEST_P(LimitedText, IsTheNearestThatTheLimitsAdmit) {
    const Case& c = GetParam();
    EXPECT_EQ(CFloatText(c.notation, c.precision).PrintWithin(c.value, c.min, c.max).c_str(),
              c.text);
}

constexpr double kNearly24 = 23.9999999;

INSTANTIATE_TEST_SUITE_P(
    At, LimitedText,
    testing::Values(
        Case{"AMaximumThatRoundsUp", fnAutomatic, -1, kNearly24, 0, kNearly24, "23.9999"},
        Case{"AMaximumThatGrowsByADigit", fnAutomatic, -1, 999999.5, 0, 999999.5, "999999"},
        Case{"AMaximumBelowOne", fnAutomatic, 3, 0.99999, 0, 0.99999, "0.999"},
        Case{"ANegativeMaximum", fnAutomatic, 3, -1.0004, -5, -1.0004, "-1.01"},
        Case{"AMinimumThatRoundsDown", fnAutomatic, 3, 1.0004, 1.0004, 5, "1.01"},
        Case{"ANegativeMinimum", fnAutomatic, 3, -9.999, -9.999, 5, "-9.99"},
        Case{"AFixedMaximum", fnFixed, 2, 2.997, 0, 2.997, "2.99"},
        Case{"AFixedMaximumWithoutFraction", fnFixed, 0, 99.9, 0, 99.9, "99"},
        Case{"AScientificMaximum", fnScientific, 2, 9999.9, 0, 9999.9, "9.99e+03"},
        Case{"AValueBetween", fnAutomatic, 3, 2.9996, 0, 5, "3"},
        Case{"LimitsOnBothSides", fnAutomatic, -1, kNearly24, kNearly24, kNearly24, "23.9999999"},
        Case{"FixedLimitsOnBothSides", fnFixed, 1, 0.123, 0.122, 0.124, "0.123"},
        Case{"SmallFixedLimits", fnFixed, 2, 1.5e-9, 1.4e-9, 1.6e-9, "0.0000000015"},
        Case{"NoDigitsAtAll", fnAutomatic, 0, 96, 0, 96, "9e+01"},
        Case{"TheGreatestOfAll", fnScientific, 2, std::numeric_limits<double>::max(), 0,
             std::numeric_limits<double>::max(), "1.79e+308"},
        Case{"TheLeastOfAll", fnScientific, 2, std::numeric_limits<double>::lowest(),
             std::numeric_limits<double>::lowest(), 0, "-1.79e+308"},
        Case{"NoLimits", fnAutomatic, -1, kNearly24, -kEndless, kEndless, "24"},
        Case{"AValueAboveItsMaximum", fnAutomatic, 3, 7.2, 0, 5, "7.2"},
        Case{"AValueBelowItsMinimum", fnAutomatic, 3, -7.2, 0, 5, "-7.2"},
        Case{"AMaximumThatIsShort", fnAutomatic, -1, 59.94, 0, 59.94, "59.94"},
        Case{"AMinimumThatIsShort", fnAutomatic, -1, 0.0001, 0.0001, 1, "0.0001"},
        Case{"LimitsOfOneFixedNumber", fnFixed, 3, -12.125, -12.125, -12.125, "-12.125"},
        Case{"Nothing", fnAutomatic, -1, 0, 0, 0, "0"},
        Case{"NothingBelowZero", fnAutomatic, -1, -0.0, 0, 0, "-0"},
        Case{"NothingFixed", fnFixed, 2, 0, 0, 0, "0.00"},
        Case{"NothingScientific", fnScientific, 2, 0, 0, 0, "0.00e+00"},
        Case{"AnEndlessValue", fnAutomatic, 3, kEndless, 0, kEndless, "inf"},
        Case{"NoNumber", fnAutomatic, 3, std::numeric_limits<double>::quiet_NaN(), 0, 1, "nan"}),
    [](const auto& test) { return std::string(test.param.name); });

double Read(const gcstring& text) {
    double number = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(String2Value(text, &number)) << text;
    return number;
}

/// The least distance that a text of that form can have: the nearest, or one of
/// its neighbours where that one is outside the limits.
double LeastDistance(const CFloatText& form, double value, double min, double max) {
    double least = kEndless;
    const double printed = Read(form.Print(value));
    const double step = std::max(std::abs(printed - value), std::abs(value) * 1e-17);
    for (int i = -16; i <= 16; ++i) {
        const double near = Read(form.Print(value + i * step / 4));
        if (near >= min && near <= max) {
            least = std::min(least, std::abs(near - value));
        }
    }
    return least;
}

/// As printf writes a number in the "C" locale.
std::string PrintedByC(EDisplayNotation notation, int precision, double value) {
    const char* const format = notation == fnFixed        ? "%.*f"
                               : notation == fnScientific ? "%.*e"
                                                          : "%.*g";
    std::string text(static_cast<size_t>(std::snprintf(nullptr, 0, format, precision, value)), 0);
    std::snprintf(text.data(), text.size() + 1, format, precision, value);
    return text;
}

void ExpectTheTextsOfC(double value, int precision) {
    for (const EDisplayNotation notation : {fnAutomatic, fnFixed, fnScientific}) {
        ASSERT_EQ(std::string(CFloatText(notation, precision).Print(value).c_str()),
                  PrintedByC(notation, precision, value))
            << "notation " << notation << ", precision " << precision;
    }
}

}  // namespace

TEST(FloatText, ReadsBackWithinItsLimitsAndNextToTheValue) {
    std::mt19937_64 random(20);
    const auto number = [&random] {
        std::uniform_real_distribution<double> mantissa(-10, 10);
        std::uniform_int_distribution<int> exponent(-8, 12);
        return mantissa(random) * std::pow(10.0, exponent(random));
    };
    int nudged = 0;
    for (int round = 0; round < 20000; ++round) {
        const auto notation = static_cast<EDisplayNotation>(random() % 3);
        const auto precision = static_cast<int64_t>(random() % 14) - 1;
        double min = number();
        double max = number();
        if (min > max) {
            std::swap(min, max);
        }
        // The limits themselves are what rounding carries out of them.
        const double place = static_cast<double>(random() % 4) / 3;
        const double value = place == 0 ? min : place == 1 ? max : min + (max - min) * place;
        const CFloatText form(notation, precision);
        const gcstring text = form.PrintWithin(value, min, max);
        const double printed = Read(text);
        std::ostringstream where;
        where.precision(17);
        where << value << " in [" << min << ", " << max << "], notation " << notation
              << ", precision " << precision << ": " << text;
        ASSERT_GE(printed, min) << where.str();
        ASSERT_LE(printed, max) << where.str();
        ASSERT_LE(std::abs(printed - value), LeastDistance(form, value, min, max)) << where.str();
        nudged += text != form.Print(value) ? 1 : 0;
    }
    EXPECT_GT(nudged, 1000);
}

TEST(FloatText, IsThatOfCForEdgesOfAllPrecisions) {
    using Limits = std::numeric_limits<double>;
    const std::vector<double> edges = {0.0,
                                       0.5,
                                       1.5,
                                       2.5,
                                       0.125,
                                       9.5,
                                       99.5,
                                       999999.5,
                                       9.9999995,
                                       1e5,
                                       1e6,
                                       1e-4,
                                       1e-5,
                                       0.1,
                                       0.3,
                                       1e21,
                                       1e22,
                                       1e23,
                                       4503599627370496.5,
                                       9007199254740993.0,
                                       Limits::max(),
                                       Limits::min(),
                                       Limits::denorm_min(),
                                       Limits::epsilon(),
                                       Limits::infinity(),
                                       Limits::quiet_NaN()};
    for (const double edge : edges) {
        for (const int precision : {0, 1, 2, 3, 5, 6, 7, 15, 16, 17, 18, 25, 60, 350, 767, 1100}) {
            ExpectTheTextsOfC(edge, precision);
            ExpectTheTextsOfC(-edge, precision);
        }
    }
}

TEST(FloatText, IsThatOfCForAnyBits) {
    std::mt19937_64 random(21);
    for (int round = 0; round < 50000; ++round) {
        ExpectTheTextsOfC(std::bit_cast<double>(random()), static_cast<int>(random() % 20));
        // Numbers that people write end in few digits, where halves are rounded.
        const double shortOne = static_cast<double>(random() % 2000000) / 64;
        ExpectTheTextsOfC(shortOne, static_cast<int>(random() % 8));
    }
}

TEST(FloatText, IsThatOfCForEverydayNumbersAndTheirNeighbours) {
    std::mt19937_64 random(22);
    for (int round = 0; round < 20000; ++round) {
        // Decimal numbers and the halves between them, from what takes an exponent below to what
        // takes one above.
        const double places = std::pow(10.0, static_cast<int>(random() % 9));
        const double scale = std::pow(10.0, static_cast<int>(random() % 14));
        const double halves = std::floor(static_cast<double>(random() % 1000000) * scale / 1e6);
        const double number = halves / 2 / places;
        for (const double value :
             {number, std::nextafter(number, kEndless), std::nextafter(number, -kEndless)}) {
            ExpectTheTextsOfC(value, static_cast<int>(random() % 18));
            ExpectTheTextsOfC(-value, static_cast<int>(random() % 18));
        }
    }
}

TEST(FloatText, IsThatOfCWhereADigitIsAdded) {
    for (int exponent = -6; exponent <= 17; ++exponent) {
        const double power = std::pow(10.0, exponent);
        for (double value = power, i = 0; i < 4; ++i) {
            for (int precision = 0; precision <= 17; ++precision) {
                ExpectTheTextsOfC(value, precision);
                ExpectTheTextsOfC(power - power / std::pow(10.0, precision) / 2, precision);
            }
            value = std::nextafter(value, 0);
        }
    }
}

TEST(FloatText, TakesMoreDigitsThanAnyDoubleHasForAll) {
    EXPECT_EQ(CFloatText(fnFixed, 1000000).Print(0.5), CFloatText(fnFixed, 1100).Print(0.5));
}

TEST(FloatText, LeavesTheRoundingOfTheProcessorAsItWas) {
    for (const int direction : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        ASSERT_EQ(std::fesetround(direction), 0);
        const gcstring text = CFloatText(fnAutomatic, -1).PrintWithin(kNearly24, 0, kNearly24);
        EXPECT_EQ(std::fegetround(), direction);
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(text, "23.9999");
    }
}

}  // namespace ValueTest
