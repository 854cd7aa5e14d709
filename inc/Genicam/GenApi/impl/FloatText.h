#pragma once

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

/// How a float is written as text. The decimal mark is a point, whatever the
/// locale of the application.
class CFloatText {
public:
    /// @param precision  digits; -1 for the default of the notation
    CFloatText(EDisplayNotation notation, int64_t precision)
        : m_Notation(notation), m_Precision(precision) {}

    gcstring Print(double value) const;

    /// Half of what one more in the last digit of a printed number makes: the
    /// most by which rounding can have moved it.
    static double HalfLastDigit(const gcstring& text);

private:
    EDisplayNotation m_Notation;
    int64_t m_Precision;
};

}  // namespace GenApi_3_0_ORVANE
