// The start, its attempts, and the stop; the number of buffers; the callback.

#include <condition_variable>
#include <functional>
#include <mutex>

#include "support/AcquisitionTest.h"

namespace {

// The number of buffers.

TEST_F(AcquisitionTest, NoBuffersAreRefusedBeforeTheState) {
    Start();
    ExpectFailure(OVSetAcqusitionBufferNumber(camera, 0), OV_STATUS_INVALID_PARAMETER,
                  "The input parameter invalid");
    ExpectFailure(OVGetAcqusitionBufferNumber(camera, nullptr), OV_STATUS_INVALID_PARAMETER,
                  "The input parameter invalid");
}

TEST_F(AcquisitionTest, BuffersAreFiveUntilTheyAreSet) {
    uint64_t number = 0;
    EXPECT_OV_OK(OVGetAcqusitionBufferNumber(camera, &number));
    EXPECT_EQ(number, 5U);
    EXPECT_OV_OK(OVSetAcqusitionBufferNumber(camera, 8));
    Start();
    EXPECT_EQ(producer.OpenCount("Buffer"), 8);
    Stop();
    ASSERT_OV_OK(OVCloseDevice(camera));
    camera = Open();
    EXPECT_OV_OK(OVGetAcqusitionBufferNumber(camera, &number));
    EXPECT_EQ(number, 5U);
}

// Start and stop.

TEST_F(AcquisitionTest, AStopOfAStoppedStreamTellsTheCameraAlone) {
    EXPECT_OV_OK(OVStreamOff(camera));
    EXPECT_EQ(producer.CommandCount(0, 0, "AcquisitionStop"), 1);
    EXPECT_EQ(producer.CallCount("DSStopAcquisition"), 0U);
}

TEST_F(AcquisitionTest, ParametersAreLockedBetweenStartAndStop) {
    EXPECT_EQ(ParamsLocked(), 0);
    Start();
    EXPECT_EQ(ParamsLocked(), 1);
    EXPECT_EQ(producer.CommandCount(0, 0, "AcquisitionStart"), 1);
    Stop();
    EXPECT_EQ(ParamsLocked(), 0);
}

TEST_F(AcquisitionTest, CommandsStartAndStopLikeTheCalls) {
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_AcquisitionStart));
    EXPECT_EQ(producer.OpenCount("Acquisition"), 1);
    EXPECT_EQ(ParamsLocked(), 1);
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_AcquisitionStop));
    EXPECT_EQ(producer.OpenCount("Acquisition"), 0);
    EXPECT_EQ(ParamsLocked(), 0);
}

TEST_F(AcquisitionTest, ASecondStartCommandLeavesTheStreamRunning) {
    Start();
    producer.Trigger(0, 0, 1);
    Borrow();
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_AcquisitionStart));
    EXPECT_EQ(producer.CommandCount(0, 0, "AcquisitionStart"), 2);
    EXPECT_EQ(producer.CallCount("DSStartAcquisition"), 1U);
    EXPECT_EQ(producer.OpenCount("Buffer"), 5);
    producer.Trigger(0, 0, 5);
    for (int i = 0; i < 5; ++i) {
        EXPECT_NE(Borrow(), nullptr) << "the frame on loan went back";
    }
}

class ReadOnlyCameraTest : public ApiTest {
protected:
    void SetUp() override {
        Init();
        ASSERT_EQ(Update(), 1U);
        OV_OPEN_PARAM param{};
        param.pszContent = "1";
        param.openMode = OV_OPEN_INDEX;
        param.accessMode = OV_ACCESS_READONLY;
        ASSERT_OV_OK(OVOpenDevice(&param, &camera));
    }
    OV_DEV_HANDLE camera = nullptr;
};

TEST_F(ReadOnlyCameraTest, NeitherStartsNorStops) {
    constexpr const char* kText = "Can't start acquisition on read-only mode";
    ExpectFailure(OVStreamOn(camera), OV_STATUS_INVALID_ACCESS, kText);
    ExpectFailure(OVStreamOff(camera), OV_STATUS_INVALID_ACCESS, kText);
}

TEST_F(AcquisitionTest, AStartHealsWithTheThirdAttempt) {
    producer.FailCall("DSStartAcquisition", 1, -1010);
    producer.FailCall("DSStartAcquisition", 2, -1010);
    EXPECT_OV_OK(OVStreamOn(camera));
    EXPECT_EQ(producer.CallCount("DSStartAcquisition"), 3U);
    EXPECT_EQ(producer.OpenCount("Buffer"), 5);
    EXPECT_EQ(ParamsLocked(), 1);
}

TEST_F(AcquisitionTest, AStopOfALostCameraStopsTheHost) {
    Start();
    producer.LoseDevice(0, 0);
    EXPECT_EQ(OVStreamOff(camera), OV_STATUS_OFFLINE);
    EXPECT_EQ(producer.OpenCount("Acquisition"), 0);
    EXPECT_EQ(producer.OpenCount("Buffer"), 0);
}

// From the callback.

struct Refusals {
    OV_DEV_HANDLE camera = nullptr;
    OV_STATUS statuses[4] = {};
    std::string texts[4];
    std::mutex mutex;
    std::condition_variable done;
    bool isDone = false;

    static void OnFrame(OV_FRAME_CALLBACK_PARAM* frame) {
        auto& self = *static_cast<Refusals*>(frame->pUserParam);
        const std::function<OV_STATUS()> calls[] = {
            [&] { return OVStreamOff(self.camera); },
            [&] { return OVSendCommand(self.camera, OV_FEATURE_AcquisitionStop); },
            [&] { return OVCloseDevice(self.camera); }, [] { return OVCloseLib(); }};
        const std::lock_guard lock(self.mutex);
        for (size_t i = 0; i < 4; ++i) {
            self.statuses[i] = calls[i]();
            self.texts[i] = LastError::Get().message;
        }
        self.isDone = true;
        self.done.notify_all();
    }
};

TEST_F(AcquisitionTest, TheCallbackMayNotEndWhatCallsIt) {
    Refusals refusals;
    refusals.camera = camera;
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &refusals, &Refusals::OnFrame));
    Start();
    producer.Trigger(0, 0, 1);
    std::unique_lock lock(refusals.mutex);
    ASSERT_TRUE(refusals.done.wait_for(lock, std::chrono::milliseconds(kFrameTimeOut),
                                       [&] { return refusals.isDone; }));
    for (const OV_STATUS status : refusals.statuses) {
        EXPECT_EQ(status, OV_STATUS_INVALID_CALL);
    }
    EXPECT_EQ(refusals.texts[0], "Can't stop capture in capture callback");
    EXPECT_EQ(refusals.texts[1], "Can't stop capture in capture callback");
    lock.unlock();
    Stop();
}

}  // namespace
