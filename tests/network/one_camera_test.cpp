// One camera on the network, as a user of the tool meets it.

#include "NetworkTest.h"
#include "gige/device/CameraConnection.h"
#include "gige/net/UdpLink.h"

namespace {

std::string CameraLine(const SimulatedCameras& simulated, const std::string& address) {
    return "1  " + simulated.Mac() + "  Simulated-5M-Color  serial " + simulated.Serial() + "  " +
           address + "\n";
}

TEST_F(NetworkTest, ListFindsACameraOfTheAdaptersSubnet) {
    const SimulatedCameras simulated = SimulateOne();
    const Json listed = Json::parse(Printed("list --json"))["cameras"];
    ASSERT_EQ(listed.size(), 1U);
    EXPECT_EQ(listed[0]["serialNumber"], simulated.Serial());
    EXPECT_EQ(listed[0]["class"], "GigE Vision");
}

TEST_F(NetworkTest, IpListShowsTheAddressesOfBothEnds) {
    const SimulatedCameras simulated = SimulateOne();
    const std::string out = Printed("ip list");
    EXPECT_TRUE(
        out.starts_with(CameraLine(simulated, "10.1.0.2 mask 255.255.255.0 gateway 0.0.0.0")))
        << out;
    EXPECT_NE(out.find("10.1.0.1 mask 255.255.255.0"), std::string::npos) << out;
}

TEST_F(NetworkTest, ACameraOfAForeignSubnetIsFoundOnlyWithItsAddresses) {
    const SimulatedCameras simulated = Simulate("192.168.77.5/24");
    EXPECT_EQ(Host("list").status, Exit::kNoCamera);
    EXPECT_TRUE(Printed("ip list").starts_with(
        CameraLine(simulated, "192.168.77.5 mask 255.255.255.0 gateway 0.0.0.0")));
}

TEST_F(NetworkTest, IpForceBringsACameraIntoTheAdaptersSubnet) {
    const SimulatedCameras simulated = Simulate("192.168.77.5/24");
    EXPECT_EQ(
        Printed("ip force " + simulated.Mac() + " 10.1.0.9 255.255.255.0 10.1.0.1"),
        simulated.Mac() + ": 10.1.0.9 mask 255.255.255.0 gateway 10.1.0.1 until its next start\n");
    EXPECT_EQ(Json::parse(Printed("list --json"))["cameras"].size(), 1U);
    EXPECT_EQ(Printed("get Width"), "2448\n");
}

TEST_F(NetworkTest, APersistentAddressIsTakenWhenTheConfigurationStartsAgain) {
    const SimulatedCameras simulated = SimulateOne();
    EXPECT_EQ(
        Printed("ip configure " + simulated.Mac() + " persistent 10.1.0.7 255.255.255.0 10.1.0.1"),
        simulated.Mac() + ": persistent, 10.1.0.7 mask 255.255.255.0 gateway 10.1.0.1\n");
    EXPECT_EQ(Printed("ip persistent"), "10.1.0.7 mask 255.255.255.0 gateway 10.1.0.1\n");
    Printed("ip reset " + simulated.Mac());
    EXPECT_TRUE(Printed("ip list").starts_with(
        CameraLine(simulated, "10.1.0.7 mask 255.255.255.0 gateway 10.1.0.1")));
}

TEST_F(NetworkTest, FeaturesRegistersAndSettingsAreReadAndWritten) {
    const SimulatedCameras simulated = SimulateOne();
    EXPECT_EQ(Printed("set Width=640 Height=480"), "Width = 640\nHeight = 480\n");
    EXPECT_NE(Printed("features").find("Width"), std::string::npos);
    const std::string file = "'" + (folder / "settings").string() + "'";
    Printed("save " + file);
    Printed("set Width=320");
    Printed("load " + file);
    EXPECT_EQ(Printed("get Width Height"), "640\n480\n");
    EXPECT_NE(Printed("info").find(simulated.Serial()), std::string::npos);
    // The heartbeat's time-out, in milliseconds: a register that every camera has.
    EXPECT_EQ(Printed("read 0x938 4"), "0x00000938  00 00 0b b8\n");
    Printed("write 0x938 000007d0");
    EXPECT_EQ(Printed("read 0x938 4"), "0x00000938  00 00 07 d0\n");
}

TEST_F(NetworkTest, ASecondOwnerIsRefusedAndHearsOfTheFirst) {
    const SimulatedCameras simulated = SimulateOne();
    OvGige::UdpSocket socket;
    socket.Bind({.ip = {}, .port = 0});
    const uint16_t port = socket.Local().port;
    const OvGige::Endpoint camera{.ip = *OvGige::ParseIpv4("10.1.0.2"),
                                  .port = OvGige::kControlPort};
    OvGige::CameraConnection owner(std::make_unique<OvGige::UdpLink>(std::move(socket), camera),
                                   {});
    const ToolRun second = Host("set Width=640");
    EXPECT_EQ(second.status, Exit::kAccessDenied);
    EXPECT_NE(second.err.find("10.1.0.1:" + std::to_string(port)), std::string::npos) << second.err;
    EXPECT_EQ(Printed("get Width"), "2448\n");
    owner.Close();
    EXPECT_EQ(Printed("set Width=640"), "Width = 640\n");
}

}  // namespace
