#include "core/CallState.h"

#include "core/NodeExceptions.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::RuntimeException;

namespace {

using Reporter = ExceptionReporterNode<RuntimeException>;

const char* MethodText(EMethod method) {
    static constexpr const char* kTexts[] = {
        "_UndefinedMethod", "GetAccessMode", "ToString",    "FromString", "GetValue",
        "SetValue",         "GetMin",        "GetMax",      "GetInc",     "Execute",
        "IsDone",           "SetIntValue",   "GetIntValue", "Set",        "Get",
    };
    return method < static_cast<int>(std::size(kTexts)) ? kTexts[method] : kTexts[0];
}

}  // namespace

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

void CCallState::LeaveEntryPoint() {
    if (m_EntryIgnoreCache) {
        for (INodePrivate* const terminal : m_pEntryNode->GetAllTerminalNodes()) {
            terminal->SetInvalid(simAll);
        }
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
