#include "simulator/message/MessageOutbox.h"

#include "simulator/stream/StreamBlock.h"

namespace OvSimulator {
namespace {

using namespace OvGige;

/// Events that wait while a host is slow to acknowledge.
constexpr size_t kEventsMax = 1000;

Bytes PacketOf(const CommandPacket& head, const Bytes& payload, uint16_t requestId) {
    CommandPacket message = head;
    message.payload = payload;
    message.requestId = requestId;
    return BuildCommand(message);
}

}  // namespace

MessageOutbox::MessageOutbox(const CameraProfile& profile, Account& account)
    : m_hasData(profile.messages == MessageKind::EventData),
      m_faults(profile.faults.message),
      m_chance(profile.faults.seed),
      m_account(account) {}

void MessageOutbox::Configure(const MessageSetup& setup) {
    if (setup.destination != m_setup.destination) {
        m_events.clear();
        m_current.reset();
    }
    m_setup = setup;
}

void MessageOutbox::Add(const Happening& event) {
    if (!m_setup.IsOpen()) {
        return;
    }
    m_account.Add(Count::Events);
    if (m_events.size() == kEventsMax) {
        m_account.Add(Count::DroppedEvents);
        return;
    }
    m_events.push_back(event);
}

void MessageOutbox::Take(ByteView packet) {
    const auto answer = ParseAnswer(packet);
    if (!answer || !m_current || answer->requestId != m_current->head.requestId ||
        answer->answer != AnswerTo(m_current->head.command) ||
        Hits(m_faults.ignored, Cause::IgnoredAcknowledgement, Count::IgnoredAcknowledgements)) {
        return;
    }
    m_account.Add(Count::Acknowledgements);
    m_current.reset();
}

std::vector<Outgoing> MessageOutbox::SendDue(Clock::time_point now) {
    std::vector<Outgoing> out;
    for (auto due = Due(); due && *due <= now; due = Due()) {
        if (!m_current) {
            m_current = MakeMessage(now);
        }
        Advance(out, now);
    }
    return out;
}

std::optional<Clock::time_point> MessageOutbox::Due() const {
    if (m_current) {
        return m_current->due;
    }
    return m_events.empty() ? std::nullopt : std::optional(Clock::time_point::min());
}

void MessageOutbox::Advance(std::vector<Outgoing>& out, Clock::time_point now) {
    if (m_current->sendings > m_setup.retries) {
        m_account.Add(Count::AbandonedMessages);
        m_current.reset();
        return;
    }
    m_account.Add(m_current->sendings == 0 ? Count::Messages : Count::RepeatedMessages);
    Transmit(out);
    ++m_current->sendings;
    m_current->due = now + m_setup.timeout;
    if ((m_current->head.flags & kFlagAnswerRequired) == 0) {
        m_current.reset();
    }
}

void MessageOutbox::Transmit(std::vector<Outgoing>& out) {
    const uint16_t id = m_current->head.requestId;
    const Bytes packet = PacketOf(m_current->head, m_current->payload, id);
    if (Hits(m_faults.foreign, Cause::ForeignMessage, Count::ForeignMessages)) {
        const auto other = static_cast<uint16_t>(id == 0xFFFF ? 1 : id + 1);
        out.push_back({PacketOf(m_current->head, m_current->payload, other), true});
    }
    if (Hits(m_faults.lost, Cause::LostMessage, Count::LostMessages)) {
        return;
    }
    out.push_back({packet});
    if (Hits(m_faults.doubled, Cause::DoubledMessage, Count::DoubledMessages)) {
        out.push_back({packet});
    }
}

bool MessageOutbox::Hits(double share, Cause cause, Count count) {
    const bool hits =
        m_chance.Hits(share, cause, {.block = m_messages, .packet = m_current->sendings});
    if (hits) {
        m_account.Add(count);
    }
    return hits;
}

MessageOutbox::Current MessageOutbox::MakeMessage(Clock::time_point now) {
    ++m_messages;
    Current message{.head = {.flags = m_setup.isExtended ? kFlagExtendedIds : uint8_t{0},
                             .command = m_hasData ? Command::EventData : Command::Event,
                             .requestId = TakeRequestId(),
                             .payload = {}},
                    .payload = BuildNext(),
                    .sendings = 0,
                    .due = now};
    m_events.pop_front();
    if (m_setup.timeout.count() != 0) {
        message.head.flags |= kFlagAnswerRequired;
    }
    while (MayJoin() && !m_events.empty()) {
        const Bytes next = BuildNext();
        if (message.payload.size() + next.size() > kMessagePayloadMax) {
            break;
        }
        Append(message.payload, next);
        m_events.pop_front();
    }
    return message;
}

// Where an event has data, only the extended form says where the next one begins.
bool MessageOutbox::MayJoin() const {
    return !m_hasData || (m_setup.isExtended && m_setup.joinsEvents);
}

Bytes MessageOutbox::BuildNext() const {
    const Happening& event = m_events.front();
    Bytes data;
    if (m_hasData) {
        Append(data, event.frame);
    }
    return BuildEvent({.id = event.id,
                       .channel = 0,
                       .blockId = BlockIdOf(event.frame, m_setup.isExtended),
                       .timestamp = event.ticks,
                       .data = data},
                      m_setup.isExtended);
}

uint16_t MessageOutbox::TakeRequestId() {
    const uint16_t id = m_nextRequest;
    // 0 is no request.
    m_nextRequest = id == 0xFFFF ? 1 : static_cast<uint16_t>(id + 1);
    return id;
}

}  // namespace OvSimulator
