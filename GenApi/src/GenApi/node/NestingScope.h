#pragma once
/// Bounds the depth of calls from node to node: a description decides how long the chains are,
/// and the stack of a thread has to hold them.

#include "node/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

/// Counts a node while a question passes through it that has no entry point. Call it with the
/// map's lock held.
class NestingScope {
public:
    explicit NestingScope(CNodeImpl& node) : m_Nesting(node.GetCallState().GetNesting()) {
        if (m_Nesting.Get() >= kMaxNesting) {
            ThrowNestedTooDeep(node);
        }
        m_Nesting.Increment();
    }
    ~NestingScope() { m_Nesting.Decrement(); }
    NestingScope(const NestingScope&) = delete;
    NestingScope& operator=(const NestingScope&) = delete;

private:
    Counter& m_Nesting;
};

}  // namespace GenApi_3_0_ORVANE
