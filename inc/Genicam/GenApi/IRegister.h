#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

/// A node that is a range of the device's memory.
struct OV_ENGINE_API IRegister : virtual public IValue {
    /// Writes the first `length` bytes of the register.
    /// @throws AccessException if the node isn't writable, OutOfRangeException if the register
    ///         is shorter
    virtual void Set(const uint8_t* buffer, int64_t length, bool verify = true) = 0;
    /// Reads the first `length` bytes of the register.
    /// @throws AccessException if the node isn't readable, OutOfRangeException if the register
    ///         is shorter
    virtual void Get(uint8_t* buffer, int64_t length, bool verify = false,
                     bool ignoreCache = false) = 0;
    /// Returns the length in bytes, which may depend on other nodes.
    virtual int64_t GetLength() = 0;
    /// Returns the address in the device, which may depend on other nodes.
    virtual int64_t GetAddress() = 0;
};

}  // namespace GenApi_3_0_ORVANE
