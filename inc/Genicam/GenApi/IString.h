#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

struct OV_ENGINE_API IString : virtual public IValue {
    virtual void SetValue(const gcstring& value, bool verify = true) = 0;
    virtual IString& operator=(const gcstring& value) = 0;
    virtual gcstring GetValue(bool verify = false, bool ignoreCache = false) = 0;
    virtual gcstring operator()() = 0;
    virtual gcstring operator*() = 0;
    virtual int64_t GetMaxLength() = 0;
};

}  // namespace GenApi_3_0_ORVANE
