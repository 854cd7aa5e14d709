#include "CameraTest.h"

#include <array>
#include <chrono>

CameraSupply& CameraTest::Supply() {
    if (!s_supply) {
        s_supply = CameraSupply::Make();
    }
    return *s_supply;
}

void CameraTest::SetUp() {
    Supply();
    ASSERT_OV_OK(OVInitLib());
    AwaitCameras(kCameras);
    camera = OpenQuick();
}

void CameraTest::TearDown() {
    EXPECT_OV_OK(OVCloseLib());
    if (s_isSpoilt || HasFailure()) {
        s_supply.reset();
        s_isSpoilt = false;
    }
}

uint32_t CameraTest::Update() {
    uint32_t count = 0;
    EXPECT_OV_OK(OVUpdateDeviceList(&count, Supply().SearchTime()));
    return count;
}

void CameraTest::AwaitCameras(uint32_t count) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    uint32_t found = Update();
    while (found != count && std::chrono::steady_clock::now() < end) {
        found = Update();
    }
    ASSERT_EQ(found, count);
}

std::vector<OV_DEVICE_BASE_INFO> CameraTest::Records() {
    std::vector<OV_DEVICE_BASE_INFO> records(kCameras);
    size_t size = records.size() * sizeof(OV_DEVICE_BASE_INFO);
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(records.data(), &size));
    records.resize(size / sizeof(OV_DEVICE_BASE_INFO));
    return records;
}

OV_STATUS CameraTest::OpenBy(const std::string& key, OV_OPEN_MODE mode, OV_ACCESS_MODE access,
                             OV_DEV_HANDLE* handle) {
    const OV_OPEN_PARAM param{key.c_str(), mode, access};
    return OVOpenDevice(&param, handle);
}

OV_DEV_HANDLE CameraTest::OpenQuick(uint32_t index) {
    constexpr double kFramesPerSecond = 250;
    OV_DEV_HANDLE handle = nullptr;
    EXPECT_OV_OK(OVOpenDeviceByIndex(index, &handle));
    EXPECT_OV_OK(OVSendCommand(handle, OV_FEATURE_DeviceReset));
    EXPECT_OV_OK(OVSetInt(handle, OV_FEATURE_Width, kWidth));
    EXPECT_OV_OK(OVSetInt(handle, OV_FEATURE_Height, kHeight));
    EXPECT_OV_OK(OVSetFloat(handle, OV_FEATURE_ExposureTime, 100));
    EXPECT_OV_OK(OVSetFloat(handle, OV_FEATURE_AcquisitionFrameRate, kFramesPerSecond));
    return handle;
}

void CameraTest::Write(OV_DEV_HANDLE handle, uint64_t address, uint32_t value) {
    size_t size = sizeof value;
    EXPECT_OV_OK(OVWriteRemoteDevicePort(handle, Supply().RegisterBase() + address, &value, &size));
}

void CameraTest::SetEntry(OV_DEV_HANDLE handle, OV_FEATURE_ID feature, const char* name) {
    size_t size = 0;
    ASSERT_OV_OK(OVGetEnumDescription(handle, feature, nullptr, &size));
    std::vector<OV_ENUM_DESCRIPTION> entries(size / sizeof(OV_ENUM_DESCRIPTION));
    ASSERT_OV_OK(OVGetEnumDescription(handle, feature, entries.data(), &size));
    for (const OV_ENUM_DESCRIPTION& entry : entries) {
        if (std::strcmp(entry.szSymbolic, name) == 0) {
            ASSERT_OV_OK(OVSetEnum(handle, feature, entry.nValue));
            return;
        }
    }
    FAIL() << "no entry " << name;
}

int64_t CameraTest::GetInt(OV_DEV_HANDLE handle, OV_FEATURE_ID feature) {
    int64_t value = 0;
    EXPECT_OV_OK(OVGetInt(handle, feature, &value));
    return value;
}

void CameraTest::WaitForTriggers(OV_DEV_HANDLE handle) {
    SetEntry(handle, OV_FEATURE_TriggerSource, "Software");
    SetEntry(handle, OV_FEATURE_TriggerMode, "On");
}
