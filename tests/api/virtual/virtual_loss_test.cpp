// A virtual camera leaves the bus while it is used, and is found again.

#include "VirtualApiTest.h"

namespace {

class VirtualLossTest : public VirtualApiTest {
protected:
    /// What one use of the camera hears.
    struct CallbackCounter {
        FrameCounter frames;
        std::atomic<unsigned> losses{0};

        static void OnLoss(void* user) {
            auto* const counter = static_cast<CallbackCounter*>(user);
            ++counter->losses;
            counter->losses.notify_all();
        }
        void AwaitLoss() { losses.wait(0); }
    };

    void Start(CallbackCounter& counter) const {
        OV_EVENT_CALLBACK_HANDLE handle = nullptr;
        ASSERT_OV_OK(
            OVRegisterDeviceOfflineCallback(camera, &counter, &CallbackCounter::OnLoss, &handle));
        ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &counter.frames, &FrameCounter::OnFrame));
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
        CallbackCounter counter;
        camera = OpenQuick();
        Start(counter);
        counter.frames.WaitFor(3);
        EXPECT_OV_OK(OVCloseDevice(camera));
        EXPECT_EQ(counter.losses, 0U);
    }
};

TEST_F(VirtualLossTest, IsToldWhileFramesFlowAndTheCameraComesBack) {
    CallbackCounter counter;
    Start(counter);
    counter.frames.WaitFor(3);
    DropOff(50);
    counter.AwaitLoss();
    int64_t ticks = 0;  // never from a cache
    EXPECT_EQ(OVGetInt(camera, OV_FEATURE_TimestampLatchValue, &ticks), OV_STATUS_OFFLINE);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(counter.losses, 1U);
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
    CallbackCounter counter;
    Start(counter);
    DropOff(0);
    counter.AwaitLoss();
    EXPECT_EQ(Update(), kCameras);
    EXPECT_EQ(OVSetFloat(camera, OV_FEATURE_Gain, 1), OV_STATUS_OFFLINE);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(Update(), kCameras);
    ExpectFrames();
}

TEST_F(VirtualLossTest, ComesAfterTheFramesThatAreSet) {
    Write(camera, kDropOffTime, 0);
    Write(camera, kDropOffFrames, 4);
    CallbackCounter counter;
    Start(counter);
    counter.AwaitLoss();
    counter.frames.WaitFor(4);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(counter.frames.GetCount(), 4U);
    EXPECT_EQ(Update(), kCameras);
    ExpectFrames();
}

/// From wherever the application is when it closes the camera.
TEST_F(VirtualLossTest, CanComeAtAnyMomentAgainAndAgain) {
    constexpr unsigned kRounds = 20;
    for (unsigned round = 0; round < kRounds; ++round) {
        CallbackCounter counter;
        Start(counter);
        counter.frames.WaitFor(round % 3);
        DropOff(round % 5);
        if (round % 2 == 0) {
            counter.AwaitLoss();
        }
        EXPECT_OV_OK(OVCloseDevice(camera));
        EXPECT_LE(counter.losses, 1U);
        AwaitReturn();
        camera = OpenQuick();
    }
    EXPECT_OV_OK(OVCloseDevice(camera));
    ExpectFrames();
}

}  // namespace
