// The names in formulas: the built-in functions and constants, and how names are compared.

#include "formula/FormulaNames.h"

#include <algorithm>
#include <array>
#include <numbers>

namespace GenApi_3_0_ORVANE {

namespace {

struct FunctionRow {
    std::string_view name;
    FormulaFunction function;
};

constexpr std::array<FunctionRow, 18> kFunctions{{
    {"ATAN", FormulaFunction::Atan},
    {"COS", FormulaFunction::Cos},
    {"SIN", FormulaFunction::Sin},
    {"TAN", FormulaFunction::Tan},
    {"ASIN", FormulaFunction::Asin},
    {"ACOS", FormulaFunction::Acos},
    {"ABS", FormulaFunction::Abs},
    {"EXP", FormulaFunction::Exp},
    {"SQRT", FormulaFunction::Sqrt},
    {"LN", FormulaFunction::Ln},
    {"LG", FormulaFunction::Lg},
    {"FLOOR", FormulaFunction::Floor},
    {"CEIL", FormulaFunction::Ceil},
    {"FRAC", FormulaFunction::Frac},
    {"TRUNC", FormulaFunction::Trunc},
    {"ROUND", FormulaFunction::Round},
    {"SGN", FormulaFunction::Sgn},
    {"NEG", FormulaFunction::Neg},
}};

char ToUpper(char character) {
    constexpr char kDistance = 'a' - 'A';
    const bool isLower = character >= 'a' && character <= 'z';
    return isLower ? static_cast<char>(character - kDistance) : character;
}

}  // namespace

/// A search: the table is short, and each formula is compiled once.
std::optional<FormulaFunction> FindFunction(std::string_view upperName, bool hasAll) {
    for (const FunctionRow& row : kFunctions) {
        const bool isKnown = hasAll || row.function >= FormulaFunction::Sgn;
        if (isKnown && row.name == upperName) {
            return row.function;
        }
    }
    return std::nullopt;
}

std::optional<double> FindConstant(std::string_view upperName) {
    if (upperName == "E") {
        return std::numbers::e;
    }
    if (upperName == "PI") {
        return std::numbers::pi;
    }
    return std::nullopt;
}

std::string ToUpper(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char character) { return ToUpper(character); });
    return upper;
}

bool IsSameInUpperCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return ToUpper(a) == ToUpper(b); });
}

}  // namespace GenApi_3_0_ORVANE
