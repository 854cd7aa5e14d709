// The device list, opening and closing.

#include <cstring>

#include "support/ApiTest.h"

namespace {

class DeviceListTest : public ApiTest {
protected:
    void SetUp() override { Init(); }
};

OV_STATUS OpenBy(const char* key, OV_OPEN_MODE mode, OV_DEV_HANDLE* handle,
                 OV_ACCESS_MODE access = OV_ACCESS_EXCLUSIVE) {
    OV_OPEN_PARAM param{};
    param.pszContent = key;
    param.openMode = mode;
    param.accessMode = access;
    return OVOpenDevice(&param, handle);
}

TEST_F(DeviceListTest, WithNoUpdateBeforeSearchesByItself) {
    size_t size = 0;
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(nullptr, &size));
    EXPECT_EQ(size, sizeof(OV_DEVICE_BASE_INFO));
    EXPECT_EQ(producer.CallCount("IFUpdateDeviceList"), 1U)
        << "a search takes as long as its time-out";
}

TEST_F(DeviceListTest, WithNoCameraHasSizeZero) {
    producer.SetDeviceCount(0, 0);
    size_t size = 1;
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(nullptr, &size));
    EXPECT_EQ(size, 0U);
}

TEST_F(DeviceListTest, ShowsWhatTheProducerTells) {
    producer.SetDeviceText(0, 0, "Vendor", std::string(40, 'v').c_str());
    producer.SetDeviceText(0, 0, "Model", "Eye");
    producer.SetDeviceText(0, 0, "SerialNumber", "SN7");
    producer.SetDeviceText(0, 0, "DisplayName", std::string(200, 'd').c_str());
    producer.SetDeviceText(0, 0, "UserID", "left");
    ASSERT_EQ(Update(), 1U);
    OV_DEVICE_BASE_INFO record;
    std::memset(&record, 0xFF, sizeof(record));
    size_t size = sizeof(record);
    ASSERT_OV_OK(OVGetAllDeviceBaseInfo(&record, &size));
    EXPECT_EQ(size, sizeof(record));
    EXPECT_EQ(std::string(record.szVendorName), std::string(31, 'v'));
    EXPECT_STREQ(record.szModelName, "Eye");
    EXPECT_STREQ(record.szSN, "SN7");
    EXPECT_EQ(std::string(record.szDisplayName), std::string(128, 'd'));
    EXPECT_STREQ(record.szUserID, "left");
    EXPECT_EQ(record.deviceClass, OV_DEVICE_CLASS_CUSTOM);
    EXPECT_EQ(record.accessStatus, OV_ACCESS_STATUS_READWRITE);
    for (const char byte : record.reserved) {
        EXPECT_EQ(byte, 0);
    }
}

TEST_F(DeviceListTest, ReportsAnUnknownAccessStatusAsUnknown) {
    producer.SetDeviceNumber(0, 0, "AccessStatus", 4);
    Update();
    OV_DEVICE_BASE_INFO record{};
    size_t size = sizeof(record);
    ASSERT_OV_OK(OVGetAllDeviceBaseInfo(&record, &size));
    EXPECT_EQ(record.accessStatus, OV_ACCESS_STATUS_UNKNOWN);
}

TEST_F(DeviceListTest, WithABufferTooSmallGivesSizeZero) {
    Update();
    OV_DEVICE_BASE_INFO record{};
    size_t size = sizeof(record) - 1;
    ExpectFailure(OVGetAllDeviceBaseInfo(&record, &size), OV_STATUS_NEED_MORE_BUFFER,
                  "Need more buffer for all device info");
    EXPECT_EQ(size, 0U);
}

TEST_F(DeviceListTest, IPInfoWantsAGigEVisionCamera) {
    Update();
    OV_DEVICE_IP_INFO record{};
    ExpectFailure(OVGetDeviceIPInfo(1, &record), OV_STATUS_INVALID_PARAMETER,
                  "The device is not GEV");
    ExpectFailure(OVGetDeviceIPInfo(0, &record), OV_STATUS_OUT_OF_RANGE, "Index out of range");
    ExpectFailure(OVGetDeviceIPInfo(2, &record), OV_STATUS_OUT_OF_RANGE, "Index out of range");
    ExpectFailure(OVGetDeviceIPInfo(0, nullptr), OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
}

TEST_F(DeviceListTest, IndexZeroIsOutOfRange) {
    OV_DEV_HANDLE handle = nullptr;
    ExpectFailure(OVOpenDeviceByIndex(0, &handle), OV_STATUS_OUT_OF_RANGE, "Index should not be 0");
    EXPECT_EQ(producer.CallCount("IFUpdateDeviceList"), 0U);
}

TEST_F(DeviceListTest, IndexBeyondTheListSearchesAndThenIsOutOfRange) {
    Update();
    const uint64_t before = producer.CallCount("IFUpdateDeviceList");
    OV_DEV_HANDLE handle = nullptr;
    ExpectFailure(OVOpenDeviceByIndex(2, &handle), OV_STATUS_OUT_OF_RANGE, "Index out of range");
    EXPECT_EQ(producer.CallCount("IFUpdateDeviceList"), before + 1);
}

TEST_F(DeviceListTest, OpensOnceOnly) {
    Update();
    OV_DEV_HANDLE first = Open();
    OV_DEV_HANDLE second = nullptr;
    ExpectFailure(OVOpenDeviceByIndex(1, &second), OV_STATUS_INVALID_ACCESS,
                  "The device has already been opened");
    EXPECT_EQ(second, nullptr);
    EXPECT_OV_OK(OVCloseDevice(first));
    EXPECT_OV_OK(OVOpenDeviceByIndex(1, &second));
}

struct BadOpen {
    const char* name;
    const char* key;
    OV_OPEN_MODE mode;
    OV_ACCESS_MODE access;
    OV_STATUS status;
    const char* message;
};

class OpenDeviceRefuses : public DeviceListTest, public ::testing::WithParamInterface<BadOpen> {};

TEST_P(OpenDeviceRefuses, WithItsText) {
    OV_DEV_HANDLE handle = nullptr;
    ExpectFailure(OpenBy(GetParam().key, GetParam().mode, &handle, GetParam().access),
                  GetParam().status, GetParam().message);
    EXPECT_EQ(handle, nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Table, OpenDeviceRefuses,
    ::testing::Values(
        BadOpen{"NullKey", nullptr, 9, 9, OV_STATUS_INVALID_PARAMETER, "NULL Pointer"},
        BadOpen{"EmptyKeyBeforeMode", "", 9, 9, OV_STATUS_INVALID_PARAMETER,
                "OV_OPEN_PARAM::pszContent's length is 0"},
        BadOpen{"ModeBeforeAccess", "x", 5, 9, OV_STATUS_INVALID_PARAMETER, "Error Open Mode"},
        BadOpen{"AccessTooSmall", "x", OV_OPEN_SN, 1, OV_STATUS_INVALID_PARAMETER,
                "Error Access Mode"},
        BadOpen{"AccessTooLarge", "x", OV_OPEN_SN, 5, OV_STATUS_INVALID_PARAMETER,
                "Error Access Mode"},
        BadOpen{"BadAddress", "1.2.3.400", OV_OPEN_IP, 4, OV_STATUS_INVALID_PARAMETER,
                "IP string is wrong format"},
        BadOpen{"AddressOfThreeNumbers", "1.2.3", OV_OPEN_IP, 4, OV_STATUS_NOT_FOUND_DEVICE,
                "Can't open device by IP: 1.2.3"},
        BadOpen{"IndexWithoutDigits", "abc", OV_OPEN_INDEX, 4, OV_STATUS_OUT_OF_RANGE,
                "Index should not be 0"},
        BadOpen{"UnknownSerial", "nobody", OV_OPEN_SN, 4, OV_STATUS_NOT_FOUND_DEVICE,
                "Not found device"},
        BadOpen{"UnknownMac", "00-00-00-00-00-01", OV_OPEN_MAC, 4, OV_STATUS_NOT_FOUND_DEVICE,
                "Not found device"}),
    [](const auto& entry) { return entry.param.name; });

TEST_F(DeviceListTest, OpensByEachKey) {
    producer.SetDeviceText(0, 0, "SerialNumber", "SN7");
    producer.SetDeviceText(0, 0, "UserID", "left");
    for (const auto& [key, mode] : {std::pair{"SN7", OV_OPEN_SN}, std::pair{"left", OV_OPEN_USERID},
                                    std::pair{"1", OV_OPEN_INDEX}}) {
        OV_DEV_HANDLE handle = nullptr;
        ASSERT_OV_OK(OpenBy(key, mode, &handle)) << key;
        EXPECT_OV_OK(OVCloseDevice(handle));
    }
}

TEST_F(DeviceListTest, AClosedOrNullHandleIsInvalid) {
    ExpectFailure(OVCloseDevice(nullptr), OV_STATUS_INVALID_HANDLE, "Invalid device handle");
}

TEST_F(DeviceListTest, AHandleOutlivesAnUpdateThatLosesTheCamera) {
    Update();
    OV_DEV_HANDLE handle = Open();
    producer.SetDeviceCount(0, 0);
    EXPECT_EQ(Update(), 0U);
    int64_t width = 0;
    EXPECT_OV_OK(OVGetInt(handle, OV_FEATURE_Width, &width));
    EXPECT_OV_OK(OVCloseDevice(handle));
}

TEST_F(DeviceListTest, CloseLibClosesOpenCameras) {
    Update();
    Open();
    EXPECT_OV_OK(OVCloseLib());
    EXPECT_EQ(producer.OpenCount("Device"), 0);
}

}  // namespace
