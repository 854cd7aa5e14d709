#pragma once
/// What a camera sends on its own, and when: one message at a time, until it is acknowledged.

#include <chrono>
#include <deque>
#include <optional>
#include <vector>

#include "gige/protocol/GvcpEvent.h"
#include "simulator/Account.h"
#include "simulator/CameraProfile.h"
#include "simulator/Chance.h"
#include "simulator/Clock.h"

namespace OvSimulator {

/// How messages are to come.
struct MessageSetup {
    OvGige::Endpoint destination;
    std::chrono::milliseconds timeout{0};  ///< after which a message is sent again; 0: never
    uint32_t retries = 0;
    bool isExtended = false;
    bool joinsEvents = false;  ///< whether a message may have several events with data

    bool IsOpen() const { return destination.port != 0; }
    bool operator==(const MessageSetup&) const = default;
};

/// An event of a camera.
struct Happening {
    uint16_t id = 0;
    uint64_t frame = 0;
    uint64_t ticks = 0;
};

/// A packet to send.
struct Outgoing {
    OvGige::Bytes packet;
    bool isFromStranger = false;  ///< from another address than the camera's
};

/// Knows no sockets and no threads. Used by one thread at a time.
class MessageOutbox {
public:
    MessageOutbox(const CameraProfile& profile, Account& account);

    /// Counts from the next message on. A channel that closes or goes elsewhere forgets what it had
    /// to send.
    void Configure(const MessageSetup& setup);
    const MessageSetup& Setup() const { return m_setup; }

    /// Events are lost while the channel is closed.
    void Add(const Happening& event);
    /// Takes what the host sent, which may be an acknowledgement.
    void Take(OvGige::ByteView packet);
    /// What is to be sent now.
    std::vector<Outgoing> SendDue(Clock::time_point now);
    /// When there will be something to send; nothing until an event comes.
    std::optional<Clock::time_point> Due() const;

private:
    /// A message that isn't acknowledged yet.
    struct Current {
        OvGige::CommandPacket head;  ///< without its payload
        OvGige::Bytes payload;
        uint64_t sendings = 0;
        Clock::time_point due;
    };

    Current MakeMessage(Clock::time_point now);
    OvGige::Bytes BuildNext() const;
    bool MayJoin() const;
    uint16_t TakeRequestId();
    /// Sends the present message, or gives it up.
    void Advance(std::vector<Outgoing>& out, Clock::time_point now);
    void Transmit(std::vector<Outgoing>& out);
    bool Hits(double share, Cause cause, Count count);

    const bool m_hasData;
    const MessageFaults m_faults;
    const Chance m_chance;
    Account& m_account;
    MessageSetup m_setup;
    std::deque<Happening> m_events;
    std::optional<Current> m_current;
    uint64_t m_messages = 0;
    uint16_t m_nextRequest = 1;
};

}  // namespace OvSimulator
