#include "gige/protocol/Action.h"

#include "gige/protocol/Gvcp.h"

namespace OvGige {
namespace {

constexpr size_t kSize = 12;
constexpr size_t kScheduledSize = 20;

// Offsets within the payload.
constexpr size_t kGroupKeyAt = 4;
constexpr size_t kGroupMaskAt = 8;
constexpr size_t kTimeAt = 12;

}  // namespace

uint8_t ActionRequest::Flags() const {
    return time ? kFlagScheduled : uint8_t{0};
}

Bytes BuildAction(const ActionRequest& request) {
    Bytes payload;
    Append(payload, request.deviceKey);
    Append(payload, request.groupKey);
    Append(payload, request.groupMask);
    if (request.time) {
        Append(payload, *request.time);
    }
    return payload;
}

std::optional<ActionRequest> ParseAction(ByteView payload, uint8_t flags) {
    const bool isScheduled = (flags & kFlagScheduled) != 0;
    if (payload.size() != (isScheduled ? kScheduledSize : kSize)) {
        return {};
    }
    ActionRequest request{.deviceKey = ReadBig<uint32_t>(payload),
                          .groupKey = ReadBig<uint32_t>(payload.subspan(kGroupKeyAt)),
                          .groupMask = ReadBig<uint32_t>(payload.subspan(kGroupMaskAt))};
    if (isScheduled) {
        request.time = ReadBig<uint64_t>(payload.subspan(kTimeAt));
    }
    return request;
}

}  // namespace OvGige
