#include "gige/net/Adapters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace {

using namespace OvGige;

Adapter Ethernet() {
    return {.name = "eth0",
            .index = 2,
            .mac = {},
            .ip = {0xC0A80101},
            .mask = {0xFFFFFF00},
            .broadcast = {0xC0A801FF},
            .gateway = {},
            .isLoopback = false};
}

Adapter Loopback() {
    return {.name = "lo",
            .index = 1,
            .mac = {},
            .ip = {0x7F000001},
            .mask = {0xFF000000},
            .broadcast = {},
            .gateway = {},
            .isLoopback = true};
}

TEST(AdapterChoiceText, AllowsAllButLoopbackWhenEmpty) {
    for (const char* text : {"", " ", ","}) {
        EXPECT_TRUE(AdapterChoice(text).Allows(Ethernet()));
        EXPECT_FALSE(AdapterChoice(text).Allows(Loopback()));
    }
}

TEST(AdapterChoiceText, AllowsNothingWithNone) {
    EXPECT_FALSE(AdapterChoice("none").Allows(Ethernet()));
    EXPECT_FALSE(AdapterChoice("none").Allows(Loopback()));
}

TEST(AdapterChoiceText, AllowsWhatItNames) {
    for (const char* text : {"eth0", "192.168.1.1", "eth1, eth0", "eth1 192.168.1.1"}) {
        EXPECT_TRUE(AdapterChoice(text).Allows(Ethernet())) << text;
        EXPECT_FALSE(AdapterChoice(text).Allows(Loopback())) << text;
    }
    EXPECT_FALSE(AdapterChoice("eth1").Allows(Ethernet()));
    EXPECT_FALSE(AdapterChoice("192.168.1.2").Allows(Ethernet()));
    EXPECT_TRUE(AdapterChoice("lo").Allows(Loopback()));
    EXPECT_TRUE(AdapterChoice("127.0.0.1,eth0").Allows(Loopback()));
}

TEST(Gateways, AreThoseOfDefaultRoutes) {
    std::istringstream routes(
        "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\n"
        "eth0\t00000000\t0101A8C0\t0003\t0\t0\t0\t00000000\n"
        "eth0\t0000000A\t0201A8C0\t0003\t0\t0\t0\t000000FF\n"
        "eth0\t00000000\t0301A8C0\t0003\t0\t0\t9\t00000000\n"
        "eth1\t0001A8C0\t00000000\t0001\t0\t0\t0\t00FFFFFF\n"
        "eth2\tnot a route\n");
    const std::map<std::string, Ipv4> expected{{"eth0", {0xC0A80101}}};
    EXPECT_EQ(ReadGateways(routes), expected);
}

TEST(AllAdaptersOfThisMachine, HaveNamesIndexesAndAddresses) {
    for (const Adapter& adapter : AllAdapters()) {
        EXPECT_FALSE(adapter.name.empty());
        EXPECT_GT(adapter.index, 0);
        EXPECT_FALSE(adapter.ip.IsNone());
        EXPECT_EQ(adapter.isLoopback, adapter.ip.value >> 24 == 127) << adapter.name;
    }
}

}  // namespace
