// Two processes and one camera.

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <string>

#include "ToolTest.h"

namespace {

class SharingTest : public ToolTest {
protected:
    SharingTest() { state = (folder / "state").string(); }
    void SetUp() override { Set("Width=64 Height=32 ExposureTime=500"); }

    /// Another process that has control, and frames that flow.
    std::unique_ptr<ToolProcess> Hold() const {
        auto holder = Start(OV_TOOL_VIRTUAL, "chunks -n 1000000");
        EXPECT_EQ(holder->ReadLine(), "frame 0\n");
        return holder;
    }
    static void ExpectRefused(const ToolRun& run) {
        EXPECT_EQ(run.out, "");
        EXPECT_THAT(run.err, testing::MatchesRegex(
                                 "ovtool: can't open camera 1: The camera is in use by ovtool "
                                 ".process [0-9]+.\nClose that program, or only look at the "
                                 "camera: ovtool get, features, read\n"));
        EXPECT_EQ(run.status, Exit::kAccessDenied);
    }
};

TEST_F(SharingTest, ACameraInUseCanBeLookedAt) {
    const auto holder = Hold();
    ExpectPrints(Virtual("get ExposureTime ChunkModeActive"), "500\ntrue\n");
    ExpectPrints(Virtual("read 0x40 4"), "0x00000040  56 69 72 74\n");
    const ToolRun features = Virtual("features");
    EXPECT_EQ(features.status, 0) << features.err;
    EXPECT_THAT(features.out, testing::HasSubstr("\nExposureTime                             float"
                                                 "    rw 500  (20 to 1e+06 by 0.5 us)\n"));
    EXPECT_EQ(Virtual("info").status, 0);
}

TEST_F(SharingTest, ACameraInUseIsRefusedToWhoChangesIt) {
    const auto holder = Hold();
    const std::string save = "save " + (folder / "file").string();
    for (const std::string& command :
         {std::string("set Gain 1"), save, std::string("stream"), std::string("grab"),
          std::string("chunks"), std::string("events"), std::string("write 0x310 80020000"),
          std::string("get 'Gain[GainSelector=AnalogAll]'")}) {
        SCOPED_TRACE(command);
        ExpectRefused(Virtual(command));
    }
    ExpectPrints(Virtual("set -c 2 Gain 1"), "Gain = 1\n");
}

TEST_F(SharingTest, ACameraInUseIsListedAsReadOnly) {
    const auto access = [this] {
        return Json::parse(Virtual("list --json").out)["cameras"][0]["access"];
    };
    EXPECT_EQ(access(), "read and write");
    const auto holder = Hold();
    EXPECT_EQ(access(), "read only");
}

TEST_F(SharingTest, ACameraIsFreeAgainHoweverItsProgramEnds) {
    {
        const auto holder = Hold();
        holder->Signal(SIGKILL);
        EXPECT_EQ(holder->Wait().status, 128 + SIGKILL);
    }
    Set("Gain=1");
}

TEST_F(SharingTest, TheStateSurvivesBothProcesses) {
    const auto holder = Hold();
    ExpectPrints(Virtual("get ChunkModeActive ExposureTime"), "true\n500\n");
    holder->Signal(SIGINT);
    EXPECT_EQ(holder->Wait().status, Exit::kInterrupted);
    ExpectPrints(Virtual("get ChunkModeActive ExposureTime Width"), "false\n500\n64\n");
}

TEST_F(SharingTest, CamerasWithoutAStateAreEachProcesssOwn) {
    state = "off";
    const auto holder = Hold();
    ExpectPrints(Virtual("set Gain 1"), "Gain = 1\n");
}

}  // namespace
