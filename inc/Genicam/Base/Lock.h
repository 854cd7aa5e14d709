#pragma once
/// The engine's lock.

#include <pthread.h>

#include "Base/Export.h"

namespace GenICam_3_0_ORVANE {

/// A recursive lock within the process. A failing call raises RuntimeException.
class OV_ENGINE_API CLock {
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
    pthread_mutex_t m_Mutex;
};

/// Holds a lock for the life of a scope.
class AutoLock {
public:
    explicit AutoLock(CLock& lock) : m_Lock(lock) { m_Lock.Lock(); }
    ~AutoLock() { m_Lock.Unlock(); }
    AutoLock(const AutoLock&) = delete;
    AutoLock& operator=(const AutoLock&) = delete;

private:
    CLock& m_Lock;
};

}  // namespace GenICam_3_0_ORVANE
