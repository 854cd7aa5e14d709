// Which call is legal when, and what becomes of frames, records and failures.

#include <condition_variable>
#include <functional>
#include <mutex>

#include "support/ApiTest.h"
#include "support/TestFrame.h"

namespace {

constexpr uint32_t kTimeOut = 10000;

void Ignore(OV_FRAME_CALLBACK_PARAM*) {}

class AcquisitionTest : public OpenCameraTest {
protected:
    void Start() { ASSERT_OV_OK(OVStreamOn(camera)); }
    void Stop() { ASSERT_OV_OK(OVStreamOff(camera)); }
    OV_FRAME_BUFFER* Borrow() {
        OV_FRAME_BUFFER* frame = nullptr;
        EXPECT_OV_OK(OVDQBuf(camera, &frame, kTimeOut));
        return frame;
    }

    uint8_t pixels[kTestFrameSize] = {};
    OV_FRAME_DATA data{};
    OV_FRAME_BUFFER* frames[8] = {};
    uint32_t count = 0;
};

/// A call with what it says in the two states that exclude it.
struct Legality {
    const char* name;
    OV_STATUS (*call)(OV_DEV_HANDLE camera);
    const char* withCallback;
    const char* notStarted;
    const char* started;
};

const Legality kLegality[] = {
    {"GetImage",
     [](OV_DEV_HANDLE camera) {
         uint8_t byte = 0;
         OV_FRAME_DATA data{};
         data.pImgBuf = &byte;
         return OVGetImage(camera, &data, 0);
     },
     "Can't call GetImage after register capture callback",
     "Can't call GetImage before start capture", nullptr},
    {"DQBuf",
     [](OV_DEV_HANDLE camera) {
         OV_FRAME_BUFFER* frame = nullptr;
         return OVDQBuf(camera, &frame, 0);
     },
     "Can't call DQBuf after register capture callback", "Can't call DQBuf before start capture",
     nullptr},
    {"QBuf",
     [](OV_DEV_HANDLE camera) {
         OV_FRAME_BUFFER frame{};
         return OVQBuf(camera, &frame);
     },
     "Can't call QBuf after register capture callback", "Can't call QBuf before start capture",
     nullptr},
    {"DQAllBufs",
     [](OV_DEV_HANDLE camera) {
         OV_FRAME_BUFFER* frame = nullptr;
         uint32_t count = 0;
         return OVDQAllBufs(camera, &frame, 1, &count, 0);
     },
     "Can't call DQAllBufs after register capture callback",
     "Can't call DQAllBufs before start capture", nullptr},
    {"QAllBufs", [](OV_DEV_HANDLE camera) { return OVQAllBufs(camera); },
     "Can't call QAllBufs after register capture callback",
     "Can't call QAllBufs before start capture", nullptr},
    {"RegisterCaptureCallback",
     [](OV_DEV_HANDLE camera) { return OVRegisterCaptureCallback(camera, nullptr, &Ignore); },
     nullptr, nullptr, "Can't register capture callback after start capture"},
    {"UnregisterCaptureCallback",
     [](OV_DEV_HANDLE camera) { return OVUnregisterCaptureCallback(camera); }, nullptr, nullptr,
     "Can't unregister capture callback after start capture"},
    {"SetAcqusitionBufferNumber",
     [](OV_DEV_HANDLE camera) { return OVSetAcqusitionBufferNumber(camera, 7); }, nullptr, nullptr,
     "Can't set acqusition buffer number  when acqusition"},
};

class AcquisitionLegality : public AcquisitionTest, public testing::WithParamInterface<Legality> {
protected:
    void ExpectRefused(const char* message) {
        const OV_STATUS status = GetParam().call(camera);
        if (message != nullptr) {
            ExpectFailure(status, OV_STATUS_INVALID_CALL, message);
        } else {
            EXPECT_NE(status, OV_STATUS_INVALID_CALL);
        }
    }
};

TEST_P(AcquisitionLegality, BeforeTheStart) {
    ExpectRefused(GetParam().notStarted);
}

TEST_P(AcquisitionLegality, AfterTheStart) {
    Start();
    ExpectRefused(GetParam().started);
}

TEST_P(AcquisitionLegality, WithACallbackBeforeTheStart) {
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, nullptr, &Ignore));
    ExpectRefused(GetParam().withCallback);
}

TEST_P(AcquisitionLegality, WithACallbackAfterTheStart) {
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, nullptr, &Ignore));
    Start();
    ExpectRefused(GetParam().withCallback != nullptr ? GetParam().withCallback
                                                     : GetParam().started);
}

TEST_P(AcquisitionLegality, WithoutAHandle) {
    ExpectFailure(GetParam().call(nullptr), OV_STATUS_INVALID_HANDLE, "Invalid device handle");
}

INSTANTIATE_TEST_SUITE_P(All, AcquisitionLegality, testing::ValuesIn(kLegality),
                         [](const auto& test) { return std::string(test.param.name); });

// Arguments.

TEST_F(AcquisitionTest, GetImageWantsMemoryBeforeItLooksAtTheState) {
    ExpectFailure(OVGetImage(camera, nullptr, 0), OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
    ExpectFailure(OVGetImage(camera, &data, 0), OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
}

TEST_F(AcquisitionTest, DQBufWantsAPointerEvenWithoutAHandle) {
    ExpectFailure(OVDQBuf(nullptr, nullptr, 0), OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
}

TEST_F(AcquisitionTest, DQBufClearsThePointerEvenWithoutAHandle) {
    OV_FRAME_BUFFER frame{};
    OV_FRAME_BUFFER* pointer = &frame;
    EXPECT_EQ(OVDQBuf(nullptr, &pointer, 0), OV_STATUS_INVALID_HANDLE);
    EXPECT_EQ(pointer, nullptr);
}

TEST_F(AcquisitionTest, DQAllBufsClearsArrayAndCountEvenWithoutAHandle) {
    OV_FRAME_BUFFER frame{};
    frames[0] = frames[1] = frames[2] = &frame;
    count = 9;
    ExpectFailure(OVDQAllBufs(nullptr, nullptr, 2, &count, 0), OV_STATUS_INVALID_PARAMETER,
                  "NULL Pointer");
    ExpectFailure(OVDQAllBufs(nullptr, frames, 2, nullptr, 0), OV_STATUS_INVALID_PARAMETER,
                  "NULL Pointer");
    EXPECT_EQ(OVDQAllBufs(nullptr, frames, 2, &count, 0), OV_STATUS_INVALID_HANDLE);
    EXPECT_EQ(frames[0], nullptr);
    EXPECT_EQ(frames[1], nullptr);
    EXPECT_EQ(frames[2], &frame) << "beyond the size that was told";
    EXPECT_EQ(count, 0U);
}

TEST_F(AcquisitionTest, ACallbackMayNotBeNull) {
    ExpectFailure(OVRegisterCaptureCallback(camera, nullptr, nullptr), OV_STATUS_INVALID_PARAMETER,
                  "NULL Pointer");
}

TEST_F(AcquisitionTest, CallbacksComeAndGoWithoutComplaint) {
    EXPECT_OV_OK(OVUnregisterCaptureCallback(camera));
    EXPECT_OV_OK(OVRegisterCaptureCallback(camera, nullptr, &Ignore));
    EXPECT_OV_OK(OVRegisterCaptureCallback(camera, nullptr, &Ignore));
    EXPECT_OV_OK(OVUnregisterCaptureCallback(camera));
    EXPECT_OV_OK(OVUnregisterCaptureCallback(camera));
}

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
    ASSERT_TRUE(refusals.done.wait_for(lock, std::chrono::milliseconds(kTimeOut),
                                       [&] { return refusals.isDone; }));
    for (const OV_STATUS status : refusals.statuses) {
        EXPECT_EQ(status, OV_STATUS_INVALID_CALL);
    }
    EXPECT_EQ(refusals.texts[0], "Can't stop capture in capture callback");
    EXPECT_EQ(refusals.texts[1], "Can't stop capture in capture callback");
    lock.unlock();
    Stop();
}

// Frames on loan.

TEST_F(AcquisitionTest, OnlyAFrameOnLoanGoesBack) {
    Start();
    OV_FRAME_BUFFER stranger{};
    constexpr const char* kText = "Invalid OV_FRAME_BUFFER* parameter";
    ExpectFailure(OVQBuf(camera, &stranger), OV_STATUS_INVALID_PARAMETER, kText);
    producer.Trigger(0, 0, 1);
    OV_FRAME_BUFFER* const frame = Borrow();
    EXPECT_OV_OK(OVQBuf(camera, frame));
    ExpectFailure(OVQBuf(camera, frame), OV_STATUS_INVALID_PARAMETER, kText);
}

TEST_F(AcquisitionTest, NoFrameComesWithoutAFreeBuffer) {
    Start();
    producer.SetFreeRunning(0, 0, 1);
    for (int i = 0; i < 5; ++i) {
        ASSERT_NE(Borrow(), nullptr);
    }
    OV_FRAME_BUFFER* frame = nullptr;
    EXPECT_EQ(OVDQBuf(camera, &frame, 0), OV_STATUS_TIMEOUT);
    EXPECT_EQ(frame, nullptr);
}

TEST_F(AcquisitionTest, AllFramesGoBackAtOnce) {
    Start();
    for (int round = 0; round < 3; ++round) {
        producer.Trigger(0, 0, 5);
        for (int i = 0; i < 5; ++i) {
            ASSERT_NE(Borrow(), nullptr);
        }
        ASSERT_OV_OK(OVQAllBufs(camera));
    }
    EXPECT_OV_OK(OVQAllBufs(camera)) << "none on loan";
}

TEST_F(AcquisitionTest, AnArrayOneShortTellsTheNumberThatItNeeds) {
    Start();
    ExpectFailure(OVDQAllBufs(camera, frames, 4, &count, 0), OV_STATUS_NEED_MORE_BUFFER,
                  "Size of OV_FRAME_DATA* array should be at least 5");
}

TEST_F(AcquisitionTest, AllWaitingFramesAreNoneAfterTheTimeOut) {
    Start();
    EXPECT_EQ(OVDQAllBufs(camera, frames, 5, &count, 0), OV_STATUS_TIMEOUT);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(frames[0], nullptr);
}

TEST_F(AcquisitionTest, AllWaitingFramesMayBeOne) {
    Start();
    producer.Trigger(0, 0, 1);
    EXPECT_OV_OK(OVDQAllBufs(camera, frames, 5, &count, kTimeOut));
    EXPECT_EQ(count, 1U);
    ASSERT_NE(frames[0], nullptr);
    EXPECT_EQ(DifferenceOf(0, frames[0]->nStatus, *frames[0]), "");
    EXPECT_EQ(frames[1], nullptr);
    EXPECT_OV_OK(OVQAllBufs(camera));
}

TEST_F(AcquisitionTest, ARecordOnLoanIsZeroWhereNothingIsTold) {
    Start();
    producer.Trigger(0, 0, 1);
    const OV_FRAME_BUFFER* const frame = Borrow();
    for (const char byte : frame->reserved) {
        EXPECT_EQ(byte, 0);
    }
    EXPECT_NE(frame->nBufID, 0U);
}

TEST_F(AcquisitionTest, AnIncompleteFrameIsNoFailure) {
    producer.SetFrame(0, 0, "Incomplete", 1);
    Start();
    producer.Trigger(0, 0, 2);
    EXPECT_EQ(Borrow()->nStatus, OV_FRAME_STATUS_INCOMPLETE);
    data.pImgBuf = pixels;
    EXPECT_OV_OK(OVGetImage(camera, &data, kTimeOut));
    EXPECT_EQ(data.nStatus, OV_FRAME_STATUS_INCOMPLETE);
}

TEST_F(AcquisitionTest, ACopiedFrameIsBackWithTheProducerAtOnce) {
    ASSERT_OV_OK(OVSetAcqusitionBufferNumber(camera, 5));
    Start();
    producer.SetFreeRunning(0, 0, 1);
    data.pImgBuf = pixels;
    for (uint64_t n = 0; n < 12; ++n) {
        ASSERT_OV_OK(OVGetImage(camera, &data, kTimeOut));
        ASSERT_EQ(data.nFrameID, n);
    }
}

TEST_F(AcquisitionTest, NothingComesWithinTheTimeOut) {
    Start();
    data.pImgBuf = pixels;
    EXPECT_EQ(OVGetImage(camera, &data, 1), OV_STATUS_TIMEOUT);
    EXPECT_EQ(OVDQBuf(camera, frames, 1), OV_STATUS_TIMEOUT);
    producer.Trigger(0, 0, 1);
    EXPECT_NE(Borrow(), nullptr) << "a time-out changes nothing";
}

TEST_F(AcquisitionTest, AFlushGivesWaitingFramesBackUnseen) {
    EXPECT_OV_OK(OVFlushQueue(camera)) << "while stopped too";
    Start();
    producer.SetFreeRunning(0, 0, 1);
    ASSERT_NE(Borrow(), nullptr);
    producer.SetFreeRunning(0, 0, 0);
    EXPECT_OV_OK(OVFlushQueue(camera));
}

}  // namespace
