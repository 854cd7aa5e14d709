#include "support/NodeDataBuilder.h"

namespace NodeDataTest {
namespace {

using GenICam_3_0_ORVANE::InvalidArgumentException;

std::vector<std::string> NamesOf(const CNodeDataMap& map) {
    std::vector<std::string> names;
    for (size_t index = 0; index < map.GetNumNodeIDs(); ++index) {
        names.push_back(map.GetNodeName(NodeID_t(index)));
        EXPECT_EQ(map.GetNodeData(NodeID_t(index))->GetNodeID(), NodeID_t(index));
    }
    return names;
}

/// Root lists Analog, Analog lists Gain, Gain stands on a register on a port.
class NodeDataMapExtract : public testing::Test {
protected:
    NodeDataMapExtract() {
        AddRoot(m_Map);
        MarkFeature(AddNode(m_Map, CNodeData::Category_ID, "Root", {{ID::pFeature_ID, "Analog"}}));
        AddNode(m_Map, CNodeData::Integer_ID, "Far");
        AddNode(m_Map, CNodeData::IntReg_ID, "GainReg", {{ID::pPort_ID, "Device"}})
            .AddProperty(ID::pDependent_ID, m_Map.GetNodeID("Gain", true));
        MarkFeature(AddNode(m_Map, CNodeData::Category_ID, "Analog", {{ID::pFeature_ID, "Gain"}}));
        MarkFeature(AddNode(m_Map, CNodeData::Integer_ID, "Gain",
                            {{ID::pValue_ID, "GainReg"}, {ID::pDependent_ID, "Far"}}));
        AddNode(m_Map, CNodeData::Port_ID, "Device");
    }

    static void MarkFeature(CNodeData& node) {
        node.AddProperty(ID::IsFeature_ID, CProperty::EYesNo_ID, Yes);
    }
    void Extract(const char* name, bool renameToRoot) {
        m_Map.ExtractIndependentSubtree(m_Extract, name, renameToRoot);
    }
    std::string FailureOfExtract(const char* name, bool renameToRoot) {
        return FailureText<InvalidArgumentException>([&] { Extract(name, renameToRoot); });
    }

    CNodeDataMap m_Map;
    CNodeDataMap m_Extract;
};

TEST_F(NodeDataMapExtract, TakesTheRootNodeAndAllThatIsReached) {
    Extract("Gain", false);
    EXPECT_THAT(NamesOf(m_Extract),
                testing::ElementsAre("_RegisterDescription", "GainReg", "Device", "Gain"));
    EXPECT_THAT(LinksOf(m_Extract, "Gain", ID::pValue_ID), testing::ElementsAre("GainReg"));
    EXPECT_THAT(LinksOf(m_Extract, "GainReg", ID::pPort_ID), testing::ElementsAre("Device"));
    EXPECT_EQ(FailureText([&] { m_Extract.CheckConsistency(); }), "");
}

TEST_F(NodeDataMapExtract, DropsDependentsOutsideAndKeepsThoseInside) {
    Extract("Gain", false);
    EXPECT_THAT(LinksOf(m_Extract, "Gain", ID::pDependent_ID), testing::IsEmpty());
    EXPECT_THAT(LinksOf(m_Extract, "GainReg", ID::pDependent_ID), testing::ElementsAre("Gain"));
}

TEST_F(NodeDataMapExtract, FollowsInvalidatingLinksToo) {
    AddNode(m_Map, CNodeData::Integer_ID, "Top",
            {{ID::pEnumEntry_ID, "Far"}, {ID::pSelected_ID, "Gain"}});
    Extract("Top", false);
    EXPECT_THAT(NamesOf(m_Extract), testing::ElementsAre("_RegisterDescription", "Far", "Top"));
}

TEST_F(NodeDataMapExtract, EndsOnCycles) {
    AddNode(m_Map, CNodeData::Integer_ID, "A", {{ID::pMin_ID, "B"}});
    AddNode(m_Map, CNodeData::Integer_ID, "B", {{ID::pMin_ID, "A"}});
    Extract("A", false);
    EXPECT_THAT(NamesOf(m_Extract), testing::ElementsAre("_RegisterDescription", "A", "B"));
}

TEST_F(NodeDataMapExtract, UnmarksFeaturesWithoutARoot) {
    Extract("Analog", false);
    EXPECT_EQ(CountOf(NodeOf(m_Extract, "Analog"), ID::IsFeature_ID), 0U);
    EXPECT_EQ(CountOf(NodeOf(m_Extract, "Gain"), ID::IsFeature_ID), 0U);
}

TEST_F(NodeDataMapExtract, KeepsFeaturesBelowTheRoot) {
    Extract("Root", false);
    EXPECT_EQ(CountOf(NodeOf(m_Extract, "Gain"), ID::IsFeature_ID), 1U);
}

TEST_F(NodeDataMapExtract, RenamesTheCategoryToRoot) {
    Extract("Analog", true);
    const CNodeData& root = NodeOf(m_Extract, "Root");
    EXPECT_FALSE(m_Extract.FindNodeID("Analog").IsValid());
    EXPECT_EQ(root.GetName(), "Root");
    EXPECT_EQ(CountOf(root, ID::Name_ID), 1U);
    EXPECT_EQ(root.GetProperties().back().String(), "Root");
    EXPECT_EQ(CountOf(root, ID::IsFeature_ID), 1U);
    EXPECT_THAT(LinksOf(m_Extract, "Root", ID::pFeature_ID), testing::ElementsAre("Gain"));
}

TEST_F(NodeDataMapExtract, LeavesARootThatHasItsNameAlready) {
    EXPECT_EQ(FailureOfExtract("Root", true), "");
    const CNodeData& root = NodeOf(m_Extract, "Root");
    EXPECT_EQ(root.GetProperties().front().String(), "Root");
    EXPECT_EQ(CountOf(root, ID::Name_ID), 1U);
    EXPECT_EQ(m_Extract.GetNumNodeIDs(), m_Map.GetNumNodeIDs() - 1) << "all but Far";
}

TEST_F(NodeDataMapExtract, RefusesAnUnknownName) {
    EXPECT_EQ(FailureOfExtract("Nobody", false), "Node 'Nobody' not found");
}

TEST_F(NodeDataMapExtract, RenamesOnlyCategories) {
    m_Map.GetNodeID("Dangling", true);
    EXPECT_EQ(FailureOfExtract("Gain", true), "Only category nodes can be renamed to \"Root\"");
    EXPECT_EQ(FailureOfExtract("Dangling", true), "Only category nodes can be renamed to \"Root\"");
}

TEST_F(NodeDataMapExtract, RefusesASecondRoot) {
    AddNode(m_Map, CNodeData::Category_ID, "Top", {{ID::pFeature_ID, "Root"}});
    EXPECT_EQ(FailureOfExtract("Top", true),
              "Cannot rename to \"Root\" because a node named \"Root\" already exists after "
              "extracting the subtree.");
}

using NodeDataMapExtractDeathTest = NodeDataMapExtract;

TEST_F(NodeDataMapExtractDeathTest, NeedsAllReachedNodes) {
    AddNode(m_Map, CNodeData::Integer_ID, "Top", {{ID::pValue_ID, "Missing"}});
    EXPECT_DEATH(Extract("Top", false), testing::HasSubstr("pNodeData != NULL"));
}

}  // namespace
}  // namespace NodeDataTest
