#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

struct OV_ENGINE_API ICommand : virtual public IValue {
    virtual void Execute(bool verify = true) = 0;
    virtual void operator()() = 0;
    /// Asks the device; the only way to hear of the end.
    virtual bool IsDone(bool verify = true) = 0;
};

}  // namespace GenApi_3_0_ORVANE
