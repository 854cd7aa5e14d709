#pragma once
/// The recursive lock of the transport model, and its scope guard.

#include <pthread.h>

namespace OVTLClass {

/// A recursive POSIX mutex. A failing call raises std::runtime_error: a lock
/// that doesn't hold must never pass unnoticed.
class CLock {
public:
    CLock();
    ~CLock();
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    void Lock();
    void Unlock();
    /// Whether the lock was taken; false when another thread has it.
    bool TryLock();

private:
    pthread_mutex_t m_mutex;
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
