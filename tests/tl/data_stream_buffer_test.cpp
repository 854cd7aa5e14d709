// One buffer: its memory, its life with the producer, and its chunks.

#include <thread>

#include "StreamTest.h"

namespace OVTLClass {
namespace {

/// One buffer of an open stream.
class BufferTest : public StreamTest {
protected:
    void SetUp() override {
        StreamTest::SetUp();
        lib = stream->DoGetGenTLLib();
        buffer = std::make_unique<CBuffer>(*lib, stream->DoGetStreamHandle());
    }
    void TearDown() override { buffer->RevokeBuffer(); }

    std::shared_ptr<const CGenTLLib> lib;
    std::unique_ptr<CBuffer> buffer;
};

TEST_F(BufferTest, NeedsMemoryOfSomeSize) {
    EXPECT_UNEXPECTED(-1, "Can not allocate zero bytes memory", buffer->AllocateBuffer(0));
    EXPECT_UNEXPECTED(-1, "Can not announce a buffer before allocating it",
                      buffer->AnnounceBuffer());
}

TEST_F(BufferTest, RaisesTheSystemsTextForMemoryThatIsNotThere) {
    EXPECT_UNEXPECTED(-1, std::bad_alloc().what(), buffer->AllocateBuffer(SIZE_MAX));
    EXPECT_UNEXPECTED(-1, "Can not announce a buffer before allocating it",
                      buffer->AnnounceBuffer());
}

TEST_F(BufferTest, KeepsItsMemoryWhenMoreIsNotThere) {
    buffer->AllocateBuffer(100);
    EXPECT_THROW(buffer->AllocateBuffer(SIZE_MAX), CUnexpectedError);
    buffer->AnnounceBuffer();
    EXPECT_EQ(buffer->GetBufferInfo().size.value, 100U);
}

TEST_F(BufferTest, HasNothingToAnnounceOnceFreed) {
    buffer->AllocateBuffer(100);
    buffer->FreeBuffer();
    EXPECT_UNEXPECTED(-1, "Can not announce a buffer before allocating it",
                      buffer->AnnounceBuffer());
}

TEST_F(BufferTest, IsAnnouncedOnceWithItsOwnAddress) {
    buffer->AllocateBuffer(100);
    buffer->AnnounceBuffer();
    buffer->AnnounceBuffer();
    EXPECT_EQ(producer.CallCount("DSAnnounceBuffer"), 1U);
    EXPECT_EQ(buffer->GetBufferInfo().userPointer.value, buffer.get());
    EXPECT_NE(buffer->GetBufferInfo().base.value, nullptr);
}

TEST_F(BufferTest, CannotBeQueuedBeforeItIsAnnounced) {
    buffer->AllocateBuffer(100);
    EXPECT_UNEXPECTED(-1, "Can not queue a buffer before announcing it", buffer->QueueBuffer());
}

TEST_F(BufferTest, RaisesWhenTheProducerDoesNotTakeIt) {
    buffer->AllocateBuffer(100);
    buffer->AnnounceBuffer();
    producer.FailCall("DSQueueBuffer", 1, GenTL::GC_ERR_ACCESS_DENIED);
    EXPECT_RAISES(CInvalidAccessError, "Access denied:Planned failure of DSQueueBuffer",
                  buffer->QueueBuffer());
    producer.FailCall("DSQueueBuffer", 1, GenTL::GC_ERR_IO);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of DSQueueBuffer", buffer->QueueBuffer());
}

TEST_F(BufferTest, IsNotRevokedUnlessAnnounced) {
    buffer->RevokeBuffer();
    EXPECT_EQ(producer.CallCount("DSRevokeBuffer"), 0U);
}

TEST_F(BufferTest, StaysAnnouncedWhenItsRevokeIsRefused) {
    buffer->AllocateBuffer(100);
    buffer->AnnounceBuffer();
    const LogCapture log;
    producer.FailCall("DSRevokeBuffer", 1, GenTL::GC_ERR_BUSY);
    buffer->RevokeBuffer();
    EXPECT_THAT(log.Lines(), HasLogged("RevokeBuffer", "Planned failure of DSRevokeBuffer"));
    EXPECT_TRUE(buffer->IsAnnounced());
    buffer->RevokeBuffer();
    EXPECT_FALSE(buffer->IsAnnounced());
}

TEST_F(BufferTest, IsNoLongerAnnouncedWhenTheProducerDoesNotKnowIt) {
    buffer->AllocateBuffer(100);
    buffer->AnnounceBuffer();
    producer.FailAfterCall("DSRevokeBuffer", 1, GenTL::GC_ERR_ERROR);
    buffer->RevokeBuffer();
    EXPECT_TRUE(buffer->IsAnnounced()) << "nobody knows yet";
    buffer->RevokeBuffer();
    EXPECT_FALSE(buffer->IsAnnounced());
    EXPECT_UNEXPECTED(-1, "Can not queue a buffer before announcing it", buffer->QueueBuffer());
    manager.DoUninit();
    producer.Reset();
}

TEST_F(BufferTest, LiesAtAMultipleOfTheAlignment) {
    for (const size_t alignment : {size_t{1}, size_t{64}, size_t{1000}, size_t{4096}}) {
        buffer->AllocateBuffer(100, alignment);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(buffer->GetMemory()) % alignment, 0U) << alignment;
        EXPECT_EQ(buffer->GetSize(), 100U);
        buffer->GetMemory()[99] = 1;
    }
}

TEST_F(BufferTest, KeepsMemoryThatIsAlignedAlready) {
    buffer->AllocateBuffer(100, 4096);
    uint8_t* const memory = buffer->GetMemory();
    buffer->AllocateBuffer(100, 512);
    EXPECT_EQ(buffer->GetMemory(), memory);
}

TEST_F(BufferTest, RaisesForAnAlignmentThatNoMemoryHas) {
    EXPECT_UNEXPECTED(-1, std::bad_alloc().what(), buffer->AllocateBuffer(100, SIZE_MAX));
}

using Chunks = CNativeChunkDataCompare::Chunks;
using Chunk = GenTL::S_SINGLE_CHUNK_DATA;

/// A frame with the chunks that a test adds.
class BufferChunks : public StreamTest {
protected:
    const CBuffer& NextFrame() {
        Start();
        return *static_cast<CBuffer*>(Pull().userPointer.value);
    }
    void Add(const Chunk& chunk) {
        producer.AddChunk(0, 0, chunk.ChunkID, chunk.ChunkOffset, chunk.ChunkLength);
    }
};

TEST_F(BufferChunks, AreAskedForOnceWhenThereAreNone) {
    EXPECT_TRUE(NextFrame().GetChunkData().empty());
    EXPECT_EQ(producer.CallCount("DSGetBufferChunkData"), 1U) << "each frame pays for a call";
}

TEST_F(BufferChunks, AreToldInOrder) {
    const Chunks chunks = {{0x1001, 0, 100}, {0x1002, 100, 4}};
    for (const Chunk& chunk : chunks) {
        Add(chunk);
    }
    EXPECT_TRUE(CNativeChunkDataCompare::AreEqual(NextFrame().GetChunkData(), chunks));
    EXPECT_EQ(producer.CallCount("DSGetBufferChunkData"), 2U)
        << "once for their number and once for all of them";
}

TEST_F(BufferChunks, RaiseWhatTheProducerRefuses) {
    Add({0x1001, 0, 100});
    const CBuffer& buffer = NextFrame();
    producer.FailCall("DSGetBufferChunkData", 1, GenTL::GC_ERR_PARSING_CHUNK_DATA);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_PARSING_CHUNK_DATA, "Planned failure of DSGetBufferChunkData",
                      buffer.GetChunkData());
    producer.FailCall("DSGetBufferChunkData", 2, GenTL::GC_ERR_IO);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of DSGetBufferChunkData",
                      buffer.GetChunkData());
}

struct ChunkPlace {
    int64_t offset;
    size_t length;
    bool overflows;
};

class ChunkPlaces : public BufferTest, public ::testing::WithParamInterface<ChunkPlace> {};

TEST_P(ChunkPlaces, LieWithinTheMemory) {
    buffer->AllocateBuffer(100);
    const Chunk chunk{1, GetParam().offset, GetParam().length};
    EXPECT_EQ(buffer->IsMemoryOverFlow({chunk}), GetParam().overflows);
    EXPECT_EQ(buffer->IsMemoryOverFlow({{2, 0, 100}, chunk}), GetParam().overflows);
}

INSTANTIATE_TEST_SUITE_P(Ends, ChunkPlaces,
                         ::testing::Values(ChunkPlace{0, 100, false}, ChunkPlace{0, 101, true},
                                           ChunkPlace{99, 1, false}, ChunkPlace{99, 2, true},
                                           ChunkPlace{100, 0, false}, ChunkPlace{101, 0, true},
                                           ChunkPlace{50, SIZE_MAX, true},
                                           ChunkPlace{-1, 1, true}));

TEST(ChunkCompare, LooksAtEveryByteOfEveryChunk) {
    const Chunks chunks = {{1, 2, 3}, {4, 5, 6}};
    const auto differsFrom = [&chunks](const Chunks& other) {
        return !CNativeChunkDataCompare::AreEqual(chunks, other);
    };
    EXPECT_FALSE(differsFrom(chunks));
    EXPECT_TRUE(CNativeChunkDataCompare::AreEqual({}, {}));
    for (const Chunks& other :
         {Chunks{}, Chunks{{1, 2, 3}}, Chunks{{1, 2, 3}, {4, 5, 7}}, Chunks{{1, 2, 3}, {4, 0, 6}},
          Chunks{{0, 2, 3}, {4, 5, 6}}, Chunks{{4, 5, 6}, {1, 2, 3}}}) {
        EXPECT_TRUE(differsFrom(other));
    }
}

}  // namespace
}  // namespace OVTLClass
