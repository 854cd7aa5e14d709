#pragma once
/// Bounds for chains of nodes: a description decides how long they are, and the
/// stack has to bear it.

#include "GenApi/INodeMap.h"

namespace GenApi_3_0_ORVANE {

class CNodeImpl;

/// How deep calls of nodes by nodes may go. Cameras stay below a few dozen, and
/// the stack of a thread bears some more than this.
constexpr uint32_t kMaxNesting = 512;
/// How many calls of other nodes one call of a client may lead to. Where each
/// node of a chain asks the next one several times they multiply; more than
/// this would take minutes and hold the lock.
constexpr uint32_t kMaxNestedCalls = uint32_t{1} << 22;

/// RuntimeExceptions of the node at which a bound is passed.
[[noreturn]] void ThrowNestedTooDeep(INodePrivate& node);
[[noreturn]] void ThrowTooManyCalls(INodePrivate& node);

/// Counts a node on the way of a question that is passed on without an entry
/// point. The map's lock is held.
class NestingScope {
public:
    explicit NestingScope(CNodeImpl& node);
    ~NestingScope() { m_Nesting.Decrement(); }
    NestingScope(const NestingScope&) = delete;
    NestingScope& operator=(const NestingScope&) = delete;

private:
    Counter& m_Nesting;
};

}  // namespace GenApi_3_0_ORVANE
