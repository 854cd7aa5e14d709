#include "GenApi/impl/NestingScope.h"

#include "GenApi/impl/Node.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::RuntimeException;

namespace {

using Reporter = ExceptionReporterNode<RuntimeException>;

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

NestingScope::NestingScope(CNodeImpl& node) : m_Nesting(node.GetMap().GetNesting()) {
    if (m_Nesting.Get() >= kMaxNesting) {
        ThrowNestedTooDeep(node);
    }
    m_Nesting.Increment();
}

}  // namespace GenApi_3_0_ORVANE
