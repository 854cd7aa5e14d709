#pragma once

#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

/// A node that starts something in the device.
struct OV_ENGINE_API ICommand : virtual public IValue {
    /// Executes the command and returns when the device has accepted it.
    /// @throws AccessException if the node isn't writable
    virtual void Execute(bool verify = true) = 0;
    /// The same as Execute with verification.
    virtual void operator()() = 0;
    /// Asks the device whether the command has finished. Nothing else reports that.
    virtual bool IsDone(bool verify = true) = 0;
};

}  // namespace GenApi_3_0_ORVANE
