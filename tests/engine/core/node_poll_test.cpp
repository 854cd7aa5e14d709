// Nodes whose device changes by itself: how often they are asked again.

#include "NodeGraph.h"

namespace EngineTest {

namespace {

RegXml Polled(const char* name, int address, int milliseconds) {
    return {.name = name,
            .address = address,
            .polling = Element("PollingTime", std::to_string(milliseconds))};
}

class Polling : public testing::Test {
protected:
    /// Whether one call of the map's Poll told the node's clients.
    bool Fires(int64_t elapsed) {
        m_Calls.clear();
        m_Nodes->Poll(elapsed);
        return !m_Calls.empty();
    }

    XmlNodeMap m_Nodes{Polled("Node", 0, 100)() + RegXml{.name = "Unpolled", .address = 4}()};
    NotingCallback::Calls m_Calls;
};

}  // namespace

TEST(PollingSweep, GoesOnWhereOneNodeCannotBeAskedWhetherItIsBlocked) {
    const EngineLog log;
    const std::string block = "<pBlockPolling>Block</pBlockPolling>";
    XmlNodeMap nodes(RegXml{.name = "First",
                            .address = 0,
                            .common = block,
                            .polling = Element("PollingTime", "100")}() +
                     Polled("Second", 4, 100)() +
                     RegXml{.name = "Block", .address = 8, .caching = "NoCache"}());
    NotingCallback::Calls calls;
    NotingCallback::On(nodes.Get("First"), calls);
    NotingCallback::On(nodes.Get("Second"), calls);
    nodes.Port().FailAccess(1);
    nodes->Poll(100);
    EXPECT_THAT(calls, testing::ElementsAre("Second inside", "Second outside"));
    const auto texts = log.Texts("GenApi.Device.Misc.First");
    EXPECT_THAT(texts, testing::Contains(testing::AllOf(
                           testing::StartsWith("Poll : reading 'pBlockPolling' failed : "),
                           testing::HasSubstr("Access failed"))));
    calls.clear();
    nodes->Poll(100);
    EXPECT_EQ(calls.size(), 4U);
}

TEST_F(Polling, FiresWhenTheTimeIsOver) {
    NotingCallback::On(m_Nodes.Get("Node"), m_Calls);
    EXPECT_FALSE(Fires(60));
    EXPECT_TRUE(Fires(40));
    EXPECT_FALSE(Fires(99));
    EXPECT_TRUE(Fires(1));
    EXPECT_TRUE(Fires(1000));
    EXPECT_FALSE(Fires(99));
}

TEST_F(Polling, CallsInsideAndThenOutside) {
    NotingCallback::On(m_Nodes.Get("Node"), m_Calls);
    EXPECT_TRUE(Fires(100));
    EXPECT_THAT(m_Calls, testing::ElementsAre("Node inside", "Node outside"));
}

TEST_F(Polling, DropsTheValue) {
    auto& node = m_Nodes.Get<IInteger>("Node");
    node.GetValue();
    m_Nodes->Poll(99);
    EXPECT_TRUE(node.IsValueCacheValid());
    m_Nodes->Poll(1);
    EXPECT_FALSE(node.IsValueCacheValid());
}

TEST_F(Polling, LeavesNodesWithoutATimeAlone) {
    NotingCallback::On(m_Nodes.Get("Unpolled"), m_Calls);
    auto& node = m_Nodes.Get<IInteger>("Unpolled");
    node.GetValue();
    EXPECT_EQ(m_Nodes.Get("Unpolled").GetPollingTime(), -1);
    EXPECT_FALSE(Fires(1'000'000));
    EXPECT_TRUE(node.IsValueCacheValid());
}

TEST(PollingTime, OfZeroFiresEachTime) {
    XmlNodeMap nodes(Polled("Node", 0, 0)());
    NotingCallback::Calls calls;
    NotingCallback::On(nodes.Get("Node"), calls);
    nodes->Poll(0);
    nodes->Poll(0);
    nodes->Poll(5);
    EXPECT_EQ(calls.size(), 6U);
}

TEST(PollingTime, BelowZeroIsNeverPolled) {
    NodesByHand nodes;
    CInteger& node = nodes.AddValue("Node");
    nodes.Set(node, CPropertyID::PollingTime_ID, -5);
    nodes.Complete();
    NotingCallback::Calls calls;
    NotingCallback::On(node, calls);
    nodes.Map().Poll(1000);
    EXPECT_TRUE(calls.empty());
}

TEST(PollingOfDependents, TellsTheirClients) {
    XmlNodeMap nodes(Polled("Reg", 0, 10)() + IntegerXml("Node", "", Element("pValue", "Reg")));
    NotingCallback::Calls calls;
    NotingCallback::On(nodes.Get("Node"), calls);
    nodes.Get<IInteger>("Node").GetValue();
    nodes->Poll(10);
    EXPECT_THAT(calls, testing::ElementsAre("Node inside", "Node outside"));
    EXPECT_FALSE(nodes.Get<IInteger>("Node").IsValueCacheValid());
}

TEST(PollingOfTwo, TellsASharedDependentOnce) {
    XmlNodeMap nodes(
        Polled("One", 0, 10)() + Polled("Two", 4, 10)() +
        IntegerXml("Node", "", Element("pValue", "One") + Element("pValueCopy", "Two")));
    NotingCallback::Calls calls;
    NotingCallback::On(nodes.Get("Node"), calls);
    nodes->Poll(10);
    EXPECT_EQ(calls.size(), 2U);
}

namespace {

class BlockedPolling : public testing::Test {
protected:
    XmlNodeMap m_Nodes{RegXml{.name = "Block", .address = 4}() + [] {
        RegXml polled = Polled("Node", 0, 10);
        polled.common = Element("pBlockPolling", "Block");
        return polled();
    }()};
    INodePrivate& m_Node = m_Nodes.Get<INodePrivate>("Node");
    IInteger& m_Block = m_Nodes.Get<IInteger>("Block");
};

}  // namespace

TEST_F(BlockedPolling, LeavesTheCachesAlone) {
    m_Block.SetValue(1);
    auto& value = m_Nodes.Get<IInteger>("Node");
    value.GetValue();
    EXPECT_FALSE(m_Node.Poll(10));
    EXPECT_TRUE(value.IsValueCacheValid());
}

TEST_F(BlockedPolling, StartsTheTimeAnewAllTheSame) {
    m_Block.SetValue(1);
    EXPECT_FALSE(m_Node.Poll(10));
    m_Block.SetValue(0);
    EXPECT_FALSE(m_Node.Poll(9));
    EXPECT_TRUE(m_Node.Poll(1));
}

TEST_F(BlockedPolling, NeedsAReadableBlock) {
    m_Block.SetValue(1);
    m_Nodes.Get("Block").ImposeAccessMode(WO);
    EXPECT_TRUE(m_Node.Poll(10));
}

}  // namespace EngineTest
