#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

/// A float of everyday size, rounded to a decimal number of few digits: its text takes whole
/// numbers only, which is much faster than the digits of just any float.
///
/// Rounds to the nearest, and a half to the even digit, whatever the processor's rounding.
class CPlainDecimal {
public:
    /// The float in a notation, with digits as printf counts them.
    /// @return none for a number that is too large, too small or too long for this, or that takes
    ///         an exponent
    static std::optional<CPlainDecimal> Of(double value, EDisplayNotation notation,
                                           int64_t precision);

    /// Returns the number that the text is read as.
    double Value() const;
    gcstring Text() const;

private:
    CPlainDecimal(bool isNegative, uint64_t units, unsigned places)
        : m_Units(units), m_Places(places), m_IsNegative(isNegative) {}

    static std::optional<CPlainDecimal> WithDigits(double value, unsigned digits);
    static std::optional<CPlainDecimal> WithPlaces(double value, unsigned places);
    char* WriteFraction(char* begin, uint64_t fraction) const;

    uint64_t m_Units;
    unsigned m_Places;
    bool m_IsNegative;
};

}  // namespace GenApi_3_0_ORVANE
