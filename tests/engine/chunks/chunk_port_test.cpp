// One port node and the chunk that it reads from.

#include "ChunkSupport.h"
#include "ports/PortImplIntern.h"

namespace EngineTest {

namespace {

constexpr int64_t kMin = std::numeric_limits<int64_t>::min();
constexpr int64_t kPlaceAddress = kHighest;
constexpr int64_t kLengthAddress = 0x7FFFFFFFFFFFFFF0;
constexpr char kNotAttached[] = "The event port is not attached to a node";

class ChunkPort : public testing::Test {
protected:
    /// Binds the middle of the buffer.
    void Attach(bool cache = true) { m_Port.AttachChunk(m_Buffer.data(), 2, 8, cache); }
    Bytes Read(int64_t address, int64_t length) {
        Bytes bytes(static_cast<size_t>(length));
        m_Port.Read(bytes.data(), address, length);
        return bytes;
    }
    int64_t ReadNumber(int64_t address) {
        int64_t number = 0;
        m_Port.Read(&number, address, sizeof(number));
        return number;
    }
    std::string ReadFailure(int64_t address, int64_t length) {
        uint8_t bytes[64] = {};
        return DescriptionOf<RuntimeException>([&] { m_Port.Read(bytes, address, length); });
    }
    std::string WriteFailure(int64_t address, int64_t length) {
        const uint8_t bytes[64] = {};
        return DescriptionOf<RuntimeException>([&] { m_Port.Write(bytes, address, length); });
    }

    XmlNodeMap m_Nodes{ChunkPortXml("Port", "01") + ChunkPortXml("Copying", "02", "Yes") +
                       ChunkRegXml("Reg", "Port") + ChunkRegXml("End", "Port", kLastFourBytes) +
                       "<Port Name=\"Swapping\"><ChunkID>03</ChunkID>"
                       "<SwapEndianess>Yes</SwapEndianess></Port>"};
    Bytes m_Buffer = CountUp(12);
    /// Outlives the port, which notifies nodes when it ends.
    NotingCallback::Calls m_Calls;
    CChunkPort m_Port{&m_Nodes.Get<IPort>("Port")};
};

class CopyingChunkPort : public ChunkPort {
protected:
    CopyingChunkPort() { m_Port.AttachPort(&m_Nodes.Get<IPort>("Copying")); }
};

using ChunkPortDeathTest = ChunkPort;

TEST_F(ChunkPort, ReadsWithinTheChunk) {
    Attach();
    EXPECT_EQ(Read(0, 8), (Bytes{3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(Read(7, 1), Bytes{10});
    EXPECT_EQ(Read(8, 0), Bytes{});
}

TEST_F(ChunkPort, CountsNegativeAddressesFromTheEndOfTheChunk) {
    Attach();
    EXPECT_EQ(Read(-4, 4), (Bytes{7, 8, 9, 10}));
    EXPECT_EQ(Read(-8, 2), (Bytes{3, 4}));
}

TEST_F(ChunkPort, GivesARegisterAtMinusFourTheLastFourBytes) {
    Attach();
    EXPECT_EQ(m_Nodes.Get<IInteger>("End").GetValue(), 0x0708090A);
    m_Nodes.Get<IInteger>("End").SetValue(0);
    EXPECT_EQ(m_Buffer, (Bytes{1, 2, 3, 4, 5, 6, 0, 0, 0, 0, 11, 12}));
}

TEST_F(ChunkPort, TellsWhereTheChunkLiesAndHowLongItIs) {
    Attach();
    EXPECT_EQ(ReadNumber(kPlaceAddress), reinterpret_cast<int64_t>(m_Buffer.data() + 2));
    EXPECT_EQ(ReadNumber(kLengthAddress), 8);
}

TEST_F(ChunkPort, RefusesToReadOutsideTheChunk) {
    Attach();
    EXPECT_EQ(ReadFailure(8, 1), "Range error reading(8, 1)");
    EXPECT_EQ(ReadFailure(0, 9), "Range error reading(0, 9)");
    EXPECT_EQ(ReadFailure(9, 0), "Range error reading(9, 0)");
    EXPECT_EQ(ReadFailure(0, -1), "Range error reading(0, -1)");
    EXPECT_EQ(ReadFailure(-9, 1), "Range error reading(FFFFFFFFFFFFFFF7, 1)");
    EXPECT_EQ(ReadFailure(-4, 5), "Range error reading(FFFFFFFFFFFFFFFC, 5)");
    EXPECT_EQ(ReadFailure(kMin, 1), "Range error reading(8000000000000000, 1)");
    EXPECT_EQ(ReadFailure(1, kHighest), "Range error reading(1, 9223372036854775807)");
    EXPECT_EQ(ReadFailure(kHighest, 4), "Range error reading(7FFFFFFFFFFFFFFF, 4)");
    EXPECT_EQ(ReadFailure(0x1AB, 4), "Range error reading(1AB, 4)");
}

TEST_F(ChunkPort, RefusesToWriteOutsideTheChunk) {
    Attach();
    EXPECT_EQ(WriteFailure(8, 1), "Range error writing(8, 1)");
    EXPECT_EQ(WriteFailure(-9, 1), "Range error writing(FFFFFFFFFFFFFFF7, 1)");
    EXPECT_EQ(WriteFailure(kPlaceAddress, 8), "Range error writing(7FFFFFFFFFFFFFFF, 8)");
    EXPECT_EQ(WriteFailure(kLengthAddress, 8), "Range error writing(7FFFFFFFFFFFFFF0, 8)");
    EXPECT_EQ(m_Buffer, CountUp(12));
}

TEST_F(ChunkPort, HasNothingToReadWithoutAChunk) {
    EXPECT_EQ(m_Port.GetAccessMode(), NA);
    EXPECT_EQ(ReadFailure(0, 1), "Range error reading(0, 1)");
    Attach();
    EXPECT_EQ(m_Port.GetAccessMode(), RW);
    m_Port.DetachChunk();
    EXPECT_EQ(m_Port.GetAccessMode(), NA);
    EXPECT_EQ(ReadFailure(0, 1), "Range error reading(0, 1)");
    EXPECT_EQ(ReadNumber(kLengthAddress), 0);
}

TEST_F(ChunkPort, RefusesToWorkWithoutANode) {
    m_Port.DetachPort();
    EXPECT_EQ(ReadFailure(0, 1), kNotAttached);
    EXPECT_EQ(WriteFailure(0, 1), kNotAttached);
    EXPECT_EQ(m_Nodes.Get("Port").GetAccessMode(), NA);
}

TEST_F(ChunkPort, LeavesItsNodeWhenItTakesAnother) {
    Attach();
    m_Port.AttachPort(&m_Nodes.Get<IPort>("Copying"));
    EXPECT_EQ(m_Nodes.Get("Port").GetAccessMode(), NA);
    EXPECT_TRUE(m_Port.CheckChunkID(2));
    EXPECT_FALSE(m_Port.CheckChunkID(1));
}

TEST_F(ChunkPort, LeavesItsNodeWhenItEnds) {
    { const CChunkPort other(&m_Nodes.Get<IPort>("Copying")); }
    uint8_t byte = 0;
    EXPECT_THROW(m_Nodes.Get<IPort>("Copying").Read(&byte, 0, 1), AccessException);
}

TEST_F(ChunkPort, LeavesItsNodeThoughACallbackFailsMeanwhile) {
    auto other = std::make_unique<CChunkPort>(&m_Nodes.Get<IPort>("Copying"));
    INode& node = m_Nodes.Get("Copying");
    struct Client {
        void Fail(INode* /*node*/) { throw std::runtime_error("No"); }
    } client;
    Register(&node, client, &Client::Fail, cbPostInsideLock);
    other.reset();
    uint8_t byte = 0;
    EXPECT_THROW(m_Nodes.Get<IPort>("Copying").Read(&byte, 0, 1), AccessException);
}

TEST_F(ChunkPort, SwapsBytesAsItsNodeDoes) {
    EXPECT_EQ(m_Port.GetSwapEndianess(), No);
    m_Port.AttachPort(&m_Nodes.Get<IPort>("Swapping"));
    EXPECT_EQ(m_Port.GetSwapEndianess(), Yes);
}

TEST_F(ChunkPort, RunsCallbacksOfWhatReadsTheChunk) {
    NotingCallback::On(m_Nodes.Get("Reg"), m_Calls);
    Attach();
    EXPECT_THAT(m_Calls, testing::ElementsAre("Reg inside", "Reg outside"));
    m_Port.DetachChunk();
    EXPECT_EQ(m_Calls.size(), 4U);
}

TEST_F(ChunkPort, ForgetsWhatRegistersReadFromAnOlderBuffer) {
    Attach();
    auto& reg = m_Nodes.Get<IInteger>("Reg");
    EXPECT_EQ(reg.GetValue(), 0x03040506);
    m_Buffer[2] = 0xFF;
    EXPECT_EQ(reg.GetValue(), 0x03040506);
    Attach();
    EXPECT_EQ(reg.GetValue(), 0xFF040506);
}

TEST_F(ChunkPort, FollowsTheBufferWithoutACopy) {
    Bytes other(12, 9);
    Attach();
    m_Port.UpdateBuffer(other.data());
    EXPECT_EQ(Read(0, 2), (Bytes{9, 9}));
}

TEST_F(ChunkPort, FollowsNoBufferWithoutAChunk) {
    m_Port.UpdateBuffer(m_Buffer.data());
    EXPECT_EQ(m_Port.GetAccessMode(), NA);
    Attach();
    m_Port.DetachChunk();
    m_Port.UpdateBuffer(m_Buffer.data());
    EXPECT_EQ(m_Port.GetAccessMode(), NA);
}

TEST_F(ChunkPort, CopiesNothingWhenItsNodeDoesNotWantIt) {
    Attach(true);
    m_Buffer[2] = 0xFF;
    EXPECT_EQ(Read(0, 1), Bytes{0xFF});
    m_Port.DetachChunk();
    EXPECT_EQ(m_Port.GetAccessMode(), NA);
}

TEST_F(CopyingChunkPort, ReadsAndWritesTheCopy) {
    Attach();
    m_Buffer[2] = 0xFF;
    EXPECT_EQ(Read(0, 2), (Bytes{3, 4}));
    const uint8_t byte = 0xEE;
    m_Port.Write(&byte, 1, 1);
    EXPECT_EQ(Read(0, 2), (Bytes{3, 0xEE}));
    EXPECT_EQ(m_Buffer[3], 4);
}

TEST_F(CopyingChunkPort, StaysReadableWhenTheBufferHasGone) {
    Attach();
    m_Port.DetachChunk();
    Bytes().swap(m_Buffer);
    EXPECT_EQ(m_Port.GetAccessMode(), RW);
    EXPECT_EQ(Read(-2, 2), (Bytes{9, 10}));
    EXPECT_EQ(ReadNumber(kLengthAddress), 8);
    EXPECT_EQ(ReadFailure(8, 1), "Range error reading(8, 1)");
}

TEST_F(CopyingChunkPort, HasNothingToReadOnceTheCopyIsFreed) {
    Attach();
    m_Port.DetachChunk();
    m_Port.ClearCache();
    EXPECT_EQ(m_Port.GetAccessMode(), NA);
    EXPECT_EQ(ReadFailure(0, 1), "Range error reading(0, 1)");
}

TEST_F(CopyingChunkPort, ReadsTheBufferOnceTheCopyIsFreed) {
    Attach();
    m_Port.ClearCache();
    m_Buffer[2] = 0xFF;
    EXPECT_EQ(Read(0, 1), Bytes{0xFF});
    Attach();
    m_Buffer[2] = 0;
    EXPECT_EQ(Read(0, 1), Bytes{0xFF});
}

TEST_F(CopyingChunkPort, RefreshesTheCopyFromAnotherBuffer) {
    Attach();
    const auto other = std::make_unique<Bytes>(12, 9);
    m_Port.UpdateBuffer(other->data());
    m_Port.DetachChunk();
    EXPECT_EQ(Read(0, 2), (Bytes{9, 9}));
}

TEST_F(CopyingChunkPort, MakesRoomForALongerChunkAndReusesItForAShorter) {
    m_Port.AttachChunk(m_Buffer.data(), 0, 2, true);
    m_Port.AttachChunk(m_Buffer.data(), 0, 12, true);
    EXPECT_EQ(Read(0, 12), CountUp(12));
    m_Port.AttachChunk(m_Buffer.data(), 4, 2, true);
    EXPECT_EQ(Read(0, 2), (Bytes{5, 6}));
    EXPECT_EQ(ReadFailure(2, 1), "Range error reading(2, 1)");
}

TEST_F(CopyingChunkPort, ReadsTheBufferWhenACopyIsForbidden) {
    Attach(true);
    m_Port.AttachChunk(m_Buffer.data(), 0, 12, false);
    EXPECT_EQ(Read(0, 12), CountUp(12));
    m_Port.DetachChunk();
    EXPECT_EQ(m_Port.GetAccessMode(), NA);
    EXPECT_EQ(ReadFailure(0, 1), "Range error reading(0, 1)");
}

TEST_F(ChunkPortDeathTest, InsistsOnABufferAndOnData) {
    EXPECT_DEATH(m_Port.AttachChunk(nullptr, 0, 1, false), "base != nullptr");
    EXPECT_DEATH(m_Port.AttachChunk(m_Buffer.data(), 0, 0, false), "length > 0");
    EXPECT_DEATH(m_Port.AttachChunk(m_Buffer.data(), 0, -1, false), "length > 0");
    EXPECT_DEATH(m_Port.UpdateBuffer(nullptr), "base != nullptr");
}

TEST_F(ChunkPortDeathTest, InsistsOnAPortThatIsANode) {
    TestPort device;
    EXPECT_DEATH(m_Port.AttachPort(&device),
                 testing::HasSubstr("m_ptrPort.IsValid() && \"its not a port???\""));
    EXPECT_DEATH(m_Port.AttachPort(nullptr), testing::HasSubstr("its not a port???"));
}

TEST_F(CopyingChunkPort, TellsOfAFreedCopyWhenItFollowsABuffer) {
    Attach();
    m_Port.ClearCache();
    Bytes other = m_Buffer;
    other[2] = 0x77;
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Port.UpdateBuffer(other.data()); }),
              "m_pChunkData && \"if the cache is valid there must be data\"");
    EXPECT_EQ(Read(0, 1), Bytes{0x77});
}

struct ComparedIdentifier {
    const char* digits;
    Bytes bytes;
    bool isSame;
};

class ChunkIdentifier : public testing::TestWithParam<ComparedIdentifier> {};

TEST_P(ChunkIdentifier, IsComparedWithoutLeadingZeros) {
    const auto& [digits, bytes, isSame] = GetParam();
    XmlNodeMap nodes(ChunkPortXml("Port", digits));
    const CChunkPort port(&nodes.Get<IPort>("Port"));
    EXPECT_EQ(port.CheckChunkID(bytes.data(), static_cast<int64_t>(bytes.size())), isSame);
    if (bytes.size() <= 8) {
        uint64_t number = 0;
        for (const uint8_t byte : bytes) {
            number = number << 8 | byte;
        }
        EXPECT_EQ(port.CheckChunkID(number), isSame);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Identifiers, ChunkIdentifier,
    testing::Values(
        ComparedIdentifier{"00000001", {0, 0, 0, 1}, true},
        ComparedIdentifier{"01", {0, 0, 0, 1}, true}, ComparedIdentifier{"00000001", {1}, true},
        ComparedIdentifier{"00000001", {0, 0, 1, 0}, false},
        ComparedIdentifier{"0000", {0, 0, 0, 0}, true}, ComparedIdentifier{"0000", {}, true},
        ComparedIdentifier{"01", {}, false}, ComparedIdentifier{"0000", {0, 1}, false},
        ComparedIdentifier{"AbCdEf", {0, 0xAB, 0xCD, 0xEF}, true},
        ComparedIdentifier{"ABCD", {0xAB, 0xCD, 0}, false},
        ComparedIdentifier{
            "1234567890ABCDEF", {0x12, 0x34, 0x56, 0x78, 0x90, 0xAB, 0xCD, 0xEF}, true},
        ComparedIdentifier{
            "001234567890ABCDEF", {0x12, 0x34, 0x56, 0x78, 0x90, 0xAB, 0xCD, 0xEF}, true},
        ComparedIdentifier{
            "011234567890ABCDEF", {0x12, 0x34, 0x56, 0x78, 0x90, 0xAB, 0xCD, 0xEF}, false},
        ComparedIdentifier{
            "011234567890ABCDEF", {1, 0x12, 0x34, 0x56, 0x78, 0x90, 0xAB, 0xCD, 0xEF}, true}));

TEST(ChunkIdentifierText, ThatIsEmptyMakesNoChunkPort) {
    NodesByHand nodes;
    auto& port = nodes.Add<CPort>("Port");
    nodes.Set(port, CPropertyID::ChunkID_ID, std::string_view());
    nodes.Complete();
    EXPECT_FALSE(port.IsChunkPort());
    EXPECT_EQ(port.GetAccessMode(), NI);
}

TEST(ChunkIdentifierText, HasAnEvenNumberOfDigits) {
    XmlNodeMap nodes(ChunkPortXml("Port", "123"));
    nodes->Connect(&nodes.Port(), "Port");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { CChunkPort port(&nodes.Get<IPort>("Port")); }),
              "ChunkID.length() % 2 == 0 && "
              "\"a hex string must consist of an even number of chars\"");
    // The node keeps the port that it has.
    EXPECT_EQ(nodes.Get("Port").GetAccessMode(), RW);
}

TEST(ChunkIdentifierOfANode, IsTakenFromThere) {
    XmlNodeMap nodes(
        "<Port Name=\"Port\"><pChunkID>Text</pChunkID></Port>"
        "<String Name=\"Text\"><Value>A1b2</Value></String>");
    const CChunkPort port(&nodes.Get<IPort>("Port"));
    EXPECT_TRUE(port.CheckChunkID(0xA1B2));
    EXPECT_EQ(port.GetChunkIDLength(), 2);
}

TEST(ChunkIdentifierOfANode, LeavesThePortAloneWhenItIsNoNumber) {
    XmlNodeMap nodes(
        "<Port Name=\"Port\"><pChunkID>Text</pChunkID></Port>"
        "<String Name=\"Text\"><Value>A1x2</Value></String>");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { CChunkPort port(&nodes.Get<IPort>("Port")); }),
              "Invalid ID of a port: A1x2");
    EXPECT_EQ(nodes.Get("Port").GetAccessMode(), NA);
}

}  // namespace

}  // namespace EngineTest
