#include "framework/SpinBeforeSleep.h"

#include <algorithm>

#include "Base/EachFrame.h"
#include "Base/Pause.h"

namespace OvProducer {
namespace {

/// The thread that notified holds the lock a moment longer. Waiting for it by sleeping
/// would cost what the spin has saved.
void LockSoon(std::unique_lock<std::mutex>& lock) {
    constexpr int kTries = 50;
    for (int i = 0; i < kTries; ++i) {
        if (lock.try_lock()) {
            return;
        }
        OvBase::Pause();
    }
    lock.lock();
}

}  // namespace

OV_EACH_FRAME void SpinBeforeSleep::Spin(std::unique_lock<std::mutex>& lock) {
    const Clock::duration time = NextSpin();
    if (time == Clock::duration::zero()) {
        return;
    }
    const unsigned seen = m_notifications.load(std::memory_order_relaxed);
    lock.unlock();
    const bool isNotified = IsNotifiedWithin(time, seen);
    LockSoon(lock);
    m_patience = isNotified ? kLongest : time / 2;
}

bool SpinBeforeSleep::IsNotifiedWithin(Clock::duration time, unsigned seen) const {
    const Clock::time_point end = Clock::now() + time;
    do {
        OvBase::Pause();
        if (m_notifications.load(std::memory_order_acquire) != seen) {
            return true;
        }
    } while (Clock::now() < end);
    return false;
}

SpinBeforeSleep::Clock::duration SpinBeforeSleep::NextSpin() {
    if (m_patience >= kShortest) {
        return m_patience;
    }
    m_waits = (m_waits + 1) % kRare;
    return m_waits == 0 ? kLongest : Clock::duration::zero();
}

}  // namespace OvProducer
