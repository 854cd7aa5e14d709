#include "gige/protocol/Discovery.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "HexBytes.h"

namespace {

using namespace OvGige;

Identity Sample() {
    return {.version = 0x00020001,
            .deviceMode = 0x80000001,
            .mac = {{0x00, 0x11, 0x22, 0xAA, 0xBB, 0xCC}},
            .supportedIpConfig = 7,
            .currentIpConfig = 6,
            .ip = {0xC0A8010A},
            .mask = {0xFFFFFF00},
            .gateway = {0xC0A80101},
            .vendor = "vendor",
            .model = "model",
            .deviceVersion = "1.2",
            .vendorInfo = "info",
            .serialNumber = "0123456789ABCDEF",
            .userName = "left"};
}

std::string TextAt(const Bytes& payload, size_t offset, size_t width) {
    return ReadText(ByteView(payload).subspan(offset, width));
}

TEST(IdentityPayload, HasEachFieldAtItsPlace) {
    const Bytes payload = BuildIdentity(Sample());
    ASSERT_EQ(payload.size(), 248U);
    const auto numberAt = [&](size_t at) {
        return ReadBig<uint32_t>(ByteView(payload).subspan(at));
    };
    EXPECT_EQ(numberAt(0), 0x00020001U);
    EXPECT_EQ(numberAt(4), 0x80000001U);
    EXPECT_EQ(numberAt(8), 0x00000011U);
    EXPECT_EQ(numberAt(12), 0x22AABBCCU);
    EXPECT_EQ(numberAt(16), 7U);
    EXPECT_EQ(numberAt(20), 6U);
    EXPECT_EQ(numberAt(36), 0xC0A8010AU);
    EXPECT_EQ(numberAt(52), 0xFFFFFF00U);
    EXPECT_EQ(numberAt(68), 0xC0A80101U);
    EXPECT_EQ(TextAt(payload, 72, 32), "vendor");
    EXPECT_EQ(TextAt(payload, 104, 32), "model");
    EXPECT_EQ(TextAt(payload, 136, 32), "1.2");
    EXPECT_EQ(TextAt(payload, 168, 48), "info");
    EXPECT_EQ(TextAt(payload, 216, 16), "0123456789ABCDEF");
    EXPECT_EQ(TextAt(payload, 232, 16), "left");
}

TEST(IdentityPayload, IsReadAsItWasBuilt) {
    const auto identity = ParseIdentity(BuildIdentity(Sample()));
    ASSERT_TRUE(identity);
    EXPECT_EQ(BuildIdentity(*identity), BuildIdentity(Sample()));
    EXPECT_EQ(identity->mac, Sample().mac);
    EXPECT_EQ(identity->serialNumber, "0123456789ABCDEF");
}

TEST(IdentityPayload, MayBeLongerButNotShorter) {
    Bytes payload = BuildIdentity(Sample());
    payload.resize(300);
    EXPECT_TRUE(ParseIdentity(payload));
    payload.resize(247);
    EXPECT_FALSE(ParseIdentity(payload));
}

TEST(IdentityPayload, HasTextsWithoutControlCharactersAndWhatFollowsTheirZero) {
    Bytes payload = BuildIdentity(Sample());
    WriteText(std::span(payload).subspan(72, 32), std::string_view("a\x1B[31mb\0garbage", 14));
    const auto identity = ParseIdentity(payload);
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->vendor, "a[31mb");
}

TEST(IdentityPayload, HasTextsCutToTheirFields) {
    Identity identity = Sample();
    identity.userName = "a name that is longer than its field";
    EXPECT_EQ(ParseIdentity(BuildIdentity(identity))->userName, "a name that is l");
}

TEST(ForcedAddressPayload, HasEachFieldAtItsPlace) {
    const Bytes payload = BuildForcedAddress({.mac = {{0x00, 0x11, 0x22, 0xAA, 0xBB, 0xCC}},
                                              .ip = {0x0A000005},
                                              .mask = {0xFF000000},
                                              .gateway = {0x0A000001}});
    EXPECT_EQ(payload, FromHex("00 00 00 11 22 AA BB CC  00 00 00 00 00 00 00 00 00 00 00 00"
                               "0A 00 00 05  00 00 00 00 00 00 00 00 00 00 00 00"
                               "FF 00 00 00  00 00 00 00 00 00 00 00 00 00 00 00  0A 00 00 01"));
    const auto forced = ParseForcedAddress(payload);
    ASSERT_TRUE(forced);
    EXPECT_EQ(TextOf(forced->mac), "00-11-22-AA-BB-CC");
    EXPECT_EQ(TextOf(forced->ip), "10.0.0.5");
    EXPECT_EQ(TextOf(forced->mask), "255.0.0.0");
    EXPECT_EQ(TextOf(forced->gateway), "10.0.0.1");
    EXPECT_FALSE(ParseForcedAddress(ByteView(payload).first(55)));
}

}  // namespace
