// What a callback may not call: told by the thread that asks.

#include <iterator>
#include <thread>

#include "EventApiTest.h"

namespace {

struct RefusedCall {
    const char* name;
    OV_STATUS (*run)(OV_DEV_HANDLE camera, void* offlineHandle, void* featureHandle);
    /// The text on the capture, the event and the offline thread and in a feature
    /// callback; null where the call is allowed.
    const char* refusals[4];
};

const RefusedCall kRefusedCalls[] = {
    {"CloseDevice",
     [](OV_DEV_HANDLE camera, void*, void*) { return OVCloseDevice(camera); },
     {"Can't close device in capture callback", "Can't close device in event callback",
      "Can't close device in offline callback", "Can't close device in feature callback"}},
    {"CloseLib",
     [](OV_DEV_HANDLE, void*, void*) { return OVCloseLib(); },
     {"Can't close lib in capture callback", "Can't close lib in event callback",
      "Can't close lib in offline callback", "Can't close lib in feature callback"}},
    {"StreamOn",
     [](OV_DEV_HANDLE camera, void*, void*) { return OVStreamOn(camera); },
     {"Can't start capture in capture callback", "Can't start capture in event callback", nullptr,
      "Can't start capture in feature callback"}},
    {"AcquisitionStart",
     [](OV_DEV_HANDLE camera, void*, void*) {
         return OVSendCommand(camera, OV_FEATURE_AcquisitionStart);
     },
     {"Can't start capture in capture callback", "Can't start capture in event callback", nullptr,
      "Can't start capture in feature callback"}},
    {"StreamOff",
     [](OV_DEV_HANDLE camera, void*, void*) { return OVStreamOff(camera); },
     {"Can't stop capture in capture callback", "Can't stop capture in event callback", nullptr,
      "Can't stop capture in feature callback"}},
    {"AcquisitionStop",
     [](OV_DEV_HANDLE camera, void*, void*) {
         return OVSendCommand(camera, OV_FEATURE_AcquisitionStop);
     },
     {"Can't stop capture in capture callback", "Can't stop capture in event callback", nullptr,
      "Can't stop capture in feature callback"}},
    {"RegisterFeatureCallback",
     [](OV_DEV_HANDLE camera, void*, void*) {
         OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
         return OVRegisterFeatureCallback(
             camera, nullptr, [](OV_FEATURE_ID, void*) {}, OV_FEATURE_Height, &handle);
     },
     {nullptr, "Can't register feature event callback in callback", nullptr, nullptr}},
    {"UnregisterFeatureCallback",
     [](OV_DEV_HANDLE camera, void*, void* handle) {
         return OVUnregisterFeatureCallback(camera, OV_FEATURE_Width, handle);
     },
     {nullptr, "Can't unregister feature event callback in callback", nullptr, nullptr}},
    {"RegisterDeviceOfflineCallback",
     [](OV_DEV_HANDLE camera, void*, void*) {
         OV_EVENT_CALLBACK_HANDLE handle = nullptr;
         return OVRegisterDeviceOfflineCallback(
             camera, nullptr, [](void*) {}, &handle);
     },
     {nullptr, nullptr, "Can't register offline callback in callback", nullptr}},
    {"UnregisterDeviceOfflineCallback",
     [](OV_DEV_HANDLE camera, void* handle, void*) {
         return OVUnregisterDeviceOfflineCallback(camera, handle);
     },
     {nullptr, nullptr, "Can't unregister offline callback in callback", nullptr}},
};

class CallbackRefusal : public EventApiTest,
                        public testing::WithParamInterface<std::tuple<size_t, size_t>> {
protected:
    static const RefusedCall& GetCall() { return kRefusedCalls[std::get<0>(GetParam())]; }
    static size_t GetThread() { return std::get<1>(GetParam()); }
    /// What a call that isn't refused comes to.
    static bool NeedsTheCamera() {
        const std::string name = GetCall().name;
        return name.starts_with("Stream") || name.starts_with("Acquisition");
    }
};

TEST_P(CallbackRefusal, DependsOnTheThread) {
    void* const offline = RegisterOffline();
    void* const feature = RegisterFeature(OV_FEATURE_Width);
    const LastError error = RunOn(kCallbackThreads[GetThread()],
                                  [&] { return GetCall().run(camera, offline, feature); });
    if (const char* const refusal = GetCall().refusals[GetThread()]) {
        EXPECT_EQ(error.status, OV_STATUS_INVALID_CALL);
        EXPECT_EQ(error.message, refusal);
    } else {
        const bool isLost = kCallbackThreads[GetThread()] == CallbackThread::Offline;
        EXPECT_EQ(error.status, isLost && NeedsTheCamera() ? OV_STATUS_OFFLINE : OV_STATUS_SUCCESS)
            << error.text;
    }
}

TEST_P(CallbackRefusal, EndsWithTheCallback) {
    void* const offline = RegisterOffline();
    void* const feature = RegisterFeature(OV_FEATURE_Width);
    RunOn(kCallbackThreads[GetThread()], [] { return OV_STATUS_SUCCESS; });
    EXPECT_NE(GetCall().run(camera, offline, feature), OV_STATUS_INVALID_CALL)
        << LastError::Get().text;
}

INSTANTIATE_TEST_SUITE_P(All, CallbackRefusal,
                         testing::Combine(testing::Range<size_t>(0, std::size(kRefusedCalls)),
                                          testing::Range<size_t>(0, std::size(kCallbackThreads))),
                         [](const auto& test) {
                             return kRefusedCalls[std::get<0>(test.param)].name +
                                    std::string("On") +
                                    kCallbackThreadNames[std::get<1>(test.param)];
                         });

class CallbackOfAnother : public EventApiTest, public testing::WithParamInterface<size_t> {};

TEST_P(CallbackOfAnother, MayCloseACamera) {
    producer.SetInterfaceCount(2);
    ASSERT_EQ(Update(), 2U);
    OV_DEV_HANDLE const other = Open(2);
    const LastError error =
        RunOn(kCallbackThreads[GetParam()], [other] { return OVCloseDevice(other); });
    EXPECT_EQ(error.status, OV_STATUS_SUCCESS) << error.text;
    EXPECT_EQ(producer.OpenCount("Device"), 1);
}

TEST_P(CallbackOfAnother, IsRefusedTheLibraryOnceItsOwnCameraIsReached) {
    producer.SetInterfaceCount(2);
    ASSERT_EQ(Update(), 2U);
    Open(2);
    const LastError error = RunOn(kCallbackThreads[GetParam()], [] { return OVCloseLib(); });
    EXPECT_EQ(error.message, kRefusedCalls[1].refusals[GetParam()]);
    EXPECT_EQ(producer.OpenCount("Device"), 1) << "the one opened last is closed";
    EXPECT_OV_OK(OVCloseLib());
}

INSTANTIATE_TEST_SUITE_P(Threads, CallbackOfAnother,
                         testing::Range<size_t>(0, std::size(kCallbackThreads)),
                         [](const auto& test) {
                             return std::string(kCallbackThreadNames[test.param]);
                         });

// A close waits for the callbacks of its cameras; so a call that they are refused
// may not wait for the close.

/// What another thread does, and the producer's call by which it is at it.
struct Closing {
    const char* name;
    OV_STATUS (*run)(OV_DEV_HANDLE camera);
    const char* begin;
};

const Closing kClosings[] = {
    {"TheCamera", [](OV_DEV_HANDLE camera) { return OVCloseDevice(camera); }, "DSClose"},
    // Another camera is closed before.
    {"TheLibrary", [](OV_DEV_HANDLE) { return OVCloseLib(); }, "DevClose"},
};

class RefusalDuringAClose : public EventApiTest,
                            public testing::WithParamInterface<std::tuple<size_t, size_t>> {
protected:
    static const Closing& GetClosing() { return kClosings[std::get<0>(GetParam())]; }
    static size_t GetThread() { return std::get<1>(GetParam()); }

    void SetUp() override {
        EventApiTest::SetUp();
        producer.SetInterfaceCount(2);
        ASSERT_EQ(Update(), 2U);
        Open(2);
    }

    /// A stream is stopped before it is closed, and the stop waits for its thread.
    const char* BeginOfTheClose() const {
        const bool stops = kCallbackThreads[GetThread()] == CallbackThread::Capture;
        return stops && GetClosing().begin == std::string("DSClose") ? "GCWritePort"
                                                                     : GetClosing().begin;
    }
};

TEST_P(RefusalDuringAClose, WaitsForNothing) {
    void* const offline = RegisterOffline();
    void* const feature = RegisterFeature(OV_FEATURE_Width);
    std::thread other;
    OV_STATUS closed = OV_STATUS_ERROR;
    RunOn(kCallbackThreads[GetThread()], [&] {
        const uint64_t before = producer.CallCount(BeginOfTheClose());
        other = std::thread([&] { closed = GetClosing().run(camera); });
        EXPECT_EQ(producer.WaitForCalls(BeginOfTheClose(), before + 1, 60000), 0);
        for (const RefusedCall& call : kRefusedCalls) {
            if (const char* const refusal = call.refusals[GetThread()]) {
                SCOPED_TRACE(call.name);
                ExpectFailure(call.run(camera, offline, feature), OV_STATUS_INVALID_CALL, refusal);
            }
        }
        return OV_STATUS_SUCCESS;
    });
    other.join();
    EXPECT_EQ(closed, OV_STATUS_SUCCESS);
}

INSTANTIATE_TEST_SUITE_P(All, RefusalDuringAClose,
                         testing::Combine(testing::Range<size_t>(0, std::size(kClosings)),
                                          testing::Range<size_t>(0, kOwnThreads)),
                         [](const auto& test) {
                             return std::string("Of") + kClosings[std::get<0>(test.param)].name +
                                    "On" + kCallbackThreadNames[std::get<1>(test.param)];
                         });

class CloseOfAnotherDuringAClose : public EventApiTest,
                                   public testing::WithParamInterface<size_t> {};

TEST_P(CloseOfAnotherDuringAClose, IsDoneOnTheCallbacksThread) {
    producer.SetInterfaceCount(2);
    ASSERT_EQ(Update(), 2U);
    OV_DEV_HANDLE const second = Open(2);
    const bool stops = kCallbackThreads[GetParam()] == CallbackThread::Capture;
    const char* const begin = stops ? "GCWritePort" : "DSClose";
    std::thread other;
    OV_STATUS closed = OV_STATUS_ERROR;
    const LastError error = RunOn(kCallbackThreads[GetParam()], [&] {
        const uint64_t before = producer.CallCount(begin);
        other = std::thread([&] { closed = OVCloseDevice(camera); });
        EXPECT_EQ(producer.WaitForCalls(begin, before + 1, 60000), 0);
        return OVCloseDevice(second);
    });
    other.join();
    EXPECT_EQ(error.status, OV_STATUS_SUCCESS) << error.text;
    EXPECT_EQ(closed, OV_STATUS_SUCCESS);
    EXPECT_EQ(producer.OpenCount("Device"), 0);
}

INSTANTIATE_TEST_SUITE_P(Threads, CloseOfAnotherDuringAClose,
                         testing::Range<size_t>(0, kOwnThreads), [](const auto& test) {
                             return std::string(kCallbackThreadNames[test.param]);
                         });

TEST_F(EventApiTest, TheLibraryWaitsForACameraThatAnotherThreadCloses) {
    producer.BlockCall("DevClose");
    std::atomic<OV_STATUS> closedCamera{OV_STATUS_ERROR};
    std::thread first([&] { closedCamera = OVCloseDevice(camera); });
    ASSERT_EQ(producer.WaitForCalls("DevClose", 1, 60000), 0);
    std::atomic<OV_STATUS> closedLibrary{OV_STATUS_ERROR};
    std::thread second([&] { closedLibrary = OVCloseLib(); });
    EXPECT_EQ(producer.WaitForCalls("IFClose", 1, 20), -1);
    producer.ReleaseCall("DevClose");
    first.join();
    second.join();
    EXPECT_EQ(closedCamera, OV_STATUS_SUCCESS);
    EXPECT_EQ(closedLibrary, OV_STATUS_SUCCESS);
    EXPECT_EQ(producer.OpenCount("Library"), 0);
}

TEST_F(EventApiTest, AFeatureCallbackWaitsForNoOfflineCallback) {
    struct Waiting {
        OV_DEV_HANDLE camera;
        std::promise<void> begun;
        OV_STATUS read = OV_STATUS_ERROR;

        static void OnLoss(void* user) {
            auto* const self = static_cast<Waiting*>(user);
            self->begun.set_value();
            int64_t width = 0;
            // Waits for the feature callback.
            self->read = OVGetInt(self->camera, kPlain, &width);
        }
    };
    Waiting waiting{camera, {}};
    OV_EVENT_CALLBACK_HANDLE offline = nullptr;
    ASSERT_OV_OK(OVRegisterDeviceOfflineCallback(camera, &waiting, &Waiting::OnLoss, &offline));
    const LastError error = RunOn(CallbackThread::Feature, [&] {
        producer.LoseDevice(0, 0);
        waiting.begun.get_future().wait();
        RegisterOffline();
        return OVUnregisterDeviceOfflineCallback(camera, offline);
    });
    EXPECT_EQ(error.status, OV_STATUS_SUCCESS) << error.text;
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_NE(waiting.read, OV_STATUS_ERROR);
}

TEST_F(EventApiTest, AFeatureCallbackMayTakeItselfAway) {
    OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
    Inside inside([&] { return OVUnregisterFeatureCallback(camera, kPlain, handle); });
    ASSERT_OV_OK(OVRegisterFeatureCallback(camera, &inside, &Inside::OnChange, kPlain, &handle));
    EXPECT_OV_OK(OVSetInt(camera, kPlain, 32));
    inside.ran = false;
    EXPECT_OV_OK(OVSetInt(camera, kPlain, 16));
    EXPECT_FALSE(inside.ran) << "it is gone";
    EXPECT_EQ(inside.done.get_future().get().status, OV_STATUS_SUCCESS);
}

TEST_F(EventApiTest, ACallbackInAnotherCamerasCallbackIsOneOfBoth) {
    producer.SetInterfaceCount(2);
    ASSERT_EQ(Update(), 2U);
    OV_DEV_HANDLE const other = Open(2);
    LastError ofOther;
    Inside inside([&] {
        const OV_STATUS status = OVCloseDevice(other);
        ofOther = LastError::Get();
        return status == OV_STATUS_INVALID_CALL ? OVCloseDevice(camera) : status;
    });
    OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
    ASSERT_OV_OK(OVRegisterFeatureCallback(other, &inside, &Inside::OnChange, kPlain, &handle));
    RunOn(CallbackThread::Capture, [&] { return OVSetInt(other, kPlain, 32); });
    EXPECT_EQ(ofOther.message, "Can't close device in feature callback");
    EXPECT_EQ(inside.done.get_future().get().message, "Can't close device in capture callback");
}

TEST_F(EventApiTest, TheOfflineCallbackMayStartTheOtherChannelBesideARegistration) {
    std::thread other;
    const LastError error = RunOn(CallbackThread::Offline, [&] {
        // Waits for this callback with the lock of its channel held.
        other = std::thread([&] { RegisterOffline(); });
        OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
        return OVRegisterFeatureCallback(camera, nullptr, &IgnoreChange, kEvent, &handle);
    });
    other.join();
    EXPECT_EQ(error.status, OV_STATUS_SUCCESS) << error.text;
    EXPECT_EQ(producer.OpenCount("Event"), 2);
}

}  // namespace
