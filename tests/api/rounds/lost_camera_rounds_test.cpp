// A camera is lost at every moment of its use, closed, found again and opened.

#include <atomic>

#include "Rounds.h"
#include "support/CallbackCounter.h"

namespace {

class LostCameraRoundsTest : public RoundsTest {
protected:
    TestProducer& ProducerOf(unsigned round) { return round % 2 == 0 ? gev : custom; }

    /// A running camera with all of its callbacks.
    OV_DEV_HANDLE OpenHeard(TestProducer& producer, CallbackCounter& counter) {
        const OV_DEV_HANDLE camera = OpenRunning(producer, 0, 0);
        void* handle = nullptr;
        EXPECT_OV_OK(
            OVRegisterDeviceOfflineCallback(camera, &counter, &CallbackCounter::OnLoss, &handle));
        EXPECT_OV_OK(OVRegisterFeatureCallback(camera, &counter, &CallbackCounter::OnEvent, kEvent,
                                               &handle));
        EXPECT_OV_OK(OVRegisterCaptureCallback(camera, &counter.frames, &FrameCounter::OnFrame));
        EXPECT_OV_OK(OVStreamOn(camera));
        counter.frames.WaitForMore(1);
        producer.FireExposureEnd(0, 0, 1);
        CallbackCounter::Await(counter.events, 1);
        return camera;
    }

    void ExpectClosedCamera() {
        ExpectClosed({"Device", "Stream", "Buffer", "Event", "Acquisition"});
    }

    /// Closes what is lost; the camera comes back, delivers and closes again.
    void CloseAndFindAgain(TestProducer& producer, OV_DEV_HANDLE camera, CallbackCounter& counter) {
        EXPECT_OV_OK(OVCloseDevice(camera));
        EXPECT_LE(counter.losses, 1U);
        ExpectClosedCamera();
        EXPECT_EQ(Update(), kCameras - 1);
        producer.ReturnDevice(0, 0);
        EXPECT_EQ(Update(), kCameras);
        CallbackCounter next;
        const OV_DEV_HANDLE found = OpenHeard(producer, next);
        EXPECT_OV_OK(OVCloseDevice(found));
        EXPECT_EQ(next.losses, 0U);
        ExpectClosedCamera();
    }
};

TEST_F(LostCameraRoundsTest, WhileFramesFlow) {
    Run([&](unsigned round) {
        TestProducer& producer = ProducerOf(round);
        CallbackCounter counter;
        const OV_DEV_HANDLE camera = OpenHeard(producer, counter);
        producer.LoseDevice(0, 0);
        if (round % 3 != 0) {
            CallbackCounter::Await(counter.losses, 1);
        }
        if (round % 4 < 2) {
            EXPECT_EQ(OVStreamOff(camera), OV_STATUS_OFFLINE);
        }
        CloseAndFindAgain(producer, camera, counter);
    });
}

TEST_F(LostCameraRoundsTest, WhileAnEventCallbackRuns) {
    struct Held {
        std::atomic<unsigned> entered{0};
        std::atomic<bool> released{false};
        OV_DEV_HANDLE camera = nullptr;
        OV_STATUS status = OV_STATUS_ERROR;
        OV_STATUS closedCamera = OV_STATUS_ERROR;
        OV_STATUS closedLibrary = OV_STATUS_ERROR;

        static void OnEvent(OV_FEATURE_ID /*feature*/, void* user) {
            auto* const held = static_cast<Held*>(user);
            if (held->entered++ != 0) {
                return;
            }
            while (!held->released) {
                std::this_thread::yield();
            }
            int64_t width = 0;
            held->status = OVGetInt(held->camera, OV_FEATURE_PayloadSize, &width);
            held->closedCamera = OVCloseDevice(held->camera);
            held->closedLibrary = OVCloseLib();
        }
    };
    Run([&](unsigned round) {
        TestProducer& producer = ProducerOf(round);
        CallbackCounter counter;
        Held held;
        const OV_DEV_HANDLE camera = OpenHeard(producer, counter);
        held.camera = camera;
        void* handle = nullptr;
        EXPECT_OV_OK(OVRegisterFeatureCallback(camera, &held, &Held::OnEvent, kEvent, &handle));
        producer.FireExposureEnd(0, 0, 2);
        CallbackCounter::Await(held.entered, 1);
        producer.LoseDevice(0, 0);
        CallbackCounter::Await(counter.losses, 1);
        if (round % 2 == 0) {
            held.released = true;
            CloseAndFindAgain(producer, camera, counter);
        } else {
            // The close begins while the callback is still held.
            std::atomic<bool> closing{false};
            std::thread release([&] {
                while (!closing) {
                    std::this_thread::yield();
                }
                held.released = true;
            });
            closing = true;
            CloseAndFindAgain(producer, camera, counter);
            release.join();
        }
        EXPECT_TRUE(held.status == OV_STATUS_OFFLINE || held.status == OV_STATUS_SUCCESS);
        EXPECT_EQ(held.closedCamera, OV_STATUS_INVALID_CALL);
        EXPECT_EQ(held.closedLibrary, OV_STATUS_INVALID_CALL);
    });
}

TEST_F(LostCameraRoundsTest, WhileAFeatureIsWritten) {
    Run([&](unsigned round) {
        TestProducer& producer = ProducerOf(round);
        CallbackCounter counter;
        const OV_DEV_HANDLE camera = OpenHeard(producer, counter);
        std::atomic<unsigned> written{0};
        Beside writing([&] {
            OV_STATUS status = OV_STATUS_SUCCESS;
            for (int64_t value = 0; status == OV_STATUS_SUCCESS; value = 1 - value) {
                status = OVSetFloat(camera, OV_FEATURE_ExposureTime,
                                    1000.0 + static_cast<double>(value));
                ++written;
            }
            return status;
        });
        CallbackCounter::Await(written, 1 + round % 5);
        producer.LoseDevice(0, 0);
        EXPECT_EQ(writing.Join(), OV_STATUS_OFFLINE) << writing.GetText();
        CloseAndFindAgain(producer, camera, counter);
    });
}

TEST_F(LostCameraRoundsTest, DuringTheClose) {
    // Each is a step of the close before which the camera goes.
    constexpr const char* kSteps[] = {"GCWritePort",       "EventKill", "GCUnregisterEvent",
                                      "DSStopAcquisition", "DSClose",   "DevClose"};
    Run([&](unsigned round) {
        TestProducer& producer = ProducerOf(round / unsigned{std::size(kSteps)});
        CallbackCounter counter;
        const OV_DEV_HANDLE camera = OpenHeard(producer, counter);
        HeldCall held(producer, kSteps[round % std::size(kSteps)]);
        Beside closing([&] { return OVCloseDevice(camera); });
        held.WaitFor(1);
        producer.LoseDevice(0, 0);
        held.Release();
        EXPECT_EQ(closing.Join(), OV_STATUS_SUCCESS) << closing.GetText();
        EXPECT_LE(counter.losses, 1U);
        ExpectClosedCamera();
        producer.ReturnDevice(0, 0);
        EXPECT_EQ(Update(), kCameras);
        CallbackCounter next;
        EXPECT_OV_OK(OVCloseDevice(OpenHeard(producer, next)));
    });
}

TEST_F(LostCameraRoundsTest, AndClosedByAThreadOfTheOfflineCallback) {
    struct Closer {
        OV_DEV_HANDLE camera = nullptr;
        OV_STATUS refused = OV_STATUS_SUCCESS;
        std::atomic<OV_STATUS> closed{OV_STATUS_ERROR};
        std::thread thread;
        std::atomic<unsigned> started{0};

        static void OnLoss(void* user) {
            auto* const self = static_cast<Closer*>(user);
            self->refused = OVCloseDevice(self->camera);
            self->thread = std::thread([self] { self->closed = OVCloseDevice(self->camera); });
            ++self->started;
        }
    };
    Run([&](unsigned round) {
        TestProducer& producer = ProducerOf(round);
        CallbackCounter counter;
        Closer closer;
        closer.camera = OpenHeard(producer, counter);
        void* handle = nullptr;
        EXPECT_OV_OK(
            OVRegisterDeviceOfflineCallback(closer.camera, &closer, &Closer::OnLoss, &handle));
        producer.LoseDevice(0, 0);
        CallbackCounter::Await(closer.started, 1);
        closer.thread.join();
        EXPECT_EQ(closer.refused, OV_STATUS_INVALID_CALL);
        EXPECT_EQ(closer.closed, OV_STATUS_SUCCESS);
        ExpectClosedCamera();
        producer.ReturnDevice(0, 0);
        EXPECT_EQ(Update(), kCameras);
    });
}

}  // namespace
