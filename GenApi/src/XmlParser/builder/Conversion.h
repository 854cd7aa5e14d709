#pragma once
/// From checked texts to typed values.

#include <cstdint>
#include <string_view>

#include "grammar/SimpleTypes.h"
#include "properties/Property.h"

namespace GenApi_3_0_ORVANE {

/// A value that breaks a rule of the grammar; the reader knows where.
struct ValueError {
    const char* text;
};

/// Returns the part of a text that counts: numbers, names and choices may have blanks around
/// them, texts keep theirs.
/// @throws ValueError for a text that breaks the rules
std::string_view Checked(Facet facet, std::string_view text);
/// @param propertyNumber  what a failure names
/// @throws PropertyException for a text that is no 64-bit integer.
int64_t IntegerOf(std::string_view text, uint32_t propertyNumber);
/// @throws ValueError
double RealOf(std::string_view text);
/// @throws ValueError
CEnumNumber ChoiceOf(CProperty::EDataType_t type, std::string_view text);

}  // namespace GenApi_3_0_ORVANE
