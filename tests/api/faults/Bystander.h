#pragma once
/// What must not be touched while another thread's call fails: the last error of
/// this thread, and the number of threads.

#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <thread>

#include "support/ApiTest.h"

/// Threads of this process.
inline size_t ThreadCount() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<size_t>(std::distance(begin(tasks), end(tasks)));
}

/// Expects that many threads. One that was joined may be listed for a moment
/// longer.
inline void ExpectThreads(size_t expected) {
    constexpr int kLooks = 1000000;
    for (int i = 0; i < kLooks && ThreadCount() != expected; ++i) {
        std::this_thread::yield();
    }
    EXPECT_EQ(ThreadCount(), expected);
}

/// A thread with a failure of its own.
class Bystander {
public:
    /// To be made before the library is initialised.
    Bystander() : m_thread([this] { Run(); }) { WaitForLook(1); }
    Bystander(const Bystander&) = delete;
    Bystander& operator=(const Bystander&) = delete;
    ~Bystander() {
        {
            const std::lock_guard lock(m_mutex);
            m_ends = true;
        }
        m_changed.notify_all();
        m_thread.join();
    }

    /// Expects the failure as it was.
    void ExpectUntouched() {
        uint64_t look = 0;
        {
            const std::lock_guard lock(m_mutex);
            look = ++m_wanted;
        }
        m_changed.notify_all();
        const LastError error = WaitForLook(look);
        EXPECT_EQ(error.status, OV_STATUS_NOT_INIT_API);
        EXPECT_EQ(error.message, "Not init API");
    }

private:
    void Run() {
        OVCloseDevice(nullptr);
        std::unique_lock lock(m_mutex);
        while (!m_ends) {
            m_seen = LastError::Get();
            m_done = m_wanted;
            m_changed.notify_all();
            m_changed.wait(lock, [this] { return m_ends || m_wanted != m_done; });
        }
    }

    LastError WaitForLook(uint64_t look) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this, look] { return m_done >= look; });
        return m_seen;
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    uint64_t m_wanted = 1;
    uint64_t m_done = 0;
    LastError m_seen;
    bool m_ends = false;
    std::thread m_thread;
};
