#include "Rounds.h"

RoundsTest::RoundsTest() {
    for (TestProducer* const producer : {&gev, &custom}) {
        producer->Reset();
        producer->SetInterfaceCount(kInterfaces);
        for (unsigned iface = 0; iface < kInterfaces; ++iface) {
            producer->SetDeviceCount(iface, kDevices);
        }
    }
    // Both producers would call their cameras the same.
    for (unsigned iface = 0; iface < kInterfaces; ++iface) {
        for (unsigned device = 0; device < kDevices; ++device) {
            gev.SetDeviceText(iface, device, "ID", ("Gev" + IdOf(iface, device)).c_str());
        }
    }
}

RoundsTest::~RoundsTest() {
    OVCloseLib();
    ExpectClosed(
        {"Library", "System", "Interface", "Device", "Stream", "Buffer", "Event", "Acquisition"});
    gev.Reset();
    custom.Reset();
}

void RoundsTest::SetUp() {
    ASSERT_OV_OK(OVInitLib());
    ASSERT_EQ(Update(), kCameras);
}

uint32_t RoundsTest::Update() {
    uint32_t count = 0;
    EXPECT_OV_OK(OVUpdateDeviceList(&count, 1000));
    return count;
}

uint32_t RoundsTest::IndexOf(const std::string& deviceId) {
    std::vector<OV_DEVICE_BASE_INFO> records(kCameras + 1);
    size_t size = records.size() * sizeof(OV_DEVICE_BASE_INFO);
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(records.data(), &size));
    for (uint32_t i = 0; i < size / sizeof(OV_DEVICE_BASE_INFO); ++i) {
        if (deviceId == records[i].szDeviceID) {
            return i + 1;
        }
    }
    ADD_FAILURE() << deviceId << " isn't on the list";
    return 0;
}

OV_DEV_HANDLE RoundsTest::Open(const std::string& deviceId) {
    OV_DEV_HANDLE handle = nullptr;
    EXPECT_OV_OK(OVOpenDeviceByIndex(IndexOf(deviceId), &handle));
    return handle;
}

OV_DEV_HANDLE RoundsTest::OpenRunning(TestProducer& producer, unsigned iface, unsigned device) {
    producer.SetFreeRunning(iface, device, 1);
    return Open((&producer == &gev ? "Gev" : "") + IdOf(iface, device));
}

std::string RoundsTest::IdOf(unsigned iface, unsigned device) {
    return "TestCamera" + std::to_string(iface) + "_" + std::to_string(device);
}

void RoundsTest::ExpectClosed(std::initializer_list<const char*> kinds) {
    for (const char* const kind : kinds) {
        EXPECT_EQ(gev.OpenCount(kind), 0) << kind;
        EXPECT_EQ(custom.OpenCount(kind), 0) << kind;
    }
}
