// How enumerations and floats take the place of integers in references.

#include "core/PolySource.h"

#include <cmath>
#include <limits>

#include "GenApi/IEnumEntry.h"

namespace GenApi_3_0_ORVANE {

/// The lower bound is a number that int64_t has; the upper one is the first that it doesn't have,
/// and both are exact as doubles.
bool IsInInt64(double value) {
    constexpr double kBound = 0x1p63;
    return value >= -kBound && value < kBound;
}

int64_t RoundToInt64(double value, const char* operation) {
    if (!IsInInt64(value)) {
        RUNTIME_EXCEPTION("%s: Float value %f out of integer range", operation, value);
    }
    return static_cast<int64_t>(value > 0 ? value + 0.5 : value - 0.5);
}

/// The numeric value need not be the number that the device uses for the entry.
double NumericValueOf(IEnumeration& enumeration, bool verify, bool ignoreCache) {
    IEnumEntry* const entry = enumeration.GetCurrentEntry(verify, ignoreCache);
    if (entry == nullptr) {
        LOGICAL_ERROR_EXCEPTION("NULL pointer dereferenced");
    }
    return entry->GetNumericValue();
}

/// A computed value seldom hits an entry exactly. Of two that are equally near, the first in the
/// description is taken.
void SetNearest(IEnumeration& enumeration, double value, bool verify) {
    node_vector nodes;
    enumeration.GetEntries(nodes);
    IEnumEntry* nearest = nullptr;
    double distance = std::numeric_limits<double>::infinity();
    for (INode* const node : nodes) {
        auto* const entry = dynamic_cast<IEnumEntry*>(node);
        if (!IsAvailable(node->GetAccessMode())) {
            continue;
        }
        const double candidate = std::fabs(entry->GetNumericValue() - value);
        if (nearest == nullptr || candidate < distance) {
            nearest = entry;
            distance = candidate;
        }
    }
    if (nearest == nullptr) {
        ACCESS_EXCEPTION("Failed to write enumeration. None of the entries is writable");
    }
    enumeration.SetIntValue(nearest->GetValue(), verify);
}

}  // namespace GenApi_3_0_ORVANE
