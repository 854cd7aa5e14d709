#pragma once
/// Calls beside others.

#include <functional>
#include <string>
#include <thread>

#include "support/LastError.h"

/// A call on a thread of its own, and what it came to.
class Beside {
public:
    explicit Beside(const std::function<OV_STATUS()>& call)
        : m_thread([this, call] {
              m_status = call();
              m_text = LastError::Get().text;
          }) {}
    Beside(const Beside&) = delete;
    Beside& operator=(const Beside&) = delete;
    ~Beside() { Join(); }

    OV_STATUS Join() {
        if (m_thread.joinable()) {
            m_thread.join();
        }
        return m_status;
    }

    /// The thread's last error, after `Join`.
    const std::string& GetText() const { return m_text; }

private:
    OV_STATUS m_status = OV_STATUS_ERROR;
    std::string m_text;
    std::thread m_thread;
};
