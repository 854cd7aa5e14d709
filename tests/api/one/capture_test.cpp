// A thousand frames in each way, every pixel compared.

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

#include "support/ApiTest.h"
#include "support/TestFrame.h"

namespace {

constexpr uint64_t kFrames = 1000;
constexpr uint32_t kTimeOut = 10000;

class CaptureTest : public OpenCameraTest {
protected:
    /// Frames flow after the camera's own start, which is when they count from 0.
    void Start() {
        ASSERT_OV_OK(OVStreamOn(camera));
        producer.SetFreeRunning(0, 0, 1);
    }
    void Stop() {
        EXPECT_OV_OK(OVStreamOff(camera));
        producer.SetFreeRunning(0, 0, 0);
    }
};

/// Compares frames on the delivery thread and lets a test wait for the last.
class Receiver {
public:
    static void OnFrame(OV_FRAME_CALLBACK_PARAM* frame) {
        static_cast<Receiver*>(frame->pUserParam)->Take(*frame);
    }

    bool WaitForAll() {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::milliseconds(kTimeOut),
                                  [this] { return m_count >= kFrames; });
    }
    std::string FirstDifference() {
        const std::lock_guard lock(m_mutex);
        return m_difference;
    }

private:
    void Take(const OV_FRAME_CALLBACK_PARAM& frame) {
        const std::lock_guard lock(m_mutex);
        if (m_count < kFrames && m_difference.empty()) {
            m_difference = DifferenceOf(m_count, frame.status, frame);
        }
        ++m_count;
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    uint64_t m_count = 0;
    std::string m_difference;
};

TEST_F(CaptureTest, AThousandFramesByCallback) {
    Receiver receiver;
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &receiver, &Receiver::OnFrame));
    Start();
    EXPECT_TRUE(receiver.WaitForAll());
    Stop();
    EXPECT_EQ(receiver.FirstDifference(), "");
}

TEST_F(CaptureTest, AThousandFramesByCopy) {
    Start();
    std::vector<uint8_t> pixels(kTestFrameSize);
    for (uint64_t n = 0; n < kFrames; ++n) {
        OV_FRAME_DATA frame{};
        frame.pImgBuf = pixels.data();
        ASSERT_OV_OK(OVGetImage(camera, &frame, kTimeOut));
        ASSERT_EQ(frame.pImgBuf, pixels.data());
        ASSERT_EQ(DifferenceOf(n, frame.nStatus, frame), "");
    }
    Stop();
}

TEST_F(CaptureTest, AThousandFramesOnLoan) {
    Start();
    for (uint64_t n = 0; n < kFrames; ++n) {
        OV_FRAME_BUFFER* frame = nullptr;
        ASSERT_OV_OK(OVDQBuf(camera, &frame, kTimeOut));
        ASSERT_EQ(DifferenceOf(n, frame->nStatus, *frame), "");
        ASSERT_OV_OK(OVQBuf(camera, frame));
    }
    Stop();
}

TEST_F(CaptureTest, AThousandFramesOnLoanAsManyAsWait) {
    Start();
    for (uint64_t n = 0; n < kFrames;) {
        OV_FRAME_BUFFER* frames[5] = {};
        uint32_t count = 0;
        ASSERT_OV_OK(OVDQAllBufs(camera, frames, 5, &count, kTimeOut));
        ASSERT_GE(count, 1U);
        for (uint32_t i = 0; i < count; ++i, ++n) {
            ASSERT_EQ(DifferenceOf(n, frames[i]->nStatus, *frames[i]), "");
        }
        ASSERT_OV_OK(OVQAllBufs(camera));
    }
    Stop();
}

TEST_F(CaptureTest, StartsAnewAfterEachStop) {
    for (int round = 0; round < 20; ++round) {
        Start();
        OV_FRAME_BUFFER* frame = nullptr;
        ASSERT_OV_OK(OVDQBuf(camera, &frame, kTimeOut));
        ASSERT_EQ(DifferenceOf(0, frame->nStatus, *frame), "") << "round " << round;
        Stop();
    }
}

}  // namespace
