#pragma once
/// Who is fetching frames of one camera, and whether anybody still may.

#include <condition_variable>
#include <cstddef>
#include <mutex>

/// A fetch works on buffers that a stop takes away. The stop closes the gate, wakes
/// the fetches that are inside until all have left, and only then goes on; none
/// comes in before the next start opens the gate again.
class CFetchGate {
public:
    CFetchGate() = default;
    ~CFetchGate() = default;
    CFetchGate(const CFetchGate&) = delete;
    CFetchGate& operator=(const CFetchGate&) = delete;

    void Open() noexcept;
    /// Lets nobody in from here on. Those inside stay.
    /// @return whether nobody is inside
    [[nodiscard]] bool Close() noexcept;
    /// Whether the caller is inside now.
    [[nodiscard]] bool TryEnter() noexcept;
    void Leave() noexcept;
    /// Waits a moment for all to leave.
    /// @return whether nobody is inside
    [[nodiscard]] bool WaitUntilEmpty();

private:
    /// Of no rank: nothing else is taken while it is held.
    std::mutex m_mutex;
    std::condition_variable m_empty;
    bool m_isOpen = false;
    size_t m_inside = 0;
};

/// Inside a gate for the life of a scope, when the gate was open.
class CFetch {
public:
    explicit CFetch(CFetchGate& gate) : m_gate(gate.TryEnter() ? &gate : nullptr) {}
    ~CFetch() {
        if (m_gate != nullptr) {
            m_gate->Leave();
        }
    }
    CFetch(const CFetch&) = delete;
    CFetch& operator=(const CFetch&) = delete;

    bool IsInside() const { return m_gate != nullptr; }

private:
    CFetchGate* m_gate;
};
