#pragma once

#include <string_view>

#include "GenApi/Types.h"
#include "properties/Property.h"

namespace GenApi_3_0_ORVANE {

/// How a number is to be shown, for nodes that say so themselves. What the description leaves out
/// has the value that the node's class starts with.
struct DisplayProperties {
    ERepresentation representation = _UndefinedRepresentation;
    std::string_view unit = {};
    EDisplayNotation notation = _UndefinedEDisplayNotation;
    /// Digits; -1 where the description doesn't say.
    int64_t precision = -1;

    /// Takes a property of the description.
    /// @return false for one that is about something else
    bool Set(const CProperty& property);
};

}  // namespace GenApi_3_0_ORVANE
