#pragma once
/// What nodes know of one another, with the map's lock held.

#include <list>
#include <vector>

#include "GenApi/INode.h"
#include "GenApi/ISelector.h"
#include "GenApi/IUserData.h"
#include "core/CallbackRegistration.h"
#include "nodes/NodeData.h"

namespace GenApi_3_0_ORVANE {

struct INodeMapPrivate;

/// Call everything except the destructor with the map's lock held.
struct INodePrivate : virtual public INode {
    virtual void Initialize(INodeMapPrivate* nodeMap, CNodeData::ENodeType_t type, NodeID_t id) = 0;
    virtual CNodeData::ENodeType_t GetNodeType() = 0;
    virtual NodeID_t GetNodeID() = 0;
    /// Runs once, after all properties of all nodes are set.
    virtual void FinalConstruct() = 0;
    /// Takes one property of the description.
    virtual void SetProperty(const CProperty& property) = 0;
    using INode::GetProperty;
    /// Appends the entries of a property that SetProperty took. Linked nodes and texts are
    /// entered in the map by name.
    /// @return false if the node has no such property
    virtual bool GetProperty(INodeDataMap& nodeDataMap, CPropertyID id,
                             CNodeData::PropertyVector_t& properties) = 0;
    virtual void SetInvalid(ESetInvalidMode mode) = 0;
    virtual void CollectCallbacksToFire(CallbackList& list, bool allDependents) = 0;
    virtual bool IsTerminalNode() = 0;
    virtual const std::vector<INodePrivate*>& GetAllTerminalNodes() = 0;
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
    /// Enters a node that has this one as a child.
    virtual void AddParent(INodePrivate* parent) = 0;
    /// Lowers a category's visibility to the least of its features'.
    virtual void SetInvisibleIfHigher(EVisibility visibility) = 0;
};

}  // namespace GenApi_3_0_ORVANE
