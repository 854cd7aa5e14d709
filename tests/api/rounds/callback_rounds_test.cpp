// Callbacks that come and go while others run.

#include <malloc.h>

#include <array>
#include <atomic>
#include <thread>

#include "Rounds.h"
#include "support/CallbackCounter.h"

namespace {

constexpr OV_FEATURE_ID kPlain = OV_FEATURE_Width;

class CallbackRoundsTest : public RoundsTest {
protected:
    static void Ignore(OV_FEATURE_ID /*feature*/, void* /*user*/) {}

    /// Registers and removes a feature callback that often.
    static OV_STATUS ComeAndGo(OV_DEV_HANDLE camera, OV_FEATURE_ID feature, unsigned times) {
        OV_STATUS status = OV_STATUS_SUCCESS;
        for (unsigned i = 0; i < times && status == OV_STATUS_SUCCESS; ++i) {
            OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
            status = OVRegisterFeatureCallback(camera, nullptr, &Ignore, feature, &handle);
            if (status == OV_STATUS_SUCCESS) {
                status = OVUnregisterFeatureCallback(camera, feature, handle);
            }
        }
        return status;
    }
};

TEST_F(CallbackRoundsTest, FeatureCallbacksComeAndGoOnThreeThreadsBesideWrites) {
    constexpr unsigned kTimes = 100;
    const OV_DEV_HANDLE camera = Open(IdOf(0, 0));
    Run([&](unsigned round) {
        Beside first([&] { return ComeAndGo(camera, kPlain, kTimes); });
        Beside second([&] { return ComeAndGo(camera, OV_FEATURE_Height, kTimes); });
        Beside third([&] { return ComeAndGo(camera, kEvent, kTimes); });
        for (unsigned i = 0; i < kTimes; ++i) {
            EXPECT_OV_OK(OVSetInt(camera, kPlain, (round + i) % 2 == 0 ? 16 : 32));
        }
        EXPECT_EQ(first.Join(), OV_STATUS_SUCCESS) << first.GetText();
        EXPECT_EQ(second.Join(), OV_STATUS_SUCCESS) << second.GetText();
        EXPECT_EQ(third.Join(), OV_STATUS_SUCCESS) << third.GetText();
    });
    EXPECT_OV_OK(OVCloseDevice(camera));
}

TEST_F(CallbackRoundsTest, FeatureCallbacksThatComeAndGoLeaveNoMemory) {
    constexpr unsigned kTimes = 1000;
    // Less than a byte for each pair of a run of 50 rounds.
    constexpr size_t kSlack = 50000;
    const OV_DEV_HANDLE camera = Open(IdOf(0, 0));
    EXPECT_OV_OK(ComeAndGo(camera, kPlain, kTimes));
    const size_t before = mallinfo2().uordblks;
    Run([&](unsigned /*round*/) { EXPECT_OV_OK(ComeAndGo(camera, kPlain, kTimes)); });
    EXPECT_LT(mallinfo2().uordblks, before + kSlack);
    EXPECT_OV_OK(OVCloseDevice(camera));
}

/// A feature callback that registers callbacks of the camera.
struct Registrar {
    OV_DEV_HANDLE camera = nullptr;
    OV_STATUS status = OV_STATUS_ERROR;

    static void OnChange(OV_FEATURE_ID /*feature*/, void* user) {
        auto* const self = static_cast<Registrar*>(user);
        void* handle = nullptr;
        self->status = ComeAndGoOnce(self->camera);
        if (self->status == OV_STATUS_SUCCESS) {
            self->status = OVRegisterDeviceOfflineCallback(
                self->camera, nullptr, [](void*) {}, &handle);
        }
    }
    static OV_STATUS ComeAndGoOnce(OV_DEV_HANDLE camera) {
        OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
        return OVRegisterFeatureCallback(
            camera, nullptr, [](OV_FEATURE_ID, void*) {}, kEvent, &handle);
    }
};

TEST_F(CallbackRoundsTest, AFeatureCallbackRegistersBesideAnotherThread) {
    Run([&](unsigned round) {
        TestProducer& producer = round % 2 == 0 ? gev : custom;
        CallbackCounter counter;
        Registrar registrar{Open((round % 2 == 0 ? "Gev" : "") + IdOf(0, 0))};
        void* handle = nullptr;
        EXPECT_OV_OK(OVRegisterFeatureCallback(registrar.camera, &registrar, &Registrar::OnChange,
                                               kPlain, &handle));
        Beside writing([&] { return OVSetInt(registrar.camera, kPlain, 32); });
        Beside registering([&] {
            const OV_STATUS status = OVRegisterFeatureCallback(
                registrar.camera, &counter, &CallbackCounter::OnEvent, kEvent, &handle);
            return status != OV_STATUS_SUCCESS
                       ? status
                       : OVRegisterDeviceOfflineCallback(registrar.camera, &counter,
                                                         &CallbackCounter::OnLoss, &handle);
        });
        EXPECT_EQ(writing.Join(), OV_STATUS_SUCCESS) << writing.GetText();
        EXPECT_EQ(registering.Join(), OV_STATUS_SUCCESS) << registering.GetText();
        EXPECT_EQ(registrar.status, OV_STATUS_SUCCESS);
        producer.FireExposureEnd(0, 0, 1);
        CallbackCounter::Await(counter.events, 1);
        EXPECT_OV_OK(OVCloseDevice(registrar.camera));
        ExpectClosed({"Device", "Event"});
    });
}

TEST_F(CallbackRoundsTest, OfflineCallbacksAreRegisteredBesideTheLoss) {
    constexpr size_t kLate = 3;
    Run([&](unsigned round) {
        TestProducer& producer = round % 2 == 0 ? gev : custom;
        const OV_DEV_HANDLE camera = Open((round % 2 == 0 ? "Gev" : "") + IdOf(0, 0));
        std::array<CallbackCounter, kLate + 1> counters;
        void* handle = nullptr;
        EXPECT_OV_OK(OVRegisterDeviceOfflineCallback(camera, &counters[kLate],
                                                     &CallbackCounter::OnLoss, &handle));
        Beside losing([&] {
            producer.LoseDevice(0, 0);
            return OV_STATUS_SUCCESS;
        });
        for (size_t i = 0; i < kLate; ++i) {
            EXPECT_OV_OK(OVRegisterDeviceOfflineCallback(camera, &counters[i],
                                                         &CallbackCounter::OnLoss, &handle));
        }
        for (const CallbackCounter& counter : counters) {
            CallbackCounter::Await(counter.losses, 1);
        }
        losing.Join();
        EXPECT_OV_OK(OVCloseDevice(camera));
        for (const CallbackCounter& counter : counters) {
            EXPECT_EQ(counter.losses, 1U);
        }
        producer.ReturnDevice(0, 0);
        EXPECT_EQ(Update(), kCameras);
    });
}

TEST_F(CallbackRoundsTest, AnEndedThreadOfACameraMakesNoOtherLookLikeACallback) {
    const OV_DEV_HANDLE camera = OpenRunning(custom, 0, 0);
    FrameCounter counter;
    EXPECT_OV_OK(OVRegisterCaptureCallback(camera, &counter, &FrameCounter::OnFrame));
    Run([&](unsigned /*round*/) {
        EXPECT_OV_OK(OVStreamOn(camera));
        counter.WaitForMore(1);
        EXPECT_OV_OK(OVStreamOff(camera));
        // The system gives it the identity of the stream's thread, most likely. Which
        // of the two calls wins is another matter.
        std::atomic<bool> isStarted{false};
        Beside stopping([&] {
            OV_STATUS status = OV_STATUS_SUCCESS;
            while (!isStarted && status != OV_STATUS_INVALID_CALL) {
                status = OVStreamOff(camera);
            }
            return status;
        });
        OVStreamOn(camera);
        isStarted = true;
        EXPECT_NE(stopping.Join(), OV_STATUS_INVALID_CALL) << stopping.GetText();
        OVStreamOff(camera);
    });
    EXPECT_OV_OK(OVCloseDevice(camera));
}

}  // namespace
