// Cameras of which nothing is heard any more.

#include <atomic>
#include <chrono>

#include "GigeCameraTest.h"
#include "support/FrameCounter.h"

namespace {

using OvSimulator::Faults;

class GigeLostCameras : public GigeCameraTest {
protected:
    void SetUp() override {
        GigeCameraTest::SetUp();
        SpoilCameras();
        Supply().HastenLoss(camera);
        OV_EVENT_CALLBACK_HANDLE handle = nullptr;
        ASSERT_OV_OK(OVRegisterDeviceOfflineCallback(camera, this, &OnLoss, &handle));
    }
    void AwaitLoss() { m_losses.wait(0); }
    void ExpectLost(const std::string& why) {
        AwaitLoss();
        uint32_t value = 0;
        size_t size = sizeof value;
        ExpectFailure(OVReadRemoteDevicePort(camera, 0, &value, &size), OV_STATUS_OFFLINE, why);
        EXPECT_EQ(m_losses, 1U);
    }

private:
    static void OnLoss(void* user) {
        auto& losses = static_cast<GigeLostCameras*>(user)->m_losses;
        ++losses;
        losses.notify_all();
    }

    std::atomic<unsigned> m_losses{0};
};

TEST_F(GigeLostCameras, AreLostByTheirSilence) {
    Cameras().SwitchOff(0);
    ExpectLost("The camera hasn't answered for 500 ms");
}

TEST_F(GigeLostCameras, AreLostOnceTheyHaveForgottenTheirOwner) {
    Write(camera, kDropOffTime, 0);
    Write(camera, kDropOff, 1);
    ExpectLost("The camera has given up this host as its owner");
}

TEST_F(GigeLostCameras, AreClosedWithoutAWord) {
    const OvGige::Endpoint address = First().Address();
    ASSERT_OV_OK(OVStreamOn(camera));
    Cameras().SwitchOff(0);
    AwaitLoss();
    OvGige::UdpSocket inItsPlace;
    inItsPlace.Bind(address);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_FALSE(inItsPlace.Receive({}).has_value());
}

TEST_F(GigeLostCameras, HaveNoFramesForWhoeverWaits) {
    constexpr std::chrono::milliseconds kWait{100};
    ASSERT_OV_OK(OVStreamOn(camera));
    Cameras().SwitchOff(0);
    AwaitLoss();
    ASSERT_OV_OK(OVFlushQueue(camera));
    for (int round = 0; round < 3; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        OV_FRAME_BUFFER* frame = nullptr;
        EXPECT_EQ(OVDQBuf(camera, &frame, static_cast<uint32_t>(kWait.count())), OV_STATUS_OFFLINE);
        // Less would make a loop that spins.
        EXPECT_GE(std::chrono::steady_clock::now() - begin, kWait);
    }
    EXPECT_EQ(OVStreamOff(camera), OV_STATUS_OFFLINE);
}

TEST_F(GigeLostCameras, AreOpenedAgainWhenTheirPowerIsBack) {
    FrameCounter counter;
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &counter, &FrameCounter::OnFrame));
    ASSERT_OV_OK(OVStreamOn(camera));
    counter.WaitFor(2);
    Cameras().Replace(0, {});
    AwaitLoss();
    AwaitCameras(kCameras);
    EXPECT_EQ(OVSetInt(camera, OV_FEATURE_GevHeartbeatTimeout, 1000), OV_STATUS_OFFLINE);
    EXPECT_OV_OK(OVCloseDevice(camera));
    AwaitCameras(kCameras);
    camera = OpenQuick();
    ASSERT_OV_OK(OVStreamOn(camera));
    OV_FRAME_BUFFER* frame = nullptr;
    EXPECT_OV_OK(OVDQBuf(camera, &frame, kFrameTimeOut));
}

TEST_F(GigeLostCameras, LeaveOthersAsTheyAre) {
    const OV_DEV_HANDLE other = OpenQuick(2);
    FrameCounter counter;
    ASSERT_OV_OK(OVRegisterCaptureCallback(other, &counter, &FrameCounter::OnFrame));
    ASSERT_OV_OK(OVStreamOn(other));
    ASSERT_OV_OK(OVStreamOn(camera));
    Cameras().SwitchOff(0);
    AwaitLoss();
    counter.WaitForMore(5);
    EXPECT_OV_OK(OVCloseDevice(camera));
    counter.WaitForMore(5);
    EXPECT_OV_OK(OVStreamOff(other));
}

}  // namespace
