#pragma once
/// The log of a tool that runs, as it is written: what it does is seen without waiting for times.

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>

/// Tools that are started while it is there log their producer's calls to it.
class ToolLog {
public:
    explicit ToolLog(const std::filesystem::path& pipe) {
        if (mkfifo(pipe.c_str(), 0600) != 0) {
            throw std::runtime_error("No pipe for the log");
        }
        // As a writer of its own it doesn't wait for one, and sees no end before it wants one.
        m_end = open(pipe.c_str(), O_RDWR | O_CLOEXEC);
        setenv("OV_LOG", "Producer:debug", 1);
        setenv("OV_LOG_FILE", pipe.c_str(), 1);
    }
    ~ToolLog() {
        unsetenv("OV_LOG");
        unsetenv("OV_LOG_FILE");
        m_drain.request_stop();
        if (m_drain.joinable()) {
            m_drain.join();
        }
        close(m_end);
    }
    ToolLog(const ToolLog&) = delete;
    ToolLog& operator=(const ToolLog&) = delete;

    /// Waits until a text came so many times. False when it doesn't come any more.
    bool Await(const std::string& text, unsigned times) {
        constexpr int kNoMore = 30000;
        std::string line;
        while (times != 0) {
            pollfd ready{m_end, POLLIN, 0};
            char next = 0;
            if (poll(&ready, 1, kNoMore) != 1 || read(m_end, &next, 1) != 1) {
                return false;
            }
            line += next;
            if (next == '\n') {
                times -= line.find(text) == std::string::npos ? 0U : 1U;
                line.clear();
            }
        }
        return true;
    }
    /// What comes from here on is of no interest, but must not fill the pipe.
    void Drain() {
        m_drain = std::jthread([this](const std::stop_token& stop) {
            constexpr int kLook = 50;
            char part[4096];
            pollfd ready{m_end, POLLIN, 0};
            while (!stop.stop_requested()) {
                if (poll(&ready, 1, kLook) == 1 && read(m_end, part, sizeof part) <= 0) {
                    return;
                }
            }
        });
    }

private:
    int m_end = -1;
    std::jthread m_drain;
};
