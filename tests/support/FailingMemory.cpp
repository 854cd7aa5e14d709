// The test program's own allocation, which the library uses, too.

#include "FailingMemory.h"

#include <link.h>
#include <unwind.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string_view>

namespace {

struct Range {
    uintptr_t begin = 0;
    uintptr_t end = 0;
};

thread_local bool armed = false;
thread_local size_t countdown = 0;
thread_local Shortage kind = Shortage::Once;
thread_local bool wasReached = false;
/// The addresses of the producers' code.
thread_local std::array<Range, 4> producers{};

int NoteProducer(dl_phdr_info* info, size_t /*size*/, void* next) {
    if (!std::string_view(info->dlpi_name).ends_with(".cti")) {
        return 0;
    }
    Range range{UINTPTR_MAX, 0};
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const auto& part = info->dlpi_phdr[i];
        if (part.p_type == PT_LOAD) {
            range.begin = std::min<uintptr_t>(range.begin, info->dlpi_addr + part.p_vaddr);
            range.end =
                std::max<uintptr_t>(range.end, info->dlpi_addr + part.p_vaddr + part.p_memsz);
        }
    }
    *(*static_cast<Range**>(next))++ = range;
    return 0;
}

_Unwind_Reason_Code LookForProducer(_Unwind_Context* context, void* found) {
    const uintptr_t place = _Unwind_GetIP(context);
    for (const Range& range : producers) {
        if (place >= range.begin && place < range.end) {
            *static_cast<bool*>(found) = true;
            return _URC_NORMAL_STOP;
        }
    }
    return _URC_NO_REASON;
}

bool IsForProducer() {
    bool found = false;
    _Unwind_Backtrace(&LookForProducer, &found);
    return found;
}

bool IsRefused() {
    if (!armed) {
        return false;
    }
    if (countdown != 0) {
        --countdown;
        return false;
    }
    armed = kind == Shortage::Lasting;
    wasReached = true;
    return !IsForProducer();
}

// NOLINTBEGIN(cppcoreguidelines-no-malloc): what the operators are made of.
void* AllocateOrNot(size_t size) {
    // A sanitizer ends a program that asks for more than there can be.
    constexpr size_t kMost = size_t{1} << 40;
    return IsRefused() || size > kMost ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* Allocate(size_t size) {
    void* const memory = AllocateOrNot(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

FailingMemory::FailingMemory(size_t before, Shortage shortage) {
    producers = {};
    Range* next = producers.data();
    dl_iterate_phdr(&NoteProducer, &next);
    countdown = before;
    kind = shortage;
    wasReached = false;
    armed = true;
}

FailingMemory::~FailingMemory() {
    armed = false;
}

bool FailingMemory::WasReached() {
    return wasReached;
}

void* operator new(size_t size) {
    return Allocate(size);
}

void* operator new[](size_t size) {
    return Allocate(size);
}

void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return AllocateOrNot(size);
}

void* operator new[](size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return AllocateOrNot(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, size_t /*size*/) noexcept {
    std::free(memory);
}
// NOLINTEND(cppcoreguidelines-no-malloc)
