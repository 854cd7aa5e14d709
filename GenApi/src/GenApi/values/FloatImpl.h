#pragma once

#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/FloatT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/ValueT.h"
#include "values/NumericNodeImpl.h"

namespace GenApi_3_0_ORVANE {

/// A float that other nodes or the description hold.
class CFloatImpl : public CNumericNodeImpl<FloatNodeTypes> {
protected:
    EDisplayNotation InternalGetDisplayNotation();
    int64_t InternalGetDisplayPrecision();
};

class CFloat : public BaseT<ValueT<NodeT<FloatT<CFloatImpl>>>> {
public:
    using FloatT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
