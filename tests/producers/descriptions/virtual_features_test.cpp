/// @file
/// How the features of the virtual cameras depend on each other.
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <set>
#include <string>

#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "LiveDescription.h"

namespace {

class VirtualFeatures : public testing::Test {
protected:
    void Open(std::uint32_t device) {
        camera.OpenStream(device);
        live.emplace(api, camera.port);
    }

    GenApi::IInteger& Integer(const char* name) { return live->As<GenApi::IInteger>(name); }
    GenApi::IFloat& Float(const char* name) { return live->As<GenApi::IFloat>(name); }
    GenApi::IEnumeration& Enum(const char* name) { return live->As<GenApi::IEnumeration>(name); }
    void Execute(const char* name) { live->As<GenApi::ICommand>(name).Execute(); }

    std::set<std::string> Symbolics(const char* name) {
        GenApi::gcstring_vector list;
        Enum(name).GetSymbolics(list);
        std::set<std::string> symbolics;
        for (size_t i = 0; i < list.size(); ++i) {
            symbolics.insert(list[i].c_str());
        }
        return symbolics;
    }

    /// As the camera's own: the description hears nothing of it.
    void StartBehindTheCaches() { camera.WriteRegister(kAcquisitionStart, std::uint32_t{1}); }

    static constexpr std::uint64_t kFlips = 0x348;
    static constexpr std::uint64_t kAcquisitionStart = 0x408;
    GenTLApi api{OV_TEST_VIRTUAL_PRODUCER};
    OpenCamera camera{api};
    std::optional<LiveDescription> live;
};

TEST_F(VirtualFeatures, SizesAndOffsetsFollowEachOther) {
    Open(0);
    EXPECT_EQ(Integer("Width").GetMax(), 2448);
    EXPECT_EQ(Integer("OffsetX").GetMax(), 0);
    Integer("Width").SetValue(2000);
    EXPECT_EQ(Integer("OffsetX").GetMax(), 448);
    Integer("OffsetX").SetValue(400);
    EXPECT_EQ(Integer("Width").GetMax(), 2048);
    EXPECT_EQ(Integer("PayloadSize").GetValue(), 2000 * 2048);
}

TEST_F(VirtualFeatures, BinningReachesWhatItChanges) {
    Open(1);
    EXPECT_EQ(Integer("Width").GetValue(), 2448);
    Integer("BinningHorizontal").SetValue(2);
    EXPECT_EQ(Integer("WidthMax").GetValue(), 1224);
    EXPECT_EQ(Integer("Width").GetValue(), 1224);
    EXPECT_EQ(Integer("Height").GetValue(), 2048);
}

TEST_F(VirtualFeatures, ExposureRoundsToTheTicksOfItsRegister) {
    Open(0);
    Float("ExposureTime").SetValue(100.3);
    EXPECT_DOUBLE_EQ(Float("ExposureTime").GetValue(false, true), 100.5);
    EXPECT_DOUBLE_EQ(Float("ExposureTime").GetMin(), 20);
    EXPECT_DOUBLE_EQ(Float("ExposureTime").GetMax(), 1e6);
    EXPECT_EQ(Float("ExposureTime").GetUnit(), "us");
}

TEST_F(VirtualFeatures, GainIsInDecibels) {
    Open(0);
    Float("Gain").SetValue(6.04);
    EXPECT_DOUBLE_EQ(Float("Gain").GetValue(false, true), 6.0);
    EXPECT_DOUBLE_EQ(Float("Gain").GetMax(), 24);
}

TEST_F(VirtualFeatures, ParametersLockWhatShapesAFrame) {
    Open(0);
    EXPECT_TRUE(live->Writable("Width"));
    Integer("TLParamsLocked").SetValue(1);
    for (const char* name : {"Width", "Height", "PixelFormat", "BinningHorizontal",
                             "AcquisitionMode", "UserSetLoad"}) {
        EXPECT_FALSE(live->Writable(name)) << name;
    }
    EXPECT_TRUE(live->Writable("ExposureTime"));
    Integer("TLParamsLocked").SetValue(0);
    EXPECT_TRUE(live->Writable("Width"));
}

TEST_F(VirtualFeatures, ColorCameraHasColors) {
    Open(0);
    const std::set<std::string> formats = Symbolics("PixelFormat");
    EXPECT_EQ(formats.size(), 9U);
    EXPECT_TRUE(formats.contains("BayerRG12Packed"));
    EXPECT_TRUE(formats.contains("Mono8"));
    EXPECT_FALSE(formats.contains("Mono12"));
    EXPECT_TRUE(live->Writable("BalanceRatio"));
}

TEST_F(VirtualFeatures, MonochromeCameraHasNone) {
    Open(1);
    const std::set<std::string> formats = Symbolics("PixelFormat");
    EXPECT_EQ(formats.size(), 8U);
    EXPECT_FALSE(formats.contains("BayerRG8"));
    EXPECT_EQ(live->As<GenApi::INode>("BalanceRatio").GetAccessMode(), GenApi::NI);
    EXPECT_EQ(Enum("PixelColorFilter").GetIntValue(), 0);
}

TEST_F(VirtualFeatures, FormatChangesWhatFollowsIt) {
    Open(0);
    EXPECT_EQ(Enum("PixelSize").GetIntValue(), 8);
    Enum("PixelFormat").FromString("BayerRG12p");
    EXPECT_EQ(Enum("PixelSize").GetIntValue(), 12);
    EXPECT_EQ(Integer("PayloadSize").GetValue(), 2448 * 2048 / 2 * 3);
    Enum("PixelFormat").FromString("Mono8");
    EXPECT_EQ(Enum("PixelColorFilter").GetIntValue(), 0);
}

TEST_F(VirtualFeatures, SelectorShowsAnotherRatio) {
    Open(0);
    EXPECT_NEAR(Float("BalanceRatio").GetValue(), 1.6, 0.001);
    Enum("BalanceRatioSelector").FromString("Green");
    EXPECT_NEAR(Float("BalanceRatio").GetValue(), 1.0, 0.001);
}

TEST_F(VirtualFeatures, WhiteBalanceOnceEndsByItself) {
    Open(0);
    Float("BalanceRatio").SetValue(3);
    Enum("BalanceWhiteAuto").FromString("Once");
    EXPECT_EQ(Enum("BalanceWhiteAuto").ToString(), "Off");
    EXPECT_NEAR(Float("BalanceRatio").GetValue(), 1.6, 0.001);
}

TEST_F(VirtualFeatures, LoadedSetShowsAtOnce) {
    Open(0);
    Float("Gain").SetValue(12);
    EXPECT_FALSE(live->Writable("UserSetSave"));
    Enum("UserSetSelector").FromString("UserSet1");
    EXPECT_TRUE(live->Writable("UserSetSave"));
    Execute("UserSetSave");
    Enum("UserSetSelector").FromString("Default");
    Execute("UserSetLoad");
    EXPECT_DOUBLE_EQ(Float("Gain").GetValue(), 0);
    Enum("UserSetSelector").FromString("UserSet1");
    Execute("UserSetLoad");
    EXPECT_DOUBLE_EQ(Float("Gain").GetValue(), 12);
}

TEST_F(VirtualFeatures, UserIdTakesALongName) {
    Open(0);
    auto& userId = live->As<GenApi::IString>("DeviceUserID");
    userId.SetValue("a name of more than sixteen");
    EXPECT_EQ(userId.GetValue(false, true), "a name of more than sixteen");
    EXPECT_EQ(userId.GetMaxLength(), 64);
}

TEST_F(VirtualFeatures, LookUpTableIsARegister) {
    Open(0);
    auto& table = live->As<GenApi::IRegister>("LUTValueAll");
    ASSERT_EQ(table.GetLength(), 8192);
    std::vector<uint8_t> bytes(8192);
    table.Get(bytes.data(), 8192);
    EXPECT_EQ(bytes[2], 1);
    Integer("LUTIndex").SetValue(1);
    Integer("LUTValue").SetValue(513);
    table.Get(bytes.data(), 8192);
    EXPECT_EQ(bytes[2], 1);
    EXPECT_EQ(bytes[3], 2);
}

TEST_F(VirtualFeatures, ChunkModeIsOff) {
    Open(0);
    EXPECT_FALSE(live->As<GenApi::IBoolean>("ChunkModeActive").GetValue());
}

TEST_F(VirtualFeatures, TemperatureHasAUnit) {
    Open(0);
    EXPECT_EQ(Float("DeviceTemperature").GetUnit(), "C");
    const double sensor = Float("DeviceTemperature").GetValue();
    Enum("DeviceTemperatureSelector").FromString("Mainboard");
    EXPECT_LT(Float("DeviceTemperature").GetValue(), sensor);
}

TEST_F(VirtualFeatures, SelectorThatTheDescriptionHoldsIsNotTheCameras) {
    Open(0);
    const LiveDescription other(api, camera.port);
    Enum("DeviceTemperatureSelector").FromString("Mainboard");
    EXPECT_EQ(Enum("DeviceTemperatureSelector").ToString(), "Mainboard");
    EXPECT_EQ(other.As<GenApi::IEnumeration>("DeviceTemperatureSelector").ToString(), "Sensor");
    live->Map().InvalidateNodes();
    EXPECT_EQ(Enum("DeviceTemperatureSelector").ToString(), "Mainboard");
}

TEST_F(VirtualFeatures, TemperatureIsPolled) {
    Open(0);
    const double atRest = Float("DeviceTemperature").GetValue();
    StartBehindTheCaches();
    EXPECT_DOUBLE_EQ(Float("DeviceTemperature").GetValue(), atRest);
    live->Map().Poll(999);
    EXPECT_DOUBLE_EQ(Float("DeviceTemperature").GetValue(), atRest);
    live->Map().Poll(1);
    EXPECT_GT(Float("DeviceTemperature").GetValue(), atRest);
}

TEST_F(VirtualFeatures, StatusOfATriggerIsThereInTriggerMode) {
    Open(0);
    auto& status = live->As<GenApi::IBoolean>("AcquisitionStatus");
    EXPECT_EQ(status.GetAccessMode(), GenApi::RO);
    EXPECT_FALSE(status.GetValue());
    Enum("AcquisitionStatusSelector").FromString("FrameTriggerWait");
    EXPECT_EQ(status.GetAccessMode(), GenApi::NA);
    Enum("TriggerMode").FromString("On");
    EXPECT_EQ(status.GetAccessMode(), GenApi::RO);
    StartBehindTheCaches();
    EXPECT_TRUE(status.GetValue());
    Enum("AcquisitionStatusSelector").FromString("AcquisitionActive");
    Enum("TriggerMode").FromString("Off");
    EXPECT_TRUE(status.GetValue());
}

TEST_F(VirtualFeatures, MirrorsOfOneRegisterLeaveEachOtherAlone) {
    Open(0);
    auto& x = live->As<GenApi::IBoolean>("ReverseX");
    auto& y = live->As<GenApi::IBoolean>("ReverseY");
    EXPECT_FALSE(x.GetValue());
    y.SetValue(true);
    x.SetValue(true);
    EXPECT_TRUE(y.GetValue());
    y.SetValue(false);
    EXPECT_TRUE(x.GetValue());
    x.SetValue(false);
    EXPECT_FALSE(y.GetValue());
    EXPECT_EQ(camera.ReadRegister<std::uint32_t>(kFlips), 0U);
}

TEST_F(VirtualFeatures, PayloadSizeComesFromTheCacheUntilTheFrameChanges) {
    Open(0);
    auto& size = Integer("PayloadSize");
    EXPECT_EQ(size.GetValue(), 2448 * 2048);
    EXPECT_TRUE(live->As<GenApi::IValue>("PayloadSize").IsValueCacheValid());
    Integer("Width").SetValue(1224);
    EXPECT_EQ(size.GetValue(), 1224 * 2048);
    Integer("BinningVertical").SetValue(2);
    EXPECT_EQ(size.GetValue(), 1224 * 1024);
    Enum("PixelFormat").FromString("BayerRG10p");
    EXPECT_EQ(size.GetValue(), 1224 * 1024 / 4 * 5);
    live->As<GenApi::IBoolean>("ChunkModeActive").SetValue(true);
    EXPECT_GT(size.GetValue(), 1224 * 1024 / 4 * 5);
    Execute("DeviceReset");
    EXPECT_EQ(size.GetValue(), 2448 * 2048);
}

TEST_F(VirtualFeatures, SettingsThatCannotBeCombinedAreReadAnew) {
    Open(0);
    Execute("DeviceRegistersStreamingStart");
    Integer("Width").SetValue(640);
    Integer("OffsetX").SetValue(1800);
    Integer("BinningHorizontal").SetValue(2);
    EXPECT_ANY_THROW(Execute("DeviceRegistersStreamingEnd"));
    EXPECT_EQ(Integer("Width").GetValue(), 2448);
    EXPECT_EQ(Integer("OffsetX").GetValue(), 0);
    EXPECT_EQ(Integer("BinningHorizontal").GetValue(), 1);
    EXPECT_EQ(Integer("PayloadSize").GetValue(), 2448 * 2048);
}

TEST_F(VirtualFeatures, ResetSelectsTheFirstAgain) {
    Open(0);
    Enum("UserSetSelector").FromString("UserSet1");
    Integer("LUTIndex").SetValue(7);
    Execute("DeviceReset");
    EXPECT_EQ(Enum("UserSetSelector").ToString(), "Default");
    EXPECT_EQ(Integer("LUTIndex").GetValue(), 0);
    EXPECT_EQ(Integer("LUTValue").GetValue(), 0);
}

TEST_F(VirtualFeatures, SettingsThatComeInWholeStepsTellTheStep) {
    Open(0);
    EXPECT_EQ(Integer("Width").GetInc(), 4);
    EXPECT_EQ(Integer("Height").GetInc(), 2);
    EXPECT_TRUE(Float("ExposureTime").HasInc());
    EXPECT_DOUBLE_EQ(Float("ExposureTime").GetInc(), 0.5);
}

class StreamFeatures : public testing::Test {
protected:
    StreamFeatures() { setenv("OV_VIRTUAL_FRAME_RATE", "0", 1); }
    ~StreamFeatures() override { unsetenv("OV_VIRTUAL_FRAME_RATE"); }

    GenTLApi api{OV_TEST_VIRTUAL_PRODUCER};
    OpenCamera camera{api};
};

TEST_F(StreamFeatures, CountWhatFlows) {
    camera.OpenStream();
    camera.WriteRegister<std::uint32_t>(0x310, 64);
    camera.WriteRegister<std::uint32_t>(0x314, 32);
    const LiveDescription live(api, camera.stream);
    const auto value = [&](const char* name) { return live.As<GenApi::IInteger>(name).GetValue(); };
    camera.Start(3, 2048);
    camera.WriteRegister<std::uint32_t>(0x408, 1);
    EXPECT_TRUE(live.As<GenApi::IBoolean>("StreamIsGrabbing").GetValue());
    for (int i = 0; i < 3; ++i) {
        camera.NextFrame();
    }
    EXPECT_EQ(value("StreamAnnouncedBufferCount"), 3);
    EXPECT_EQ(value("StreamDeliveredFrameCount"), 3);
    EXPECT_EQ(value("StreamLostFrameCount"), 0);
    EXPECT_EQ(value("StreamInputBufferCount"), 0);
}

TEST_F(StreamFeatures, HandlingModeIsLockedByItsParameters) {
    camera.OpenStream();
    const LiveDescription live(api, camera.stream);
    live.As<GenApi::IEnumeration>("StreamBufferHandlingMode").FromString("NewestOnly");
    live.As<GenApi::IInteger>("TLParamsLocked").SetValue(1);
    EXPECT_FALSE(live.Writable("StreamBufferHandlingMode"));
}

}  // namespace
