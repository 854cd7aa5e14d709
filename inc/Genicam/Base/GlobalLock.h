#pragma once
/// A lock between processes.

#include <semaphore.h>

#include <atomic>

#include "Base/Export.h"
#include "Base/GCString.h"

namespace GenICam_3_0_ORVANE {

/// A lock that all processes of the machine share by its name. Not recursive.
/// The semaphore behind it is never removed, so that a process which opens it
/// late still meets the others.
///
/// A semaphore stays taken when its holder dies. So a holder also has a file
/// locked, which the kernel gives back then: who gets that file and for a second
/// finds the semaphore taken all the same takes it over.
class OV_ENGINE_API CGlobalLock {
public:
    /// RuntimeException when the system refuses the name.
    explicit CGlobalLock(const gcstring& name);
    /// RuntimeException when the semaphore can't be closed. The lock must not be
    /// held.
    ~CGlobalLock() noexcept(false);
    CGlobalLock(const CGlobalLock&) = delete;
    CGlobalLock& operator=(const CGlobalLock&) = delete;

    /// Whether the lock was taken in time. A time-out of 0 tries once, and takes
    /// nothing over.
    bool Lock(unsigned timeoutMilliseconds);
    bool TryLock() { return Lock(0); }
    /// RuntimeException when the system refuses.
    void Unlock();

    /// The name of the semaphore of a lock: of one length and with no two alike.
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
