#pragma once
/// Calculates with dotted addresses. An address is a number of 32 bits whose highest byte
/// is the first number of the text.

#include <array>
#include <cstdint>
#include <string>

inline constexpr int kAddressBits = 32;

class Cipcalc {
public:
    /// The four numbers of an address, in the order of the text.
    using Octets = std::array<int, 4>;
    using Mac = std::array<uint8_t, 6>;
    struct HostRange {
        Octets first;
        Octets last;
    };

    virtual ~Cipcalc() = default;

    // Texts.

    /// The address of a dotted text; 0 for an empty text and for one with a
    /// number of more than three digits.
    uint32_t StringToInt(const std::string& text) const;
    /// Whether the text can be a host's address: one to four numbers up to 254, the first
    /// not 0.
    bool IsValidIP(const std::string& text) const;
    /// Whether the text can be a mask: like an address, but with numbers up to 255 and
    /// not all of them 255. Its ones need not be contiguous. Null isn't valid.
    bool IsValidMask(const char* text) const;
    std::string IntToString(uint32_t address) const;
    /// Eight binary digits for each number, with blanks between the numbers: 35
    /// characters.
    std::string ToBinaryText(uint32_t address) const;
    /// Converts six pairs of hexadecimal digits with any character between two pairs.
    /// Anything else than a digit, or a missing one, counts as 0.
    Mac ParseMac(const std::string& text) const;
    bool CompareMac(const Mac& left, const Mac& right) const;

    // Numbers of an address.

    /// @param number  1 (the first) to 4; any other returns 0
    int GetOctet(uint32_t address, int number) const;
    Octets SplitOctets(uint32_t address) const;
    uint32_t JoinOctets(const Octets& octets) const;

    // Classes of addresses, 'A' to 'E', and how a mask divides them.

    char GetIpClass(uint32_t address) const;
    int CountBits(uint32_t mask) const;
    /// How many ones the mask has more than the class; -1 for the classes D and E.
    int GetSubnetBits(uint32_t mask, char ipClass) const;
    /// Number of subnets of a network of that class, without the first and the last.
    int64_t GetSubnetCount(uint32_t mask, char ipClass) const;
    /// Number of hosts of one subnet; -1 for the classes D and E.
    int64_t GetHostCount(uint32_t mask, char ipClass) const;
    /// Whether the mask's ones are contiguous and divide a network of that class into at
    /// least two subnets with hosts, or not at all.
    bool IsMaskValidForClass(uint32_t mask, char ipClass) const;

    // Networks.

    uint32_t GetNetwork(uint32_t address, uint32_t mask) const;
    uint32_t GetBroadcast(uint32_t address, uint32_t mask) const;
    /// First and last host of the address's network. One is added to or subtracted from
    /// the last octet without a carry.
    /// @param prefixLength  ones of the mask, 0 to 32
    HostRange GetHostRange(uint32_t address, int prefixLength) const;
    bool IsSameSubnet(uint32_t left, uint32_t right, uint32_t mask) const;
    /// Whether the address is a host's: neither that of the network nor the broadcast
    /// address.
    bool IsHostAddress(uint32_t address, uint32_t mask) const;
};
