#pragma once
/// What texts of a description may look like.

#include <cstdint>
#include <string>
#include <string_view>

namespace GenApi_3_0_ORVANE {

/// The lexical rules of element texts and attributes.
enum class Facet : uint8_t {
    AnyText,
    NonEmptyText,
    Reference,     ///< the name of a node
    VariableName,  ///< a name in a formula
    HexDigits,
    Integer,  ///< decimal, or hexadecimal with "0x"; told by turning it into a value
    NonNegative,
    Positive,
    IntegerLength,  ///< 1 to 8
    FloatLength,    ///< 4 or 8
    MergePriority,  ///< -1, 0 or 1
    Version,        ///< digits
    Double,
    Guid,
    Enumerated
};

/// Returns the text without the blanks around it.
std::string_view Trimmed(std::string_view text);
/// Returns what is wrong with a text; null if nothing is.
const char* CheckFacet(Facet facet, std::string_view text);
/// @return false for a text that isn't a 64-bit number
bool TextToInteger(std::string_view text, int64_t& value);
/// @return false for a text that isn't a number
bool TextToDouble(std::string_view text, double& value);

}  // namespace GenApi_3_0_ORVANE
