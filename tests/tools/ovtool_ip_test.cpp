// Addresses of GigE Vision cameras.

#include "ToolTest.h"

namespace {

constexpr const char* kMac = "00-AA-BB-CC-00-64";
constexpr const char* kAddresses = " 10.0.0.5 255.0.0.0 10.0.0.1";

const Json kAddressDocument = {
    {"ip", "10.0.0.5"}, {"subnetMask", "255.0.0.0"}, {"gateway", "10.0.0.1"}};

Json With(Json document, const Json& more) {
    document.update(more);
    return document;
}

TEST_F(ToolTest, IpListShowsCamerasWithTheirAdapters) {
    ExpectPrints(Gev("ip list"),
                 "1  00-AA-BB-CC-00-64  TestCamera  serial SN0_0  192.168.10.100 mask "
                 "255.255.255.0 gateway 192.168.10.254\n"
                 "   on 00-11-22-33-00-01  Adapter 0  192.168.10.1 mask 255.255.255.0 gateway "
                 "192.168.10.254\n"
                 "1 GigE Vision camera\n");
    ExpectDocument(Gev("ip list --json"), {{"cameras",
                                            {{{"index", 1},
                                              {"model", "TestCamera"},
                                              {"serialNumber", "SN0_0"},
                                              {"mac", kMac},
                                              {"ip", "192.168.10.100"},
                                              {"subnetMask", "255.255.255.0"},
                                              {"gateway", "192.168.10.254"},
                                              {"adapter",
                                               {{"mac", "00-11-22-33-00-01"},
                                                {"ip", "192.168.10.1"},
                                                {"subnetMask", "255.255.255.0"},
                                                {"gateway", "192.168.10.254"},
                                                {"description", "Adapter 0"}}}}}}});
}

TEST_F(ToolTest, IpListPassesOtherCamerasOver) {
    const std::string failure = "ovtool: no GigE Vision camera was found\n" + SearchedVirtual();
    const ToolRun lines = Virtual("ip list");
    EXPECT_EQ(lines.out, "0 GigE Vision cameras\n");
    EXPECT_EQ(lines.err, failure);
    EXPECT_EQ(lines.status, Exit::kNoCamera);
    const ToolRun document = Virtual("ip list --json");
    EXPECT_EQ(Json::parse(document.out), Json({{"cameras", Json::array()}}));
    EXPECT_EQ(document.err, failure);
    EXPECT_EQ(document.status, Exit::kNoCamera);
}

TEST_F(ToolTest, IpForceTakesMacAddressesInAnyForm) {
    const std::string line =
        std::string(kMac) + ": 10.0.0.5 mask 255.0.0.0 gateway 10.0.0.1 until its next start\n";
    for (const std::string mac : {kMac, "00:aa:bb:cc:00:64", "00.Aa.bB.cc.00.64"}) {
        ExpectPrints(Gev("ip force " + mac + kAddresses), line);
    }
    ExpectDocument(Gev(std::string("ip force --json ") + kMac + kAddresses),
                   With({{"mac", kMac}}, kAddressDocument));
}

TEST_F(ToolTest, IpConfigureKnowsTheFourModes) {
    for (const std::string mode : {"persistent", "persistent+dhcp"}) {
        const std::string call = "ip configure " + std::string(kMac) + " " + mode + kAddresses;
        ExpectPrints(Gev(call), std::string(kMac) + ": " + mode +
                                    ", 10.0.0.5 mask 255.0.0.0 gateway 10.0.0.1\n");
        ExpectDocument(Gev(call + " -u left --json"),
                       With({{"mac", kMac}, {"mode", mode}, {"userId", "left"}}, kAddressDocument));
    }
    for (const std::string mode : {"lla", "dhcp"}) {
        const std::string call = "ip configure " + std::string(kMac) + " " + mode;
        ExpectPrints(Gev(call), std::string(kMac) + ": " + mode + "\n");
        ExpectDocument(Gev(call + " --json"), {{"mac", kMac}, {"mode", mode}, {"userId", ""}});
    }
}

TEST_F(ToolTest, IpConfigureNeedsAddressesForPersistentModes) {
    ExpectFails(Gev(std::string("ip configure ") + kMac + " persistent"),
                "ovtool: mode persistent needs address, mask and gateway\n", Exit::kUsage);
    EXPECT_EQ(Gev(std::string("ip configure ") + kMac + " static").status, Exit::kUsage);
}

TEST_F(ToolTest, IpResetKnowsTwoModes) {
    ExpectPrints(Gev(std::string("ip reset ") + kMac), std::string(kMac) + ": reset in mode 1\n");
    ExpectDocument(Gev(std::string("ip reset --json -m 2 ") + kMac), {{"mac", kMac}, {"mode", 2}});
    EXPECT_EQ(Gev(std::string("ip reset -m 3 ") + kMac).status, Exit::kUsage);
}

TEST_F(ToolTest, IpPersistentPrintsWhatTheCameraKeeps) {
    ExpectPrints(Gev("ip persistent"), "0.0.0.0 mask 0.0.0.0 gateway 0.0.0.0\n");
    ExpectPrints(Gev(std::string("ip persistent -c SN0_0") + kAddresses),
                 "10.0.0.5 mask 255.0.0.0 gateway 10.0.0.1\n");
    ExpectDocument(Gev(std::string("ip persistent --json") + kAddresses), kAddressDocument);
}

TEST_F(ToolTest, IpPersistentTakesThreeAddressesOrNone) {
    EXPECT_EQ(Gev("ip persistent 10.0.0.5").status, Exit::kUsage);
    EXPECT_EQ(Gev("ip persistent 10.0.0.5 255.0.0.0").status, Exit::kUsage);
}

TEST_F(ToolTest, IpSaysWhatTheLibraryRefuses) {
    const ToolRun missing = Gev("ip reset 00-00-00-00-00-01");
    EXPECT_TRUE(
        missing.err.starts_with("ovtool: can't reset 00-00-00-00-00-01: Not Found Device\n"
                                "Check cable and power, then look at the cameras: ovtool list\n"
                                "Producers are looked for in " OV_TOOL_GEV ":\n"))
        << missing.err;
    EXPECT_EQ(missing.status, Exit::kNoCamera);
    const ToolRun gateway = Gev("ip persistent 10.0.0.5 255.0.0.0 0.0.0.0");
    ExpectFails(gateway, "ovtool: can't set the persistent address: Invalid GateWay\n");
    ExpectFails(Virtual("ip persistent"),
                "ovtool: can't read the persistent address: Not implemented "
                "GevPersistentIPAddress\n"
                "The camera's features with their limits: ovtool features\n");
}

TEST_F(ToolTest, IpAloneIsNotEnough) {
    EXPECT_EQ(Gev("ip").status, Exit::kUsage);
}

}  // namespace
