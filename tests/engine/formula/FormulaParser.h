#pragma once
/// What formulas come to, for tables of them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <variant>
#include <vector>

#include "formula/MathParserT.h"

namespace FormulaTest {

using GenApi_3_0_ORVANE::Int64MathParser;
using GenApi_3_0_ORVANE::MathParser;

/// A value, or the text of a failure.
template <class Value>
using Outcome = std::variant<Value, std::string>;

/// Failures of the compiler begin with this in the tables, those of the
/// evaluation stand alone.
inline constexpr const char* kAtCompile = "compile: ";
inline constexpr const char* kSyntax = "compile: #Syntax error!";
inline constexpr const char* kBrackets = "compile: #Brackets do not match!";
inline constexpr const char* kInfinity = "#Infinity somewhere!";
inline constexpr const char* kTooBig = "#Value too big for operation!";
inline constexpr const char* kLogical = "#Logical expression error!";
inline constexpr const char* kExtra = "#Extra operation!";
inline constexpr const char* kInvalid = "#Invalid formula";
inline constexpr const char* kInvalidCount = "#Invalid parameters count for function call!";

/// What a formula comes to where X is 5, Y is -3, Zero is 0 and Gain.Max is 640.
template <class Parser>
Outcome<typename Parser::Value> OutcomeOf(const std::string& formula, bool upperCase = false) {
    Parser parser;
    const std::vector<std::pair<const char*, int>> variables = {
        {"X", 5}, {"Y", -3}, {"Zero", 0}, {"Gain.Max", 640}};
    for (const auto& [name, value] : variables) {
        parser.AddVariable(name);
    }
    if (const char* const error = parser.Compile(formula, upperCase)) {
        return std::string(kAtCompile) + error;
    }
    for (size_t i = 0; i < variables.size(); ++i) {
        parser.GetVariableSlot(i) = variables[i].second;
    }
    typename Parser::Value result{};
    if (const char* const error = parser.Evaluate(result)) {
        return std::string(error);
    }
    return result;
}

inline Outcome<double> RunDouble(const std::string& formula) {
    return OutcomeOf<MathParser>(formula);
}
inline Outcome<int64_t> RunInteger(const std::string& formula) {
    return OutcomeOf<Int64MathParser>(formula);
}

/// A row of a table.
template <class Value>
struct Row {
    const char* formula;
    Outcome<Value> expected;
};
using DoubleRow = Row<double>;
using IntegerRow = Row<int64_t>;

template <class Value>
void PrintTo(const Row<Value>& row, std::ostream* stream) {
    *stream << '"' << row.formula << '"';
}

/// Doubles agree in all but the last digits, as those of the C library do.
inline bool IsSame(const Outcome<double>& actual, const Outcome<double>& expected) {
    if (actual.index() != expected.index() || actual.index() == 1) {
        return actual == expected;
    }
    const double is = std::get<double>(actual);
    const double wanted = std::get<double>(expected);
    constexpr double kTolerance = 4 * std::numeric_limits<double>::epsilon();
    return is == wanted || (std::isnan(is) && std::isnan(wanted)) ||
           std::fabs(is - wanted) <= kTolerance * std::fabs(wanted);
}
inline bool IsSame(const Outcome<int64_t>& actual, const Outcome<int64_t>& expected) {
    return actual == expected;
}

template <class Value>
std::string TextOf(const Outcome<Value>& outcome) {
    return testing::PrintToString(outcome);
}

}  // namespace FormulaTest
