#pragma once
/// The dotted-address calculator. Addresses are 32-bit values with the first
/// number in the top byte.

#include <array>
#include <cstdint>
#include <string>

inline constexpr int kAddressBits = 32;

class Cipcalc {
public:
    /// The four numbers of an address, first one first.
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
    /// Whether the text is a host's address: one to four numbers up to 254,
    /// the first of them not 0.
    bool IsValidIP(const std::string& text) const;
    /// Whether the text has the form of a mask: as an address, with numbers up to
    /// 255, but not all ones. Gaps between the ones pass. Null isn't valid.
    bool IsValidMask(const char* text) const;
    std::string IntToString(uint32_t address) const;
    /// Eight binary digits for each number, blanks between them: 35 characters.
    std::string ToBinaryText(uint32_t address) const;
    /// Six hexadecimal pairs with one character between two of them. What is no
    /// digit, or missing, counts as 0.
    Mac ParseMac(const std::string& text) const;
    bool CompareMac(const Mac& left, const Mac& right) const;

    // Numbers of an address.

    /// @param number  from 1, the first, to 4; the octet of any other is 0
    int GetOctet(uint32_t address, int number) const;
    Octets SplitOctets(uint32_t address) const;
    uint32_t JoinOctets(const Octets& octets) const;

    // Classes of addresses, 'A' to 'E', and how a mask divides them.

    char GetIpClass(uint32_t address) const;
    int CountBits(uint32_t mask) const;
    /// Ones of the mask beyond those of the class; -1 for the classes D and E.
    int GetSubnetBits(uint32_t mask, char ipClass) const;
    /// Subnets of a network of that class, without the first and the last.
    int64_t GetSubnetCount(uint32_t mask, char ipClass) const;
    /// Hosts of one subnet; -1 for the classes D and E.
    int64_t GetHostCount(uint32_t mask, char ipClass) const;
    /// Whether the mask's ones are without a gap and leave a network of that
    /// class undivided or divided into at least two subnets with hosts.
    bool IsMaskValidForClass(uint32_t mask, char ipClass) const;

    // Networks.

    uint32_t GetNetwork(uint32_t address, uint32_t mask) const;
    uint32_t GetBroadcast(uint32_t address, uint32_t mask) const;
    /// First and last host of the address's network. The last octets carry
    /// nothing over.
    /// @param prefixLength  ones of the mask, 0 to 32
    HostRange GetHostRange(uint32_t address, int prefixLength) const;
    bool IsSameSubnet(uint32_t left, uint32_t right, uint32_t mask) const;
    /// Whether the address is neither its network's own nor the broadcast's.
    bool IsHostAddress(uint32_t address, uint32_t mask) const;
};
