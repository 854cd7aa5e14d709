#pragma once

#include "GenApi/IBase.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0_ORVANE {

class CNodeCallback;
struct INodeMap;
using CallbackHandleType = intptr_t;

/// What every node has. Each call takes the lock of the node's map; a failure
/// is an exception of the engine's family.
struct OV_ENGINE_API INode : virtual public IBase {
    /// @param fullQualified  with "Std::" or "Cust::" before it
    virtual gcstring GetName(bool fullQualified = false) = 0;
    virtual ENameSpace GetNameSpace() = 0;
    virtual EVisibility GetVisibility() = 0;
    /// Drops the caches of this node and of all that depend on it, and runs
    /// their callbacks.
    virtual void InvalidateNode() = 0;
    virtual bool IsCachable() = 0;
    virtual EYesNo IsAccessModeCacheable() = 0;
    virtual ECachingMode GetCachingMode() = 0;
    /// In milliseconds; -1 when the node isn't polled.
    virtual int64_t GetPollingTime() = 0;
    virtual gcstring GetToolTip() = 0;
    virtual gcstring GetDescription() = 0;
    /// The name when the description gives no other text.
    virtual gcstring GetDisplayName() = 0;
    virtual gcstring GetDeviceName() = 0;
    virtual void GetChildren(node_vector& list, ELinkType linkType) = 0;
    virtual void GetParents(node_vector& list) = 0;
    /// Takes the callback over. The handle is its address.
    virtual CallbackHandleType RegisterCallback(CNodeCallback* callback) = 0;
    /// Has the callback called no more, and destroys it; one that is being called
    /// is destroyed when that call returns, which nobody waits for. A callback
    /// may take itself away. False when it isn't registered here.
    virtual bool DeregisterCallback(CallbackHandleType handle) = 0;
    virtual INodeMap* GetNodeMap() = 0;
    /// In hexadecimal, empty when the node is no event.
    virtual gcstring GetEventID() = 0;
    virtual bool IsStreamable() = 0;
    /// The names of the properties that GetProperty knows.
    virtual void GetPropertyNames(gcstring_vector& names) = 0;
    /// What the node holds of a property, as text; a tab stands between the
    /// entries of a list. False, and empty texts, without such a property.
    /// @param attribute  what qualifies the entries, an index for example
    virtual bool GetProperty(const gcstring& name, gcstring& value, gcstring& attribute) = 0;
    virtual void ImposeAccessMode(EAccessMode mode) = 0;
    virtual void ImposeVisibility(EVisibility visibility) = 0;
    virtual INode* GetAlias() = 0;
    virtual INode* GetCastAlias() = 0;
    /// Where to read about the node, with the macros of the text replaced.
    virtual gcstring GetDocuURL() = 0;
    virtual bool IsDeprecated() = 0;
    virtual EInterfaceType GetPrincipalInterfaceType() = 0;
    virtual bool IsFeature() = 0;
};

}  // namespace GenApi_3_0_ORVANE
