#pragma once
/// What nodes know of one another, with the map's lock held.

#include <span>
#include <vector>

#include "GenApi/INode.h"
#include "GenApi/ISelector.h"
#include "GenApi/IUserData.h"
#include "core/CallbackRegistration.h"
#include "nodes/NodeData.h"

namespace GenApi_3_0_ORVANE {

class CCategoryImpl;
class CEnumEntryImpl;
class CPortImplIntern;
struct IBoolean;
struct IEnumeration;
struct IFloat;
struct IInteger;
struct INodeMapPrivate;
struct IString;
struct IValue;

/// Nodes of the map, by their identifiers.
using NodeIDSpan = std::span<const NodeID_t>;

/// Call everything except the destructor with the map's lock held.
struct INodePrivate : virtual public INode {
    virtual void Initialize(INodeMapPrivate* nodeMap, CNodeData::ENodeType_t type, NodeID_t id) = 0;
    virtual CNodeData::ENodeType_t GetNodeType() = 0;
    virtual NodeID_t GetNodeID() = 0;
    /// Runs once, after all properties of all nodes are set.
    virtual void FinalConstruct() = 0;
    /// Takes one property of the description. Its text stays where it is as long as the map is
    /// there.
    virtual void SetProperty(const CProperty& property) = 0;
    /// Takes the links that preprocessing has found through chains, which stay where they are as
    /// long as the map is there.
    /// @param dependents  the nodes to set invalid with this one
    /// @param terminals   the nodes where a write of this one ends
    virtual void SetClosure(NodeIDSpan dependents, NodeIDSpan terminals) = 0;
    using INode::GetProperty;
    /// Appends the entries of a property that SetProperty took. Linked nodes and texts are
    /// entered in the map by name.
    /// @return false if the node has no such property
    virtual bool GetProperty(INodeDataMap& nodeDataMap, CPropertyID id,
                             CNodeData::PropertyVector_t& properties) = 0;
    virtual void SetInvalid(ESetInvalidMode mode) = 0;
    virtual void CollectCallbacksToFire(CallbackList& list, bool allDependents) = 0;
    virtual bool IsTerminalNode() = 0;
    virtual NodeIDSpan GetAllTerminalNodes() = 0;
    /// Adds to the time since the last poll. If the polling time is over, drops the caches.
    /// @return whether it is over
    virtual bool Poll(int64_t elapsedTime) = 0;
    virtual EAccessMode InternalGetAccessMode() = 0;
    virtual EInterfaceType InternalGetPrincipalInterfaceType() = 0;
    virtual const gcstring& InternalGetName() = 0;
    virtual ENameSpace InternalGetNameSpace() = 0;
    virtual EVisibility InternalGetVisibility() = 0;
    virtual ECachingMode InternalGetCachingMode() = 0;
    /// Returns the stricter of the node's caching mode and those of the nodes that its limits
    /// come from.
    virtual ECachingMode InternalGetLimitsCachingMode() = 0;
    virtual int64_t InternalGetPollingTime() = 0;
    /// @throws RuntimeException if the device's error node reports an error
    virtual void InternalCheckError() = 0;
    virtual EYesNo InternalIsAccessModeCacheable() = 0;
    virtual bool InternalIsValueCacheValid() = 0;
    /// Appends the nodes that this one has links to, once for each link.
    virtual void ListChildren(std::vector<INodePrivate*>& list) const = 0;
    /// Lowers a category's visibility to the least of its features'.
    virtual void SetInvisibleIfHigher(EVisibility visibility) = 0;

    /// @name What else the node is; null for what it isn't
    /// A description has a reference for nearly every node, and a cast through that many bases
    /// takes longer than all else that is done for one.
    /// @{
    virtual IValue* AsValue() { return nullptr; }
    virtual IInteger* AsInteger() { return nullptr; }
    virtual IFloat* AsFloat() { return nullptr; }
    virtual IBoolean* AsBoolean() { return nullptr; }
    virtual IEnumeration* AsEnumeration() { return nullptr; }
    virtual IString* AsString() { return nullptr; }
    virtual CEnumEntryImpl* AsEnumEntry() { return nullptr; }
    virtual CCategoryImpl* AsCategory() { return nullptr; }
    virtual CPortImplIntern* AsPort() { return nullptr; }
    /// @}
};

}  // namespace GenApi_3_0_ORVANE
