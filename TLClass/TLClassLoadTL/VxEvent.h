#pragma once
/// A signal between two threads.

#include <semaphore.h>

#include <memory>

#include "TLClassLoadTL/OvLock.h"

namespace OVTLClass {

/// A semaphore with a flag that tells whether a signal is outstanding. The
/// wait polls once a millisecond: a lost wake-up costs a millisecond and never
/// a hang.
class CVxEvent {
public:
    CVxEvent();
    ~CVxEvent();
    CVxEvent(const CVxEvent&) = delete;
    CVxEvent& operator=(const CVxEvent&) = delete;

    void SetEvent();
    /// Takes back every signal that nobody waited for.
    void ResetEvent();
    /// Waits for a signal for about `milliseconds`; 0 tests once and sleeps
    /// about a millisecond when there is none.
    bool Wait(unsigned milliseconds);

private:
    void ClearFlag();

    std::unique_ptr<sem_t> m_semaphore;
    int m_signalled = 0;
    CLock m_flagLock;
};

}  // namespace OVTLClass
