// What a node remembers and what makes it forget.

#include "node_graph.h"

namespace EngineTest {

namespace {

/// Three nodes in a row, each depending on the one before it alone, with
/// values in their caches.
class Chain : public testing::Test {
protected:
    Chain() {
        m_Nodes.Link(m_First, CPropertyID::pDependent_ID, m_Second);
        m_Nodes.Link(m_Second, CPropertyID::pDependent_ID, m_Third);
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
