#include "support/NodeDataBuilder.h"

namespace NodeDataTest {
namespace {

class NodeDataMapInject : public testing::Test {
protected:
    NodeDataMapInject() {
        AddRoot(m_Main);
        AddRoot(m_Other);
    }

    /// A node "x" of a type in each map, told apart by its unit.
    void AddToBoth(CNodeData::ENodeType_t type) {
        AddNode(m_Main, type, "x").AddProperty(ID::Unit_ID, "main");
        AddNode(m_Other, type, "x").AddProperty(ID::Unit_ID, "injected");
    }
    void InjectWithPriority(int priority) {
        NodeOf(m_Other, "x").AddProperty(ID::MergePriority_ID, priority);
        m_Main.Inject(m_Other);
    }
    std::string UnitOfX() const {
        return std::string(NodeOf(m_Main, "x").FindProperty(ID::Unit_ID)->String());
    }

    CNodeDataMap m_Main;
    CNodeDataMap m_Other;
};

TEST_F(NodeDataMapInject, AddsNewNodesAndTheirLinks) {
    AddNode(m_Other, CNodeData::Integer_ID, "Gain", {{ID::pValue_ID, "Reg"}});
    AddNode(m_Other, CNodeData::IntReg_ID, "Reg");
    m_Main.Inject(m_Other);
    EXPECT_THAT(LinksOf(m_Main, "Gain", ID::pValue_ID), testing::ElementsAre("Reg"));
    EXPECT_EQ(NodeOf(m_Main, "Reg").GetNodeType(), CNodeData::IntReg_ID);
    EXPECT_EQ(FailureText([&] { m_Main.CheckConsistency(); }), "");
}

TEST_F(NodeDataMapInject, LosesTheInjectedRoot) {
    NodeOf(m_Other, "_RegisterDescription").AddProperty(ID::ModelName_ID, "injected");
    m_Main.Inject(m_Other);
    EXPECT_EQ(NodeOf(m_Main, "_RegisterDescription").FindProperty(ID::ModelName_ID), nullptr);
}

TEST_F(NodeDataMapInject, LeavesTheInjectedMapAsItIs) {
    AddNode(m_Other, CNodeData::Integer_ID, "Gain");
    const size_t numNodes = m_Other.GetNumNodeIDs();
    const size_t numStrings = m_Other.GetNumStrings();
    m_Main.Inject(m_Other);
    EXPECT_EQ(m_Other.GetNumNodeIDs(), numNodes);
    EXPECT_EQ(m_Other.GetNumStrings(), numStrings);
}

TEST_F(NodeDataMapInject, ReplacesWithPriorityOne) {
    AddToBoth(CNodeData::Integer_ID);
    const NodeID_t nodeID = m_Main.FindNodeID("x");
    InjectWithPriority(1);
    EXPECT_EQ(UnitOfX(), "injected");
    EXPECT_EQ(m_Main.FindNodeID("x"), nodeID);
}

TEST_F(NodeDataMapInject, KeepsTheOldNodeWithPriorityMinusOne) {
    AddToBoth(CNodeData::Integer_ID);
    InjectWithPriority(-1);
    EXPECT_EQ(UnitOfX(), "main");
}

TEST_F(NodeDataMapInject, RefusesPriorityZeroForOtherThanCategoriesAndEnumerations) {
    AddToBoth(CNodeData::Integer_ID);
    EXPECT_EQ(FailureText([&] { m_Main.Inject(m_Other); }), "Merge conflict with node 'x'");
}

TEST_F(NodeDataMapInject, RefusesAnyOtherPriority) {
    AddToBoth(CNodeData::Integer_ID);
    EXPECT_EQ(FailureText([&] { InjectWithPriority(2); }), "Merge conflict with node 'x'");
}

TEST_F(NodeDataMapInject, FillsTheSlotThatTheMainMapRefersToWithoutAPriority) {
    AddNode(m_Main, CNodeData::Integer_ID, "Gain", {{ID::pValue_ID, "x"}});
    AddNode(m_Other, CNodeData::IntReg_ID, "x");
    m_Main.Inject(m_Other);
    EXPECT_EQ(NodeOf(m_Main, "x").GetNodeType(), CNodeData::IntReg_ID);
    EXPECT_EQ(FailureText([&] { m_Main.CheckConsistency(); }), "");
}

TEST_F(NodeDataMapInject, FillsACategoryThatTheMainMapRefersToOnce) {
    AddNode(m_Main, CNodeData::Category_ID, "Root", {{ID::pFeature_ID, "x"}});
    AddNode(m_Other, CNodeData::Category_ID, "x", {{ID::pFeature_ID, "f"}});
    AddNode(m_Other, CNodeData::Integer_ID, "f");
    m_Main.Inject(m_Other);
    EXPECT_THAT(LinksOf(m_Main, "x", ID::pFeature_ID), testing::ElementsAre("f"));
}

TEST_F(NodeDataMapInject, LeavesBehindWhatPreprocessingAdded) {
    AddNode(m_Other, CNodeData::Category_ID, "Root", {{ID::pFeature_ID, "GainAbs"}});
    AddNode(m_Other, CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}});
    AddNode(m_Other, CNodeData::Float_ID, "GainAbs", {{ID::pValue_ID, "Gain"}});
    AddNode(m_Other, CNodeData::Integer_ID, "Gain");
    std::vector<size_t> numGiven;
    for (size_t i = 0; i < m_Other.GetNumNodeIDs(); ++i) {
        numGiven.push_back(m_Other.GetNodeData(NodeID_t(i))->GetProperties().size());
    }
    CNodeDataMapFactory::PreProcessNodeDataMap(&m_Other);
    m_Main.Inject(m_Other);
    for (const char* const name : {"Root", "Selector", "GainAbs", "Gain"}) {
        const auto index = static_cast<size_t>(m_Other.FindNodeID(name).ToIndex());
        EXPECT_EQ(NodeOf(m_Main, name).GetProperties().size(), numGiven[index]) << name;
    }
    EXPECT_THAT(LinksOf(m_Main, "Selector", ID::pSelected_ID), testing::ElementsAre("Gain"));
}

class NodeDataMapInjectDangling : public NodeDataMapInject,
                                  public testing::WithParamInterface<int> {};

TEST_P(NodeDataMapInjectDangling, FillsTheSlotThatTheMainMapRefersTo) {
    AddNode(m_Main, CNodeData::Integer_ID, "Gain", {{ID::pValue_ID, "x"}});
    AddNode(m_Other, CNodeData::IntReg_ID, "x");
    InjectWithPriority(GetParam());
    EXPECT_EQ(NodeOf(m_Main, "x").GetNodeType(), CNodeData::IntReg_ID);
}

INSTANTIATE_TEST_SUITE_P(Priorities, NodeDataMapInjectDangling, testing::Values(-1, 1));

struct MergedType {
    CNodeData::ENodeType_t type;
    ID::EProperty_ID_t link;
};

class NodeDataMapMerge : public NodeDataMapInject, public testing::WithParamInterface<MergedType> {
protected:
    void AddTargets(CNodeDataMap& map, const std::vector<const char*>& names) {
        for (const char* name : names) {
            if (!map.FindNodeID(name).IsValid()) {
                AddNode(map, CNodeData::Node_ID, name).AddProperty(ID::MergePriority_ID, -1);
            }
        }
    }
};

TEST_P(NodeDataMapMerge, AddsNewLinksToTheOldNodeWithoutDuplicates) {
    const auto& [type, link] = GetParam();
    AddTargets(m_Main, {"A", "B"});
    AddTargets(m_Other, {"C", "B", "D"});
    AddNode(m_Main, type, "x", {{link, "A"}, {link, "B"}}).AddProperty(ID::Unit_ID, "main");
    AddNode(m_Other, type, "x",
            {{link, "D"}, {link, "B"}, {link, "C"}, {link, "D"}, {ID::pInvalidator_ID, "C"}})
        .AddProperty(ID::Unit_ID, "injected");
    m_Main.Inject(m_Other);
    EXPECT_EQ(UnitOfX(), "main");
    EXPECT_THAT(LinksOf(m_Main, "x", link), testing::ElementsAre("A", "B", "D", "C"));
    EXPECT_THAT(LinksOf(m_Main, "x", ID::pInvalidator_ID), testing::IsEmpty());
    EXPECT_EQ(NodeOf(m_Main, "x").GetProperties().back().GetPropertyID(), link);
}

TEST_P(NodeDataMapMerge, ReplacesWithPriorityOneWithoutMerging) {
    const auto& [type, link] = GetParam();
    AddTargets(m_Main, {"A"});
    AddTargets(m_Other, {"B"});
    AddNode(m_Main, type, "x", {{link, "A"}});
    AddNode(m_Other, type, "x", {{link, "B"}});
    InjectWithPriority(1);
    EXPECT_THAT(LinksOf(m_Main, "x", link), testing::ElementsAre("B"));
}

TEST_P(NodeDataMapMerge, KeepsWithPriorityMinusOneWithoutMerging) {
    const auto& [type, link] = GetParam();
    AddTargets(m_Main, {"A"});
    AddTargets(m_Other, {"B"});
    AddNode(m_Main, type, "x", {{link, "A"}});
    AddNode(m_Other, type, "x", {{link, "B"}});
    InjectWithPriority(-1);
    EXPECT_THAT(LinksOf(m_Main, "x", link), testing::ElementsAre("A"));
}

INSTANTIATE_TEST_SUITE_P(Types, NodeDataMapMerge,
                         testing::Values(MergedType{CNodeData::Category_ID, ID::pFeature_ID},
                                         MergedType{CNodeData::Enumeration_ID, ID::pEnumEntry_ID}));

TEST_F(NodeDataMapInject, MergesByTheTypeOfTheOldNode) {
    AddNode(m_Main, CNodeData::Integer_ID, "x");
    AddNode(m_Other, CNodeData::Category_ID, "x", {{ID::pFeature_ID, "f"}});
    AddNode(m_Other, CNodeData::Integer_ID, "f");
    m_Main.Inject(m_Other);
    EXPECT_EQ(NodeOf(m_Main, "x").GetNodeType(), CNodeData::Integer_ID);
    EXPECT_THAT(LinksOf(m_Main, "x", ID::pFeature_ID), testing::IsEmpty());
}

}  // namespace
}  // namespace NodeDataTest
