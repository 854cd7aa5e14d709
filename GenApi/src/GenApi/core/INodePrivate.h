#pragma once
/// What nodes know of one another, beneath the map's lock.

#include <list>
#include <vector>

#include "GenApi/INode.h"
#include "GenApi/ISelector.h"
#include "GenApi/IUserData.h"
#include "core/CallbackRegistration.h"
#include "nodes/NodeData.h"

namespace GenApi_3_0_ORVANE {

struct INodeMapPrivate;

/// All but the destructor want the map's lock held.
struct INodePrivate : virtual public INode {
    virtual void Initialize(INodeMapPrivate* nodeMap, CNodeData::ENodeType_t type, NodeID_t id) = 0;
    virtual CNodeData::ENodeType_t GetNodeType() = 0;
    virtual NodeID_t GetNodeID() = 0;
    /// Runs once, after all properties of all nodes are set.
    virtual void FinalConstruct() = 0;
    /// Takes one property of the description.
    virtual void SetProperty(const CProperty& property) = 0;
    using INode::GetProperty;
    /// Gives back what SetProperty took: appends the entries to the list.
    /// Linked nodes and texts are entered in the map by name. False when the
    /// node holds no such property.
    virtual bool GetProperty(INodeDataMap& nodeDataMap, CPropertyID id,
                             CNodeData::PropertyVector_t& properties) = 0;
    virtual void SetInvalid(ESetInvalidMode mode) = 0;
    virtual void CollectCallbacksToFire(CallbackList& list, bool allDependents) = 0;
    virtual bool IsTerminalNode() = 0;
    virtual const std::vector<INodePrivate*>& GetAllTerminalNodes() = 0;
    /// Whether the polling time is over. Its caches are invalid then.
    virtual bool Poll(int64_t elapsedTime) = 0;
    virtual EAccessMode InternalGetAccessMode() = 0;
    virtual EInterfaceType InternalGetPrincipalInterfaceType() = 0;
    virtual const gcstring& InternalGetName() = 0;
    virtual ENameSpace InternalGetNameSpace() = 0;
    virtual EVisibility InternalGetVisibility() = 0;
    virtual ECachingMode InternalGetCachingMode() = 0;
    /// The stricter of the node's caching mode and those of all that tell its
    /// limits.
    virtual ECachingMode InternalGetLimitsCachingMode() = 0;
    virtual int64_t InternalGetPollingTime() = 0;
    /// RuntimeException when the device's error node tells of one.
    virtual void InternalCheckError() = 0;
    virtual EYesNo InternalIsAccessModeCacheable() = 0;
    virtual bool InternalIsValueCacheValid() = 0;
    /// Enters a node that has this one as a child.
    virtual void AddParent(INodePrivate* parent) = 0;
    /// Lowers a category's visibility to the least of its features'.
    virtual void SetInvisibleIfHigher(EVisibility visibility) = 0;
};

}  // namespace GenApi_3_0_ORVANE
