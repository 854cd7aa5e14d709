#include "TLClassLoadTL/VxEvent.h"

#include <ctime>

namespace OVTLClass {

namespace {

void SleepOneMillisecond() {
    const timespec pause{0, 1000000};
    nanosleep(&pause, nullptr);
}

}  // namespace

CVxEvent::CVxEvent() : m_semaphore(std::make_unique<sem_t>()) {
    sem_init(m_semaphore.get(), 0, 0);
}

CVxEvent::~CVxEvent() {
    sem_destroy(m_semaphore.get());
}

void CVxEvent::SetEvent() {
    const CAutoLock lock(m_flagLock);
    m_signalled = 1;
    sem_post(m_semaphore.get());
}

void CVxEvent::ResetEvent() {
    const CAutoLock lock(m_flagLock);
    while (m_signalled != 0 && sem_trywait(m_semaphore.get()) == 0) {
    }
    m_signalled = 0;
}

bool CVxEvent::Wait(unsigned milliseconds) {
    ClearFlag();
    for (unsigned failures = 0; sem_trywait(m_semaphore.get()) != 0;) {
        SleepOneMillisecond();
        if (++failures >= milliseconds) {
            return false;
        }
    }
    return true;
}

void CVxEvent::ClearFlag() {
    const CAutoLock lock(m_flagLock);
    m_signalled = 0;
}

}  // namespace OVTLClass
