#pragma once
/// The map as its own nodes use it.

#include "Base/OvAssert.h"
#include "GenApi/INodeMap.h"
#include "core/INodePrivate.h"

namespace GenApi_3_0_ORVANE {

/// Counts what is nested, such as writes.
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
struct INodeDescriptions;

/// What nodes need of their map, called with its lock held.
struct INodeMapPrivate : public INodeMap {
    /// Enters the node under its identifier and initialises it. The type RegisterDescription_ID
    /// leaves the identifier without a node.
    virtual void RegisterNode(INodePrivate* node, CNodeData::ENodeType_t nodeType, NodeID_t id) = 0;
    virtual void FinalConstruct() = 0;
    virtual void SetNumNodes(size_t count) = 0;
    virtual INodePrivate* GetNodeByID(NodeID_t id) = 0;
    /// Returns the nodes that have a link to a node, once for each link.
    virtual const std::vector<INodePrivate*>& GetParents(NodeID_t id) = 0;
    /// Returns what the nodes were made of; null for nodes that weren't made of a description.
    virtual const INodeDescriptions* GetDescriptions() const = 0;
    virtual void SetProperty(const CProperty& property) = 0;
    /// Appends the map's property to the list. Returns false for an identifier that maps don't
    /// have.
    virtual bool GetProperty(INodeDataMap& nodeDataMap, CPropertyID id,
                             CNodeData::PropertyVector_t& properties) = 0;
    /// How many writes are nested at present: 0 once the outermost has returned.
    virtual Counter& GetBathometer() = 0;
    /// Enters a call. Only the outermost one is remembered.
    virtual void SetEntryPoint(EMethod method, INodePrivate* node, bool ignoreCache) = 0;
    virtual void ResetEntryPoint() = 0;
    /// Returns "Node.Method()" of the outermost call; empty if there is none.
    virtual gcstring GetEntryPoint() = 0;
    virtual bool IsLoggingEnabled() = 0;
    virtual bool IsDeviceLoggingEnabled() = 0;
    /// The object that has the lock, the counters and the entry point; nodes use it directly to
    /// save virtual calls.
    virtual CCallState& GetCallState() = 0;
};

}  // namespace GenApi_3_0_ORVANE
