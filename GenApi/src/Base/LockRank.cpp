// Checks of the order of locks, in debug builds only. Each thread keeps the locks that it holds
// in a list of its own, so that the check needs no lock itself.

#include "Base/LockRank.h"

#ifndef NDEBUG

#include <algorithm>

#include "Base/OvAssert.h"

namespace OvBase {

namespace {

struct Held {
    const void* lock;
    LockRank rank;
    unsigned times;
};

/// The locks of one thread, in the order in which it took them. An array of fixed size: what
/// watches the locks takes no memory, and outlives whatever a thread destroys.
struct HeldLocks {
    static constexpr unsigned kMax = 64;

    Held entries[kMax];
    unsigned count;

    Held* begin() { return entries; }
    Held* end() { return entries + count; }
    Held* Find(const void* lock) {
        return std::find_if(begin(), end(), [lock](const Held& held) { return held.lock == lock; });
    }
};

thread_local HeldLocks t_held;
thread_local const CApplicationCall* t_call = nullptr;

}  // namespace

/// A lock that the thread holds can be taken again at any time. Inside a callback of an
/// application for a camera, locks that were taken before the callback don't count for anything
/// but that camera's own.
void CheckLockOrder(const void* lock, LockRank rank, const void* camera) {
    if (rank == LockRank::None || t_held.Find(lock) != t_held.end()) {
        return;
    }
    const CApplicationCall* call = t_call;
    while (call != nullptr && call->m_camera != camera) {
        call = call->m_outer;
    }
    const bool isOfACaller = call != nullptr;
    const unsigned first = t_call == nullptr || isOfACaller ? 0 : t_call->m_held;
    const bool isRising = std::all_of(t_held.begin() + first, t_held.end(),
                                      [rank](const Held& held) { return held.rank < rank; });
    OV_ASSERT(isRising && "A lock is taken under one that comes after it");
}

/// Recursive locks are in the list once, with a count.
void NoteLocked(const void* lock, LockRank rank) {
    if (rank == LockRank::None) {
        return;
    }
    Held* const held = t_held.Find(lock);
    if (held != t_held.end()) {
        ++held->times;
        return;
    }
    OV_ASSERT(t_held.count < HeldLocks::kMax);
    t_held.entries[t_held.count++] = {lock, rank, 1};
}

void NoteUnlocked(const void* lock) {
    Held* const held = t_held.Find(lock);
    if (held != t_held.end() && --held->times == 0) {
        // Locks needn't be released in the reverse order.
        std::move(held + 1, t_held.end(), held);
        --t_held.count;
    }
}

CApplicationCall::CApplicationCall(const void* camera)
    : m_outer(t_call), m_camera(camera), m_held(t_held.count) {
    t_call = this;
}

CApplicationCall::~CApplicationCall() {
    t_call = m_outer;
}

}  // namespace OvBase

#endif
