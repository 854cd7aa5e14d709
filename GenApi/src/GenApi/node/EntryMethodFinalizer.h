#pragma once

#include "core/INodeMapPrivate.h"
#include "node/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

/// For the life of a scope, the map knows which operation of which node a client is in. Failures
/// name it.
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
