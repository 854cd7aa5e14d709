#include "TLClassSupport/VxThread.h"

#include <unistd.h>

#include <limits>

namespace OVTLClass {

bool CVxThread::Run(void* argument, Function function, int /*priority*/) {
    if (function == nullptr || IsRunning()) {
        return false;
    }
    Destory();
    m_function = function;
    m_argument = argument;
    // The system may have reused the identity of the ended thread for another one,
    // which this object must not take for its own.
    m_threadId = 0;
    m_ended = false;
    if (pthread_create(&m_handle, nullptr, &__OnThreadCallback, this) != 0) {
        m_ended = true;
        return false;
    }
    m_joinable = true;
    m_threadId = m_handle;
    return true;
}

bool CVxThread::IsRunning() const {
    // The system answers "alive" for a thread that has ended and waits to be
    // joined, so the end is kept here.
    return m_threadId != 0 && !m_ended;
}

void CVxThread::Destory() {
    if (!m_joinable) {
        return;
    }
    // Takes the thread's signal, which a wait for the next thread would find otherwise.
    m_endEvent.Wait(std::numeric_limits<unsigned>::max());
    pthread_join(m_handle, nullptr);
    m_joinable = false;
    m_function = nullptr;
}

void CVxThread::VxSleep(unsigned milliseconds) {
    usleep(milliseconds * 1000U);
}

void* CVxThread::__OnThreadCallback(void* self) {
    auto* const thread = static_cast<CVxThread*>(self);
    // A callback may ask for the identity before the creator has stored it.
    thread->m_threadId = pthread_self();
    thread->m_function(thread->m_argument);
    thread->m_ended = true;
    thread->m_endEvent.SetEvent();
    return nullptr;
}

}  // namespace OVTLClass
