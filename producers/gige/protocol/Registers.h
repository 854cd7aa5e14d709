#pragma once
/// Payloads of the commands that read and write registers and memory, and of their answers.
/// A parser returns nothing for what isn't such a payload.

#include <optional>
#include <span>
#include <vector>

#include "gige/protocol/BigEndian.h"

namespace OvGige {

/// READREG: addresses; its answer: as many values.
///@{
Bytes BuildNumbers(std::span<const uint32_t> numbers);
std::optional<std::vector<uint32_t>> ParseNumbers(ByteView payload);
///@}

/// WRITEREG: addresses with values.
struct RegisterWrite {
    uint32_t address = 0;
    uint32_t value = 0;

    bool operator==(const RegisterWrite&) const = default;
};
Bytes BuildWrites(std::span<const RegisterWrite> writes);
std::optional<std::vector<RegisterWrite>> ParseWrites(ByteView payload);

/// READMEM: which bytes to read.
struct MemoryRange {
    uint32_t address = 0;
    uint16_t count = 0;  ///< bytes

    bool operator==(const MemoryRange&) const = default;
};
Bytes BuildRange(MemoryRange range);
std::optional<MemoryRange> ParseRange(ByteView payload);

/// WRITEMEM and the answer to READMEM: an address and bytes. The bytes belong to the payload
/// that they were read from.
struct MemoryBytes {
    uint32_t address = 0;
    ByteView bytes;
};
Bytes BuildMemory(const MemoryBytes& memory);
std::optional<MemoryBytes> ParseMemory(ByteView payload);

/// The answers to WRITEREG (how many writes were done, or which one failed) and to WRITEMEM
/// (bytes), and the remaining time in milliseconds of an answer that says that the command is still
/// being processed. All of them are 16 bits after 16 reserved ones.
///@{
Bytes BuildCount(uint16_t count);
std::optional<uint16_t> ParseCount(ByteView payload);
///@}

}  // namespace OvGige
