// The camera's registers, past its features.

#include <algorithm>
#include <numeric>

#include "support/ApiTest.h"

namespace {

constexpr uint64_t kFreeMemory = 0x4000;
constexpr uint64_t kMemoryEnd = 0x10000;
constexpr size_t kMebibyte = 1 << 20;

using RawPortTest = OpenCameraTest;

std::vector<uint8_t> Counted(size_t size) {
    std::vector<uint8_t> bytes(size);
    std::iota(bytes.begin(), bytes.end(), uint8_t{1});
    return bytes;
}

TEST_F(RawPortTest, ReadsWhatTheCameraHas) {
    const std::vector<uint8_t> bytes = Counted(300);
    producer.WriteMemory(0, 0, kFreeMemory, bytes.data(), bytes.size());
    for (const size_t size : {1U, 2U, 3U, 4U, 8U, 299U, 300U}) {
        std::vector<uint8_t> read(301, 0xEE);
        size_t moved = size;
        ASSERT_OV_OK(OVReadRemoteDevicePort(camera, kFreeMemory, read.data(), &moved));
        EXPECT_EQ(moved, size);
        EXPECT_TRUE(
            std::equal(read.begin(), read.begin() + static_cast<ptrdiff_t>(size), bytes.begin()));
        EXPECT_EQ(read[size], 0xEE);
    }
}

TEST_F(RawPortTest, WritesWhatTheCameraGets) {
    for (const size_t size : {1U, 2U, 3U, 4U, 8U, 299U, 300U}) {
        const std::vector<uint8_t> bytes = Counted(size);
        size_t moved = size;
        ASSERT_OV_OK(OVWriteRemoteDevicePort(camera, kFreeMemory, bytes.data(), &moved));
        EXPECT_EQ(moved, size);
        std::vector<uint8_t> written(size);
        producer.ReadMemory(0, 0, kFreeMemory, written.data(), size);
        EXPECT_EQ(written, bytes);
    }
}

TEST_F(RawPortTest, TheWholeMemoryGoesInOneCall) {
    const std::vector<uint8_t> bytes = Counted(kMemoryEnd - kFreeMemory);
    size_t size = bytes.size();
    ASSERT_OV_OK(OVWriteRemoteDevicePort(camera, kFreeMemory, bytes.data(), &size));
    std::vector<uint8_t> read(bytes.size());
    ASSERT_OV_OK(OVReadRemoteDevicePort(camera, kFreeMemory, read.data(), &size));
    EXPECT_EQ(size, bytes.size());
    EXPECT_EQ(read, bytes);
}

TEST_F(RawPortTest, NoBytesAreTheProducersBusiness) {
    const uint64_t reads = producer.CallCount("GCReadPort");
    const uint64_t writes = producer.CallCount("GCWritePort");
    uint8_t byte = 0xEE;
    size_t size = 0;
    EXPECT_OV_OK(OVReadRemoteDevicePort(camera, kFreeMemory, &byte, &size));
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(byte, 0xEE);
    EXPECT_OV_OK(OVWriteRemoteDevicePort(camera, kFreeMemory, &byte, &size));
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(producer.CallCount("GCReadPort"), reads + 1);
    EXPECT_EQ(producer.CallCount("GCWritePort"), writes + 1);
}

TEST_F(RawPortTest, EachCallReachesTheProducerOnce) {
    producer.ClearLog();
    uint32_t value = 0;
    size_t size = sizeof value;
    EXPECT_OV_OK(OVReadRemoteDevicePort(camera, kFreeMemory, &value, &size));
    EXPECT_OV_OK(OVWriteRemoteDevicePort(camera, kFreeMemory, &value, &size));
    EXPECT_EQ(producer.Log(), (std::vector<std::string>{"GCReadPort", "GCWritePort"}));
}

TEST_F(RawPortTest, AnAddressOfNoRegisterHasTheProducersStatus) {
    std::vector<uint8_t> bytes(kMebibyte);
    size_t size = bytes.size();
    EXPECT_EQ(OVWriteRemoteDevicePort(camera, 0, bytes.data(), &size), -1015);
    EXPECT_EQ(LastError::Get().status, -1015);
    size = 4;
    EXPECT_EQ(OVReadRemoteDevicePort(camera, ~uint64_t{0} - 3, bytes.data(), &size), -1015);
}

TEST_F(RawPortTest, AWriteDoesNotReachTheCachesOfFeatures) {
    constexpr uint64_t kSensorInfo = 0x0100;  // DeviceFirmwareVersion
    size_t length = 0;
    ASSERT_OV_OK(OVGetString(camera, OV_FEATURE_DeviceFirmwareVersion, nullptr, &length));
    std::vector<char> before(length);
    ASSERT_OV_OK(OVGetString(camera, OV_FEATURE_DeviceFirmwareVersion, before.data(), &length));
    size_t size = 1;
    ASSERT_OV_OK(OVWriteRemoteDevicePort(camera, kSensorInfo, "9", &size));
    std::vector<char> after(before.size());
    ASSERT_OV_OK(OVGetString(camera, OV_FEATURE_DeviceFirmwareVersion, after.data(), &length));
    EXPECT_EQ(after, before);
    char raw = 0;
    ASSERT_OV_OK(OVReadRemoteDevicePort(camera, kSensorInfo, &raw, &size));
    EXPECT_EQ(raw, '9');
}

TEST_F(RawPortTest, WorksWhileFramesFlow) {
    ASSERT_OV_OK(OVStreamOn(camera));
    uint32_t value = 0x12345678;
    size_t size = sizeof value;
    EXPECT_OV_OK(OVWriteRemoteDevicePort(camera, kFreeMemory, &value, &size));
    EXPECT_OV_OK(OVReadRemoteDevicePort(camera, kFreeMemory, &value, &size));
    EXPECT_EQ(value, 0x12345678U);
    ASSERT_OV_OK(OVStreamOff(camera));
}

/// One of the two calls, what is wrong with it in the order of the checks, and
/// how it appears in texts. L library closed, H handle, B buffer, S size, D the
/// camera is lost.
struct PortCall {
    const char* name;
    const char* function;
    const char* producerCall;
    OV_STATUS (*run)(OV_DEV_HANDLE camera, void* buffer, size_t* size);
};

constexpr const char* kFaults = "LHBSD";

const PortCall kPortCalls[] = {
    {"Read", "OVReadRemoteDevicePort", "GCReadPort",
     [](OV_DEV_HANDLE camera, void* buffer, size_t* size) {
         return OVReadRemoteDevicePort(camera, kFreeMemory, buffer, size);
     }},
    {"Write", "OVWriteRemoteDevicePort", "GCWritePort",
     [](OV_DEV_HANDLE camera, void* buffer, size_t* size) {
         return OVWriteRemoteDevicePort(camera, kFreeMemory, buffer, size);
     }},
};

class RawPortCalls : public OpenCameraTest, public testing::WithParamInterface<PortCall> {
protected:
    OV_STATUS Run(const std::string& faults) {
        const auto has = [&](char fault) { return faults.find(fault) != std::string::npos; };
        if (has('D')) {
            producer.LoseDevice(0, 0);
        }
        if (has('L')) {
            EXPECT_OV_OK(OVCloseLib());
        }
        uint32_t value = 0;
        size_t size = sizeof value;
        const OV_STATUS status = GetParam().run(
            has('H') ? nullptr : camera, has('B') ? nullptr : &value, has('S') ? nullptr : &size);
        EXPECT_EQ(size, sizeof value);
        return status;
    }

    void ExpectFault(char fault, OV_STATUS status) const {
        switch (fault) {
            case 'L':
                return ExpectFailure(status, OV_STATUS_NOT_INIT_API, "Not init API");
            case 'H':
                ExpectFailure(status, OV_STATUS_INVALID_HANDLE, "Invalid device handle");
                return ExpectPlace(GetParam().function);
            case 'D':
                return ExpectFailure(status, OV_STATUS_OFFLINE, "The device is lost");
            default:
                ExpectFailure(status, OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
                ExpectPlace(GetParam().function);
        }
    }

    static void ExpectPlace(const std::string& function) {
        EXPECT_NE(LastError::Get().text.find("}{" + function + ":line["), std::string::npos)
            << LastError::Get().text;
    }
};

TEST_P(RawPortCalls, TheFirstOfTwoFaultsDecides) {
    const std::string faults = kFaults;
    for (size_t first = 0; first < faults.size(); ++first) {
        for (size_t second = first; second < faults.size(); ++second) {
            SCOPED_TRACE(faults.substr(first, 1) + faults[second]);
            ExpectFault(faults[first], Run({faults[first], faults[second]}));
            OVCloseLib();
            producer.Reset();
            SetUp();
        }
    }
}

TEST_P(RawPortCalls, AProducersCodeHasItsStatusAndTheCallsName) {
    for (const int32_t code : {-1001, -1006, -1010, -1015}) {
        SCOPED_TRACE(code);
        producer.FailCall(GetParam().producerCall, 1, code);
        EXPECT_EQ(Run(""), code);
        ExpectPlace(GetParam().function + 2);
    }
    producer.FailCall(GetParam().producerCall, 1, -1011);
    EXPECT_EQ(Run(""), OV_STATUS_TIMEOUT);
    ExpectPlace(GetParam().function + 2);
}

TEST_P(RawPortCalls, CodesWithAMeaningOfTheirOwnHaveItsStatus) {
    const struct {
        int32_t code;
        OV_STATUS status;
    } kCodes[] = {
        {-1003, OV_STATUS_NOT_IMPLEMENTED},
        {-1005, OV_STATUS_INVALID_ACCESS},
        {-1009, OV_STATUS_INVALID_PARAMETER},
        {-10000, OV_STATUS_OFFLINE},
    };
    for (const auto& row : kCodes) {
        producer.FailCall(GetParam().producerCall, 1, row.code);
        EXPECT_EQ(Run(""), row.status) << row.code;
    }
}

INSTANTIATE_TEST_SUITE_P(All, RawPortCalls, testing::ValuesIn(kPortCalls),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
