// Calls on files of settings, registers and the queue of events in callbacks: what
// is legal there.

#include <unistd.h>

#include <filesystem>
#include <iterator>

#include "event_test.h"

namespace {

constexpr uint64_t kFree = 0x3000;

struct Call {
    const char* name;
    OV_STATUS (*run)(OV_DEV_HANDLE camera, const std::string& path);
    bool isOfSettings;
    /// The camera has no settings, so that a file of them needs none of it.
    bool needsTheCamera;
};

const Call kCalls[] = {
    {"ExportConfigFile",
     [](OV_DEV_HANDLE camera, const std::string& path) {
         return OVExportConfigFile(camera, path.c_str());
     },
     true, false},
    {"ImportConfigFile",
     [](OV_DEV_HANDLE camera, const std::string& path) {
         return OVImportConfigFile(camera, path.c_str(), true);
     },
     true, false},
    {"ReadRemoteDevicePort",
     [](OV_DEV_HANDLE camera, const std::string&) {
         uint32_t value = 0;
         size_t size = sizeof value;
         return OVReadRemoteDevicePort(camera, kFree, &value, &size);
     },
     false, true},
    {"WriteRemoteDevicePort",
     [](OV_DEV_HANDLE camera, const std::string&) {
         const uint32_t value = 0;
         size_t size = sizeof value;
         return OVWriteRemoteDevicePort(camera, kFree, &value, &size);
     },
     false, true},
    {"GetEventNumInQueue",
     [](OV_DEV_HANDLE camera, const std::string&) {
         uint32_t number = 0;
         return OVGetEventNumInQueue(camera, &number);
     },
     false, false},
    {"FlushEvent", [](OV_DEV_HANDLE camera, const std::string&) { return OVFlushEvent(camera); },
     false, false},
};

constexpr CallbackThread kThreads[] = {CallbackThread::Capture, CallbackThread::Event,
                                       CallbackThread::Offline};
constexpr const char* kThreadNames[] = {"Capture", "Event", "Offline"};

class CallInACallback : public EventApiTest,
                        public testing::WithParamInterface<std::tuple<size_t, size_t>> {
protected:
    ~CallInACallback() override { std::filesystem::remove(path); }

    std::string path =
        (std::filesystem::temp_directory_path() / (std::to_string(getpid()) + ".settings"))
            .string();
};

TEST_P(CallInACallback, IsLegalButForSettingsWhileAcquiring) {
    const Call& call = kCalls[std::get<0>(GetParam())];
    const CallbackThread thread = kThreads[std::get<1>(GetParam())];
    ASSERT_OV_OK(OVExportConfigFile(camera, path.c_str()));
    RegisterFeature(kEvent);
    const LastError error = RunOn(thread, [&] { return call.run(camera, path); });
    OV_STATUS expected = OV_STATUS_SUCCESS;
    if (thread == CallbackThread::Capture && call.isOfSettings) {
        expected = OV_STATUS_INVALID_CALL;
    } else if (thread == CallbackThread::Offline && call.needsTheCamera) {
        expected = OV_STATUS_OFFLINE;
    }
    EXPECT_EQ(error.status, expected) << error.text;
}

INSTANTIATE_TEST_SUITE_P(All, CallInACallback,
                         testing::Combine(testing::Range<size_t>(0, std::size(kCalls)),
                                          testing::Range<size_t>(0, std::size(kThreads))),
                         [](const auto& test) {
                             return kCalls[std::get<0>(test.param)].name + std::string("On") +
                                    kThreadNames[std::get<1>(test.param)];
                         });

}  // namespace
