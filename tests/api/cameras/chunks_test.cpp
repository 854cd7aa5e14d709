// What a camera appends to its frames, as an application reads it.

#include "CameraTest.h"
#include "FrameChunks.h"
#include "OvINodes.h"
#include "support/RunRounds.h"

namespace {

/// Begins with a camera that appends chunks and waits for triggers.
class CameraChunks : public CameraTest {
protected:
    void SetUp() override {
        CameraTest::SetUp();
        SwitchChunksOn(camera);
        WaitForTriggers(camera);
    }
    static void ExpectChunksOf(const ChunkedFrame& taken) {
        SCOPED_TRACE("frame " + std::to_string(taken.frame.id));
        EXPECT_EQ(taken.frame.status, OV_FRAME_STATUS_SUCCESS);
        EXPECT_EQ(taken.attached, OV_STATUS_SUCCESS) << taken.refusal;
        EXPECT_EQ(taken.chunks, ChunksOf(taken.frame, Supply().FirstFrame()));
    }
    /// Lets a camera take a frame, and attaches it.
    static TakenFrame Attach(OV_DEV_HANDLE handle) {
        OV_FRAME_BUFFER* frame = nullptr;
        EXPECT_OV_OK(OVSendCommand(handle, OV_FEATURE_TriggerSoftware));
        EXPECT_OV_OK(OVDQBuf(handle, &frame, kFrameTimeOut));
        EXPECT_OV_OK(OvNodeAttachFrame(handle, frame));
        return frame == nullptr ? TakenFrame() : KeepFrame(frame->nStatus, *frame);
    }
    void Leave(const char* chunk) const {
        SetEntry(camera, OV_FEATURE_ChunkSelector, chunk);
        EXPECT_OV_OK(OVSetBool(camera, OV_FEATURE_ChunkEnable, false));
    }
};

class CameraChunksWay : public CameraChunks, public testing::WithParamInterface<ChunkWay> {};
INSTANTIATE_TEST_SUITE_P(Ways, CameraChunksWay, testing::ValuesIn(kChunkWays),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(CameraChunksWay, AreThoseOfTheirFrame) {
    const std::vector<ChunkedFrame> frames = GetParam().take(camera, 12);
    ASSERT_EQ(frames.size(), 12U);
    for (const ChunkedFrame& frame : frames) {
        ExpectChunksOf(frame);
    }
    EXPECT_EQ(ReadChunks(camera), ChunkValues()) << "a feature without a frame";
}

TEST_P(CameraChunksWay, FollowTheSizeOfTheImage) {
    constexpr double kShare = 0.25;
    constexpr int64_t kSizes[] = {64, 256, 640, 128};
    RunRounds(
        [this, &kSizes](unsigned round) {
            ASSERT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, kSizes[round % std::size(kSizes)]));
            ASSERT_OV_OK(OVSetAcqusitionBufferNumber(camera, 2 + round % 5));
            for (const ChunkedFrame& frame : GetParam().take(camera, 2)) {
                EXPECT_EQ(frame.frame.content.size(),
                          static_cast<size_t>(GetInt(camera, OV_FEATURE_PayloadSize)));
                ExpectChunksOf(frame);
            }
        },
        kShare);
}

TEST_F(CameraChunks, LeaveThePictureAsItIs) {
    const ChunkedFrame with = kChunkWays[1].take(camera, 1).at(0);
    ASSERT_OV_OK(OVSetBool(camera, OV_FEATURE_ChunkModeActive, false));
    const ChunkedFrame without = kChunkWays[1].take(camera, 1).at(0);
    EXPECT_EQ(with.frame.width, kWidth);
    EXPECT_EQ(with.frame.height, kHeight);
    EXPECT_EQ(with.frame.format, without.frame.format);
    EXPECT_EQ(with.frame.id, without.frame.id);
    ASSERT_GT(with.frame.content.size(), without.frame.content.size());
    const std::vector<uint8_t> picture(
        with.frame.content.begin(),
        with.frame.content.begin() + static_cast<ptrdiff_t>(without.frame.content.size()));
    EXPECT_EQ(picture, without.frame.content);
    EXPECT_OV_OK(without.attached) << "a frame without chunks";
    EXPECT_EQ(without.chunks, ChunkValues());
}

TEST_F(CameraChunks, AreInCopiesOfFramesToo) {
    ASSERT_OV_OK(OVStreamOn(camera));
    ASSERT_OV_OK(OVSendCommand(camera, OV_FEATURE_TriggerSoftware));
    std::vector<uint8_t> memory(static_cast<size_t>(GetInt(camera, OV_FEATURE_PayloadSize)));
    OV_FRAME_DATA frame{};
    frame.pImgBuf = memory.data();
    ASSERT_OV_OK(OVGetImage(camera, &frame, kFrameTimeOut));
    EXPECT_EQ(static_cast<size_t>(frame.nImgSize), memory.size());
    EXPECT_EQ(frame.nWidth, kWidth);
    // The last chunk's value, identifier and length.
    const std::vector<uint8_t> end = {0, 0, 0, 0, 12, 0, 0, 5, 0, 0, 0, 4};
    EXPECT_EQ(std::vector<uint8_t>(memory.end() - static_cast<ptrdiff_t>(end.size()), memory.end()),
              end);
}

TEST_F(CameraChunks, AreThoseThatWereChosen) {
    constexpr int64_t kTimestampChunk = 16;
    const int64_t before = GetInt(camera, OV_FEATURE_PayloadSize);
    Leave("Timestamp");
    EXPECT_EQ(GetInt(camera, OV_FEATURE_PayloadSize), before - kTimestampChunk);
    const ChunkedFrame taken = kChunkWays[1].take(camera, 1).at(0);
    ChunkValues expected = ChunksOf(taken.frame, Supply().FirstFrame());
    expected.erase("ChunkTimestamp");
    EXPECT_EQ(taken.chunks, expected);
    SetEntry(camera, OV_FEATURE_ChunkSelector, "Image");
    EXPECT_EQ(OVSetBool(camera, OV_FEATURE_ChunkEnable, false), OV_STATUS_INVALID_ACCESS)
        << "frames without a picture";
}

TEST_F(CameraChunks, AreNotChosenAnewWhileFramesFlow) {
    ASSERT_OV_OK(OVStreamOn(camera));
    EXPECT_EQ(OVSetBool(camera, OV_FEATURE_ChunkModeActive, false), OV_STATUS_INVALID_ACCESS);
    SetEntry(camera, OV_FEATURE_ChunkSelector, "Gain");
    EXPECT_EQ(OVSetBool(camera, OV_FEATURE_ChunkEnable, false), OV_STATUS_INVALID_ACCESS);
    const TakenFrame frame = Attach(camera);
    EXPECT_EQ(ReadChunks(camera), ChunksOf(frame, Supply().FirstFrame()));
    EXPECT_OV_OK(OVStreamOff(camera));
    EXPECT_EQ(ReadChunks(camera), ChunkValues());
    EXPECT_OV_OK(OVSetBool(camera, OV_FEATURE_ChunkModeActive, false));
}

TEST_F(CameraChunks, AreEachCamerasOwn) {
    const OV_DEV_HANDLE other = OpenQuick(2);
    SwitchChunksOn(other);
    WaitForTriggers(other);
    ASSERT_OV_OK(OVSetFloat(other, OV_FEATURE_Gain, 6));
    ASSERT_OV_OK(OVStreamOn(camera));
    ASSERT_OV_OK(OVStreamOn(other));
    const TakenFrame frame = Attach(camera);
    Attach(other);
    const TakenFrame second = Attach(other);
    EXPECT_EQ(ReadChunks(camera), ChunksOf(frame, Supply().FirstFrame()));
    ChunkValues ofOther = ChunksOf(second, Supply().FirstFrame());
    ofOther["ChunkGain"] = "6";
    EXPECT_EQ(ReadChunks(other), ofOther);
}

}  // namespace
