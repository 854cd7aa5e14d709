#pragma once

#include "GenApi/IPort.h"

namespace GenApi_3_0_ORVANE {

/// A port that passes accesses on to another port.
struct OV_ENGINE_API IPortConstruct : virtual public IPort {
    /// Sets the port to pass accesses on to; it isn't owned. Null leaves none.
    virtual void SetPortImpl(IPort* port) = 0;
    /// Whether the description asks for the bytes of numbers to be swapped. The engine passes
    /// this on and doesn't swap any itself.
    virtual EYesNo GetSwapEndianess() = 0;
};

}  // namespace GenApi_3_0_ORVANE
