/// @file
/// What the virtual cameras append to their frames, byte for byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <span>
#include <vector>

#include "VirtualCameraFixture.h"
#include "virtual/Chunks.h"

using namespace OvVirtual;

namespace {

constexpr std::size_t kImageSize = 64 * 32;
/// Image, four values of 8 bytes and one of 4, each with its trailer.
constexpr std::size_t kWholeSize = kImageSize + 8 + 4 * 16 + 12;

std::uint64_t Big(std::span<const std::byte> bytes) {
    std::uint64_t value = 0;
    for (const std::byte byte : bytes) {
        value = value << 8 | std::to_integer<std::uint64_t>(byte);
    }
    return value;
}

class VirtualChunks : public VirtualCameraTest {
protected:
    VirtualChunks() {
        camera.OpenStream();
        Shrink();
        Write(Reg::ChunkMode, 1);
    }

    void Enable(Chunk chunk, bool on) const {
        Write(Reg::ChunkSelector, static_cast<std::uint32_t>(chunk));
        Write(Reg::ChunkEnable, on ? 1 : 0);
    }

    GenTL::BUFFER_HANDLE GrabOne() {
        Grab(3);
        return camera.NextFrame();
    }

    std::span<const std::byte> Frame(GenTL::BUFFER_HANDLE buffer) const {
        const auto index = reinterpret_cast<std::size_t>(
            camera.BufferInfo<void*>(buffer, GenTL::BUFFER_INFO_USER_PTR));
        return std::span(camera.memory[index])
            .first(camera.BufferInfo<std::size_t>(buffer, GenTL::BUFFER_INFO_SIZE_FILLED));
    }
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> Chunks(GenTL::BUFFER_HANDLE buffer) const {
        std::size_t count = 0;
        OpenCamera::Check(api.DSGetBufferChunkData(camera.stream, buffer, nullptr, &count),
                          "DSGetBufferChunkData");
        std::vector<GenTL::S_SINGLE_CHUNK_DATA> chunks(count);
        if (count != 0) {
            OpenCamera::Check(
                api.DSGetBufferChunkData(camera.stream, buffer, chunks.data(), &count),
                "DSGetBufferChunkData");
        }
        return chunks;
    }
    /// The number in a chunk, by the stream's list.
    std::uint64_t Value(GenTL::BUFFER_HANDLE buffer, Chunk chunk) const {
        for (const GenTL::S_SINGLE_CHUNK_DATA& place : Chunks(buffer)) {
            if (place.ChunkID == ChunkId(chunk)) {
                return Big(Frame(buffer).subspan(static_cast<std::size_t>(place.ChunkOffset),
                                                 place.ChunkLength));
            }
        }
        throw std::runtime_error("The frame lacks the chunk");
    }
};

TEST_F(VirtualChunks, AreNotThereUnlessAskedFor) {
    Write(Reg::ChunkMode, 0);
    EXPECT_EQ(Read(Reg::Payload), kImageSize);
    const GenTL::BUFFER_HANDLE buffer = GrabOne();
    EXPECT_EQ(Frame(buffer).size(), kImageSize);
    EXPECT_TRUE(Chunks(buffer).empty());
    EXPECT_EQ(camera.BufferInfo<std::size_t>(buffer, GenTL::BUFFER_INFO_PAYLOADTYPE),
              GenTL::PAYLOAD_TYPE_IMAGE);
}

TEST_F(VirtualChunks, StandBehindTheImageInTheirOrder) {
    EXPECT_EQ(Read(Reg::Payload), kWholeSize);
    const GenTL::BUFFER_HANDLE buffer = GrabOne();
    const auto frame = Frame(buffer);
    ASSERT_EQ(frame.size(), kWholeSize);
    const auto chunks = Chunks(buffer);
    ASSERT_EQ(chunks.size(), 6U);
    std::size_t position = 0;
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        const std::size_t length = i == 0 ? kImageSize : i == 5 ? 4 : 8;
        EXPECT_EQ(chunks[i].ChunkID, 0x0C000000 + i);
        EXPECT_EQ(chunks[i].ChunkOffset, static_cast<std::int64_t>(position));
        EXPECT_EQ(chunks[i].ChunkLength, length);
        position += length;
        EXPECT_EQ(Big(frame.subspan(position, 4)), chunks[i].ChunkID);
        EXPECT_EQ(Big(frame.subspan(position + 4, 4)), length);
        position += 8;
    }
    EXPECT_EQ(position, kWholeSize);
    EXPECT_EQ(camera.BufferInfo<std::size_t>(buffer, GenTL::BUFFER_INFO_PAYLOADTYPE),
              GenTL::PAYLOAD_TYPE_CHUNK_DATA);
    EXPECT_EQ(camera.BufferInfo<std::size_t>(buffer, GenTL::BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE),
              kWholeSize);
    EXPECT_EQ(camera.StreamInfo<std::size_t>(GenTL::STREAM_INFO_NUM_CHUNKS_MAX), 6U);
}

TEST_F(VirtualChunks, LeaveTheImageAsItIs) {
    const GenTL::BUFFER_HANDLE buffer = GrabOne();
    CameraSettings settings = FactorySettings(true);
    settings.width = 64;
    settings.height = 32;
    std::vector<std::byte> image(kImageSize);
    FrameRenderer().Render(FrameSettingsOf(settings, true, 0), 0, image);
    const auto frame = Frame(buffer).first(kImageSize);
    EXPECT_TRUE(std::equal(frame.begin(), frame.end(), image.begin()));
}

TEST_F(VirtualChunks, TellHowTheFrameWasTaken) {
    Write(Reg::Exposure, 2468);
    Write(Reg::Gain, 75);
    Write(Reg::Activation, 1);
    GenTL::BUFFER_HANDLE buffer = GrabOne();
    for (std::uint64_t frame = 0; frame < 3; ++frame) {
        EXPECT_EQ(Value(buffer, Chunk::FrameId), frame);
        EXPECT_EQ(Value(buffer, Chunk::Timestamp),
                  camera.BufferInfo<std::uint64_t>(buffer, GenTL::BUFFER_INFO_TIMESTAMP));
        EXPECT_EQ(std::bit_cast<double>(Value(buffer, Chunk::ExposureTime)), 1234.0);
        EXPECT_EQ(std::bit_cast<double>(Value(buffer, Chunk::Gain)), 7.5);
        EXPECT_EQ(Value(buffer, Chunk::LineStatusAll), 1U);
        ASSERT_EQ(api.DSQueueBuffer(camera.stream, buffer), 0);
        buffer = camera.NextFrame();
    }
}

TEST_F(VirtualChunks, LineRestsLowForARisingEdge) {
    EXPECT_EQ(Value(GrabOne(), Chunk::LineStatusAll), 0U);
}

TEST_F(VirtualChunks, AreLeftOutWhenSwitchedOff) {
    for (const Chunk chunk : {Chunk::Timestamp, Chunk::Gain, Chunk::LineStatusAll}) {
        Enable(chunk, false);
        EXPECT_EQ(Read(Reg::ChunkEnable), 0U);
    }
    EXPECT_EQ(Read(Reg::ChunksEnabled), 0b001011U);
    EXPECT_EQ(Read(Reg::Payload), kWholeSize - 2 * 16 - 12);
    const auto chunks = Chunks(GrabOne());
    ASSERT_EQ(chunks.size(), 3U);
    EXPECT_EQ(chunks[1].ChunkID, ChunkId(Chunk::FrameId));
    EXPECT_EQ(chunks[2].ChunkID, ChunkId(Chunk::ExposureTime));
}

TEST_F(VirtualChunks, OfTheImageCannotBeSwitchedOff) {
    Write(Reg::ChunkSelector, 0);
    EXPECT_EQ(Read(Reg::ChunkEnable), 1U);
    EXPECT_EQ(TryWrite(Reg::ChunkEnable, 0), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::ChunkEnable, 1), 0);
    EXPECT_EQ(TryWrite(Reg::ChunksEnabled, 62), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::ChunksEnabled, 64), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::ChunkSelector, 6), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::ChunkEnable, 2), GenTL::GC_ERR_INVALID_VALUE);
}

TEST_F(VirtualChunks, BeginAtWholeWords) {
    Write(Reg::Width, 20);
    Write(Reg::Height, 18);
    Write(Reg::PixelFormat, 0x010A0058);
    const GenTL::BUFFER_HANDLE buffer = GrabOne();
    const auto chunks = Chunks(buffer);
    EXPECT_EQ(chunks[0].ChunkLength, 452U) << "450 bytes of image";
    EXPECT_EQ(Big(Frame(buffer).subspan(450, 2)), 0U);
    EXPECT_EQ(Frame(buffer).size(), kWholeSize - kImageSize + 452);
}

TEST_F(VirtualChunks, AreLockedWhileFramesFlow) {
    Write(Reg::Locked, 1);
    EXPECT_EQ(TryWrite(Reg::ChunkMode, 0), GenTL::GC_ERR_ACCESS_DENIED);
    Write(Reg::ChunkSelector, 1);
    EXPECT_EQ(TryWrite(Reg::ChunkEnable, 0), GenTL::GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(Read(Reg::ChunksEnabled), 63U);
}

TEST_F(VirtualChunks, BelongToTheUserSets) {
    Enable(Chunk::Gain, false);
    SaveSet(1);
    LoadSet(0);
    EXPECT_EQ(Read(Reg::ChunkMode), 0U);
    EXPECT_EQ(Read(Reg::ChunksEnabled), 63U);
    LoadSet(1);
    EXPECT_EQ(Read(Reg::ChunkMode), 1U);
    EXPECT_EQ(Read(Reg::ChunksEnabled), 0b101111U);
}

TEST_F(VirtualChunks, AreNotListedOfAFrameThatIsCutOff) {
    camera.Start(3, kWholeSize - 1);
    Write(Reg::Start, 1);
    const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
    EXPECT_EQ(camera.BufferInfo<GenTL::bool8_t>(buffer, GenTL::BUFFER_INFO_IS_INCOMPLETE), 1);
    EXPECT_EQ(Frame(buffer).size(), kWholeSize - 1);
    EXPECT_TRUE(Chunks(buffer).empty());
}

}  // namespace
