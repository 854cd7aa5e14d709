#pragma once
/// Bounds for chains of nodes: a description decides how long they are, and the
/// stack has to bear it.

#include "core/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

/// Counts a node on the way of a question that is passed on without an entry
/// point. The map's lock is held.
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
