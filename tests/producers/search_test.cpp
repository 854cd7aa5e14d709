/// @file
/// How the test producer plays searches: cameras on two adapters, in foreign
/// subnets, and searches that take long.
#include <future>

#include "TestProducerFixture.h"

namespace {

class Search : public TestProducerTest {
protected:
    void SetUp() override { camera.OpenSystem(); }

    GenTL::IF_HANDLE OpenInterface(const char* id) {
        GenTL::bool8_t changed = 0;
        EXPECT_EQ(api.TLUpdateInterfaceList(camera.system, &changed, 0), 0);
        GenTL::IF_HANDLE iface = nullptr;
        EXPECT_EQ(api.TLOpenInterface(camera.system, id, &iface), 0);
        return iface;
    }
    std::uint32_t Find(GenTL::IF_HANDLE iface) {
        GenTL::bool8_t changed = 0;
        EXPECT_EQ(api.IFUpdateDeviceList(iface, &changed, 7), 0);
        std::uint32_t count = 0;
        EXPECT_EQ(api.IFGetNumDevices(iface, &count), 0);
        return count;
    }
    GenTL::GC_ERROR Open(GenTL::IF_HANDLE iface, const char* id, GenTL::DEV_HANDLE* device) {
        return api.IFOpenDevice(iface, id, GenTL::DEVICE_ACCESS_EXCLUSIVE, device);
    }
    template <typename T>
    void Write(GenTL::IF_HANDLE iface, std::uint64_t address, T value) {
        std::size_t size = sizeof value;
        ASSERT_EQ(api.GCWritePort(iface, address, &value, &size), 0);
    }
    void SearchWholeNetwork(GenTL::IF_HANDLE iface) { Write<std::int64_t>(iface, 0x240, 1); }
};

TEST_F(Search, OneCameraIsSeenOnTwoAdaptersAndOpensThroughOne) {
    control.SetInterfaceCount(2);
    control.SetDeviceCount(1, 0);
    ASSERT_EQ(control.ShareDevice(0, 0, 1), 0);
    GenTL::IF_HANDLE first = OpenInterface("TestInterface0");
    GenTL::IF_HANDLE second = OpenInterface("TestInterface1");
    EXPECT_EQ(Find(first), 1U);
    EXPECT_EQ(Find(second), 1U);
    GenTL::DEV_HANDLE device = nullptr;
    GenTL::DEV_HANDLE again = nullptr;
    EXPECT_EQ(Open(first, "TestCamera0_0", &device), 0);
    EXPECT_EQ(Open(second, "TestCamera0_0", &again), GenTL::GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(api.DevClose(device), 0);
    EXPECT_EQ(Open(second, "TestCamera0_0", &again), 0);
    EXPECT_EQ(api.DevClose(again), 0);
}

TEST_F(Search, AForeignCameraAnswersTheWholeNetworkOnly) {
    control.SetDeviceCount(0, 2);
    ASSERT_EQ(control.SetForeign(0, 1, 1), 0);
    GenTL::IF_HANDLE iface = OpenInterface("TestInterface0");
    EXPECT_EQ(Find(iface), 1U);
    SearchWholeNetwork(iface);
    EXPECT_EQ(Find(iface), 2U);
}

TEST_F(Search, AForeignCameraOpensByItsAddress) {
    control.SetForeign(0, 0, 1);
    GenTL::IF_HANDLE iface = OpenInterface("TestInterface0");
    EXPECT_EQ(Find(iface), 0U);
    GenTL::DEV_HANDLE device = nullptr;
    EXPECT_EQ(Open(iface, "IP::192.168.10.100", &device), 0);
    EXPECT_EQ(api.DevClose(device), 0);
}

TEST_F(Search, NotesItsTimeout) {
    EXPECT_EQ(control.SearchTimeout(0), -1);
    Find(OpenInterface("TestInterface0"));
    EXPECT_EQ(control.SearchTimeout(0), 7);
    EXPECT_EQ(control.SearchTimeout(9), -1);
}

TEST_F(Search, AHeldOneEndsWhenItIsAskedToStop) {
    GenTL::IF_HANDLE iface = OpenInterface("TestInterface0");
    ASSERT_EQ(control.HoldSearch(0, 1), 0);
    auto found = std::async(std::launch::async, [&] { return Find(iface); });
    ASSERT_EQ(control.WaitForCalls("IFUpdateDeviceList", 1, 60000), 0);
    Write<std::uint32_t>(iface, 0x248, 1);
    EXPECT_EQ(found.get(), 1U);
    EXPECT_EQ(control.StopUpdateCount(0), 1);
}

TEST_F(Search, AHeldOneEndsWithTheHold) {
    GenTL::IF_HANDLE iface = OpenInterface("TestInterface0");
    control.HoldSearch(0, 1);
    auto found = std::async(std::launch::async, [&] { return Find(iface); });
    ASSERT_EQ(control.WaitForCalls("IFUpdateDeviceList", 1, 60000), 0);
    control.HoldSearch(0, 0);
    EXPECT_EQ(found.get(), 1U);
}

TEST_F(Search, UnknownCamerasAndAdaptersAreRefused) {
    EXPECT_EQ(control.ShareDevice(0, 9, 0), -1);
    EXPECT_EQ(control.ShareDevice(0, 0, 9), -1);
    EXPECT_EQ(control.SetForeign(9, 0, 1), -1);
    EXPECT_EQ(control.HoldSearch(9, 1), -1);
}

}  // namespace
