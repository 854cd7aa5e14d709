#pragma once
/// The command that asks a camera for packets of its stream again.

#include <cstdint>
#include <optional>

#include "gige/protocol/BigEndian.h"

namespace OvGige {

/// Which packets. There is no answer but the packets themselves. The command comes from the
/// stream's socket, not from the one of the control channel, so that it needn't wait for a
/// command that runs there.
struct ResendRequest {
    uint16_t channel = 0;
    bool isExtended = false;  ///< the form of the stream's packets
    uint64_t blockId = 0;
    uint32_t firstPacket = 0;
    uint32_t lastPacket = 0;  ///< included

    bool operator==(const ResendRequest&) const = default;

    /// Flags of the command.
    uint8_t Flags() const;
};

Bytes BuildResend(const ResendRequest& request);
/// Nothing is returned for what isn't such a payload.
/// @param flags those of the command, which say the form
std::optional<ResendRequest> ParseResend(ByteView payload, uint8_t flags);

}  // namespace OvGige
