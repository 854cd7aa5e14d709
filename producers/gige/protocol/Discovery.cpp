#include "gige/protocol/Discovery.h"

#include <algorithm>

#include "gige/protocol/Bootstrap.h"

namespace OvGige {
namespace {

// Offsets in FORCEIP; what lies between is reserved.
constexpr size_t kForcedSize = 56;
constexpr size_t kForcedMacAt = 2;
constexpr size_t kForcedIpAt = 20;
constexpr size_t kForcedMaskAt = 36;
constexpr size_t kForcedGatewayAt = 52;

// Within the register pair of the MAC address, its six bytes come last.
constexpr size_t kMacAt = kRegMacHigh + 2;

/// Identities go into lists and on terminals: nobody's control characters shall get there.
std::string PlainText(ByteView payload, TextRegister field) {
    std::string text = ReadText(payload.subspan(field.address, field.width));
    std::erase_if(text, [](unsigned char c) { return c < 0x20 || c == 0x7F; });
    return text;
}

MacAddress ReadMac(ByteView from) {
    MacAddress mac;
    std::transform(from.begin(), from.begin() + static_cast<ptrdiff_t>(mac.bytes.size()),
                   mac.bytes.begin(), [](std::byte b) { return std::to_integer<uint8_t>(b); });
    return mac;
}

void WriteMac(std::span<std::byte> to, MacAddress mac) {
    std::transform(mac.bytes.begin(), mac.bytes.end(), to.begin(),
                   [](uint8_t b) { return std::byte{b}; });
}

Ipv4 ReadAddress(ByteView payload, size_t offset) {
    return {ReadBig<uint32_t>(payload.subspan(offset))};
}

}  // namespace

std::optional<Identity> ParseIdentity(ByteView payload) {
    if (payload.size() < kIdentitySize) {
        return {};
    }
    const auto number = [payload](size_t at) { return ReadBig<uint32_t>(payload.subspan(at)); };
    return Identity{.version = number(kRegVersion),
                    .deviceMode = number(kRegDeviceMode),
                    .mac = ReadMac(payload.subspan(kMacAt)),
                    .supportedIpConfig = number(kRegSupportedIpConfig),
                    .currentIpConfig = number(kRegCurrentIpConfig),
                    .ip = ReadAddress(payload, kRegCurrentIp),
                    .mask = ReadAddress(payload, kRegCurrentMask),
                    .gateway = ReadAddress(payload, kRegCurrentGateway),
                    .vendor = PlainText(payload, kRegVendor),
                    .model = PlainText(payload, kRegModel),
                    .deviceVersion = PlainText(payload, kRegDeviceVersion),
                    .vendorInfo = PlainText(payload, kRegVendorInfo),
                    .serialNumber = PlainText(payload, kRegSerialNumber),
                    .userName = PlainText(payload, kRegUserName)};
}

Bytes BuildIdentity(const Identity& identity) {
    Bytes payload(kIdentitySize);
    const auto at = [&payload](size_t offset) { return std::span(payload).subspan(offset); };
    const auto text = [&](TextRegister field, const std::string& value) {
        WriteText(at(field.address).first(field.width), value);
    };
    WriteBig(at(kRegVersion), identity.version);
    WriteBig(at(kRegDeviceMode), identity.deviceMode);
    WriteMac(at(kMacAt), identity.mac);
    WriteBig(at(kRegSupportedIpConfig), identity.supportedIpConfig);
    WriteBig(at(kRegCurrentIpConfig), identity.currentIpConfig);
    WriteBig(at(kRegCurrentIp), identity.ip.value);
    WriteBig(at(kRegCurrentMask), identity.mask.value);
    WriteBig(at(kRegCurrentGateway), identity.gateway.value);
    text(kRegVendor, identity.vendor);
    text(kRegModel, identity.model);
    text(kRegDeviceVersion, identity.deviceVersion);
    text(kRegVendorInfo, identity.vendorInfo);
    text(kRegSerialNumber, identity.serialNumber);
    text(kRegUserName, identity.userName);
    return payload;
}

std::optional<ForcedAddress> ParseForcedAddress(ByteView payload) {
    if (payload.size() != kForcedSize) {
        return {};
    }
    return ForcedAddress{.mac = ReadMac(payload.subspan(kForcedMacAt)),
                         .ip = ReadAddress(payload, kForcedIpAt),
                         .mask = ReadAddress(payload, kForcedMaskAt),
                         .gateway = ReadAddress(payload, kForcedGatewayAt)};
}

Bytes BuildForcedAddress(const ForcedAddress& forced) {
    Bytes payload(kForcedSize);
    const auto at = [&payload](size_t offset) { return std::span(payload).subspan(offset); };
    WriteMac(at(kForcedMacAt), forced.mac);
    WriteBig(at(kForcedIpAt), forced.ip.value);
    WriteBig(at(kForcedMaskAt), forced.mask.value);
    WriteBig(at(kForcedGatewayAt), forced.gateway.value);
    return payload;
}

}  // namespace OvGige
