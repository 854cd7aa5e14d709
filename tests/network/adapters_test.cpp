// What the system says of adapters, however they were configured.

#include "gige/net/Adapters.h"

#include <algorithm>

#include "NetworkTest.h"
#include "gige/net/Routes.h"

namespace {

/// The broadcast address of host0 with an address of the given configuration.
std::string BroadcastWith(const std::string& configuration) {
    Shell("ip address flush dev host0 && ip address add " + configuration + " dev host0");
    for (const OvGige::Adapter& adapter : OvGige::AllAdapters()) {
        if (adapter.name == "host0") {
            return TextOf(adapter.broadcast);
        }
    }
    return "no adapter";
}

TEST_F(NetworkTest, AnAdaptersBroadcastAddressIsThatOfItsConfigurationOrOfItsSubnet) {
    EXPECT_EQ(BroadcastWith("10.1.0.1/24"), "10.1.0.255");
    EXPECT_EQ(BroadcastWith("10.1.0.1/16"), "10.1.255.255");
    EXPECT_EQ(BroadcastWith("10.1.0.1/24 broadcast 10.1.0.127"), "10.1.0.127");
    EXPECT_EQ(BroadcastWith("10.1.0.1/30"), "10.1.0.3");
    EXPECT_EQ(BroadcastWith("10.1.0.0/31"), "0.0.0.0");
    EXPECT_EQ(BroadcastWith("10.1.0.1/32"), "0.0.0.0");
}

const OvGige::Adapter& Named(const std::vector<OvGige::Adapter>& adapters,
                             const std::string& name) {
    return *std::find_if(adapters.begin(), adapters.end(),
                         [&](const OvGige::Adapter& adapter) { return adapter.name == name; });
}

TEST_F(NetworkTest, AnAddressIsReachedByItsSubnetsAdapterAndByThatOfItsRoute) {
    Shell("ip link add other0 type veth && ip address add 10.2.0.1/24 dev other0");
    Shell("ip link set other0 up && ip route add 192.168.7.0/24 dev other0");
    const std::vector<OvGige::Adapter> adapters = OvGige::AllAdapters();
    const OvGige::Adapter& near = Named(adapters, "host0");
    const OvGige::Adapter& other = Named(adapters, "other0");
    const auto address = [](const char* text) { return OvGige::ParseIpv4(text).value(); };
    EXPECT_TRUE(LeadsTo(near, address("10.1.0.9")));
    EXPECT_FALSE(LeadsTo(other, address("10.1.0.9")));
    EXPECT_FALSE(LeadsTo(near, address("192.168.7.9")));
    EXPECT_TRUE(LeadsTo(other, address("192.168.7.9")));
    EXPECT_FALSE(LeadsTo(near, address("172.16.0.1"))) << "no route";
    EXPECT_FALSE(LeadsTo(other, address("172.16.0.1")));
    Shell("ip link delete other0");
}

TEST_F(NetworkTest, TheLogNamesTheFilterThatHidesCamerasOfOtherSubnets) {
    const SimulatedCameras simulated = Simulate("192.168.77.5/24");
    const std::string log = (folder / "log").string();
    host = "OV_LOG=Producer:warning OV_LOG_FILE='" + log + "'";
    Shell("echo 0 >/proc/sys/net/ipv4/conf/all/rp_filter");
    Shell("echo 0 >/proc/sys/net/ipv4/conf/host0/rp_filter");
    EXPECT_EQ(Json::parse(Printed("ip list --json")).at("cameras").size(), 1U);
    Shell("! grep rp_filter '" + log + "'");
    Shell("echo 1 >/proc/sys/net/ipv4/conf/host0/rp_filter");
    Host("ip list");
    Shell("grep -q 'aren.t heard by host0: .*net.ipv4.conf.host0.rp_filter is 1' '" + log + "'");
}

}  // namespace
