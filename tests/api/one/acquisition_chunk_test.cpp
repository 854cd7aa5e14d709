// Frames with chunks through the flat interface, which leaves the chunks to those
// who drive an adapter: whatever a producer says of them, frames come as they are.

#include <condition_variable>
#include <mutex>

#include "support/AcquisitionTest.h"
#include "support/StartableCamera.h"

namespace {

/// "LUTIndex" in the chunk 0xA1, beside a register of the camera itself.
std::string ChunkCamera() {
    return DescribeStartable(DescribeRegister("TLParamsLocked", "0x418", "Device") +
                             DescribeRegister("LUTIndex", "0", "Chunk") +
                             DescribeRegister("LUTValue", "0x9000", "Device") +
                             "<Port Name=\"Chunk\"><ChunkID>A1</ChunkID></Port>");
}

class ChunkFrameTest : public AcquisitionTest {
protected:
    void SetUp() override {
        const std::string text = ChunkCamera();
        producer.SetDescription("Remote", "Chunks.xml", text.data(), text.size());
        AcquisitionTest::SetUp();
    }

    void ExpectUnreadable() {
        int64_t value = 77;
        bool readable = true;
        EXPECT_OV_OK(OVIsReadable(camera, OV_FEATURE_LUTIndex, &readable));
        EXPECT_FALSE(readable);
        EXPECT_EQ(OVGetInt(camera, OV_FEATURE_LUTIndex, &value), OV_STATUS_INVALID_ACCESS);
        EXPECT_EQ(value, 77);
    }

    /// Fetches frame n, checks it and returns it.
    void ExpectFrame(FrameWay way, uint64_t n) {
        if (way == FrameWay::Callback) {
            producer.Trigger(0, 0, 1);
            std::unique_lock lock(mutex);
            called.wait(lock, [&] { return calls == n + 1; });
            EXPECT_EQ(difference, "");
        } else if (way == FrameWay::Copy) {
            producer.Trigger(0, 0, 1);
            data.pImgBuf = pixels;
            ASSERT_OV_OK(OVGetImage(camera, &data, kFrameTimeOut));
            EXPECT_EQ(DifferenceOf(n, data.nStatus, data), "");
        } else {
            producer.Trigger(0, 0, 1);
            OV_FRAME_BUFFER* const frame = Borrow();
            ASSERT_NE(frame, nullptr);
            EXPECT_EQ(DifferenceOf(n, frame->nStatus, *frame), "");
            ExpectUnreadable();
            ASSERT_OV_OK(OVQBuf(camera, frame));
        }
    }

    static void OnFrame(OV_FRAME_CALLBACK_PARAM* param) {
        auto& test = *static_cast<ChunkFrameTest*>(param->pUserParam);
        const std::lock_guard lock(test.mutex);
        test.difference += DifferenceOf(test.calls, param->status, *param);
        ++test.calls;
        test.called.notify_all();
    }
    void StartBy(FrameWay way) {
        if (way == FrameWay::Callback) {
            ASSERT_OV_OK(OVRegisterCaptureCallback(camera, this, &OnFrame));
        }
        Start();
    }

    std::mutex mutex;
    std::condition_variable called;
    uint64_t calls = 0;
    std::string difference;
};

TEST_F(ChunkFrameTest, FeatureIsUnreadableWithoutAFrame) {
    ExpectUnreadable();
    EXPECT_EQ(OVSetInt(camera, OV_FEATURE_LUTIndex, 1), OV_STATUS_INVALID_ACCESS);
    int64_t value = 0;
    EXPECT_OV_OK(OVGetInt(camera, OV_FEATURE_LUTValue, &value)) << "of the camera itself";
}

struct Layout {
    const char* name;
    int64_t offset;
    size_t length;
};

class ChunkLayouts : public ChunkFrameTest,
                     public ::testing::WithParamInterface<std::tuple<FrameWay, Layout>> {};

TEST_P(ChunkLayouts, LeaveFramesAndFeaturesAsTheyAre) {
    const auto& [way, layout] = GetParam();
    producer.AddChunk(0, 0, 0xA1, layout.offset, layout.length);
    StartBy(way);
    // Each buffer more than once.
    for (uint64_t n = 0; n < 7; ++n) {
        ExpectFrame(way, n);
        ExpectUnreadable();
    }
    EXPECT_EQ(producer.CallCount("DSGetBufferChunkData"), 0U) << "nobody asked";
    Stop();
    ExpectUnreadable();
}

std::string NameOf(const ::testing::TestParamInfo<std::tuple<FrameWay, Layout>>& test) {
    constexpr const char* kNames[] = {"ByCallback", "ByCopy", "ByLoan"};
    return std::string(std::get<1>(test.param).name) +
           kNames[static_cast<size_t>(std::get<0>(test.param))];
}

INSTANTIATE_TEST_SUITE_P(Of, ChunkLayouts,
                         ::testing::Combine(::testing::ValuesIn(kFrameWays),
                                            ::testing::Values(Layout{"Sound", 5, 4},
                                                              Layout{"Empty", 5, 0},
                                                              Layout{"BeyondTheBuffer", 64 * 48, 1},
                                                              Layout{"BeforeTheBuffer", -4, 8},
                                                              Layout{"EndlessOne", 5, SIZE_MAX})),
                         NameOf);

TEST_F(ChunkFrameTest, FeatureIsUnreadableInTheNextOpenCameraToo) {
    producer.AddChunk(0, 0, 0xA1, 5, 4);
    Start();
    ExpectFrame(FrameWay::Loan, 0);
    ASSERT_OV_OK(OVCloseDevice(camera));
    camera = Open();
    ExpectUnreadable();
    Start();
    ExpectFrame(FrameWay::Loan, 1);
}

}  // namespace
