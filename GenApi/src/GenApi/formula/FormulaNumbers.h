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

/// Applies an operator between two values. What formulas use most is here, so that it takes no
/// call. A truth is 1, for use in further calculations.
template <class Traits, class Value = typename Traits::Value>
[[gnu::always_inline]] inline const char* ApplyOperator(FormulaOp op, Value left, Value right,
                                                        Value& result) {
    bool truth = false;
    switch (op) {
        case FormulaOp::Add:
            result = Traits::Add(left, right);
            return nullptr;
        case FormulaOp::Subtract:
            result = Traits::Subtract(left, right);
            return nullptr;
        case FormulaOp::Multiply:
            result = Traits::Multiply(left, right);
            return nullptr;
        case FormulaOp::Divide:
            return Traits::Divide(left, right, result);
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
        default: {
            // Memory of its own, so that the caller's result can be in a register.
            Value computed{};
            const char* const error = Traits::Apply(op, left, right, computed);
            result = computed;
            return error;
        }
    }
    result = truth ? Value(1) : Value(0);
    return nullptr;
}

/// Operators that the compiler accepts as text and no number knows. The dollar sign
/// and the semicolon are the formula's mistake and reported as one of syntax, all others as
/// internal errors.
inline const char* RefuseOperator(FormulaOp op) {
    return op == FormulaOp::Dollar || op == FormulaOp::Semicolon ? kSyntax : kInternal;
}

}  // namespace GenApi_3_0_ORVANE
