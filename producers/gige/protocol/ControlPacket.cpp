#include "gige/protocol/ControlPacket.h"

#include <stdexcept>

namespace OvGige {
namespace {

// Offsets within the header; the first two bytes are the key and flags of a command, or the
// status of an answer.
constexpr size_t kFlagsAt = 1;
constexpr size_t kNumberAt = 2;
constexpr size_t kLengthAt = 4;
constexpr size_t kRequestAt = 6;

uint16_t LengthOf(ByteView payload) {
    if (payload.size() > 0xFFFF) {
        throw std::length_error("A control packet of " + std::to_string(payload.size()) + " bytes");
    }
    return static_cast<uint16_t>(payload.size());
}

Bytes Build(uint16_t first, uint16_t number, ByteView payload, uint16_t requestId) {
    Bytes packet;
    packet.reserve(kControlHeaderSize + payload.size());
    Append(packet, first);
    Append(packet, number);
    Append(packet, LengthOf(payload));
    Append(packet, requestId);
    Append(packet, payload);
    return packet;
}

}  // namespace

std::optional<CommandPacket> ParseMessage(ByteView packet) {
    if (packet.size() < kControlHeaderSize || packet[0] != std::byte{kCommandKey}) {
        return {};
    }
    const auto length = ReadBig<uint16_t>(packet.subspan(kLengthAt));
    const ByteView payload = packet.subspan(kControlHeaderSize);
    if (length > payload.size()) {
        return {};
    }
    return CommandPacket{.flags = std::to_integer<uint8_t>(packet[kFlagsAt]),
                         .command = Command{ReadBig<uint16_t>(packet.subspan(kNumberAt))},
                         .requestId = ReadBig<uint16_t>(packet.subspan(kRequestAt)),
                         .payload = payload.first(length)};
}

std::optional<CommandPacket> ParseCommand(ByteView packet) {
    const auto command = ParseMessage(packet);
    const bool isExact = command && kControlHeaderSize + command->payload.size() == packet.size();
    return isExact && command->requestId != 0 ? command : std::nullopt;
}

std::optional<AnswerPacket> ParseAnswer(ByteView packet) {
    if (packet.size() < kControlHeaderSize || packet[0] == std::byte{kCommandKey}) {
        return {};
    }
    const auto length = ReadBig<uint16_t>(packet.subspan(kLengthAt));
    const ByteView payload = packet.subspan(kControlHeaderSize);
    if (length > payload.size()) {
        return {};
    }
    return AnswerPacket{.status = Status{ReadBig<uint16_t>(packet)},
                        .answer = ReadBig<uint16_t>(packet.subspan(kNumberAt)),
                        .requestId = ReadBig<uint16_t>(packet.subspan(kRequestAt)),
                        .payload = payload.first(length)};
}

Bytes BuildCommand(const CommandPacket& command) {
    return Build(static_cast<uint16_t>(kCommandKey << 8 | command.flags),
                 static_cast<uint16_t>(command.command), command.payload, command.requestId);
}

Bytes BuildAnswer(const AnswerPacket& answer) {
    return Build(static_cast<uint16_t>(answer.status), answer.answer, answer.payload,
                 answer.requestId);
}

}  // namespace OvGige
