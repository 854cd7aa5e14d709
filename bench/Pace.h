#pragma once
/// What a frame costs the thread that takes it, when frames come as a camera sends them: between
/// two of them the thread sleeps, and wakes with cold caches.

#include <sched.h>

#include <functional>
#include <optional>
#include <string>

/// Of one frame.
struct FrameCost {
    double seconds = 0;  ///< CPU time of the thread
    /// Of the thread itself, without the system's; nothing where they can't be counted.
    std::optional<double> instructions;
};

/// Where the threads run: the one that takes frames on one processor, all others on another.
class Placement {
public:
    Placement();
    /// Lets the calling thread run everywhere again.
    ~Placement();
    Placement(const Placement&) = delete;
    Placement& operator=(const Placement&) = delete;

    /// Moves the calling thread, whose new threads follow it.
    void MoveToTaker() const;
    void MoveToOthers() const;
    /// In words.
    std::string Text() const;

private:
    cpu_set_t m_all{};
    int m_taker = 0;
    int m_others = 0;
};

/// Calls `give` on a thread of its own so many times a second, and `take` on the calling thread
/// until it has taken so many frames. Returns the costs of `take`.
FrameCost MeasureAtPace(const Placement& placement, unsigned perSecond, unsigned frames,
                        const std::function<void()>& give, const std::function<void()>& take);
