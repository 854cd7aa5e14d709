#include "framework/Lookout.h"

#include <algorithm>

namespace OvProducer {
namespace {

void Pause() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__)
    asm volatile("yield");
#endif
}

/// Who signals holds the lock for a moment more: to sleep for that is what the
/// look should spare.
void LockSoon(std::unique_lock<std::mutex>& lock) {
    constexpr int kTries = 50;
    for (int i = 0; i < kTries; ++i) {
        if (lock.try_lock()) {
            return;
        }
        Pause();
    }
    lock.lock();
}

}  // namespace

void Lookout::Look(std::unique_lock<std::mutex>& lock) {
    const Clock::duration time = NextLook();
    if (time == Clock::duration::zero()) {
        return;
    }
    const unsigned seen = m_signals.load(std::memory_order_relaxed);
    lock.unlock();
    const bool came = SignalWithin(time, seen);
    LockSoon(lock);
    m_patience = came ? kLongest : time / 2;
}

bool Lookout::SignalWithin(Clock::duration time, unsigned seen) const {
    const Clock::time_point end = Clock::now() + time;
    do {
        Pause();
        if (m_signals.load(std::memory_order_acquire) != seen) {
            return true;
        }
    } while (Clock::now() < end);
    return false;
}

Lookout::Clock::duration Lookout::NextLook() {
    if (m_patience >= kShortest) {
        return m_patience;
    }
    m_waits = (m_waits + 1) % kRare;
    return m_waits == 0 ? kLongest : Clock::duration::zero();
}

}  // namespace OvProducer
