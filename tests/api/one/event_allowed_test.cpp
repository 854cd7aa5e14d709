// Calls on files of settings, registers and the queue of events in callbacks: what
// is legal there.

#include <unistd.h>

#include <filesystem>
#include <iterator>

#include "EventApiTest.h"

namespace {

constexpr uint64_t kFreeRegister = 0x3000;

struct AllowedCall {
    const char* name;
    OV_STATUS (*run)(OV_DEV_HANDLE camera, const std::string& path);
    bool isOfSettings;
    /// The camera has no settings, so that a file of them needs none of it.
    bool needsTheCamera;
};

const AllowedCall kAllowedCalls[] = {
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
         return OVReadRemoteDevicePort(camera, kFreeRegister, &value, &size);
     },
     false, true},
    {"WriteRemoteDevicePort",
     [](OV_DEV_HANDLE camera, const std::string&) {
         const uint32_t value = 0;
         size_t size = sizeof value;
         return OVWriteRemoteDevicePort(camera, kFreeRegister, &value, &size);
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

class CallInACallback : public EventApiTest,
                        public testing::WithParamInterface<std::tuple<size_t, size_t>> {
protected:
    ~CallInACallback() override { std::filesystem::remove(path); }

    std::string path =
        (std::filesystem::temp_directory_path() / (std::to_string(getpid()) + ".settings"))
            .string();
};

TEST_P(CallInACallback, IsLegalButForSettingsWhileAcquiring) {
    const AllowedCall& call = kAllowedCalls[std::get<0>(GetParam())];
    const CallbackThread thread = kCallbackThreads[std::get<1>(GetParam())];
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
                         testing::Combine(testing::Range<size_t>(0, std::size(kAllowedCalls)),
                                          testing::Range<size_t>(0, kOwnThreads)),
                         [](const auto& test) {
                             return kAllowedCalls[std::get<0>(test.param)].name +
                                    std::string("On") +
                                    kCallbackThreadNames[std::get<1>(test.param)];
                         });

}  // namespace
