// Ctrl-C and a request to end, while the tool has something to finish or to put back.

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <string>

#include "ToolLog.h"
#include "ToolTest.h"

namespace {

class InterruptTest : public ToolTest, public ::testing::WithParamInterface<int> {
protected:
    InterruptTest() { state = (folder / "state").string(); }
    void SetUp() override { Set("Width=64 Height=32"); }

    /// The tool, once it has printed something.
    std::unique_ptr<ToolProcess> StartAndSee(const std::string& arguments,
                                             const std::string& line) const {
        auto run = Start(OV_TOOL_VIRTUAL, arguments);
        EXPECT_EQ(run->ReadLine(), line);
        return run;
    }
    static ToolRun Interrupted(const std::unique_ptr<ToolProcess>& run) {
        run->Signal(GetParam());
        ToolRun ended = run->Wait();
        EXPECT_EQ(ended.err, "ovtool: interrupted\n");
        EXPECT_EQ(ended.status, Exit::kInterrupted);
        return ended;
    }
};

INSTANTIATE_TEST_SUITE_P(By, InterruptTest, ::testing::Values(SIGINT, SIGTERM),
                         [](const auto& chosen) {
                             return chosen.param == SIGINT ? "CtrlC" : "Term";
                         });

TEST_P(InterruptTest, EndsAGrabWithWholeFilesAndASummary) {
    const std::string file = folder.string() + "/frame-0001.raw";
    const auto run = StartAndSee("grab -n 1000000 --raw --no-png -o " + folder.string(),
                                 "frame 0: 64x32, 2048 bytes -> " + file + "\n");
    const ToolRun ended = Interrupted(run);
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".raw") {
            EXPECT_EQ(std::filesystem::file_size(entry.path()), 2048U);
            ++files;
        }
    }
    EXPECT_THAT(ended.out, testing::EndsWith(std::to_string(files) +
                                             (files == 1 ? " frame" : " frames") + ", 0 lost\n"));
}

TEST_P(InterruptTest, EndsAStreamWithItsSummary) {
    ToolLog log(folder / "log");
    const auto run = Start(OV_TOOL_VIRTUAL, "stream -s 100000");
    ASSERT_TRUE(log.Await("DSQueueBuffer: done", 2));
    log.Drain();
    const ToolRun ended = Interrupted(run);
    EXPECT_THAT(ended.out, testing::MatchesRegex("[0-9]+ frames in [0-9.]+ s, [0-9.]+ a second, "
                                                 "[0-9]+ lost, 0 incomplete\n"));
}

TEST_P(InterruptTest, LeavesTheChunkModeAsItWas) {
    const ToolRun ended = Interrupted(StartAndSee("chunks -n 1000000", "frame 0\n"));
    EXPECT_THAT(ended.out, testing::StartsWith("  ChunkFrameID = 0\n"));
    EXPECT_EQ(Virtual("get ChunkModeActive").out, "false\n");
}

TEST_P(InterruptTest, LeavesTheNotificationOfEventsAsItWas) {
    const auto run = Start(OV_TOOL_VIRTUAL, "events -s 100000");
    EXPECT_THAT(run->ReadLine(), testing::StartsWith("ExposureEnd 0x9001 at "));
    Interrupted(run);
    EXPECT_EQ(Virtual("get EventNotification").out, "Off\n");
}

}  // namespace
