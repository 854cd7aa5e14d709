#pragma once

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

/// Root of all node interfaces. Ask for another face of a node with
/// dynamic_cast.
struct OV_ENGINE_API IBase {
    virtual EAccessMode GetAccessMode() = 0;
    virtual ~IBase() = default;
};

}  // namespace GenApi_3_0_ORVANE
