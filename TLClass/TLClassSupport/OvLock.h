#pragma once
/// The recursive lock of the transport model, and its scope guard.

#include <pthread.h>

#include "Base/LockRank.h"

namespace OVTLClass {

using OvBase::LockRank;

/// A recursive POSIX mutex. A failing call throws std::runtime_error: a lock
/// that doesn't hold must never pass unnoticed.
class CLock {
public:
    CLock() : CLock(LockRank::None) {}
    /// @param camera  that the lock belongs to; null for none
    explicit CLock(LockRank rank, const void* camera = nullptr);
    ~CLock();
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    void Lock();
    void Unlock();
    /// Whether the lock was taken; false when another thread has it.
    bool TryLock();

    // By the names that the guards and conditions of the standard know. Whoever
    // waits for a condition holds the lock once.
    // NOLINTBEGIN(readability-identifier-naming)
    void lock() { Lock(); }
    void unlock() { Unlock(); }
    bool try_lock() { return TryLock(); }
    // NOLINTEND(readability-identifier-naming)

private:
    pthread_mutex_t m_mutex;
    const LockRank m_rank;
    const void* const m_camera;
};

/// Holds a CLock for the life of a scope.
class CAutoLock {
public:
    explicit CAutoLock(CLock& lock) : m_lock(lock) { m_lock.Lock(); }
    ~CAutoLock() { m_lock.Unlock(); }
    CAutoLock(const CAutoLock&) = delete;
    CAutoLock& operator=(const CAutoLock&) = delete;

private:
    CLock& m_lock;
};

}  // namespace OVTLClass
