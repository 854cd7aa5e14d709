// What becomes of frames: on loan, by copy, in records.

#include <algorithm>
#include <cstring>
#include <thread>
#include <vector>

#include "GenTL/GenTL.h"
#include "support/AcquisitionTest.h"

namespace {

// Frames on loan.

TEST_F(AcquisitionTest, OnlyAFrameOnLoanGoesBack) {
    Start();
    OV_FRAME_BUFFER stranger{};
    constexpr const char* kText = "Invalid OV_FRAME_BUFFER* parameter";
    ExpectFailure(OVQBuf(camera, &stranger), OV_STATUS_INVALID_PARAMETER, kText);
    producer.Trigger(0, 0, 1);
    OV_FRAME_BUFFER* const frame = Borrow();
    EXPECT_OV_OK(OVQBuf(camera, frame));
    ExpectFailure(OVQBuf(camera, frame), OV_STATUS_INVALID_PARAMETER, kText);
}

TEST_F(AcquisitionTest, NoFrameComesWithoutAFreeBuffer) {
    Start();
    producer.SetFreeRunning(0, 0, 1);
    for (int i = 0; i < 5; ++i) {
        ASSERT_NE(Borrow(), nullptr);
    }
    OV_FRAME_BUFFER* frame = nullptr;
    EXPECT_EQ(OVDQBuf(camera, &frame, 0), OV_STATUS_TIMEOUT);
    EXPECT_EQ(frame, nullptr);
}

TEST_F(AcquisitionTest, AllFramesGoBackAtOnce) {
    Start();
    for (int round = 0; round < 3; ++round) {
        producer.Trigger(0, 0, 5);
        for (int i = 0; i < 5; ++i) {
            ASSERT_NE(Borrow(), nullptr);
        }
        ASSERT_OV_OK(OVQAllBufs(camera));
    }
    EXPECT_OV_OK(OVQAllBufs(camera)) << "none on loan";
}

TEST_F(AcquisitionTest, AnArrayOneShortTellsTheNumberThatItNeeds) {
    Start();
    ExpectFailure(OVDQAllBufs(camera, frames, 4, &count, 0), OV_STATUS_NEED_MORE_BUFFER,
                  "Size of OV_FRAME_DATA* array should be at least 5");
}

/// The producer keeps buffers of an earlier start, so that there are more frames than
/// records to lend.
class ExhaustedPoolTest : public AcquisitionTest {
protected:
    /// Lends `number` frames and leaves five in the producer's hands.
    void Exhaust(unsigned number) {
        Start();
        RefuseRevokes(number);
        Stop();
        RefuseRevokes(number);
        Start();
        BorrowNew(number);
    }
    /// Frames of five buffers can be had, so none of them is lost.
    void ExpectAllFiveBack() {
        producer.Trigger(0, 0, 5);
        data.pImgBuf = pixels;
        for (int i = 0; i < 5; ++i) {
            EXPECT_OV_OK(OVGetImage(camera, &data, kFrameTimeOut));
        }
    }
    void AwaitWaitingFrames(unsigned number) {
        const int64_t all = Delivered() + number;
        producer.Trigger(0, 0, number);
        while (Delivered() < all) {
            std::this_thread::yield();
        }
    }

private:
    void RefuseRevokes(unsigned number) {
        for (unsigned call = 1; call <= number; ++call) {
            producer.FailCall("DSRevokeBuffer", call, GenTL::GC_ERR_BUSY);
        }
    }
    int64_t Delivered() {
        int64_t delivered = 0;
        EXPECT_OV_OK(OVGetInt(camera, OV_FEATURE_StreamDeliveredFrameCount, &delivered));
        return delivered;
    }
};

TEST_F(ExhaustedPoolTest, LendsNoFrameWithoutARecordAndGivesItBack) {
    Exhaust(5);
    producer.Trigger(0, 0, 1);
    OV_FRAME_BUFFER* frame = nullptr;
    ExpectFailure(OVDQBuf(camera, &frame, kFrameTimeOut), OV_STATUS_ERROR, "DQFrameBuffer failed");
    EXPECT_EQ(frame, nullptr);
    EXPECT_EQ(producer.SuccessCount("DSQueueBuffer"), 1U);
    ExpectAllFiveBack();
}

TEST_F(ExhaustedPoolTest, LendsNoneOfManyWithoutARecordForEach) {
    Exhaust(4);
    AwaitWaitingFrames(3);
    ExpectFailure(OVDQAllBufs(camera, frames, 8, &count, kFrameTimeOut), OV_STATUS_ERROR,
                  "DQFrameBuffer failed");
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(frames[0], nullptr);
    EXPECT_EQ(producer.SuccessCount("DSQueueBuffer"), 2U) << "the taken one and the one without";
}

TEST_F(ExhaustedPoolTest, LendsAllThatWaitWhileThereAreRecords) {
    Exhaust(2);
    AwaitWaitingFrames(3);
    EXPECT_OV_OK(OVDQAllBufs(camera, frames, 8, &count, kFrameTimeOut));
    EXPECT_EQ(count, 3U);
    EXPECT_NE(frames[2], nullptr);
    EXPECT_EQ(frames[3], nullptr);
}

class ManyFramesTest : public ExhaustedPoolTest {
protected:
    void SetUp() override {
        ExhaustedPoolTest::SetUp();
        Start();
        AwaitWaitingFrames(3);
    }
};

TEST_F(ManyFramesTest, AreThoseBeforeATimeOut) {
    producer.FailCall("EventGetData", 3, GenTL::GC_ERR_TIMEOUT);
    EXPECT_OV_OK(OVDQAllBufs(camera, frames, 5, &count, kFrameTimeOut));
    EXPECT_EQ(count, 2U);
    EXPECT_NE(frames[1], nullptr);
    EXPECT_EQ(frames[2], nullptr);
}

TEST_F(ManyFramesTest, AreNoneWithATimeOutFirst) {
    producer.FailCall("EventGetData", 1, GenTL::GC_ERR_TIMEOUT);
    ExpectFailure(OVDQAllBufs(camera, frames, 5, &count, kFrameTimeOut), OV_STATUS_TIMEOUT,
                  "Planned failure of EventGetData");
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(producer.CallCount("EventGetData"), 1U) << "a further wait would last as long again";
}

TEST_F(ManyFramesTest, AreNoneAfterAFailureOfOne) {
    producer.FailCall("EventGetData", 3, GenTL::GC_ERR_IO);
    ExpectFailure(OVDQAllBufs(camera, frames, 5, &count, kFrameTimeOut), GenTL::GC_ERR_IO,
                  "Planned failure of EventGetData");
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(frames[0], nullptr);
    EXPECT_EQ(producer.SuccessCount("DSQueueBuffer"), 2U);
    EXPECT_OV_OK(OVQBuf(camera, Borrow()));
    ExpectAllFiveBack();
}

TEST_F(AcquisitionTest, AFrameThatTheProducerRefusesStaysOnLoan) {
    Start();
    producer.Trigger(0, 0, 1);
    OV_FRAME_BUFFER* const frame = Borrow();
    producer.FailCall("DSQueueBuffer", 1, GenTL::GC_ERR_IO);
    ExpectFailure(OVQBuf(camera, frame), GenTL::GC_ERR_IO, "Planned failure of DSQueueBuffer");
    EXPECT_OV_OK(OVQBuf(camera, frame));
}

TEST_F(AcquisitionTest, AllWaitingFramesAreNoneAfterTheTimeOut) {
    Start();
    EXPECT_EQ(OVDQAllBufs(camera, frames, 5, &count, 0), OV_STATUS_TIMEOUT);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(frames[0], nullptr);
}

TEST_F(AcquisitionTest, AllWaitingFramesMayBeOne) {
    Start();
    producer.Trigger(0, 0, 1);
    EXPECT_OV_OK(OVDQAllBufs(camera, frames, 5, &count, kFrameTimeOut));
    EXPECT_EQ(count, 1U);
    ASSERT_NE(frames[0], nullptr);
    EXPECT_EQ(DifferenceOf(0, frames[0]->nStatus, *frames[0]), "");
    EXPECT_EQ(frames[1], nullptr);
    EXPECT_OV_OK(OVQAllBufs(camera));
}

TEST_F(AcquisitionTest, ARecordOnLoanIsZeroWhereNothingIsTold) {
    Start();
    producer.Trigger(0, 0, 1);
    const OV_FRAME_BUFFER* const frame = Borrow();
    for (const char byte : frame->reserved) {
        EXPECT_EQ(byte, 0);
    }
    EXPECT_NE(frame->nBufID, 0U);
}

TEST_F(AcquisitionTest, AnIncompleteFrameIsNoFailure) {
    producer.SetFrame(0, 0, "Incomplete", 1);
    Start();
    producer.Trigger(0, 0, 2);
    EXPECT_EQ(Borrow()->nStatus, OV_FRAME_STATUS_INCOMPLETE);
    data.pImgBuf = pixels;
    EXPECT_OV_OK(OVGetImage(camera, &data, kFrameTimeOut));
    EXPECT_EQ(data.nStatus, OV_FRAME_STATUS_INCOMPLETE);
}

TEST_F(AcquisitionTest, ACopiedFrameIsBackWithTheProducerAtOnce) {
    ASSERT_OV_OK(OVSetAcqusitionBufferNumber(camera, 5));
    Start();
    producer.SetFreeRunning(0, 0, 1);
    data.pImgBuf = pixels;
    for (uint64_t n = 0; n < 12; ++n) {
        ASSERT_OV_OK(OVGetImage(camera, &data, kFrameTimeOut));
        ASSERT_EQ(data.nFrameID, n);
    }
}

TEST_F(AcquisitionTest, NothingComesWithinTheTimeOut) {
    Start();
    data.pImgBuf = pixels;
    EXPECT_EQ(OVGetImage(camera, &data, 1), OV_STATUS_TIMEOUT);
    EXPECT_EQ(OVDQBuf(camera, frames, 1), OV_STATUS_TIMEOUT);
    producer.Trigger(0, 0, 1);
    EXPECT_NE(Borrow(), nullptr) << "a time-out changes nothing";
}

// The flush.

class FlushTest : public ExhaustedPoolTest {};

TEST_F(FlushTest, GivesWaitingFramesBackUnseen) {
    Start();
    AwaitWaitingFrames(3);
    EXPECT_OV_OK(OVFlushQueue(camera));
    EXPECT_EQ(producer.SuccessCount("DSQueueBuffer"), 3U);
    EXPECT_EQ(OVDQBuf(camera, frames, 0), OV_STATUS_TIMEOUT);
}

TEST_F(FlushTest, LeavesFramesOnLoanAlone) {
    Start();
    BorrowNew(1);
    producer.Trigger(0, 0, 1);
    OV_FRAME_BUFFER* const loan = Borrow();
    const auto* const content = static_cast<const uint8_t*>(loan->pImgBuf);
    const std::vector<uint8_t> before(content, content + loan->nImgSize);
    EXPECT_OV_OK(OVFlushQueue(camera));
    // With three buffers left, frames come and go around the loan.
    for (int i = 0; i < 6; ++i) {
        producer.Trigger(0, 0, 1);
        EXPECT_OV_OK(OVQBuf(camera, Borrow()));
    }
    EXPECT_EQ(std::memcmp(content, before.data(), before.size()), 0);
    EXPECT_OV_OK(OVQBuf(camera, loan));
}

TEST_F(FlushTest, TakesNoMoreThanWaitedAtTheCall) {
    Start();
    AwaitWaitingFrames(2);
    producer.SetFreeRunning(0, 0, 1);
    EXPECT_OV_OK(OVFlushQueue(camera));
    EXPECT_LE(producer.SuccessCount("DSQueueBuffer"), 5U);
}

TEST_F(FlushTest, OfAStoppedStreamDoesNothing) {
    EXPECT_OV_OK(OVFlushQueue(camera));
    Start();
    Stop();
    const auto calls = producer.Log().size();
    EXPECT_OV_OK(OVFlushQueue(camera));
    EXPECT_EQ(producer.Log().size(), calls);
}

// What a producer may leave out.

TEST_F(AcquisitionTest, ACopyWithoutABasePointerIsOfTheMemoryThatWasAnnounced) {
    producer.FailCommand("DSGetBufferInfo", GenTL::BUFFER_INFO_BASE, GenTL::GC_ERR_NOT_AVAILABLE);
    Start();
    producer.Trigger(0, 0, 1);
    std::fill(std::begin(pixels), std::end(pixels), uint8_t{0xFF});
    data.pImgBuf = pixels;
    ASSERT_OV_OK(OVGetImage(camera, &data, kFrameTimeOut));
    EXPECT_EQ(DifferenceOf(0, data.nStatus, data), "");
}

TEST_F(AcquisitionTest, BuffersAreAsManyAsTheProducerNeeds) {
    ASSERT_OV_OK(OVCloseDevice(camera));
    producer.SetStreamNumber(0, 0, "AnnounceMinimum", 8);
    camera = Open();
    uint64_t number = 0;
    EXPECT_OV_OK(OVGetAcqusitionBufferNumber(camera, &number));
    EXPECT_EQ(number, 8U);
    Start();
    BorrowNew(8);
    Stop();
    ExpectFailure(OVSetAcqusitionBufferNumber(camera, 7), OV_STATUS_OUT_OF_RANGE,
                  "Acquisition buffers is less than the minimum");
}

}  // namespace
