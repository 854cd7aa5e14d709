#include "gige/protocol/GvspResend.h"

#include "gige/protocol/Gvcp.h"
#include "gige/protocol/Gvsp.h"

namespace OvGige {
namespace {

constexpr size_t kShortSize = 12;
constexpr size_t kExtendedSize = 20;

// Offsets within the payload.
constexpr size_t kShortBlockAt = 2;
constexpr size_t kFirstAt = 4;
constexpr size_t kLastAt = 8;
constexpr size_t kExtendedBlockAt = 12;

}  // namespace

uint8_t ResendRequest::Flags() const {
    return isExtended ? kFlagExtendedIds : uint8_t{0};
}

Bytes BuildResend(const ResendRequest& request) {
    Bytes payload;
    Append(payload, request.channel);
    Append(payload, request.isExtended ? uint16_t{0} : static_cast<uint16_t>(request.blockId));
    const uint32_t mask = request.isExtended ? ~uint32_t{0} : kShortPacketIdMax;
    Append(payload, request.firstPacket & mask);
    Append(payload, request.lastPacket & mask);
    if (request.isExtended) {
        Append(payload, request.blockId);
    }
    return payload;
}

std::optional<ResendRequest> ParseResend(ByteView payload, uint8_t flags) {
    const bool isExtended = (flags & kFlagExtendedIds) != 0;
    if (payload.size() != (isExtended ? kExtendedSize : kShortSize)) {
        return {};
    }
    const uint32_t mask = isExtended ? ~uint32_t{0} : kShortPacketIdMax;
    return ResendRequest{.channel = ReadBig<uint16_t>(payload),
                         .isExtended = isExtended,
                         .blockId = isExtended
                                        ? ReadBig<uint64_t>(payload.subspan(kExtendedBlockAt))
                                        : ReadBig<uint16_t>(payload.subspan(kShortBlockAt)),
                         .firstPacket = ReadBig<uint32_t>(payload.subspan(kFirstAt)) & mask,
                         .lastPacket = ReadBig<uint32_t>(payload.subspan(kLastAt)) & mask};
}

}  // namespace OvGige
