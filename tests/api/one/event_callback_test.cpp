// Loss of a camera, changes of features, and the queue of the camera's events.

#include <malloc.h>

#include <array>
#include <atomic>
#include <thread>

#include "EventApiTest.h"

namespace {

constexpr const char* kNotStarted = "The thread of the remote device's events is not started";

/// What a callback was given.
struct Heard {
    std::atomic<unsigned> count{0};
    std::atomic<OV_FEATURE_ID> feature{0};
    std::thread::id thread;

    static void OnChange(OV_FEATURE_ID feature, void* user) {
        auto* const heard = static_cast<Heard*>(user);
        heard->feature = feature;
        heard->thread = std::this_thread::get_id();
        ++heard->count;
    }
    static void OnLoss(void* user) { ++static_cast<Heard*>(user)->count; }
    void Await(unsigned wanted) const {
        while (count < wanted) {
            std::this_thread::yield();
        }
    }
};

class EventCallbackTest : public EventApiTest {
protected:
    ~EventCallbackTest() override { OVCloseLib(); }  // before `heard` goes

    OV_FEATURE_CALLBACK_HANDLE Hear(OV_FEATURE_ID feature) {
        OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
        EXPECT_OV_OK(OVRegisterFeatureCallback(camera, &heard, &Heard::OnChange, feature, &handle));
        return handle;
    }

    Heard heard;
};

TEST_F(EventCallbackTest, APlainFeatureStartsNoThread) {
    producer.ClearLog();
    RegisterFeature(kPlain);
    EXPECT_EQ(producer.CallCount("GCRegisterEvent"), 0U);
    ExpectFailure(OVFlushEvent(camera), OV_STATUS_INVALID_CALL, kNotStarted);
}

TEST_F(EventCallbackTest, AFeatureBelowEventControlStartsTheThreadOnce) {
    RegisterFeature(kEvent);
    RegisterFeature(OV_FEATURE_EventSelector);
    EXPECT_EQ(producer.CallCount("GCRegisterEvent"), 1U);
    EXPECT_OV_OK(OVFlushEvent(camera));
}

TEST_F(EventCallbackTest, TheQueueBeforeTheThreadStartsIsRefusedAndReachesNoProducer) {
    uint32_t number = 7;
    producer.ClearLog();
    ExpectFailure(OVGetEventNumInQueue(camera, &number), OV_STATUS_INVALID_CALL, kNotStarted);
    ExpectFailure(OVFlushEvent(camera), OV_STATUS_INVALID_CALL, kNotStarted);
    EXPECT_EQ(number, 7U);
    EXPECT_TRUE(producer.Log().empty());
}

TEST_F(EventCallbackTest, TheQueueIsCountedAndFlushed) {
    producer.BlockCall("EventGetData");
    RegisterFeature(kEvent);
    ASSERT_EQ(producer.WaitForCalls("EventGetData", 1, 60000), 0);
    producer.FireExposureEnd(0, 0, 3);
    uint32_t number = 0;
    EXPECT_OV_OK(OVGetEventNumInQueue(camera, &number));
    EXPECT_EQ(number, 3U);
    EXPECT_OV_OK(OVFlushEvent(camera));
    EXPECT_OV_OK(OVGetEventNumInQueue(camera, &number));
    EXPECT_EQ(number, 0U);
    producer.ReleaseCall("EventGetData");
}

TEST_F(EventCallbackTest, TheQueueMayBeAskedFromTheEventCallback) {
    const LastError error = RunOn(CallbackThread::Event, [this] {
        uint32_t number = 0;
        const OV_STATUS status = OVGetEventNumInQueue(camera, &number);
        return status == OV_STATUS_SUCCESS ? OVFlushEvent(camera) : status;
    });
    EXPECT_EQ(error.status, OV_STATUS_SUCCESS) << error.text;
}

TEST_F(EventCallbackTest, AnEventOfTheCameraTellsTheRegisteredFeature) {
    Hear(kEvent);
    producer.FireExposureEnd(0, 0, 2);
    heard.Await(2);
    EXPECT_EQ(heard.feature, kEvent);
    int64_t frame = 0;
    EXPECT_OV_OK(OVGetInt(camera, kEvent, &frame));
    EXPECT_EQ(frame, 1);
}

TEST_F(EventCallbackTest, AWrittenFeatureTellsOnTheWritersThread) {
    Hear(kPlain);
    EXPECT_OV_OK(OVSetInt(camera, kPlain, 32));
    EXPECT_GE(heard.count, 1U);
    EXPECT_EQ(heard.feature, kPlain);
    EXPECT_EQ(heard.thread, std::this_thread::get_id());
}

TEST_F(EventCallbackTest, ACallbackOnTheWritersThreadMayRegister) {
    OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
    Inside inside([this] {
        OV_EVENT_CALLBACK_HANDLE offline = nullptr;
        return OVRegisterDeviceOfflineCallback(camera, nullptr, &IgnoreLoss, &offline);
    });
    ASSERT_OV_OK(OVRegisterFeatureCallback(camera, &inside, &Inside::OnChange, kPlain, &handle));
    ASSERT_OV_OK(OVSetInt(camera, kPlain, 32));
    EXPECT_OV_OK(OVUnregisterFeatureCallback(camera, kPlain, handle));
    EXPECT_EQ(inside.done.get_future().get().status, OV_STATUS_SUCCESS);
}

TEST_F(EventCallbackTest, ACallbackOnTheWritersThreadMayTakeItselfAway) {
    OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
    Inside inside([&] { return OVUnregisterFeatureCallback(camera, kPlain, handle); });
    ASSERT_OV_OK(OVRegisterFeatureCallback(camera, &inside, &Inside::OnChange, kPlain, &handle));
    EXPECT_OV_OK(OVSetInt(camera, kPlain, 32));
    EXPECT_EQ(inside.done.get_future().get().status, OV_STATUS_SUCCESS);
    EXPECT_OV_OK(OVSetInt(camera, kPlain, 64));
}

TEST_F(EventCallbackTest, AnUnregisteredFeatureCallbackIsNotCalled) {
    OV_FEATURE_CALLBACK_HANDLE const handle = Hear(kPlain);
    EXPECT_OV_OK(OVUnregisterFeatureCallback(camera, kPlain, handle));
    EXPECT_OV_OK(OVSetInt(camera, kPlain, 32));
    EXPECT_EQ(heard.count, 0U);
}

TEST_F(EventCallbackTest, CallbacksThatComeAndGoLeaveNothingBehind) {
    const auto comeAndGo = [this](int times) {
        for (int i = 0; i < times; ++i) {
            OV_FEATURE_CALLBACK_HANDLE const handle = Hear(kPlain);
            ASSERT_EQ(OVUnregisterFeatureCallback(camera, kPlain, handle), OV_STATUS_SUCCESS);
        }
    };
    comeAndGo(100);
    const size_t before = mallinfo2().uordblks;  // stays 0 under a sanitizer
    comeAndGo(100000);
    EXPECT_LE(mallinfo2().uordblks, before + 4096);
}

TEST_F(EventCallbackTest, AHandleOfAnotherFeatureIsNotFound) {
    OV_FEATURE_CALLBACK_HANDLE const handle = Hear(kPlain);
    ExpectFailure(OVUnregisterFeatureCallback(camera, OV_FEATURE_Height, handle),
                  OV_STATUS_INVALID_PARAMETER, "Invalid Feature ID");
    ExpectFailure(OVUnregisterFeatureCallback(camera, OV_FEATURE_StreamLostFrameCount, handle),
                  OV_STATUS_INVALID_PARAMETER, "Invalid Feature ID");
    EXPECT_OV_OK(OVSetInt(camera, kPlain, 32));
    EXPECT_GE(heard.count, 1U) << "it is still registered";
}

TEST_F(EventCallbackTest, AHandleOfAnotherKindIsRefused) {
    OV_EVENT_CALLBACK_HANDLE const offline = RegisterOffline();
    OV_FEATURE_CALLBACK_HANDLE const feature = RegisterFeature(kPlain);
    ExpectFailure(OVUnregisterFeatureCallback(camera, kPlain, offline), OV_STATUS_INVALID_HANDLE,
                  "Invalid feature callback handle");
    ExpectFailure(OVUnregisterFeatureCallback(camera, kPlain, camera), OV_STATUS_INVALID_HANDLE,
                  "Invalid feature callback handle");
    ExpectFailure(OVUnregisterDeviceOfflineCallback(camera, feature), OV_STATUS_INVALID_HANDLE,
                  "Invalid event callback handle");
}

TEST_F(EventCallbackTest, AHandleThatIsNoneAnyMoreIsRefused) {
    OV_EVENT_CALLBACK_HANDLE const offline = RegisterOffline();
    OV_FEATURE_CALLBACK_HANDLE const feature = RegisterFeature(kPlain);
    EXPECT_OV_OK(OVUnregisterFeatureCallback(camera, kPlain, feature));
    ExpectFailure(OVUnregisterFeatureCallback(camera, kPlain, feature), OV_STATUS_INVALID_HANDLE,
                  "Invalid feature callback handle");
    EXPECT_OV_OK(OVUnregisterDeviceOfflineCallback(camera, offline));
    ExpectFailure(OVUnregisterDeviceOfflineCallback(camera, offline), OV_STATUS_INVALID_HANDLE,
                  "Invalid event callback handle");
}

TEST_F(EventCallbackTest, AHandleOfBeforeACloseIsRefused) {
    OV_EVENT_CALLBACK_HANDLE const offline = RegisterOffline();
    OV_FEATURE_CALLBACK_HANDLE const feature = RegisterFeature(OV_FEATURE_StreamLostFrameCount);
    EXPECT_OV_OK(OVCloseDevice(camera));
    camera = Open();
    ExpectFailure(OVUnregisterFeatureCallback(camera, OV_FEATURE_StreamLostFrameCount, feature),
                  OV_STATUS_INVALID_HANDLE, "Invalid feature callback handle");
    ExpectFailure(OVUnregisterDeviceOfflineCallback(camera, offline), OV_STATUS_INVALID_HANDLE,
                  "Invalid event callback handle");
}

TEST_F(EventCallbackTest, AHandleIsNeverLookedBehind) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): an address that no memory has
    void* const nowhere = reinterpret_cast<void*>(intptr_t{16});
    ExpectFailure(OVUnregisterFeatureCallback(camera, kPlain, nowhere), OV_STATUS_INVALID_HANDLE,
                  "Invalid feature callback handle");
    ExpectFailure(OVUnregisterDeviceOfflineCallback(camera, nowhere), OV_STATUS_INVALID_HANDLE,
                  "Invalid event callback handle");
}

TEST_F(EventCallbackTest, AFeatureThatTheCameraLacksIsRefused) {
    OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
    ExpectFailure(
        OVRegisterFeatureCallback(camera, nullptr, &IgnoreChange, OV_FEATURE_EventOverrun, &handle),
        OV_STATUS_NOT_IMPLEMENTED, "The feature \"EventOverrun\" is not implemented");
    EXPECT_EQ(handle, nullptr);
}

TEST_F(EventCallbackTest, TheLossOfTheCameraIsToldOnceToEach) {
    Heard other;
    std::array<OV_EVENT_CALLBACK_HANDLE, 2> handles{};
    ASSERT_OV_OK(OVRegisterDeviceOfflineCallback(camera, &heard, &Heard::OnLoss, &handles[0]));
    ASSERT_OV_OK(OVRegisterDeviceOfflineCallback(camera, &other, &Heard::OnLoss, &handles[1]));
    EXPECT_NE(handles[0], handles[1]);
    producer.LoseDevice(0, 0);
    heard.Await(1);
    other.Await(1);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(heard.count, 1U);
    EXPECT_EQ(other.count, 1U);
}

TEST_F(EventCallbackTest, AnUnregisteredOfflineCallbackIsNotCalled) {
    OV_EVENT_CALLBACK_HANDLE handle = nullptr;
    ASSERT_OV_OK(OVRegisterDeviceOfflineCallback(camera, &heard, &Heard::OnLoss, &handle));
    EXPECT_OV_OK(OVUnregisterDeviceOfflineCallback(camera, handle));
    RunOn(CallbackThread::Offline, [] { return OV_STATUS_SUCCESS; });
    EXPECT_EQ(heard.count, 0U);
}

TEST_F(EventCallbackTest, TheCloseTellsNobody) {
    OV_EVENT_CALLBACK_HANDLE handle = nullptr;
    ASSERT_OV_OK(OVRegisterDeviceOfflineCallback(camera, &heard, &Heard::OnLoss, &handle));
    Hear(kEvent);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(heard.count, 0U);
}

TEST_F(EventCallbackTest, ACallOnTheLostCameraFailsInTheOfflineCallback) {
    const LastError error = RunOn(CallbackThread::Offline, [this] {
        int64_t width = 0;
        return OVGetInt(camera, kPlain, &width);
    });
    EXPECT_EQ(error.status, OV_STATUS_OFFLINE);
}

TEST_F(EventCallbackTest, ALostCameraIsFoundAgainAndHeardAnew) {
    RunOn(CallbackThread::Offline, [] { return OV_STATUS_SUCCESS; });
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(Update(), 0U);
    producer.ReturnDevice(0, 0);
    ASSERT_EQ(Update(), 1U);
    camera = Open();
    Hear(kEvent);
    producer.FireExposureEnd(0, 0, 1);
    heard.Await(1);
    const LastError error = RunOn(CallbackThread::Offline, [] { return OV_STATUS_SUCCESS; });
    EXPECT_EQ(error.status, OV_STATUS_SUCCESS);
}

TEST_F(EventCallbackTest, AProducerWithoutEventsTakesTheRegistrations) {
    producer.OfferEvent(4, 0);
    producer.OfferEvent(1000, 0);
    Hear(kEvent);
    OV_EVENT_CALLBACK_HANDLE handle = nullptr;
    EXPECT_OV_OK(OVRegisterDeviceOfflineCallback(camera, &heard, &Heard::OnLoss, &handle));
    producer.FireExposureEnd(0, 0, 1);
    producer.LoseDevice(0, 0);
    EXPECT_OV_OK(OVUnregisterDeviceOfflineCallback(camera, handle));
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(heard.count, 0U);
}

TEST_F(EventCallbackTest, ARefusedRegistrationLeavesNothing) {
    OV_EVENT_CALLBACK_HANDLE handle = nullptr;
    producer.FailCall("GCRegisterEvent", 1, -1010);
    ExpectFailure(OVRegisterDeviceOfflineCallback(camera, nullptr, &IgnoreLoss, &handle), -1010,
                  "Planned failure of GCRegisterEvent");
    producer.FailCall("GCRegisterEvent", 1, -1010);
    ExpectFailure(OVRegisterFeatureCallback(camera, nullptr, &IgnoreChange, kEvent, &handle), -1010,
                  "Planned failure of GCRegisterEvent");
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(producer.OpenCount("Event"), 0);
}

}  // namespace
