#pragma once

#include "GenApi/IPortWriteList.h"

namespace GenApi_3_0_ORVANE {

/// A port that repeats what was recorded.
struct OV_ENGINE_API IPortReplay : virtual public IBase {
    /// @param invalidate  drop all caches afterwards
    virtual void Replay(IPortWriteList* list, bool invalidate = true) = 0;
};

}  // namespace GenApi_3_0_ORVANE
