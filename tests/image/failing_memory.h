#pragma once
/// Allocations that fail on demand.

#include <cstddef>

/// Lets an allocation of this thread fail, as long as this lives: the one behind
/// `before` others.
class FailingMemory {
public:
    explicit FailingMemory(size_t before);
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;
    ~FailingMemory();

    /// Whether it has failed.
    static bool HasFailed();
};
