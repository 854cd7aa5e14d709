#pragma once

#include <limits>

#include "GenApi/impl/IntegerT.h"

namespace GenApi_3_0_ORVANE {

/// For integers that the description gives no limits: what the device has is
/// shown as it is.
template <class Base>
class UnlimitedIntegerT : public Base {
protected:
    int64_t InternalGetMin() { return std::numeric_limits<int64_t>::min(); }
    int64_t InternalGetMax() { return std::numeric_limits<int64_t>::max(); }
    int64_t InternalGetInc() { return 1; }
    int64_autovector_t InternalGetListOfValidValues() { return {}; }
    ERepresentation InternalGetRepresentation() const { return PureNumber; }
    gcstring InternalGetUnit() const { return {}; }
};

}  // namespace GenApi_3_0_ORVANE
