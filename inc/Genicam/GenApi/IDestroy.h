#pragma once

#include "Base/Export.h"

namespace GenApi_3_0_ORVANE {

/// An object that a factory made and its user ends, such as a node map.
struct OV_ENGINE_API IDestroy {
    /// Destroys the object. Nobody may use it, or anything that it owns, any more.
    virtual void Destroy() = 0;
    virtual ~IDestroy() = default;
};

}  // namespace GenApi_3_0_ORVANE
