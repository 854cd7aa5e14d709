// What the application sees when cameras, adapters and owners go and come.

#include <csignal>

#include "NetworkTest.h"

namespace {

class NetworkFailures : public NetworkTest {
protected:
    /// A tool that takes frames without end, of which the first has come.
    std::unique_ptr<ToolProcess> StartGrabbing() {
        Printed("set Width=640 Height=480");
        auto grab =
            StartHost("grab --count 1000000 --raw --no-png --output '" + folder.string() + "'");
        EXPECT_TRUE(grab->ReadLine().starts_with("frame "));
        return grab;
    }
    /// The frame that was under way may be what fails.
    static void ExpectLoss(ToolProcess& tool) {
        const ToolRun run = tool.Wait();
        if (run.status == Exit::kIncomplete) {
            EXPECT_NE(run.err.find(" is incomplete\n"), std::string::npos) << run.err;
        } else {
            EXPECT_EQ(run.status, Exit::kLost);
            EXPECT_TRUE(run.err.starts_with("ovtool: the camera is lost\n")) << run.err;
        }
    }
    size_t ListedCameras(const std::string& options = {}) {
        const ToolRun run = Host("list --json " + options);
        return Json::parse(run.out)["cameras"].size();
    }
};

TEST_F(NetworkFailures, ACameraThatFallsSilentIsLostAndFoundAgain) {
    {
        SimulatedCameras simulated = SimulateOne();
        const auto grab = StartGrabbing();
        simulated.Process().Signal(SIGKILL);
        ExpectLoss(*grab);
    }
    EXPECT_EQ(ListedCameras(), 0U);
    // The process that had the address has left it to the adapter.
    Shell("ip -n cameras address flush dev cam0");
    const SimulatedCameras simulated = SimulateOne();
    EXPECT_EQ(ListedCameras(), 1U);
    EXPECT_EQ(Printed("get Width"), "2448\n");
}

TEST_F(NetworkFailures, AnAdapterThatGoesDownLosesItsCamerasUntilItComesUp) {
    const SimulatedCameras simulated = SimulateOne();
    const auto grab = StartGrabbing();
    Shell("ip link set host0 down");
    ExpectLoss(*grab);
    EXPECT_EQ(ListedCameras(), 0U);
    Shell("ip link set host0 up");
    AwaitCable();
    // The camera's end looks for the host's only once a second.
    EXPECT_EQ(ListedCameras("--timeout 3000"), 1U);
}

TEST_F(NetworkFailures, AnOwnerThatWasKilledIsSucceededAtOnce) {
    const SimulatedCameras simulated = SimulateOne();
    const auto owner = StartGrabbing();
    owner->Signal(SIGKILL);
    EXPECT_EQ(owner->Wait().status, 128 + SIGKILL);
    EXPECT_EQ(Printed("set Gain=3"), "Gain = 3\n");
}

TEST_F(NetworkFailures, WithoutAnAdapterTheListIsEmpty) {
    Shell("ip link delete host0");
    const ToolRun run = Host("list");
    EXPECT_EQ(run.out, "0 cameras\n");
    EXPECT_EQ(run.status, Exit::kNoCamera);
    EXPECT_NE(run.err.find("OvGVTL.cti: loaded"), std::string::npos) << run.err;
}

TEST_F(NetworkFailures, AToolWithoutAnyRightFindsAndOpensCameras) {
    const SimulatedCameras simulated = SimulateOne();
    rights = "setpriv --bounding-set=-all --inh-caps=-all";
    EXPECT_EQ(ListedCameras(), 1U);
    EXPECT_EQ(Printed("set Width=640"), "Width = 640\n");
    EXPECT_EQ(Host("grab --count 3 --raw --no-png --output '" + folder.string() + "'").status, 0);
}

TEST_F(NetworkFailures, ACameraIsFoundAmongTwentyAdapters) {
    for (int i = 1; i < 20; ++i) {
        const std::string number = std::to_string(i);
        Shell("ip link add more" + number + " type veth && ip address add 10.2." + number +
              ".1/24 dev more" + number + " && ip link set more" + number + " up");
    }
    const SimulatedCameras simulated = SimulateOne();
    EXPECT_EQ(ListedCameras(), 1U);
    EXPECT_EQ(Printed("get Width"), "2448\n");
}

TEST_F(NetworkFailures, AnAdapterThatIsntNamedIsLeftAlone) {
    const SimulatedCameras simulated = SimulateOne();
    for (const char* const other : {"none", "lo", "10.9.9.9"}) {
        host = std::string("OV_GIGE_ADAPTERS=") + other;
        EXPECT_EQ(ListedCameras(), 0U) << other;
    }
    for (const char* const named : {"host0", "10.1.0.1", "lo,host0"}) {
        host = std::string("OV_GIGE_ADAPTERS=") + named;
        EXPECT_EQ(ListedCameras(), 1U) << named;
    }
}

}  // namespace
