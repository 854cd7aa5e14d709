#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

struct OV_ENGINE_API IEnumEntry : virtual public IValue {
    /// The number that stands for the entry in the device.
    virtual int64_t GetValue() = 0;
    virtual gcstring GetSymbolic() = 0;
    /// What the entry is worth where a number is asked for.
    virtual double GetNumericValue() = 0;
    /// Whether the device moves on by itself after this entry was written.
    virtual bool IsSelfClearing() = 0;
};

}  // namespace GenApi_3_0_ORVANE
