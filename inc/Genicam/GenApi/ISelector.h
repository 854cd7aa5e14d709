#pragma once

#include "GenApi/IBase.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0_ORVANE {

/// How a node takes part in selection: the value of a selector, "GainSelector" for example,
/// decides what the features that it selects show. Every node has this interface.
struct OV_ENGINE_API ISelector : virtual public IBase {
    /// Whether the node selects any feature.
    virtual bool IsSelector() = 0;
    /// Replaces the list with the features that this node selects, and those that take their
    /// values from them. The map owns them.
    virtual void GetSelectedFeatures(value_vector& list) = 0;
    /// Replaces the list with the selectors of this node. The map owns them.
    virtual void GetSelectingFeatures(value_vector& list) = 0;
};

}  // namespace GenApi_3_0_ORVANE
