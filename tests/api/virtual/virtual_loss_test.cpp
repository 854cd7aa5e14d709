// A virtual camera leaves the bus while it is used, and is found again.

#include "VirtualApiTest.h"

namespace {

class VirtualLossTest : public VirtualApiTest {
protected:
    /// What one use of the camera hears.
    struct Ear {
        FrameCounter frames;
        std::atomic<unsigned> losses{0};

        static void OnLoss(void* user) {
            auto* const ear = static_cast<Ear*>(user);
            ++ear->losses;
            ear->losses.notify_all();
        }
        void AwaitLoss() { losses.wait(0); }
    };

    void Start(Ear& ear) const {
        OV_EVENT_CALLBACK_HANDLE handle = nullptr;
        ASSERT_OV_OK(OVRegisterDeviceOfflineCallback(camera, &ear, &Ear::OnLoss, &handle));
        ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &ear.frames, &FrameCounter::OnFrame));
        ASSERT_OV_OK(OVStreamOn(camera));
    }
    void DropOff(uint32_t milliseconds) const {
        Write(camera, kDropOffTime, milliseconds);
        Write(camera, kDropOff, 1);
    }
    static void AwaitReturn() {
        while (Update() != kCameras) {
        }
    }
    /// The camera is open again and delivers.
    void ExpectFrames() {
        Ear ear;
        camera = OpenQuick();
        Start(ear);
        ear.frames.WaitFor(3);
        EXPECT_OV_OK(OVCloseDevice(camera));
        EXPECT_EQ(ear.losses, 0U);
    }
};

TEST_F(VirtualLossTest, IsToldWhileFramesFlowAndTheCameraComesBack) {
    Ear ear;
    Start(ear);
    ear.frames.WaitFor(3);
    DropOff(50);
    ear.AwaitLoss();
    int64_t ticks = 0;  // never from a cache
    EXPECT_EQ(OVGetInt(camera, OV_FEATURE_TimestampLatchValue, &ticks), OV_STATUS_OFFLINE);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(ear.losses, 1U);
    AwaitReturn();
    ExpectFrames();
}

TEST_F(VirtualLossTest, TakesTheCameraOffTheList) {
    DropOff(3600000);
    EXPECT_EQ(Update(), kCameras - 1);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(Update(), kCameras - 1);
    OV_DEVICE_BASE_INFO left{};
    size_t size = sizeof left;
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(&left, &size));
    EXPECT_STREQ(left.szSN, "VC000002");
}

TEST_F(VirtualLossTest, NeedsACloseAlsoWhenTheCameraIsBackAtOnce) {
    Ear ear;
    Start(ear);
    DropOff(0);
    ear.AwaitLoss();
    EXPECT_EQ(Update(), kCameras);
    EXPECT_EQ(OVSetFloat(camera, OV_FEATURE_Gain, 1), OV_STATUS_OFFLINE);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(Update(), kCameras);
    ExpectFrames();
}

TEST_F(VirtualLossTest, ComesAfterTheFramesThatAreSet) {
    Write(camera, kDropOffTime, 0);
    Write(camera, kDropOffFrames, 4);
    Ear ear;
    Start(ear);
    ear.AwaitLoss();
    ear.frames.WaitFor(4);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(ear.frames.GetCount(), 4U);
    EXPECT_EQ(Update(), kCameras);
    ExpectFrames();
}

/// From wherever the application is when it closes the camera.
TEST_F(VirtualLossTest, CanComeAtAnyMomentAgainAndAgain) {
    constexpr unsigned kRounds = 20;
    for (unsigned round = 0; round < kRounds; ++round) {
        Ear ear;
        Start(ear);
        ear.frames.WaitFor(round % 3);
        DropOff(round % 5);
        if (round % 2 == 0) {
            ear.AwaitLoss();
        }
        EXPECT_OV_OK(OVCloseDevice(camera));
        EXPECT_LE(ear.losses, 1U);
        AwaitReturn();
        camera = OpenQuick();
    }
    EXPECT_OV_OK(OVCloseDevice(camera));
    ExpectFrames();
}

}  // namespace
