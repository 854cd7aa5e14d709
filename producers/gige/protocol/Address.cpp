#include "gige/protocol/Address.h"

#include <algorithm>
#include <charconv>

namespace OvGige {
namespace {

constexpr uint32_t kFirstHost = 0x01000000;       // 1.0.0.0
constexpr uint32_t kFirstMulticast = 0xE0000000;  // 224.0.0.0
constexpr uint32_t kLoopbackNetwork = 127;

/// Reads a number at the front of `text` and takes it away. At most `digits` characters, all
/// of them digits of `base`.
std::optional<uint32_t> TakeNumber(std::string_view& text, int base, size_t digits) {
    uint32_t value = 0;
    const std::string_view front = text.substr(0, digits);
    const auto [end, error] =
        std::from_chars(front.data(), front.data() + front.size(), value, base);
    if (error != std::errc()) {
        return {};
    }
    text.remove_prefix(static_cast<size_t>(end - front.data()));
    return value;
}

bool TakeOneOf(std::string_view& text, std::string_view separators) {
    if (text.empty() || separators.find(text.front()) == std::string_view::npos) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

}  // namespace

std::string TextOf(Ipv4 address) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += std::to_string(address.value >> shift & 0xFF);
        text += shift > 0 ? "." : "";
    }
    return text;
}

std::optional<Ipv4> ParseIpv4(std::string_view text) {
    constexpr int kNumbers = 4;
    Ipv4 address;
    for (int i = 0; i < kNumbers; ++i) {
        if (i > 0 && !TakeOneOf(text, ".")) {
            return {};
        }
        const auto number = TakeNumber(text, 10, 3);
        if (!number || *number > 0xFF) {
            return {};
        }
        address.value = address.value << 8 | *number;
    }
    return text.empty() ? std::optional(address) : std::nullopt;
}

bool IsContiguousMask(Ipv4 mask) {
    const uint32_t host = ~mask.value;
    return mask.value != 0 && host != 0 && (host & (host + 1)) == 0;
}

bool IsHostAddress(Ipv4 address, Ipv4 mask) {
    const uint32_t host = address.value & ~mask.value;
    return address.value >= kFirstHost && address.value < kFirstMulticast &&
           address.value >> 24 != kLoopbackNetwork && host != 0 && host != ~mask.value;
}

std::string AddressFault(Ipv4 address, Ipv4 mask, Ipv4 gateway) {
    if (!IsContiguousMask(mask)) {
        return "The subnet mask " + TextOf(mask) + " isn't a row of ones before a row of zeros";
    }
    if (!IsHostAddress(address, mask)) {
        return "A camera can't have the address " + TextOf(address) + " with the subnet mask " +
               TextOf(mask);
    }
    if (!gateway.IsNone() &&
        (!IsSameSubnet(address, gateway, mask) || !IsHostAddress(gateway, mask))) {
        return "The gateway " + TextOf(gateway) + " isn't in the subnet of " + TextOf(address);
    }
    return {};
}

std::string TextOf(const Endpoint& endpoint) {
    return TextOf(endpoint.ip) + ":" + std::to_string(endpoint.port);
}

std::optional<Endpoint> ParseEndpoint(std::string_view text, uint16_t usualPort) {
    constexpr size_t kPortDigits = 5;
    const size_t colon = text.find(':');
    const auto ip = ParseIpv4(text.substr(0, colon));
    if (!ip || ip->IsNone()) {
        return {};
    }
    if (colon == std::string_view::npos) {
        return Endpoint{*ip, usualPort};
    }
    text.remove_prefix(colon + 1);
    const auto port = TakeNumber(text, 10, kPortDigits);
    if (!port || *port == 0 || *port > 0xFFFF || !text.empty()) {
        return {};
    }
    return Endpoint{*ip, static_cast<uint16_t>(*port)};
}

std::vector<std::string> ItemsOf(std::string_view list) {
    constexpr std::string_view kSeparators = ", \t";
    std::vector<std::string> items;
    while (!list.empty()) {
        const size_t end = std::min(list.find_first_of(kSeparators), list.size());
        if (end > 0) {
            items.emplace_back(list.substr(0, end));
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return items;
}

uint64_t MacAddress::Value() const {
    uint64_t value = 0;
    for (const uint8_t byte : bytes) {
        value = value << 8 | byte;
    }
    return value;
}

MacAddress MacAddress::Of(uint64_t value) {
    MacAddress mac;
    for (auto byte = mac.bytes.rbegin(); byte != mac.bytes.rend(); ++byte) {
        *byte = static_cast<uint8_t>(value & 0xFF);
        value >>= 8;
    }
    return mac;
}

std::string TextOf(MacAddress mac) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (const uint8_t byte : mac.bytes) {
        text += text.empty() ? "" : "-";
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0xF];
    }
    return text;
}

std::optional<MacAddress> ParseMac(std::string_view text) {
    constexpr size_t kDigits = 2;
    MacAddress mac;
    for (size_t i = 0; i < mac.bytes.size(); ++i) {
        if (i > 0 && !TakeOneOf(text, "-:")) {
            return {};
        }
        const size_t before = text.size();
        const auto number = TakeNumber(text, 16, kDigits);
        if (!number || before - text.size() != kDigits) {
            return {};
        }
        mac.bytes[i] = static_cast<uint8_t>(*number);
    }
    return text.empty() ? std::optional(mac) : std::nullopt;
}

}  // namespace OvGige
