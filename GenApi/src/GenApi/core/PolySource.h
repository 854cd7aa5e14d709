#pragma once
/// What the rows of all references share: how one is chosen, and how enumerations and floats
/// take the place of integers.

#include "Base/GCException.h"
#include "core/PolyReference.h"

namespace GenApi_3_0_ORVANE {

/// Joins lambdas into one callable with an overload for each kind of source.
template <class... Rows>
struct By : Rows... {
    using Rows::operator()...;
};
template <class... Rows>
By(Rows...) -> By<Rows...>;

/// The answer of a reference that the description has left out.
[[noreturn]] inline void ThrowUninitialized(const char* operation) {
    RUNTIME_EXCEPTION("%s: uninitialized pointer", operation);
}

/// The caching that a node allows; a constant allows any.
template <class Interface>
ECachingMode CachingModeOf(Interface* source) {
    return source->GetNode()->GetCachingMode();
}

/// Whether a node's value is known; a constant always is.
template <class Interface>
bool CacheValidOf(Interface* source) {
    return source->IsValueCacheValid();
}

/// Whether a float can be rounded to a 64-bit integer.
bool IsInInt64(double value);
/// Returns the numeric value of the chosen entry.
double NumericValueOf(IEnumeration& enumeration, bool verify, bool ignoreCache);
/// Chooses the entry with the nearest numeric value among those that can be chosen now.
void SetNearest(IEnumeration& enumeration, double value, bool verify);

}  // namespace GenApi_3_0_ORVANE
