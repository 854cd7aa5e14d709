#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

struct OV_ENGINE_API IFloat : virtual public IValue {
    virtual void SetValue(double value, bool verify = true) = 0;
    virtual IFloat& operator=(double value) = 0;
    virtual double GetValue(bool verify = false, bool ignoreCache = false) = 0;
    virtual double operator()() = 0;
    virtual double operator*() = 0;
    virtual double GetMin() = 0;
    virtual double GetMax() = 0;
    virtual bool HasInc() = 0;
    virtual EIncMode GetIncMode() = 0;
    /// RuntimeException without an increment.
    virtual double GetInc() = 0;
    /// @param bounded  only those within the limits
    virtual double_autovector_t GetListOfValidValues(bool bounded = true) = 0;
    virtual ERepresentation GetRepresentation() = 0;
    virtual gcstring GetUnit() = 0;
    virtual EDisplayNotation GetDisplayNotation() = 0;
    /// -1 when the description says nothing.
    virtual int64_t GetDisplayPrecision() = 0;
    virtual void ImposeMin(double value) = 0;
    virtual void ImposeMax(double value) = 0;
};

}  // namespace GenApi_3_0_ORVANE
