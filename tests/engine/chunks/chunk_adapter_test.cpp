// Adapters and the node maps that they serve.

#include "ChunkSupport.h"

namespace EngineTest {

namespace {

class ChunkAdapter : public testing::Test {
protected:
    int32_t PortsOf(CChunkAdapterGeneric& adapter) {
        const SingleChunkData_t none{};
        adapter.AttachBuffer(m_Buffer.data(), &none, 0, &m_Statistics);
        return m_Statistics.NumChunkPorts;
    }
    void Attach(CChunkAdapterGeneric& adapter) {
        const SingleChunkData_t chunk{1, 0, 4};
        adapter.AttachBuffer(m_Buffer.data(), &chunk, 1, &m_Statistics);
    }

    XmlNodeMap m_Nodes{ChunkPortXml("First", "01") + ChunkPortXml("Second", "01", "Yes") +
                       "<Port Name=\"Plain\"/>" + ChunkRegXml("Reg", "First")};
    Bytes m_Buffer = CountUp(8);
    AttachStatistics_t m_Statistics;
};

using ChunkAdapterDeathTest = ChunkAdapter;

TEST_F(ChunkAdapter, ServesThePortsThatNameAChunk) {
    CChunkAdapterGeneric adapter(&m_Nodes.Map());
    EXPECT_EQ(PortsOf(adapter), 2);
}

TEST(ChunkAdapterOfPorts, ServesTheOthersWhereOneHasNoIdentifierThatIsAny) {
    const EngineLog log;
    XmlNodeMap nodes(ChunkPortXml("Odd", "123") + ChunkPortXml("Told", "01") +
                     "<Port Name=\"Device2\"><pChunkID>Text</pChunkID></Port>"
                     "<StringReg Name=\"Text\"><Address>0</Address><Length>4</Length>"
                     "<AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>" +
                     ChunkRegXml("Reg", "Told"));
    nodes.Port().PutBytes(0, {'1', '2', '3', 0});
    Bytes buffer = CountUp(8);
    CChunkAdapterGeneric adapter(&nodes.Map());
    const SingleChunkData_t chunk{1, 0, 4};
    AttachStatistics_t statistics{};
    adapter.AttachBuffer(buffer.data(), &chunk, 1, &statistics);
    EXPECT_EQ(statistics.NumChunkPorts, 1);
    EXPECT_EQ(nodes.Get("Told").GetAccessMode(), RW);
    for (const std::string name : {"Odd", "Device2"}) {
        EXPECT_EQ(nodes.Get(name.c_str()).GetAccessMode(), NA);
        EXPECT_THAT(
            log.Lines("GenApi.Device.Misc." + name),
            testing::ElementsAre(EngineLog::Line{
                LogWarning, "Node '" + name +
                                "' is passed by : ChunkID.length() % 2 == 0 && \"a hex string must "
                                "consist of an even number of chars\""}));
    }
}

TEST(ChunkAdapterOfPorts, GivesAllPortsTheNewBufferWhenOneHasLostItsCopy) {
    XmlNodeMap nodes(ChunkPortXml("First", "01", "Yes") + ChunkPortXml("Second", "01") +
                     ChunkRegXml("Reg", "First"));
    Bytes buffer = CountUp(8);
    CChunkAdapterGeneric adapter(&nodes.Map());
    const SingleChunkData_t chunk{1, 0, 4};
    adapter.AttachBuffer(buffer.data(), &chunk, 1);
    adapter.ClearCaches();
    EXPECT_NE(nodes.Get<IInteger>("Reg").GetValue(), 0x77777777);
    Bytes other(8, 0x77);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { adapter.UpdateBuffer(other.data()); }),
              "m_pChunkData && \"if the cache is valid there must be data\"");
    for (const char* const name : {"First", "Second"}) {
        uint8_t byte = 0;
        nodes.Get<IPort>(name).Read(&byte, 0, 1);
        EXPECT_EQ(byte, 0x77) << name;
    }
    EXPECT_EQ(nodes.Get<IInteger>("Reg").GetValue(), 0x77777777);
}

TEST_F(ChunkAdapter, LeavesThePortOfTheDeviceAlone) {
    const CChunkAdapterGeneric adapter(&m_Nodes.Map());
    uint8_t byte = 0;
    m_Nodes.Get<IPort>("Device").Read(&byte, 0, 1);
    EXPECT_EQ(m_Nodes.Port().GetReads(), 1U);
}

TEST_F(ChunkAdapter, NeedsNoMapAtFirst) {
    CChunkAdapterGeneric adapter;
    EXPECT_EQ(PortsOf(adapter), 0);
    adapter.DetachBuffer();
    adapter.ClearCaches();
    adapter.UpdateBuffer(m_Buffer.data());
    adapter.AttachNodeMap(&m_Nodes.Map());
    EXPECT_EQ(PortsOf(adapter), 2);
}

TEST_F(ChunkAdapter, BindsOneChunkToAllPortsOfOneIdentifier) {
    CChunkAdapterGeneric adapter(&m_Nodes.Map());
    Attach(adapter);
    EXPECT_EQ(m_Statistics.NumChunks, 1);
    EXPECT_EQ(m_Statistics.NumAttachedChunks, 2);
    EXPECT_EQ(m_Nodes.Get("First").GetAccessMode(), RW);
    EXPECT_EQ(m_Nodes.Get("Second").GetAccessMode(), RW);
}

TEST_F(ChunkAdapter, FreesThePortsOfAMapThatIsDetached) {
    CChunkAdapterGeneric adapter(&m_Nodes.Map());
    Attach(adapter);
    adapter.DetachNodeMap();
    uint8_t byte = 0;
    EXPECT_THROW(m_Nodes.Get<IPort>("First").Read(&byte, 0, 1), AccessException);
    EXPECT_EQ(m_Nodes.Get("First").GetAccessMode(), NA);
    EXPECT_EQ(PortsOf(adapter), 0);
}

TEST_F(ChunkAdapter, FreesThePortsWhenItEnds) {
    {
        CChunkAdapterGeneric adapter(&m_Nodes.Map());
        Attach(adapter);
    }
    EXPECT_EQ(m_Nodes.Get("Reg").GetAccessMode(), NA);
}

TEST_F(ChunkAdapter, DetachesAnEarlierMapForAnother) {
    XmlNodeMap other(ChunkPortXml("Other", "01"));
    CChunkAdapterGeneric adapter(&m_Nodes.Map());
    adapter.AttachNodeMap(&other.Map());
    EXPECT_EQ(PortsOf(adapter), 1);
    Attach(adapter);
    EXPECT_EQ(m_Nodes.Get("First").GetAccessMode(), NA);
    EXPECT_EQ(other.Get("Other").GetAccessMode(), RW);
}

TEST_F(ChunkAdapter, TakesTheSameMapAgain) {
    CChunkAdapterGeneric adapter(&m_Nodes.Map());
    adapter.AttachNodeMap(&m_Nodes.Map());
    Attach(adapter);
    EXPECT_EQ(m_Nodes.Get<IInteger>("Reg").GetValue(), 0x01020304);
}

TEST_F(ChunkAdapter, TakesNoPortWhenTheIdentifierOfOneIsNoNumber) {
    XmlNodeMap nodes(ChunkPortXml("First", "01") +
                     "<Port Name=\"Second\"><pChunkID>Text</pChunkID></Port>"
                     "<String Name=\"Text\"><Value>oh</Value></String>");
    CChunkAdapterGeneric adapter;
    EXPECT_THROW(adapter.AttachNodeMap(&nodes.Map()), RuntimeException);
    EXPECT_EQ(PortsOf(adapter), 0);
    uint8_t byte = 0;
    EXPECT_THROW(nodes.Get<IPort>("First").Read(&byte, 0, 1), AccessException);
}

TEST_F(ChunkAdapter, LetsTheBufferGo) {
    CChunkAdapterGeneric adapter(&m_Nodes.Map());
    Attach(adapter);
    adapter.DetachBuffer();
    EXPECT_EQ(m_Nodes.Get("First").GetAccessMode(), NA);
    EXPECT_EQ(m_Nodes.Get("Second").GetAccessMode(), RW);
    adapter.ClearCaches();
    m_Nodes.Get("Second").InvalidateNode();
    EXPECT_EQ(m_Nodes.Get("Second").GetAccessMode(), NA);
}

TEST_F(ChunkAdapter, RefusesToFollowNoBuffer) {
    CChunkAdapterGeneric adapter(&m_Nodes.Map());
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { adapter.UpdateBuffer(nullptr); }),
              "Invalid buffer passed to chunk parser!");
}

TEST_F(ChunkAdapter, FollowsTheBufferWithTheRegistersToo) {
    CChunkAdapterGeneric adapter(&m_Nodes.Map());
    Bytes other(8, 1);
    Attach(adapter);
    EXPECT_EQ(m_Nodes.Get<IInteger>("Reg").GetValue(), 0x01020304);
    adapter.UpdateBuffer(other.data());
    EXPECT_EQ(m_Nodes.Get<IInteger>("Reg").GetValue(), 0x01010101);
}

TEST_F(ChunkAdapterDeathTest, InsistsOnAMap) {
    CChunkAdapterGeneric adapter;
    EXPECT_DEATH(adapter.AttachNodeMap(nullptr), "map != nullptr");
}

}  // namespace

}  // namespace EngineTest
