// What a node remembers and what makes it forget.

#include "NodeGraph.h"

namespace EngineTest {

namespace {

/// Three nodes in a row, each depending on the one before it alone, with
/// values in their caches.
class Chain : public testing::Test {
protected:
    Chain() {
        m_Nodes.Depend(m_Second, m_First);
        m_Nodes.Depend(m_Third, m_Second);
        m_Nodes.Complete();
        for (CInteger* const node : {&m_First, &m_Second, &m_Third}) {
            node->GetValue();
        }
    }
    std::vector<bool> Valid() {
        return {m_First.IsValueCacheValid(), m_Second.IsValueCacheValid(),
                m_Third.IsValueCacheValid()};
    }

    NodesByHand m_Nodes;
    CInteger& m_First = m_Nodes.AddValue("First");
    CInteger& m_Second = m_Nodes.AddValue("Second");
    CInteger& m_Third = m_Nodes.AddValue("Third");
};

}  // namespace

TEST_F(Chain, InvalidationReachesTheDependentsButNotTheirs) {
    m_First.SetInvalid(simAll);
    EXPECT_THAT(Valid(), testing::ElementsAre(false, false, true));
}

TEST_F(Chain, InvalidationOfOneNodeStaysThere) {
    m_First.SetInvalid(simOnlyMe);
    EXPECT_THAT(Valid(), testing::ElementsAre(false, true, true));
}

TEST_F(Chain, AnUnknownWayOfInvalidationDoesNothing) {
    m_First.SetInvalid(static_cast<ESetInvalidMode>(7));
    EXPECT_THAT(Valid(), testing::ElementsAre(true, true, true));
}

TEST_F(Chain, InvalidateNodeReachesTheDependents) {
    m_Second.InvalidateNode();
    EXPECT_THAT(Valid(), testing::ElementsAre(true, false, false));
}

TEST_F(Chain, InvalidateNodesReachesAll) {
    m_Nodes.Map().InvalidateNodes();
    EXPECT_THAT(Valid(), testing::ElementsAre(false, false, false));
}

TEST(KeepCache, SparesOneInvalidation) {
    XmlNodeMap nodes(RegXml{.name = "Node", .address = 0}());
    auto& node = nodes.Get<IInteger>("Node");
    node.SetValue(5);
    EXPECT_TRUE(node.IsValueCacheValid());
    nodes.Get<INodePrivate>("Node").SetInvalid(simOnlyMe);
    EXPECT_FALSE(node.IsValueCacheValid());
}

namespace {

struct CachingCase {
    std::string own;
    std::string child;
    ECachingMode expected;
};
class CombinedCaching : public testing::TestWithParam<CachingCase> {};

}  // namespace

TEST_P(CombinedCaching, IsTheStricterOfANodeAndThoseItWrites) {
    XmlNodeMap nodes(
        RegXml{.name = "First", .address = 0, .caching = GetParam().own}() +
        RegXml{.name = "Copy", .address = 4, .caching = GetParam().child}() +
        IntegerXml("Node", "", Element("pValue", "First") + Element("pValueCopy", "Copy")));
    EXPECT_EQ(nodes.Get("Node").GetCachingMode(), GetParam().expected);
    EXPECT_EQ(nodes.Get("Node").IsCachable(), GetParam().expected != NoCache);
}

INSTANTIATE_TEST_SUITE_P(Of, CombinedCaching,
                         testing::Values(CachingCase{"WriteThrough", "WriteThrough", WriteThrough},
                                         CachingCase{"WriteThrough", "WriteAround", WriteAround},
                                         CachingCase{"NoCache", "WriteThrough", NoCache},
                                         CachingCase{"WriteAround", "NoCache", NoCache}));

TEST(CachingMode, IsTheNodesOwnWithoutChildren) {
    XmlNodeMap nodes(RegXml{.name = "Node", .address = 0, .caching = "WriteAround"}());
    EXPECT_EQ(nodes.Get("Node").GetCachingMode(), WriteAround);
    EXPECT_TRUE(nodes.Get("Node").IsCachable());
}

namespace {

/// The mode of a node over registers that are all cached but one.
ECachingMode ModeWithUncached(const std::string& uncached, const std::string& body) {
    std::string registers;
    int address = 0;
    for (const char* const name : {"Value", "Index", "Max", "Length"}) {
        registers += RegXml{.name = name,
                            .address = address += 8,
                            .caching = name == uncached ? "NoCache" : "WriteThrough"}();
    }
    return XmlNodeMap(registers + body).Get("Node").GetCachingMode();
}

}  // namespace

TEST(CachingMode, TakesInTheIndexThatSelectsASource) {
    const std::string node =
        IntegerXml("Node", "",
                   "<pIndex>Index</pIndex><ValueIndexed Index=\"0\">7</ValueIndexed>"
                   "<pValueDefault>Value</pValueDefault>");
    EXPECT_EQ(ModeWithUncached("", node), WriteThrough);
    EXPECT_EQ(ModeWithUncached("Index", node), NoCache);
    EXPECT_EQ(ModeWithUncached("Value", node), NoCache);
}

TEST(CachingMode, TakesInTheLengthOfARegister) {
    const std::string node =
        "<StringReg Name=\"Node\"><Address>0x40</Address><pLength>Length</pLength>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>";
    EXPECT_EQ(ModeWithUncached("", node), WriteThrough);
    EXPECT_EQ(ModeWithUncached("Length", node), NoCache);
}

TEST(CachingMode, TakesInTheLimitsThatAFormulaReads) {
    const auto limited = [](const std::string& variable) {
        return IntegerXml("Limited", "", Element("pValue", "Value") + Element("pMax", "Max")) +
               IntegerXml("Above", "", Element("pValue", "Limited")) +
               "<IntConverter Name=\"Converter\"><FormulaTo>FROM</FormulaTo>"
               "<FormulaFrom>TO</FormulaFrom><pValue>Above</pValue></IntConverter>"
               "<IntSwissKnife Name=\"Node\"><pVariable Name=\"" +
               variable + "</pVariable><Formula>1</Formula></IntSwissKnife>";
    };
    for (const char* const variable : {"A.Max\">Limited", "A.Min\">Above", "A.Inc\">Converter"}) {
        EXPECT_EQ(ModeWithUncached("", limited(variable)), WriteThrough) << variable;
        EXPECT_EQ(ModeWithUncached("Max", limited(variable)), NoCache) << variable;
    }
    EXPECT_EQ(ModeWithUncached("Max", limited("A\">Limited")), WriteThrough);
}

TEST(CachingMode, TakesInTheAccessModeThatAFormulaReads) {
    const std::string node =
        IntegerXml("Limited", Element("pIsAvailable", "Max"), Element("pValue", "Value")) +
        "<IntSwissKnife Name=\"Node\"><pVariable Name=\"A.AccessMode\">"
        "Limited</pVariable><Formula>A.AccessMode</Formula></IntSwissKnife>";
    EXPECT_EQ(ModeWithUncached("", node), WriteThrough);
    EXPECT_EQ(ModeWithUncached("Max", node), NoCache);
}

TEST(CachingMode, OfAConverterTakesInItsFormulas) {
    const std::string node =
        "<IntConverter Name=\"Node\"><pVariable Name=\"V\">Max</pVariable>"
        "<FormulaTo>FROM-V</FormulaTo><FormulaFrom>TO+V</FormulaFrom><pValue>Value</pValue>"
        "</IntConverter>";
    EXPECT_EQ(ModeWithUncached("", node), WriteThrough);
    EXPECT_EQ(ModeWithUncached("Max", node), NoCache);
}

TEST(CachingMode, OfNodesThatWriteEachOtherIsFound) {
    NodesByHand nodes;
    CInteger& one = nodes.Add("One");
    CInteger& other = nodes.Add("Other");
    nodes.Link(one, CPropertyID::pValue_ID, other);
    nodes.Link(other, CPropertyID::pValue_ID, one);
    nodes.Complete();
    EXPECT_EQ(one.GetCachingMode(), WriteThrough);
}

TEST(IgnoredCache, ReadsTheDevice) {
    XmlNodeMap nodes(RegXml{.name = "Node", .address = 0}());
    auto& node = nodes.Get<IInteger>("Node");
    node.GetValue();
    nodes.Port().Put(0, 7);
    EXPECT_EQ(node.GetValue(), 0);
    EXPECT_EQ(node.GetValue(false, true), 7);
}

TEST(IgnoredCache, LeavesNoStaleValueOfOthersBehind) {
    XmlNodeMap nodes(RegXml{.name = "Reg", .address = 0}() +
                     IntegerXml("Node", "", Element("pValue", "Reg")) +
                     IntegerXml("Sibling", "", Element("pValue", "Reg")));
    auto& sibling = nodes.Get<IInteger>("Sibling");
    sibling.GetValue();
    nodes.Port().Put(0, 7);
    nodes.Get<IInteger>("Node").GetValue(false, true);
    EXPECT_FALSE(sibling.IsValueCacheValid());
    EXPECT_EQ(sibling.GetValue(), 7);
}

}  // namespace EngineTest
