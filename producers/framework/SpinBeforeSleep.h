#pragma once
/// A short spin for what a thread is about to sleep for.

#include <atomic>
#include <chrono>
#include <mutex>

namespace OvProducer {

/// Spins for a moment before a thread waits on a condition variable. To fall asleep and to
/// be woken on another processor takes longer than a frame takes on its way. If frames
/// follow one another closely, a thread that spins a little need not sleep: at full speed
/// this saves up to a tenth of the CPU time of a frame.
///
/// Spins that see nothing become shorter and then rare, so that a stream whose frames are
/// far apart, or whose threads share a processor, doesn't pay for them.
class SpinBeforeSleep {
public:
    /// Ends the spins of other threads. The caller holds the lock of what they wait for.
    void Notify() {
        m_notifications.store(m_notifications.load(std::memory_order_relaxed) + 1,
                              std::memory_order_release);
    }

    /// Spins until `Notify` or for a few microseconds, with the lock released meanwhile.
    /// Another thread may have taken what the notification was about.
    void Spin(std::unique_lock<std::mutex>& lock);

private:
    using Clock = std::chrono::steady_clock;

    bool IsNotifiedWithin(Clock::duration time, unsigned seen) const;
    Clock::duration NextSpin();

    static constexpr Clock::duration kLongest = std::chrono::microseconds(4);
    static constexpr Clock::duration kShortest = std::chrono::nanoseconds(250);
    /// How many waits share one spin after spins have become rare.
    static constexpr unsigned kRare = 64;

    std::atomic<unsigned> m_notifications{0};
    // The caller's lock guards these.
    Clock::duration m_patience = kLongest;
    unsigned m_waits = 0;
};

}  // namespace OvProducer
