#pragma once

#include "core/INodeMapPrivate.h"
#include "core/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

/// Tells the map for the life of a scope which operation of which node a client
/// is in.
class EntryMethodFinalizer {
public:
    EntryMethodFinalizer(CNodeImpl& node, EMethod method, bool ignoreCache = false)
        : m_State(node.GetCallState()) {
        m_State.SetEntryPoint(method, &node, ignoreCache);
    }
    ~EntryMethodFinalizer() { m_State.ResetEntryPoint(); }
    EntryMethodFinalizer(const EntryMethodFinalizer&) = delete;
    EntryMethodFinalizer& operator=(const EntryMethodFinalizer&) = delete;

private:
    CCallState& m_State;
};

}  // namespace GenApi_3_0_ORVANE
