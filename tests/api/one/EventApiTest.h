#pragma once
/// An open camera, and calls on the threads of its callbacks.

#include <atomic>
#include <functional>
#include <future>

#include "support/ApiTest.h"

/// `Feature` is the calling thread, with a feature callback of its own write.
enum class CallbackThread { Capture, Event, Offline, Feature };
constexpr CallbackThread kCallbackThreads[] = {CallbackThread::Capture, CallbackThread::Event,
                                               CallbackThread::Offline, CallbackThread::Feature};
constexpr const char* kCallbackThreadNames[] = {"Capture", "Event", "Offline", "Feature"};
/// Those, which come first, whose thread goes on after the camera has been closed: a
/// write that is still under way doesn't.
constexpr size_t kOwnThreads = 3;

class EventApiTest : public OpenCameraTest {
protected:
    static constexpr OV_FEATURE_ID kEvent = OV_FEATURE_EventExposureEndFrameID;
    static constexpr OV_FEATURE_ID kPlain = OV_FEATURE_Width;

    ~EventApiTest() override { OVCloseLib(); }  // before what the callbacks point at goes

    static void IgnoreLoss(void* /*user*/) {}
    static void IgnoreChange(OV_FEATURE_ID /*feature*/, void* /*user*/) {}

    OV_EVENT_CALLBACK_HANDLE RegisterOffline() const {
        OV_EVENT_CALLBACK_HANDLE handle = nullptr;
        EXPECT_OV_OK(OVRegisterDeviceOfflineCallback(camera, nullptr, &IgnoreLoss, &handle));
        return handle;
    }
    OV_FEATURE_CALLBACK_HANDLE RegisterFeature(OV_FEATURE_ID feature) const {
        OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
        EXPECT_OV_OK(OVRegisterFeatureCallback(camera, nullptr, &IgnoreChange, feature, &handle));
        return handle;
    }

    /// A call that a callback makes once, and what came of it.
    struct Inside {
        explicit Inside(std::function<OV_STATUS()> wanted) : call(std::move(wanted)) {}

        std::function<OV_STATUS()> call;
        std::promise<LastError> done;
        std::atomic<bool> ran{false};

        void Run() {
            if (ran.exchange(true)) {
                return;
            }
            LastError error;
            error.status = call();
            if (error.status != OV_STATUS_SUCCESS) {
                error = LastError::Get();
            }
            done.set_value(error);
        }
        static void OnFrame(OV_FRAME_CALLBACK_PARAM* frame) {
            static_cast<Inside*>(frame->pUserParam)->Run();
        }
        static void OnChange(OV_FEATURE_ID /*feature*/, void* user) {
            static_cast<Inside*>(user)->Run();
        }
        static void OnLoss(void* user) { static_cast<Inside*>(user)->Run(); }
    };

    /// Runs the call on a thread of the camera's callbacks, once.
    LastError RunOn(CallbackThread thread, std::function<OV_STATUS()> call) {
        m_inside.push_back(std::make_unique<Inside>(std::move(call)));
        Inside* const inside = m_inside.back().get();
        OV_EVENT_CALLBACK_HANDLE handle = nullptr;
        switch (thread) {
            case CallbackThread::Capture:
                EXPECT_OV_OK(OVRegisterCaptureCallback(camera, inside, &Inside::OnFrame));
                EXPECT_OV_OK(OVStreamOn(camera));
                producer.Trigger(0, 0, 1);
                break;
            case CallbackThread::Event:
                EXPECT_OV_OK(
                    OVRegisterFeatureCallback(camera, inside, &Inside::OnChange, kEvent, &handle));
                producer.FireExposureEnd(0, 0, 1);
                break;
            case CallbackThread::Offline:
                EXPECT_OV_OK(
                    OVRegisterDeviceOfflineCallback(camera, inside, &Inside::OnLoss, &handle));
                producer.LoseDevice(0, 0);
                break;
            case CallbackThread::Feature:
                EXPECT_OV_OK(
                    OVRegisterFeatureCallback(camera, inside, &Inside::OnChange, kPlain, &handle));
                EXPECT_OV_OK(OVSetInt(camera, kPlain, 32));
        }
        return inside->done.get_future().get();
    }

private:
    std::vector<std::unique_ptr<Inside>> m_inside;
};
