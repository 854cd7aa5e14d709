#include "gige/control/Heartbeat.h"

#include "gige/protocol/Bootstrap.h"

namespace OvGige {
namespace {

using OvProducer::Failure;
using std::chrono::milliseconds;

/// What cameras have unless they are told otherwise; until the first answer, and for those
/// that say 0.
constexpr milliseconds kUsualTimeout{3000};

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

void Heartbeat::Run() {
    while (Beat() && WaitForNext()) {
    }
}

bool Heartbeat::Beat() {
    try {
        const uint32_t privilege = m_camera.ReadRegister(kRegPrivilege);
        m_lastAnswer = Clock::now();
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
    m_lastAnswer = Clock::now();
    return true;
}

// A camera that doesn't answer may still do so: only after its own time-out is it sure to have
// given up this host.
bool Heartbeat::Unanswered() {
    if (Clock::now() - m_lastAnswer < m_timeout) {
        return true;
    }
    return Lose("The camera hasn't answered for " + std::to_string(m_timeout.count()) + " ms");
}

bool Heartbeat::Lose(const std::string& why) {
    m_onLoss(why);
    return false;
}

bool Heartbeat::WaitForNext() {
    std::unique_lock lock(m_mutex);
    return !m_wake.wait_for(lock, m_timeout / kBeatsPerTimeout, [this] { return m_isEnding; });
}

}  // namespace OvGige
