// Cameras that are opened, started, stopped and closed while others are, and
// while frames flow.

#include <array>

#include "Rounds.h"

namespace {

constexpr uint64_t kFrames = 3;

class CameraRoundsTest : public RoundsTest {
protected:
    /// A running camera that delivers to the counter.
    OV_DEV_HANDLE OpenDelivering(unsigned round, FrameCounter& counter) {
        TestProducer& producer = round % 2 == 0 ? gev : custom;
        const OV_DEV_HANDLE camera = OpenRunning(producer, 0, 0);
        EXPECT_OV_OK(OVRegisterCaptureCallback(camera, &counter, &FrameCounter::OnFrame));
        EXPECT_OV_OK(OVStreamOn(camera));
        return camera;
    }

    static void ExpectFrame(OV_DEV_HANDLE camera) {
        OV_FRAME_BUFFER* frame = nullptr;
        EXPECT_OV_OK(OVDQBuf(camera, &frame, 10000));
        EXPECT_OV_OK(OVQBuf(camera, frame));
    }

    static OV_STATUS StartAndStop(OV_DEV_HANDLE camera) {
        const OV_STATUS status = OVStreamOn(camera);
        return status == OV_STATUS_SUCCESS ? OVStreamOff(camera) : status;
    }
};

TEST_F(CameraRoundsTest, TwoThreadsOpenDifferentCameras) {
    Run([&](unsigned round) {
        // Of one interface, of two, and of two producers.
        const std::array<std::string, 3> others = {IdOf(0, 1), IdOf(1, 0), "Gev" + IdOf(0, 0)};
        const std::array<uint32_t, 2> indices = {IndexOf(IdOf(0, 0)),
                                                 IndexOf(others[round % others.size()])};
        const bool isOtherProducer = round % others.size() == 2;
        std::array<OV_DEV_HANDLE, 2> cameras{};
        const auto life = [&](size_t i) {
            OV_STATUS status = OVOpenDeviceByIndex(indices[i], &cameras[i]);
            if (status == OV_STATUS_SUCCESS) {
                status = StartAndStop(cameras[i]);
            }
            return status;
        };
        HeldCall held(custom, "IFOpenDevice");
        HeldCall heldOther(gev, "IFOpenDevice");
        Beside first([&] { return life(0); });
        Beside second([&] { return life(1); });
        held.WaitFor(isOtherProducer ? 1 : 2);
        heldOther.WaitFor(isOtherProducer ? 1 : 0);
        held.Release();
        heldOther.Release();
        ASSERT_EQ(first.Join(), OV_STATUS_SUCCESS) << first.GetText();
        ASSERT_EQ(second.Join(), OV_STATUS_SUCCESS) << second.GetText();
        Beside closing([&] { return OVCloseDevice(cameras[0]); });
        EXPECT_OV_OK(OVCloseDevice(cameras[1]));
        EXPECT_EQ(closing.Join(), OV_STATUS_SUCCESS) << closing.GetText();
        ExpectClosed({"Device", "Stream", "Buffer", "Event", "Acquisition"});
    });
}

TEST_F(CameraRoundsTest, TwoThreadsOpenOneCamera) {
    Run([&](unsigned round) {
        TestProducer& producer = round % 2 == 0 ? gev : custom;
        const uint32_t index = IndexOf((round % 2 == 0 ? "Gev" : "") + IdOf(0, 0));
        std::array<OV_DEV_HANDLE, 2> cameras{};
        const auto open = [&](size_t i) { return OVOpenDeviceByIndex(index, &cameras[i]); };
        HeldCall held(producer, "DevGetPort");
        Beside first([&] { return open(0); });
        Beside second([&] { return open(1); });
        held.WaitFor(1);
        held.Release();
        const std::array<OV_STATUS, 2> statuses = {first.Join(), second.Join()};
        const size_t winner = statuses[0] == OV_STATUS_SUCCESS ? 0 : 1;
        EXPECT_EQ(statuses[winner], OV_STATUS_SUCCESS);
        EXPECT_EQ(statuses[1 - winner], OV_STATUS_INVALID_ACCESS);
        EXPECT_EQ(cameras[1 - winner], nullptr);
        EXPECT_OV_OK(OVCloseDevice(cameras[winner]));
        ExpectClosed({"Device", "Stream"});
    });
}

TEST_F(CameraRoundsTest, ADeviceClosesWhileFramesFlow) {
    Run([&](unsigned round) {
        FrameCounter counter;
        const OV_DEV_HANDLE camera = OpenDelivering(round, counter);
        counter.WaitForMore(kFrames);
        EXPECT_OV_OK(OVCloseDevice(camera));
        const uint64_t delivered = counter.GetCount();
        ExpectClosed({"Device", "Stream", "Buffer", "Event", "Acquisition"});
        EXPECT_EQ(Update(), kCameras);
        EXPECT_EQ(counter.GetCount(), delivered);
    });
}

TEST_F(CameraRoundsTest, TheLibraryClosesWhileFramesFlow) {
    Run([&](unsigned round) {
        FrameCounter counter;
        OpenDelivering(round, counter);
        FrameCounter other;
        OpenDelivering(round + 1, other);
        counter.WaitForMore(kFrames);
        other.WaitForMore(kFrames);
        EXPECT_OV_OK(OVCloseLib());
        ExpectClosed({"Library", "System", "Interface", "Device", "Stream", "Buffer", "Event",
                      "Acquisition"});
        ASSERT_OV_OK(OVInitLib());
        ASSERT_EQ(Update(), kCameras);
    });
}

TEST_F(CameraRoundsTest, ACameraIsLostWhileFramesFlow) {
    Run([&](unsigned round) {
        TestProducer& producer = round % 2 == 0 ? gev : custom;
        FrameCounter counter;
        const OV_DEV_HANDLE camera = OpenDelivering(round, counter);
        counter.WaitForMore(kFrames);
        producer.LoseDevice(0, 0);
        if (round % 3 == 0) {
            EXPECT_EQ(OVStreamOff(camera), OV_STATUS_OFFLINE);
        }
        if (round % 5 == 0) {
            EXPECT_EQ(Update(), kCameras - 1);
        }
        EXPECT_OV_OK(OVCloseDevice(camera));
        ExpectClosed({"Device", "Stream", "Buffer", "Event", "Acquisition"});
        producer.ReturnDevice(0, 0);
        EXPECT_EQ(Update(), kCameras);
    });
}

TEST_F(CameraRoundsTest, AStreamStartsAndStopsWhileFramesFlow) {
    FrameCounter counter;
    const OV_DEV_HANDLE camera = OpenRunning(custom, 0, 0);
    Run([&](unsigned round) {
        const bool hasCallback = round % 2 == 0;
        if (hasCallback) {
            EXPECT_OV_OK(OVRegisterCaptureCallback(camera, &counter, &FrameCounter::OnFrame));
        }
        EXPECT_OV_OK(OVStreamOn(camera));
        if (hasCallback) {
            counter.WaitForMore(kFrames);
        } else {
            ExpectFrame(camera);
            // One more stays on loan; the stop takes it back.
            OV_FRAME_BUFFER* frame = nullptr;
            EXPECT_OV_OK(OVDQBuf(camera, &frame, 10000));
        }
        EXPECT_OV_OK(OVStreamOff(camera));
        const uint64_t delivered = counter.GetCount();
        ExpectClosed({"Buffer", "Event", "Acquisition"});
        EXPECT_OV_OK(OVUnregisterCaptureCallback(camera));
        EXPECT_EQ(counter.GetCount(), delivered);
    });
    EXPECT_OV_OK(OVCloseDevice(camera));
}

TEST_F(CameraRoundsTest, AStreamStopsUnderAThreadThatWaitsForAFrame) {
    const OV_DEV_HANDLE camera = Open(IdOf(0, 0));
    Run([&](unsigned round) {
        EXPECT_OV_OK(OVStreamOn(camera));
        custom.SetFreeRunning(0, 0, static_cast<int>(round % 2));
        HeldCall waiting(custom, "EventGetData");
        OV_FRAME_BUFFER* frame = nullptr;
        Beside lending([&] {
            OV_STATUS status = OV_STATUS_SUCCESS;
            while (status == OV_STATUS_SUCCESS) {
                status = OVDQBuf(camera, &frame, 60000);
                if (status == OV_STATUS_SUCCESS) {
                    status = OVQBuf(camera, frame);
                }
            }
            return status;
        });
        waiting.WaitFor(1);
        // The wait may begin before the stop or once the stop waits for its end.
        if (round % 4 < 2) {
            waiting.Release();
        }
        HeldCall killing(custom, "EventKill");
        Beside stopping([&] { return OVStreamOff(camera); });
        killing.WaitFor(1);
        killing.Release();
        waiting.Release();
        EXPECT_EQ(stopping.Join(), OV_STATUS_SUCCESS) << stopping.GetText();
        EXPECT_NE(lending.Join(), OV_STATUS_TIMEOUT);
        ExpectClosed({"Buffer", "Event", "Acquisition"});
    });
    EXPECT_OV_OK(OVCloseDevice(camera));
}

}  // namespace
