#include "simulator/control/AnswerFaults.h"

#include "gige/protocol/ControlPacket.h"
#include "gige/protocol/Registers.h"

namespace OvSimulator {
namespace {

using namespace OvGige;

/// The answer to an earlier command, which the host doesn't wait for any more.
Bytes WithOtherNumber(const AnswerPacket& answer) {
    AnswerPacket other = answer;
    --other.requestId;
    return BuildAnswer(other);
}

/// What somebody else would have answered.
Bytes WithOtherContent(const AnswerPacket& answer) {
    const Bytes content(answer.payload.size(), std::byte{0xA5});
    AnswerPacket other = answer;
    other.payload = content;
    return BuildAnswer(other);
}

Bytes Pending(const AnswerPacket& answer, std::chrono::milliseconds time) {
    const Bytes payload = BuildCount(static_cast<uint16_t>(time.count()));
    return BuildAnswer({.status = Status::Success,
                        .answer = kPendingAnswer,
                        .requestId = answer.requestId,
                        .payload = payload});
}

}  // namespace

AnswerFaults::AnswerFaults(const Faults& faults, Account& account)
    : m_faults(faults.control), m_chance(faults.seed), m_account(account) {}

bool AnswerFaults::Hits(double share, Cause cause, Count count) {
    const bool hits = m_chance.Hits(share, cause, {.block = 0, .packet = m_answers});
    if (hits) {
        m_account.Add(count);
    }
    return hits;
}

std::vector<TimedReply> AnswerFaults::Apply(const Reply& reply, bool knowsPatience,
                                            Clock::time_point now) {
    const auto answer = ParseAnswer(reply.packet);
    ++m_answers;
    if (!answer || Hits(m_faults.missing, Cause::Missing, Count::MissingAnswers)) {
        return {};
    }
    std::vector<TimedReply> replies;
    if (Hits(m_faults.foreign, Cause::Foreign, Count::ForeignAnswers)) {
        replies.push_back({{reply.to, WithOtherNumber(*answer)}, now});
        replies.push_back({{reply.to, WithOtherContent(*answer)}, now, true});
    }
    auto time = now;
    if (knowsPatience && Hits(m_faults.pending, Cause::Pending, Count::PendingAnswers)) {
        replies.push_back({{reply.to, Pending(*answer, m_faults.pendingFor)}, now});
        time += m_faults.pendingFor;
    }
    if (Hits(m_faults.late, Cause::Late, Count::LateAnswers)) {
        time += m_faults.lateBy;
    }
    replies.push_back({reply, time});
    if (Hits(m_faults.doubled, Cause::Doubled, Count::DoubledAnswers)) {
        replies.push_back({reply, time});
    }
    return replies;
}

}  // namespace OvSimulator
