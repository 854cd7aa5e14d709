#pragma once
/// The texts of failures of formulas, which users know from logs.

namespace GenApi_3_0_ORVANE {

inline constexpr const char* kSyntax = "#Syntax error!";
inline constexpr const char* kBrackets = "#Brackets do not match!";
inline constexpr const char* kInvalid = "#Invalid formula";
inline constexpr const char* kExtraOperation = "#Extra operation!";
inline constexpr const char* kLogical = "#Logical expression error!";
inline constexpr const char* kInvalidCount = "#Invalid parameters count for function call!";
inline constexpr const char* kInfinity = "#Infinity somewhere!";
inline constexpr const char* kTooBig = "#Value too big for operation!";
inline constexpr const char* kInternal = "#Internal error!";

}  // namespace GenApi_3_0_ORVANE
