#pragma once

#include "GenApi/impl/StringT.h"
#include "confrom/IEEE1212ParserImpl.h"

namespace GenApi_3_0_ORVANE {

/// A text in the Configuration ROM.
class CTxtKeyImpl : public CConfRomKeyImpl {
protected:
    void InternalSetValue(const gcstring& value, bool /*verify*/) {
        ACCESS_EXCEPTION_NODE("TxtKey : %s SetValue to %s failed. TxtKey is read only",
                              m_Name.c_str(), value.c_str());
    }
    gcstring InternalGetValue(bool /*verify*/, bool /*ignoreCache*/) {
        return GetParser().GetText(GetKey());
    }
    int64_t InternalGetMaxLength() {
        ACCESS_EXCEPTION_NODE("TxtKey : %s GetMaxLength failed. TxtKey is read only",
                              m_Name.c_str());
    }
};

class CTxtKey : public BaseT<ValueT<NodeT<StringT<CTxtKeyImpl>>>> {
public:
    using StringT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
