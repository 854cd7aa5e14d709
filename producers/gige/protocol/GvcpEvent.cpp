#include "gige/protocol/GvcpEvent.h"

namespace OvGige {
namespace {

// Offset within an event; its size is at the beginning.
constexpr size_t kIdAt = 2;

size_t SizeOf(bool isExtended) {
    return isExtended ? kExtendedEventSize : kEventSize;
}

/// The bytes of the first event. A camera that doesn't say how many sends one event with its
/// data, or events without data.
size_t SizeOfFirst(const CommandPacket& message, ByteView rest, size_t least) {
    const size_t stated = ReadBig<uint16_t>(rest);
    if (stated != 0) {
        return stated;
    }
    return message.command == Command::EventData ? rest.size() : least;
}

}  // namespace

bool HasEvents(const CommandPacket& message) {
    return message.command == Command::Event || message.command == Command::EventData;
}

EventList ParseEvents(const CommandPacket& message) {
    const size_t least = SizeOf((message.flags & kFlagExtendedIds) != 0);
    EventList list;
    ByteView rest = message.payload;
    while (rest.size() >= least) {
        const size_t size = SizeOfFirst(message, rest, least);
        if (size < least || size > rest.size()) {
            break;
        }
        list.events.push_back(
            {.id = ReadBig<uint16_t>(rest.subspan(kIdAt)), .bytes = rest.first(size)});
        rest = rest.subspan(size);
    }
    list.isWhole = rest.empty() && !list.events.empty();
    return list;
}

Bytes BuildEvent(const EventFields& event, bool isExtended) {
    const size_t size = SizeOf(isExtended) + event.data.size();
    Bytes bytes;
    bytes.reserve(size);
    Append(bytes, isExtended ? static_cast<uint16_t>(size) : uint16_t{0});
    Append(bytes, event.id);
    Append(bytes, event.channel);
    if (isExtended) {
        AppendZeros(bytes, sizeof(uint16_t));
        Append(bytes, event.blockId);
    } else {
        Append(bytes, static_cast<uint16_t>(event.blockId));
    }
    Append(bytes, event.timestamp);
    Append(bytes, event.data);
    return bytes;
}

}  // namespace OvGige
