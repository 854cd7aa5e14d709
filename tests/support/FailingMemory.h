#pragma once
/// Allocations of the library that are refused to the calling thread.

#include <cstddef>

/// Which allocations are refused.
enum class Shortage {
    Once,    ///< a single one
    Lasting  ///< and all that follow it
};

/// Refuses the allocation that follows `before` others of this thread, during the
/// object's lifetime. Producers receive all memory that they allocate.
class FailingMemory {
public:
    FailingMemory(size_t before, Shortage shortage);
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    /// Whether there were more than `before` since the last object was made.
    static bool WasReached();
};
