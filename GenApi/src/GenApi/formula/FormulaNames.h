#pragma once
/// The names in formulas: the built-in ones, and how names are compared.

#include <optional>
#include <string>
#include <string_view>

#include "formula/MathParserT.h"

namespace GenApi_3_0_ORVANE {

/// Returns the function of that name.
/// @param hasAll  false for integers, which know the last two functions only
std::optional<FormulaFunction> FindFunction(std::string_view upperName, bool hasAll);
/// Returns the number that a built-in name stands for.
std::optional<double> FindConstant(std::string_view upperName);

/// Converts the letters that names are made of, whatever the user's locale.
std::string ToUpper(std::string_view text);
/// Whether two names differ in case at most.
bool IsSameInUpperCase(std::string_view left, std::string_view right);

}  // namespace GenApi_3_0_ORVANE
