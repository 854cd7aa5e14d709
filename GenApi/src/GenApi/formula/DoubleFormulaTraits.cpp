// What the operators and functions of formulas do to floats.

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "Base/PlainLocale.h"
#include "formula/FormulaNumbers.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// The bit operations of floats work on 32 bits: descriptions mask register values with them.
/// What doesn't fit is refused rather than cut.
bool ToInt32(double value, int32_t& number) {
    if (!(value >= std::numeric_limits<int32_t>::min() &&
          value <= std::numeric_limits<int32_t>::max())) {
        return false;
    }
    number = static_cast<int32_t>(value);
    return true;
}

/// Shift distances wrap at 32 as processors do it, which C++ leaves undefined.
int32_t ApplyBits(FormulaOp op, int32_t left, int32_t right) {
    constexpr uint32_t kShiftMask = 31;
    const auto bits = static_cast<uint32_t>(left);
    const uint32_t shift = static_cast<uint32_t>(right) & kShiftMask;
    switch (op) {
        case FormulaOp::ShiftLeft:
            return static_cast<int32_t>(bits << shift);
        case FormulaOp::ShiftRight:
            return left >> shift;
        case FormulaOp::Xor:
            return left ^ right;
        case FormulaOp::And:
            return left & right;
        default:
            return left | right;
    }
}

/// The number that the C library makes of one that is too large or too near to zero for the fast
/// conversion: infinity, or the nearest that a double has.
double ReadExtreme(std::string_view number) {
    return strtod_l(std::string(number).c_str(), nullptr, GenICam_3_0_ORVANE::CPlainLocale::Get());
}

}  // namespace

/// Much faster than the C library, and independent of the locale: descriptions have thousands of
/// formulas.
size_t DoubleFormulaTraits::ParseNumber(std::string_view text, double& number) {
    if (IsHex(text)) {
        return ParseHex(text, number);
    }
    // In capitals the prefix is that of the C library's hexadecimal fractions.
    constexpr std::string_view kPrefix = "0X";
    const bool isFraction = text.starts_with(kPrefix);
    const char* const begin = text.data() + (isFraction ? kPrefix.size() : 0);
    const auto [end, error] =
        std::from_chars(begin, text.data() + text.size(), number,
                        isFraction ? std::chars_format::hex : std::chars_format::general);
    if (error == std::errc::invalid_argument) {
        number = 0;
        return 1;
    }
    const auto length = static_cast<size_t>(end - text.data());
    if (error == std::errc::result_out_of_range) {
        number = ReadExtreme(text.substr(0, length));
    }
    return length;
}

/// Results that overflow are infinities, which no limit admits.
const char* DoubleFormulaTraits::Apply(FormulaOp op, double left, double right, double& result) {
    int32_t leftBits = 0;
    int32_t rightBits = 0;
    switch (op) {
        case FormulaOp::Modulo:
            if (const char* const error = Divide(left, right, result)) {
                return error;
            }
            result = std::fmod(left, right);
            return nullptr;
        case FormulaOp::Power:
            result = std::pow(left, right);
            return nullptr;
        case FormulaOp::ShiftLeft:
        case FormulaOp::ShiftRight:
        case FormulaOp::Xor:
        case FormulaOp::And:
        case FormulaOp::Or:
            if (!ToInt32(left, leftBits) || !ToInt32(right, rightBits)) {
                return kTooBig;
            }
            result = ApplyBits(op, leftBits, rightBits);
            return nullptr;
        default:
            return RefuseOperator(op);
    }
}

/// Like the other bit operations, on 32 bits.
const char* DoubleFormulaTraits::Complement(double operand, double& result) {
    int32_t bits = 0;
    if (!ToInt32(operand, bits)) {
        return kTooBig;
    }
    result = ~bits;
    return nullptr;
}

/// Step by step: a power of ten that is computed at once differs in its last digits.
double RoundAt(double value, double place) {
    const double step = place < 0 ? 0.1 : 10.0;
    // Beyond these the value is zero or infinity anyway, and a formula must not keep the lock for
    // as long as it likes.
    constexpr double kMostSteps = 1000;
    const int steps = static_cast<int>(std::fmin(std::fabs(place), kMostSteps));
    for (int i = 0; i < steps; ++i) {
        value *= step;
    }
    value = value >= 0 ? std::floor(value + 0.5) : std::ceil(value - 0.5);
    for (int i = 0; i < steps; ++i) {
        value /= step;
    }
    return value;
}

/// Outside of its domain a function returns NaN, which every comparison with a limit refuses.
double DoubleFormulaTraits::Call(FormulaFunction function, double operand) {
    switch (function) {
        case FormulaFunction::Atan:
            return std::atan(operand);
        case FormulaFunction::Cos:
            return std::cos(operand);
        case FormulaFunction::Sin:
            return std::sin(operand);
        case FormulaFunction::Tan:
            return std::tan(operand);
        case FormulaFunction::Asin:
            return std::asin(operand);
        case FormulaFunction::Acos:
            return std::acos(operand);
        case FormulaFunction::Abs:
            return std::fabs(operand);
        case FormulaFunction::Exp:
            return std::exp(operand);
        case FormulaFunction::Sqrt:
            return std::sqrt(operand);
        case FormulaFunction::Ln:
            return std::log(operand);
        case FormulaFunction::Lg:
            return std::log10(operand);
        case FormulaFunction::Floor:
            return std::floor(operand);
        case FormulaFunction::Ceil:
            return std::ceil(operand);
        case FormulaFunction::Frac:
            return operand - std::trunc(operand);
        case FormulaFunction::Trunc:
            return std::trunc(operand);
        case FormulaFunction::Round:
            return RoundAt(operand, 0);
        case FormulaFunction::Sgn:
            return operand > 0 ? 1 : (operand < 0 ? -1 : 0);
        case FormulaFunction::Neg:
            return -operand;
    }
    return operand;
}

}  // namespace GenApi_3_0_ORVANE
