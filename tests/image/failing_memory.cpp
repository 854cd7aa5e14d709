// The test program's own allocation, in the place of the library's.

#include "failing_memory.h"

#include <cstdlib>
#include <new>

namespace {

/// Allocations until one fails; 0 for none that does.
thread_local size_t countdown = 0;
thread_local bool hasFailed = false;

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

// NOLINTBEGIN(cppcoreguidelines-no-malloc): what the operators are made of.
void* operator new(size_t size) {
    const bool fails = countdown != 0 && --countdown == 0;
    hasFailed = hasFailed || fails;
    void* const memory = fails ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
    std::free(memory);
}
// NOLINTEND(cppcoreguidelines-no-malloc)
