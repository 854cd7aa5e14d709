// The start, its attempts, and the stop; the number of buffers; the callback.

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "GenTL/GenTL.h"
#include "support/AcquisitionTest.h"
#include "support/StartableCamera.h"

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

class StartTest : public AcquisitionTest {
protected:
    void FailWrites(const std::vector<unsigned>& calls) {
        for (const unsigned call : calls) {
            producer.FailCall("GCWritePort", call, GenTL::GC_ERR_IO);
        }
    }
    /// The camera's lock is open, and nothing of the stream is left.
    void ExpectStopped() {
        EXPECT_EQ(ParamsLocked(), 0);
        for (const char* const kind : {"Buffer", "Event", "Acquisition"}) {
            EXPECT_EQ(producer.OpenCount(kind), 0) << kind;
        }
    }
};

using StopTest = StartTest;

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

/// Calls of the producer that fail with -1010.
struct PlannedFailures {
    const char* name;
    const char* function;
    std::vector<unsigned> calls;
};

class StartThatHeals : public AcquisitionTest,
                       public testing::WithParamInterface<PlannedFailures> {};

TEST_P(StartThatHeals, SucceedsWithTheThirdAttempt) {
    for (const unsigned call : GetParam().calls) {
        producer.FailCall(GetParam().function, call, GenTL::GC_ERR_IO);
    }
    EXPECT_OV_OK(OVStreamOn(camera));
    EXPECT_EQ(producer.OpenCount("Acquisition"), 1);
    EXPECT_EQ(producer.OpenCount("Event"), 1);
    EXPECT_EQ(producer.OpenCount("Buffer"), 5);
    EXPECT_EQ(producer.CommandCount(0, 0, "AcquisitionStart"), 1);
    EXPECT_EQ(ParamsLocked(), 1);
    BorrowNew(5);
}

// An attempt writes twice, the stream's lock and the command, and its undo once;
// the camera's lock goes before them all.
INSTANTIATE_TEST_SUITE_P(Steps, StartThatHeals,
                         testing::Values(PlannedFailures{"Event", "GCRegisterEvent", {1, 2}},
                                         PlannedFailures{"Announce", "DSAnnounceBuffer", {1, 2}},
                                         PlannedFailures{"Flush", "DSFlushQueue", {1, 2}},
                                         PlannedFailures{"Stream", "DSStartAcquisition", {1, 2}},
                                         PlannedFailures{"Command", "GCWritePort", {3, 6}}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(StartTest, EndsWithTheFailureOfTheThirdAttempt) {
    producer.FailCall("DSStartAcquisition", 1, GenTL::GC_ERR_INVALID_BUFFER);
    producer.FailCall("DSStartAcquisition", 2, GenTL::GC_ERR_TIMEOUT);
    producer.FailCall("DSStartAcquisition", 3, GenTL::GC_ERR_IO);
    ExpectFailure(OVStreamOn(camera), GenTL::GC_ERR_IO, "Planned failure of DSStartAcquisition");
    EXPECT_EQ(producer.CallCount("DSStartAcquisition"), 3U);
    ExpectStopped();
    Start();
    BorrowNew(5);
}

TEST_F(StartTest, StopsTheStreamAfterEachCommandThatFails) {
    FailWrites({3, 6, 9});
    ExpectFailure(OVStreamOn(camera), GenTL::GC_ERR_IO, "Planned failure of GCWritePort");
    EXPECT_EQ(producer.SuccessCount("DSStartAcquisition"), 3U);
    EXPECT_EQ(producer.SuccessCount("DSStopAcquisition"), 3U);
    ExpectStopped();
    Start();
}

TEST_F(StartTest, GivesFramesOnLoanBackWhenTheSecondFails) {
    Start();
    BorrowNew(3);
    OV_FRAME_BUFFER* const frame = frames[0];
    FailWrites({2, 5, 8});
    EXPECT_EQ(OVStreamOn(camera), GenTL::GC_ERR_IO);
    EXPECT_EQ(producer.SuccessCount("DSQueueBuffer"), 3U);
    ExpectStopped();
    ExpectFailure(OVQBuf(camera, frame), OV_STATUS_INVALID_CALL,
                  "Can't call QBuf before start capture");
    ASSERT_OV_OK(OVSetAcqusitionBufferNumber(camera, 1));
    Start();
    BorrowNew(1);
}

TEST_F(StartTest, OfALostCameraIsTriedNoFurtherThanItsLock) {
    producer.LoseDevice(0, 0);
    EXPECT_EQ(OVStreamOn(camera), OV_STATUS_OFFLINE);
    EXPECT_EQ(producer.CallCount("GCRegisterEvent"), 0U);
}

class PlainCameraTest : public StartTest {
protected:
    void SetUp() override {}
    void Open(const std::string& more) {
        const std::string text = DescribeStartable(more);
        producer.SetDescription("Remote", "Plain.xml", text.data(), text.size());
        OpenCameraTest::SetUp();
    }
};

TEST_F(PlainCameraTest, StartsAndStopsWithoutALock) {
    Open("");
    Start();
    BorrowNew(5);
    Stop();
    ExpectStopped();
}

TEST_F(PlainCameraTest, StartsWithAChunkModeThatCannotBeRead) {
    Open(DescribeRegister("TLParamsLocked", "0x418", "Device") +
         DescribeInteger("ChunkModeActive", 1));
    Start();
    BorrowNew(1);
    Stop();
}

// The stop.

TEST_F(StopTest, OfALostCameraStopsTheHost) {
    Start();
    producer.LoseDevice(0, 0);
    EXPECT_EQ(OVStreamOff(camera), OV_STATUS_OFFLINE);
    EXPECT_EQ(producer.OpenCount("Acquisition"), 0);
    EXPECT_EQ(producer.OpenCount("Buffer"), 0);
}

/// What the camera says to a stop and to the release of its lock, 0 for nothing
/// wrong, and what becomes of it.
struct StopFailure {
    const char* name;
    int32_t ofTheStop;
    int32_t ofTheLock;
    OV_STATUS status;
};

class StopThatFails : public StopTest, public testing::WithParamInterface<StopFailure> {};

TEST_P(StopThatFails, TellsTheFirstFailureOnceTheHostHasStopped) {
    Start();
    BorrowNew(2);
    const int32_t failures[] = {GetParam().ofTheStop, 0, GetParam().ofTheLock};
    for (unsigned write = 0; write < 3; ++write) {
        if (failures[write] != 0) {
            producer.FailAfterCall("GCWritePort", write + 1, failures[write]);
        }
    }
    EXPECT_EQ(OVStreamOff(camera), GetParam().status);
    EXPECT_NE(LastError::Get().text.find("Planned failure of GCWritePort"), std::string::npos);
    EXPECT_EQ(producer.SuccessCount("DSQueueBuffer"), 2U);
    ExpectStopped();
    Start();
    BorrowNew(5);
}

INSTANTIATE_TEST_SUITE_P(
    Failures, StopThatFails,
    testing::Values(StopFailure{"Stop", GenTL::GC_ERR_IO, 0, OV_STATUS_ERROR},
                    StopFailure{"Lock", 0, GenTL::GC_ERR_IO, OV_STATUS_ERROR},
                    StopFailure{"StopOffline", GenTL::GC_ERR_CUSTOM_ID, 0, OV_STATUS_OFFLINE},
                    StopFailure{"LockOffline", 0, GenTL::GC_ERR_CUSTOM_ID, OV_STATUS_OFFLINE},
                    StopFailure{"BothOfflineFirst", GenTL::GC_ERR_CUSTOM_ID, GenTL::GC_ERR_IO,
                                OV_STATUS_OFFLINE},
                    StopFailure{"BothOfflineLast", GenTL::GC_ERR_IO, GenTL::GC_ERR_CUSTOM_ID,
                                OV_STATUS_ERROR}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(StopTest, EndsTheWaitOfAnotherThread) {
    Start();
    // A producer forgets a kill that comes before the wait.
    producer.SkipCall("EventKill", 1);
    std::thread puller([this] {
        data.pImgBuf = pixels;
        EXPECT_EQ(OVGetImage(camera, &data, 60000), GenTL::GC_ERR_ABORT);
        ExpectFailure(OVGetImage(camera, &data, 60000), OV_STATUS_INVALID_CALL,
                      "Can't call GetImage before start capture");
    });
    EXPECT_EQ(producer.WaitForCalls("EventGetData", 1, kFrameTimeOut), 0);
    Stop();
    puller.join();
}

TEST_F(StopTest, EndsAWaitThoughTheProducerRefusesTheKill) {
    Start();
    producer.FailCall("EventKill", 0, GenTL::GC_ERR_NOT_IMPLEMENTED);
    std::thread puller([this] {
        data.pImgBuf = pixels;
        // The wait is ended, or finds the event gone when the stop was faster.
        const OV_STATUS status = OVGetImage(camera, &data, 60000);
        EXPECT_TRUE(status == GenTL::GC_ERR_ABORT || status == GenTL::GC_ERR_INVALID_HANDLE)
            << status;
    });
    EXPECT_EQ(producer.WaitForCalls("EventGetData", 1, kFrameTimeOut), 0);
    Stop();
    puller.join();
    ExpectStopped();
}

TEST_F(StopTest, EndsTheWaitsBeforeTheCameraIsTold) {
    Start();
    const uint64_t writes = producer.CallCount("GCWritePort");
    producer.BlockCall("GCWritePort");
    std::thread stopper([this] { Stop(); });
    EXPECT_EQ(producer.WaitForCalls("GCWritePort", writes + 1, kFrameTimeOut), 0);
    data.pImgBuf = pixels;
    ExpectFailure(OVGetImage(camera, &data, 60000), OV_STATUS_INVALID_CALL,
                  "Can't call GetImage before start capture");
    producer.ReleaseCall("GCWritePort");
    stopper.join();
}

TEST_F(StopTest, MayMeetAThreadThatBorrowsFrames) {
    producer.SetFreeRunning(0, 0, 1);
    for (int round = 0; round < 50; ++round) {
        Start();
        std::thread borrower([this] {
            OV_FRAME_BUFFER* frame = nullptr;
            while (OVDQBuf(camera, &frame, kFrameTimeOut) == OV_STATUS_SUCCESS &&
                   OVQBuf(camera, frame) == OV_STATUS_SUCCESS) {
            }
        });
        const auto calls = producer.CallCount("DSQueueBuffer") + 3;
        EXPECT_EQ(producer.WaitForCalls("DSQueueBuffer", calls, kFrameTimeOut), 0);
        Stop();
        borrower.join();
        ExpectStopped();
    }
}

TEST_F(StopTest, IsOpenToAThreadThatHasTheIdentityOfTheEndedOne) {
    RegisterCallback();
    Start();
    Stop();
    std::thread([this] {
        EXPECT_OV_OK(OVStreamOff(camera));
        EXPECT_OV_OK(OVCloseDevice(camera));
    }).join();
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
    EXPECT_EQ(refusals.texts[2], "Can't close device in capture callback");
    EXPECT_EQ(refusals.texts[3], "Can't close lib in capture callback");
    lock.unlock();
    Stop();
}

}  // namespace
