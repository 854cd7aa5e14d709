#pragma once
/// Counts the calls that fetch frames of one camera, and keeps new ones out during a
/// stop.

#include <condition_variable>
#include <cstddef>
#include <mutex>

/// A fetch works on buffers that a stop takes away. The stop therefore closes the gate
/// and wakes the fetches inside until all have left; only then it goes on. The next start
/// opens the gate again.
class CFetchGate {
public:
    CFetchGate() = default;
    ~CFetchGate() = default;
    CFetchGate(const CFetchGate&) = delete;
    CFetchGate& operator=(const CFetchGate&) = delete;

    void Open() noexcept;
    /// Lets no fetch in from now on. Those inside stay inside.
    /// @return whether nobody is inside
    [[nodiscard]] bool Close() noexcept;
    /// @return whether the caller is inside now and must call Leave()
    [[nodiscard]] bool TryEnter() noexcept;
    void Leave() noexcept;
    /// Waits for a short time until all have left.
    /// @return whether nobody is inside
    [[nodiscard]] bool WaitUntilEmpty();

private:
    /// Has no rank because no other lock is taken while it is held.
    std::mutex m_mutex;
    std::condition_variable m_empty;
    bool m_isOpen = false;
    size_t m_inside = 0;
};

/// Enters a gate, if it is open, for the lifetime of the object.
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
