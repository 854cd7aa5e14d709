#pragma once
/// The bridge between the node graph and a device's registers.

#include "GenApi/IBase.h"

namespace GenApi_3_0_ORVANE {

/// A client's transport derives from this. What it throws leaves the engine
/// unchanged.
struct OV_ENGINE_API IPort : virtual public IBase {
    virtual void Read(void* buffer, int64_t address, int64_t length) = 0;
    virtual void Write(const void* buffer, int64_t address, int64_t length) = 0;
};

}  // namespace GenApi_3_0_ORVANE
