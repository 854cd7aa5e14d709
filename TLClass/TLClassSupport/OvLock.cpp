#include "TLClassSupport/OvLock.h"

#include <cerrno>
#include <stdexcept>

#include "Base/EachFrame.h"

namespace OVTLClass {

CLock::CLock(LockRank rank, const void* camera) : m_mutex(), m_rank(rank), m_camera(camera) {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&m_mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

CLock::~CLock() {
    pthread_mutex_destroy(&m_mutex);
}

OV_EACH_FRAME void CLock::Lock() {
    // Before the wait: a wrong order is reported instead of hanging.
    OvBase::CheckLockOrder(this, m_rank, m_camera);
    if (pthread_mutex_lock(&m_mutex) != 0) {
        throw std::runtime_error("CLock::Lock() failed");
    }
    OvBase::NoteLocked(this, m_rank);
}

OV_EACH_FRAME void CLock::Unlock() {
    // The text is the one of Lock: logs and tests of applications know it.
    if (pthread_mutex_unlock(&m_mutex) != 0) {
        throw std::runtime_error("CLock::Lock() failed");
    }
    OvBase::NoteUnlocked(this);
}

bool CLock::TryLock() {
    const int result = pthread_mutex_trylock(&m_mutex);
    if (result != 0 && result != EBUSY) {
        throw std::runtime_error("CLock::TryLock() failed");
    }
    // No check of the order: who doesn't wait can't be part of a deadlock.
    if (result == 0) {
        OvBase::NoteLocked(this, m_rank);
    }
    return result == 0;
}

}  // namespace OVTLClass
