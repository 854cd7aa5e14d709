// Chunks of frames that came damaged.

#include "GenTL/GenTL.h"
#include "GigeCameraTest.h"
#include "cameras/FrameChunks.h"

namespace {

using OvSimulator::Count;

class GigeChunkFaults : public GigeCameraTest, public testing::WithParamInterface<ChunkWay> {
protected:
    static constexpr int64_t kWidth = 88, kHeight = 66, kDataPerPacket = 1464;
    // The end of a packet comes between a chunk's value and its identifier, so that a packet can
    // be missing from the midst of the chunks.
    static_assert(kWidth * kHeight + 48 == 4 * kDataPerPacket);

    /// Opens a camera that appends chunks to frames of seven packets.
    void OpenWithChunks(const OvSimulator::StreamFaults& stream) {
        OvSimulator::Faults faults;
        faults.stream = stream;
        OpenFaulty(faults);
        EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, kWidth));
        EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Height, kHeight));
        SetStream("StreamFindPacketSize", 0);
        SwitchChunksOn(camera);
        WaitForTriggers(camera);
    }
    /// Takes frames, of which none may be missing, however faulty it is.
    std::vector<ChunkedFrame> Take(size_t count) const {
        std::vector<ChunkedFrame> frames = GetParam().take(camera, count);
        EXPECT_EQ(frames.size(), count);
        for (size_t i = 0; i < frames.size(); ++i) {
            EXPECT_EQ(frames[i].frame.id, Supply().FirstFrame() + i);
        }
        return frames;
    }
    static bool IsWhole(const ChunkedFrame& taken) {
        return taken.chunks == ChunksOf(taken.frame, Supply().FirstFrame());
    }
    /// What is read is the frame's own, or a failure.
    static void ExpectNothingWrong(const ChunkedFrame& taken) {
        const ChunkValues own = ChunksOf(taken.frame, Supply().FirstFrame());
        for (const auto& [name, value] : taken.chunks) {
            if (!value.starts_with("Range error reading")) {
                EXPECT_EQ(value, own.at(name)) << name << " of frame " << taken.frame.id;
            }
        }
    }
};
INSTANTIATE_TEST_SUITE_P(Ways, GigeChunkFaults, testing::ValuesIn(kChunkWays),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(GigeChunkFaults, LeaveFramesAsTheyAreAndShowNothingWrong) {
    constexpr size_t kFrames = 60;
    OpenWithChunks({.wrongChunk = 0.6});
    size_t refused = 0;
    size_t whole = 0;
    for (const ChunkedFrame& taken : Take(kFrames)) {
        EXPECT_EQ(taken.frame.status, OV_FRAME_STATUS_SUCCESS);
        ExpectNothingWrong(taken);
        whole += IsWhole(taken) ? 1 : 0;
        if (taken.attached != OV_STATUS_SUCCESS) {
            EXPECT_EQ(taken.attached, GenTL::GC_ERR_PARSING_CHUNK_DATA);
            EXPECT_EQ(taken.refusal,
                      "The end of the frame's data doesn't say where its chunks are");
            EXPECT_EQ(taken.chunks, ChunkValues());
            ++refused;
        }
    }
    EXPECT_GT(refused, 0U);
    EXPECT_GT(whole, 0U);
    EXPECT_LT(refused + whole, kFrames) << "none has some of its chunks";
    EXPECT_GE(Counted(Count::WrongChunks), kFrames - whole);
}

TEST_P(GigeChunkFaults, LeaveIncompleteFramesWhatCameAfterTheirGaps) {
    constexpr size_t kFrames = 24;
    constexpr int64_t kRetention = 20000;
    OpenWithChunks({.lost = 0.15});
    SetStream("StreamResend", 0);
    SetStream("StreamFrameRetention", kRetention);
    size_t incomplete = 0;
    size_t whole = 0;
    for (const ChunkedFrame& taken : Take(kFrames)) {
        EXPECT_OV_OK(taken.attached);
        ExpectNothingWrong(taken);
        incomplete += taken.frame.status == OV_FRAME_STATUS_INCOMPLETE ? 1 : 0;
        whole += IsWhole(taken) ? 1 : 0;
    }
    EXPECT_GT(incomplete, 0U);
    EXPECT_GT(whole, kFrames - incomplete) << "none is saved";
}

TEST_P(GigeChunkFaults, AreMendedByPacketsThatComeAgain) {
    OpenWithChunks({.lost = 0.03});
    for (const ChunkedFrame& taken : Take(20)) {
        EXPECT_EQ(taken.frame.status, OV_FRAME_STATUS_SUCCESS);
        EXPECT_TRUE(IsWhole(taken)) << "frame " << taken.frame.id;
    }
    EXPECT_GT(Counted(Count::LostPackets), 0U);
    EXPECT_GT(StreamNumber("StreamPacketAnsweredCount"), 0);
}

}  // namespace
