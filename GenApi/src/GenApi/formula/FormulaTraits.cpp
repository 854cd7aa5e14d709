// What the operators and functions of formulas do to numbers. Both kinds of numbers behave as
// descriptions have come to rely on: overflows wrap, infinities are failures only where a divisor
// is zero, and no result depends on the user's locale.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "Base/PlainLocale.h"
#include "formula/FormulaTokens.h"
#include "formula/MathParserT.h"

namespace GenApi_3_0_ORVANE {

namespace {

constexpr const char* kInfinity = "#Infinity somewhere!";
constexpr const char* kTooBig = "#Value too big for operation!";
constexpr const char* kInternal = "#Internal error!";
constexpr std::string_view kDecimalDigits = "0123456789";
/// Divisors below this magnitude count as zero: a sum of floats that should be zero seldom is.
constexpr double kSmallestDivisor = 0x1p-52;

/// In small letters only. "0X" begins a hexadecimal fraction of floats, and a zero followed by a
/// name of integers.
bool IsHex(std::string_view text) {
    return text.starts_with("0x");
}

/// Reads the hexadecimal number at the beginning of a text.
/// @return its length
size_t ParseHex(std::string_view text, uint64_t& number) {
    constexpr size_t kPrefix = 2;
    const char* const begin = text.data() + kPrefix;
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), number, 16);
    if (error == std::errc::result_out_of_range) {
        number = std::numeric_limits<uint64_t>::max();
    } else if (end == begin) {
        // "0x" without a digit is a zero, and a name behind it.
        number = 0;
        return 1;
    }
    return static_cast<size_t>(end - text.data());
}

/// The bit operations of floats work on 32 bits: descriptions mask register values with them.
/// What doesn't fit is refused rather than cut.
bool ToInt32(double value, int32_t& number) {
    if (!(value >= -2147483648.0 && value <= 2147483647.0)) {
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

/// What doesn't fit into 64 bits becomes the lowest number, so that "2**63" has the bits of
/// "1<<63".
int64_t TruncateToInt64(long double value) {
    constexpr long double kBound = 9223372036854775808.0L;
    const bool fits = value >= -kBound && value < kBound;
    return fits ? static_cast<int64_t>(value) : std::numeric_limits<int64_t>::min();
}

/// The number that the C library makes of one that is too large or too near to zero for the fast
/// conversion: infinity, or the nearest that a double has.
double ReadExtreme(std::string_view number) {
    return strtod_l(std::string(number).c_str(), nullptr, GenICam_3_0_ORVANE::CPlainLocale::Get());
}

/// Comparisons and logic, which are alike for both kinds of numbers. A truth is 1, for use in
/// further calculations.
template <class Value>
bool ApplyTest(FormulaOp op, Value left, Value right, Value& result) {
    bool truth = false;
    switch (op) {
        case FormulaOp::NotEqual:
            truth = left != right;
            break;
        case FormulaOp::GreaterEqual:
            truth = left >= right;
            break;
        case FormulaOp::LessEqual:
            truth = left <= right;
            break;
        case FormulaOp::LogicalAnd:
            truth = left != 0 && right != 0;
            break;
        case FormulaOp::LogicalOr:
            truth = left != 0 || right != 0;
            break;
        case FormulaOp::Equal:
            truth = left == right;
            break;
        case FormulaOp::Greater:
            truth = left > right;
            break;
        case FormulaOp::Less:
            truth = left < right;
            break;
        default:
            return false;
    }
    result = truth ? Value(1) : Value(0);
    return true;
}

/// Operators that the compiler accepts as text and no number knows. The dollar sign
/// and the semicolon are the formula's mistake and reported as one of syntax, all others as
/// internal errors.
const char* RefuseOperator(FormulaOp op) {
    return op == FormulaOp::Dollar || op == FormulaOp::Semicolon ? kSyntax : kInternal;
}

}  // namespace

/// Much faster than the C library, and independent of the locale: descriptions have thousands of
/// formulas.
size_t DoubleFormulaTraits::ParseNumber(std::string_view text, double& number) {
    if (IsHex(text)) {
        uint64_t bits = 0;
        const size_t length = ParseHex(text, bits);
        number = static_cast<double>(bits);
        return length;
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
    if (ApplyTest(op, left, right, result)) {
        return nullptr;
    }
    int32_t leftBits = 0;
    int32_t rightBits = 0;
    switch (op) {
        case FormulaOp::Divide:
        case FormulaOp::Modulo:
            if (std::fabs(right) < kSmallestDivisor) {
                return kInfinity;
            }
            result = op == FormulaOp::Divide ? left / right : std::fmod(left, right);
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
    // Beyond this the value is zero or infinity anyway, and a formula must not keep the lock for
    // as long as it likes.
    const int steps = static_cast<int>(std::fmin(std::fabs(place), 1000.0));
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

/// A number that is too large becomes the largest. It ends where the digits end; a name right
/// after it is a wrong syntax.
size_t Int64FormulaTraits::ParseNumber(std::string_view text, int64_t& number) {
    if (IsHex(text)) {
        uint64_t bits = 0;
        const size_t length = ParseHex(text, bits);
        number = static_cast<int64_t>(bits);
        return length;
    }
    const char* const last = text.data() + text.size();
    auto [end, error] = std::from_chars(text.data(), last, number);
    if (error == std::errc::result_out_of_range) {
        number = std::numeric_limits<int64_t>::max();
    }
    // Cameras write "4.0" in formulas of integers. A fraction that counts for
    // something is no integer.
    const std::string_view rest(end, static_cast<size_t>(last - end));
    const size_t fraction = std::min(rest.find_first_not_of(kDecimalDigits, 1), rest.size());
    if (rest.starts_with('.') && rest.substr(1, fraction - 1).find_first_not_of('0') == rest.npos) {
        end += fraction;
    }
    return static_cast<size_t>(end - text.data());
}

/// Unsigned throughout, so that an overflow wraps rather than being undefined.
const char* Int64FormulaTraits::Apply(FormulaOp op, int64_t left, int64_t right, int64_t& result) {
    if (ApplyTest(op, left, right, result)) {
        return nullptr;
    }
    constexpr uint64_t kShiftMask = 63;
    const auto a = static_cast<uint64_t>(left);
    const auto b = static_cast<uint64_t>(right);
    switch (op) {
        case FormulaOp::Divide:
        case FormulaOp::Modulo:
            if (right == 0) {
                return kInfinity;
            }
            // The lowest number divided by -1 has no result in 64 bits; processors stop the
            // program there.
            if (right == -1) {
                result = op == FormulaOp::Divide ? static_cast<int64_t>(0 - a) : 0;
            } else {
                result = op == FormulaOp::Divide ? left / right : left % right;
            }
            return nullptr;
        case FormulaOp::Power:
            result = TruncateToInt64(
                std::pow(static_cast<long double>(left), static_cast<long double>(right)));
            return nullptr;
        case FormulaOp::ShiftLeft:
            result = static_cast<int64_t>(a << (b & kShiftMask));
            return nullptr;
        case FormulaOp::ShiftRight:
            result = left >> (b & kShiftMask);
            return nullptr;
        case FormulaOp::Xor:
            result = left ^ right;
            return nullptr;
        case FormulaOp::And:
            result = left & right;
            return nullptr;
        case FormulaOp::Or:
            result = left | right;
            return nullptr;
        default:
            return RefuseOperator(op);
    }
}

const char* Int64FormulaTraits::Complement(int64_t operand, int64_t& result) {
    result = ~operand;
    return nullptr;
}

/// Integers know only the sign and the negation.
int64_t Int64FormulaTraits::Call(FormulaFunction function, int64_t operand) {
    if (function == FormulaFunction::Sgn) {
        return operand > 0 ? 1 : (operand < 0 ? -1 : 0);
    }
    return static_cast<int64_t>(0 - static_cast<uint64_t>(operand));
}

}  // namespace GenApi_3_0_ORVANE
