/// @file The states of a buffer, and what changes them.
#include <thread>
#include <vector>

#include "TestProducerFixture.h"

namespace {

class BufferQueue : public TestProducerTest {
protected:
    BufferQueue() { camera.OpenStream(); }

    std::size_t Input() const {
        return camera.StreamInfo<std::size_t>(GenTL::STREAM_INFO_NUM_QUEUED);
    }
    std::size_t Output() const {
        return camera.StreamInfo<std::size_t>(GenTL::STREAM_INFO_NUM_AWAIT_DELIVERY);
    }
    std::size_t Entries() const {
        return GenTLApi::Number<std::size_t>([&](auto* type, void* out, std::size_t* size) {
            return api.EventGetInfo(camera.event, GenTL::EVENT_NUM_IN_QUEUE, type, out, size);
        });
    }
    bool IsQueued(std::size_t index) const {
        return camera.BufferInfo<GenTL::bool8_t>(camera.buffers[index],
                                                 GenTL::BUFFER_INFO_IS_QUEUED) != 0;
    }

    /// Four buffers: 0 idle in the consumer's hands, 1 in the output queue,
    /// 2 in the input pool, 3 never queued. The engine stands still.
    void SpreadBuffers() {
        camera.RegisterNewBuffer();
        camera.Announce(4, kFrameSize);
        for (const std::size_t index : {0U, 1U}) {
            ASSERT_EQ(api.DSQueueBuffer(camera.stream, camera.buffers[index]), 0);
        }
        control.Trigger(0, 0, 2);
        ASSERT_EQ(api.DSStartAcquisition(camera.stream, 0, 2), 0);
        ASSERT_EQ(camera.NextFrame(), camera.buffers[0]);
        WaitForOutput(1);
        ASSERT_EQ(api.DSStopAcquisition(camera.stream, 0), 0);
        ASSERT_EQ(api.DSQueueBuffer(camera.stream, camera.buffers[2]), 0);
    }

    void WaitForOutput(std::size_t count) const {
        while (Output() < count) {
            std::this_thread::yield();
        }
    }
};

TEST_F(BufferQueue, AnnouncedBufferIsIdle) {
    camera.Announce(1, kFrameSize);
    EXPECT_FALSE(IsQueued(0));
    EXPECT_EQ(Input(), 0U);
    EXPECT_EQ(camera.StreamInfo<std::size_t>(GenTL::STREAM_INFO_NUM_ANNOUNCED), 1U);
}

TEST_F(BufferQueue, QueuedBufferWaitsInTheInputPool) {
    camera.Announce(1, kFrameSize);
    ASSERT_EQ(api.DSQueueBuffer(camera.stream, camera.buffers[0]), 0);
    EXPECT_TRUE(IsQueued(0));
    EXPECT_EQ(Input(), 1U);
}

TEST_F(BufferQueue, QueuingTwiceIsRefused) {
    camera.Announce(1, kFrameSize);
    ASSERT_EQ(api.DSQueueBuffer(camera.stream, camera.buffers[0]), 0);
    EXPECT_EQ(api.DSQueueBuffer(camera.stream, camera.buffers[0]), GenTL::GC_ERR_BUSY);
}

TEST_F(BufferQueue, FrameGoesToTheOutputAndFetchingItMakesItIdle) {
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 1);
    WaitForOutput(1);
    EXPECT_EQ(Input(), 0U);
    EXPECT_TRUE(IsQueued(0));
    EXPECT_EQ(camera.NextFrame(), camera.buffers[0]);
    EXPECT_FALSE(IsQueued(0));
    EXPECT_EQ(Output(), 0U);
}

TEST_F(BufferQueue, FramesComeOutInTheirOrder) {
    camera.Start(3, kFrameSize);
    control.Trigger(0, 0, 3);
    for (std::uint64_t frame = 0; frame < 3; ++frame) {
        EXPECT_EQ(camera.BufferInfo<std::uint64_t>(camera.NextFrame(), GenTL::BUFFER_INFO_FRAMEID),
                  frame);
    }
}

TEST_F(BufferQueue, EventNamesBufferAndUserPointer) {
    camera.Start(2, kFrameSize);
    control.Trigger(0, 0, 2);
    for (std::size_t i = 0; i < 2; ++i) {
        GenTL::S_EVENT_NEW_BUFFER data{};
        ASSERT_EQ(camera.GetFrame(data), 0);
        EXPECT_EQ(data.BufferHandle, camera.buffers[i]);
        EXPECT_EQ(data.pUserPointer, reinterpret_cast<void*>(i));
    }
}

TEST_F(BufferQueue, FrameWithoutABufferIsLostAndCounted) {
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 3);
    while (camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_UNDERRUN) < 2) {
        std::this_thread::yield();
    }
    EXPECT_EQ(camera.BufferInfo<std::uint64_t>(camera.NextFrame(), GenTL::BUFFER_INFO_FRAMEID), 0U);
    EXPECT_EQ(camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_DELIVERED), 1U);
    EXPECT_EQ(camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_STARTED), 1U);
}

TEST_F(BufferQueue, WithoutAnEventFramesGatherUnreported) {
    camera.Announce(1, kFrameSize);
    ASSERT_EQ(api.DSQueueBuffer(camera.stream, camera.buffers[0]), 0);
    ASSERT_EQ(api.DSStartAcquisition(camera.stream, 0, GenTL::GENTL_INFINITE), 0);
    control.Trigger(0, 0, 1);
    WaitForOutput(1);
    camera.RegisterNewBuffer();
    GenTL::S_EVENT_NEW_BUFFER data{};
    EXPECT_EQ(camera.GetFrame(data, 0), GenTL::GC_ERR_TIMEOUT);
}

TEST_F(BufferQueue, RequeueForgetsTheFrame) {
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 1);
    const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(buffer, GenTL::BUFFER_INFO_NEW_DATA), 1);
    ASSERT_EQ(api.DSQueueBuffer(camera.stream, buffer), 0);
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(buffer, GenTL::BUFFER_INFO_NEW_DATA), 0);
    EXPECT_THROW(camera.BufferInfo<std::uint64_t>(buffer, GenTL::BUFFER_INFO_FRAMEID),
                 GenTL::GC_ERROR);
}

TEST_F(BufferQueue, OnlyAnIdleBufferCanBeRevoked) {
    SpreadBuffers();
    void* memory = nullptr;
    void* user = nullptr;
    EXPECT_EQ(api.DSRevokeBuffer(camera.stream, camera.buffers[1], nullptr, nullptr),
              GenTL::GC_ERR_BUSY);
    EXPECT_EQ(api.DSRevokeBuffer(camera.stream, camera.buffers[2], nullptr, nullptr),
              GenTL::GC_ERR_BUSY);
    ASSERT_EQ(api.DSRevokeBuffer(camera.stream, camera.buffers[3], &memory, &user), 0);
    EXPECT_EQ(memory, camera.memory[3].data());
    EXPECT_EQ(user, reinterpret_cast<void*>(3));
    EXPECT_EQ(camera.StreamInfo<std::size_t>(GenTL::STREAM_INFO_NUM_ANNOUNCED), 3U);
}

TEST_F(BufferQueue, RevokedHandleIsVoid) {
    camera.Announce(1, kFrameSize);
    ASSERT_EQ(api.DSRevokeBuffer(camera.stream, camera.buffers[0], nullptr, nullptr), 0);
    EXPECT_EQ(api.DSQueueBuffer(camera.stream, camera.buffers[0]), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(api.DSRevokeBuffer(camera.stream, camera.buffers[0], nullptr, nullptr),
              GenTL::GC_ERR_INVALID_HANDLE);
}

TEST_F(BufferQueue, MemoryOfTheProducersOwnHasNoAddressAtTheRevoke) {
    GenTL::BUFFER_HANDLE buffer = nullptr;
    ASSERT_EQ(api.DSAllocAndAnnounceBuffer(camera.stream, 100, nullptr, &buffer), 0);
    EXPECT_NE(camera.BufferInfo<void*>(buffer, GenTL::BUFFER_INFO_BASE), nullptr);
    EXPECT_EQ(camera.BufferInfo<std::size_t>(buffer, GenTL::BUFFER_INFO_SIZE), 100U);
    void* memory = &memory;
    ASSERT_EQ(api.DSRevokeBuffer(camera.stream, buffer, &memory, nullptr), 0);
    EXPECT_EQ(memory, nullptr);
}

TEST_F(BufferQueue, AnnouncingTheSameMemoryTwiceIsRefused) {
    camera.Announce(1, kFrameSize);
    GenTL::BUFFER_HANDLE again = nullptr;
    EXPECT_EQ(
        api.DSAnnounceBuffer(camera.stream, camera.memory[0].data(), kFrameSize, nullptr, &again),
        GenTL::GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(again, nullptr);
}

TEST_F(BufferQueue, BufferOfAnotherStreamIsNotAnnouncedHere) {
    control.SetStreamNumber(0, 0, "Count", 2);
    ASSERT_EQ(api.DevClose(camera.device), 0);
    ASSERT_EQ(api.IFOpenDevice(camera.iface, camera.deviceId.c_str(), 4, &camera.device), 0);
    GenTL::DS_HANDLE other = nullptr;
    ASSERT_EQ(api.DevOpenDataStream(camera.device, "Stream0", &camera.stream), 0);
    ASSERT_EQ(api.DevOpenDataStream(camera.device, "Stream1", &other), 0);
    camera.Announce(1, kFrameSize);
    EXPECT_EQ(api.DSQueueBuffer(other, camera.buffers[0]), GenTL::GC_ERR_INVALID_BUFFER);
}

TEST_F(BufferQueue, IndexCountsAnnouncedBuffers) {
    camera.Announce(2, kFrameSize);
    GenTL::BUFFER_HANDLE buffer = nullptr;
    ASSERT_EQ(api.DSGetBufferID(camera.stream, 1, &buffer), 0);
    EXPECT_EQ(buffer, camera.buffers[1]);
    EXPECT_EQ(api.DSGetBufferID(camera.stream, 2, &buffer), GenTL::GC_ERR_INVALID_INDEX);
    ASSERT_EQ(api.DSRevokeBuffer(camera.stream, camera.buffers[0], nullptr, nullptr), 0);
    ASSERT_EQ(api.DSGetBufferID(camera.stream, 0, &buffer), 0);
    EXPECT_EQ(buffer, camera.buffers[1]);
}

// --- Flushing: each operation from the same spread of buffers. ---

struct FlushCase {
    const char* name;
    GenTL::ACQ_QUEUE_TYPE operation;
    std::size_t input;
    std::size_t output;
    std::size_t entries;
    std::vector<bool> queued;  ///< of buffers 0 to 3
};

class Flush : public BufferQueue, public testing::WithParamInterface<FlushCase> {};

TEST_P(Flush, MovesTheBuffersAsPromised) {
    const FlushCase& expected = GetParam();
    SpreadBuffers();
    ASSERT_EQ(api.DSFlushQueue(camera.stream, expected.operation), 0);
    EXPECT_EQ(Input(), expected.input);
    EXPECT_EQ(Output(), expected.output);
    EXPECT_EQ(Entries(), expected.entries);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(IsQueued(i), expected.queued[i]) << "buffer " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Operations, Flush,
    testing::Values(
        FlushCase{
            "InputToOutput", GenTL::ACQ_QUEUE_INPUT_TO_OUTPUT, 0, 2, 2, {false, true, true, false}},
        FlushCase{
            "OutputDiscard", GenTL::ACQ_QUEUE_OUTPUT_DISCARD, 1, 0, 0, {false, false, true, false}},
        FlushCase{"AllToInput", GenTL::ACQ_QUEUE_ALL_TO_INPUT, 4, 0, 0, {true, true, true, true}},
        FlushCase{"UnqueuedToInput",
                  GenTL::ACQ_QUEUE_UNQUEUED_TO_INPUT,
                  3,
                  1,
                  1,
                  {true, true, true, true}},
        FlushCase{
            "AllDiscard", GenTL::ACQ_QUEUE_ALL_DISCARD, 0, 0, 0, {false, false, false, false}}),
    [](const auto& flush) { return flush.param.name; });

TEST_F(BufferQueue, BufferFlushedToTheOutputHasNoNewData) {
    SpreadBuffers();
    ASSERT_EQ(api.DSFlushQueue(camera.stream, GenTL::ACQ_QUEUE_INPUT_TO_OUTPUT), 0);
    EXPECT_EQ(camera.NextFrame(), camera.buffers[1]);
    const GenTL::BUFFER_HANDLE empty = camera.NextFrame();
    EXPECT_EQ(empty, camera.buffers[2]);
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(empty, GenTL::BUFFER_INFO_NEW_DATA), 0);
}

TEST_F(BufferQueue, UnknownFlushIsRefused) {
    EXPECT_EQ(api.DSFlushQueue(camera.stream, 77), GenTL::GC_ERR_INVALID_PARAMETER);
}

TEST_F(BufferQueue, DiscardingReachesTheBufferInTheMaking) {
    control.SetFrame(0, 0, "Hold", 1);
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 1);
    while (camera.BufferInfo<GenTL::bool8_t>(camera.buffers[0], GenTL::BUFFER_INFO_IS_ACQUIRING) ==
           0) {
        std::this_thread::yield();
    }
    EXPECT_FALSE(IsQueued(0));
    EXPECT_EQ(api.DSRevokeBuffer(camera.stream, camera.buffers[0], nullptr, nullptr),
              GenTL::GC_ERR_BUSY);
    ASSERT_EQ(api.DSFlushQueue(camera.stream, GenTL::ACQ_QUEUE_ALL_DISCARD), 0);
    ASSERT_EQ(api.DSStopAcquisition(camera.stream, GenTL::ACQ_STOP_FLAGS_KILL), 0);
    EXPECT_EQ(Output(), 0U);
    EXPECT_EQ(api.DSRevokeBuffer(camera.stream, camera.buffers[0], nullptr, nullptr), 0);
}

TEST_F(BufferQueue, EventFlushMakesUnfetchedBuffersIdle) {
    SpreadBuffers();
    ASSERT_EQ(api.EventFlush(camera.event), 0);
    EXPECT_EQ(Output(), 0U);
    EXPECT_FALSE(IsQueued(1));
    EXPECT_EQ(api.DSQueueBuffer(camera.stream, camera.buffers[1]), 0);
}

}  // namespace
