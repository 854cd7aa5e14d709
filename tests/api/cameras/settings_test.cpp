// Settings of a camera that go into a file, or one of its sets, and come back.

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "CameraTest.h"

namespace {

class CameraSettings : public CameraTest {
protected:
    ~CameraSettings() override { std::filesystem::remove(path); }

    void Change() const {
        EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 320));
        EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_OffsetX, 64));
        EXPECT_OV_OK(OVSetFloat(camera, OV_FEATURE_Gain, 3));
        SetEntry(camera, OV_FEATURE_TriggerMode, "On");
        EXPECT_OV_OK(OVSetBool(camera, OV_FEATURE_ReverseX, true));
        std::vector<uint8_t> table(16, 7);
        EXPECT_OV_OK(OVSetBuffer(camera, OV_FEATURE_LUTValueAll, table.data(), table.size()));
    }
    void ExpectChanged(bool isChanged) const {
        EXPECT_EQ(GetInt(camera, OV_FEATURE_Width) == 320, isChanged);
        EXPECT_EQ(GetInt(camera, OV_FEATURE_OffsetX) == 64, isChanged);
        double gain = 0;
        EXPECT_OV_OK(OVGetFloat(camera, OV_FEATURE_Gain, &gain));
        EXPECT_EQ(gain > 2.9, isChanged) << gain;
        int64_t mode = 0;
        EXPECT_OV_OK(OVGetEnum(camera, OV_FEATURE_TriggerMode, &mode));
        EXPECT_EQ(mode == 1, isChanged);
        bool isReversed = false;
        EXPECT_OV_OK(OVGetBool(camera, OV_FEATURE_ReverseX, &isReversed));
        EXPECT_EQ(isReversed, isChanged);
        size_t length = 0;
        EXPECT_OV_OK(OVGetBufferLength(camera, OV_FEATURE_LUTValueAll, &length));
        std::vector<uint8_t> table(length);
        EXPECT_OV_OK(OVGetBuffer(camera, OV_FEATURE_LUTValueAll, table.data(), &length));
        EXPECT_EQ(table[15] == 7, isChanged);
    }
    std::string Content() const {
        return (std::ostringstream() << std::ifstream(path).rdbuf()).str();
    }

    const std::string path = (std::filesystem::path(testing::TempDir()) /
                              ("camera_settings_" + std::to_string(getpid())))
                                 .string();
};

TEST_F(CameraSettings, ComeBackFromAFile) {
    Change();
    ASSERT_OV_OK(OVExportConfigFile(camera, path.c_str()));
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_DeviceReset));
    ExpectChanged(false);
    ASSERT_OV_OK(OVImportConfigFile(camera, path.c_str(), true));
    ExpectChanged(true);
    EXPECT_OV_OK(OVCloseDevice(camera));
    ASSERT_OV_OK(OVOpenDeviceByIndex(1, &camera));
    ExpectChanged(true);
}

TEST_F(CameraSettings, ComeBackWithoutVerification) {
    Change();
    ASSERT_OV_OK(OVExportConfigFile(camera, path.c_str()));
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_DeviceReset));
    ASSERT_OV_OK(OVImportConfigFile(camera, path.c_str(), false));
    ExpectChanged(true);
}

TEST_F(CameraSettings, AreOfOneModel) {
    ASSERT_OV_OK(OVExportConfigFile(camera, path.c_str()));
    const OV_DEV_HANDLE other = OpenQuick(2);
    EXPECT_EQ(OVImportConfigFile(other, path.c_str(), true), OV_STATUS_ERROR);
    EXPECT_EQ(LastError::Get().text.find("{-1}The device model("), 0U) << LastError::Get().text;
}

TEST_F(CameraSettings, AreNotTouchedWhileFramesFlow) {
    ASSERT_OV_OK(OVExportConfigFile(camera, path.c_str()));
    const std::string before = Content();
    EXPECT_FALSE(before.empty());
    Change();
    ASSERT_OV_OK(OVStreamOn(camera));
    ExpectFailure(OVImportConfigFile(camera, path.c_str(), false), OV_STATUS_INVALID_CALL,
                  "Can't import config file after start capture");
    ExpectFailure(OVExportConfigFile(camera, path.c_str()), OV_STATUS_INVALID_CALL,
                  "Can't export config file after start capture");
    ASSERT_OV_OK(OVStreamOff(camera));
    EXPECT_EQ(Content(), before);
    ExpectChanged(true);
}

TEST_F(CameraSettings, ComeBackFromASetOfTheCamera) {
    Change();
    SetEntry(camera, OV_FEATURE_UserSetSelector, "UserSet1");
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_UserSetSave));
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_DeviceReset));
    ExpectChanged(false);
    SetEntry(camera, OV_FEATURE_UserSetSelector, "UserSet1");
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_UserSetLoad));
    ExpectChanged(true);
}

}  // namespace
