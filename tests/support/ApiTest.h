#pragma once
/// What tests of the flat interface share: a test producer beside the library.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "OvIAPI.h"
#include "OvTestControl.h"
#include "support/LastError.h"

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
