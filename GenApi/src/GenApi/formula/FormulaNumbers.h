#pragma once
/// What both kinds of numbers in formulas have in common. Both behave as descriptions have come to
/// rely on: overflows wrap or become infinities, only a divisor of zero is a failure, and no result
/// depends on the user's locale.

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>
#include <system_error>

#include "formula/FormulaErrors.h"
#include "formula/MathParserT.h"

namespace GenApi_3_0_ORVANE {

/// In small letters only. "0X" begins a hexadecimal fraction of floats, and a zero followed by a
/// name of integers.
inline bool IsHex(std::string_view text) {
    return text.starts_with("0x");
}

/// Reads the hexadecimal number at the beginning of a text, whose bits are those of an integer
/// and whose value becomes a float.
/// @return its length
template <class Value>
size_t ParseHex(std::string_view text, Value& number) {
    constexpr size_t kPrefix = 2;
    const char* const begin = text.data() + kPrefix;
    uint64_t bits = 0;
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), bits, 16);
    if (error == std::errc::result_out_of_range) {
        bits = std::numeric_limits<uint64_t>::max();
    }
    number = static_cast<Value>(bits);
    // "0x" without a digit is a zero, followed by a name.
    return end == begin ? 1 : static_cast<size_t>(end - text.data());
}

/// Divisors below this magnitude count as zero: a sum of floats that should be zero seldom is.
inline const char* DoubleFormulaTraits::Divide(double left, double right, double& result) {
    constexpr double kSmallestDivisor = 0x1p-52;
    if (std::fabs(right) < kSmallestDivisor) {
        return kInfinity;
    }
    result = left / right;
    return nullptr;
}

/// The lowest number divided by -1 has no result in 64 bits; processors stop the program there.
inline const char* Int64FormulaTraits::Divide(int64_t left, int64_t right, int64_t& result) {
    constexpr unsigned kShortBits = 32;
    if (right == 0) {
        return kInfinity;
    }
    const auto bits = static_cast<uint64_t>(left) | static_cast<uint64_t>(right);
    if (bits >> kShortBits == 0) {
        // Most numbers are short, and many processors divide those several times as fast.
        result = static_cast<uint32_t>(left) / static_cast<uint32_t>(right);
    } else {
        result = right == -1 ? Subtract(0, left) : left / right;
    }
    return nullptr;
}

/// Whether two values are as an operator asks.
template <FormulaOp Op, class Value>
bool IsTrue(Value left, Value right) {
    if constexpr (Op == FormulaOp::Equal) {
        return left == right;
    } else if constexpr (Op == FormulaOp::NotEqual) {
        return left != right;
    } else if constexpr (Op == FormulaOp::Greater) {
        return left > right;
    } else if constexpr (Op == FormulaOp::GreaterEqual) {
        return left >= right;
    } else if constexpr (Op == FormulaOp::Less) {
        return left < right;
    } else if constexpr (Op == FormulaOp::LessEqual) {
        return left <= right;
    } else if constexpr (Op == FormulaOp::LogicalAnd) {
        return left != 0 && right != 0;
    } else {
        static_assert(Op == FormulaOp::LogicalOr);
        return left != 0 || right != 0;
    }
}

/// Applies an operator that formulas use so much that it shall take no call. A truth is 1, for use
/// in further calculations.
template <class Traits, FormulaOp Op, class Value = typename Traits::Value>
[[gnu::always_inline]] inline const char* ApplyOperator(Value left, Value right, Value& result) {
    if constexpr (Op == FormulaOp::Add) {
        result = Traits::Add(left, right);
    } else if constexpr (Op == FormulaOp::Subtract) {
        result = Traits::Subtract(left, right);
    } else if constexpr (Op == FormulaOp::Multiply) {
        result = Traits::Multiply(left, right);
    } else if constexpr (Op == FormulaOp::Divide) {
        return Traits::Divide(left, right, result);
    } else {
        result = IsTrue<Op>(left, right) ? Value(1) : Value(0);
    }
    return nullptr;
}

/// Operators that the compiler accepts as text and no number knows. The dollar sign
/// and the semicolon are the formula's mistake and reported as one of syntax, all others as
/// internal errors.
inline const char* RefuseOperator(FormulaOp op) {
    return op == FormulaOp::Dollar || op == FormulaOp::Semicolon ? kSyntax : kInternal;
}

}  // namespace GenApi_3_0_ORVANE
