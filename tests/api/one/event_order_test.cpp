// On a thread of callbacks a call has its arguments checked before it is refused, and
// is refused before anything else is looked at.

#include "EventApiTest.h"

namespace {

/// What a row's call works on.
struct Target {
    OV_DEV_HANDLE camera;
    void* offline;
    void* feature;  ///< of the width
    void* output;
};

struct Row {
    const char* name;
    CallbackThread thread;
    OV_STATUS (*run)(Target target);
    OV_STATUS status;
    const char* message;
};

constexpr OV_FEATURE_ID kUnknown = OV_FEATURE_Width | 0xFFFFFF;

void IgnoreChange(OV_FEATURE_ID /*feature*/, void* /*user*/) {}
void IgnoreLoss(void* /*user*/) {}

const Row kRows[] = {
    {"CloseWithoutACamera", CallbackThread::Event, [](Target) { return OVCloseDevice(nullptr); },
     OV_STATUS_INVALID_HANDLE, "Invalid device handle"},
    {"StopWithoutACamera", CallbackThread::Capture, [](Target) { return OVStreamOff(nullptr); },
     OV_STATUS_INVALID_HANDLE, "Invalid device handle"},
    {"RegistrationWithoutACamera", CallbackThread::Event,
     [](Target t) {
         return OVRegisterFeatureCallback(nullptr, nullptr, &IgnoreChange, OV_FEATURE_Width,
                                          &t.output);
     },
     OV_STATUS_INVALID_HANDLE, "Invalid device handle"},
    {"RegistrationOfNoFeature", CallbackThread::Event,
     [](Target t) {
         return OVRegisterFeatureCallback(t.camera, nullptr, &IgnoreChange, kUnknown, &t.output);
     },
     OV_STATUS_INVALID_PARAMETER, "Invalid feature ID"},
    {"RegistrationWithoutAFunction", CallbackThread::Event,
     [](Target t) {
         return OVRegisterFeatureCallback(t.camera, nullptr, nullptr, OV_FEATURE_Width, &t.output);
     },
     OV_STATUS_INVALID_PARAMETER, "NULL Pointer"},
    {"RegistrationWithoutAResult", CallbackThread::Event,
     [](Target t) {
         return OVRegisterFeatureCallback(t.camera, nullptr, &IgnoreChange, OV_FEATURE_Width,
                                          nullptr);
     },
     OV_STATUS_INVALID_PARAMETER, "NULL Pointer"},
    {"RegistrationOfAFeatureThatTheCameraLacks", CallbackThread::Event,
     [](Target t) {
         return OVRegisterFeatureCallback(t.camera, nullptr, &IgnoreChange, OV_FEATURE_EventOverrun,
                                          &t.output);
     },
     OV_STATUS_INVALID_CALL, "Can't register feature event callback in callback"},
    {"EndOfNoCallback", CallbackThread::Event,
     [](Target t) { return OVUnregisterFeatureCallback(t.camera, kUnknown, nullptr); },
     OV_STATUS_INVALID_HANDLE, "Invalid feature callback handle"},
    {"EndOfACallbackOfNoFeature", CallbackThread::Event,
     [](Target t) { return OVUnregisterFeatureCallback(t.camera, kUnknown, t.feature); },
     OV_STATUS_INVALID_PARAMETER, "Invalid feature ID"},
    {"EndOfACallbackOfAnotherFeature", CallbackThread::Event,
     [](Target t) { return OVUnregisterFeatureCallback(t.camera, OV_FEATURE_Height, t.feature); },
     OV_STATUS_INVALID_CALL, "Can't unregister feature event callback in callback"},
    {"OfflineRegistrationWithoutACamera", CallbackThread::Offline,
     [](Target t) {
         return OVRegisterDeviceOfflineCallback(nullptr, nullptr, &IgnoreLoss, &t.output);
     },
     OV_STATUS_INVALID_HANDLE, "Invalid device handle"},
    {"OfflineRegistrationWithoutAFunction", CallbackThread::Offline,
     [](Target t) {
         return OVRegisterDeviceOfflineCallback(t.camera, nullptr, nullptr, &t.output);
     },
     OV_STATUS_INVALID_PARAMETER, "NULL Pointer"},
    {"OfflineRegistrationWithoutAResult", CallbackThread::Offline,
     [](Target t) {
         return OVRegisterDeviceOfflineCallback(t.camera, nullptr, &IgnoreLoss, nullptr);
     },
     OV_STATUS_INVALID_PARAMETER, "NULL Pointer"},
    {"EndOfNoOfflineCallback", CallbackThread::Offline,
     [](Target t) { return OVUnregisterDeviceOfflineCallback(t.camera, nullptr); },
     OV_STATUS_INVALID_HANDLE, "Invalid event callback handle"},
};

class CheckInACallback : public EventApiTest, public testing::WithParamInterface<Row> {};

TEST_P(CheckInACallback, IsMadeInItsPlace) {
    void* const offline = RegisterOffline();
    void* const feature = RegisterFeature(OV_FEATURE_Width);
    const LastError error = RunOn(GetParam().thread, [&] {
        return GetParam().run({camera, offline, feature, nullptr});
    });
    EXPECT_EQ(error.status, GetParam().status);
    EXPECT_EQ(error.message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(Of, CheckInACallback, testing::ValuesIn(kRows),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
