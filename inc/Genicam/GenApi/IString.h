#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

/// A node with a text.
struct OV_ENGINE_API IString : virtual public IValue {
    /// Sets the value.
    /// @throws AccessException if the node isn't writable, OutOfRangeException if the text is
    ///         too long
    virtual void SetValue(const gcstring& value, bool verify = true) = 0;
    /// The same as SetValue with verification.
    virtual IString& operator=(const gcstring& value) = 0;
    /// Returns the value.
    /// @throws AccessException if the node isn't readable
    virtual gcstring GetValue(bool verify = false, bool ignoreCache = false) = 0;
    /// The same as GetValue without verification.
    virtual gcstring operator()() = 0;
    /// The same as GetValue without verification.
    virtual gcstring operator*() = 0;
    /// Returns how many bytes the text may have.
    virtual int64_t GetMaxLength() = 0;
};

}  // namespace GenApi_3_0_ORVANE
