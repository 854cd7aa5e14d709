#pragma once
/// An open camera, its frames and its capture callback.

#include "ApiTest.h"
#include "TestFrame.h"

/// Time-out for frames that must arrive.
constexpr uint32_t kFrameTimeOut = 10000;

/// The ways in which an application receives frames.
enum class FrameWay { Callback, Copy, Loan };
constexpr FrameWay kFrameWays[] = {FrameWay::Callback, FrameWay::Copy, FrameWay::Loan};

inline void IgnoreFrame(OV_FRAME_CALLBACK_PARAM*) {}

class AcquisitionTest : public OpenCameraTest {
protected:
    void Start() { ASSERT_OV_OK(OVStreamOn(camera)); }
    void Stop() { ASSERT_OV_OK(OVStreamOff(camera)); }
    void RegisterCallback() {
        ASSERT_OV_OK(OVRegisterCaptureCallback(camera, nullptr, &IgnoreFrame));
    }

    /// Returns null and fails the test if no frame arrives.
    OV_FRAME_BUFFER* Borrow() {
        OV_FRAME_BUFFER* frame = nullptr;
        EXPECT_OV_OK(OVDQBuf(camera, &frame, kFrameTimeOut));
        return frame;
    }
    /// Lets the camera take `number` frames, and borrows them.
    void BorrowNew(unsigned number) {
        producer.Trigger(0, 0, number);
        for (unsigned i = 0; i < number; ++i) {
            ASSERT_NE(Borrow(), nullptr);
        }
    }

    uint8_t pixels[kTestFrameSize] = {};
    OV_FRAME_DATA data{};
    OV_FRAME_BUFFER* frames[8] = {};
    uint32_t count = 0;
};
