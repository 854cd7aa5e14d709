/// @file
/// The virtual cameras through the flat functions, as the library uses them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "VirtualCameraFixture.h"
#include "virtual/CameraSettings.h"
#include "virtual/Scene.h"

using namespace OvVirtual;

namespace {

class VirtualCamera : public VirtualCameraTest {
protected:
    explicit VirtualCamera(const char* frameRate = "0") : VirtualCameraTest(frameRate) {
        unsetenv("OV_VIRTUAL_CAMERAS");
    }
    ~VirtualCamera() override { unsetenv("OV_VIRTUAL_CAMERAS"); }

    const std::vector<std::byte>& Memory(GenTL::BUFFER_HANDLE buffer) const {
        return camera.memory[reinterpret_cast<std::size_t>(
            camera.BufferInfo<void*>(buffer, GenTL::BUFFER_INFO_USER_PTR))];
    }

    std::string DeviceText(GenTL::DEVICE_INFO_CMD command, const char* id) const {
        return GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
            return api.IFGetDeviceInfo(camera.iface, id, command, type, out, size);
        });
    }

    /// The settings as the renderer takes them, small window included.
    static FrameSettings Expected(bool color, unsigned index) {
        CameraSettings settings = FactorySettings(color);
        settings.width = 64;
        settings.height = 32;
        return FrameSettingsOf(settings, color, index);
    }

    static std::vector<std::byte> Rendered(const FrameSettings& settings, std::uint64_t frame) {
        std::vector<std::byte> out(FrameSize(settings));
        FrameRenderer().Render(settings, frame, out);
        return out;
    }
};

TEST_F(VirtualCamera, OneOfColorAndOneOfGreyByDefault) {
    camera.OpenInterface();
    std::uint32_t count = 0;
    ASSERT_EQ(api.IFGetNumDevices(camera.iface, &count), 0);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(DeviceText(GenTL::DEVICE_INFO_MODEL, "Virtual-5M-Color_VC000001"),
              "Virtual-5M-Color");
    EXPECT_EQ(DeviceText(GenTL::DEVICE_INFO_MODEL, "Virtual-5M-Mono_VC000002"), "Virtual-5M-Mono");
    EXPECT_EQ(DeviceText(GenTL::DEVICE_INFO_TLTYPE, "Virtual-5M-Mono_VC000002"), "Custom");
}

TEST_F(VirtualCamera, EnvironmentSetsTheirNumber) {
    for (const auto& [text, expected] :
         {std::pair{"5", 5U}, std::pair{"0", 0U}, std::pair{"many", 2U}, std::pair{"-1", 2U}}) {
        setenv("OV_VIRTUAL_CAMERAS", text, 1);
        OpenCamera opened(api);
        opened.OpenInterface();
        std::uint32_t count = 99;
        ASSERT_EQ(api.IFGetNumDevices(opened.iface, &count), 0);
        EXPECT_EQ(count, expected) << text;
    }
}

TEST_F(VirtualCamera, HasNoCallsBeyondTheStandard) {
    EXPECT_EQ(api.IFForceIp, nullptr);
    EXPECT_EQ(api.IFIpConfiguration, nullptr);
    EXPECT_EQ(api.IFResetDevice, nullptr);
    EXPECT_NE(api.DSGetBufferChunkData, nullptr);
}

TEST_F(VirtualCamera, DescriptionIsZipped) {
    camera.OpenDevice();
    EXPECT_EQ(GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
                  return api.GCGetPortURLInfo(camera.port, 0, GenTL::URL_INFO_FILENAME, type, out,
                                              size);
              }),
              "OvVirtualCamera_1_0_0.zip");
}

class EachCamera : public VirtualCamera, public testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(Sensors, EachCamera, testing::Bool(),
                         [](const auto& sensor) { return sensor.param ? "Color" : "Mono"; });

TEST_P(EachCamera, FramesAreWhatTheRendererMakes) {
    const bool color = GetParam();
    camera.OpenStream(color ? 0 : 1);
    Shrink();
    Grab(3);
    for (std::uint64_t frame = 0; frame < 6; ++frame) {
        const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
        EXPECT_EQ(FrameId(buffer), frame);
        EXPECT_EQ(Memory(buffer), Rendered(Expected(color, color ? 0 : 1), frame));
        ASSERT_EQ(api.DSQueueBuffer(camera.stream, buffer), 0);
    }
}

TEST_P(EachCamera, OffersItsFormatsOnly) {
    const bool color = GetParam();
    camera.OpenDevice(color ? 0 : 1);
    EXPECT_EQ(TryWrite(Reg::PixelFormat, 0x01080001), 0);
    EXPECT_EQ(TryWrite(Reg::PixelFormat, 0x01080009), color ? 0 : GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::PixelFormat, 0x010C0047), color ? GenTL::GC_ERR_INVALID_VALUE : 0);
    EXPECT_EQ(TryWrite(Reg::PixelFormat, 0x12345678), GenTL::GC_ERR_INVALID_VALUE);
}

TEST_F(VirtualCamera, StartsWithTheWholeSensor) {
    camera.OpenDevice();
    EXPECT_EQ(Read(Reg::Width), 2448U);
    EXPECT_EQ(Read(Reg::Height), 2048U);
    EXPECT_EQ(Read(Reg::PixelFormat), 0x01080009U);
    EXPECT_EQ(Read(Reg::Payload), 2448U * 2048U);
}

TEST_F(VirtualCamera, FullFrameFillsItsBuffer) {
    camera.OpenStream();
    Grab(2);
    const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
    EXPECT_EQ(camera.BufferInfo<std::size_t>(buffer, GenTL::BUFFER_INFO_SIZE_FILLED),
              2448U * 2048U);
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(buffer, GenTL::BUFFER_INFO_IS_INCOMPLETE), 0);
}

struct PayloadCase {
    std::uint32_t format;
    std::uint32_t payload;
    std::uint32_t bits;
};
class Payloads : public VirtualCamera, public testing::WithParamInterface<PayloadCase> {};

TEST_P(Payloads, FollowTheFormat) {
    camera.OpenDevice();
    Shrink();
    Write(Reg::PixelFormat, GetParam().format);
    EXPECT_EQ(Read(Reg::Payload), GetParam().payload);
    EXPECT_EQ(Read(Reg::PixelSize), GetParam().bits);
}

INSTANTIATE_TEST_SUITE_P(Formats, Payloads,
                         testing::Values(PayloadCase{0x01080009, 2048, 8},
                                         PayloadCase{0x0110000D, 4096, 16},
                                         PayloadCase{0x010A0058, 2560, 10},
                                         PayloadCase{0x010C002B, 3072, 12},
                                         PayloadCase{0x010C0059, 3072, 12}));

TEST_F(VirtualCamera, ColorFilterFollowsTheFormat) {
    camera.OpenDevice();
    EXPECT_EQ(Read(Reg::ColorFilter), 1U);
    Write(Reg::PixelFormat, 0x01080001);
    EXPECT_EQ(Read(Reg::ColorFilter), 0U);
}

TEST_F(VirtualCamera, ImageMustLieOnTheSensor) {
    camera.OpenDevice();
    EXPECT_EQ(TryWrite(Reg::OffsetX, 4), GenTL::GC_ERR_INVALID_VALUE);
    Write(Reg::Width, 2400);
    EXPECT_EQ(TryWrite(Reg::OffsetX, 48), 0);
    EXPECT_EQ(TryWrite(Reg::OffsetX, 52), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::Width, 2404), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(Read(Reg::Width), 2400U);
}

TEST_F(VirtualCamera, SizesStepByTheirIncrements) {
    camera.OpenDevice();
    EXPECT_EQ(TryWrite(Reg::Width, 66), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::Height, 33), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::Width, 12), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::Width, 68), 0);
}

TEST_F(VirtualCamera, BinningShrinksTheImage) {
    camera.OpenDevice();
    Write(Reg::BinningX, 2);
    EXPECT_EQ(Read(Reg::WidthMax), 1224U);
    EXPECT_EQ(Read(Reg::Width), 1224U);
    EXPECT_EQ(Read(Reg::Height), 2048U);
    Write(Reg::BinningX, 1);
    EXPECT_EQ(Read(Reg::Width), 2448U);
    EXPECT_EQ(TryWrite(Reg::BinningX, 3), GenTL::GC_ERR_INVALID_VALUE);
}

TEST_F(VirtualCamera, WhatShapesAFrameIsLockedWhileItFlows) {
    camera.OpenStream();
    Shrink();
    Write(Reg::Start, 1);
    for (const std::uint64_t address : {Reg::Width, Reg::Height, Reg::PixelFormat, Reg::BinningX}) {
        EXPECT_EQ(TryWrite(address, Read(address)), GenTL::GC_ERR_ACCESS_DENIED);
    }
    EXPECT_EQ(TryWrite(Reg::Exposure, 100), 0);
    EXPECT_EQ(TryWrite(Reg::OffsetX, 100), 0);
    Write(Reg::Stop, 1);
    EXPECT_EQ(TryWrite(Reg::Width, 128), 0);
}

TEST_F(VirtualCamera, HostMayLockTheShape) {
    camera.OpenDevice();
    Write(Reg::Locked, 1);
    EXPECT_EQ(TryWrite(Reg::Width, 64), GenTL::GC_ERR_ACCESS_DENIED);
    Write(Reg::Locked, 0);
    EXPECT_EQ(TryWrite(Reg::Width, 64), 0);
}

TEST_F(VirtualCamera, CloseStopsAndUnlocksTheCamera) {
    camera.OpenDevice();
    Write(Reg::Locked, 1);
    Write(Reg::Start, 1);
    ASSERT_EQ(api.DevClose(camera.device), 0);
    ASSERT_EQ(api.IFOpenDevice(camera.iface, camera.deviceId.c_str(), 4, &camera.device), 0);
    ASSERT_EQ(api.DevGetPort(camera.device, &camera.port), 0);
    EXPECT_EQ(Read(Reg::Locked), 0U);
    EXPECT_EQ(Read(Reg::Status), 0U);
}

TEST_F(VirtualCamera, ExposureChangesThePicture) {
    camera.OpenStream();
    Shrink();
    Write(Reg::Exposure, 2000);
    Grab(1);
    FrameSettings dark = Expected(true, 0);
    dark.exposure = 1000;
    EXPECT_EQ(Memory(camera.NextFrame()), Rendered(dark, 0));
}

TEST_F(VirtualCamera, SingleFrameModeTakesOne) {
    camera.OpenStream();
    Shrink();
    Write(Reg::Mode, 1);
    Grab(3);
    camera.NextFrame();
    GenTL::S_EVENT_NEW_BUFFER data{};
    EXPECT_EQ(camera.GetFrame(data, 20), GenTL::GC_ERR_TIMEOUT);
    EXPECT_EQ(Read(Reg::Status), 0U);
}

TEST_F(VirtualCamera, MultiFrameModeTakesItsCount) {
    camera.OpenStream();
    Shrink();
    Write(Reg::Mode, 2);
    Write(Reg::FrameCount, 3);
    Grab(5);
    for (std::uint64_t frame = 0; frame < 3; ++frame) {
        EXPECT_EQ(FrameId(camera.NextFrame()), frame);
    }
    GenTL::S_EVENT_NEW_BUFFER data{};
    EXPECT_EQ(camera.GetFrame(data, 20), GenTL::GC_ERR_TIMEOUT);
}

TEST_F(VirtualCamera, EachStartCountsFromZero) {
    camera.OpenStream();
    Shrink();
    Write(Reg::Mode, 1);
    Grab(3);
    EXPECT_EQ(FrameId(camera.NextFrame()), 0U);
    Write(Reg::Start, 1);
    EXPECT_EQ(FrameId(camera.NextFrame()), 0U);
}

TEST_F(VirtualCamera, TriggerTakesOneFrameEach) {
    camera.OpenStream();
    Shrink();
    Write(Reg::TriggerMode, 1);
    Write(Reg::Software, 1);  // before the start, so it's not for this acquisition
    Grab(4);
    GenTL::S_EVENT_NEW_BUFFER data{};
    EXPECT_EQ(camera.GetFrame(data, 20), GenTL::GC_ERR_TIMEOUT);
    Write(Reg::StatusSelector, 1);
    EXPECT_EQ(Read(Reg::Status), 1U);
    EXPECT_EQ(Read(Reg::TriggerWait), 1U);
    EXPECT_EQ(Read(Reg::Active), 1U);
    Write(Reg::Software, 1);
    Write(Reg::Software, 1);
    EXPECT_EQ(FrameId(camera.NextFrame()), 0U);
    EXPECT_EQ(FrameId(camera.NextFrame()), 1U);
    EXPECT_EQ(camera.GetFrame(data, 20), GenTL::GC_ERR_TIMEOUT);
}

TEST_F(VirtualCamera, SoftwareTriggerIsDeafForTheLine) {
    camera.OpenStream();
    Shrink();
    Write(Reg::TriggerMode, 1);
    Write(Reg::TriggerSource, 1);
    Grab(1);
    Write(Reg::Software, 1);
    GenTL::S_EVENT_NEW_BUFFER data{};
    EXPECT_EQ(camera.GetFrame(data, 20), GenTL::GC_ERR_TIMEOUT);
}

TEST_F(VirtualCamera, UserIdIsKeptAndListed) {
    camera.OpenDevice();
    char name[64] = "a name of more than sixteen";
    std::size_t size = sizeof name;
    ASSERT_EQ(api.GCWritePort(camera.port, Reg::UserId, name, &size), 0);
    ASSERT_EQ(api.DevClose(camera.device), 0);
    EXPECT_EQ(DeviceText(GenTL::DEVICE_INFO_USER_DEFINED_NAME, camera.deviceId.c_str()), name);
}

TEST_F(VirtualCamera, UserSetsKeepSettings) {
    camera.OpenDevice();
    Write(Reg::Gain, 60);
    SaveSet(1);
    LoadSet(0);
    EXPECT_EQ(Read(Reg::Gain), 0U);
    LoadSet(1);
    EXPECT_EQ(Read(Reg::Gain), 60U);
}

TEST_F(VirtualCamera, FactorySetCantBeOverwritten) {
    camera.OpenDevice();
    EXPECT_EQ(TryWrite(Reg::SetSave, 1), GenTL::GC_ERR_ACCESS_DENIED);
}

TEST_F(VirtualCamera, ResetLoadsTheDefaultSet) {
    camera.OpenDevice();
    Write(Reg::Gain, 60);
    SaveSet(2);
    Write(Reg::SetDefault, 2);
    Write(Reg::Gain, 10);
    Write(Reg::Reset, 1);
    EXPECT_EQ(Read(Reg::Gain), 60U);
}

TEST_F(VirtualCamera, BalanceIsKeptByColor) {
    camera.OpenDevice();
    EXPECT_EQ(Read(Reg::Balance), 6554U);
    Write(Reg::BalanceSelector, 1);
    EXPECT_EQ(Read(Reg::Balance), 4096U);
    Write(Reg::Balance, 5000);
    Write(Reg::BalanceSelector, 0);
    EXPECT_EQ(Read(Reg::Balance), 6554U);
    Write(Reg::WhiteAuto, 1);
    Write(Reg::BalanceSelector, 1);
    EXPECT_EQ(Read(Reg::Balance), 4096U);
    EXPECT_EQ(Read(Reg::WhiteAuto), 0U);
}

TEST_F(VirtualCamera, LookUpTableIsOneWithItsEntries) {
    camera.OpenDevice();
    Write(Reg::LutIndex, 100);
    EXPECT_EQ(Read(Reg::LutValue), 100U);
    Write(Reg::LutValue, 4000);
    std::vector<std::uint16_t> table(4096);
    std::size_t size = 8192;
    ASSERT_EQ(api.GCReadPort(camera.port, Reg::Lut, table.data(), &size), 0);
    EXPECT_EQ(table[100], 4000U);
    EXPECT_EQ(table[101], 101U);
    table[5] = 7;
    ASSERT_EQ(api.GCWritePort(camera.port, Reg::Lut, table.data(), &size), 0);
    Write(Reg::LutIndex, 5);
    EXPECT_EQ(Read(Reg::LutValue), 7U);
    table[5] = 5000;
    EXPECT_EQ(api.GCWritePort(camera.port, Reg::Lut, table.data(), &size),
              GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::LutIndex, 4096), GenTL::GC_ERR_INVALID_VALUE);
}

TEST_F(VirtualCamera, TimeGrowsAndStartsAnew) {
    camera.OpenDevice();
    const auto latch = [&] {
        Write(Reg::Latch, 1);
        return camera.ReadRegister<std::int64_t>(Reg::LatchValue);
    };
    const std::int64_t first = latch();
    const std::int64_t second = latch();
    EXPECT_GT(second, first);
    Write(Reg::LatchReset, 1);
    EXPECT_GT(camera.ReadRegister<std::int64_t>(Reg::LatchValue), second);
}

TEST_F(VirtualCamera, TemperatureDependsOnThePlace) {
    camera.OpenDevice();
    const auto sensor = camera.ReadRegister<float>(Reg::Temperature);
    Write(Reg::TemperatureSelector, 1);
    EXPECT_LT(camera.ReadRegister<float>(Reg::Temperature), sensor);
    EXPECT_EQ(TryWrite(Reg::TemperatureSelector, 2), GenTL::GC_ERR_INVALID_VALUE);
}

TEST_F(VirtualCamera, EachTemperatureHasARegisterOfItsOwn) {
    camera.OpenDevice();
    for (const auto& [place, address] :
         {std::pair(0U, Reg::SensorTemperature), std::pair(1U, Reg::MainboardTemperature)}) {
        Write(Reg::TemperatureSelector, place);
        EXPECT_EQ(camera.ReadRegister<float>(address),
                  camera.ReadRegister<float>(Reg::Temperature));
    }
    EXPECT_LT(camera.ReadRegister<float>(Reg::MainboardTemperature),
              camera.ReadRegister<float>(Reg::SensorTemperature));
}

TEST_F(VirtualCamera, MirrorsAreBitsOfOneRegisterToo) {
    camera.OpenDevice();
    Write(Reg::Flips, 2);
    EXPECT_EQ(Read(Reg::ReverseX), 0U);
    EXPECT_EQ(Read(Reg::ReverseY), 1U);
    Write(Reg::ReverseX, 1);
    EXPECT_EQ(Read(Reg::Flips), 3U);
    EXPECT_EQ(TryWrite(Reg::Flips, 4), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(Read(Reg::Flips), 3U);
}

TEST_F(VirtualCamera, SensorLimitsTheFrameRate) {
    camera.OpenDevice();
    EXPECT_NEAR(camera.ReadRegister<float>(Reg::CurrentRate), 30.0, 0.01);
    Write(Reg::FrameRateMode, 0);
    EXPECT_NEAR(camera.ReadRegister<float>(Reg::CurrentRate), 60.7, 0.1);
    Write(Reg::Exposure, 200000);
    EXPECT_NEAR(camera.ReadRegister<float>(Reg::CurrentRate), 10.0, 0.01);
}

TEST_F(VirtualCamera, ReadOnlyRegistersRefuseWrites) {
    camera.OpenDevice();
    for (const std::uint64_t address :
         {Reg::WidthMax, Reg::Payload, Reg::Status, Reg::Temperature}) {
        EXPECT_EQ(TryWrite(address, 1), GenTL::GC_ERR_ACCESS_DENIED);
    }
}

TEST_F(VirtualCamera, KillDuringFullFramesIsQuick) {
    camera.OpenStream();
    Grab(3);
    camera.NextFrame();
    ASSERT_EQ(api.DSStopAcquisition(camera.stream, GenTL::ACQ_STOP_FLAGS_KILL), 0);
    ASSERT_EQ(api.DSFlushQueue(camera.stream, GenTL::ACQ_QUEUE_ALL_DISCARD), 0);
    for (const GenTL::BUFFER_HANDLE buffer : camera.buffers) {
        EXPECT_EQ(api.DSRevokeBuffer(camera.stream, buffer, nullptr, nullptr), 0);
    }
}

TEST_F(VirtualCamera, RestartWithAnotherShapeWhileTheHostWaits) {
    camera.OpenStream();
    Shrink();
    camera.Start(3, 8192);
    for (const std::uint32_t height : {32U, 64U, 16U}) {
        Write(Reg::Height, height);
        Write(Reg::Mode, 1);
        Write(Reg::Start, 1);
        const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
        EXPECT_EQ(camera.BufferInfo<std::size_t>(buffer, GenTL::BUFFER_INFO_SIZE_FILLED),
                  std::size_t{64} * height);
        ASSERT_EQ(api.DSQueueBuffer(camera.stream, buffer), 0);
    }
}

class PacedCamera : public VirtualCamera {
protected:
    PacedCamera() : VirtualCamera("200") {}
};

TEST_F(PacedCamera, LosesFramesWithoutABuffer) {
    camera.OpenStream();
    Shrink();
    Write(Reg::FrameRateMode, 0);
    Grab(1);
    while (camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_UNDERRUN) < 2) {
        std::this_thread::yield();
    }
    EXPECT_EQ(FrameId(camera.NextFrame()), 0U);
}

TEST_F(PacedCamera, TimestampsGrow) {
    camera.OpenStream();
    Shrink();
    Write(Reg::FrameRateMode, 0);
    Grab(4);
    std::uint64_t last = 0;
    for (int frame = 0; frame < 4; ++frame) {
        const auto stamp =
            camera.BufferInfo<std::uint64_t>(camera.NextFrame(), GenTL::BUFFER_INFO_TIMESTAMP);
        EXPECT_GT(stamp, last);
        last = stamp;
    }
}

}  // namespace
