#pragma once
/// The control protocol: its port, commands, flags and status codes.

#include <cstddef>
#include <cstdint>

namespace OvGige {

/// The port that cameras listen on.
constexpr uint16_t kControlPort = 3956;

/// First byte of every command. No status begins with it, which tells a command from an
/// answer.
constexpr uint8_t kCommandKey = 0x42;

/// Length of the header of commands and answers, in bytes.
constexpr size_t kControlHeaderSize = 8;

/// Most bytes of memory in one command. The protocol would allow 536, but cameras exist
/// that were only ever asked for 512.
constexpr size_t kMemoryBlockMax = 512;

/// Commands. The answer to each has the next number.
enum class Command : uint16_t {
    Discovery = 0x0002,
    ForceIp = 0x0004,
    PacketResend = 0x0040,
    ReadRegister = 0x0080,
    WriteRegister = 0x0082,
    ReadMemory = 0x0084,
    WriteMemory = 0x0086,
    Event = 0x00C0,
    EventData = 0x00C2,
    Action = 0x0100,
};

/// Answer of a camera that needs more time than usual. It may come several times and is
/// followed by the command's own answer.
constexpr uint16_t kPendingAnswer = 0x0089;

/// The number of the answer to a command.
constexpr uint16_t AnswerTo(Command command) {
    return static_cast<uint16_t>(static_cast<uint16_t>(command) + 1);
}

/// The number of the command after the one with that number. No command has the number 0.
constexpr uint16_t NextRequestId(uint16_t last) {
    return last == 0xFFFF ? uint16_t{1} : static_cast<uint16_t>(last + 1);
}

/// Flags of a command.
///@{
constexpr uint8_t kFlagAnswerRequired = 0x01;
constexpr uint8_t kFlagBroadcastAnswer = 0x10;  ///< of DISCOVERY and FORCEIP
constexpr uint8_t kFlagExtendedIds = 0x10;      ///< of PACKETRESEND, EVENT and EVENTDATA
constexpr uint8_t kFlagScheduled = 0x80;        ///< of ACTION
///@}

/// Status of an answer. A camera may send values that aren't listed.
enum class Status : uint16_t {
    Success = 0x0000,
    PacketResend = 0x0100,
    NotImplemented = 0x8001,
    InvalidParameter = 0x8002,
    InvalidAddress = 0x8003,
    WriteProtect = 0x8004,
    BadAlignment = 0x8005,
    AccessDenied = 0x8006,
    Busy = 0x8007,
    PacketUnavailable = 0x800C,
    DataOverrun = 0x800D,
    InvalidHeader = 0x800E,
    PacketNotYetAvailable = 0x8010,
    PacketAndPreviousRemoved = 0x8011,
    PacketRemoved = 0x8012,
    NoReferenceTime = 0x8013,
    PacketTemporarilyUnavailable = 0x8014,
    Overflow = 0x8015,
    ActionLate = 0x8016,
    LeaderTrailerOverflow = 0x8017,
    Error = 0x8FFF,
};

/// Whether the status is a failure. One that is neither that nor a success is damaged.
constexpr bool IsFailure(Status status) {
    return static_cast<uint16_t>(status) >> 12 == 0x8;
}

/// The status in words: "access denied".
const char* NameOf(Status status);

}  // namespace OvGige
