#pragma once

#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/IntegerT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/ValueT.h"
#include "values/NumericNodeImpl.h"

namespace GenApi_3_0_ORVANE {

/// An integer that other nodes or the description hold.
class CIntegerImpl : public CNumericNodeImpl<IntegerNodeTypes> {};

class CInteger : public BaseT<ValueT<NodeT<IntegerT<CIntegerImpl>>>> {
public:
    using IntegerT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
