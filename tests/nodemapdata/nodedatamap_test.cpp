#include <stdexcept>

#include "support/NodeDataBuilder.h"

namespace NodeDataTest {
namespace {

TEST(NodeDataMap, IsEmptyAtFirst) {
    const CNodeDataMap map;
    EXPECT_EQ(map.GetNumNodeIDs(), 0U);
    EXPECT_EQ(map.GetNumStrings(), 0U);
    EXPECT_EQ(map.GetLastNodeData(), nullptr);
    EXPECT_EQ(map.GetContextNode(), nullptr);
    EXPECT_EQ(FailureText([&] { map.CheckConsistency(); }), "");
}

TEST(NodeDataMap, LooksUpAnUnknownNameWithoutTrace) {
    CNodeDataMap map;
    EXPECT_EQ(map.GetNodeID("x", false).ToIndex(), -1);
    EXPECT_EQ(map.FindNodeID("x").ToIndex(), -1);
    EXPECT_EQ(map.GetNumNodeIDs(), 0U);
    EXPECT_EQ(map.GetNumStrings(), 0U);
}

TEST(NodeDataMap, ReservesTheIdentifierOfALaterNode) {
    CNodeDataMap map;
    EXPECT_EQ(map.GetNodeID("x", true), NodeID_t(0));
    EXPECT_EQ(map.GetNodeID("x", true), NodeID_t(0));
    EXPECT_EQ(map.GetNodeID("x", false), NodeID_t(0));
    EXPECT_EQ(map.GetNumNodeIDs(), 1U);
    EXPECT_EQ(map.GetNodeName(NodeID_t(0)), "x");
    EXPECT_EQ(map.GetNodeData(NodeID_t(0)), nullptr);
    EXPECT_EQ(map.FindDanglingNode(), NodeID_t(0));
    EXPECT_EQ(FailureText([&] { map.CheckConsistency(); }),
              "Fatal error : Dangling node reference 'x'");

    CNodeData& node = AddNode(map, CNodeData::Integer_ID, "x");
    EXPECT_EQ(node.GetNodeID(), NodeID_t(0));
    EXPECT_EQ(FailureText([&] { map.CheckConsistency(); }), "");
}

TEST(NodeDataMap, NamesTheFirstDanglingNodeByIdentifier) {
    CNodeDataMap map;
    map.GetNodeID("z", true);
    map.GetNodeID("a", true);
    EXPECT_EQ(FailureText([&] { map.CheckConsistency(); }),
              "Fatal error : Dangling node reference 'z'");
}

TEST(NodeDataMap, EntersEqualTextsTwice) {
    CNodeDataMap map;
    const StringID_t first = map.SetString("a");
    const StringID_t second = map.SetString("a");
    EXPECT_NE(first, second);
    EXPECT_EQ(map.GetString(first), "a");
    EXPECT_EQ(map.GetString(second), "a");
    EXPECT_EQ(map.GetNumStrings(), 2U);
}

TEST(NodeDataMapDeathTest, ResolvesOnlyItsOwnIdentifiers) {
    CNodeDataMap map;
    map.GetNodeID("x", true);
    map.SetString("a");
    EXPECT_DEATH((void)map.GetString(StringID_t()), testing::HasSubstr("StringID.IsValid()"));
    EXPECT_DEATH((void)map.GetString(StringID_t(1)),
                 testing::HasSubstr("(size_t)StringID.ToIndex() < m_pStringID2String->size()"));
    EXPECT_DEATH((void)map.GetNodeName(NodeID_t()), testing::HasSubstr("NodeID.IsValid()"));
    EXPECT_DEATH((void)map.GetNodeName(NodeID_t(1)),
                 testing::HasSubstr("(size_t)NodeID.ToIndex() < m_pNodeID2NodeName->size()"));
}

TEST(NodeDataMap, StoresANodeAtItsIdentifier) {
    CNodeDataMap map;
    map.GetNodeID("later", true);
    CNodeData& node = AddNode(map, CNodeData::Integer_ID, "x");
    EXPECT_EQ(map.GetNodeData(NodeID_t(1)), &node);
    EXPECT_EQ(map.GetLastNodeData(), &node);
}

TEST(NodeDataMap, RefusesADuplicateAndKeepsTheFirst) {
    CNodeDataMap map;
    CNodeData& first = AddNode(map, CNodeData::Integer_ID, "x");
    AddNode(map, CNodeData::Integer_ID, "y");
    EXPECT_EQ(FailureText([&] { AddNode(map, CNodeData::Float_ID, "x"); }),
              "Found a duplicate node'x'.");
    EXPECT_EQ(&NodeOf(map, "x"), &first);
    EXPECT_EQ(map.GetLastNodeData()->GetName(), "y");
}

/// A map whose names cannot be read.
template <typename Failure>
class BrokenMap : public INodeDataMap {
public:
    NodeID_t GetNodeID(std::string_view, bool) override { return NodeID_t(0); }
    const std::string& GetNodeName(NodeID_t) const override { throw Failure("no such name"); }
    StringID_t SetString(std::string_view) override { return StringID_t(0); }
    std::string_view GetString(StringID_t) const override { throw Failure("no such text"); }
};

template <typename Failure>
std::string FailureOfDuplicateWithoutName() {
    CNodeDataMap map;
    AddNode(map, CNodeData::Integer_ID, "x");
    BrokenMap<Failure> broken;
    auto pNode = std::make_unique<CNodeData>(CNodeData::Integer_ID, &broken);
    pNode->SetName("x");
    return FailureText([&] { map.SetNodeData(std::move(pNode), false); });
}

TEST(NodeDataMap, ReportsADuplicateWhoseNameCannotBeRead) {
    EXPECT_EQ(FailureOfDuplicateWithoutName<std::out_of_range>(),
              "Inconsistent node map, index out of range: no such name");
    EXPECT_EQ(FailureOfDuplicateWithoutName<std::logic_error>(),
              "Failed to SetNodeData: no such name");
}

TEST(NodeDataMap, ReplacesANode) {
    CNodeDataMap map;
    AddNode(map, CNodeData::Integer_ID, "x");
    map.SetNodeData(MakeNode(map, CNodeData::Float_ID, "x"), true);
    EXPECT_EQ(NodeOf(map, "x").GetNodeType(), CNodeData::Float_ID);
}

TEST(NodeDataMapDeathTest, StoresOnlyNamedNodesOfThisMap) {
    CNodeDataMap map;
    CNodeDataMap other;
    other.GetNodeID("far", true);
    EXPECT_DEATH(map.SetNodeData(nullptr, false), testing::HasSubstr("pNodeData"));
    EXPECT_DEATH(map.SetNodeData(std::make_unique<CNodeData>(CNodeData::Integer_ID, &map), false),
                 testing::HasSubstr("nodeID.IsValid()"));
    EXPECT_DEATH(map.SetNodeData(MakeNode(other, CNodeData::Integer_ID, "x"), false),
                 testing::HasSubstr("nodeIdIndex < m_pNodeID2NodeData->size()"));
}

TEST(NodeDataMapDeathTest, ReplacesOnlyWhatIsThere) {
    CNodeDataMap map;
    EXPECT_DEATH(map.SetNodeData(MakeNode(map, CNodeData::Integer_ID, "x"), true),
                 testing::HasSubstr("pOldNodeData"));
}

TEST(NodeDataMap, SetsAndClearsTheContextNode) {
    CNodeDataMap map;
    CNodeData& node = AddNode(map, CNodeData::Enumeration_ID, "E");
    map.SetContextNode(&node);
    EXPECT_EQ(map.GetContextNode(), &node);
    map.SetContextNode(nullptr);
    EXPECT_EQ(map.GetContextNode(), nullptr);
}

constexpr const char* contextCondition =
    "(pContextNode == NULL && m_pContextNode != NULL) || "
    "(pContextNode != NULL && m_pContextNode == NULL)";

TEST(NodeDataMapDeathTest, AlternatesSettingAndClearingTheContextNode) {
    CNodeDataMap map;
    EXPECT_DEATH(map.SetContextNode(nullptr), testing::HasSubstr(contextCondition));
    CNodeData& node = AddNode(map, CNodeData::Enumeration_ID, "E");
    map.SetContextNode(&node);
    EXPECT_DEATH(map.SetContextNode(&node), testing::HasSubstr(contextCondition));
}

TEST(NodeDataMap, ClearsToTheFirstState) {
    CNodeDataMap map;
    AddNode(map, CNodeData::Integer_ID, "x", {{ID::pValue_ID, "later"}});
    map.Clear();
    EXPECT_EQ(map.GetNumNodeIDs(), 0U);
    EXPECT_EQ(map.GetNumStrings(), 0U);
    EXPECT_EQ(map.GetLastNodeData(), nullptr);
    EXPECT_FALSE(map.FindNodeID("x").IsValid());
    EXPECT_EQ(AddNode(map, CNodeData::Integer_ID, "y").GetNodeID(), NodeID_t(0));
}

TEST(NodeDataMapDeathTest, IsNotClearedWithAContextNode) {
    CNodeDataMap map;
    map.SetContextNode(&AddNode(map, CNodeData::Enumeration_ID, "E"));
    EXPECT_DEATH(map.Clear(), testing::HasSubstr("m_pContextNode == NULL"));
}

TEST(NodeDataMap, KeepsTextsWhereTheyAre) {
    CNodeDataMap map;
    const std::string large(100000, 'x');
    const std::string_view first = map.GetString(map.SetString("first"));
    const std::string_view empty = map.GetString(map.SetString(""));
    const std::string_view second = map.GetString(map.SetString(large));
    for (int i = 0; i < 10000; ++i) {
        map.SetString("another text " + std::to_string(i));
    }
    EXPECT_EQ(map.GetString(StringID_t(0)).data(), first.data());
    EXPECT_EQ(first, "first");
    EXPECT_EQ(empty, "");
    EXPECT_EQ(second, large);
    for (const std::string_view text : {first, empty, second}) {
        EXPECT_EQ(*text.end(), '\0') << "for whoever wants a C string";
    }
    EXPECT_EQ(map.GetString(StringID_t(10002)), "another text 9999");
}

TEST(NodeDataMap, CountsTheLinksOfAClosureAsProperties) {
    CNodeDataMap map;
    CNodeData& node = AddNode(map, CNodeData::Integer_ID, "x");
    node.SetClosure({NodeID_t(0), NodeID_t(0)}, {NodeID_t(0)});
    CNodeDataMap::NodeStatistics_t statistics;
    map.GetNodeStatistics(statistics);
    EXPECT_EQ(statistics.NumProperties, 4U);
    EXPECT_EQ(statistics.NumLinks, 3U);
}

TEST(NodeDataMap, CountsNodesPropertiesLinksAndStrings) {
    CNodeDataMap map;
    CNodeData& node = AddNode(map, CNodeData::Integer_ID, "x",
                              {{ID::pValue_ID, "later"}, {ID::pTerminal_ID, "x"}});
    node.AddProperty(ID::Unit_ID, "ms");
    CNodeDataMap::NodeStatistics_t statistics;
    map.GetNodeStatistics(statistics);
    EXPECT_EQ(statistics.NumNodes, 1U);
    EXPECT_EQ(statistics.NumProperties, 4U);
    EXPECT_EQ(statistics.NumLinks, 2U);
    EXPECT_EQ(statistics.NumStrings, 2U);
}

}  // namespace
}  // namespace NodeDataTest
