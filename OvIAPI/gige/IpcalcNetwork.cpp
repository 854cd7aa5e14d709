// Networks, their classes, and how a mask divides them.

#include <bit>

#include "gige/Ipcalc.h"

namespace {

constexpr uint32_t kAllOnes = 0xFFFFFFFFU;
constexpr int kMaxOnes = 30;

/// How many ones the mask of an undivided network has; 0 for a class without networks.
int NetworkBits(char ipClass) {
    switch (ipClass) {
        case 'A':
            return 8;
        case 'B':
            return 16;
        case 'C':
            return 24;
        default:
            return 0;
    }
}

uint32_t MaskOf(int prefixLength) {
    return prefixLength <= 0 ? 0 : kAllOnes << (kAddressBits - prefixLength);
}

/// Two to a power, without the first and the last address or subnet, which serve no host;
/// -1 for a negative number of bits.
int64_t CountWithoutEnds(int bits) {
    return bits < 0 ? -1 : (int64_t{1} << bits) - 2;
}

}  // namespace

int Cipcalc::GetOctet(uint32_t address, int number) const {
    const Octets octets = SplitOctets(address);
    return number >= 1 && number <= static_cast<int>(octets.size())
               ? octets[static_cast<size_t>(number - 1)]
               : 0;
}

Cipcalc::Octets Cipcalc::SplitOctets(uint32_t address) const {
    Octets octets{};
    for (size_t i = 0; i < octets.size(); ++i) {
        octets[i] = static_cast<int>((address >> (24 - 8 * i)) & 0xFFU);
    }
    return octets;
}

uint32_t Cipcalc::JoinOctets(const Octets& octets) const {
    uint32_t address = 0;
    for (const int octet : octets) {
        address = (address << 8U) | (static_cast<uint32_t>(octet) & 0xFFU);
    }
    return address;
}

char Cipcalc::GetIpClass(uint32_t address) const {
    constexpr int kClasses = 4;
    const int leadingOnes = std::countl_one(address);
    return static_cast<char>('A' + (leadingOnes < kClasses ? leadingOnes : kClasses));
}

int Cipcalc::CountBits(uint32_t mask) const {
    return std::popcount(mask);
}

int Cipcalc::GetSubnetBits(uint32_t mask, char ipClass) const {
    const int networkBits = NetworkBits(ipClass);
    return networkBits == 0 ? -1 : CountBits(mask) - networkBits;
}

int64_t Cipcalc::GetSubnetCount(uint32_t mask, char ipClass) const {
    const int bits = GetSubnetBits(mask, ipClass);
    return bits == 0 ? 1 : CountWithoutEnds(bits);
}

int64_t Cipcalc::GetHostCount(uint32_t mask, char ipClass) const {
    return NetworkBits(ipClass) == 0 ? -1 : CountWithoutEnds(kAddressBits - CountBits(mask));
}

bool Cipcalc::IsMaskValidForClass(uint32_t mask, char ipClass) const {
    const int ones = CountBits(mask);
    if (ones == 0 || ones > kMaxOnes || std::countl_one(mask) != ones) {
        return false;
    }
    const int networkBits = NetworkBits(ipClass);
    // With one bit more, only the first and the last subnet would be left, which hosts
    // can't use.
    return networkBits == 0 || ones == networkBits || ones >= networkBits + 2;
}

uint32_t Cipcalc::GetNetwork(uint32_t address, uint32_t mask) const {
    return address & mask;
}

uint32_t Cipcalc::GetBroadcast(uint32_t address, uint32_t mask) const {
    const uint64_t size = uint64_t{1} << (kAddressBits - CountBits(mask));
    return static_cast<uint32_t>(GetNetwork(address, mask) + size - 1);
}

Cipcalc::HostRange Cipcalc::GetHostRange(uint32_t address, int prefixLength) const {
    const uint32_t mask = MaskOf(prefixLength);
    HostRange range{SplitOctets(GetNetwork(address, mask)), SplitOctets(address | ~mask)};
    ++range.first.back();
    --range.last.back();
    return range;
}

bool Cipcalc::IsSameSubnet(uint32_t left, uint32_t right, uint32_t mask) const {
    return GetNetwork(left, mask) == GetNetwork(right, mask);
}

bool Cipcalc::IsHostAddress(uint32_t address, uint32_t mask) const {
    constexpr uint32_t kFirstHost = 1U << 24U;
    return address >= kFirstHost && address != GetNetwork(address, mask) &&
           address != GetBroadcast(address, mask);
}
