#pragma once

#include "GenApi/INode.h"
#include "GenApi/IPort.h"

namespace GenApi_3_0_ORVANE {

/// The nodes of one device description.
struct OV_ENGINE_API INodeMap {
    /// All nodes, in the order of the description.
    virtual void GetNodes(node_vector& nodes) = 0;
    /// A node by its name, plain or with "Std::" or "Cust::" before it; null
    /// when there is none. A plain name prefers the maker's own node.
    virtual INode* GetNode(const gcstring& name) = 0;
    /// Drops all caches and runs all callbacks.
    virtual void InvalidateNodes() = 0;
    /// Plugs a transport into the port node of that name; false without one.
    virtual bool Connect(IPort* port, const gcstring& name) = 0;
    /// As above, for the port node "Device".
    virtual bool Connect(IPort* port) = 0;
    virtual gcstring GetDeviceName() = 0;
    /// Invalidates the nodes whose polling time is over.
    /// @param elapsedTime  since the last call, in milliseconds
    virtual void Poll(int64_t elapsedTime) = 0;
    /// The one lock of all nodes.
    virtual CLock& GetLock() = 0;
    virtual uint64_t GetNumNodes() = 0;
    /// Checks all formulas; false and a text for each that doesn't parse.
    virtual bool ParseSwissKnifes(gcstring_vector* errorList = nullptr) = 0;
    virtual ~INodeMap() = default;
};

}  // namespace GenApi_3_0_ORVANE
