#pragma once

#include "GenApi/impl/StringT.h"
#include "registers/RegisterImpl.h"

namespace GenApi_3_0_ORVANE {

/// A zero-terminated text in a register.
class CStringRegisterImpl : public CRegisterImpl, virtual public IString {
protected:
    void InternalSetValue(const gcstring& value, bool verify);
    gcstring InternalGetValue(bool verify, bool ignoreCache);
    int64_t InternalGetMaxLength() { return InternalGetLength(); }
};

class CStringRegister : public BaseT<ValueT<NodeT<StringT<RegisterT<CStringRegisterImpl>>>>> {
public:
    using StringT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
