// The list of cameras, and who may open them.

#include <algorithm>

#include "CameraTest.h"
#include "support/Beside.h"

namespace {

/// Begins without an open camera.
class CameraList : public CameraTest {
protected:
    void SetUp() override {
        CameraTest::SetUp();
        EXPECT_OV_OK(OVCloseDevice(camera));
        camera = nullptr;
        EXPECT_EQ(Update(), kCameras);
    }
    static std::string Text(OV_DEV_HANDLE handle, OV_FEATURE_ID feature) {
        char text[128] = {};
        size_t size = sizeof text;
        EXPECT_OV_OK(OVGetString(handle, feature, text, &size));
        return text;
    }
};

constexpr OV_ACCESS_MODE kAccessModes[] = {OV_ACCESS_READONLY, OV_ACCESS_CONTROL,
                                           OV_ACCESS_EXCLUSIVE};

TEST_F(CameraList, SaysWhatTheCamerasSay) {
    for (uint32_t index = 1; index <= kCameras; ++index) {
        const OV_DEVICE_BASE_INFO record = Records()[index - 1];
        EXPECT_STREQ(record.szVendorName, "oviapi");
        EXPECT_EQ(std::string(record.szModelName).rfind(Supply().ModelPrefix(), 0), 0U);
        EXPECT_EQ(record.deviceClass, Supply().DeviceClass());
        EXPECT_EQ(record.accessStatus, OV_ACCESS_STATUS_READWRITE);
        EXPECT_STREQ(record.szUserID, "");
        const OV_DEV_HANDLE handle = OpenQuick(index);
        EXPECT_EQ(Text(handle, OV_FEATURE_DeviceVendorName), record.szVendorName);
        EXPECT_EQ(Text(handle, OV_FEATURE_DeviceModelName), record.szModelName);
        EXPECT_EQ(Text(handle, OV_FEATURE_DeviceSerialNumber), record.szSN);
        EXPECT_NE(std::string(record.szDisplayName).find(record.szSN), std::string::npos);
    }
    EXPECT_STRNE(Records()[0].szSN, Records()[1].szSN);
    EXPECT_STRNE(Records()[0].szDeviceID, Records()[1].szDeviceID);
}

TEST_F(CameraList, KeepsCamerasThatAreOpen) {
    camera = OpenQuick();
    EXPECT_OV_OK(OVStreamOn(camera));
    EXPECT_EQ(Update(), kCameras);
    EXPECT_EQ(Update(), kCameras);
    EXPECT_OV_OK(OVStreamOff(camera));
}

TEST_F(CameraList, OpensByEachKeyOfItsRecords) {
    camera = OpenQuick(2);
    EXPECT_OV_OK(OVSetString(camera, OV_FEATURE_DeviceUserID, "left"));
    EXPECT_OV_OK(OVCloseDevice(camera));
    const OV_DEVICE_BASE_INFO record = Records()[1];
    EXPECT_STREQ(record.szUserID, "left") << "known without a search";
    const std::pair<std::string, OV_OPEN_MODE> keys[] = {
        {record.szSN, OV_OPEN_SN}, {"left", OV_OPEN_USERID}, {"2", OV_OPEN_INDEX}};
    for (const auto& [key, mode] : keys) {
        for (const OV_ACCESS_MODE access : kAccessModes) {
            ASSERT_OV_OK(OpenBy(key, mode, access, &camera));
            EXPECT_EQ(Text(camera, OV_FEATURE_DeviceSerialNumber), record.szSN);
            EXPECT_OV_OK(OVCloseDevice(camera));
        }
    }
    camera = OpenQuick(2);
    EXPECT_OV_OK(OVSetString(camera, OV_FEATURE_DeviceUserID, ""));
}

TEST_F(CameraList, OpensForReadingWithoutAnyRightToWrite) {
    ASSERT_OV_OK(OpenBy("1", OV_OPEN_INDEX, OV_ACCESS_READONLY, &camera));
    const int64_t width = GetInt(camera, OV_FEATURE_Width);
    EXPECT_EQ(OVSetInt(camera, OV_FEATURE_Width, 128), OV_STATUS_INVALID_ACCESS);
    EXPECT_EQ(OVSendCommand(camera, OV_FEATURE_TriggerSoftware), OV_STATUS_INVALID_ACCESS);
    constexpr const char* kText = "Can't start acquisition on read-only mode";
    ExpectFailure(OVStreamOn(camera), OV_STATUS_INVALID_ACCESS, kText);
    ExpectFailure(OVStreamOff(camera), OV_STATUS_INVALID_ACCESS, kText);
    EXPECT_EQ(GetInt(camera, OV_FEATURE_Width), width);
}

TEST_F(CameraList, OpensACameraOnceInThisProcess) {
    ASSERT_OV_OK(OpenBy("1", OV_OPEN_INDEX, OV_ACCESS_CONTROL, &camera));
    const std::string serial = Records()[0].szSN;
    OV_DEV_HANDLE other = nullptr;
    for (const OV_ACCESS_MODE access : kAccessModes) {
        ExpectFailure(OpenBy(serial, OV_OPEN_SN, access, &other), OV_STATUS_INVALID_ACCESS,
                      "The device has already been opened");
    }
    EXPECT_EQ(other, nullptr);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_OV_OK(OpenBy(serial, OV_OPEN_SN, OV_ACCESS_CONTROL, &other));
}

TEST_F(CameraList, HasNoCameraThatNobodyKnows) {
    for (const OV_OPEN_MODE mode : {OV_OPEN_SN, OV_OPEN_MAC, OV_OPEN_USERID}) {
        ExpectFailure(OpenBy("nobody", mode, OV_ACCESS_EXCLUSIVE, &camera),
                      OV_STATUS_NOT_FOUND_DEVICE, "Not found device");
    }
    ExpectFailure(OVOpenDeviceByIndex(kCameras + 1, &camera), OV_STATUS_OUT_OF_RANGE,
                  "Index out of range");
}

TEST_F(CameraList, GivesACameraToOneOfTwoThreads) {
    OV_DEV_HANDLE handles[2] = {};
    Beside first([&] { return OVOpenDeviceByIndex(1, &handles[0]); });
    Beside second([&] { return OVOpenDeviceByIndex(1, &handles[1]); });
    const OV_STATUS statuses[] = {first.Join(), second.Join()};
    EXPECT_EQ(std::min(statuses[0], statuses[1]), OV_STATUS_INVALID_ACCESS);
    EXPECT_EQ(std::max(statuses[0], statuses[1]), OV_STATUS_SUCCESS);
}

TEST_F(CameraList, ServesTheLibraryAgainAfterItsEnd) {
    for (int round = 0; round < 3; ++round) {
        camera = OpenQuick();
        EXPECT_OV_OK(OVCloseLib());
        ASSERT_OV_OK(OVInitLib());
        AwaitCameras(kCameras);
    }
}

}  // namespace
