#pragma once

#include "GenApi/INodePrivate.h"
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

/// Counts what is nested: writes, for example.
class Counter {
public:
    void Increment() { ++m_value; }
    void Decrement() {
        OV_ASSERT(m_value > 0);
        --m_value;
    }
    bool IsZero() const { return m_value == 0; }
    int64_t Get() const { return m_value; }

private:
    int64_t m_value = 0;
};

class CCallState;

/// What nodes know of their map.
struct INodeMapPrivate : public INodeMap {
    /// Takes the node over. Type 27 marks an empty slot.
    virtual void RegisterNode(INodePrivate* node, CNodeData::ENodeType_t nodeType, NodeID_t id) = 0;
    virtual void FinalConstruct() = 0;
    virtual void SetNumNodes(size_t count) = 0;
    virtual INodePrivate* GetNodeByID(NodeID_t id) = 0;
    virtual void SetProperty(const CProperty& property) = 0;
    /// Gives back what SetProperty took: appends it to the list. False when the
    /// map holds no such property.
    virtual bool GetProperty(INodeDataMap& nodeDataMap, CPropertyID id,
                             CNodeData::PropertyVector_t& properties) = 0;
    virtual Counter& GetBathometer() = 0;
    /// Counted; only the outermost call is remembered.
    virtual void SetEntryPoint(EMethod method, INodePrivate* node, bool ignoreCache) = 0;
    virtual void ResetEntryPoint() = 0;
    /// "Node.Method()" of the outermost call; empty when there is none.
    virtual gcstring GetEntryPoint() = 0;
    virtual bool IsLoggingEnabled() = 0;
    virtual bool IsDeviceLoggingEnabled() = 0;
    /// The same lock, counters and entry point, for the nodes' short way to them.
    virtual CCallState& GetCallState() = 0;
};

struct Version_t {
    uint16_t Major = 0;
    uint16_t Minor = 0;
    uint16_t SubMinor = 0;
};

/// What a description tells of its device.
struct OV_ENGINE_API IDeviceInfo {
    virtual gcstring GetModelName() = 0;
    virtual gcstring GetVendorName() = 0;
    virtual gcstring GetToolTip() = 0;
    virtual gcstring GetStandardNameSpace() = 0;
    virtual void GetGenApiVersion(Version_t& version, uint16_t& build) = 0;
    virtual void GetSchemaVersion(Version_t& version) = 0;
    virtual void GetDeviceVersion(Version_t& version) = 0;
    virtual gcstring GetProductGuid() = 0;
    virtual gcstring GetProductVersionGuid() = 0;
    virtual ~IDeviceInfo() = default;
};

struct OV_ENGINE_API IDestroy {
    /// Ends the object by the means that made it.
    virtual void Destroy() = 0;
    virtual ~IDestroy() = default;
};

}  // namespace GenApi_3_0_ORVANE
