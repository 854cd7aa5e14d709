#pragma once
/// What tests of the flat interface share: a test producer beside the library, and the
/// parts of the last error.

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "OvIAPI.h"
#include "OvTestControl.h"

/// The calling thread's last failure.
struct LastError {
    int32_t status = 0;
    std::string text;
    /// The third brace group of the text, without braces.
    std::string message;

    static LastError Get() {
        LastError error;
        size_t size = 0;
        OVGetLastError(nullptr, nullptr, &size);
        std::vector<char> text(size);
        OVGetLastError(&error.status, text.data(), &size);
        error.text = text.data();
        const size_t begin = error.text.rfind("}{");
        error.message = begin == std::string::npos
                            ? error.text
                            : error.text.substr(begin + 2, error.text.size() - begin - 3);
        return error;
    }
};

/// Expects a status and, for a failure, its message.
inline void ExpectFailure(OV_STATUS status, OV_STATUS expected, const std::string& message) {
    EXPECT_EQ(status, expected);
    EXPECT_EQ(LastError::Get().message, message);
    EXPECT_EQ(LastError::Get().status, expected);
}

#define EXPECT_OV_OK(call) EXPECT_EQ((call), OV_STATUS_SUCCESS) << LastError::Get().text
#define ASSERT_OV_OK(call) ASSERT_EQ((call), OV_STATUS_SUCCESS) << LastError::Get().text

/// Each test begins with producers in their first state. It ends with the library closed,
/// and expects that nothing is left open in the producers.
class ApiTest : public ::testing::Test {
protected:
    explicit ApiTest(const std::string& fileName = "KwTL.cti")
        : producer(std::string(OV_TEST_STAGE) + "/" + fileName) {
        producer.Reset();
    }
    ~ApiTest() override {
        OVCloseLib();
        for (const char* const kind : {"Library", "System", "Interface", "Device", "Stream",
                                       "Buffer", "Event", "Acquisition"}) {
            EXPECT_EQ(producer.OpenCount(kind), 0) << kind;
        }
        producer.Reset();
    }

    void Init() { ASSERT_OV_OK(OVInitLib()); }

    uint32_t Update() {
        uint32_t count = 0;
        EXPECT_OV_OK(OVUpdateDeviceList(&count, 1000));
        return count;
    }

    /// An open camera of the first producer.
    OV_DEV_HANDLE Open(uint32_t index = 1) {
        OV_DEV_HANDLE handle = nullptr;
        EXPECT_OV_OK(OVOpenDeviceByIndex(index, &handle));
        return handle;
    }

    /// "TLParamsLocked" in the memory of the first camera.
    uint32_t ParamsLocked() const {
        constexpr uint64_t kAddress = 0x418;
        uint32_t value = 0xFFFFFFFF;
        producer.ReadMemory(0, 0, kAddress, &value, sizeof value);
        return value;
    }

    TestProducer producer;
};

/// A test that begins with an open camera.
class OpenCameraTest : public ApiTest {
protected:
    void SetUp() override {
        Init();
        ASSERT_EQ(Update(), 1U);
        camera = Open();
        ASSERT_NE(camera, nullptr);
    }

    OV_DEV_HANDLE camera = nullptr;
};
