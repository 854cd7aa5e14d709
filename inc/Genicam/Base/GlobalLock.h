#pragma once
/// A lock between processes.

#include <semaphore.h>

#include <atomic>

#include "Base/Export.h"
#include "Base/GCString.h"

namespace GenICam_3_0_ORVANE {

/// A lock that all processes of the machine share by its name. Not recursive.
///
/// It is a named semaphore, which is never removed: a process that opens it late still meets the
/// others. A semaphore stays taken when its holder dies. So a holder also keeps a file locked,
/// which the kernel unlocks then. Whoever gets that file, and for a second finds the semaphore
/// still taken, takes it over.
class OV_ENGINE_API CGlobalLock {
public:
    /// Opens the lock, or makes it.
    /// @throws RuntimeException if the system refuses the name
    explicit CGlobalLock(const gcstring& name);
    /// Closes the lock, which must not be held.
    /// @throws RuntimeException if the semaphore can't be closed
    ~CGlobalLock() noexcept(false);
    CGlobalLock(const CGlobalLock&) = delete;
    CGlobalLock& operator=(const CGlobalLock&) = delete;

    /// Waits for the lock.
    /// @param timeoutMilliseconds  0 tries once, and takes nothing over from a dead holder
    /// @return whether it was taken in time
    bool Lock(unsigned timeoutMilliseconds);
    /// Tries once.
    bool TryLock() { return Lock(0); }
    /// Gives the lock back.
    /// @throws RuntimeException if the system refuses
    void Unlock();

    /// Returns the name of the semaphore of a lock: short enough for the system, and with a hash
    /// of the whole name.
    static gcstring HashSemName(const gcstring& name);

private:
    gcstring m_HashedName;
    sem_t* m_pSemaphore;
    /// Locks that are held through this object.
    std::atomic<int> m_DebugCount{0};
    /// The locked file while the lock is held; -1 where there is none.
    int m_LockFile = -1;
};

}  // namespace GenICam_3_0_ORVANE
