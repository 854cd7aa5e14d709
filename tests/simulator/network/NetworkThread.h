#pragma once
/// A network of a test's own, in which this machine's adapters don't exist. A thread sees the
/// network that it is in, and so do the threads and processes that it starts.

#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

/// A thread in a network of its own, which does one thing after the other.
class NetworkThread {
public:
    /// @throws std::system_error without the right to a network
    NetworkThread() : m_thread([this] { Work(); }) {
        try {
            Run([] {
                if (unshare(CLONE_NEWNET) != 0) {
                    throw std::system_error(errno, std::generic_category());
                }
            });
            Shell("ip link set lo up");
        } catch (...) {
            End();
            throw;
        }
    }
    ~NetworkThread() { End(); }
    NetworkThread(const NetworkThread&) = delete;
    NetworkThread& operator=(const NetworkThread&) = delete;

    /// Does it on the thread, and returns or throws what it does.
    template <class Do>
    auto Run(const Do& work) -> decltype(work()) {
        std::packaged_task<decltype(work())()> task(work);
        auto result = task.get_future();
        Put([&task] { task(); });
        return result.get();
    }

    void Shell(const std::string& command) {
        if (Run([&] { return std::system(command.c_str()); }) != 0) {
            throw std::runtime_error("Failed: " + command);
        }
    }

    /// The file by which other processes know the network.
    std::string File() {
        const long id = Run([] { return syscall(SYS_gettid); });
        return "/proc/" + std::to_string(getpid()) + "/task/" + std::to_string(id) + "/ns/net";
    }

private:
    void Put(std::function<void()> task) {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
        m_changed.notify_one();
    }

    /// Until an empty task comes.
    void Work() {
        for (;;) {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return !m_tasks.empty(); });
            const std::function<void()> task = std::move(m_tasks.front());
            m_tasks.pop_front();
            lock.unlock();
            if (!task) {
                return;
            }
            task();
        }
    }

    void End() {
        Put({});
        m_thread.join();
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_tasks;
    std::thread m_thread;
};
