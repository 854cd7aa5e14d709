// What a callback may not call: told by the thread that asks.

#include <algorithm>
#include <iterator>

#include "event_test.h"

// Callbacks run with the engine's or the callbacks' lock held. The calls that they
// are refused here take the library's own locks first, in the other order: what the
// refusals are for, and the application's affair where two threads close at once.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer looks for that name
extern "C" const char* __tsan_default_suppressions();
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions() {
    return "deadlock:COvFeatureCallback::operator()\n"
           "deadlock:COvDeviceOfflineCallback::operator()\n";
}

namespace {

struct Call {
    const char* name;
    OV_STATUS (*run)(OV_DEV_HANDLE camera, void* offlineHandle, void* featureHandle);
    /// The text on the capture, the event and the offline thread; null where the
    /// call is allowed.
    const char* refusals[3];
};

const Call kCalls[] = {
    {"CloseDevice",
     [](OV_DEV_HANDLE camera, void*, void*) { return OVCloseDevice(camera); },
     {"Can't close device in capture callback", "Can't close device in event callback",
      "Can't close device in offline callback"}},
    {"CloseLib",
     [](OV_DEV_HANDLE, void*, void*) { return OVCloseLib(); },
     {"Can't close lib in capture callback", "Can't close lib in event callback",
      "Can't close lib in offline callback"}},
    {"StreamOff",
     [](OV_DEV_HANDLE camera, void*, void*) { return OVStreamOff(camera); },
     {"Can't stop capture in capture callback", nullptr, nullptr}},
    {"AcquisitionStop",
     [](OV_DEV_HANDLE camera, void*, void*) {
         return OVSendCommand(camera, OV_FEATURE_AcquisitionStop);
     },
     {"Can't stop capture in capture callback", nullptr, nullptr}},
    {"RegisterFeatureCallback",
     [](OV_DEV_HANDLE camera, void*, void*) {
         OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
         return OVRegisterFeatureCallback(
             camera, nullptr, [](OV_FEATURE_ID, void*) {}, OV_FEATURE_Height, &handle);
     },
     {nullptr, "Can't register feature event callback in callback", nullptr}},
    {"UnregisterFeatureCallback",
     [](OV_DEV_HANDLE camera, void*, void* handle) {
         return OVUnregisterFeatureCallback(camera, OV_FEATURE_Width, handle);
     },
     {nullptr, "Can't unregister feature event callback in callback", nullptr}},
    {"RegisterDeviceOfflineCallback",
     [](OV_DEV_HANDLE camera, void*, void*) {
         OV_EVENT_CALLBACK_HANDLE handle = nullptr;
         return OVRegisterDeviceOfflineCallback(
             camera, nullptr, [](void*) {}, &handle);
     },
     {nullptr, nullptr, "Can't register offline callback in callback"}},
    {"UnregisterDeviceOfflineCallback",
     [](OV_DEV_HANDLE camera, void* handle, void*) {
         return OVUnregisterDeviceOfflineCallback(camera, handle);
     },
     {nullptr, nullptr, "Can't unregister offline callback in callback"}},
};

constexpr CallbackThread kThreads[] = {CallbackThread::Capture, CallbackThread::Event,
                                       CallbackThread::Offline};
constexpr const char* kThreadNames[] = {"Capture", "Event", "Offline"};

class CallbackRefusal : public EventApiTest,
                        public testing::WithParamInterface<std::tuple<size_t, size_t>> {
protected:
    static const Call& GetCall() { return kCalls[std::get<0>(GetParam())]; }
    static size_t GetThread() { return std::get<1>(GetParam()); }
    /// What a call that isn't refused comes to.
    static bool NeedsTheCamera() {
        const std::string name = GetCall().name;
        return name == "StreamOff" || name == "AcquisitionStop";
    }
};

TEST_P(CallbackRefusal, DependsOnTheThread) {
    void* const offline = RegisterOffline();
    void* const feature = RegisterFeature(OV_FEATURE_Width);
    const LastError error =
        RunOn(kThreads[GetThread()], [&] { return GetCall().run(camera, offline, feature); });
    if (const char* const refusal = GetCall().refusals[GetThread()]) {
        EXPECT_EQ(error.status, OV_STATUS_INVALID_CALL);
        EXPECT_EQ(error.message, refusal);
    } else {
        const bool isLost = kThreads[GetThread()] == CallbackThread::Offline;
        EXPECT_EQ(error.status, isLost && NeedsTheCamera() ? OV_STATUS_OFFLINE : OV_STATUS_SUCCESS)
            << error.text;
    }
}

TEST_P(CallbackRefusal, EndsWithTheCallback) {
    void* const offline = RegisterOffline();
    void* const feature = RegisterFeature(OV_FEATURE_Width);
    RunOn(kThreads[GetThread()], [] { return OV_STATUS_SUCCESS; });
    EXPECT_NE(GetCall().run(camera, offline, feature), OV_STATUS_INVALID_CALL)
        << LastError::Get().text;
}

INSTANTIATE_TEST_SUITE_P(All, CallbackRefusal,
                         testing::Combine(testing::Range<size_t>(0, std::size(kCalls)),
                                          testing::Range<size_t>(0, std::size(kThreads))),
                         [](const auto& test) {
                             return kCalls[std::get<0>(test.param)].name + std::string("On") +
                                    kThreadNames[std::get<1>(test.param)];
                         });

class CallbackOfAnother : public EventApiTest, public testing::WithParamInterface<size_t> {};

TEST_P(CallbackOfAnother, MayCloseACamera) {
    producer.SetInterfaceCount(2);
    ASSERT_EQ(Update(), 2U);
    OV_DEV_HANDLE const other = Open(2);
    const LastError error = RunOn(kThreads[GetParam()], [other] { return OVCloseDevice(other); });
    EXPECT_EQ(error.status, OV_STATUS_SUCCESS) << error.text;
    EXPECT_EQ(producer.OpenCount("Device"), 1);
}

TEST_P(CallbackOfAnother, IsRefusedTheLibraryOnceItsOwnCameraIsReached) {
    producer.SetInterfaceCount(2);
    ASSERT_EQ(Update(), 2U);
    Open(2);
    const LastError error = RunOn(kThreads[GetParam()], [] { return OVCloseLib(); });
    EXPECT_EQ(error.message, kCalls[1].refusals[GetParam()]);
    EXPECT_EQ(producer.OpenCount("Device"), 1) << "the one opened last is closed";
    EXPECT_OV_OK(OVCloseLib());
}

INSTANTIATE_TEST_SUITE_P(Threads, CallbackOfAnother, testing::Range<size_t>(0, std::size(kThreads)),
                         [](const auto& test) { return std::string(kThreadNames[test.param]); });

}  // namespace
