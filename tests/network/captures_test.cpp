// What goes over the wire, read by a program that knows the protocols and nothing of this one.

#include <algorithm>
#include <csignal>
#include <fstream>

#include "NetworkTest.h"

namespace {

class NetworkCaptures : public NetworkTest {
protected:
    void SetUp() override {
        NetworkTest::SetUp();
        if (!IsSkipped() && !HasFatalFailure() && !HasDissector()) {
            ASSERT_FALSE(IsRequired()) << "tshark isn't installed";
            GTEST_SKIP() << "needs tshark";
        }
    }

    /// Both ends' packets from here to the capture's end.
    std::unique_ptr<ToolProcess> StartCapture() {
        auto capture = std::make_unique<ToolProcess>(
            "exec dumpcap -i host0 -w '" + File() + "' 2>&1", folder / "capture");
        for (std::string line = capture->ReadLine(); !line.starts_with("File: ");
             line = capture->ReadLine()) {
            if (line.empty()) {
                throw std::runtime_error("The capture hasn't started");
            }
        }
        return capture;
    }
    static void End(ToolProcess& capture) {
        capture.Signal(SIGINT);
        EXPECT_EQ(capture.Wait().status, 0);
    }
    /// The packets that fit a filter, one a line.
    /// @param more  options of the program
    std::string Packets(const std::string& filter, const std::string& more = "") {
        return ToolProcess("exec tshark -r '" + File() + "' -Y '" + filter + "' " + more,
                           folder / "dissection")
            .Wait()
            .out;
    }

private:
    static bool HasDissector() { return std::system("command -v tshark >/dev/null") == 0; }
    std::string File() const { return (folder / "packets.pcapng").string(); }
};

TEST_F(NetworkCaptures, EveryPacketOfBothEndsIsWellFormed) {
    const SimulatedCameras simulated = SimulateOne();
    const auto capture = StartCapture();
    Printed("ip list");
    Printed("ip force " + simulated.Mac() + " 10.1.0.9 255.255.255.0 10.1.0.1");
    Printed("set Width=640 Height=480 DeviceUserID=captured");
    Printed("grab --count 3 --raw --no-png --output '" + folder.string() + "'");
    Printed(
        "set ActionDeviceKey=287454020 ActionGroupKey=2 ActionGroupMask=1 "
        "ActionUnconditionalMode=On");
    Printed("action --device-key 0x11223344 --group-key 2");
    Printed("action --device-key 0x11223344 --group-key 2 --at 1");
    End(*capture);
    EXPECT_EQ(Packets("_ws.malformed"), "");
    // Discovery, force IP, both kinds of reads and writes, actions, and their answers.
    for (const char* const command :
         {"0x0002", "0x0003", "0x0004", "0x0005", "0x0080", "0x0081", "0x0082", "0x0083", "0x0084",
          "0x0085", "0x0086", "0x0087", "0x0100", "0x0101"}) {
        EXPECT_NE(
            Packets(std::string("gvcp.cmd.command == ") + command + " || gvcp.ack == " + command),
            "")
            << command;
    }
    EXPECT_NE(Packets("gvsp.format == 1"), "") << "a leader";
    EXPECT_NE(Packets("gvsp.format == 2"), "") << "a trailer";
    EXPECT_NE(Packets("gvsp.format == 3"), "") << "payload";
    EXPECT_NE(Packets("gvcp.cmd.forceip.ip == 10.1.0.9"), "");
}

TEST_F(NetworkCaptures, EveryMessageWithEventsIsWellFormed) {
    const SimulatedCameras simulated = SimulateOne();
    const auto capture = StartCapture();
    Printed("events --event ExposureEnd --count 3");
    End(*capture);
    // The dissector knows the protocol by the camera's port for commands, which messages don't use.
    const std::string ports =
        Packets("ip.src == 10.1.0.2 && udp.srcport != 3956 && udp.length == 40",
                "-T fields -e udp.dstport");
    const std::string port = ports.substr(0, ports.find('\n'));
    ASSERT_NE(port, "");
    const std::string known = "-d udp.port==" + port + ",gvcp";
    EXPECT_EQ(Packets("_ws.malformed", known), "");
    EXPECT_EQ(Packets("gvcp.cmd.command == 0x00c2", known + " -T fields -e gvcp.cmd.eventdata.data")
                  .substr(0, 3 * 17),
              "0000000000000000\n0000000000000001\n0000000000000002\n");
    EXPECT_NE(Packets("gvcp.ack == 0x00c3 && gvcp.cmd.status == 0", known), "");
}

TEST_F(NetworkCaptures, OnlyPacketsThatWereDamagedOnPurposeAreMalformed) {
    const std::string file = (folder / "account.json").string();
    SimulatedCameras simulated = Simulate(
        "10.1.0.2/24 --seed 3 --lose 1 --reorder 2 --double 1 --delay 1 --truncate 1"
        " --corrupt 1 --wrong-leader 10 --jump-back 10 --account '" +
        file + "'");
    const auto capture = StartCapture();
    Host(
        "stream --seconds 1 --set Width=640 Height=480 AcquisitionMode=MultiFrame"
        " AcquisitionFrameCount=20");
    End(*capture);
    simulated.Process().Signal(SIGTERM);
    simulated.Process().Wait();
    std::ifstream account(file);
    const Json counts = Json::parse(account)["cameras"][0]["counts"];
    const std::string malformed = Packets("_ws.malformed");
    EXPECT_LE(
        std::count(malformed.begin(), malformed.end(), '\n'),
        counts["truncatedPackets"].get<int64_t>() + counts["corruptedPackets"].get<int64_t>());
    EXPECT_EQ(Packets("gvcp && _ws.malformed"), "");
    EXPECT_NE(Packets("gvcp.cmd.command == 0x0040"), "") << "a request to send again";
    EXPECT_NE(Packets("gvsp.status == 0x0100"), "") << "its answer";
}

}  // namespace
