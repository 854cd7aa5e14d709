// The text of a failure names the function that the application called.

#include <algorithm>
#include <functional>

#include "EventApiTest.h"

namespace {

struct Refused {
    const char* function;
    OV_STATUS status;
    const char* message;
    OV_STATUS (*run)(OV_DEV_HANDLE camera);
};

void ExpectPlace(const Refused& refused, OV_DEV_HANDLE camera) {
    SCOPED_TRACE(std::string(refused.function) + ": " + refused.message);
    EXPECT_EQ(refused.run(camera), refused.status);
    const std::string text = LastError::Get().text;
    const std::string begin =
        "{" + std::to_string(refused.status) + "}{" + refused.function + ":line[";
    const std::string end = std::string("]}{") + refused.message + "}";
    EXPECT_EQ(text.substr(0, begin.size()), begin);
    EXPECT_EQ(text.substr(text.size() - std::min(text.size(), end.size())), end);
}

constexpr const char* kNowhere = "/nowhere/file";
OV_FRAME_BUFFER g_stranger{};

OV_STATUS OpenBy(OV_OPEN_MODE mode, const char* key) {
    OV_DEV_HANDLE handle = nullptr;
    const OV_OPEN_PARAM param{key, mode, OV_ACCESS_CONTROL};
    return OVOpenDevice(&param, &handle);
}

OV_STATUS LendAll(OV_DEV_HANDLE camera, uint32_t size) {
    OV_FRAME_BUFFER* frames[8] = {};
    uint32_t count = 0;
    return OVDQAllBufs(camera, frames, size, &count, 0);
}

OV_STATUS Lend(OV_DEV_HANDLE camera) {
    OV_FRAME_BUFFER* frame = nullptr;
    return OVDQBuf(camera, &frame, 0);
}

OV_STATUS Copy(OV_DEV_HANDLE camera) {
    char memory[1] = {};
    OV_FRAME_DATA frame{};
    frame.pImgBuf = memory;
    return OVGetImage(camera, &frame, 0);
}

OV_STATUS ReadPersistentAddress(OV_DEV_HANDLE camera) {
    char text[1] = {};
    size_t sizes[3] = {};
    return OVGetDevicePersistentIpAddress(camera, text, &sizes[0], text, &sizes[1], text,
                                          &sizes[2]);
}

const Refused kWhileStopped[] = {
    {"OVDQBuf", -7, "Can't call DQBuf before start capture", &Lend},
    {"OVGetImage", -7, "Can't call GetImage before start capture", &Copy},
    {"OVDQAllBufs", -7, "Can't call DQAllBufs before start capture",
     [](OV_DEV_HANDLE camera) { return LendAll(camera, 8); }},
    {"OVQBuf", -7, "Can't call QBuf before start capture",
     [](OV_DEV_HANDLE camera) { return OVQBuf(camera, &g_stranger); }},
    {"OVQAllBufs", -7, "Can't call QAllBufs before start capture", &OVQAllBufs},
    {"OVExportConfigFile", -1, "Failed to resolve file name",
     [](OV_DEV_HANDLE camera) { return OVExportConfigFile(camera, ""); }},
    {"OVExportConfigFile", -1, "Can't open config file",
     [](OV_DEV_HANDLE camera) { return OVExportConfigFile(camera, kNowhere); }},
    {"OVImportConfigFile", -1, "Failed to resolve file name",
     [](OV_DEV_HANDLE camera) { return OVImportConfigFile(camera, "", false); }},
    {"OVImportConfigFile", -1, "Can't open config file",
     [](OV_DEV_HANDLE camera) { return OVImportConfigFile(camera, kNowhere, false); }},
    {"OVGetAllDeviceBaseInfo", -9, "Need more buffer for all device info",
     [](OV_DEV_HANDLE /*camera*/) {
         OV_DEVICE_BASE_INFO record{};
         size_t size = 1;
         return OVGetAllDeviceBaseInfo(&record, &size);
     }},
    {"OVGetDeviceIPInfo", -11, "Index out of range",
     [](OV_DEV_HANDLE /*camera*/) {
         OV_DEVICE_IP_INFO record{};
         return OVGetDeviceIPInfo(0, &record);
     }},
    {"OVGetDeviceIPInfo", -5, "The device is not GEV",
     [](OV_DEV_HANDLE /*camera*/) {
         OV_DEVICE_IP_INFO record{};
         return OVGetDeviceIPInfo(1, &record);
     }},
    {"OVOpenDeviceByIndex", -11, "Index should not be 0",
     [](OV_DEV_HANDLE /*camera*/) {
         OV_DEV_HANDLE handle = nullptr;
         return OVOpenDeviceByIndex(0, &handle);
     }},
    {"OVOpenDeviceByIndex", -11, "Index out of range",
     [](OV_DEV_HANDLE /*camera*/) {
         OV_DEV_HANDLE handle = nullptr;
         return OVOpenDeviceByIndex(9, &handle);
     }},
    {"OVOpenDevice", -11, "Index out of range",
     [](OV_DEV_HANDLE /*camera*/) { return OpenBy(OV_OPEN_INDEX, "9"); }},
    {"OVOpenDevice", -5, "IP string is wrong format",
     [](OV_DEV_HANDLE /*camera*/) { return OpenBy(OV_OPEN_IP, "nowhere"); }},
    {"OVOpenDevice", -3, "Not found device",
     [](OV_DEV_HANDLE /*camera*/) { return OpenBy(OV_OPEN_SN, "none"); }},
    {"OVOpenDevice", -3, "Can't open device by IP: 1.2.3.4",
     [](OV_DEV_HANDLE /*camera*/) { return OpenBy(OV_OPEN_IP, "1.2.3.4"); }},
    {"OVGigEIpConfiguration", -3, "Not Found Device",
     [](OV_DEV_HANDLE /*camera*/) {
         return OVGigEIpConfiguration("none", OV_IP_CONFIGURE_LLA, nullptr, nullptr, nullptr,
                                      nullptr);
     }},
    {"OVGigEForceIp", -3, "Not Found Device",
     [](OV_DEV_HANDLE /*camera*/) { return OVGigEForceIp("none", "", "", ""); }},
    {"OVGigEResetDevice", -3, "Not Found Device",
     [](OV_DEV_HANDLE /*camera*/) { return OVGigEResetDevice("none", OV_RESET_MODE_1); }},
    {"OVGetDevicePersistentIpAddress", -9, "Need more buffer to get device persistent IP",
     &ReadPersistentAddress},
    {"OVSetDevicePersistentIpAddress", -5, "Invalid IP",
     [](OV_DEV_HANDLE camera) { return OVSetDevicePersistentIpAddress(camera, "", "", ""); }},
};

const Refused kWhileStarted[] = {
    {"OVSetAcqusitionBufferNumber", -7, "Can't set acqusition buffer number  when acqusition",
     [](OV_DEV_HANDLE camera) { return OVSetAcqusitionBufferNumber(camera, 5); }},
    {"OVRegisterCaptureCallback", -7, "Can't register capture callback after start capture",
     [](OV_DEV_HANDLE camera) {
         return OVRegisterCaptureCallback(camera, nullptr, [](OV_FRAME_CALLBACK_PARAM*) {});
     }},
    {"OVUnregisterCaptureCallback", -7, "Can't unregister capture callback after start capture",
     &OVUnregisterCaptureCallback},
    {"OVQBuf", -5, "Invalid OV_FRAME_BUFFER* parameter",
     [](OV_DEV_HANDLE camera) { return OVQBuf(camera, &g_stranger); }},
    {"OVDQAllBufs", -9, "Size of OV_FRAME_DATA* array should be at least 5",
     [](OV_DEV_HANDLE camera) { return LendAll(camera, 4); }},
    {"OVExportConfigFile", -7, "Can't export config file after start capture",
     [](OV_DEV_HANDLE camera) { return OVExportConfigFile(camera, kNowhere); }},
    {"OVImportConfigFile", -7, "Can't import config file after start capture",
     [](OV_DEV_HANDLE camera) { return OVImportConfigFile(camera, kNowhere, false); }},
};

constexpr const char* kReadOnly = "Can't start acquisition on read-only mode";
const Refused kReadOnlyCamera[] = {
    {"OVStreamOn", -8, kReadOnly, &OVStreamOn},
    {"OVStreamOff", -8, kReadOnly, &OVStreamOff},
    {"OVSendCommand", -8, kReadOnly,
     [](OV_DEV_HANDLE camera) { return OVSendCommand(camera, OV_FEATURE_AcquisitionStart); }},
    {"OVSendCommand", -8, kReadOnly,
     [](OV_DEV_HANDLE camera) { return OVSendCommand(camera, OV_FEATURE_AcquisitionStop); }},
};

const Refused kOnTheEventThread[] = {
    {"OVCloseDevice", -7, "Can't close device in event callback", &OVCloseDevice},
    {"OVCloseLib", -7, "Can't close lib in event callback",
     [](OV_DEV_HANDLE /*camera*/) { return OVCloseLib(); }},
    {"OVStreamOn", -7, "Can't start capture in event callback", &OVStreamOn},
    {"OVStreamOff", -7, "Can't stop capture in event callback", &OVStreamOff},
    {"OVSendCommand", -7, "Can't start capture in event callback",
     [](OV_DEV_HANDLE camera) { return OVSendCommand(camera, OV_FEATURE_AcquisitionStart); }},
    {"OVRegisterFeatureCallback", -7, "Can't register feature event callback in callback",
     [](OV_DEV_HANDLE camera) {
         OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
         return OVRegisterFeatureCallback(
             camera, nullptr, [](OV_FEATURE_ID, void*) {}, OV_FEATURE_Width, &handle);
     }},
};

class FailurePlace : public EventApiTest {};

TEST_F(FailurePlace, IsTheFunctionThatTheApplicationCalled) {
    for (const Refused& refused : kWhileStopped) {
        ExpectPlace(refused, camera);
    }
}

TEST_F(FailurePlace, IsTheFunctionThatWasCalledWhileFramesFlow) {
    ASSERT_OV_OK(OVStreamOn(camera));
    for (const Refused& refused : kWhileStarted) {
        ExpectPlace(refused, camera);
    }
}

TEST_F(FailurePlace, IsTheFunctionThatWasCalledOnACameraOpenForReading) {
    ASSERT_OV_OK(OVCloseDevice(camera));
    const OV_OPEN_PARAM param{"1", OV_OPEN_INDEX, OV_ACCESS_READONLY};
    ASSERT_OV_OK(OVOpenDevice(&param, &camera));
    for (const Refused& refused : kReadOnlyCamera) {
        ExpectPlace(refused, camera);
    }
}

TEST_F(FailurePlace, IsTheFunctionThatWasCalledInACallback) {
    RunOn(CallbackThread::Event, [this] {
        for (const Refused& refused : kOnTheEventThread) {
            ExpectPlace(refused, camera);
        }
        return OV_STATUS_SUCCESS;
    });
}

TEST_F(FailurePlace, IsTheStopWhoseCameraRefusedIt) {
    ASSERT_OV_OK(OVStreamOn(camera));
    producer.FailCall("GCWritePort", 1, -1010);
    EXPECT_EQ(OVStreamOff(camera), OV_STATUS_ERROR);
    EXPECT_EQ(LastError::Get().text.find("{-1}{OVStreamOff:line["), 0U) << LastError::Get().text;
}

}  // namespace
