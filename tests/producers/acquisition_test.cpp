/// @file
/// Start and stop of a stream, and what a frame says of itself.
#include <thread>

#include "TestProducerFixture.h"

namespace {

class Acquisition : public TestProducerTest {
protected:
    Acquisition() { camera.OpenStream(); }
};

TEST_F(Acquisition, StartNeedsTheLeastNumberOfBuffers) {
    control.SetStreamNumber(0, 0, "AnnounceMinimum", 2);
    camera.Announce(1, kFrameSize);
    EXPECT_EQ(api.DSStartAcquisition(camera.stream, 0, GenTL::GENTL_INFINITE),
              GenTL::GC_ERR_INVALID_BUFFER);
    camera.Announce(1, kFrameSize);
    EXPECT_EQ(api.DSStartAcquisition(camera.stream, 0, GenTL::GENTL_INFINITE), 0);
}

TEST_F(Acquisition, SecondStartIsRefused) {
    camera.Start(1, kFrameSize);
    EXPECT_EQ(api.DSStartAcquisition(camera.stream, 0, GenTL::GENTL_INFINITE),
              GenTL::GC_ERR_RESOURCE_IN_USE);
}

TEST_F(Acquisition, StopWithoutAStartIsRefused) {
    EXPECT_EQ(api.DSStopAcquisition(camera.stream, 0), GenTL::GC_ERR_RESOURCE_IN_USE);
}

TEST_F(Acquisition, UnknownFlagsAreRefused) {
    camera.Announce(1, kFrameSize);
    EXPECT_EQ(api.DSStartAcquisition(camera.stream, 5, 1), GenTL::GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(api.DSStopAcquisition(camera.stream, 5), GenTL::GC_ERR_INVALID_PARAMETER);
}

TEST_F(Acquisition, EndsByItselfAfterTheWantedFrames) {
    camera.RegisterNewBuffer();
    camera.Announce(3, kFrameSize);
    ASSERT_EQ(api.DSFlushQueue(camera.stream, GenTL::ACQ_QUEUE_ALL_TO_INPUT), 0);
    control.Trigger(0, 0, 3);
    ASSERT_EQ(api.DSStartAcquisition(camera.stream, 0, 2), 0);
    camera.NextFrame();
    camera.NextFrame();
    while (camera.StreamInfo<GenTL::bool8_t>(GenTL::STREAM_INFO_IS_GRABBING) != 0) {
        std::this_thread::yield();
    }
    GenTL::S_EVENT_NEW_BUFFER data{};
    EXPECT_EQ(camera.GetFrame(data, 0), GenTL::GC_ERR_TIMEOUT);
    EXPECT_EQ(api.DSStopAcquisition(camera.stream, 0), 0);
    EXPECT_EQ(camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_DELIVERED), 2U);
}

TEST_F(Acquisition, MayStartAnewAfterItEndedByItself) {
    camera.RegisterNewBuffer();
    camera.Announce(2, kFrameSize);
    ASSERT_EQ(api.DSFlushQueue(camera.stream, GenTL::ACQ_QUEUE_ALL_TO_INPUT), 0);
    control.Trigger(0, 0, 2);
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(api.DSStartAcquisition(camera.stream, 0, 1), 0);
        camera.NextFrame();
        while (camera.StreamInfo<GenTL::bool8_t>(GenTL::STREAM_INFO_IS_GRABBING) != 0) {
            std::this_thread::yield();
        }
    }
}

TEST_F(Acquisition, CountersStartAnew) {
    camera.Start(2, kFrameSize);
    control.Trigger(0, 0, 1);
    camera.NextFrame();
    ASSERT_EQ(api.DSStopAcquisition(camera.stream, 0), 0);
    EXPECT_EQ(camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_DELIVERED), 1U);
    ASSERT_EQ(api.DSStartAcquisition(camera.stream, 0, GenTL::GENTL_INFINITE), 0);
    EXPECT_EQ(camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_DELIVERED), 0U);
}

TEST_F(Acquisition, KillBreaksTheFrameOffAndDeliversItIncomplete) {
    control.SetFrame(0, 0, "Hold", 1);
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 1);
    while (camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_STARTED) == 0) {
        std::this_thread::yield();
    }
    ASSERT_EQ(api.DSStopAcquisition(camera.stream, GenTL::ACQ_STOP_FLAGS_KILL), 0);
    const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(buffer, GenTL::BUFFER_INFO_IS_INCOMPLETE), 1);
}

TEST_F(Acquisition, PlainStopLetsTheFrameEnd) {
    control.SetFrame(0, 0, "Hold", 1);
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 1);
    while (camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_STARTED) == 0) {
        std::this_thread::yield();
    }
    std::jthread release([&] {
        control.WaitForCalls("DSStopAcquisition", 1, 10000);
        control.SetFrame(0, 0, "Hold", 0);
    });
    ASSERT_EQ(api.DSStopAcquisition(camera.stream, GenTL::ACQ_STOP_FLAGS_DEFAULT), 0);
    const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(buffer, GenTL::BUFFER_INFO_IS_INCOMPLETE), 0);
}

TEST_F(Acquisition, QueuedEventsStayReadableAfterTheStop) {
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 1);
    while (camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_DELIVERED) == 0) {
        std::this_thread::yield();
    }
    ASSERT_EQ(api.DSStopAcquisition(camera.stream, GenTL::ACQ_STOP_FLAGS_KILL), 0);
    EXPECT_EQ(camera.NextFrame(), camera.buffers[0]);
}

TEST_F(Acquisition, ContentFollowsTheFrameNumber) {
    camera.Start(2, kFrameSize);
    control.Trigger(0, 0, 2);
    for (std::size_t frame = 0; frame < 2; ++frame) {
        camera.NextFrame();
        const std::vector<std::byte>& pixels = camera.memory[frame];
        for (std::size_t i = 0; i < kFrameSize; ++i) {
            ASSERT_EQ(pixels[i], static_cast<std::byte>(i % 64 + i / 64 + frame)) << i;
        }
    }
}

TEST_F(Acquisition, FrameTellsItsShape) {
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 1);
    const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
    const auto size = [&](GenTL::BUFFER_INFO_CMD command) {
        return camera.BufferInfo<std::size_t>(buffer, command);
    };
    EXPECT_EQ(size(GenTL::BUFFER_INFO_WIDTH), 64U);
    EXPECT_EQ(size(GenTL::BUFFER_INFO_HEIGHT), 48U);
    EXPECT_EQ(size(GenTL::BUFFER_INFO_XOFFSET), 0U);
    EXPECT_EQ(size(GenTL::BUFFER_INFO_SIZE_FILLED), kFrameSize);
    EXPECT_EQ(size(GenTL::BUFFER_INFO_PAYLOADTYPE), GenTL::PAYLOAD_TYPE_IMAGE);
    EXPECT_EQ(camera.BufferInfo<std::uint64_t>(buffer, GenTL::BUFFER_INFO_PIXELFORMAT),
              0x01080001U);
    EXPECT_EQ(camera.BufferInfo<std::uint64_t>(buffer, GenTL::BUFFER_INFO_PIXELFORMAT_NAMESPACE),
              GenTL::PIXELFORMAT_NAMESPACE_PFNC_32BIT);
    EXPECT_EQ(camera.BufferInfo<void*>(buffer, GenTL::BUFFER_INFO_BASE), camera.memory[0].data());
}

TEST_F(Acquisition, ShortBufferTakesWhatFitsAndSaysSo) {
    camera.Start(1, 100);
    control.Trigger(0, 0, 1);
    const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
    EXPECT_EQ(camera.BufferInfo<std::size_t>(buffer, GenTL::BUFFER_INFO_SIZE_FILLED), 100U);
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(buffer, GenTL::BUFFER_INFO_IS_INCOMPLETE), 1);
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(buffer, GenTL::BUFFER_INFO_DATA_LARGER_THAN_BUFFER),
              1);
}

TEST_F(Acquisition, FreeRunningSourceNeverLosesAFrame) {
    control.SetFreeRunning(0, 0, 1);
    camera.Start(2, kFrameSize);
    for (std::uint64_t frame = 0; frame < 20; ++frame) {
        const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
        EXPECT_EQ(camera.BufferInfo<std::uint64_t>(buffer, GenTL::BUFFER_INFO_FRAMEID), frame);
        ASSERT_EQ(api.DSQueueBuffer(camera.stream, buffer), 0);
    }
    EXPECT_EQ(camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_UNDERRUN), 0U);
}

TEST_F(Acquisition, ChunksAreListedInTwoCalls) {
    control.AddChunk(0, 0, 0xA1, 0, 16);
    control.AddChunk(0, 0, 0xA2, 16, 8);
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 1);
    const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
    std::size_t count = 0;
    ASSERT_EQ(api.DSGetBufferChunkData(camera.stream, buffer, nullptr, &count), 0);
    ASSERT_EQ(count, 2U);
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> chunks(2);
    count = 1;
    EXPECT_EQ(api.DSGetBufferChunkData(camera.stream, buffer, chunks.data(), &count),
              GenTL::GC_ERR_BUFFER_TOO_SMALL);
    count = 2;
    ASSERT_EQ(api.DSGetBufferChunkData(camera.stream, buffer, chunks.data(), &count), 0);
    EXPECT_EQ(chunks[1].ChunkID, 0xA2U);
    EXPECT_EQ(chunks[1].ChunkOffset, 16);
    EXPECT_EQ(chunks[1].ChunkLength, 8U);
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(buffer, GenTL::BUFFER_INFO_CONTAINS_CHUNKDATA), 1);
}

TEST_F(Acquisition, FrameWithoutChunksListsNone) {
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 1);
    const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
    std::size_t count = 7;
    EXPECT_EQ(api.DSGetBufferChunkData(camera.stream, buffer, nullptr, &count), 0);
    EXPECT_EQ(count, 0U);
}

TEST_F(Acquisition, CloseStopsAndTakesTheBuffersBack) {
    control.SetFreeRunning(0, 0, 1);
    camera.Start(3, kFrameSize);
    camera.NextFrame();
    ASSERT_EQ(api.DSClose(camera.stream), 0);
    for (const GenTL::BUFFER_HANDLE buffer : camera.buffers) {
        EXPECT_EQ(api.DSQueueBuffer(camera.stream, buffer), GenTL::GC_ERR_INVALID_HANDLE);
    }
}

TEST_F(Acquisition, LostDeviceCantStart) {
    camera.Announce(1, kFrameSize);
    control.LoseDevice(0, 0);
    EXPECT_EQ(api.DSStartAcquisition(camera.stream, 0, 1), GenTL::GC_ERR_CUSTOM_ID);
}

TEST_F(Acquisition, LostDeviceSendsNothingAndStopsCleanly) {
    camera.Start(1, kFrameSize);
    control.LoseDevice(0, 0);
    control.Trigger(0, 0, 1);
    GenTL::S_EVENT_NEW_BUFFER data{};
    EXPECT_EQ(camera.GetFrame(data, 0), GenTL::GC_ERR_TIMEOUT);
    EXPECT_EQ(api.DSStopAcquisition(camera.stream, GenTL::ACQ_STOP_FLAGS_KILL), 0);
    EXPECT_EQ(api.DSFlushQueue(camera.stream, GenTL::ACQ_QUEUE_ALL_DISCARD), 0);
    EXPECT_EQ(api.DSRevokeBuffer(camera.stream, camera.buffers[0], nullptr, nullptr), 0);
    EXPECT_EQ(api.DevClose(camera.device), 0);
}

}  // namespace
