#pragma once

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

/// How a float is written as text. The decimal mark is a point, whatever the
/// locale of the application.
class CFloatText {
public:
    /// @param precision  digits; -1 for the default of the notation
    CFloatText(EDisplayNotation notation, int64_t precision);

    gcstring Print(double value) const;
    /// The text next to the value among those that read back as a number within
    /// the limits. Where rounding at the precision leaves them on either side,
    /// more digits are printed. A value outside the limits is printed as it is.
    gcstring PrintWithin(double value, double min, double max) const;

private:
    static constexpr int64_t kDefaultPrecision = 6;

    EDisplayNotation m_Notation;
    int64_t m_Precision;
};

}  // namespace GenApi_3_0_ORVANE
