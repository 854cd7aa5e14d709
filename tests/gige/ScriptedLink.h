#pragma once
/// A link whose other end is a script, with a clock that runs only while somebody waits.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "gige/control/DatagramLink.h"
#include "gige/protocol/ControlPacket.h"

/// A packet of the other end, so long after the command that it is an answer to.
struct ScriptedReply {
    std::chrono::milliseconds after{0};
    OvGige::Bytes packet;
};

class ScriptedLink : public OvGige::DatagramLink {
public:
    using Script = std::function<std::vector<ScriptedReply>(const OvGige::CommandPacket&)>;

    void Answer(Script script) { m_script = std::move(script); }
    const std::vector<OvGige::Bytes>& Sent() const { return m_sent; }
    std::chrono::milliseconds Elapsed() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(m_now -
                                                                     OvGige::Clock::time_point());
    }

    void Send(OvGige::ByteView packet) override {
        m_sent.emplace_back(packet.begin(), packet.end());
        const auto command = OvGige::ParseCommand(m_sent.back());
        for (ScriptedReply& reply : m_script(command.value())) {
            m_due.push_back({m_now + reply.after, std::move(reply.packet)});
        }
    }

    std::optional<OvGige::Bytes> Receive(OvGige::Clock::time_point deadline) override {
        if (m_isCancelled) {
            return {};
        }
        if (m_due.empty() || m_due.front().time > deadline) {
            m_now = std::max(m_now, deadline);
            return {};
        }
        m_now = std::max(m_now, m_due.front().time);
        OvGige::Bytes packet = std::move(m_due.front().packet);
        m_due.pop_front();
        return packet;
    }

    void Cancel() override { m_isCancelled = true; }
    void Resume() override { m_isCancelled = false; }

    OvGige::Clock::time_point Now() const override { return m_now; }

private:
    struct Due {
        OvGige::Clock::time_point time;
        OvGige::Bytes packet;
    };

    Script m_script = [](const OvGige::CommandPacket&) { return std::vector<ScriptedReply>(); };
    std::vector<OvGige::Bytes> m_sent;
    std::deque<Due> m_due;  // in the order of their times
    OvGige::Clock::time_point m_now;
    std::atomic<bool> m_isCancelled = false;
};

/// The regular answer to a command.
inline OvGige::Bytes AnswerOf(const OvGige::CommandPacket& command,
                              const OvGige::Bytes& payload = {},
                              OvGige::Status status = OvGige::Status::Success) {
    return OvGige::BuildAnswer({.status = status,
                                .answer = OvGige::AnswerTo(command.command),
                                .requestId = command.requestId,
                                .payload = payload});
}

/// The answer that asks for patience.
inline OvGige::Bytes PendingOf(const OvGige::CommandPacket& command, const OvGige::Bytes& payload) {
    return OvGige::BuildAnswer({.status = OvGige::Status::Success,
                                .answer = OvGige::kPendingAnswer,
                                .requestId = command.requestId,
                                .payload = payload});
}
