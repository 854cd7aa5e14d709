#pragma once

#include "GenApi/INode.h"
#include "GenApi/IPort.h"

namespace GenApi_3_0_ORVANE {

/// The live nodes of one device description.
///
/// A map from CNodeMapFactory belongs to the caller, who ends it by IDestroy; one of a
/// CNodeMapRef belongs to the handles. The nodes live as long as the map. Any thread may call any
/// operation.
struct OV_ENGINE_API INodeMap {
    /// Replaces the list with all nodes, in the order in which the description first names them.
    virtual void GetNodes(node_vector& nodes) = 0;
    /// Returns a node by its name; null if there is none.
    /// @param name  plain, or with "Std::" or "Cust::" before it. A plain name prefers the device
    ///         maker's own node
    virtual INode* GetNode(const gcstring& name) = 0;
    /// Drops the caches of all nodes and runs all callbacks. The next reads ask the device.
    virtual void InvalidateNodes() = 0;
    /// Connects a transport to the port node of that name, in place of an earlier one. The
    /// transport isn't owned: it must live until another one, or null, is connected, or until the
    /// map ends.
    /// @param port  null disconnects
    /// @return false if there is no port node of that name
    virtual bool Connect(IPort* port, const gcstring& name) = 0;
    /// The same for the port node "Device".
    virtual bool Connect(IPort* port) = 0;
    /// Returns the device name under which the map was created.
    virtual gcstring GetDeviceName() = 0;
    /// Sets those nodes invalid whose polling interval is over, and runs their callbacks. Nothing
    /// in the engine calls this by itself.
    /// @param elapsedTime  since the last call, in milliseconds
    virtual void Poll(int64_t elapsedTime) = 0;
    /// Returns the recursive lock that all operations of the nodes take. Whoever holds it can
    /// make several operations one.
    virtual CLock& GetLock() = 0;
    /// Returns the number of nodes.
    virtual uint64_t GetNumNodes() = 0;
    /// Compiles all formulas and reports those that are wrong.
    /// @param errorList  a text for each is appended; may be null
    /// @return whether all are right
    virtual bool ParseSwissKnifes(gcstring_vector* errorList = nullptr) = 0;
    virtual ~INodeMap() = default;
};

}  // namespace GenApi_3_0_ORVANE
