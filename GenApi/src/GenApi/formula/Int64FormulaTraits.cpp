// What the operators and functions of formulas do to integers. They are computed unsigned, so that
// an overflow wraps rather than being undefined.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "formula/FormulaNumbers.h"

namespace GenApi_3_0_ORVANE {

namespace {

constexpr std::string_view kDecimalDigits = "0123456789";

/// What doesn't fit into 64 bits becomes the lowest number, so that "2**63" has the bits of
/// "1<<63".
int64_t TruncateToInt64(long double value) {
    constexpr long double kBound = 0x1p63L;
    const bool fits = value >= -kBound && value < kBound;
    return fits ? static_cast<int64_t>(value) : std::numeric_limits<int64_t>::min();
}

}  // namespace

/// A number that is too large becomes the largest. It ends where the digits end; a name right
/// after it is a wrong syntax.
size_t Int64FormulaTraits::ParseNumber(std::string_view text, int64_t& number) {
    if (IsHex(text)) {
        return ParseHex(text, number);
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
    constexpr uint64_t kShiftMask = 63;
    const auto a = static_cast<uint64_t>(left);
    const auto b = static_cast<uint64_t>(right);
    switch (op) {
        case FormulaOp::Modulo:
            if (right == 0) {
                return kInfinity;
            }
            // As in a division.
            result = right == -1 ? 0 : left % right;
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
