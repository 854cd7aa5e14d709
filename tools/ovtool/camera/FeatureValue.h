#pragma once
/// What a feature holds, for people and for machines.

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "OvIAPI.h"
#include "support/Json.h"

/// An enumeration gives the name of its entry, a buffer its bytes in hexadecimal.
using FeatureValue = std::variant<int64_t, double, bool, std::string>;

/// Limits, or the entries of an enumeration; nothing for the other types.
using FeatureRange =
    std::variant<std::monostate, OV_INT_RANGE, OV_FLOAT_RANGE, std::vector<std::string>>;

std::string ToText(const FeatureValue& value);
Json ToJson(const FeatureValue& value);

std::string ToText(const FeatureRange& range);
Json ToJson(const FeatureRange& range);
