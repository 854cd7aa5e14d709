#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

struct OV_ENGINE_API IBoolean : virtual public IValue {
    virtual void SetValue(bool value, bool verify = true) = 0;
    virtual IBoolean& operator=(bool value) = 0;
    virtual bool GetValue(bool verify = false, bool ignoreCache = false) = 0;
    virtual bool operator()() = 0;
};

}  // namespace GenApi_3_0_ORVANE
