// Chunks of frames from simulated cameras, as a consumer finds them.

#include <gtest/gtest.h>

#include "GigeStreamTest.h"
#include "gige/protocol/BigEndian.h"
#include "gige/protocol/Bootstrap.h"
#include "virtual/Chunks.h"

namespace {

using OvSimulator::Count;
using OvSimulator::Faults;
using OvVirtual::Chunk;
using OvVirtual::ChunkId;
using ChunkList = std::vector<GenTL::SINGLE_CHUNK_DATA>;

constexpr uint64_t kChunkMode = OvSimulator::kApplicationBase + 0x808;
constexpr size_t kChunkCount = 6;
constexpr size_t kImageSize = 640 * 480;

class GigeChunks : public GigeStream {
protected:
    void OpenStreamWithChunks(const Faults& faults = {}) {
        OpenStream(faults);
        ASSERT_EQ(Write<uint32_t>(Way().port, kChunkMode, 1), 0) << LastError();
    }
    /// The result of the call, and the chunks that it lists.
    GenTL::GC_ERROR ListChunks(GenTL::BUFFER_HANDLE buffer, ChunkList& chunks) {
        size_t count = 0;
        const GenTL::GC_ERROR code =
            Api().DSGetBufferChunkData(Way().stream, buffer, nullptr, &count);
        chunks.resize(count);
        if (code != 0 || count == 0) {
            return code;
        }
        return Api().DSGetBufferChunkData(Way().stream, buffer, chunks.data(), &count);
    }
    bool IsIncomplete(GenTL::BUFFER_HANDLE buffer) {
        return Way().BufferInfo<bool>(buffer, GenTL::BUFFER_INFO_IS_INCOMPLETE);
    }
    OvGige::ByteView DataOf(GenTL::BUFFER_HANDLE buffer) {
        return {Way().BufferInfo<const std::byte*>(buffer, GenTL::BUFFER_INFO_BASE),
                Way().BufferInfo<size_t>(buffer, GenTL::BUFFER_INFO_SIZE_FILLED)};
    }
    /// The number in a chunk of eight bytes.
    uint64_t NumberIn(GenTL::BUFFER_HANDLE buffer, const GenTL::SINGLE_CHUNK_DATA& chunk) {
        EXPECT_EQ(chunk.ChunkLength, sizeof(uint64_t));
        return OvGige::ReadBig<uint64_t>(
            DataOf(buffer).subspan(static_cast<size_t>(chunk.ChunkOffset)));
    }
    void Requeue(GenTL::BUFFER_HANDLE buffer) {
        ASSERT_EQ(Api().DSQueueBuffer(Way().stream, buffer), 0);
    }
};

TEST_F(GigeChunks, FollowTheImage) {
    OpenStreamWithChunks();
    Start(4);
    for (uint64_t frame = 0; frame < 3; ++frame) {
        const GenTL::BUFFER_HANDLE buffer = Way().NextFrame();
        ChunkList chunks;
        ASSERT_EQ(ListChunks(buffer, chunks), 0) << LastError();
        ASSERT_EQ(chunks.size(), kChunkCount);
        EXPECT_EQ(chunks[0].ChunkID, ChunkId(Chunk::Image));
        EXPECT_EQ(chunks[0].ChunkOffset, 0);
        EXPECT_EQ(chunks[0].ChunkLength, kImageSize);
        EXPECT_EQ(chunks[1].ChunkID, ChunkId(Chunk::FrameId));
        EXPECT_EQ(NumberIn(buffer, chunks[1]), frame);
        EXPECT_TRUE(Way().BufferInfo<bool>(buffer, GenTL::BUFFER_INFO_CONTAINS_CHUNKDATA));
        EXPECT_EQ(Way().BufferInfo<size_t>(buffer, GenTL::BUFFER_INFO_WIDTH), 640U);
        Requeue(buffer);
    }
}

TEST_F(GigeChunks, AreListedForAPayloadThatNamesNoImage) {
    OpenStreamWithChunks();
    Start(4);
    // The image is a chunk like the others from then on.
    ASSERT_EQ(Write<uint32_t>(Way().port, OvGige::kRegStreamSwitches, 0), 0) << LastError();
    GenTL::BUFFER_HANDLE buffer = Way().NextFrame();
    while (Way().BufferInfo<size_t>(buffer, GenTL::BUFFER_INFO_PAYLOADTYPE) !=
           GenTL::PAYLOAD_TYPE_CHUNK_DATA) {
        Requeue(buffer);
        buffer = Way().NextFrame();
    }
    ChunkList chunks;
    ASSERT_EQ(ListChunks(buffer, chunks), 0) << LastError();
    ASSERT_EQ(chunks.size(), kChunkCount);
    EXPECT_EQ(chunks[0].ChunkLength, kImageSize);
}

TEST_F(GigeChunks, AreNoneOfAFrameWithoutThem) {
    OpenStream();
    Start(4);
    ChunkList chunks;
    const GenTL::BUFFER_HANDLE buffer = Way().NextFrame();
    EXPECT_EQ(ListChunks(buffer, chunks), 0);
    EXPECT_TRUE(chunks.empty());
    EXPECT_FALSE(Way().BufferInfo<bool>(buffer, GenTL::BUFFER_INFO_CONTAINS_CHUNKDATA));
}

TEST_F(GigeChunks, StayWithinTheFrameWhateverTheirLengthsSay) {
    Faults faults;
    faults.seed = 5;
    faults.stream.wrongChunk = 1;
    OpenStreamWithChunks(faults);
    Start(6);
    int unreadable = 0;
    for (int i = 0; i < 40; ++i) {
        const GenTL::BUFFER_HANDLE buffer = Way().NextFrame();
        const size_t size = DataOf(buffer).size();
        ChunkList chunks;
        const GenTL::GC_ERROR code = ListChunks(buffer, chunks);
        if (code != 0) {
            EXPECT_EQ(code, GenTL::GC_ERR_PARSING_CHUNK_DATA);
            EXPECT_EQ(LastError(), "The end of the frame's data doesn't say where its chunks are");
            ++unreadable;
        }
        for (const GenTL::SINGLE_CHUNK_DATA& chunk : chunks) {
            ASSERT_GE(chunk.ChunkOffset, 0);
            ASSERT_LE(static_cast<size_t>(chunk.ChunkOffset), size);
            ASSERT_LE(chunk.ChunkLength, size - static_cast<size_t>(chunk.ChunkOffset));
        }
        Requeue(buffer);
    }
    EXPECT_GT(unreadable, 0);
    EXPECT_LT(unreadable, 40);
    EXPECT_GE(Simulated().Counts()[Count::WrongChunks], 40U);
}

TEST_F(GigeChunks, AreReadAsFarAsNothingIsMissingAfterThem) {
    Faults faults;
    faults.seed = 6;
    faults.stream.lost = 0.02;
    OpenStreamWithChunks(faults);
    Set("StreamFindPacketSize", 0);
    Set("StreamResend", 0);
    Start(6);
    int lost = 0;
    int saved = 0;
    for (int i = 0; i < 60; ++i) {
        const GenTL::BUFFER_HANDLE buffer = Way().NextFrame();
        ChunkList chunks;
        EXPECT_EQ(ListChunks(buffer, chunks), 0) << LastError();
        if (IsIncomplete(buffer)) {
            lost += chunks.empty() ? 1 : 0;
            saved += chunks.empty() ? 0 : 1;
            EXPECT_LT(chunks.size(), kChunkCount) << "the image has a gap";
        } else {
            EXPECT_EQ(chunks.size(), kChunkCount);
        }
        Requeue(buffer);
    }
    EXPECT_GT(lost, 0);
    EXPECT_GT(saved, lost);
}

}  // namespace
