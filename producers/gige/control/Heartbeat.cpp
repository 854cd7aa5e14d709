#include "gige/control/Heartbeat.h"

#include <algorithm>

#include "gige/protocol/Bootstrap.h"

namespace OvGige {
namespace {

using OvProducer::Failure;
using std::chrono::milliseconds;

/// Until the first answer, and for cameras that say 0.
constexpr milliseconds kUsualTimeout{kUsualHeartbeatTimeout};

constexpr int kBeatsPerTimeout = 3;

}  // namespace

Heartbeat::Heartbeat(CameraMemory& camera, bool isOwner,
                     std::function<void(const std::string&)> onLoss)
    : m_camera(camera),
      m_isOwner(isOwner),
      m_onLoss(std::move(onLoss)),
      m_timeout(kUsualTimeout),
      m_thread([this] { Run(); }) {}

Heartbeat::~Heartbeat() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void Heartbeat::BeatNow() {
    {
        const std::lock_guard lock(m_mutex);
        m_isDue = true;
    }
    m_wake.notify_all();
}

void Heartbeat::Run() {
    Clock::time_point begin;
    do {
        begin = Clock::now();
    } while (Beat() && WaitForNext(begin));
}

bool Heartbeat::Beat() {
    try {
        // A camera that is silent shall be known to be lost as soon as its time-out is over.
        const auto limit = std::max(m_timeout - Silence(), Interval());
        const uint32_t privilege = m_camera.ReadRegister(kRegPrivilege, limit);
        if (m_isOwner && (privilege & kPrivilegeHeld) == 0) {
            return Lose("The camera has given up this host as its owner");
        }
        const milliseconds timeout{m_camera.ReadRegister(kRegHeartbeatTimeout)};
        m_timeout = timeout.count() > 0 ? timeout : kUsualTimeout;
        return true;
    } catch (const Refusal& refusal) {
        return Refused(refusal);
    } catch (const Failure&) {
        return Unanswered();
    }
}

// A camera that is busy is there.
bool Heartbeat::Refused(const Refusal& refusal) {
    if (refusal.GetStatus() == Status::AccessDenied) {
        return Lose("The camera has another owner");
    }
    return true;
}

// A camera that doesn't answer may still do so: only after its own time-out is it sure to have
// given up this host.
bool Heartbeat::Unanswered() {
    if (Silence() < m_timeout) {
        return true;
    }
    return Lose("The camera hasn't answered for " + std::to_string(m_timeout.count()) + " ms");
}

bool Heartbeat::Lose(const std::string& why) {
    m_onLoss(why);
    return false;
}

// What the camera answers to others is a sign of life, too: while one of their commands takes its
// time, no beat gets through.
milliseconds Heartbeat::Silence() const {
    return std::chrono::duration_cast<milliseconds>(Clock::now() -
                                                    std::max(m_begin, m_camera.LastAnswer()));
}

milliseconds Heartbeat::Interval() const {
    return m_timeout / kBeatsPerTimeout;
}

bool Heartbeat::WaitForNext(Clock::time_point begin) {
    std::unique_lock lock(m_mutex);
    m_wake.wait_until(lock, begin + Interval(), [this] { return m_isEnding || m_isDue; });
    m_isDue = false;
    return !m_isEnding;
}

}  // namespace OvGige
