#pragma once
/// Allocations that fail on demand, or are watched.

#include <cstddef>

/// Makes an allocation of this thread fail during the object's lifetime: the one after
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

/// Counts the allocations of this thread since the object was made.
class MemoryUse {
public:
    MemoryUse();

    size_t Allocations() const;
    /// Their bytes in total.
    size_t Bytes() const;
    /// How many aren't freed yet.
    size_t Left() const;

private:
    size_t m_allocations;
    size_t m_bytes;
    size_t m_frees;
};
