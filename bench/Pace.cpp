#include "Pace.h"

#include <linux/perf_event.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

#include "Measure.h"

namespace {

/// Counts the instructions of the calling thread, where the system lets a program do so.
class InstructionCounter {
public:
    InstructionCounter() {
        perf_event_attr wanted{};
        wanted.type = PERF_TYPE_HARDWARE;
        wanted.size = sizeof wanted;
        wanted.config = PERF_COUNT_HW_INSTRUCTIONS;
        wanted.exclude_kernel = 1;
        wanted.exclude_hv = 1;
        m_file = static_cast<int>(syscall(SYS_perf_event_open, &wanted, 0, -1, -1, 0));
    }
    ~InstructionCounter() {
        if (m_file >= 0) {
            close(m_file);
        }
    }
    InstructionCounter(const InstructionCounter&) = delete;
    InstructionCounter& operator=(const InstructionCounter&) = delete;

    std::optional<double> Get() const {
        uint64_t count = 0;
        if (m_file < 0 || read(m_file, &count, sizeof count) != sizeof count) {
            return std::nullopt;
        }
        return static_cast<double>(count);
    }

private:
    int m_file;
};

void MoveTo(int processor) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(processor, &set);
    sched_setaffinity(0, sizeof set, &set);
}

}  // namespace

Placement::Placement() {
    sched_getaffinity(0, sizeof m_all, &m_all);
    bool hasTaker = false;
    for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
        if (!CPU_ISSET(processor, &m_all)) {
            continue;
        }
        (hasTaker ? m_others : m_taker) = processor;
        if (hasTaker) {
            return;
        }
        hasTaker = true;
        m_others = processor;
    }
}

Placement::~Placement() {
    sched_setaffinity(0, sizeof m_all, &m_all);
}

void Placement::MoveToTaker() const {
    MoveTo(m_taker);
}

void Placement::MoveToOthers() const {
    MoveTo(m_others);
}

std::string Placement::Text() const {
    return "the thread that takes frames on processor " + std::to_string(m_taker) +
           ", all others on processor " + std::to_string(m_others);
}

FrameCost MeasureAtPace(const Placement& placement, unsigned perSecond, unsigned frames,
                        const std::function<void()>& give, const std::function<void()>& take) {
    using Clock = std::chrono::steady_clock;
    // The first frames of an acquisition ask for what later ones know.
    constexpr unsigned kWarmUp = 5;
    std::atomic<bool> isDone{false};
    std::thread giver([&] {
        placement.MoveToOthers();
        Clock::time_point due = Clock::now();
        // Not so many times as frames are taken: a camera loses a frame that finds no buffer.
        while (!isDone) {
            due += std::chrono::nanoseconds(1000000000 / perSecond);
            std::this_thread::sleep_until(due);
            give();
        }
    });
    placement.MoveToTaker();
    for (unsigned frame = 0; frame < kWarmUp; ++frame) {
        take();
    }
    const InstructionCounter counter;
    const std::optional<double> countBefore = counter.Get();
    const double before = ThreadNanoseconds();
    for (unsigned frame = 0; frame < frames; ++frame) {
        take();
    }
    FrameCost cost{(ThreadNanoseconds() - before) / 1e9 / frames, counter.Get()};
    if (cost.instructions) {
        *cost.instructions = (*cost.instructions - *countBefore) / frames;
    }
    isDone = true;
    placement.MoveToOthers();
    giver.join();
    return cost;
}
