// The engine's lock. The mutex is reached only by the first call of a thread; see the header for
// its further calls.

#include "Base/Lock.h"

#include <cerrno>
#include <cstring>

#include "Base/GCException.h"
#include "Base/Pause.h"

namespace GenICam_3_0_ORVANE {

namespace {

/// Looks again a few times: a read of a kept value holds the lock for less time than a thread
/// takes to fall asleep and to be woken. The looks are so far apart that the owner, if it comes
/// again and again, makes dozens of calls between two of them: two threads that take turns with
/// each call would get less done than one. All looks together take no longer than to fall asleep
/// and to be woken may take.
/// @return what the last look at the mutex said, which is EBUSY if another thread has it
int TryForAMoment(pthread_mutex_t& mutex) {
    constexpr int kFirstPause = 64;
    constexpr int kLongestPause = 512;
    int error = pthread_mutex_trylock(&mutex);
    for (int pauses = kFirstPause; error == EBUSY && pauses <= kLongestPause; pauses *= 2) {
        for (int i = 0; i < pauses; ++i) {
            OvBase::Pause();
        }
        error = pthread_mutex_trylock(&mutex);
    }
    return error;
}

}  // namespace

/// The mutex is of the kind that refuses to be unlocked by another thread, rather than going on
/// in an undefined state.
CLock::CLock(OvBase::LockRank rank) : m_Mutex(), m_Rank(rank) {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&m_Mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

CLock::~CLock() {
    pthread_mutex_destroy(&m_Mutex);
}

/// The order is checked before the wait: afterwards it would be too late to report a deadlock.
void CLock::LockMutex() {
    OvBase::CheckLockOrder(this, m_Rank, nullptr);
    int error = TryForAMoment(m_Mutex);
    if (error == EBUSY) {
        error = pthread_mutex_lock(&m_Mutex);
    }
    if (error != 0) {
        RUNTIME_EXCEPTION("CLock::Lock() failed: %d (%s)", error, std::strerror(error));
    }
    m_Owner.store(pthread_self(), std::memory_order_relaxed);
    OvBase::NoteLocked(this, m_Rank);
}

/// The order isn't checked: whoever doesn't wait can't be part of a deadlock.
bool CLock::TryLock() {
    if (IsMine()) {
        ++m_Again;
        return true;
    }
    const int error = pthread_mutex_trylock(&m_Mutex);
    if (error != 0 && error != EBUSY) {
        RUNTIME_EXCEPTION("CLock::TryLock() failed: %d (%s)", error, std::strerror(error));
    }
    if (error == 0) {
        m_Owner.store(pthread_self(), std::memory_order_relaxed);
        OvBase::NoteLocked(this, m_Rank);
    }
    return error == 0;
}

/// The owner is cleared first. Afterwards another thread may have stored itself there already.
void CLock::UnlockMutex() {
    if (IsMine()) {
        m_Owner.store({}, std::memory_order_relaxed);
    }
    if (const int error = pthread_mutex_unlock(&m_Mutex)) {
        RUNTIME_EXCEPTION("Mutex::unlock() failed: %d (%s)", error, std::strerror(error));
    }
    OvBase::NoteUnlocked(this);
}

}  // namespace GenICam_3_0_ORVANE
