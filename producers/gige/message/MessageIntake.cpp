#include "gige/message/MessageIntake.h"

#include <algorithm>

#include "framework/Event.h"

namespace OvGige {
namespace {

/// A camera that doesn't wait for one acknowledgement before it sends the next message may repeat
/// one that isn't the last. Numbers come again after 65535 others, long after these.
constexpr size_t kKnownMax = 16;

}  // namespace

MessageIntake::MessageIntake(Ipv4 camera, std::weak_ptr<OvProducer::EventSink> sink,
                             MessageAccount& account)
    : m_camera(camera), m_sink(std::move(sink)), m_account(account) {}

// Cameras may send from another port than the one that they name, so only the address counts.
std::optional<Bytes> MessageIntake::Take(const Datagram& datagram) {
    if (datagram.sender.ip != m_camera) {
        ++m_account.foreign;
        return {};
    }
    const auto message = ParseMessage(datagram.bytes);
    if (!message) {
        ++m_account.malformed;
        return {};
    }
    Status status{};
    if (const Known* const known = FindRepeated(datagram.bytes)) {
        ++m_account.repeats;
        status = known->status;
    } else {
        status = TakeMessage(*message);
        Keep(datagram.bytes, status);
    }
    if ((message->flags & kFlagAnswerRequired) == 0) {
        return {};
    }
    return BuildAnswer({.status = status,
                        .answer = AnswerTo(message->command),
                        .requestId = message->requestId,
                        .payload = {}});
}

Status MessageIntake::TakeMessage(const CommandPacket& message) {
    if (!HasEvents(message)) {
        ++m_account.malformed;
        return Status::NotImplemented;
    }
    const EventList list = ParseEvents(message);
    const auto taken = static_cast<size_t>(
        std::count_if(list.events.begin(), list.events.end(),
                      [this](const EventItem& event) { return HandOn(event); }));
    m_account.events += taken;
    m_account.messages += taken != 0 ? 1U : 0U;
    const bool isWhole = list.isWhole && taken == list.events.size();
    m_account.malformed += isWhole ? 0U : 1U;
    return taken != 0 ? Status::Success : Status::InvalidParameter;
}

/// False for an event with more data than any event may have.
bool MessageIntake::HandOn(const EventItem& event) const {
    if (event.bytes.size() > OvProducer::QueuedEvent::kPayloadMax) {
        return false;
    }
    if (const auto sink = m_sink.lock()) {
        sink->Post(GenTL::EVENT_REMOTE_DEVICE, OvProducer::MakeMessageEntry(event.id, event.bytes));
    }
    return true;
}

// The whole packet is compared, its number included: should a camera give two messages the same
// number, the second isn't lost.
const MessageIntake::Known* MessageIntake::FindRepeated(ByteView packet) const {
    const auto found = std::find_if(m_known.rbegin(), m_known.rend(), [&](const Known& known) {
        return std::ranges::equal(known.packet, packet);
    });
    return found == m_known.rend() ? nullptr : &*found;
}

void MessageIntake::Keep(ByteView packet, Status status) {
    if (m_known.size() == kKnownMax) {
        m_known.pop_front();
    }
    m_known.push_back({.packet = Bytes(packet.begin(), packet.end()), .status = status});
}

}  // namespace OvGige
