#pragma once
/// What cameras say of themselves when they are searched for, and the command that gives one
/// of them another address.

#include <optional>
#include <string>

#include "gige/protocol/Address.h"
#include "gige/protocol/BigEndian.h"

namespace OvGige {

/// Bytes of an answer to DISCOVERY: a copy of the first registers.
constexpr size_t kIdentitySize = 248;

/// A camera's identity. Texts are as the camera has them, without control characters.
struct Identity {
    uint32_t version = 0;  ///< major number in the upper half
    uint32_t deviceMode = 0;
    MacAddress mac;
    uint32_t supportedIpConfig = 0;
    uint32_t currentIpConfig = 0;
    Ipv4 ip;
    Ipv4 mask;
    Ipv4 gateway;
    std::string vendor;
    std::string model;
    std::string deviceVersion;
    std::string vendorInfo;
    std::string serialNumber;  ///< may be empty
    std::string userName;
};

/// Reads the payload of an answer to DISCOVERY. Nothing is returned for fewer bytes than the
/// answer has; more are ignored, as later versions may append some.
std::optional<Identity> ParseIdentity(ByteView payload);
/// The payload of an answer; texts are cut to their fields.
Bytes BuildIdentity(const Identity& identity);

/// The payload of FORCEIP. An address of 0 restarts the camera's IP configuration.
struct ForcedAddress {
    MacAddress mac;
    Ipv4 ip;
    Ipv4 mask;
    Ipv4 gateway;
};

std::optional<ForcedAddress> ParseForcedAddress(ByteView payload);
Bytes BuildForcedAddress(const ForcedAddress& forced);

}  // namespace OvGige
