// The chunks of a stream's frames, read as features of the camera.

#include "GenApi/IInteger.h"
#include "GenApi/NodeMapRef.h"
#include "StreamTest.h"
#include "TLClassFeature/IFeatureControl.h"
#include "support/DescriptionXml.h"

namespace OVTLClass {

using Chunk = GenTL::S_SINGLE_CHUNK_DATA;

/// A camera whose frames hold two chunks: byte x of frame n is x + n.
class ChunkStreamTest : public StreamTest {
protected:
    static constexpr uint64_t kFirst = 0xA1;
    static constexpr uint64_t kSecond = 0xA2;

    void SetUp() override {
        const std::string xml = EngineTest::XmlNodeMap::Describe(
            DescriptionXml::ChunkByteXml("First", "000000A1", "No") +
            DescriptionXml::ChunkByteXml("Second", "A2", "Yes"));
        producer.SetDescription("Remote", "Chunks.xml", xml.data(), xml.size());
        StreamTest::SetUp();
    }

    void Add(const Chunk& chunk) {
        producer.AddChunk(0, 0, chunk.ChunkID, chunk.ChunkOffset, chunk.ChunkLength);
    }
    void AddBoth() {
        Add({kFirst, 5, 4});
        Add({kSecond, 20, 4});
    }
    CBuffer& PullBuffer() { return *static_cast<CBuffer*>(Pull().userPointer.value); }
    /// What drives the adapter.
    void Update(CBuffer& buffer) { stream->DoGetNativeNewBufferEvent().__UpdateChunkData(buffer); }
    /// Takes a frame and keeps it.
    CBuffer& UpdateByNext() {
        CBuffer& buffer = PullBuffer();
        Update(buffer);
        return buffer;
    }

    IFeatureControl& Camera() { return *device->DoGetRemoteDeviceFeatureControl(); }
    int64_t Value(const char* name) { return Camera().DoGetInt(name); }
    bool IsReadable(const char* name) {
        return GenApi_3_0_ORVANE::IsReadable(
            device->DoGetRemoteDeviceNodeMapRef()->_GetNode(name)->GetAccessMode());
    }
};

namespace {

TEST_F(ChunkStreamTest, AreNotThereBeforeAFrame) {
    EXPECT_FALSE(IsReadable("First"));
    AddBoth();
    Start();
    PullBuffer();
    // Delivery alone attaches nothing.
    EXPECT_FALSE(IsReadable("First"));
    EXPECT_EQ(producer.CallCount("DSGetBufferChunkData"), 0U);
}

TEST_F(ChunkStreamTest, AreReadFromTheFrameAtHand) {
    AddBoth();
    Start();
    UpdateByNext();
    EXPECT_EQ(Value("First"), 5);
    EXPECT_EQ(Value("Second"), 20);
    UpdateByNext();
    EXPECT_EQ(Value("First"), 6);
    EXPECT_EQ(Value("Second"), 21);
}

TEST_F(ChunkStreamTest, FollowALayoutThatChanges) {
    AddBoth();
    Start();
    UpdateByNext();
    producer.ClearChunks(0, 0);
    Add({kSecond, 30, 4});
    UpdateByNext();
    EXPECT_EQ(Value("Second"), 31);
    EXPECT_FALSE(IsReadable("First")) << "the frame lacks it";
}

TEST_F(ChunkStreamTest, WithACopyStayThoughAFrameLacksThem) {
    AddBoth();
    Start();
    UpdateByNext();
    producer.ClearChunks(0, 0);
    Add({kFirst, 30, 4});
    UpdateByNext();
    EXPECT_EQ(Value("First"), 31);
    EXPECT_EQ(Value("Second"), 20);
}

TEST_F(ChunkStreamTest, GoWithTheFirstFrameThatHasNone) {
    Add({kFirst, 5, 4});
    Start();
    UpdateByNext();
    producer.ClearChunks(0, 0);
    UpdateByNext();
    EXPECT_FALSE(IsReadable("First"));
}

TEST_F(ChunkStreamTest, OfIdentifiersThatNobodyNamesAreIgnored) {
    Add({0x77, 0, 4});
    Add({kFirst, 5, 4});
    Start();
    UpdateByNext();
    EXPECT_EQ(Value("First"), 5);
}

TEST_F(ChunkStreamTest, StayReadableAfterTheFrameWentBack) {
    AddBoth();
    Start();
    UpdateByNext().QueueBuffer();
    EXPECT_EQ(Value("First"), 5);
    EXPECT_EQ(Value("Second"), 20);
}

TEST_F(ChunkStreamTest, WithoutACopyAreWhatTheBufferHoldsNow) {
    stream->SetAcqusitionBufferNumber(1);
    AddBoth();
    Start();
    UpdateByNext().QueueBuffer();
    EXPECT_EQ(Value("Second"), 20);
    PullBuffer();
    device->DoGetRemoteDeviceNodeMapRef()->_InvalidateNodes();
    EXPECT_EQ(Value("First"), 6);
    EXPECT_EQ(Value("Second"), 20) << "the copy is of the frame that was attached";
}

struct LyingChunk {
    const char* name;
    Chunk chunk;
};

void PrintTo(const LyingChunk& lying, std::ostream* out) {
    *out << lying.name;
}

constexpr int64_t kBufferSize = 64 * 48;

class LyingChunkStream : public ChunkStreamTest,
                         public ::testing::WithParamInterface<LyingChunk> {};

TEST_P(LyingChunkStream, LeavesWhatIsAttached) {
    AddBoth();
    Start();
    UpdateByNext();
    Add(GetParam().chunk);
    CBuffer& buffer = PullBuffer();
    EXPECT_UNEXPECTED(-1, "Invalid chunk data information", Update(buffer));
    EXPECT_EQ(Value("First"), 5);
    EXPECT_EQ(Value("Second"), 20);
    producer.ClearChunks(0, 0);
    AddBoth();
    UpdateByNext();
    EXPECT_EQ(Value("First"), 7);
}

TEST_P(LyingChunkStream, AttachesNothingOfTheFirstFrame) {
    Add({kFirst, 5, 4});
    Add(GetParam().chunk);
    Start();
    CBuffer& buffer = PullBuffer();
    EXPECT_UNEXPECTED(-1, "Invalid chunk data information", Update(buffer));
    EXPECT_FALSE(IsReadable("First"));
}

INSTANTIATE_TEST_SUITE_P(Layouts, LyingChunkStream,
                         ::testing::Values(LyingChunk{"OneByteTooLong", {0xA2, 0, kBufferSize + 1}},
                                           LyingChunk{"EndBeyond", {0xA2, kBufferSize - 3, 4}},
                                           LyingChunk{"StartBeyond", {0xA2, kBufferSize + 1, 0}},
                                           LyingChunk{"NegativeOffset", {0xA2, -1, 4}},
                                           LyingChunk{"SumWrapsAround", {0xA2, 4, SIZE_MAX - 3}},
                                           LyingChunk{"LargestOffset", {0xA2, INT64_MAX, 1}},
                                           LyingChunk{"UnknownOne", {0x77, kBufferSize, 1}}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(ChunkStreamTest, MayEndWithTheBuffer) {
    Add({kFirst, kBufferSize - 4, 4});
    Start();
    UpdateByNext();
    // The last line is 47, the byte in it 60.
    EXPECT_EQ(Value("First"), 47 + 60);
}

TEST_F(ChunkStreamTest, WithoutDataAreNotThere) {
    Add({kFirst, 5, 0});
    Add({kSecond, kBufferSize, 0});
    Start();
    UpdateByNext();
    EXPECT_FALSE(IsReadable("First"));
    EXPECT_FALSE(IsReadable("Second"));
}

TEST_F(ChunkStreamTest, RaiseWhatTheProducerRefuses) {
    AddBoth();
    Start();
    CBuffer& buffer = PullBuffer();
    producer.FailCall("DSGetBufferChunkData", 1, GenTL::GC_ERR_PARSING_CHUNK_DATA);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_PARSING_CHUNK_DATA, "Planned failure of DSGetBufferChunkData",
                      Update(buffer));
    EXPECT_FALSE(IsReadable("First"));
    Update(buffer);
    EXPECT_EQ(Value("First"), 5);
}

TEST_F(ChunkStreamTest, NeedAStartedStream) {
    AddBoth();
    Start();
    CBuffer& buffer = PullBuffer();
    Stop();
    EXPECT_UNEXPECTED(-1, "Invalid Chunk Adapter", Update(buffer));
}

TEST_F(ChunkStreamTest, AreAttachedAnewByTheNextStart) {
    AddBoth();
    Start();
    UpdateByNext();
    Stop();
    EXPECT_EQ(Value("First"), 5) << "the memory is still there";
    Start();
    EXPECT_FALSE(IsReadable("First"));
    EXPECT_EQ(Value("Second"), 20) << "of its copy";
    UpdateByNext();
    EXPECT_EQ(Value("First"), 6);
}

TEST_F(ChunkStreamTest, OutliveNeitherBuffersNorStream) {
    AddBoth();
    Start();
    UpdateByNext();
    stream->DoCloseDataStream();
    EXPECT_FALSE(IsReadable("First"));
    EXPECT_FALSE(IsReadable("Second"));
    stream->DoOpenDataStream();
    Start();
    UpdateByNext();
    EXPECT_EQ(Value("Second"), 21);
}

TEST_F(ChunkStreamTest, AreLetGoByAnOpenThatFails) {
    stream->DoCloseDataStream();
    producer.FailCall("DevOpenDataStream", 1, GenTL::GC_ERR_IO);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of DevOpenDataStream",
                      stream->DoOpenDataStream());
    EXPECT_FALSE(IsReadable("First"));
    AddBoth();
    stream->DoOpenDataStream();
    Start();
    UpdateByNext();
    EXPECT_EQ(Value("First"), 5);
}

}  // namespace
}  // namespace OVTLClass
