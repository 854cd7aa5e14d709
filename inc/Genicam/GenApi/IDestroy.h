#pragma once

#include "Base/Export.h"

namespace GenApi_3_0_ORVANE {

/// What a factory has made and its user ends, a node map for example.
struct OV_ENGINE_API IDestroy {
    /// Ends the object by the means that made it.
    virtual void Destroy() = 0;
    virtual ~IDestroy() = default;
};

}  // namespace GenApi_3_0_ORVANE
