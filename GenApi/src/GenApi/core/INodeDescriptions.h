#pragma once

#include <functional>

#include "properties/Property.h"

namespace GenApi_3_0_ORVANE {

/// What the nodes of a map were made of. Nodes keep what they work with; what a client may ask for
/// besides stays here, where all cameras of one model share it.
struct INodeDescriptions {
    virtual ~INodeDescriptions() = default;
    /// Calls `use` with each property of a node in its order, without the links of the closure.
    virtual void ForEachProperty(NodeID_t nodeID,
                                 const std::function<void(const CProperty&)>& use) const = 0;
};

}  // namespace GenApi_3_0_ORVANE
