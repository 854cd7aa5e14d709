#pragma once
/// Three producers beside the library: GigE Vision, USB3 Vision and another.

#include "support/ApiTest.h"

/// Each test begins with producers in their first state. It ends with the library closed,
/// and expects that nothing is left open in the producers.
class SeveralProducersTest : public ::testing::Test {
protected:
    SeveralProducersTest() {
        for (TestProducer* const producer : {&gev, &usb, &custom}) {
            producer->Reset();
        }
    }
    ~SeveralProducersTest() override {
        OVCloseLib();
        for (TestProducer* const producer : {&gev, &usb, &custom}) {
            for (const char* const kind : {"Library", "System", "Interface", "Device", "Stream"}) {
                EXPECT_EQ(producer->OpenCount(kind), 0) << kind;
            }
            producer->Reset();
        }
    }

    /// The records after a search in the subnets of the adapters.
    static std::vector<OV_DEVICE_BASE_INFO> List() {
        uint32_t count = 0;
        EXPECT_OV_OK(OVUpdateDeviceList(&count, 1000));
        auto cameras = Records();
        EXPECT_EQ(cameras.size(), count);
        return cameras;
    }

    /// The records of the device list, without a new search.
    static std::vector<OV_DEVICE_BASE_INFO> Records() {
        size_t size = 0;
        EXPECT_OV_OK(OVGetAllDeviceBaseInfo(nullptr, &size));
        std::vector<OV_DEVICE_BASE_INFO> cameras(size / sizeof(OV_DEVICE_BASE_INFO));
        EXPECT_OV_OK(OVGetAllDeviceBaseInfo(cameras.data(), &size));
        return cameras;
    }

    static OV_STATUS OpenBy(const char* key, OV_OPEN_MODE mode, OV_DEV_HANDLE* handle,
                            OV_ACCESS_MODE access = OV_ACCESS_EXCLUSIVE) {
        const OV_OPEN_PARAM param{key, mode, access};
        return OVOpenDevice(&param, handle);
    }

    static std::string Path(const char* name) { return std::string(OV_TEST_STAGE) + "/" + name; }

    TestProducer gev{Path("OvGVTL.cti")};
    TestProducer usb{Path("OvU3VTL.cti")};
    TestProducer custom{Path("KwTL.cti")};
};
