// Floats as text. A text that is written back must be accepted again, so it must not
// leave the limits by being rounded.

#include "text/FloatText.h"

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

#include "text/Value2String.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// With more digits than this every double is followed by zeros only.
constexpr int64_t kMostDigits = 1100;

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

/// A stream rather than printf, for its choice of notations and a locale of its own.
gcstring PrintRounded(EDisplayNotation notation, int64_t precision, double value, int direction) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    if (notation == fnFixed) {
        stream.setf(std::ios::fixed, std::ios::floatfield);
    } else if (notation == fnScientific) {
        stream.setf(std::ios::scientific, std::ios::floatfield);
    }
    stream.precision(std::min(precision, kMostDigits));
    // The library prints all digits that are asked for from the exact value, and rounds
    // the last one as the processor would.
    const RoundingScope rounding(direction);
    stream << value;
    return gcstring(stream.str().c_str());
}

/// Returns the number that a text is read as; infinity for one that no double can hold.
double ReadBack(const gcstring& text, double printed) {
    double number = 0;
    return String2Value(text, &number)
               ? number
               : std::copysign(std::numeric_limits<double>::infinity(), printed);
}

}  // namespace

gcstring CFloatText::Print(double value) const {
    return PrintRounded(m_Notation, m_Precision, value, FE_TONEAREST);
}

/// Tries the nearest text, then the one on the value's other side, then one digit more, until a
/// text is within the limits. That ends: with enough digits the text is the value itself.
gcstring CFloatText::PrintWithin(double value, double min, double max) const {
    const auto isWithin = [&](double number) { return number >= min && number <= max; };
    gcstring text = Print(value);
    // What a device sends out of range is shown as it is: other digits would hide a
    // fault.
    if (!isWithin(value)) {
        return text;
    }
    for (int64_t precision = m_Precision; precision <= kMostDigits; ++precision) {
        text = PrintRounded(m_Notation, precision, value, FE_TONEAREST);
        const double number = ReadBack(text, value);
        if (isWithin(number)) {
            return text;
        }
        // Rounding has crossed a limit. The text on the value's other side may be within.
        gcstring other =
            PrintRounded(m_Notation, precision, value, number > max ? FE_DOWNWARD : FE_UPWARD);
        if (isWithin(ReadBack(other, value))) {
            return other;
        }
    }
    return text;
}

}  // namespace GenApi_3_0_ORVANE
