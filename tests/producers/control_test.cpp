/// @file
/// The control interface of the test producer.
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "TestProducerFixture.h"

namespace {

class Control : public TestProducerTest {
protected:
    std::string LastText() {
        GenTL::GC_ERROR code = 0;
        return OpenCamera::Id(
            [&](char* text, std::size_t* size) { return api.GCGetLastError(&code, text, size); });
    }
};

TEST_F(Control, FailsTheNthCallAndNoOther) {
    camera.OpenSystem();
    ASSERT_EQ(control.FailCall("TLGetNumInterfaces", 2, GenTL::GC_ERR_IO), 0);
    std::uint32_t count = 0;
    EXPECT_EQ(api.TLGetNumInterfaces(camera.system, &count), 0);
    EXPECT_EQ(api.TLGetNumInterfaces(camera.system, &count), GenTL::GC_ERR_IO);
    EXPECT_EQ(LastText(), "Planned failure of TLGetNumInterfaces");
    EXPECT_EQ(api.TLGetNumInterfaces(camera.system, &count), 0);
}

TEST_F(Control, FailsEveryCallForNthZero) {
    control.FailCall("GCInitLib", 0, -10042);
    EXPECT_EQ(api.GCInitLib(), -10042);
    EXPECT_EQ(api.GCInitLib(), -10042);
    control.Reset();
    EXPECT_EQ(api.GCInitLib(), 0);
    camera.library = true;
}

TEST_F(Control, FailedCallDoesNothing) {
    camera.OpenSystem();
    control.FailCall("TLClose", 1, GenTL::GC_ERR_ERROR);
    EXPECT_EQ(api.TLClose(camera.system), GenTL::GC_ERR_ERROR);
    EXPECT_EQ(api.TLClose(camera.system), 0);
}

TEST_F(Control, FailAfterCallDoesTheWorkFirst) {
    camera.OpenSystem();
    control.FailAfterCall("TLClose", 1, GenTL::GC_ERR_ERROR);
    EXPECT_EQ(api.TLClose(camera.system), GenTL::GC_ERR_ERROR);
    EXPECT_EQ(api.TLClose(camera.system), GenTL::GC_ERR_INVALID_HANDLE);
}

TEST_F(Control, UnknownNamesAreRefused) {
    EXPECT_EQ(control.FailCall("TLNothing", 1, -1), -1);
    EXPECT_EQ(control.SetDeviceText(0, 0, "Nothing", ""), -1);
    EXPECT_EQ(control.SetDeviceText(7, 0, "Model", ""), -1);
    EXPECT_EQ(control.SetUrl("Nothing", ""), -1);
    EXPECT_EQ(control.SetFrame(0, 0, "Nothing", 1), -1);
    EXPECT_EQ(control.OpenCount("Nothing"), -1);
}

TEST_F(Control, RefusesACommand) {
    camera.OpenSystem();
    control.FailCommand("TLGetInfo", GenTL::TL_INFO_MODEL, GenTL::GC_ERR_NOT_AVAILABLE);
    std::size_t size = 0;
    EXPECT_EQ(api.TLGetInfo(camera.system, GenTL::TL_INFO_MODEL, nullptr, nullptr, &size),
              GenTL::GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(api.TLGetInfo(camera.system, GenTL::TL_INFO_VENDOR, nullptr, nullptr, &size), 0);
}

TEST_F(Control, LiesAboutSizes) {
    camera.OpenSystem();
    control.LieAboutSize("TLGetInfo", -3);
    std::size_t size = 0;
    ASSERT_EQ(api.TLGetInfo(camera.system, GenTL::TL_INFO_MODEL, nullptr, nullptr, &size), 0);
    EXPECT_EQ(size, sizeof "TestProducer" - 3);
}

TEST_F(Control, BlockedCallWaitsForItsRelease) {
    camera.OpenSystem();
    control.BlockCall("TLClose");
    std::atomic<bool> done = false;
    std::jthread closer([&] {
        api.TLClose(camera.system);
        done = true;
    });
    ASSERT_EQ(control.WaitForCalls("TLClose", 1, 10000), 0);
    EXPECT_FALSE(done);
    control.ReleaseCall("TLClose");
    closer.join();
    EXPECT_TRUE(done);
}

TEST_F(Control, WaitForCallsGivesUp) {
    EXPECT_EQ(control.WaitForCalls("TLClose", 1, 1), -1);
}

TEST_F(Control, CountsAndLogsCalls) {
    camera.OpenSystem();
    api.TLClose(nullptr);
    EXPECT_EQ(control.CallCount("TLClose"), 1U);
    EXPECT_EQ(control.SuccessCount("TLClose"), 0U);
    EXPECT_EQ(control.Log(), (std::vector<std::string>{"GCInitLib", "TLOpen", "TLClose"}));
    control.ClearLog();
    EXPECT_TRUE(control.Log().empty());
}

TEST_F(Control, BalancesOpensAndCloses) {
    camera.OpenStream();
    camera.Start(2, kFrameSize);
    for (const char* kind :
         {"Library", "System", "Interface", "Device", "Stream", "Event", "Acquisition"}) {
        EXPECT_EQ(control.OpenCount(kind), 1) << kind;
    }
    EXPECT_EQ(control.OpenCount("Buffer"), 2);
    api.DSStopAcquisition(camera.stream, 0);
    EXPECT_EQ(control.OpenCount("Acquisition"), 0);
}

TEST_F(Control, RecordsTheCallsBeyondTheStandard) {
    camera.OpenInterface();
    ASSERT_EQ(api.IFForceIp(camera.iface, "TestCamera0_0", "1.2.3.4", "255.0.0.0", "1.2.3.1"), 0);
    EXPECT_EQ(control.ExtensionCall(), "IFForceIp|TestCamera0_0|1.2.3.4|255.0.0.0|1.2.3.1");
    ASSERT_EQ(api.IFIpConfiguration(camera.iface, "TestCamera0_0", 2, "a", "b", nullptr, "me"), 0);
    EXPECT_EQ(control.ExtensionCall(), "IFIpConfiguration|TestCamera0_0|2|a|b||me");
    ASSERT_EQ(api.IFResetDevice(camera.iface, "TestCamera0_0", 1), 0);
    EXPECT_EQ(control.ExtensionCall(), "IFResetDevice|TestCamera0_0|1");
    EXPECT_EQ(api.IFResetDevice(camera.iface, "None", 1), GenTL::GC_ERR_INVALID_ID);
}

TEST_F(Control, FactsCanBeChanged) {
    control.SetDeviceText(0, 0, "SerialNumber", "S42");
    control.SetDeviceNumber(0, 0, "AccessStatus", GenTL::DEVICE_ACCESS_STATUS_NOACCESS);
    control.SetInterfaceText(0, "DisplayName", "Adapter");
    camera.OpenInterface();
    EXPECT_EQ(GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
                  return api.IFGetDeviceInfo(camera.iface, "TestCamera0_0",
                                             GenTL::DEVICE_INFO_SERIAL_NUMBER, type, out, size);
              }),
              "S42");
    EXPECT_EQ(GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
                  return api.IFGetInfo(camera.iface, GenTL::INTERFACE_INFO_DISPLAYNAME, type, out,
                                       size);
              }),
              "Adapter");
}

TEST_F(Control, DescriptionCanBeReplaced) {
    const std::string xml = "<own/>";
    control.SetDescription("Remote", "Own.xml", xml.data(), xml.size());
    camera.OpenDevice();
    const std::string url = GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
        return api.GCGetPortURLInfo(camera.port, 0, GenTL::URL_INFO_URL, type, out, size);
    });
    EXPECT_EQ(url, "Local:Own.xml;10000;6?SchemaVersion=1.1.0");
    char file[7] = {};
    std::size_t size = 6;
    ASSERT_EQ(api.GCReadPort(camera.port, 0x10000, file, &size), 0);
    EXPECT_EQ(file, xml);
}

TEST_F(Control, UrlCanBeReplacedOrTakenAway) {
    control.SetUrl("System", "Http://nowhere");
    control.SetUrl("Interface", "");
    camera.OpenInterface();
    EXPECT_EQ(GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
                  return api.GCGetPortURLInfo(camera.system, 0, GenTL::URL_INFO_URL, type, out,
                                              size);
              }),
              "Http://nowhere");
    std::uint32_t count = 9;
    ASSERT_EQ(api.GCGetNumPortURLs(camera.iface, &count), 0);
    EXPECT_EQ(count, 0U);
}

TEST_F(Control, MemoryIsTheCameras) {
    camera.OpenDevice();
    const std::uint32_t value = 0xCAFE;
    ASSERT_EQ(control.WriteMemory(0, 0, 0x9000, &value, sizeof value), 0);
    EXPECT_EQ(camera.ReadRegister<std::uint32_t>(0x9000), 0xCAFEU);
    camera.WriteRegister<std::uint32_t>(0x9000, 7);
    std::uint32_t read = 0;
    ASSERT_EQ(control.ReadMemory(0, 0, 0x9000, &read, sizeof read), 0);
    EXPECT_EQ(read, 7U);
    EXPECT_EQ(control.ReadMemory(0, 0, 0xFFFE, &read, sizeof read), -1);
}

TEST_F(Control, CommandsAreCounted) {
    camera.OpenDevice();
    camera.WriteRegister<std::uint32_t>(0x500, 1);
    camera.WriteRegister<std::uint32_t>(0x50C, 1);
    EXPECT_EQ(control.CommandCount(0, 0, "AcquisitionStart"), 1);
    EXPECT_EQ(control.CommandCount(0, 0, "UserSetLoad"), 1);
    EXPECT_EQ(control.CommandCount(0, 0, "UserSetSave"), 0);
    EXPECT_EQ(control.CommandCount(0, 0, "Nothing"), -1);
}

TEST_F(Control, FramesCanSayWhatTheyLike) {
    camera.OpenStream();
    camera.Start(2, kFrameSize);
    control.SetFrame(0, 0, "Incomplete", 1);
    control.SetFrame(0, 0, "Width", 9);
    control.Trigger(0, 0, 1);
    GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(buffer, GenTL::BUFFER_INFO_IS_INCOMPLETE), 1);
    EXPECT_EQ(camera.BufferInfo<std::size_t>(buffer, GenTL::BUFFER_INFO_WIDTH), 9U);
    control.SetFrame(0, 0, "Incomplete", -1);
    control.Trigger(0, 0, 1);
    buffer = camera.NextFrame();
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(buffer, GenTL::BUFFER_INFO_IS_INCOMPLETE), 0);
}

TEST_F(Control, AFrameThatIsNotDrawnKeepsWhatTheMemoryHolds) {
    camera.OpenStream();
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 1);
    GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
    auto* const memory = camera.BufferInfo<std::uint8_t*>(buffer, GenTL::BUFFER_INFO_BASE);
    EXPECT_EQ(memory[1], 1);
    control.SetFrame(0, 0, "Draw", 0);
    memory[1] = 0xA5;
    ASSERT_EQ(api.DSQueueBuffer(camera.stream, buffer), 0);
    control.Trigger(0, 0, 1);
    buffer = camera.NextFrame();
    EXPECT_EQ(memory[1], 0xA5);
    EXPECT_EQ(camera.BufferInfo<std::uint64_t>(buffer, GenTL::BUFFER_INFO_FRAMEID), 1U);
}

TEST_F(Control, CallsThatNobodyWatchesAreNeitherRecordedNorFail) {
    control.FailCall("GCGetInfo", 0, GenTL::GC_ERR_IO);
    control.ClearLog();
    control.WatchCalls(0);
    std::size_t size = 0;
    EXPECT_EQ(api.GCGetInfo(GenTL::TL_INFO_ID, nullptr, nullptr, &size), 0);
    EXPECT_TRUE(control.Log().empty());
    control.WatchCalls(1);
    EXPECT_EQ(api.GCGetInfo(GenTL::TL_INFO_ID, nullptr, nullptr, &size), GenTL::GC_ERR_IO);
    EXPECT_EQ(control.Log().size(), 1U);
}

TEST_F(Control, FramesCountFromZeroAfterTheCamerasStart) {
    camera.OpenStream();
    camera.Start(2, kFrameSize);
    control.Trigger(0, 0, 1);
    camera.NextFrame();
    camera.WriteRegister<std::uint32_t>(0x500, 1);
    control.Trigger(0, 0, 1);
    EXPECT_EQ(camera.BufferInfo<std::uint64_t>(camera.NextFrame(), GenTL::BUFFER_INFO_FRAMEID), 0U);
}

TEST_F(Control, SearchModeAndStopReachTheInterface) {
    camera.OpenInterface();
    std::int64_t mode = 1;
    std::size_t size = sizeof mode;
    ASSERT_EQ(api.GCWritePort(camera.iface, 0x240, &mode, &size), 0);
    EXPECT_EQ(control.SearchMode(0), 1);
    std::uint32_t stop = 1;
    size = sizeof stop;
    ASSERT_EQ(api.GCWritePort(camera.iface, 0x248, &stop, &size), 0);
    EXPECT_EQ(control.StopUpdateCount(0), 1);
}

// --- The name of the file decides which producer it is. ---

struct NameCase {
    const char* file;
    const char* tlType;
};
class FileName : public testing::TestWithParam<NameCase> {};

TEST_P(FileName, SetsTheTransportType) {
    namespace fs = std::filesystem;
    const fs::path folder =
        fs::temp_directory_path() / ("ov_control_test_" + std::to_string(getpid()));
    fs::create_directories(folder);
    const fs::path file = folder / GetParam().file;
    fs::copy_file(OV_TEST_PRODUCER, file, fs::copy_options::overwrite_existing);
    {
        const GenTLApi api(file);
        EXPECT_EQ(GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
                      return api.GCGetInfo(GenTL::TL_INFO_TLTYPE, type, out, size);
                  }),
                  GetParam().tlType);
    }
    fs::remove_all(folder);
}

INSTANTIATE_TEST_SUITE_P(Files, FileName,
                         testing::Values(NameCase{"OvGVTL.cti", "GEV"},
                                         NameCase{"OvU3VTL.cti", "U3V"},
                                         NameCase{"KwTL.cti", "Custom"}));

}  // namespace
