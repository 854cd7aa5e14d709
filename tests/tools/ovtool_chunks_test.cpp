// What cameras append to their frames.

#include <gmock/gmock.h>

#include <cstdint>

#include "ToolTest.h"

namespace {

class ChunksTest : public ToolTest {
protected:
    ChunksTest() { state = folder.string(); }
    /// A frame of the whole sensor takes its time.
    void SetUp() override { Set("Width=64 Height=32"); }
    Json Frames(const std::string& arguments) const {
        const ToolRun run = Virtual("chunks --json " + arguments);
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.status, 0);
        return Json::parse(run.out)["frames"];
    }
};

TEST_F(ChunksTest, AreFeaturesOfEachFrame) {
    Set("ExposureTime 1234.5");
    Set("Gain 3.5");
    Set("TriggerActivation FallingEdge");
    const Json frames = Frames("-n 3");
    ASSERT_EQ(frames.size(), 3U);
    int64_t before = 0;
    for (const Json& frame : frames) {
        const int64_t timestamp = frame["chunks"]["ChunkTimestamp"];
        EXPECT_GT(timestamp, before);
        before = timestamp;
        EXPECT_EQ(frame["chunks"], Json({{"ChunkFrameID", frame["id"]},
                                         {"ChunkTimestamp", timestamp},
                                         {"ChunkExposureTime", 1234.5},
                                         {"ChunkGain", 3.5},
                                         {"ChunkLineStatusAll", 1}}));
    }
    EXPECT_EQ(frames[0]["id"], 0);
}

TEST_F(ChunksTest, ArePrintedBelowTheirFrame) {
    Set("ChunkSelector Timestamp");
    Set("ExposureTime 100");
    const ToolRun run = Virtual("chunks -c VC000001");
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(run.out, testing::MatchesRegex("frame 0\n"
                                               "  ChunkFrameID = 0\n"
                                               "  ChunkTimestamp = [0-9]+\n"
                                               "  ChunkExposureTime = 100.0\n"
                                               "  ChunkGain = 0.0\n"
                                               "  ChunkLineStatusAll = 0\n"));
}

TEST_F(ChunksTest, LeaveTheChunkModeAsItWas) {
    Frames("");
    ExpectPrints(Virtual("get ChunkModeActive"), "false\n");
    Set("ChunkModeActive true");
    Frames("");
    ExpectPrints(Virtual("get ChunkModeActive"), "true\n");
}

TEST_F(ChunksTest, NeedACameraThatIsThere) {
    ExpectFails(Virtual("chunks -c 9"),
                "ovtool: there is no camera 9; 2 were found\n" + SearchedVirtual(),
                Exit::kNoCamera);
}

TEST_F(ChunksTest, ThatACameraDoesNotSendAreMissed) {
    const ToolRun run = Gev("chunks -t 1");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, Exit::kTimedOut);
    EXPECT_TRUE(run.err.starts_with("ovtool: the camera sent no frame for 1 ms\n")) << run.err;
}

}  // namespace
