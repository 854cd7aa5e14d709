#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

/// A node with an integer value.
struct OV_ENGINE_API IInteger : virtual public IValue {
    /// Sets the value.
    /// @throws AccessException if the node isn't writable, OutOfRangeException if the value
    ///         is outside the limits or not a multiple of the increment
    virtual void SetValue(int64_t value, bool verify = true) = 0;
    /// The same as SetValue with verification.
    virtual IInteger& operator=(int64_t value) = 0;
    /// Returns the value.
    /// @throws AccessException if the node isn't readable
    virtual int64_t GetValue(bool verify = false, bool ignoreCache = false) = 0;
    /// The same as GetValue without verification.
    virtual int64_t operator()() = 0;
    /// The same as GetValue without verification.
    virtual int64_t operator*() = 0;
    /// Returns the lowest value at present, which may depend on other nodes.
    virtual int64_t GetMin() = 0;
    /// Returns the highest value at present, which may depend on other nodes.
    virtual int64_t GetMax() = 0;
    /// Returns whether the values have an increment, are a list, or neither.
    virtual EIncMode GetIncMode() = 0;
    /// Returns the increment: a valid value is the minimum plus a multiple of it.
    virtual int64_t GetInc() = 0;
    /// Returns the values of a node whose values are a list; empty for any other.
    /// @param bounded  only those within the limits
    virtual int64_autovector_t GetListOfValidValues(bool bounded = true) = 0;
    /// Returns how a user interface should show the value.
    virtual ERepresentation GetRepresentation() = 0;
    /// Returns the unit of the value, or an empty text.
    virtual gcstring GetUnit() = 0;
    /// Raises the lower limit, besides what the description says.
    virtual void ImposeMin(int64_t value) = 0;
    /// Lowers the upper limit, besides what the description says.
    virtual void ImposeMax(int64_t value) = 0;
};

}  // namespace GenApi_3_0_ORVANE
