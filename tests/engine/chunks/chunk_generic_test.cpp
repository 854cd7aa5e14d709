// Chunks that the caller names.

#include "ChunkSupport.h"

namespace EngineTest {

namespace {

constexpr char kBadData[] = "Invalid chunk data passed to chunk adapter!";

class GenericChunks : public testing::Test {
protected:
    template <class Chunk>
    void Attach(const std::vector<Chunk>& chunks) {
        m_Adapter.AttachBuffer(m_Buffer.data(), chunks.data(), static_cast<int64_t>(chunks.size()),
                               &m_Statistics);
    }
    template <class Chunk>
    std::string FailureFor(const Chunk& chunk) {
        return DescriptionOf<RuntimeException>([&] { Attach(std::vector<Chunk>{chunk}); });
    }
    std::string FailureForText(const std::string& digits) {
        return FailureFor(SingleChunkDataStr_t{digits.c_str(), 0, 1});
    }
    int64_t Value(const char* name) { return m_Nodes.Get<IInteger>(name).GetValue(); }
    EAccessMode Mode(const char* name) { return m_Nodes.Get(name).GetAccessMode(); }

    XmlNodeMap m_Nodes{ChunkPortXml("PortOne", "0001") + ChunkPortXml("PortTwo", "00FEDC", "Yes") +
                       ChunkPortXml("PortWide", "0123456789ABCDEF01") +
                       ChunkRegXml("One", "PortOne") + ChunkRegXml("Two", "PortTwo") +
                       ChunkRegXml("Wide", "PortWide")};
    Bytes m_Buffer = CountUp(16);
    CChunkAdapterGeneric m_Adapter{&m_Nodes.Map()};
    AttachStatistics_t m_Statistics;
};

using GenericChunksDeathTest = GenericChunks;

TEST_F(GenericChunks, AreFoundByNumber) {
    Attach<SingleChunkData_t>({{1, 0, 4}, {0xFEDC, 8, 6}, {0x23456789ABCDEF01, 0, 4}});
    EXPECT_EQ(Value("One"), 0x01020304);
    EXPECT_EQ(Value("Two"), 0x090A0B0C);
    EXPECT_EQ(Mode("Wide"), NA);
    EXPECT_EQ(m_Statistics.NumChunkPorts, 3);
    EXPECT_EQ(m_Statistics.NumChunks, 3);
    EXPECT_EQ(m_Statistics.NumAttachedChunks, 2);
}

TEST_F(GenericChunks, AreFoundByText) {
    Attach<SingleChunkDataStr_t>({{"01", 0, 4}, {"0000fEdC", 8, 6}, {"0123456789abcdef01", 4, 4}});
    EXPECT_EQ(Value("One"), 0x01020304);
    EXPECT_EQ(Value("Two"), 0x090A0B0C);
    EXPECT_EQ(Value("Wide"), 0x05060708);
    EXPECT_EQ(m_Statistics.NumAttachedChunks, 3);
}

TEST_F(GenericChunks, AreForgottenWhenTheNextListLacksThem) {
    Attach<SingleChunkData_t>({{1, 0, 4}});
    m_Adapter.AttachBuffer(m_Buffer.data(), std::vector<SingleChunkData_t>(1).data(), 0);
    EXPECT_EQ(Mode("One"), NA);
    Attach<SingleChunkDataStr_t>({{"01", 0, 4}});
    Attach<SingleChunkDataStr_t>({{"02", 0, 4}});
    EXPECT_EQ(Mode("One"), NA);
}

TEST_F(GenericChunks, NeedNoStatistics) {
    const SingleChunkData_t chunk{1, 0, 4};
    m_Adapter.AttachBuffer(m_Buffer.data(), &chunk, 1);
    EXPECT_EQ(Value("One"), 0x01020304);
}

TEST_F(GenericChunks, AreRefusedWithoutABufferOrAList) {
    const SingleChunkData_t number{1, 0, 4};
    const SingleChunkDataStr_t text{"01", 0, 4};
    const SingleChunkData_t* const noNumbers = nullptr;
    const SingleChunkDataStr_t* const noTexts = nullptr;
    const auto attach = [&](uint8_t* buffer, const auto* list, int64_t count) {
        return DescriptionOf<RuntimeException>(
            [&] { m_Adapter.AttachBuffer(buffer, list, count); });
    };
    constexpr char kNoBuffer[] = "Invalid buffer attached to chunk parser!";
    EXPECT_EQ(attach(nullptr, &number, 1), kNoBuffer);
    EXPECT_EQ(attach(nullptr, &text, 1), kNoBuffer);
    EXPECT_EQ(attach(m_Buffer.data(), noNumbers, 0), kBadData);
    EXPECT_EQ(attach(m_Buffer.data(), noTexts, 1), kBadData);
    EXPECT_EQ(attach(m_Buffer.data(), &number, -1), kBadData);
}

TEST_F(GenericChunks, AreRefusedWhereNoBufferCanHoldThem) {
    for (const auto& [offset, length] : {std::pair<int64_t, int64_t>{-1, 4},
                                         {0, -1},
                                         {std::numeric_limits<int64_t>::min(), 1},
                                         {1, kHighest},
                                         {kHighest, 1}}) {
        EXPECT_EQ(FailureFor(SingleChunkData_t{1, offset, length}), kBadData);
        EXPECT_EQ(FailureFor(SingleChunkDataStr_t{"01", offset, length}), kBadData);
    }
}

TEST_F(GenericChunks, AreRefusedWithIdentifiersOfUnexpectedLength) {
    EXPECT_EQ(FailureForText(""), "Unexpected Chunk ID length: 0");
    EXPECT_EQ(FailureForText("1"), "Unexpected Chunk ID length: 1");
    EXPECT_EQ(FailureForText("12345"), "Unexpected Chunk ID length: 5");
    EXPECT_EQ(FailureForText(std::string(257, '1')), "Unexpected Chunk ID length: 257");
    EXPECT_EQ(FailureForText(std::string(258, '1')), "Unexpected Chunk ID length: 258");
    EXPECT_EQ(FailureForText(std::string(256, '1')), "");
}

TEST_F(GenericChunks, AreRefusedWithIdentifiersThatAreNoNumbers) {
    for (const std::string text : {"0x", "G1", "1G", " 1", "-1", "+1", "12 4", "\xFF\xFF"}) {
        EXPECT_EQ(FailureForText(text), "Invalid chunk ID delivered: " + text);
    }
}

TEST_F(GenericChunks, ChangeNothingWhenOneIsRefused) {
    Attach<SingleChunkDataStr_t>({{"01", 0, 4}});
    const std::vector<SingleChunkDataStr_t> chunks{{"FEDC", 8, 4}, {"xx", 0, 4}};
    EXPECT_THROW(Attach(chunks), RuntimeException);
    EXPECT_EQ(Value("One"), 0x01020304);
    EXPECT_EQ(Mode("Two"), NA);
    EXPECT_EQ(m_Statistics.NumAttachedChunks, 1);
}

TEST_F(GenericChunks, GiveNothingToReadWithoutData) {
    Attach<SingleChunkData_t>({{1, 0, 4}});
    Attach<SingleChunkData_t>({{1, 16, 0}});
    EXPECT_EQ(Mode("One"), NA);
    EXPECT_EQ(m_Statistics.NumChunks, 1);
    EXPECT_EQ(m_Statistics.NumAttachedChunks, 0);
}

TEST_F(GenericChunks, MayBeMany) {
    std::vector<SingleChunkData_t> chunks(65535, {9, 0, 1});
    chunks.back() = {1, 4, 4};
    Attach(chunks);
    EXPECT_EQ(Value("One"), 0x05060708);
    EXPECT_EQ(m_Statistics.NumChunks, 65535);
}

TEST_F(GenericChunks, AreCopiedUpToTheLimit) {
    m_Adapter.DetachNodeMap();
    CChunkAdapterGeneric limited(&m_Nodes.Map(), 6);
    for (const int64_t length : {6, 7}) {
        const SingleChunkData_t chunk{0xFEDC, 8, length};
        limited.AttachBuffer(m_Buffer.data(), &chunk, 1);
        EXPECT_EQ(Value("Two"), 0x090A0B0C);
        limited.DetachBuffer();
        EXPECT_EQ(Mode("Two"), length == 6 ? RW : NA);
    }
}

TEST_F(GenericChunksDeathTest, HaveNoLayout) {
    EXPECT_DEATH(m_Adapter.CheckBufferLayout(m_Buffer.data(), 16), "knows no layout");
    EXPECT_DEATH(m_Adapter.AttachBuffer(m_Buffer.data(), 16), "knows no layout");
}

}  // namespace

}  // namespace EngineTest
