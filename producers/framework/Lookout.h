#pragma once
/// A short look for what a thread is about to sleep for.

#include <atomic>
#include <chrono>
#include <mutex>

namespace OvProducer {

/// Stands before a condition variable. To sleep and to be woken on another
/// processor takes longer than a frame takes on its way; when frames follow one
/// another closely, who looks for the next one a little longer needn't sleep.
///
/// Looks in vain become shorter and then rare, so that a stream whose frames
/// are far apart, or whose threads share a processor, doesn't pay for them.
class Lookout {
public:
    /// Ends the looks that run. The lock of what they look for is held.
    void Signal() {
        m_signals.store(m_signals.load(std::memory_order_relaxed) + 1, std::memory_order_release);
    }

    /// Looks for a signal, with the lock released meanwhile. What it was may be
    /// gone by then.
    void Look(std::unique_lock<std::mutex>& lock);

private:
    using Clock = std::chrono::steady_clock;

    bool SignalWithin(Clock::duration time, unsigned seen) const;
    Clock::duration NextLook();

    static constexpr Clock::duration kLongest = std::chrono::microseconds(4);
    static constexpr Clock::duration kShortest = std::chrono::nanoseconds(250);
    static constexpr unsigned kRare = 64;  ///< waits for each look, once all were in vain

    std::atomic<unsigned> m_signals{0};
    // The lock guards these.
    Clock::duration m_patience = kLongest;
    unsigned m_waits = 0;
};

}  // namespace OvProducer
