// Frames of cameras, in each of the ways to take them.

#include <map>

#include "CameraTest.h"
#include "FrameTaking.h"
#include "support/FrameCounter.h"
#include "support/RunRounds.h"

namespace {

class CameraAcquisition : public CameraTest {
protected:
    static void ExpectInOrder(const std::vector<TakenFrame>& frames, int64_t width,
                              int64_t height) {
        for (size_t i = 0; i < frames.size(); ++i) {
            SCOPED_TRACE("frame " + std::to_string(i));
            EXPECT_EQ(frames[i].status, OV_FRAME_STATUS_SUCCESS);
            EXPECT_EQ(frames[i].width, width);
            EXPECT_EQ(frames[i].height, height);
            EXPECT_EQ(frames[i].offsetX, 0);
            EXPECT_EQ(frames[i].content.size(), static_cast<size_t>(width * height));
            if (i != 0) {
                EXPECT_GT(frames[i].id, frames[i - 1].id);
                EXPECT_GT(frames[i].timestamp, frames[i - 1].timestamp);
            }
        }
    }
    OV_FRAME_BUFFER* Borrow(uint32_t timeOut = kFrameTimeOut) const {
        OV_FRAME_BUFFER* frame = nullptr;
        EXPECT_OV_OK(OVDQBuf(camera, &frame, timeOut));
        return frame;
    }
    void ExpectNone() const {
        OV_FRAME_BUFFER* frame = nullptr;
        EXPECT_EQ(OVDQBuf(camera, &frame, 0), OV_STATUS_TIMEOUT);
        EXPECT_EQ(frame, nullptr);
    }
};

class CameraAcquisitionWay : public CameraAcquisition,
                             public testing::WithParamInterface<TakingWay> {};
INSTANTIATE_TEST_SUITE_P(Ways, CameraAcquisitionWay, testing::ValuesIn(kTakingWays),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(CameraAcquisitionWay, DeliversWholeFramesInOrder) {
    constexpr size_t kFrames = 20;
    const std::vector<TakenFrame> frames = GetParam().take(camera, kFrames);
    EXPECT_GE(frames.size(), kFrames);
    ExpectInOrder(frames, kWidth, kHeight);
}

TEST_P(CameraAcquisitionWay, DeliversThePicturesThatAllOthersDo) {
    std::map<uint64_t, std::vector<uint8_t>> pictures;
    for (const TakenFrame& frame : kTakingWays[0].take(camera, 5)) {
        pictures[frame.id] = frame.content;
    }
    unsigned compared = 0;
    for (const TakenFrame& frame : GetParam().take(camera, 5)) {
        if (pictures.contains(frame.id)) {
            EXPECT_EQ(frame.content, pictures[frame.id]) << "frame " << frame.id;
            ++compared;
        }
    }
    EXPECT_GE(compared, 1U);
}

TEST_P(CameraAcquisitionWay, StartsAnewAfterEachStop) {
    constexpr double kShare = 0.25;
    RunRounds([this](unsigned) { ExpectInOrder(GetParam().take(camera, 1), kWidth, kHeight); },
              kShare);
}

TEST_P(CameraAcquisitionWay, FollowsTheSizeOfTheImage) {
    constexpr double kShare = 0.25;
    constexpr int64_t kSizes[] = {64, 256, 640, 128};
    RunRounds(
        [this, &kSizes](unsigned round) {
            const int64_t width = kSizes[round % std::size(kSizes)];
            const int64_t height = kSizes[(round + 1) % std::size(kSizes)] / 2;
            ASSERT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, width));
            ASSERT_OV_OK(OVSetInt(camera, OV_FEATURE_Height, height));
            ASSERT_OV_OK(OVSetAcqusitionBufferNumber(camera, 2 + round % 5));
            ExpectInOrder(GetParam().take(camera, 2), width, height);
        },
        kShare);
}

TEST_F(CameraAcquisition, GivesAFrameToEachTrigger) {
    WaitForTriggers(camera);
    ASSERT_OV_OK(OVStreamOn(camera));
    ExpectNone();
    uint64_t last = 0;
    for (int i = 0; i < 5; ++i) {
        ASSERT_OV_OK(OVSendCommand(camera, OV_FEATURE_TriggerSoftware));
        const OV_FRAME_BUFFER* const frame = Borrow();
        ASSERT_NE(frame, nullptr);
        EXPECT_EQ(frame->nStatus, OV_FRAME_STATUS_SUCCESS);
        EXPECT_TRUE(i == 0 || frame->nFrameID == last + 1);
        last = frame->nFrameID;
    }
    ExpectNone();
    EXPECT_OV_OK(OVStreamOff(camera));
}

TEST_F(CameraAcquisition, TimesOutWithoutAFrame) {
    WaitForTriggers(camera);
    ASSERT_OV_OK(OVStreamOn(camera));
    std::vector<uint8_t> pixels(size_t{kWidth} * kHeight);
    OV_FRAME_DATA data{};
    data.pImgBuf = pixels.data();
    EXPECT_EQ(OVGetImage(camera, &data, 1), OV_STATUS_TIMEOUT);
    ExpectNone();
    OV_FRAME_BUFFER* frames[8] = {};
    uint32_t count = 1;
    EXPECT_EQ(OVDQAllBufs(camera, frames, 8, &count, 1), OV_STATUS_TIMEOUT);
    EXPECT_EQ(count, 0U);
    ASSERT_OV_OK(OVSendCommand(camera, OV_FEATURE_TriggerSoftware));
    EXPECT_OV_OK(OVGetImage(camera, &data, kFrameTimeOut)) << "a time-out changes nothing";
}

TEST_F(CameraAcquisition, NeedsFreeBuffers) {
    ASSERT_OV_OK(OVSetAcqusitionBufferNumber(camera, 8));
    ASSERT_OV_OK(OVStreamOn(camera));
    for (int i = 0; i < 8; ++i) {
        ASSERT_NE(Borrow(), nullptr);
    }
    ExpectNone();
    ASSERT_OV_OK(OVQAllBufs(camera));
    for (int i = 0; i < 16; ++i) {
        ASSERT_OV_OK(OVQBuf(camera, Borrow()));
    }
}

TEST_F(CameraAcquisition, LeavesFramesOnLoanAlone) {
    ASSERT_OV_OK(OVStreamOn(camera));
    OV_FRAME_BUFFER* const loan = Borrow();
    ASSERT_NE(loan, nullptr);
    const auto* const content = static_cast<const uint8_t*>(loan->pImgBuf);
    const std::vector<uint8_t> before(content, content + loan->nImgSize);
    EXPECT_OV_OK(OVFlushQueue(camera));
    for (int i = 0; i < 12; ++i) {
        ASSERT_OV_OK(OVQBuf(camera, Borrow()));
    }
    EXPECT_EQ(std::memcmp(content, before.data(), before.size()), 0);
    EXPECT_OV_OK(OVQBuf(camera, loan));
}

TEST_F(CameraAcquisition, IsOfTwoCamerasAtOnce) {
    constexpr uint64_t kFrames = 30;
    const OV_DEV_HANDLE other = OpenQuick(2);
    FrameCounter counters[2];
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &counters[0], &FrameCounter::OnFrame));
    ASSERT_OV_OK(OVRegisterCaptureCallback(other, &counters[1], &FrameCounter::OnFrame));
    ASSERT_OV_OK(OVStreamOn(camera));
    ASSERT_OV_OK(OVStreamOn(other));
    counters[0].WaitFor(kFrames);
    counters[1].WaitFor(kFrames);
    EXPECT_OV_OK(OVStreamOff(camera));
    const uint64_t stopped = counters[0].GetCount();
    counters[1].WaitForMore(5);
    EXPECT_EQ(counters[0].GetCount(), stopped);
    EXPECT_OV_OK(OVStreamOff(other));
}

TEST_F(CameraAcquisition, EndsWithTheLibrary) {
    FrameCounter counter;
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &counter, &FrameCounter::OnFrame));
    ASSERT_OV_OK(OVStreamOn(camera));
    counter.WaitFor(2);
    EXPECT_OV_OK(OVCloseLib());
    const uint64_t ended = counter.GetCount();
    ASSERT_OV_OK(OVInitLib());
    AwaitCameras(kCameras);
    camera = OpenQuick();
    ExpectInOrder(kTakingWays[1].take(camera, 3), kWidth, kHeight);
    EXPECT_EQ(counter.GetCount(), ended);
}

TEST_F(CameraAcquisition, GoesOnAfterASecondStart) {
    ASSERT_OV_OK(OVStreamOn(camera));
    ASSERT_NE(Borrow(), nullptr);
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_AcquisitionStart));
    ASSERT_OV_OK(OVQAllBufs(camera));
    for (int i = 0; i < 8; ++i) {
        ASSERT_OV_OK(OVQBuf(camera, Borrow()));
    }
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_AcquisitionStop));
    OV_FRAME_BUFFER* frame = nullptr;
    ExpectFailure(OVDQBuf(camera, &frame, 0), OV_STATUS_INVALID_CALL,
                  "Can't call DQBuf before start capture");
}

}  // namespace
