#pragma once

#include "GenApi/IPort.h"

namespace GenApi_3_0_ORVANE {

/// A port that passes on to another.
struct OV_ENGINE_API IPortConstruct : virtual public IPort {
    virtual void SetPortImpl(IPort* port) = 0;
    virtual EYesNo GetSwapEndianess() = 0;
};

}  // namespace GenApi_3_0_ORVANE
