#pragma once
/// A signal between two threads.

#include <semaphore.h>

#include <memory>

namespace OVTLClass {

/// A counting signal. The wait polls once a millisecond: a lost wake-up costs a
/// millisecond and never a hang.
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
    /// Tests once without sleeping.
    bool TryWait();

private:
    std::unique_ptr<sem_t> m_semaphore;
};

}  // namespace OVTLClass
