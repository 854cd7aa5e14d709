#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

/// A node with a floating-point value.
struct OV_ENGINE_API IFloat : virtual public IValue {
    /// Sets the value.
    /// @throws AccessException if the node isn't writable, OutOfRangeException if the value
    ///         is outside the limits or not a multiple of the increment
    virtual void SetValue(double value, bool verify = true) = 0;
    /// The same as SetValue with verification.
    virtual IFloat& operator=(double value) = 0;
    /// Returns the value.
    /// @throws AccessException if the node isn't readable
    virtual double GetValue(bool verify = false, bool ignoreCache = false) = 0;
    /// The same as GetValue without verification.
    virtual double operator()() = 0;
    /// The same as GetValue without verification.
    virtual double operator*() = 0;
    /// Returns the lowest value at present, which may depend on other nodes.
    virtual double GetMin() = 0;
    /// Returns the highest value at present, which may depend on other nodes.
    virtual double GetMax() = 0;
    /// Whether the value has an increment.
    virtual bool HasInc() = 0;
    /// Returns whether the values have an increment, are a list, or neither.
    virtual EIncMode GetIncMode() = 0;
    /// Returns the increment: a valid value is the minimum plus a multiple of it.
    /// @throws RuntimeException without an increment
    virtual double GetInc() = 0;
    /// Returns the values of a node whose values are a list; empty for any other.
    /// @param bounded  only those within the limits
    virtual double_autovector_t GetListOfValidValues(bool bounded = true) = 0;
    /// Returns how a user interface should show the value.
    virtual ERepresentation GetRepresentation() = 0;
    /// Returns the unit of the value, or an empty text.
    virtual gcstring GetUnit() = 0;
    /// Returns how ToString writes the value: fixed, scientific or whichever is shorter.
    virtual EDisplayNotation GetDisplayNotation() = 0;
    /// Returns how many digits ToString writes; -1 if the description doesn't say.
    virtual int64_t GetDisplayPrecision() = 0;
    /// Raises the lower limit, besides what the description says.
    virtual void ImposeMin(double value) = 0;
    /// Lowers the upper limit, besides what the description says.
    virtual void ImposeMax(double value) = 0;
};

}  // namespace GenApi_3_0_ORVANE
