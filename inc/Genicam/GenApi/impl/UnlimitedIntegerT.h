#pragma once

#include <limits>

#include "GenApi/impl/IntegerT.h"

namespace GenApi_3_0_ORVANE {

/// Completes a class of integers for which the description has no limits and nothing about
/// display.
template <class Base>
class UnlimitedIntegerT : public Base {
protected:
    /// @name What IntegerT asks for, at its widest
    /// @{
    int64_t InternalGetMin() { return std::numeric_limits<int64_t>::min(); }
    int64_t InternalGetMax() { return std::numeric_limits<int64_t>::max(); }
    int64_t InternalGetInc() { return 1; }
    int64_autovector_t InternalGetListOfValidValues() { return {}; }
    ERepresentation InternalGetRepresentation() const { return PureNumber; }
    gcstring InternalGetUnit() const { return {}; }
    /// @}
};

}  // namespace GenApi_3_0_ORVANE
