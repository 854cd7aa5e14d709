#pragma once

#include "GenApi/IBase.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0_ORVANE {

class CNodeCallback;
struct INodeMap;
/// Names a registered callback. It is the address of the callback object.
using CallbackHandleType = intptr_t;

/// What every node of a map has, whatever its kind.
///
/// Nodes belong to their map: pointers to them are valid as long as the map is. Any thread may
/// call any operation; each takes the lock of the map. Failures are exceptions of the engine's
/// family.
struct OV_ENGINE_API INode : virtual public IBase {
    /// Returns the name, which is unique within its name space.
    /// @param fullQualified  puts "Std::" or "Cust::" before it
    virtual gcstring GetName(bool fullQualified = false) = 0;
    /// Returns whether the name is from a standard or the device maker's own.
    virtual ENameSpace GetNameSpace() = 0;
    /// Returns for which users the node is meant. A category is as visible as the most visible of
    /// its features.
    virtual EVisibility GetVisibility() = 0;
    /// Drops the caches of this node, of all nodes that depend on it and of the registers that
    /// its value comes from, then runs the callbacks of this node and its dependents. The next
    /// read asks the device.
    virtual void InvalidateNode() = 0;
    /// Whether the caching mode is other than NoCache.
    virtual bool IsCachable() = 0;
    /// Whether the access mode stays known until the node is set invalid. It doesn't where it
    /// follows from a node that is never cached.
    virtual EYesNo IsAccessModeCacheable() = 0;
    /// Returns the stricter of the node's own caching mode and those of the nodes that its value
    /// passes through.
    virtual ECachingMode GetCachingMode() = 0;
    /// Returns the polling interval in milliseconds; -1 for a node that isn't polled.
    virtual int64_t GetPollingTime() = 0;
    /// Returns one line of help, or an empty text.
    virtual gcstring GetToolTip() = 0;
    /// Returns the long help text, or an empty one.
    virtual gcstring GetDescription() = 0;
    /// Returns the name to show to users: the node's name where the description has no other.
    virtual gcstring GetDisplayName() = 0;
    /// Returns the device name under which the map was created.
    virtual gcstring GetDeviceName() = 0;
    /// Replaces the list with the node's neighbours of one kind.
    /// @param linkType  ValueChildren are all nodes whose values make up this one's, without the
    ///         inner formulas of converters
    virtual void GetChildren(node_vector& list, ELinkType linkType) = 0;
    /// Replaces the list with the nodes that have this one as a child.
    virtual void GetParents(node_vector& list) = 0;
    /// Registers a callback, which from then on belongs to the node.
    /// @return the handle for DeregisterCallback
    /// @throws InvalidArgumentException for null
    virtual CallbackHandleType RegisterCallback(CNodeCallback* callback) = 0;
    /// Removes a callback and destroys it. A call of it that is under way is not waited for: the
    /// callback is then destroyed when that call returns. A callback may deregister itself.
    /// @return false if no callback with that handle is registered with this node
    virtual bool DeregisterCallback(CallbackHandleType handle) = 0;
    /// Returns the map that the node belongs to; never null.
    virtual INodeMap* GetNodeMap() = 0;
    /// Returns the identifier of the event that updates the node, in hexadecimal digits; empty if
    /// there is none.
    virtual gcstring GetEventID() = 0;
    /// Whether the value belongs in the saved settings of a device.
    virtual bool IsStreamable() = 0;
    /// Replaces the list with the names of the properties that GetProperty has a value for.
    virtual void GetPropertyNames(gcstring_vector& names) = 0;
    /// Looks up what the description says of the node. The entries of a list are separated by
    /// tabs.
    /// @param value      receives the entries as text; empty if there are none
    /// @param attribute  receives what qualifies the entries, such as an index
    /// @return false if the node has no such property
    virtual bool GetProperty(const gcstring& name, gcstring& value, gcstring& attribute) = 0;
    /// Restricts the access mode, besides what the description and the device do. RW lifts the
    /// restriction. Runs the callbacks of the node and its dependents.
    virtual void ImposeAccessMode(EAccessMode mode) = 0;
    /// Restricts the visibility, besides what the description does. Beginner lifts the
    /// restriction. Runs the callbacks of the node and its dependents.
    virtual void ImposeVisibility(EVisibility visibility) = 0;
    /// Returns the node that describes the same thing in another way; null if there is none.
    virtual INode* GetAlias() = 0;
    /// Returns the node that shows the same value through another interface; null if there is
    /// none.
    virtual INode* GetCastAlias() = 0;
    /// Returns where to read about the node, or an empty text. The macros "$(...)" in the text
    /// are replaced, by values of other nodes for example.
    virtual gcstring GetDocuURL() = 0;
    /// Whether the description advises against using the node in new programs.
    virtual bool IsDeprecated() = 0;
    /// Returns the interface that shows best what the node is.
    virtual EInterfaceType GetPrincipalInterfaceType() = 0;
    /// Whether the node can be reached from the category "Root", and so is meant for users.
    virtual bool IsFeature() = 0;
};

}  // namespace GenApi_3_0_ORVANE
