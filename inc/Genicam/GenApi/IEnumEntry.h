#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

/// One entry of an enumeration. What an entry returns never changes; only its access mode does.
struct OV_ENGINE_API IEnumEntry : virtual public IValue {
    /// Returns the number that the device uses for the entry.
    virtual int64_t GetValue() = 0;
    /// Returns the symbolic name, which users of the enumeration choose the entry by.
    virtual gcstring GetSymbolic() = 0;
    /// Returns the number to use where the enumeration takes the place of a number, in a formula
    /// for example; the entry's value where the description has no other.
    virtual double GetNumericValue() = 0;
    /// Whether the device leaves this entry by itself after it was written.
    virtual bool IsSelfClearing() = 0;
};

}  // namespace GenApi_3_0_ORVANE
