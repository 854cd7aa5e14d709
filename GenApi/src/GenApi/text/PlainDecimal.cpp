// Floats of everyday size as text. A double is a whole number times a power of two, so that its
// product with a power of ten, shifted, is rounded without any error.

#include "text/PlainDecimal.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace GenApi_3_0_ORVANE {

namespace {

/// Any decimal number of so many digits is read back and printed again as the same.
constexpr unsigned kExactDigits = std::numeric_limits<double>::digits10;
/// printf writes smaller numbers with an exponent.
constexpr int kLeastExponent = -4;
/// The digits of the smallest number begin so many places after the point.
constexpr unsigned kExactPlaces = kExactDigits - 1 + static_cast<unsigned>(-kLeastExponent);

template <class Number>
constexpr auto kPowersOfTen = [] {
    std::array<Number, kExactPlaces + 1> powers{};
    Number power = 1;
    for (Number& entry : powers) {
        entry = power;
        power *= 10;
    }
    return powers;
}();

constexpr double kSmallest = 1e-4;
constexpr double kTooLarge = kPowersOfTen<double>[kExactDigits];

/// The significand of a double as a whole number, and the power of two that it's divided by.
struct Significand {
    uint64_t bits;
    unsigned shift;
};

constexpr int kFractionBits = std::numeric_limits<double>::digits - 1;

/// The power of two that a number begins with.
int BinaryExponentOf(double magnitude) {
    const uint64_t biased = std::bit_cast<uint64_t>(magnitude) >> kFractionBits;
    return static_cast<int>(biased) - (std::numeric_limits<double>::max_exponent - 1);
}

/// For numbers from kSmallest to kTooLarge.
Significand SignificandOf(double magnitude) {
    constexpr uint64_t kHidden = uint64_t{1} << kFractionBits;
    const uint64_t bits = (std::bit_cast<uint64_t>(magnitude) & (kHidden - 1)) | kHidden;
    return {bits, static_cast<unsigned>(kFractionBits - BinaryExponentOf(magnitude))};
}

/// The power of ten that a number from kSmallest to kTooLarge begins with.
int DecimalExponentOf(double magnitude) {
    constexpr std::array<double, 1 - kLeastExponent + kExactDigits> kPowers = {
        1e-4, 1e-3, 1e-2, 1e-1, 1e0,  1e1,  1e2,  1e3,  1e4,  1e5,
        1e6,  1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    // 1233 / 4096 is a little less than the logarithm of two, so that the estimate is right or one
    // too small.
    const int estimate = (BinaryExponentOf(magnitude) * 1233) >> 12;
    const auto next = static_cast<size_t>(estimate + 1 - kLeastExponent);
    return magnitude >= kPowers[next] ? estimate + 1 : estimate;
}

/// The number in units of so many decimal places.
uint64_t UnitsOf(double magnitude, unsigned places) {
    __extension__ using Wide = unsigned __int128;
    const auto [bits, shift] = SignificandOf(magnitude);
    const Wide product = Wide{bits} * kPowersOfTen<uint64_t>[places];
    const auto units = static_cast<uint64_t>(product >> shift);
    const Wide rest = product - (Wide{units} << shift);
    const Wide half = Wide{1} << (shift - 1);
    const bool isUp = rest > half || (rest == half && units % 2 != 0);
    return units + (isUp ? 1 : 0);
}

}  // namespace

std::optional<CPlainDecimal> CPlainDecimal::Of(double value, EDisplayNotation notation,
                                               int64_t precision) {
    if (precision < 0 || precision > kExactDigits) {
        return std::nullopt;
    }
    const auto digits = static_cast<unsigned>(precision);
    if (notation == fnFixed) {
        return WithPlaces(value, digits);
    }
    return notation == fnScientific ? std::nullopt : WithDigits(value, std::max(digits, 1U));
}

/// As printf's %g, which leaves out zeros at the end.
std::optional<CPlainDecimal> CPlainDecimal::WithDigits(double value, unsigned digits) {
    const double magnitude = std::fabs(value);
    if (magnitude == 0) {
        return CPlainDecimal(std::signbit(value), 0, 0);
    }
    if (!(magnitude >= kSmallest && magnitude < kTooLarge)) {
        return std::nullopt;
    }
    const int exponent = DecimalExponentOf(magnitude);
    const int spare = static_cast<int>(digits) - 1 - exponent;
    if (spare < 0) {
        return std::nullopt;
    }
    auto places = static_cast<unsigned>(spare);
    uint64_t units = UnitsOf(magnitude, places);
    if (units == kPowersOfTen<uint64_t>[digits]) {
        // A digit more, with which it may take an exponent.
        return std::nullopt;
    }
    while (places > 0 && units % 10 == 0) {
        units /= 10;
        --places;
    }
    return CPlainDecimal(std::signbit(value), units, places);
}

std::optional<CPlainDecimal> CPlainDecimal::WithPlaces(double value, unsigned places) {
    const double magnitude = std::fabs(value);
    if (magnitude == 0) {
        return CPlainDecimal(std::signbit(value), 0, places);
    }
    if (!(magnitude >= kSmallest && magnitude < kPowersOfTen<double>[kExactDigits - places])) {
        return std::nullopt;
    }
    return CPlainDecimal(std::signbit(value), UnitsOf(magnitude, places), places);
}

/// The nearest double: both numbers are doubles themselves.
double CPlainDecimal::Value() const {
    const double magnitude = static_cast<double>(m_Units) / kPowersOfTen<double>[m_Places];
    return m_IsNegative ? -magnitude : magnitude;
}

gcstring CPlainDecimal::Text() const {
    // Not initialised: that would take longer than the digits.
    std::array<char, kExactDigits + kExactPlaces + 4> text;
    char* end = text.data();
    if (m_IsNegative) {
        *end++ = '-';
    }
    const uint64_t unit = kPowersOfTen<uint64_t>[m_Places];
    const uint64_t whole = m_Units / unit;
    end = std::to_chars(end, text.data() + text.size(), whole).ptr;
    if (m_Places != 0) {
        end = WriteFraction(end, m_Units - whole * unit);
    }
    return {text.data(), static_cast<size_t>(end - text.data())};
}

/// The point and all places.
char* CPlainDecimal::WriteFraction(char* begin, uint64_t fraction) const {
    *begin++ = '.';
    char* const end = begin + m_Places;
    for (char* place = end; place != begin; fraction /= 10) {
        *--place = static_cast<char>('0' + fraction % 10);
    }
    return end;
}

}  // namespace GenApi_3_0_ORVANE
