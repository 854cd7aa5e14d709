#pragma once
/// The frame of commands and answers. Both ends use it: a host writes commands and reads
/// answers, a camera the other way round.

#include <optional>

#include "gige/protocol/BigEndian.h"
#include "gige/protocol/Gvcp.h"

namespace OvGige {

/// A command without its frame. The payload belongs to the packet that it was read from.
struct CommandPacket {
    uint8_t flags = 0;
    Command command{};  ///< may be one that isn't listed
    uint16_t requestId = 0;
    ByteView payload;
};

/// An answer without its frame. The payload belongs to the packet that it was read from.
struct AnswerPacket {
    Status status{};
    uint16_t answer = 0;
    uint16_t requestId = 0;
    ByteView payload;
};

/// Reads a packet from anyone. Nothing is returned for what isn't a command: another key, a
/// length that isn't that of the payload, the request number 0.
std::optional<CommandPacket> ParseCommand(ByteView packet);

/// Reads what a camera sends on its own. Like `ParseCommand`, but bytes beyond the length are
/// ignored, and the number may be 0: a camera that counts through it shall not lose a message.
std::optional<CommandPacket> ParseMessage(ByteView packet);

/// Reads a packet from anyone. Nothing is returned for what isn't an answer. Bytes beyond the
/// length are ignored, since some cameras fill their packets up.
std::optional<AnswerPacket> ParseAnswer(ByteView packet);

/// @throws std::length_error for a payload that the length can't name
///@{
Bytes BuildCommand(const CommandPacket& command);
Bytes BuildAnswer(const AnswerPacket& answer);
///@}

}  // namespace OvGige
