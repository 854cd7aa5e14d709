// One command for several cameras.

#include <gmock/gmock.h>

#include <chrono>
#include <fstream>

#include "NetworkTest.h"

namespace {

class NetworkActions : public NetworkTest {
protected:
    /// Two cameras.
    SimulatedCameras SimulateTwo() {
        return Simulate("10.1.0.2/24 --count 2 --account '" + AccountFile() + "'");
    }
    /// Makes them take a frame when they hear an action.
    void SetUpActions(const SimulatedCameras& simulated) {
        for (const size_t camera : {0U, 1U}) {
            Printed("set -c " + simulated.Serial(camera) +
                    " Width=64 Height=64 ActionDeviceKey=1 ActionSelector=1 ActionGroupKey=2"
                    " ActionGroupMask=1 TriggerSource=Action1 TriggerMode=On PtpEnable=true");
        }
    }
    /// A frame of the camera on its way, which waits for its trigger.
    std::unique_ptr<ToolProcess> StartGrab(const SimulatedCameras& simulated, size_t camera) {
        const std::string serial = simulated.Serial(camera);
        std::filesystem::create_directory(folder / serial);
        auto grab =
            StartHost("grab -c " + serial + " --count 1 --timeout 60000 --raw --no-png -o '" +
                      (folder / serial).string() + "'");
        // A program that only looks can't choose the status that AcquisitionStatus has.
        const std::string isWaiting = "read -c " + serial + " 0x1044c 4";
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (Host(isWaiting).out != "0x0001044c  01 00 00 00\n" &&
               std::chrono::steady_clock::now() < end) {
        }
        return grab;
    }
    /// The cameras that answered, by their addresses.
    std::vector<std::string> Act(const std::string& options) {
        const Json document =
            Json::parse(Printed("action --device-key 1 --group-key 2 --json " + options));
        std::vector<std::string> answers;
        for (const Json& answer : document.at("interfaces").at(0).at("answers")) {
            answers.push_back(answer.at("ip").get<std::string>() + " " +
                              answer.at("camera").get<std::string>() + " " +
                              answer.at("text").get<std::string>());
        }
        return answers;
    }
    std::string AccountFile() const { return (folder / "account.json").string(); }
    /// Of both cameras.
    uint64_t Counted(SimulatedCameras& simulated, const char* count) {
        simulated.Process().Signal(SIGTERM);
        simulated.Process().Wait();
        std::ifstream file(AccountFile());
        uint64_t sum = 0;
        const Json account = Json::parse(file);
        for (const Json& camera : account.at("cameras")) {
            sum += camera.at("counts").at(count).get<uint64_t>();
        }
        return sum;
    }
};

TEST_F(NetworkActions, OneCommandStartsAFrameOfEachCamera) {
    SimulatedCameras simulated = SimulateTwo();
    SetUpActions(simulated);
    const auto first = StartGrab(simulated, 0);
    const auto second = StartGrab(simulated, 1);
    EXPECT_THAT(Act(""),
                testing::UnorderedElementsAre("10.1.0.2 " + simulated.Mac(0) + " success",
                                              "10.1.0.3 " + simulated.Mac(1) + " success"));
    for (ToolProcess* const grab : {first.get(), second.get()}) {
        const ToolRun run = grab->Wait();
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_THAT(run.out, testing::HasSubstr("frame 1: 64x64"));
    }
    EXPECT_EQ(Counted(simulated, "actions"), 2U);
}

TEST_F(NetworkActions, ACommandWithATimeStartsThemThen) {
    SimulatedCameras simulated = SimulateTwo();
    SetUpActions(simulated);
    const auto first = StartGrab(simulated, 0);
    const auto second = StartGrab(simulated, 1);
    const auto soon = std::chrono::system_clock::now() + std::chrono::seconds(2);
    const int64_t time = std::chrono::nanoseconds(soon.time_since_epoch()).count();
    EXPECT_EQ(Act("--at " + std::to_string(time)).size(), 2U);
    EXPECT_EQ(first->Wait().status, 0);
    EXPECT_EQ(second->Wait().status, 0);
    EXPECT_GE(std::chrono::system_clock::now(), soon);
    EXPECT_EQ(Counted(simulated, "scheduledActions"), 2U);
}

TEST_F(NetworkActions, NobodyAnswersWithoutAnOwnerUnlessThatIsSwitchedOn) {
    const SimulatedCameras simulated = SimulateTwo();
    SetUpActions(simulated);
    const ToolRun run = Host("action --device-key 1 --group-key 2");
    EXPECT_EQ(run.out, "host0_10.1.0.1: 0 cameras answered\n");
    EXPECT_EQ(run.status, Exit::kTimedOut);
    EXPECT_EQ(
        run.err,
        "ovtool: no camera answered\nDo its keys and its mask fit, and has somebody opened it "
        "or switched on ActionUnconditionalMode?\n");
    Printed("set -c " + simulated.Serial(1) + " ActionUnconditionalMode=On");
    EXPECT_EQ(Printed("action --device-key 1 --group-key 2 --interface host0"),
              "host0_10.1.0.1: 1 camera answered\n  10.1.0.3  " + simulated.Mac(1) + "  success\n");
    EXPECT_EQ(Printed("action --device-key 1 --group-key 2 --wait 0"), "host0_10.1.0.1: sent\n");
    EXPECT_EQ(Printed("action --device-key 1 --group-key 2 --to 10.1.0.3"),
              "host0_10.1.0.1: 1 camera answered\n  10.1.0.3  " + simulated.Mac(1) + "  success\n");
    EXPECT_EQ(Host("action --device-key 1 --group-key 2 --to 10.1.0.2").status, Exit::kTimedOut);
    EXPECT_EQ(Host("action --device-key 1 --group-key 2 --interface host1").status,
              Exit::kNoCamera);
}

TEST_F(NetworkActions, TheStateOfTheSharedClockIsKnown) {
    const SimulatedCameras simulated = SimulateTwo();
    SetUpActions(simulated);
    EXPECT_EQ(Json::parse(Printed("info --json")).at("camera").at("sharedClock"), "Slave");
    Printed("set PtpEnable=false");
    EXPECT_THAT(Printed("info"), testing::HasSubstr("Disabled"));
}

TEST_F(NetworkActions, ChunksAreReadFromACameraOnTheNetwork) {
    const SimulatedCameras simulated = SimulateOne();
    Printed("set Width=64 Height=64 ExposureTime=1234.5");
    const Json frames = Json::parse(Printed("chunks --count 2 --json")).at("frames");
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ(frames.at(1).at("chunks").at("ChunkFrameID"), 1);
    EXPECT_EQ(frames.at(1).at("chunks").at("ChunkExposureTime"), 1234.5);
}

TEST_F(NetworkActions, ChunksWithWrongLengthsEndTheirReading) {
    const SimulatedCameras simulated = Simulate("10.1.0.2/24 --wrong-chunk 100 --seed 3");
    Printed("set Width=64 Height=64");
    const ToolRun run = Host("chunks --count 20");
    EXPECT_EQ(run.status, Exit::kFailed);
    EXPECT_EQ(run.err,
              "ovtool: can't read chunks: The end of the frame's data doesn't say where its chunks "
              "are\n");
}

}  // namespace
