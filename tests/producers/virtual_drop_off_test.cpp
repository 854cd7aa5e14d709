/// @file
/// A virtual camera leaves the bus and comes back.
#include "VirtualCameraFixture.h"

namespace {

constexpr GenTL::GC_ERROR kOff = GenTL::GC_ERR_CUSTOM_ID;
constexpr std::uint32_t kAnHour = 3600000;

class VirtualDropOff : public VirtualCameraTest {
protected:
    void SetUp() override {
        camera.OpenStream();
        Shrink();
    }

    void DropOff(std::uint32_t milliseconds) const {
        Write(Reg::DropOffTime, milliseconds);
        Write(Reg::DropOff, 1);
    }
    GenTL::GC_ERROR TryRead(GenTL::PORT_HANDLE port, std::uint64_t address) const {
        std::uint32_t value = 0;
        std::size_t size = sizeof value;
        return api.GCReadPort(port, address, &value, &size);
    }
    /// How many cameras a search finds.
    std::uint32_t Search() const {
        EXPECT_EQ(api.IFUpdateDeviceList(camera.iface, nullptr, 100), 0);
        std::uint32_t count = 0;
        EXPECT_EQ(api.IFGetNumDevices(camera.iface, &count), 0);
        return count;
    }
    GenTL::GC_ERROR TryOpen() {
        return api.IFOpenDevice(camera.iface, camera.deviceId.c_str(),
                                GenTL::DEVICE_ACCESS_EXCLUSIVE, &camera.device);
    }
    void Close() { ASSERT_EQ(api.DevClose(camera.device), 0); }
    /// Down to the stream, with nothing of what was there before.
    void Reopen() {
        ASSERT_EQ(TryOpen(), 0);
        ASSERT_EQ(api.DevGetPort(camera.device, &camera.port), 0);
        ASSERT_EQ(api.DevOpenDataStream(camera.device, camera.streamId.c_str(), &camera.stream), 0);
        camera.memory.clear();
        camera.buffers.clear();
    }
    GenTL::EVENT_HANDLE RegisterLoss() const {
        GenTL::EVENT_HANDLE event = nullptr;
        EXPECT_EQ(api.GCRegisterEvent(camera.device, GenTL::EVENT_DEVICE_OFFLINE, &event), 0);
        return event;
    }
    /// 0 when it came.
    GenTL::GC_ERROR AwaitLoss(GenTL::EVENT_HANDLE event) const {
        std::size_t size = 0;
        return api.EventGetData(event, nullptr, &size, 10000);
    }
};

TEST_F(VirtualDropOff, IsToldToTheHost) {
    const GenTL::EVENT_HANDLE event = RegisterLoss();
    DropOff(kAnHour);
    EXPECT_EQ(AwaitLoss(event), 0);
}

TEST_F(VirtualDropOff, LeavesNothingThatAnswers) {
    DropOff(kAnHour);
    EXPECT_EQ(TryRead(camera.port, Reg::Width), kOff);
    EXPECT_EQ(TryWrite(Reg::DropOff, 1), kOff);
    EXPECT_EQ(TryRead(camera.device, 0), kOff);
    camera.Announce(1, 64);
    EXPECT_EQ(api.DSStartAcquisition(camera.stream, 0, GenTL::GENTL_INFINITE), kOff);
}

TEST_F(VirtualDropOff, IsSeenByTheNextSearch) {
    DropOff(kAnHour);
    EXPECT_EQ(Search(), 1U);
    Close();
    EXPECT_EQ(TryOpen(), GenTL::GC_ERR_INVALID_ID);
}

TEST_F(VirtualDropOff, IsSeenByAnOpenWithoutASearch) {
    DropOff(kAnHour);
    Close();
    EXPECT_EQ(TryOpen(), kOff);
    EXPECT_EQ(Search(), 1U);
}

TEST_F(VirtualDropOff, WithoutATimeIsOverAtOnce) {
    DropOff(0);
    EXPECT_EQ(Search(), 2U);
    EXPECT_EQ(TryRead(camera.port, Reg::Width), kOff) << "the connection is lost";
    Close();
    Reopen();
    EXPECT_EQ(Read(Reg::Width), 64U) << "a camera with power keeps its settings";
    Grab(3);
    EXPECT_EQ(FrameId(camera.NextFrame()), 0U);
}

TEST_F(VirtualDropOff, IsOverAfterItsTime) {
    DropOff(20);
    Close();
    while (Search() != 2) {
    }
    Reopen();
    EXPECT_EQ(Read(Reg::DropOffTime), 20U);
}

TEST_F(VirtualDropOff, ComesAfterTheFramesThatAreSet) {
    const GenTL::EVENT_HANDLE event = RegisterLoss();
    Write(Reg::DropOffTime, 0);
    Write(Reg::DropOffFrames, 2);
    Grab(5);
    ASSERT_EQ(AwaitLoss(event), 0);
    EXPECT_EQ(FrameId(camera.NextFrame()), 0U);
    EXPECT_EQ(FrameId(camera.NextFrame()), 1U);
    EXPECT_EQ(camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_DELIVERED), 2U);
    Close();
    Reopen();
    EXPECT_EQ(Read(Reg::DropOffFrames), 0U) << "once is enough";
    Grab(4);
    for (std::uint64_t frame = 0; frame < 4; ++frame) {
        EXPECT_EQ(FrameId(camera.NextFrame()), frame);
    }
}

TEST_F(VirtualDropOff, EndsAWaitForATrigger) {
    Write(Reg::TriggerMode, 1);
    Grab(1);
    DropOff(0);
    EXPECT_EQ(api.DSStopAcquisition(camera.stream, 0), 0);
    Close();
    Reopen();
    EXPECT_EQ(Search(), 2U);
}

TEST_F(VirtualDropOff, SettingsHaveTheirRanges) {
    EXPECT_EQ(Read(Reg::DropOffTime), 1000U);
    EXPECT_EQ(Read(Reg::DropOffFrames), 0U);
    EXPECT_EQ(Read(Reg::DropOff), 0U);
    EXPECT_EQ(TryWrite(Reg::DropOffTime, kAnHour + 1), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::DropOffFrames, 1000001), GenTL::GC_ERR_INVALID_VALUE);
}

TEST_F(VirtualDropOff, OfOneCameraLeavesTheOtherAlone) {
    GenTL::DEV_HANDLE other = nullptr;
    GenTL::PORT_HANDLE port = nullptr;
    ASSERT_EQ(api.IFOpenDevice(camera.iface, "Virtual-5M-Mono_VC000002",
                               GenTL::DEVICE_ACCESS_EXCLUSIVE, &other),
              0);
    ASSERT_EQ(api.DevGetPort(other, &port), 0);
    DropOff(kAnHour);
    EXPECT_EQ(TryRead(port, Reg::Width), 0);
}

}  // namespace
