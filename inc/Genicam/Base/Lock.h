#pragma once
/// The engine's lock.

#include <pthread.h>

#include <atomic>
#include <cstdint>

#include "Base/Export.h"
#include "Base/LockRank.h"

namespace GenICam_3_0_ORVANE {

/// A recursive lock within the process. Failures of the system are RuntimeExceptions.
///
/// One call of a client makes dozens of nodes take the lock of their map again. So the owner's
/// further calls are counted here and don't reach the mutex.
class OV_ENGINE_API CLock {
public:
    /// Makes a lock without a rank, whose order isn't checked.
    CLock() : CLock(OvBase::LockRank::None) {}
    /// Makes a lock that debug builds check against others.
    explicit CLock(OvBase::LockRank rank);
    ~CLock();
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    /// Waits until no other thread holds the lock, and takes it.
    void Lock() {
        if (IsMine()) {
            ++m_Again;
        } else {
            LockMutex();
        }
    }
    /// Gives back one of the owner's calls of Lock or TryLock.
    void Unlock() {
        if (IsMine() && m_Again != 0) {
            --m_Again;
        } else {
            UnlockMutex();
        }
    }
    /// Takes the lock without waiting.
    /// @return false if another thread holds it
    bool TryLock();
    /// Sets the rank. Call it before a second thread knows the lock.
    void SetRank(OvBase::LockRank rank) { m_Rank = rank; }

private:
    /// Without the mutex: only the owner can find itself here, whatever other threads store
    /// meanwhile.
    bool IsMine() const { return m_Owner.load(std::memory_order_relaxed) == pthread_self(); }
    void LockMutex();
    void UnlockMutex();

    pthread_mutex_t m_Mutex;
    /// 0 while no thread has the lock.
    std::atomic<pthread_t> m_Owner{};
    /// How often the owner took it beyond the first time.
    uint64_t m_Again = 0;
    OvBase::LockRank m_Rank;
};

/// Holds a lock for the life of a scope.
class AutoLock {
public:
    /// Takes the lock.
    explicit AutoLock(CLock& lock) : m_Lock(lock) { m_Lock.Lock(); }
    ~AutoLock() { m_Lock.Unlock(); }
    AutoLock(const AutoLock&) = delete;
    AutoLock& operator=(const AutoLock&) = delete;

private:
    CLock& m_Lock;
};

}  // namespace GenICam_3_0_ORVANE
