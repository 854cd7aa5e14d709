#pragma once
/// What becomes of a camera's messages once they have arrived.

#include <atomic>
#include <deque>
#include <memory>
#include <optional>

#include "framework/Backend.h"
#include "gige/net/UdpSocket.h"
#include "gige/protocol/GvcpEvent.h"

namespace OvGige {

/// What came. Any thread may read it.
struct MessageAccount {
    std::atomic<uint64_t> events = 0;     ///< handed on
    std::atomic<uint64_t> messages = 0;   ///< with these events
    std::atomic<uint64_t> repeats = 0;    ///< messages that had come before
    std::atomic<uint64_t> malformed = 0;  ///< packets that weren't messages, or not whole ones
    std::atomic<uint64_t> foreign = 0;    ///< packets that weren't the camera's
};

/// Knows no threads and no clock, and sends nothing itself. Used by one thread at a time.
class MessageIntake {
public:
    /// @param sink  receives an entry for each event
    MessageIntake(Ipv4 camera, std::weak_ptr<OvProducer::EventSink> sink, MessageAccount& account);

    /// Hands on the events of a packet from anyone, in their order.
    /// @return the answer to its sender; nothing if none is wanted
    std::optional<Bytes> Take(const Datagram& datagram);

private:
    /// A message that came, with what was answered.
    struct Known {
        Bytes packet;
        Status status;
    };

    Status TakeMessage(const CommandPacket& message);
    bool HandOn(const EventItem& event) const;
    const Known* FindRepeated(ByteView packet) const;
    void Keep(ByteView packet, Status status);

    const Ipv4 m_camera;
    const std::weak_ptr<OvProducer::EventSink> m_sink;
    MessageAccount& m_account;
    std::deque<Known> m_known;  // the newest last
};

}  // namespace OvGige
