// What the system says of adapters, however they were configured.

#include "gige/net/Adapters.h"

#include "NetworkTest.h"

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

}  // namespace
