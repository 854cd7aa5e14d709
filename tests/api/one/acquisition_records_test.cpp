// The records of a frame, in each of the three ways to receive it.

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>

#include "GenTL/GenTL.h"
#include "support/AcquisitionTest.h"

namespace {

constexpr uint64_t kUnknown64 = UINT64_MAX;

/// The values of the three records, without their places.
struct Values {
    int32_t status;
    const void* pixels;
    int32_t size;
    int32_t width;
    int32_t height;
    int32_t format;
    uint64_t frame;
    uint64_t timestamp;
    int32_t offsetX;
    int32_t offsetY;
};

template <class Record>
Values ValuesOf(int32_t status, const Record& record) {
    return {status,          record.pImgBuf,      record.nImgSize, record.nWidth,
            record.nHeight,  record.nPixelFormat, record.nFrameID, record.nTimestamp,
            record.nOffsetX, record.nOffsetY};
}

std::string NameOf(FrameWay way) {
    constexpr const char* kNames[] = {"Callback", "Copy", "Loan"};
    return kNames[static_cast<size_t>(way)];
}

/// One frame of a camera that counts as GigE Vision.
class FrameRecordTest : public AcquisitionTest {
protected:
    void SetUp() override {}
    void OpenAs(const char* tlType, bool chunkMode = false) {
        constexpr uint64_t kChunkMode = 0x420;
        const uint32_t active = chunkMode ? 1 : 0;
        producer.SetProducerText("TLType", tlType);
        producer.WriteMemory(0, 0, kChunkMode, &active, sizeof active);
        OpenCameraTest::SetUp();
    }

    Values FrameBy(FrameWay way) {
        if (way == FrameWay::Callback) {
            return FrameByCallback();
        }
        Start();
        producer.Trigger(0, 0, 1);
        if (way == FrameWay::Loan) {
            const OV_FRAME_BUFFER* const frame = Borrow();
            return ValuesOf(frame->nStatus, *frame);
        }
        data.pImgBuf = pixels;
        EXPECT_OV_OK(OVGetImage(camera, &data, kFrameTimeOut));
        return ValuesOf(data.nStatus, data);
    }

private:
    struct Receiver {
        std::mutex mutex;
        std::condition_variable changed;
        bool done = false;
        Values values{};
    };

    Values FrameByCallback() {
        Receiver receiver;
        EXPECT_OV_OK(OVRegisterCaptureCallback(camera, &receiver, &Receive));
        Start();
        producer.Trigger(0, 0, 1);
        std::unique_lock lock(receiver.mutex);
        EXPECT_TRUE(receiver.changed.wait_for(lock, std::chrono::milliseconds(kFrameTimeOut),
                                              [&] { return receiver.done; }));
        lock.unlock();
        Stop();
        return receiver.values;
    }
    static void Receive(OV_FRAME_CALLBACK_PARAM* frame) {
        auto& receiver = *static_cast<Receiver*>(frame->pUserParam);
        const std::lock_guard lock(receiver.mutex);
        receiver.values = ValuesOf(frame->status, *frame);
        receiver.done = true;
        receiver.changed.notify_all();
    }
};

class FrameRecord : public FrameRecordTest, public testing::WithParamInterface<FrameWay> {};

TEST_P(FrameRecord, TellsWhatTheProducerTells) {
    OpenAs("GEV");
    const std::pair<const char*, int64_t> told[] = {
        {"Width", 11},      {"Height", 12},      {"OffsetX", 13},         {"OffsetY", 14},
        {"SizeFilled", 15}, {"PixelFormat", 16}, {"Timestamp", 1LL << 40}};
    for (const auto& [key, value] : told) {
        producer.SetFrame(0, 0, key, value);
    }
    const Values values = FrameBy(GetParam());
    EXPECT_EQ(values.status, OV_FRAME_STATUS_SUCCESS);
    EXPECT_EQ(values.width, 11);
    EXPECT_EQ(values.height, 12);
    EXPECT_EQ(values.offsetX, 13);
    EXPECT_EQ(values.offsetY, 14);
    EXPECT_EQ(values.size, 15);
    EXPECT_EQ(values.format, 16);
    EXPECT_EQ(values.timestamp, 1ULL << 40);
    EXPECT_EQ(values.frame, 0U);
    EXPECT_NE(values.pixels, nullptr);
}

TEST_P(FrameRecord, HasAllBitsSetWhereTheProducerTellsNothing) {
    OpenAs("GEV");
    for (const int32_t command :
         {GenTL::BUFFER_INFO_WIDTH, GenTL::BUFFER_INFO_HEIGHT, GenTL::BUFFER_INFO_XOFFSET,
          GenTL::BUFFER_INFO_YOFFSET, GenTL::BUFFER_INFO_SIZE_FILLED,
          GenTL::BUFFER_INFO_PIXELFORMAT, GenTL::BUFFER_INFO_TIMESTAMP, GenTL::BUFFER_INFO_FRAMEID,
          GenTL::BUFFER_INFO_IS_INCOMPLETE}) {
        producer.FailCommand("DSGetBufferInfo", command, GenTL::GC_ERR_NOT_AVAILABLE);
    }
    const Values values = FrameBy(GetParam());
    EXPECT_EQ(values.status, OV_FRAME_STATUS_INCOMPLETE);
    for (const int32_t value : {values.width, values.height, values.offsetX, values.offsetY,
                                values.size, values.format}) {
        EXPECT_EQ(value, -1);
    }
    EXPECT_EQ(values.timestamp, kUnknown64);
    EXPECT_EQ(values.frame, kUnknown64);
}

TEST_P(FrameRecord, TellsAnIncompleteFrame) {
    OpenAs("GEV");
    producer.SetFrame(0, 0, "Incomplete", 1);
    EXPECT_EQ(FrameBy(GetParam()).status, OV_FRAME_STATUS_INCOMPLETE);
}

TEST_P(FrameRecord, HasPixelsOfAnUnknownPlaceInACopyOnly) {
    OpenAs("GEV");
    producer.FailCommand("DSGetBufferInfo", GenTL::BUFFER_INFO_BASE, GenTL::GC_ERR_NOT_AVAILABLE);
    std::memset(pixels, 0xA5, sizeof pixels);
    const Values values = FrameBy(GetParam());
    EXPECT_EQ(values.status, OV_FRAME_STATUS_SUCCESS);
    if (GetParam() == FrameWay::Copy) {
        EXPECT_EQ(values.pixels, pixels);
        EXPECT_EQ(pixels[0], 0);
        EXPECT_EQ(pixels[1], 1) << "as the camera draws them";
    } else {
        EXPECT_EQ(values.pixels, nullptr);
    }
}

INSTANTIATE_TEST_SUITE_P(Ways, FrameRecord, testing::ValuesIn(kFrameWays),
                         [](const auto& test) { return NameOf(test.param); });

/// Whose word counts for the shape of a frame.
struct Shape {
    const char* tlType;
    bool chunkMode;
    bool ofTheCamera;
};

class FrameShape : public FrameRecordTest,
                   public testing::WithParamInterface<std::tuple<FrameWay, Shape>> {};

TEST_P(FrameShape, IsOfTheCameraWhereTheProducerCannotKnow) {
    const auto& [way, shape] = GetParam();
    OpenAs(shape.tlType, shape.chunkMode);
    for (const char* const key : {"Width", "Height", "OffsetX", "OffsetY", "PixelFormat"}) {
        producer.SetFrame(0, 0, key, 9);
    }
    const Values values = FrameBy(way);
    EXPECT_EQ(values.width, shape.ofTheCamera ? kTestFrameWidth : 9);
    EXPECT_EQ(values.height, shape.ofTheCamera ? kTestFrameHeight : 9);
    EXPECT_EQ(values.offsetX, shape.ofTheCamera ? 0 : 9);
    EXPECT_EQ(values.offsetY, shape.ofTheCamera ? 0 : 9);
    EXPECT_EQ(values.format, shape.ofTheCamera ? kTestFrameFormat : 9);
}

INSTANTIATE_TEST_SUITE_P(
    Streams, FrameShape,
    testing::Combine(testing::ValuesIn(kFrameWays),
                     testing::Values(Shape{"GEV", false, false}, Shape{"GEV", true, true},
                                     Shape{"U3V", true, false}, Shape{"Custom", false, true})),
    [](const auto& test) {
        const Shape& shape = std::get<1>(test.param);
        return NameOf(std::get<0>(test.param)) + shape.tlType + (shape.chunkMode ? "Chunk" : "");
    });

class FrameCopyTest : public FrameRecordTest {};

TEST_F(FrameCopyTest, HasTheWholePayloadThoughLessIsFilled) {
    OpenAs("GEV");
    producer.SetFrame(0, 0, "SizeFilled", 10);
    EXPECT_EQ(FrameBy(FrameWay::Copy).size, 10);
    data.nImgSize = static_cast<int32_t>(kTestFrameSize);
    EXPECT_EQ(DifferenceOf(0, data.nStatus, data), "");
}

TEST_F(FrameCopyTest, LeavesReservedFieldsAsTheyWere) {
    OpenAs("GEV");
    data.reserved[0] = 0x1234;
    data.reserved[1] = -1;
    FrameBy(FrameWay::Copy);
    EXPECT_EQ(data.reserved[0], 0x1234);
    EXPECT_EQ(data.reserved[1], -1);
}

TEST_F(FrameCopyTest, EndsWithThePayloadThoughBuffersAreLarger) {
    producer.SetStreamNumber(0, 0, "Alignment", 4096);
    OpenAs("GEV");
    std::vector<uint8_t> memory(kTestFrameSize + 1, 0xA5);
    Start();
    producer.Trigger(0, 0, 1);
    data.pImgBuf = memory.data();
    EXPECT_OV_OK(OVGetImage(camera, &data, kFrameTimeOut));
    EXPECT_EQ(DifferenceOf(0, data.nStatus, data), "");
    EXPECT_EQ(memory.back(), 0xA5);
}

}  // namespace
