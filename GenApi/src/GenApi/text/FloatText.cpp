// Floats as text. A text that is written back must be accepted again, so it must not
// leave the limits by being rounded.

#include "text/FloatText.h"

#include <algorithm>
#include <array>
#include <cfenv>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <string_view>

#include "Base/OvAssert.h"
#include "text/PlainDecimal.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// With more digits than this every double is followed by zeros only.
constexpr int64_t kMostDigits = 1100;

/// A number as text, in memory of its own. There is room for the longest text that a double has:
/// all its digits before the point, as many after it, and the sign.
class Digits {
public:
    /// The nearest text, whatever the processor's rounding and the locale of the application.
    Digits(EDisplayNotation notation, int64_t precision, double value) {
        const auto [end, error] = std::to_chars(m_text.begin(), m_text.end(), value,
                                                FormatOf(notation), static_cast<int>(precision));
        OV_ASSERT(error == std::errc());
        m_length = static_cast<size_t>(end - m_text.begin());
    }

    gcstring Text() const { return {m_text.data(), m_length}; }
    std::string_view View() const { return {m_text.data(), m_length}; }

private:
    static std::chars_format FormatOf(EDisplayNotation notation) {
        switch (notation) {
            case fnFixed:
                return std::chars_format::fixed;
            case fnScientific:
                return std::chars_format::scientific;
            default:
                return std::chars_format::general;
        }
    }

    static constexpr size_t kMostDigitsBeforePoint =
        std::numeric_limits<double>::max_exponent10 + 1;

    // Not initialised: that would take longer than the digits.
    std::array<char, kMostDigitsBeforePoint + kMostDigits + 2> m_text;
    size_t m_length;
};

/// Rounds numbers in one direction for the life of a scope.
class RoundingScope {
public:
    explicit RoundingScope(int direction) : m_Before(std::fegetround()) {
        std::fesetround(direction);
    }
    ~RoundingScope() { std::fesetround(m_Before); }
    RoundingScope(const RoundingScope&) = delete;
    RoundingScope& operator=(const RoundingScope&) = delete;

private:
    int m_Before;
};

/// A stream rounds the last digit as the processor would, and has a locale of its own. It takes
/// ten times as long as Digits.
gcstring PrintRounded(EDisplayNotation notation, int64_t precision, double value, int direction) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    if (notation == fnFixed) {
        stream.setf(std::ios::fixed, std::ios::floatfield);
    } else if (notation == fnScientific) {
        stream.setf(std::ios::scientific, std::ios::floatfield);
    }
    stream.precision(precision);
    const RoundingScope rounding(direction);
    stream << value;
    return gcstring(stream.str().c_str());
}

/// Returns the number that a text is read as; infinity for one that no double can hold.
double ReadBack(std::string_view text, double printed) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() ? number
                                : std::copysign(std::numeric_limits<double>::infinity(), printed);
}

}  // namespace

CFloatText::CFloatText(EDisplayNotation notation, int64_t precision)
    : m_Notation(notation),
      m_Precision(precision < 0 ? kDefaultPrecision : std::min(precision, kMostDigits)) {}

gcstring CFloatText::Print(double value) const {
    if (const auto plain = CPlainDecimal::Of(value, m_Notation, m_Precision)) {
        return plain->Text();
    }
    return Digits(m_Notation, m_Precision, value).Text();
}

/// Tries the nearest text, then the one on the value's other side, then one digit more, until a
/// text is within the limits. That ends: with enough digits the text is the value itself.
gcstring CFloatText::PrintWithin(double value, double min, double max) const {
    const auto isWithin = [&](double number) { return number >= min && number <= max; };
    if (const auto plain = CPlainDecimal::Of(value, m_Notation, m_Precision);
        plain && isWithin(value) && isWithin(plain->Value())) {
        return plain->Text();
    }
    // What a device sends out of range is shown as it is: other digits would hide a
    // fault.
    for (int64_t precision = m_Precision; isWithin(value) && precision <= kMostDigits;
         ++precision) {
        const Digits digits(m_Notation, precision, value);
        const double number = ReadBack(digits.View(), value);
        if (isWithin(number)) {
            return digits.Text();
        }
        // Rounding has crossed a limit. The text on the value's other side may be within.
        gcstring other =
            PrintRounded(m_Notation, precision, value, number > max ? FE_DOWNWARD : FE_UPWARD);
        if (isWithin(ReadBack(other.c_str(), value))) {
            return other;
        }
    }
    return Print(value);
}

}  // namespace GenApi_3_0_ORVANE
