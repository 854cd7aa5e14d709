// What the nodes of a map share while a client is in a call: the bounds on its depth and breadth,
// and the text that failures name it by.

#include "core/CallState.h"

#include "core/NodeExceptions.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::RuntimeException;

namespace {

using Reporter = ExceptionReporterNode<RuntimeException>;

/// The last two operations of the enumeration have no text of their own and count as undefined.
const char* MethodText(EMethod method) {
    static constexpr const char* kTexts[] = {
        "_UndefinedMethod", "GetAccessMode", "ToString",    "FromString", "GetValue",
        "SetValue",         "GetMin",        "GetMax",      "GetInc",     "Execute",
        "IsDone",           "SetIntValue",   "GetIntValue", "Set",        "Get",
    };
    return method < static_cast<int>(std::size(kTexts)) ? kTexts[method] : kTexts[0];
}

}  // namespace

/// Both are out of line, so that the checks in every step of every call stay small. They
/// construct the exception without the node's macros, which would need a member of the node.
void ThrowNestedTooDeep(INodePrivate& node) {
    throw Reporter(node, __FILE__, __LINE__, "RuntimeException")
        .Report("Node '%s' : the chain of nodes that leads here is longer than %u",
                node.InternalGetName().c_str(), kMaxNesting);
}

void ThrowTooManyCalls(INodePrivate& node) {
    throw Reporter(node, __FILE__, __LINE__, "RuntimeException")
        .Report("Node '%s' : the call leads to more than %u calls of other nodes",
                node.InternalGetName().c_str(), kMaxNestedCalls);
}

/// A read past the caches may have found other values than those which depending nodes were
/// computed from. They are set invalid here, at the end of the whole call: within it, several
/// reads have to see one state.
void CCallState::LeaveEntryPoint() {
    if (m_EntryIgnoreCache) {
        ForEachNode(m_pEntryNode->GetAllTerminalNodes(),
                    [](INodePrivate& terminal) { terminal.SetInvalid(simAll); });
    }
    m_EntryMethod = meUndefined;
    m_pEntryNode = nullptr;
}

gcstring CCallState::GetEntryPoint() const {
    if (m_pEntryNode == nullptr) {
        return {};
    }
    return m_pEntryNode->InternalGetName() + "." + MethodText(m_EntryMethod) + "()";
}

}  // namespace GenApi_3_0_ORVANE
