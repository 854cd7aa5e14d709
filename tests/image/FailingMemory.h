#pragma once
/// Allocations that fail on demand, or are watched.

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

/// What this thread has allocated since this began.
class MemoryUse {
public:
    MemoryUse();

    size_t Allocations() const;
    /// All of them together.
    size_t Bytes() const;
    /// How many aren't freed yet.
    size_t Left() const;

private:
    size_t m_allocations;
    size_t m_bytes;
    size_t m_frees;
};
