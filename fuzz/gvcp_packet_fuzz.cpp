// Packets of the control protocol from anyone, as a host and as a camera read them. What is
// read must be written as it was, except for what nobody reads.

#include <cstdint>
#include <span>
#include <string>

#include "Base/OvAssert.h"
#include "gige/protocol/CameraUrl.h"
#include "gige/protocol/ControlPacket.h"
#include "gige/protocol/Discovery.h"
#include "gige/protocol/Registers.h"

namespace {

using namespace OvGige;

void ReadIdentity(ByteView payload) {
    const auto identity = ParseIdentity(payload);
    if (identity) {
        const auto again = ParseIdentity(BuildIdentity(*identity));
        OV_ASSERT(again && again->vendor == identity->vendor && again->mac == identity->mac &&
                  again->userName == identity->userName);
    }
}

bool IsSame(ByteView one, ByteView other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end());
}

void ReadRegisterPayloads(ByteView payload) {
    const auto numbers = ParseNumbers(payload);
    OV_ASSERT(!numbers || IsSame(BuildNumbers(*numbers), payload));
    const auto writes = ParseWrites(payload);
    OV_ASSERT(!writes || IsSame(BuildWrites(*writes), payload));
    const auto memory = ParseMemory(payload);
    OV_ASSERT(!memory || IsSame(BuildMemory(*memory), payload));
    const auto range = ParseRange(payload);
    OV_ASSERT(!range || ParseRange(BuildRange(*range)) == range);
    const auto count = ParseCount(payload);
    OV_ASSERT(!count || ParseCount(BuildCount(*count)) == count);
}

void ReadPayload(ByteView payload) {
    ReadIdentity(payload);
    ReadRegisterPayloads(payload);
    const auto forced = ParseForcedAddress(payload);
    OV_ASSERT(!forced || ParseForcedAddress(BuildForcedAddress(*forced))->mac == forced->mac);
    const std::string text = ReadText(payload);
    const auto url = ParseCameraUrl(text);
    OV_ASSERT(!url || !url->fileName.empty());
    const auto address = ParseIpv4(text);
    OV_ASSERT(!address || ParseIpv4(TextOf(*address)) == address);
    const auto mac = ParseMac(text);
    OV_ASSERT(!mac || ParseMac(TextOf(*mac)) == mac);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const ByteView packet = std::as_bytes(std::span(data, size));
    if (const auto command = ParseCommand(packet)) {
        OV_ASSERT(IsSame(BuildCommand(*command), packet));
        ReadPayload(command->payload);
    }
    if (const auto answer = ParseAnswer(packet)) {
        OV_ASSERT(IsSame(BuildAnswer(*answer),
                         packet.first(kControlHeaderSize + answer->payload.size())));
        ReadPayload(answer->payload);
    }
    return 0;
}
