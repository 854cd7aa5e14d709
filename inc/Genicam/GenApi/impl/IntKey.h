#pragma once

#include <limits>

#include "GenApi/impl/IEEE1212Parser.h"
#include "GenApi/impl/IntegerT.h"

namespace GenApi_3_0_ORVANE {

/// A number in the Configuration ROM.
class CIntKeyImpl : public CConfRomKeyImpl {
protected:
    void InternalSetValue(int64_t /*value*/, bool /*verify*/) {
        ACCESS_EXCEPTION_NODE("IntKey is read only.");
    }
    int64_t InternalGetValue(bool /*verify*/, bool /*ignoreCache*/) {
        return GetParser().GetInteger(GetKey());
    }
    int64_t InternalGetMin() { return std::numeric_limits<int64_t>::min(); }
    int64_t InternalGetMax() { return std::numeric_limits<int64_t>::max(); }
    int64_t InternalGetInc() { return 1; }
    int64_autovector_t InternalGetListOfValidValues() { return {}; }
    ERepresentation InternalGetRepresentation() const { return PureNumber; }
    gcstring InternalGetUnit() const { return {}; }
};

class CIntKey : public BaseT<ValueT<NodeT<IntegerT<CIntKeyImpl>>>> {
public:
    using IntegerT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
