#pragma once

#include "GenApi/impl/UnlimitedIntegerT.h"
#include "confrom/IEEE1212ParserImpl.h"

namespace GenApi_3_0_ORVANE {

/// A number in the Configuration ROM.
class CIntKeyImpl : public UnlimitedIntegerT<CConfRomKeyImpl> {
protected:
    void InternalSetValue(int64_t /*value*/, bool /*verify*/) {
        ACCESS_EXCEPTION_NODE("IntKey is read only.");
    }
    int64_t InternalGetValue(bool /*verify*/, bool /*ignoreCache*/) {
        return GetParser().GetInteger(GetKey());
    }
};

class CIntKey : public BaseT<ValueT<NodeT<IntegerT<CIntKeyImpl>>>> {
public:
    using IntegerT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
