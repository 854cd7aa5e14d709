#pragma once
/// What a camera sends on its own: messages with events.

#include <cstdint>
#include <vector>

#include "gige/protocol/ControlPacket.h"

namespace OvGige {

/// The stream channel of an event that has none.
constexpr uint16_t kNoStreamChannel = 0xFFFF;

/// Bytes of an event without data, in the two forms.
constexpr size_t kEventSize = 16;
constexpr size_t kExtendedEventSize = 24;

/// Most bytes of a message that the network carries in one piece, whatever its path.
constexpr size_t kMessagePayloadMax = 540;

/// An event as it is in a message: what a camera's description has the addresses of.
struct EventItem {
    uint16_t id = 0;
    ByteView bytes;  ///< belongs to the message
};

/// The events of a message in their order.
struct EventList {
    std::vector<EventItem> events;
    /// Whether they make up the whole message. Otherwise what follows the last one isn't an event.
    bool isWhole = false;
};

/// Whether the message is one of those that have events.
bool HasEvents(const CommandPacket& message);
/// Splits a message that has events, from anyone.
EventList ParseEvents(const CommandPacket& message);

/// An event, for the end that sends it.
struct EventFields {
    uint16_t id = 0;
    uint16_t channel = kNoStreamChannel;
    uint64_t blockId = 0;  ///< 0: none
    uint64_t timestamp = 0;
    ByteView data = {};
};

/// The event as a part of a message. Its size is stated in the extended form only: in the other,
/// the bytes for it are reserved.
Bytes BuildEvent(const EventFields& event, bool isExtended);

}  // namespace OvGige
