#include "gige/protocol/Address.h"

#include <gtest/gtest.h>

namespace {

using namespace OvGige;

Ipv4 Ip(std::string_view text) {
    return ParseIpv4(text).value();
}

TEST(Ipv4Address, IsWrittenAsFourDottedNumbers) {
    EXPECT_EQ(TextOf(Ipv4{0xC0A8010A}), "192.168.1.10");
    EXPECT_EQ(TextOf(Ipv4{0}), "0.0.0.0");
    EXPECT_EQ(TextOf(Ipv4{0xFFFFFFFF}), "255.255.255.255");
}

TEST(Ipv4Address, IsReadFromFourDottedNumbersAndNothingElse) {
    EXPECT_EQ(Ip("192.168.1.10").value, 0xC0A8010AU);
    EXPECT_EQ(Ip("0.0.0.0").value, 0U);
    for (const char* text :
         {"", "1.2.3", "1.2.3.4.5", "1.2.3.4 ", " 1.2.3.4", "1..2.3", "1.2.3.256", "1.2.3.0256",
          "a.b.c.d", "1.2.3.-4", "1,2,3,4", "1.2.3."}) {
        EXPECT_FALSE(ParseIpv4(text)) << text;
    }
}

TEST(SubnetMask, HasItsOnesBeforeItsZeros) {
    for (const char* text : {"255.255.255.0", "255.0.0.0", "255.255.255.252", "128.0.0.0"}) {
        EXPECT_TRUE(IsContiguousMask(Ip(text))) << text;
    }
    for (const char* text : {"255.0.255.0", "0.0.0.255", "0.0.0.0", "255.255.255.255"}) {
        EXPECT_FALSE(IsContiguousMask(Ip(text))) << text;
    }
}

TEST(HostAddress, IsNeitherTheNetworksNorItsBroadcast) {
    const Ipv4 mask = Ip("255.255.255.0");
    for (const char* text : {"192.168.1.1", "192.168.1.254", "10.0.0.7", "223.255.255.1"}) {
        EXPECT_TRUE(IsHostAddress(Ip(text), mask)) << text;
    }
    for (const char* text :
         {"192.168.1.0", "192.168.1.255", "0.1.2.3", "127.0.0.1", "224.0.0.1", "255.255.255.255"}) {
        EXPECT_FALSE(IsHostAddress(Ip(text), mask)) << text;
    }
}

TEST(AddressFault, IsEmptyForAddressesThatACameraCanHave) {
    EXPECT_EQ(AddressFault(Ip("10.0.0.5"), Ip("255.0.0.0"), Ip("10.0.0.1")), "");
    EXPECT_EQ(AddressFault(Ip("10.0.0.5"), Ip("255.0.0.0"), Ip("0.0.0.0")), "");
}

TEST(AddressFault, NamesTheMaskBeforeTheAddressBeforeTheGateway) {
    EXPECT_EQ(AddressFault(Ip("10.0.0.0"), Ip("255.0.255.0"), Ip("11.0.0.1")),
              "The subnet mask 255.0.255.0 isn't a row of ones before a row of zeros");
    EXPECT_EQ(AddressFault(Ip("10.0.0.0"), Ip("255.0.0.0"), Ip("11.0.0.1")),
              "A camera can't have the address 10.0.0.0 with the subnet mask 255.0.0.0");
    EXPECT_EQ(AddressFault(Ip("10.0.0.5"), Ip("255.0.0.0"), Ip("11.0.0.1")),
              "The gateway 11.0.0.1 isn't in the subnet of 10.0.0.5");
    EXPECT_EQ(AddressFault(Ip("10.0.0.5"), Ip("255.0.0.0"), Ip("10.255.255.255")),
              "The gateway 10.255.255.255 isn't in the subnet of 10.0.0.5");
}

TEST(MacAddressText, IsWrittenInCapitalsWithHyphens) {
    EXPECT_EQ(TextOf(MacAddress{{0x00, 0x11, 0x22, 0xAA, 0xBB, 0xCC}}), "00-11-22-AA-BB-CC");
}

TEST(MacAddressText, IsReadWithHyphensOrColonsInEitherCase) {
    const MacAddress mac{{0x00, 0x11, 0x22, 0xAA, 0xBB, 0xCC}};
    EXPECT_EQ(ParseMac("00-11-22-AA-BB-CC"), mac);
    EXPECT_EQ(ParseMac("00:11:22:aa:bb:cc"), mac);
    for (const char* text : {"", "00-11-22-AA-BB", "00-11-22-AA-BB-CC-DD", "0-11-22-AA-BB-CC",
                             "00-11-22-AA-BB-CG", "00112233445566", "00-11-22-AA-BB-C"}) {
        EXPECT_FALSE(ParseMac(text)) << text;
    }
}

TEST(MacAddressValue, HasTheFirstByteOnTop) {
    const MacAddress mac{{0x01, 0x02, 0x03, 0x04, 0x05, 0x06}};
    EXPECT_EQ(mac.Value(), 0x010203040506U);
    EXPECT_EQ(MacAddress::Of(0x010203040506U), mac);
}

TEST(EndpointText, HasAPortOrTheUsualOne) {
    EXPECT_EQ(ParseEndpoint("10.1.2.3", 3956), (Endpoint{{0x0A010203}, 3956}));
    EXPECT_EQ(ParseEndpoint("10.1.2.3:4000", 3956), (Endpoint{{0x0A010203}, 4000}));
    EXPECT_EQ(ParseEndpoint("10.1.2.3:65535", 3956), (Endpoint{{0x0A010203}, 65535}));
}

TEST(EndpointText, IsNothingElse) {
    for (const char* text : {"", ":", "0.0.0.0", "camera", "10.1.2", "10.1.2.3:", "10.1.2.3:0",
                             "10.1.2.3:65536", "10.1.2.3:123456", "10.1.2.3:40 ", "10.1.2.3 "}) {
        EXPECT_FALSE(ParseEndpoint(text, 3956)) << text;
    }
}

TEST(List, HasItsItemsBetweenCommasAndBlanks) {
    EXPECT_EQ(ItemsOf("a, b\tc,,d "), std::vector<std::string>({"a", "b", "c", "d"}));
    EXPECT_TRUE(ItemsOf(" , ").empty());
    EXPECT_TRUE(ItemsOf("").empty());
}

}  // namespace
