// The dotted-address calculator.

#include "gige/Ipcalc.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

const Cipcalc kCalculator;

constexpr uint32_t Address(uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    return a << 24 | b << 16 | c << 8 | d;
}

struct Validity {
    const char* text;
    bool isAddress;
    bool isMask;
};

TEST(Ipcalc, TellsAddressesAndMasksByTheirForm) {
    const Validity cases[] = {
        {"192.168.1.1", true, true},
        {"192.168.1.255", false, true},
        {"0.1.2.3", false, false},
        {"1.2.3", true, true},
        {"1.2.3.4.5", false, false},
        {"1..2.3", false, false},
        {"1234.1.1.1", false, false},
        {"255.255.255.0", false, true},
        {"255.0.255.0", false, true},
        {"0.255.255.255", false, false},
        {"255.255.255.255", false, false},
        {"0.0.0.0", false, false},
        {"254.254.254.254", true, true},
        {"256.1.1.1", false, false},
        {"1", true, true},
        {"", false, false},
        {".1.2.3", false, false},
        {"1.2.3.", false, false},
        {"1.2.3.4 ", false, false},
        {" 1.2.3.4", false, false},
        {"1.2.3.a", false, false},
        {"-1.2.3.4", false, false},
        {"1,2,3,4", false, false},
        {"001.002.003.004", true, true},
        {"1.2.3.0004", false, false},
    };
    for (const Validity& test : cases) {
        EXPECT_EQ(kCalculator.IsValidIP(test.text), test.isAddress) << test.text;
        EXPECT_EQ(kCalculator.IsValidMask(test.text), test.isMask) << test.text;
    }
    EXPECT_FALSE(kCalculator.IsValidMask(nullptr));
}

TEST(Ipcalc, TurnsTextsIntoNumbersAndBack) {
    EXPECT_EQ(kCalculator.StringToInt("192.168.1.2"), Address(192, 168, 1, 2));
    EXPECT_EQ(kCalculator.StringToInt("1.2.3"), Address(1, 2, 3, 0));
    EXPECT_EQ(kCalculator.StringToInt(""), 0U);
    EXPECT_EQ(kCalculator.StringToInt("1.2345.1.1"), 0U);
    EXPECT_EQ(kCalculator.StringToInt("255.255.255.255"), 0xFFFFFFFFU);
    EXPECT_EQ(kCalculator.StringToInt("1.0.0.0.2"), Address(3, 0, 0, 0)) << "the shift goes around";
    EXPECT_EQ(kCalculator.IntToString(Address(192, 168, 1, 2)), "192.168.1.2");
    EXPECT_EQ(kCalculator.IntToString(0), "0.0.0.0");
    EXPECT_EQ(kCalculator.ToBinaryText(Address(192, 168, 1, 2)),
              "11000000 10101000 00000001 00000010");
}

TEST(Ipcalc, TakesAddressesApart) {
    const uint32_t address = Address(192, 168, 1, 2);
    const Cipcalc::Octets octets{192, 168, 1, 2};
    EXPECT_EQ(kCalculator.SplitOctets(address), octets);
    EXPECT_EQ(kCalculator.JoinOctets(octets), address);
    EXPECT_EQ(kCalculator.GetOctet(address, 1), 192);
    EXPECT_EQ(kCalculator.GetOctet(address, 4), 2);
    EXPECT_EQ(kCalculator.GetOctet(address, 0), 0);
    EXPECT_EQ(kCalculator.GetOctet(address, 5), 0);
}

TEST(Ipcalc, TellsTheClassByTheLeadingBits) {
    EXPECT_EQ(kCalculator.GetIpClass(Address(0, 0, 0, 1)), 'A');
    EXPECT_EQ(kCalculator.GetIpClass(Address(127, 0, 0, 1)), 'A');
    EXPECT_EQ(kCalculator.GetIpClass(Address(128, 0, 0, 1)), 'B');
    EXPECT_EQ(kCalculator.GetIpClass(Address(192, 0, 0, 1)), 'C');
    EXPECT_EQ(kCalculator.GetIpClass(Address(224, 0, 0, 1)), 'D');
    EXPECT_EQ(kCalculator.GetIpClass(Address(240, 0, 0, 1)), 'E');
    EXPECT_EQ(kCalculator.GetIpClass(0xFFFFFFFF), 'E');
}

struct Division {
    char ipClass;
    uint32_t mask;
    int subnetBits;
    int64_t subnets;
    int64_t hosts;
    bool isValid;
};

TEST(Ipcalc, CountsWhatAMaskMakesOfAClass) {
    const Division cases[] = {
        {'A', 0xFF000000, 0, 1, 16777214, true}, {'A', 0xFF800000, 1, 0, 8388606, false},
        {'A', 0xFFC00000, 2, 2, 4194302, true},  {'A', 0xF0000000, -4, -1, 268435454, false},
        {'B', 0xFFFF0000, 0, 1, 65534, true},    {'B', 0xFFFF8000, 1, 0, 32766, false},
        {'B', 0xFFFFC000, 2, 2, 16382, true},    {'C', 0xFFFFFF00, 0, 1, 254, true},
        {'C', 0xFFFFFF80, 1, 0, 126, false},     {'C', 0xFFFFFFC0, 2, 2, 62, true},
        {'C', 0xFFFFFFFC, 6, 62, 2, true},       {'C', 0xFFFFFFFE, 7, 126, 0, false},
        {'D', 0xFFFF0000, -1, -1, -1, true},     {'E', 0x80000000, -1, -1, -1, true},
        {'E', 0xFF00FF00, -1, -1, -1, false},    {'D', 0, -1, -1, -1, false},
        {'D', 0xFFFFFFFF, -1, -1, -1, false},
    };
    for (const Division& test : cases) {
        SCOPED_TRACE(std::string(1, test.ipClass) + " " + kCalculator.ToBinaryText(test.mask));
        EXPECT_EQ(kCalculator.GetSubnetBits(test.mask, test.ipClass), test.subnetBits);
        EXPECT_EQ(kCalculator.GetSubnetCount(test.mask, test.ipClass), test.subnets);
        EXPECT_EQ(kCalculator.GetHostCount(test.mask, test.ipClass), test.hosts);
        EXPECT_EQ(kCalculator.IsMaskValidForClass(test.mask, test.ipClass), test.isValid);
    }
    EXPECT_EQ(kCalculator.CountBits(0xFF00FF00), 16);
}

TEST(Ipcalc, TellsNetworksAndTheirHosts) {
    const uint32_t mask = 0xFFFFFF00;
    const uint32_t address = Address(192, 168, 1, 20);
    EXPECT_EQ(kCalculator.GetNetwork(address, mask), Address(192, 168, 1, 0));
    EXPECT_EQ(kCalculator.GetBroadcast(address, mask), Address(192, 168, 1, 255));
    EXPECT_EQ(kCalculator.GetBroadcast(address, 0), 0xFFFFFFFFU);
    EXPECT_EQ(kCalculator.GetBroadcast(address, 0xFFFFFFFF), address);
    EXPECT_TRUE(kCalculator.IsSameSubnet(address, Address(192, 168, 1, 99), mask));
    EXPECT_FALSE(kCalculator.IsSameSubnet(address, Address(192, 168, 2, 20), mask));
    EXPECT_TRUE(kCalculator.IsHostAddress(address, mask));
    EXPECT_FALSE(kCalculator.IsHostAddress(Address(192, 168, 1, 0), mask));
    EXPECT_FALSE(kCalculator.IsHostAddress(Address(192, 168, 1, 255), mask));
    EXPECT_FALSE(kCalculator.IsHostAddress(Address(0, 255, 255, 254), mask));
    EXPECT_TRUE(kCalculator.IsHostAddress(Address(1, 0, 0, 1), mask));
}

TEST(Ipcalc, GivesTheRangeOfHosts) {
    const auto range = kCalculator.GetHostRange(Address(172, 16, 33, 7), 20);
    EXPECT_EQ(range.first, (Cipcalc::Octets{172, 16, 32, 1}));
    EXPECT_EQ(range.last, (Cipcalc::Octets{172, 16, 47, 254}));
    const auto all = kCalculator.GetHostRange(Address(172, 16, 33, 7), 0);
    EXPECT_EQ(all.first, (Cipcalc::Octets{0, 0, 0, 1}));
    EXPECT_EQ(all.last, (Cipcalc::Octets{255, 255, 255, 254}));
    const auto one = kCalculator.GetHostRange(Address(172, 16, 33, 255), 32);
    EXPECT_EQ(one.first, (Cipcalc::Octets{172, 16, 33, 256})) << "nothing is carried over";
    EXPECT_EQ(one.last, (Cipcalc::Octets{172, 16, 33, 254}));
}

TEST(Ipcalc, ReadsMacAddressesWithAnySeparator) {
    const Cipcalc::Mac mac{0xAA, 0xBB, 0x0C, 0x10, 0x00, 0xFF};
    EXPECT_EQ(kCalculator.ParseMac("AA-BB-0C-10-00-FF"), mac);
    EXPECT_EQ(kCalculator.ParseMac("aa:bb:0c:10:00:ff"), mac);
    EXPECT_TRUE(kCalculator.CompareMac(kCalculator.ParseMac("aa bb 0c 10 00 ff"), mac));
    EXPECT_EQ(kCalculator.ParseMac("g1-1z"), (Cipcalc::Mac{0x01, 0x10, 0, 0, 0, 0}));
    EXPECT_FALSE(kCalculator.CompareMac(kCalculator.ParseMac(""), mac));
}

}  // namespace
