#pragma once
/// The command that makes cameras do something at the same time.

#include <cstdint>
#include <optional>

#include "gige/protocol/BigEndian.h"

namespace OvGige {

/// Which cameras are meant, and what they shall do. A camera with that device key asserts each of
/// its signals that has that group key and a mask with a bit in common.
struct ActionRequest {
    uint32_t deviceKey = 0;
    uint32_t groupKey = 0;
    uint32_t groupMask = 0;
    /// When, in nanoseconds of a clock that the cameras share; at once without it.
    std::optional<uint64_t> time = std::nullopt;

    bool operator==(const ActionRequest&) const = default;

    /// Flags of the command, without the one that asks for an answer.
    uint8_t Flags() const;
};

Bytes BuildAction(const ActionRequest& request);
/// Nothing is returned for what isn't such a payload.
/// @param flags those of the command, which say whether there is a time
std::optional<ActionRequest> ParseAction(ByteView payload, uint8_t flags);

}  // namespace OvGige
