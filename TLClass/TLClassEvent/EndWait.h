#pragma once
/// The end of a thread that waits for an event.

#include "TLClassSupport/RunLogged.h"
#include "TLClassSupport/VxThread.h"

namespace OVTLClass {

/// Whether the thread ended within some milliseconds.
inline bool HasEndedSoon(const CVxThread& thread) {
    constexpr int kLooks = 20;
    for (int look = 0; look < kLooks && thread.IsRunning(); ++look) {
        CVxThread::VxSleep(1);
    }
    return !thread.IsRunning();
}

/// Ends the wait of the thread, and joins it. A producer may forget a kill that meets
/// no waiter, and the thread may be about to wait: the kill is repeated.
/// @param kill  ends one wait; false when the producer refuses, which it isn't asked
///              again then
template <class Kill>
void EndWaitingThread(CVxThread& thread, const Kill& kill) noexcept {
    while (kill() && !HasEndedSoon(thread)) {
    }
    OV_RUN_LOGGED([&thread] { thread.Destory(); });
}

}  // namespace OVTLClass
