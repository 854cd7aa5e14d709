// The frame around every write and every read: what happens before, after, and
// when something fails in between.

#include "NodeGraph.h"

namespace EngineTest {

namespace {

/// A node over a node over a register, and one that depends on the register.
class Tower : public testing::Test {
protected:
    Tower() {
        for (const char* const name : {"Reg", "Inner", "Outer", "Other"}) {
            NotingCallback::On(m_Nodes.Get(name), m_Calls);
        }
    }
    INodeMapPrivate& Map() { return dynamic_cast<INodeMapPrivate&>(m_Nodes.Map()); }
    /// Whether no call is under way in the map.
    void ExpectAtRest() {
        EXPECT_TRUE(Map().GetBathometer().IsZero());
        EXPECT_EQ(Map().GetEntryPoint(), "");
        EXPECT_TRUE(IsFreeForOthers(Map().GetLock()));
    }

    XmlNodeMap m_Nodes{RegXml{.name = "Reg", .address = 0}() +
                       RegXml{.name = "Apart", .address = 4}() +
                       IntegerXml("Inner", "", Element("pValue", "Reg")) +
                       IntegerXml("Outer", "", Element("pValue", "Inner")) +
                       IntegerXml("Other", "", Element("pValue", "Reg"))};
    IInteger& m_Outer = m_Nodes.Get<IInteger>("Outer");
    IInteger& m_Other = m_Nodes.Get<IInteger>("Other");
    NotingCallback::Calls m_Calls;
};

}  // namespace

TEST_F(Tower, AWriteFiresEachCallbackOnceInsideAndThenOnceOutside) {
    m_Outer.SetValue(3);
    ASSERT_EQ(m_Calls.size(), 8U);
    const NotingCallback::Calls inside(m_Calls.begin(), m_Calls.begin() + 4);
    const NotingCallback::Calls outside(m_Calls.begin() + 4, m_Calls.end());
    EXPECT_THAT(inside, testing::UnorderedElementsAre("Reg inside", "Inner inside", "Outer inside",
                                                      "Other inside"));
    EXPECT_THAT(outside, testing::UnorderedElementsAre("Reg outside", "Inner outside",
                                                       "Outer outside", "Other outside"));
    ExpectAtRest();
}

TEST_F(Tower, AWriteInvalidatesWhatDependsOnTheRegister) {
    m_Other.GetValue();
    m_Outer.SetValue(3);
    EXPECT_FALSE(m_Other.IsValueCacheValid());
    EXPECT_TRUE(m_Outer.IsValueCacheValid());
    EXPECT_EQ(m_Other.GetValue(), 3);
}

TEST_F(Tower, ARefusedWriteTouchesNothing) {
    m_Other.GetValue();
    m_Nodes.Port().ForgetAccesses();
    m_Outer.ImposeMax(2);
    m_Calls.clear();
    EXPECT_THROW(m_Outer.SetValue(3), OutOfRangeException);
    EXPECT_TRUE(m_Calls.empty());
    EXPECT_TRUE(m_Other.IsValueCacheValid());
    EXPECT_EQ(m_Nodes.Port().GetWrites(), 0U);
    ExpectAtRest();
}

TEST_F(Tower, AFailedWriteFiresNoCallback) {
    m_Nodes.Port().FailAccess(1);
    EXPECT_THROW(m_Outer.SetValue(3, false), TimeoutException);
    EXPECT_TRUE(m_Calls.empty());
    ExpectAtRest();
}

TEST_F(Tower, AFailedWriteLeavesNoCacheThatCouldLie) {
    m_Other.GetValue();
    m_Outer.GetValue();
    m_Nodes.Port().FailAccess(1);
    EXPECT_THROW(m_Outer.SetValue(3), TimeoutException);
    EXPECT_FALSE(m_Outer.IsValueCacheValid());
    EXPECT_FALSE(m_Other.IsValueCacheValid());
}

TEST_F(Tower, AWriteAfterAFailedOneIsAsEver) {
    m_Nodes.Port().FailAccess(1);
    EXPECT_THROW(m_Outer.SetValue(3), TimeoutException);
    m_Outer.SetValue(4);
    EXPECT_EQ(m_Calls.size(), 8U);
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0), 4);
    EXPECT_TRUE(m_Outer.IsValueCacheValid());
}

TEST_F(Tower, AFailedReadLeavesTheMapAtRest) {
    m_Nodes.Port().FailAccess(1);
    EXPECT_THROW(m_Outer.GetValue(), TimeoutException);
    ExpectAtRest();
    EXPECT_EQ(m_Outer.GetValue(), 0);
}

TEST_F(Tower, AFailureNamesTheOutermostCall) {
    m_Nodes.Get("Reg").ImposeAccessMode(RO);
    m_Nodes.Get("Outer").ImposeAccessMode(RW);
    const Failure failure =
        FailureOf<AccessException>([&] { m_Nodes.Get<IValue>("Outer").FromString("3"); });
    EXPECT_EQ(failure.description, "Node is not writable");
    EXPECT_THAT(failure.what, testing::HasSubstr(" in node 'Outer' while calling "
                                                 "'Outer.FromString()' (file 'ValueT.h', line "));
}

TEST_F(Tower, AFailureDeepDownNamesItsNodeAndTheOutermostCall) {
    m_Nodes->Connect(nullptr);
    m_Nodes.Get("Inner").ImposeAccessMode(NA);
    const Failure failure = FailureOf<AccessException>([&] { m_Outer.SetValue(3, false); });
    EXPECT_EQ(failure.description, "CPortImplIntern::Write : port not set");
    EXPECT_THAT(failure.what,
                testing::HasSubstr(" : AccessException thrown in node 'Device' while calling "
                                   "'Outer.SetValue()' (file 'PortImplIntern.cpp', line "));
}

TEST_F(Tower, TextsPassThroughTheSameFrames) {
    auto& value = m_Nodes.Get<IValue>("Outer");
    value.FromString("12");
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0), 12);
    EXPECT_EQ(value.ToString(), "12");
    EXPECT_EQ(m_Calls.size(), 8U);
    ExpectAtRest();
}

TEST_F(Tower, TextOfAnUnreadableNodeIsRefused) {
    m_Nodes.Get("Outer").ImposeAccessMode(WO);
    EXPECT_EQ(DescriptionOf<AccessException>([&] { m_Outer.ToString(); }), "Node is not readable");
    ExpectAtRest();
}

TEST_F(Tower, TextForAReadOnlyNodeIsRefusedOnlyWhenVerifying) {
    m_Nodes.Get("Outer").ImposeAccessMode(RO);
    EXPECT_EQ(DescriptionOf<AccessException>([&] { m_Outer.FromString("1"); }),
              "Node is not writable");
    m_Outer.FromString("1", false);
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0), 1);
}

namespace {

/// Looks at the map and at another node from within a callback.
class LookingCallback : public CNodeCallback {
public:
    struct Sight {
        ECallbackType type;
        bool isDepthZero;
        bool isOtherValid;
        bool isLockFree;
    };

    LookingCallback(INode& node, IInteger& other, std::vector<Sight>& sights)
        : CNodeCallback(&node), m_Other(other), m_Sights(sights) {}
    void operator()(ECallbackType type) const override {
        auto& map = dynamic_cast<INodeMapPrivate&>(*m_pNode->GetNodeMap());
        m_Sights.push_back({type, map.GetBathometer().IsZero(), m_Other.IsValueCacheValid(),
                            IsFreeForOthers(map.GetLock())});
    }
    void Destroy() override { delete this; }

private:
    IInteger& m_Other;
    std::vector<Sight>& m_Sights;
};

}  // namespace

TEST_F(Tower, CallbacksSeeAFinishedWriteWithTheLockAndThenWithoutIt) {
    std::vector<LookingCallback::Sight> sights;
    m_Other.GetValue();
    INode& node = m_Nodes.Get("Outer");
    node.RegisterCallback(new LookingCallback(node, m_Other, sights));
    m_Outer.SetValue(3);
    ASSERT_EQ(sights.size(), 2U);
    EXPECT_EQ(sights[0].type, cbPostInsideLock);
    EXPECT_EQ(sights[1].type, cbPostOutsideLock);
    for (const LookingCallback::Sight& sight : sights) {
        EXPECT_TRUE(sight.isDepthZero);
        EXPECT_FALSE(sight.isOtherValid);
        EXPECT_EQ(sight.isLockFree, sight.type == cbPostOutsideLock);
    }
}

TEST_F(Tower, ACallbackMayWriteTheNodeAgain) {
    struct Client {
        void OnChange(INode* node) {
            if (++calls == 1) {
                dynamic_cast<IInteger&>(*node).SetValue(9);
            }
        }
        int calls = 0;
    } client;
    Register(&m_Nodes.Get("Outer"), client, &Client::OnChange, cbPostInsideLock);
    m_Outer.SetValue(3);
    EXPECT_EQ(client.calls, 2);
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0), 9);
    ExpectAtRest();
}

/// Every access of a whole scenario fails once; the map must be at rest and of
/// use each time.
TEST_F(Tower, ARoundOfCallsSurvivesAFailureOfAnyAccess) {
    const auto round = [&] {
        m_Outer.SetValue(5);
        m_Other.GetValue(true);
        m_Nodes.Get<IValue>("Outer").FromString("6");
        m_Nodes.Get<IValue>("Other").ToString(true, true);
        m_Nodes.Get<IInteger>("Apart").GetValue(false, true);
    };
    for (size_t n = 1;; ++n) {
        m_Nodes.Port().ForgetAccesses();
        m_Nodes.Port().FailAccess(n);
        m_Nodes->InvalidateNodes();
        try {
            round();
        } catch (const TimeoutException&) {
            ExpectAtRest();
            continue;
        }
        ASSERT_GT(n, 3U);
        EXPECT_EQ(m_Nodes.Port().GetAccesses().size(), n - 1);
        EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0), 6);
        ExpectAtRest();
        break;
    }
}

TEST(NodeWithoutAValue, HasItsNameForAText) {
    XmlNodeMap nodes("<Node Name=\"Node\"/>");
    EXPECT_EQ(nodes.Get<IValue>("Node").ToString(), "Node");
}

TEST(NodeWithoutAValue, TakesNoText) {
    XmlNodeMap nodes("<Node Name=\"Node\"/>");
    EXPECT_EQ(
        DescriptionOf<LogicalErrorException>([&] { nodes.Get<IValue>("Node").FromString("x"); }),
        "NodeImpl Node can't set value from string : x. Use derived class!");
    EXPECT_TRUE(dynamic_cast<INodeMapPrivate&>(nodes.Map()).GetBathometer().IsZero());
}

namespace {

/// A register whose device tells of failures in another.
class ErrorFlag : public testing::Test {
protected:
    void SetError(int32_t number) { m_Nodes.Port().Put(8, number); }

    XmlNodeMap m_Nodes{
        RegXml{.name = "ErrorReg", .address = 8, .access = "RO", .caching = "NoCache"}() +
        "<Enumeration Name=\"Error\"><EnumEntry Name=\"None\"><Value>0</Value></EnumEntry>"
        "<EnumEntry Name=\"Hot\"><ToolTip>Let it cool down</ToolTip>"
        "<DisplayName>Too hot</DisplayName><Value>3</Value></EnumEntry>"
        "<pValue>ErrorReg</pValue></Enumeration>" +
        RegXml{.name = "Node", .address = 0, .common = Element("pError", "Error")}()};
    IInteger& m_Node = m_Nodes.Get<IInteger>("Node");
};

}  // namespace

TEST_F(ErrorFlag, FailsAVerifiedWriteAfterTheFact) {
    SetError(3);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Node.SetValue(5); }),
              "Too hot : Let it cool down");
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0), 5);
    EXPECT_FALSE(m_Node.IsValueCacheValid());
}

TEST_F(ErrorFlag, FailsVerifiedReads) {
    SetError(3);
    EXPECT_THROW(m_Node.GetValue(true), RuntimeException);
    EXPECT_THROW(m_Node.ToString(true), RuntimeException);
}

TEST_F(ErrorFlag, IsNotAskedWithoutVerifying) {
    SetError(3);
    m_Node.SetValue(5, false);
    EXPECT_EQ(m_Node.GetValue(), 5);
    EXPECT_EQ(m_Node.ToString(), "5");
}

TEST_F(ErrorFlag, OfZeroIsNoFailure) {
    SetError(0);
    m_Node.SetValue(5);
    EXPECT_EQ(m_Node.GetValue(true), 5);
}

TEST_F(ErrorFlag, OfANumberWithoutAnEntryFailsLikeAnyOther) {
    SetError(4);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Node.GetValue(true); }),
              "ptrEnumEntry.IsValid()");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Node.SetValue(5); }),
              "ptrEnumEntry.IsValid()");
    EXPECT_EQ(m_Node.GetValue(), 5);
}

}  // namespace EngineTest
