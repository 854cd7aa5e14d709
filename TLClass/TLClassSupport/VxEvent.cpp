#include "TLClassSupport/VxEvent.h"

#include <ctime>

#include "Base/EachFrame.h"

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
    sem_post(m_semaphore.get());
}

void CVxEvent::ResetEvent() {
    // The semaphore counts: each signal is taken for itself.
    while (TryWait()) {
    }
}

bool CVxEvent::Wait(unsigned milliseconds) {
    for (unsigned failures = 0; !TryWait();) {
        SleepOneMillisecond();
        if (++failures >= milliseconds) {
            return false;
        }
    }
    return true;
}

OV_EACH_FRAME bool CVxEvent::TryWait() {
    return sem_trywait(m_semaphore.get()) == 0;
}

}  // namespace OVTLClass
