#pragma once

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

/// Base of all node interfaces. A node's other interfaces are reached by dynamic_cast. Any thread
/// may call any of them: a call takes the lock of the node's map.
struct OV_ENGINE_API IBase {
    /// Returns what can be done with the node at present. May ask the device.
    virtual EAccessMode GetAccessMode() = 0;
    virtual ~IBase() = default;
};

}  // namespace GenApi_3_0_ORVANE
