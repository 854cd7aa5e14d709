// Keeps a stop from taking buffers away under a fetch, without a lock that both would
// hold.

#include "camera/FetchGate.h"

#include <chrono>

#include "Base/EachFrame.h"

namespace {

/// A fetch that is just about to wait may miss the wake-up, so it is woken again after
/// this.
constexpr std::chrono::milliseconds kMoment(1);

}  // namespace

void CFetchGate::Open() noexcept {
    const std::scoped_lock lock(m_mutex);
    m_isOpen = true;
}

bool CFetchGate::Close() noexcept {
    const std::scoped_lock lock(m_mutex);
    m_isOpen = false;
    return m_inside == 0;
}

OV_EACH_FRAME bool CFetchGate::TryEnter() noexcept {
    const std::scoped_lock lock(m_mutex);
    // The look at the gate and the count are one step: a stop sees either a closed gate
    // or the fetch inside.
    m_inside += m_isOpen ? 1 : 0;
    return m_isOpen;
}

OV_EACH_FRAME void CFetchGate::Leave() noexcept {
    // Notifies with the lock held: the thread that waits may destroy the gate as soon as
    // the lock is free.
    const std::scoped_lock lock(m_mutex);
    if (--m_inside == 0 && !m_isOpen) {
        m_empty.notify_all();
    }
}

bool CFetchGate::WaitUntilEmpty() {
    std::unique_lock lock(m_mutex);
    return m_empty.wait_for(lock, kMoment, [this] { return m_inside == 0; });
}
