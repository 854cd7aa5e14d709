/// @file
/// A virtual camera through the flat functions, as the library uses it.
#ifndef OV_TESTS_VIRTUAL_CAMERA_FIXTURE_H
#define OV_TESTS_VIRTUAL_CAMERA_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdlib>

#include "GenTLApi.h"

/// Addresses of the camera's registers.
namespace Reg {
constexpr std::uint64_t UserId = 0x180, TemperatureSelector = 0x200, Temperature = 0x204,
                        Reset = 0x20C, Latch = 0x210, LatchReset = 0x218, LatchValue = 0x228,
                        SensorTemperature = 0x230, MainboardTemperature = 0x234, WidthMax = 0x308,
                        Width = 0x310, Height = 0x314, OffsetX = 0x318, BinningX = 0x320,
                        PixelFormat = 0x338, PixelSize = 0x340, ColorFilter = 0x344,
                        ReverseX = 0x330, ReverseY = 0x334, Flips = 0x348, Mode = 0x400,
                        FrameCount = 0x404, Start = 0x408, Stop = 0x40C, FrameRateMode = 0x410,
                        CurrentRate = 0x418, TriggerMode = 0x420, TriggerSource = 0x424,
                        Activation = 0x428, Software = 0x42C, Exposure = 0x430,
                        StatusSelector = 0x440, Status = 0x444, Active = 0x448, TriggerWait = 0x44C,
                        Gain = 0x500, BalanceSelector = 0x508, Balance = 0x50C, WhiteAuto = 0x510,
                        LutIndex = 0x604, LutValue = 0x608, SetSelector = 0x700, SetLoad = 0x704,
                        SetSave = 0x708, SetDefault = 0x70C, Payload = 0x800, Locked = 0x804,
                        ChunkMode = 0x808, ChunkSelector = 0x80C, ChunkEnable = 0x810,
                        ChunksEnabled = 0x814, EventSelector = 0xA00, EventNotification = 0xA04,
                        EventsEnabled = 0xA08, DropOff = 0xA20, DropOffTime = 0xA24,
                        DropOffFrames = 0xA28, Lut = 0x2000;
}  // namespace Reg

class VirtualCameraTest : public testing::Test {
protected:
    /// By default frames come as fast as buffers do.
    explicit VirtualCameraTest(const char* frameRate = "0") {
        setenv("OV_VIRTUAL_FRAME_RATE", frameRate, 1);
    }
    ~VirtualCameraTest() override { unsetenv("OV_VIRTUAL_FRAME_RATE"); }

    void Write(std::uint64_t address, std::uint32_t value) const {
        camera.WriteRegister(address, value);
    }
    std::uint32_t Read(std::uint64_t address) const {
        return camera.ReadRegister<std::uint32_t>(address);
    }
    GenTL::GC_ERROR TryWrite(std::uint64_t address, std::uint32_t value) const {
        std::size_t size = sizeof value;
        return api.GCWritePort(camera.port, address, &value, &size);
    }

    void SaveSet(std::uint32_t set) const {
        Write(Reg::SetSelector, set);
        Write(Reg::SetSave, 1);
    }
    void LoadSet(std::uint32_t set) const {
        Write(Reg::SetSelector, set);
        Write(Reg::SetLoad, 1);
    }

    /// A small window, so that tests are quick.
    void Shrink() const {
        Write(Reg::Width, 64);
        Write(Reg::Height, 32);
    }
    /// Host side and camera running, with that many buffers.
    void Grab(std::size_t buffers) {
        camera.Start(buffers, Read(Reg::Payload));
        Write(Reg::Start, 1);
    }

    std::uint64_t FrameId(GenTL::BUFFER_HANDLE buffer) const {
        return camera.BufferInfo<std::uint64_t>(buffer, GenTL::BUFFER_INFO_FRAMEID);
    }

    GenTLApi api{OV_TEST_VIRTUAL_PRODUCER};
    OpenCamera camera{api};
};

#endif
