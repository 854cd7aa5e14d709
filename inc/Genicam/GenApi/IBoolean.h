#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

/// A node that is true or false.
struct OV_ENGINE_API IBoolean : virtual public IValue {
    /// Sets the value.
    /// @throws AccessException if the node isn't writable
    virtual void SetValue(bool value, bool verify = true) = 0;
    /// The same as SetValue with verification.
    virtual IBoolean& operator=(bool value) = 0;
    /// Returns the value.
    /// @throws AccessException if the node isn't readable
    virtual bool GetValue(bool verify = false, bool ignoreCache = false) = 0;
    /// The same as GetValue without verification.
    virtual bool operator()() = 0;
};

}  // namespace GenApi_3_0_ORVANE
