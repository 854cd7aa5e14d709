// Chunks that a device describes behind their data, in every transport's layout.

#include <algorithm>

#include "ChunkSupport.h"

namespace EngineTest {

namespace {

constexpr uint8_t kOne = 1;
constexpr uint8_t kTwo = 0xAB;

class ChunkTrailer : public testing::TestWithParam<Transport> {
protected:
    Bytes Buffer(const std::vector<std::pair<uint8_t, Bytes>>& chunks) const {
        Bytes buffer;
        for (const auto& [number, data] : chunks) {
            m_Transport.append(buffer, number, data);
        }
        return buffer;
    }
    bool IsSound(const Bytes& buffer) { return IsSound(buffer, buffer.size()); }
    bool IsSound(const Bytes& buffer, size_t length) {
        // A copy of the very length lets the sanitizer see each byte beyond it.
        Bytes exact;
        exact.reserve(std::max<size_t>(length, 1));
        exact.assign(buffer.end() - static_cast<ptrdiff_t>(length), buffer.end());
        return m_pAdapter->CheckBufferLayout(exact.data(), static_cast<int64_t>(length));
    }
    void Attach(Bytes& buffer) {
        m_pAdapter->AttachBuffer(buffer.data(), static_cast<int64_t>(buffer.size()), &m_Statistics);
    }
    int64_t Value(const char* name) { return m_Nodes.Get<IInteger>(name).GetValue(); }
    EAccessMode Mode(const char* name) { return m_Nodes.Get(name).GetAccessMode(); }
    void ExpectStatistics(int32_t ports, int32_t chunks, int32_t attached) const {
        EXPECT_EQ(m_Statistics.NumChunkPorts, ports);
        EXPECT_EQ(m_Statistics.NumChunks, chunks);
        EXPECT_EQ(m_Statistics.NumAttachedChunks, attached);
    }
    std::string LayoutText() const {
        return std::string("Invalid layout of buffer attached to chunk ") + m_Transport.noun + "!";
    }
    void ExpectRefused(Bytes buffer) {
        buffer.reserve(1);
        EXPECT_FALSE(IsSound(buffer));
        EXPECT_EQ(DescriptionOf<RuntimeException>([&] { Attach(buffer); }), LayoutText());
    }

    const Transport m_Transport = GetParam();
    XmlNodeMap m_Nodes{ChunkPortXml("PortOne", m_Transport.digits(kOne)) +
                       ChunkPortXml("PortTwo", m_Transport.digits(kTwo), "Yes") +
                       ChunkPortXml("PortTwoAgain", m_Transport.digits(kTwo)) +
                       ChunkRegXml("One", "PortOne") +
                       ChunkRegXml("OneEnd", "PortOne", kLastFourBytes) +
                       ChunkRegXml("Two", "PortTwo") + ChunkRegXml("TwoAgain", "PortTwoAgain")};
    std::unique_ptr<CChunkAdapter> m_pAdapter = m_Transport.make(&m_Nodes.Map(), -1);
    AttachStatistics_t m_Statistics;
};

TEST_P(ChunkTrailer, BindsEachChunkToThePortsThatNameIt) {
    Bytes buffer = Buffer({{kOne, {0, 0, 1, 2}}, {kTwo, {0, 0, 3, 4, 5}}, {9, {6}}});
    Attach(buffer);
    EXPECT_EQ(Value("One"), 0x102);
    EXPECT_EQ(Value("Two"), 0x304);
    EXPECT_EQ(Value("TwoAgain"), 0x304);
    ExpectStatistics(3, 3, 3);
}

TEST_P(ChunkTrailer, NeedsNoStatistics) {
    Bytes buffer = Buffer({{kOne, {0, 0, 1, 2}}});
    m_pAdapter->AttachBuffer(buffer.data(), static_cast<int64_t>(buffer.size()));
    EXPECT_EQ(Value("One"), 0x102);
}

TEST_P(ChunkTrailer, GivesTheNodesOfAChunkThatIsMissingNoAccess) {
    Bytes first = Buffer({{kOne, {0, 0, 0, 1}}, {kTwo, {0, 0, 0, 2}}});
    Bytes second = Buffer({{kTwo, {0, 0, 0, 3}}});
    EXPECT_EQ(Mode("One"), NA);
    Attach(first);
    EXPECT_EQ(Mode("One"), RW);
    Attach(second);
    EXPECT_EQ(Mode("One"), NA);
    EXPECT_THROW(Value("One"), AccessException);
    EXPECT_EQ(Value("Two"), 3);
    ExpectStatistics(3, 1, 2);
}

TEST_P(ChunkTrailer, ReadsTheEndOfChunksWhoseLengthChanges) {
    Bytes first = Buffer({{kOne, CountUp(8)}});
    Bytes second = Buffer({{kOne, CountUp(13)}});
    Attach(first);
    EXPECT_EQ(Value("OneEnd"), 0x05060708);
    Attach(second);
    EXPECT_EQ(Value("OneEnd"), 0x0A0B0C0D);
}

TEST_P(ChunkTrailer, TakesTheFirstInTheBufferOfTwoChunksWithOneIdentifier) {
    Bytes buffer = Buffer({{kOne, {0, 0, 0, 1}}, {kOne, {0, 0, 0, 2}}});
    Attach(buffer);
    EXPECT_EQ(Value("One"), 1);
    ExpectStatistics(3, 2, 2);
}

TEST_P(ChunkTrailer, RefusesABufferOfFewerThanEightBytes) {
    for (size_t length = 0; length < 8; ++length) {
        ExpectRefused(Bytes(length));
    }
}

TEST_P(ChunkTrailer, RefusesANegativeLength) {
    const Bytes buffer = Buffer({{kOne, CountUp(8)}});
    for (const int64_t length : {int64_t{-1}, std::numeric_limits<int64_t>::min()}) {
        EXPECT_FALSE(m_pAdapter->CheckBufferLayout(buffer.data(), length));
    }
}

TEST_P(ChunkTrailer, TakesOneChunkThatFillsTheBufferAndNoByteMore) {
    Bytes buffer = Buffer({{kOne, CountUp(16)}});
    EXPECT_TRUE(IsSound(buffer));
    buffer.insert(buffer.begin(), 0);
    ExpectRefused(buffer);
    buffer.erase(buffer.begin());
    buffer.push_back(0);
    ExpectRefused(buffer);
}

TEST_P(ChunkTrailer, RefusesEveryBufferThatIsCut) {
    const Bytes buffer = Buffer({{kOne, CountUp(5)}, {kTwo, CountUp(30)}});
    const size_t second = Buffer({{kTwo, CountUp(30)}}).size();
    for (size_t length = 0; length < buffer.size(); ++length) {
        EXPECT_EQ(IsSound(buffer, length), length == second) << length;
    }
}

TEST_P(ChunkTrailer, RefusesAChunkLongerThanTheBuffer) {
    for (const uint32_t length : {9U, 65535U, 0x7FFFFFFFU, 0xFFFFFFF0U, 0xFFFFFFFFU}) {
        Bytes buffer = Buffer({{kOne, CountUp(8)}});
        const uint32_t lie = length + (length < 0xFFFFFF00U ? m_Transport.trailer : 0);
        Bytes fields =
            m_Transport.name == std::string("GigEVision") ? BigWord(lie) : LittleWord(lie);
        if (m_Transport.trailer != 0) {
            Append(fields, LittleWord(~lie));
        }
        std::copy(fields.rbegin(), fields.rend(), buffer.rbegin());
        ExpectRefused(buffer);
    }
}

TEST_P(ChunkTrailer, ChangesNothingForABufferThatIsRefused) {
    Bytes good = Buffer({{kOne, {0, 0, 0, 1}}});
    Bytes bad = Buffer({{kTwo, {0, 0, 0, 2}}});
    bad.insert(bad.begin(), 0);
    Attach(good);
    ExpectRefused(bad);
    EXPECT_EQ(Value("One"), 1);
    EXPECT_EQ(Mode("Two"), NA);
    ExpectStatistics(3, 1, 1);
}

TEST_P(ChunkTrailer, RefusesNoBuffer) {
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_pAdapter->AttachBuffer(nullptr, 100); }),
              std::string("Invalid buffer attached to chunk ") + m_Transport.noun + "!");
}

TEST_P(ChunkTrailer, GivesAChunkWithoutDataToNoPort) {
    Bytes first = Buffer({{kOne, {0, 0, 0, 1}}, {kTwo, {0, 0, 0, 2}}});
    Bytes second = Buffer({{kTwo, {0, 0, 0, 3}}, {kOne, {}}});
    Attach(first);
    Attach(second);
    EXPECT_EQ(Mode("One"), NA);
    EXPECT_EQ(Value("Two"), 3);
    ExpectStatistics(3, 2, 2);
}

TEST_P(ChunkTrailer, RefusesAChunkWithoutDataAtTheStartOfOthers) {
    ExpectRefused(Buffer({{kOne, {}}, {kTwo, CountUp(4)}}));
}

TEST_P(ChunkTrailer, CountsManyChunks) {
    Bytes buffer = Buffer({{kOne, {0, 0, 0, 1}}});
    constexpr int32_t kMany = 65535;
    for (int32_t i = 1; i < kMany; ++i) {
        m_Transport.append(buffer, 9, {});
    }
    Attach(buffer);
    EXPECT_EQ(Value("One"), 1);
    ExpectStatistics(3, kMany, 1);
}

TEST_P(ChunkTrailer, FollowsTheChunksToAnotherBuffer) {
    Bytes first = Buffer({{kTwo, {0, 0, 0, 1}}});
    Bytes second = Buffer({{kTwo, {0, 0, 0, 2}}});
    Attach(first);
    EXPECT_EQ(Value("Two"), 1);
    m_pAdapter->UpdateBuffer(second.data());
    EXPECT_EQ(Value("Two"), 2);
    EXPECT_EQ(Value("TwoAgain"), 2);
    EXPECT_EQ(Mode("One"), NA);
}

TEST_P(ChunkTrailer, WritesToTheBuffer) {
    Bytes buffer = Buffer({{kOne, {0, 0, 0, 1, 9}}});
    Attach(buffer);
    m_Nodes.Get<IInteger>("One").SetValue(0x0A0B0C0D);
    const Bytes data(buffer.begin(), buffer.begin() + 5);
    EXPECT_EQ(data, (Bytes{0x0A, 0x0B, 0x0C, 0x0D, 9}));
    EXPECT_EQ(Value("One"), 0x0A0B0C0D);
}

TEST_P(ChunkTrailer, KeepsACachedChunkReadableWhenTheBufferHasGone) {
    auto buffer = std::make_unique<Bytes>(Buffer({{kTwo, {0, 0, 0, 2}}, {kOne, CountUp(4)}}));
    Attach(*buffer);
    m_pAdapter->DetachBuffer();
    buffer.reset();
    EXPECT_EQ(Value("Two"), 2);
    EXPECT_EQ(Mode("TwoAgain"), NA);
    EXPECT_EQ(Mode("One"), NA);
}

TEST_P(ChunkTrailer, DoesNotCopyChunksBeyondTheLimit) {
    for (const int64_t excess : {0, 1}) {
        const int64_t limit = 8 + m_Transport.trailer - excess;
        m_pAdapter.reset();
        m_pAdapter = m_Transport.make(&m_Nodes.Map(), limit);
        Bytes buffer = Buffer({{kTwo, CountUp(8)}});
        Attach(buffer);
        EXPECT_EQ(Value("Two"), 0x01020304);
        m_pAdapter->DetachBuffer();
        EXPECT_EQ(Mode("Two"), excess == 0 ? RW : NA);
    }
}

TEST_P(ChunkTrailer, ForgetsAnOlderCopyWhenTheNextChunkIsTooLong) {
    m_pAdapter.reset();
    m_pAdapter = m_Transport.make(&m_Nodes.Map(), 4 + m_Transport.trailer);
    Bytes shorter = Buffer({{kTwo, {0, 0, 0, 2}}});
    Bytes longer = Buffer({{kTwo, CountUp(64)}});
    Attach(shorter);
    Attach(longer);
    EXPECT_EQ(Value("Two"), 0x01020304);
    m_pAdapter->DetachBuffer();
    EXPECT_EQ(Mode("Two"), NA);
}

INSTANTIATE_TEST_SUITE_P(Transports, ChunkTrailer,
                         testing::Values(GigEVision(), Usb3Vision(), Dcam()),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace

}  // namespace EngineTest
