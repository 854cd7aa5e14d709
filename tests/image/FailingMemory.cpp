// The test program's own allocation, in the place of the library's.

#include "FailingMemory.h"

#include <cstdlib>
#include <new>

namespace {

/// Allocations until one fails; 0 for none that does.
thread_local size_t countdown = 0;
thread_local bool hasFailed = false;
thread_local size_t allocations = 0;
thread_local size_t heapBytes = 0;
thread_local size_t frees = 0;

bool Fails() {
    const bool fails = countdown != 0 && --countdown == 0;
    hasFailed = hasFailed || fails;
    return fails;
}

void* Counted(void* memory, size_t size) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    ++allocations;
    heapBytes += size;
    return memory;
}

// NOLINTBEGIN(cppcoreguidelines-no-malloc): what the operators are made of.
void Free(void* memory) {
    frees += memory == nullptr ? 0 : 1;
    std::free(memory);
}

}  // namespace

FailingMemory::FailingMemory(size_t before) {
    countdown = before + 1;
    hasFailed = false;
}

FailingMemory::~FailingMemory() {
    countdown = 0;
}

bool FailingMemory::HasFailed() {
    return hasFailed;
}

MemoryUse::MemoryUse() : m_allocations(allocations), m_bytes(heapBytes), m_frees(frees) {}

size_t MemoryUse::Allocations() const {
    return allocations - m_allocations;
}

size_t MemoryUse::Bytes() const {
    return heapBytes - m_bytes;
}

size_t MemoryUse::Left() const {
    return Allocations() - (frees - m_frees);
}

void* operator new(size_t size) {
    return Counted(Fails() ? nullptr : std::malloc(size == 0 ? 1 : size), size);
}

void* operator new(size_t size, std::align_val_t alignment) {
    const auto step = static_cast<size_t>(alignment);
    const size_t whole = (size + step - 1) / step * step;
    return Counted(Fails() ? nullptr : std::aligned_alloc(step, whole), size);
}

void operator delete(void* memory) noexcept {
    Free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
    Free(memory);
}

void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
    Free(memory);
}

void operator delete(void* memory, size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    Free(memory);
}
// NOLINTEND(cppcoreguidelines-no-malloc)
