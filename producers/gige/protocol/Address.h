#pragma once
/// Network addresses: values, texts, and what makes an address usable.

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace OvGige {

/// An IPv4 address or mask in the byte order of numbers: the first of the dotted numbers is
/// the top byte.
struct Ipv4 {
    uint32_t value = 0;

    auto operator<=>(const Ipv4&) const = default;
    bool IsNone() const { return value == 0; }
};

/// The address of a broadcast that reaches other subnets of the same network, too.
constexpr Ipv4 kEverybody{0xFFFFFFFF};

/// "192.168.1.10".
std::string TextOf(Ipv4 address);
/// Reads four dotted numbers from 0 to 255 and nothing else.
std::optional<Ipv4> ParseIpv4(std::string_view text);

/// Whether the ones of a mask come before its zeros, and there are both.
bool IsContiguousMask(Ipv4 mask);
/// Whether a camera can have the address: within 1.0.0.0 to 223.255.255.255, not loopback,
/// and neither the network's own address nor its broadcast address.
bool IsHostAddress(Ipv4 address, Ipv4 mask);
inline bool IsSameSubnet(Ipv4 one, Ipv4 other, Ipv4 mask) {
    return (one.value & mask.value) == (other.value & mask.value);
}
/// Why a camera can't have these addresses, as a sentence; empty if it can. A gateway of 0
/// stands for none.
std::string AddressFault(Ipv4 address, Ipv4 mask, Ipv4 gateway);

/// An address with a port.
struct Endpoint {
    Ipv4 ip;
    uint16_t port = 0;

    bool operator==(const Endpoint&) const = default;
};

/// "192.168.1.10:3956".
std::string TextOf(const Endpoint& endpoint);
/// Reads "192.168.1.10" or "192.168.1.10:4000".
/// @param usualPort  port of a text without one
std::optional<Endpoint> ParseEndpoint(std::string_view text, uint16_t usualPort);

/// What stands between the commas and blanks of a list.
std::vector<std::string> ItemsOf(std::string_view list);

/// A MAC address, first byte first.
struct MacAddress {
    std::array<uint8_t, 6> bytes{};

    bool operator==(const MacAddress&) const = default;
    bool operator<(const MacAddress& other) const { return bytes < other.bytes; }
    /// The six bytes as a number, the first one on top.
    uint64_t Value() const;
    static MacAddress Of(uint64_t value);
};

/// "00-11-22-AA-BB-CC".
std::string TextOf(MacAddress mac);
/// Reads six pairs of hexadecimal digits with "-" or ":" between them, in either case.
std::optional<MacAddress> ParseMac(std::string_view text);

}  // namespace OvGige
