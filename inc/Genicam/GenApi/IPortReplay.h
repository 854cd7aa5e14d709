#pragma once

#include "GenApi/IPortWriteList.h"

namespace GenApi_3_0_ORVANE {

/// A port that can repeat recorded writes.
struct OV_ENGINE_API IPortReplay : virtual public IBase {
    /// Writes everything on the list, in its order.
    /// @param invalidate  also sets the port node, and with it all nodes that use it, invalid
    virtual void Replay(IPortWriteList* list, bool invalidate = true) = 0;
};

}  // namespace GenApi_3_0_ORVANE
