#pragma once
/// The texts of the enumeration data types as descriptions write them.

#include <cstdint>
#include <optional>
#include <string_view>

#include "properties/Property.h"

namespace GenApi_3_0_ORVANE {

/// The text of an enumerator; empty for a number that the type does not have.
std::string_view EnumNumberToText(CProperty::EDataType_t type, int32_t number);

/// The number of the enumerator that a description may write as @p text. The
/// markers for undefined values, whose texts begin with an underscore, are not
/// for descriptions and are not found.
std::optional<CEnumNumber> EnumNumberFromText(CProperty::EDataType_t type, std::string_view text);

}  // namespace GenApi_3_0_ORVANE
