/// @file
/// Opening, closing and listing of modules, and handles that outlive them.
#include "TestProducerFixture.h"

namespace {

using ModuleTree = TestProducerTest;

TEST_F(ModuleTree, NothingWorksBeforeTheLibraryIsInitialised) {
    GenTL::TL_HANDLE system = nullptr;
    EXPECT_EQ(api.TLOpen(&system), GenTL::GC_ERR_NOT_INITIALIZED);
    EXPECT_EQ(api.IFClose(&system), GenTL::GC_ERR_NOT_INITIALIZED);
    EXPECT_EQ(api.GCCloseLib(), GenTL::GC_ERR_NOT_INITIALIZED);
}

TEST_F(ModuleTree, ProducerTellsOfItselfBeforeItIsInitialised) {
    EXPECT_EQ(GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
                  return api.GCGetInfo(GenTL::TL_INFO_TLTYPE, type, out, size);
              }),
              "Custom");
    EXPECT_EQ(GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
                  return api.GCGetInfo(GenTL::TL_INFO_NAME, type, out, size);
              }),
              "test_producer.cti");
}

TEST_F(ModuleTree, SecondInitIsRefusedAndInitMayFollowAClose) {
    ASSERT_EQ(api.GCInitLib(), 0);
    EXPECT_EQ(api.GCInitLib(), GenTL::GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(api.GCCloseLib(), 0);
    ASSERT_EQ(api.GCInitLib(), 0);
    ASSERT_EQ(api.GCCloseLib(), 0);
}

TEST_F(ModuleTree, SecondOpenOfEachModuleIsRefused) {
    camera.OpenStream();
    void* again = nullptr;
    EXPECT_EQ(api.TLOpen(&again), GenTL::GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(api.TLOpenInterface(camera.system, camera.interfaceId.c_str(), &again),
              GenTL::GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(api.IFOpenDevice(camera.iface, camera.deviceId.c_str(), 3, &again),
              GenTL::GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(api.DevOpenDataStream(camera.device, camera.streamId.c_str(), &again),
              GenTL::GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(again, nullptr);
}

TEST_F(ModuleTree, UnknownIdsAreRefused) {
    camera.OpenDevice();
    void* handle = nullptr;
    EXPECT_EQ(api.TLOpenInterface(camera.system, "None", &handle), GenTL::GC_ERR_INVALID_ID);
    EXPECT_EQ(api.IFOpenDevice(camera.iface, "None", 3, &handle), GenTL::GC_ERR_INVALID_ID);
    EXPECT_EQ(api.DevOpenDataStream(camera.device, "None", &handle), GenTL::GC_ERR_INVALID_ID);
}

TEST_F(ModuleTree, AccessMustBeOneThatOpens) {
    camera.OpenInterface();
    void* handle = nullptr;
    for (const GenTL::DEVICE_ACCESS_FLAGS flags : {0, 1, 5}) {
        EXPECT_EQ(api.IFOpenDevice(camera.iface, "TestCamera0_0", flags, &handle),
                  GenTL::GC_ERR_INVALID_PARAMETER);
    }
}

TEST_F(ModuleTree, ReadOnlyDeviceCantBeWritten) {
    camera.OpenInterface();
    ASSERT_EQ(api.IFOpenDevice(camera.iface, "TestCamera0_0", GenTL::DEVICE_ACCESS_READONLY,
                               &camera.device),
              0);
    ASSERT_EQ(api.DevGetPort(camera.device, &camera.port), 0);
    std::uint32_t value = 32;
    std::size_t size = sizeof value;
    EXPECT_EQ(api.GCWritePort(camera.port, 0x400, &value, &size), GenTL::GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(camera.ReadRegister<std::uint32_t>(0x400), 64U);
}

TEST_F(ModuleTree, HandlesOfClosedModulesAreVoid) {
    camera.OpenStream();
    ASSERT_EQ(api.TLClose(camera.system), 0);
    std::uint32_t count = 0;
    std::size_t size = sizeof count;
    EXPECT_EQ(api.TLClose(camera.system), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(api.IFGetNumDevices(camera.iface, &count), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(api.DevGetNumDataStreams(camera.device, &count), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(api.GCReadPort(camera.port, 0, &count, &size), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(api.DSClose(camera.stream), GenTL::GC_ERR_INVALID_HANDLE);
}

TEST_F(ModuleTree, HandlesStayVoidAfterANewInit) {
    camera.OpenStream();
    ASSERT_EQ(api.GCCloseLib(), 0);
    ASSERT_EQ(api.GCInitLib(), 0);
    EXPECT_EQ(api.DSClose(camera.stream), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(api.DevClose(camera.device), GenTL::GC_ERR_INVALID_HANDLE);
}

TEST_F(ModuleTree, WildHandlesAreRefused) {
    camera.OpenSystem();
    int object = 0;
    for (void* handle : {static_cast<void*>(nullptr), static_cast<void*>(&object),
                         reinterpret_cast<void*>(0x10), reinterpret_cast<void*>(~0ULL)}) {
        EXPECT_EQ(api.IFClose(handle), GenTL::GC_ERR_INVALID_HANDLE);
        EXPECT_EQ(api.EventKill(handle), GenTL::GC_ERR_INVALID_HANDLE);
        EXPECT_EQ(api.DSQueueBuffer(handle, handle), GenTL::GC_ERR_INVALID_HANDLE);
    }
}

TEST_F(ModuleTree, HandleOfAnotherKindIsRefused) {
    camera.OpenStream();
    EXPECT_EQ(api.IFClose(camera.device), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(api.DSClose(camera.port), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(api.EventKill(camera.stream), GenTL::GC_ERR_INVALID_HANDLE);
}

TEST_F(ModuleTree, ListsAreEmptyBeforeTheFirstUpdate) {
    camera.OpenSystem();
    std::uint32_t count = 7;
    ASSERT_EQ(api.TLGetNumInterfaces(camera.system, &count), 0);
    EXPECT_EQ(count, 0U);
    char text[64];
    std::size_t size = sizeof text;
    EXPECT_EQ(api.TLGetInterfaceID(camera.system, 0, text, &size), GenTL::GC_ERR_INVALID_INDEX);
}

TEST_F(ModuleTree, UpdateTellsWhetherTheListChanged) {
    camera.OpenInterface();
    GenTL::bool8_t changed = 7;
    ASSERT_EQ(api.IFUpdateDeviceList(camera.iface, &changed, 100), 0);
    EXPECT_EQ(changed, 0);
    control.SetDeviceCount(0, 3);
    std::uint32_t count = 0;
    ASSERT_EQ(api.IFGetNumDevices(camera.iface, &count), 0);
    EXPECT_EQ(count, 1U);
    ASSERT_EQ(api.IFUpdateDeviceList(camera.iface, &changed, 100), 0);
    EXPECT_EQ(changed, 1);
    ASSERT_EQ(api.IFGetNumDevices(camera.iface, &count), 0);
    EXPECT_EQ(count, 3U);
}

TEST_F(ModuleTree, LostDeviceLeavesTheListAndReturns) {
    camera.OpenInterface();
    GenTL::bool8_t changed = 0;
    std::uint32_t count = 0;
    control.LoseDevice(0, 0);
    ASSERT_EQ(api.IFUpdateDeviceList(camera.iface, &changed, 100), 0);
    ASSERT_EQ(api.IFGetNumDevices(camera.iface, &count), 0);
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(count, 0U);
    control.ReturnDevice(0, 0);
    ASSERT_EQ(api.IFUpdateDeviceList(camera.iface, &changed, 100), 0);
    EXPECT_EQ(changed, 1);
}

TEST_F(ModuleTree, LostDeviceAnswersWithItsOwnCode) {
    camera.OpenDevice();
    control.LoseDevice(0, 0);
    std::uint32_t value = 0;
    std::size_t size = sizeof value;
    EXPECT_EQ(api.GCReadPort(camera.port, 0x400, &value, &size), GenTL::GC_ERR_CUSTOM_ID);
    EXPECT_EQ(api.GCWritePort(camera.port, 0x400, &value, &size), GenTL::GC_ERR_CUSTOM_ID);
    EXPECT_EQ(api.GCReadPort(camera.device, 0, &value, &size), GenTL::GC_ERR_CUSTOM_ID);
    EXPECT_EQ(api.DevClose(camera.device), 0);
}

TEST_F(ModuleTree, OpenInterfaceStaysWhenItLeavesTheList) {
    camera.OpenInterface();
    control.LoseInterface(0);
    GenTL::bool8_t changed = 0;
    ASSERT_EQ(api.TLUpdateInterfaceList(camera.system, &changed, 100), 0);
    EXPECT_EQ(changed, 1);
    std::uint32_t count = 0;
    EXPECT_EQ(api.IFGetNumDevices(camera.iface, &count), 0);
    EXPECT_EQ(api.IFClose(camera.iface), 0);
}

TEST_F(ModuleTree, RemotePortIsTheSameEachTime) {
    camera.OpenDevice();
    GenTL::PORT_HANDLE again = nullptr;
    ASSERT_EQ(api.DevGetPort(camera.device, &again), 0);
    EXPECT_EQ(again, camera.port);
}

TEST_F(ModuleTree, DeviceCanBeReachedByItsAddress) {
    control.SetProducerText("TLType", "GEV");
    camera.OpenInterface();
    void* handle = nullptr;
    ASSERT_EQ(api.IFOpenDevice(camera.iface, "IP::192.168.10.100", 4, &handle), 0);
    EXPECT_EQ(GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
                  return api.DevGetInfo(handle, GenTL::DEVICE_INFO_ID, type, out, size);
              }),
              "TestCamera0_0");
}

TEST_F(ModuleTree, OpeningChangesTheAccessStatus) {
    camera.OpenDevice();
    const auto status = [&] {
        return GenTLApi::Number<std::int32_t>([&](auto* type, void* out, std::size_t* size) {
            return api.IFGetDeviceInfo(camera.iface, camera.deviceId.c_str(),
                                       GenTL::DEVICE_INFO_ACCESS_STATUS, type, out, size);
        });
    };
    EXPECT_EQ(status(), GenTL::DEVICE_ACCESS_STATUS_OPEN_READWRITE);
    ASSERT_EQ(api.DevClose(camera.device), 0);
    EXPECT_EQ(status(), GenTL::DEVICE_ACCESS_STATUS_READWRITE);
}

TEST_F(ModuleTree, NullResultPointersAreRefused) {
    camera.OpenDevice();
    EXPECT_EQ(api.TLGetNumInterfaces(camera.system, nullptr), GenTL::GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(api.IFOpenDevice(camera.iface, nullptr, 3, nullptr), GenTL::GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(api.DevOpenDataStream(camera.device, "Stream0", nullptr),
              GenTL::GC_ERR_INVALID_PARAMETER);
    void* stream = nullptr;
    EXPECT_EQ(api.DevOpenDataStream(camera.device, "Stream0", &stream), 0);
}

TEST_F(ModuleTree, FileCanBeUnloadedAfterTheClose) {
    camera.OpenStream();
    ASSERT_EQ(api.GCCloseLib(), 0);
    camera.library = false;
    void* own = dlopen(OV_TEST_VIRTUAL_PRODUCER, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(own, nullptr) << dlerror();
    dlclose(own);
    EXPECT_EQ(dlopen(OV_TEST_VIRTUAL_PRODUCER, RTLD_NOW | RTLD_NOLOAD), nullptr);
}

}  // namespace
