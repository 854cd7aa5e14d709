// Frames over a bad cable: what the tool says of the stream is what the camera did.

#include "StreamRun.h"

namespace {

TEST_F(StreamNetworkTest, EveryFrameIsWholeThoughPacketsAreLost) {
    StreamAll("--lose 1");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Frames("delivered"), kFrames);
    EXPECT_GT(Camera("lostPackets"), 0);
    EXPECT_EQ(Packets("asked"), Camera("askedPackets"));
    EXPECT_EQ(Packets("answered") + Packets("double"), Camera("resentPackets"));
    EXPECT_GE(Packets("answered"), Camera("lostPackets"));
    EXPECT_EQ(Packets("missing"), 0);
    EXPECT_EQ(Remedy(), "");
}

TEST_F(StreamNetworkTest, WithoutResendsFramesAreMarkedAndTheRemedyIsNamed) {
    StreamAll("--lose 1", "StreamResend=0");
    EXPECT_EQ(run.status, Exit::kIncomplete) << run.err;
    EXPECT_EQ(Frames("incomplete") + Frames("lostOnWire"), Camera("damagedBlocks"));
    EXPECT_EQ(Packets("missing"), Camera("lostPackets"));
    EXPECT_EQ(Packets("asked"), 0);
    EXPECT_EQ(Remedy(),
              "Packets were lost on the wire: let them be asked for again (StreamResend).");
}

TEST_F(StreamNetworkTest, DisorderAndRepeatsHarmNoFrame) {
    StreamAll("--reorder 2 --double 1 --delay 0.2 --wrong-leader 5");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Frames("delivered"), kFrames);
    EXPECT_GE(Packets("double"), Camera("doubledPackets"));
    EXPECT_EQ(Packets("ignored"), 0);
    EXPECT_EQ(Remedy(), "");
}

TEST_F(StreamNetworkTest, DamagedPacketsAreCountedOnTheirOwn) {
    StreamAll("--corrupt 0.1 --truncate 0.1", "StreamResend=0");
    EXPECT_LE(Frames("incomplete"), Camera("damagedBlocks"));
    EXPECT_EQ(Frames("lostOnWire"), 0);
    EXPECT_GT(Packets("ignored"), 0);
}

TEST_F(StreamNetworkTest, ASocketThatIsTooSmallIsNamed) {
    rights = "setpriv --bounding-set=-all --inh-caps=-all";
    Stream("", "StreamResend=0 StreamSocketBufferSize=4096");
    EXPECT_GT(Packets("dropped"), 0);
    EXPECT_EQ(Frames("lostOnWire"), 0);
    // Nothing tells the host of frames that were dropped after the last packet that it has.
    EXPECT_GE(FramesOfHost(), kFrames - 1);
    const int64_t lost = Packets("missing") + Frames("lostInSocket") * PacketsOfFrame();
    EXPECT_LE(lost, Packets("dropped"));
    EXPECT_GE(lost, Packets("dropped") - PacketsOfFrame());
    EXPECT_EQ(Remedy(),
              "The socket was full: use larger packets, give the receiving thread a processor "
              "(StreamThreadPriority, StreamThreadProcessor), or raise StreamSocketBufferSize.");
}

}  // namespace
