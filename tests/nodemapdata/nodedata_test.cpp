#include "support/NodeDataBuilder.h"

namespace NodeDataTest {
namespace {

TEST(NodeData, HasNoIdentifierBeforeItsName) {
    CNodeDataMap map;
    const CNodeData node(CNodeData::Integer_ID, &map);
    EXPECT_EQ(node.GetNodeID(), NodeID_t());
    EXPECT_TRUE(node.GetProperties().empty());
    EXPECT_EQ(node.GetNodeDataMap(), &map);
}

TEST(NodeData, TakesIdentifierAndPropertyWithItsName) {
    CNodeDataMap map;
    map.GetNodeID("Other", true);
    CNodeData node(CNodeData::Integer_ID, &map);
    node.SetName("Gain");
    EXPECT_EQ(node.GetNodeID(), NodeID_t(1));
    EXPECT_EQ(node.GetName(), "Gain");
    ASSERT_EQ(node.GetProperties().size(), 1U);
    EXPECT_EQ(node.GetProperties()[0].GetPropertyID(), ID::Name_ID);
    EXPECT_EQ(node.GetProperties()[0].String(), "Gain");
}

TEST(NodeData, KeepsPropertiesInTheOrderOfAdding) {
    CNodeDataMap map;
    CNodeData node(CNodeData::Integer_ID, &map);
    node.AddProperty(ID::Max_ID, 9);
    node.AddProperty(std::make_unique<CProperty>(&map, CPropertyID(ID::Min_ID), 1));
    node.AddProperty(CProperty(&map, ID::Inc_ID, 2));
    ASSERT_EQ(node.GetProperties().size(), 3U);
    EXPECT_EQ(node.GetProperties()[0].Integer(), 9);
    EXPECT_EQ(node.GetProperties()[1].Integer(), 1);
    EXPECT_EQ(node.GetProperties()[2].Integer(), 2);
}

TEST(NodeData, FindsTheFirstProperty) {
    CNodeDataMap map;
    CNodeData node(CNodeData::Integer_ID, &map);
    node.AddProperty(ID::Min_ID, 1);
    node.AddProperty(ID::Min_ID, 2);
    EXPECT_EQ(node.FindProperty(ID::Min_ID)->Integer(), 1);
    EXPECT_EQ(node.FindProperty(ID::Max_ID), nullptr);
}

TEST(NodeData, RemovesAllPropertiesOfAKindAndKeepsTheOrderOfTheRest) {
    CNodeDataMap map;
    CNodeData node(CNodeData::Integer_ID, &map);
    for (const int value : {1, 2, 3, 4}) {
        node.AddProperty(value % 2 == 0 ? ID::Min_ID : ID::Max_ID, value);
    }
    node.RemoveProperties(ID::Min_ID);
    ASSERT_EQ(node.GetProperties().size(), 2U);
    EXPECT_EQ(node.GetProperties()[0].Integer(), 1);
    EXPECT_EQ(node.GetProperties()[1].Integer(), 3);
}

/// A node with two properties, the links of a closure between them.
class NodeDataClosure : public testing::Test {
protected:
    NodeDataClosure() {
        m_Node.AddProperty(ID::Value_ID, 1);
        const NodeID_t b = m_Map.GetNodeID("B", true);
        const NodeID_t a = m_Map.GetNodeID("A", true);
        m_Node.SetClosure({b, a}, {m_Map.GetNodeID("C", true)});
        m_Node.AddProperty(ID::IsFeature_ID, CProperty::EYesNo_ID, Yes);
    }

    CNodeDataMap m_Map;
    CNodeData& m_Node = AddNode(m_Map, CNodeData::Integer_ID, "x");
};

TEST_F(NodeDataClosure, CountsAsPropertiesAtItsPlace) {
    EXPECT_THAT(IDsOf(m_Node),
                testing::ElementsAre(ID::Name_ID, ID::Value_ID, ID::pDependent_ID,
                                     ID::pDependent_ID, ID::pTerminal_ID, ID::IsFeature_ID));
    EXPECT_THAT(LinksOf(m_Map, "x", ID::pDependent_ID), testing::ElementsAre("B", "A"));
    EXPECT_THAT(LinksOf(m_Map, "x", ID::pTerminal_ID), testing::ElementsAre("C"));
}

TEST_F(NodeDataClosure, IsPrintedAtItsPlace) {
    EXPECT_EQ(m_Node.ToString(tssText),
              "Integer::x\n"
              "  NodeID = 0\n"
              "  Name = 0 'x'\n"
              "  Value = 1\n"
              "  pDependent = 1 (B)\n"
              "  pDependent = 2 (A)\n"
              "  pTerminal = 3 (C)\n"
              "  IsFeature = 1 <Yes>\n");
}

TEST_F(NodeDataClosure, StaysWhereItIsWhenPropertiesGo) {
    m_Node.RemoveProperties(ID::IsFeature_ID);
    m_Node.RemoveProperties(ID::Name_ID);
    m_Node.AddProperty(ID::Name_ID, "y");
    EXPECT_THAT(IDsOf(m_Node),
                testing::ElementsAre(ID::Value_ID, ID::pDependent_ID, ID::pDependent_ID,
                                     ID::pTerminal_ID, ID::Name_ID));
}

TEST_F(NodeDataClosure, IsCopiedAsFarAsTheTargetKnowsTheNodes) {
    CNodeDataMap target;
    target.GetNodeID("C", true);
    target.GetNodeID("A", true);
    target.SetNodeData(
        std::make_unique<CNodeData>(m_Node, target.GetNodeID("x", true), &target, true), false);
    EXPECT_THAT(IDsOf(NodeOf(target, "x")),
                testing::ElementsAre(ID::Name_ID, ID::Value_ID, ID::pDependent_ID, ID::pTerminal_ID,
                                     ID::IsFeature_ID));
    EXPECT_THAT(LinksOf(target, "x", ID::pDependent_ID), testing::ElementsAre("A"));
    EXPECT_THAT(LinksOf(target, "x", ID::pTerminal_ID), testing::ElementsAre("C"));
}

TEST(NodeData, HasMergePriorityZeroUnlessItSays) {
    CNodeDataMap map;
    CNodeData node(CNodeData::Integer_ID, &map);
    EXPECT_EQ(node.GetMergePriority(), 0);
    node.AddProperty(ID::MergePriority_ID, -1);
    node.AddProperty(ID::MergePriority_ID, 1);
    EXPECT_EQ(node.GetMergePriority(), -1);
}

TEST(NodeDataDeathTest, RefusesNoProperty) {
    CNodeDataMap map;
    CNodeData node(CNodeData::Integer_ID, &map);
    EXPECT_DEATH(node.AddProperty(std::unique_ptr<CProperty>()),
                 testing::HasSubstr("assertion failed: pProperty\n"));
}

TEST(NodeDataDeathTest, RefusesAnEmptyProperty) {
    CNodeDataMap map;
    CNodeData node(CNodeData::Integer_ID, &map);
    EXPECT_DEATH(node.AddProperty(CProperty(&map)),
                 testing::HasSubstr("pProperty->IsInitialized()"));
    EXPECT_DEATH(node.AddProperty(CPropertyID(), 1),
                 testing::HasSubstr("pProperty->IsInitialized()"));
}

TEST(NodeDataDeathTest, HasNoNameBeforeItIsSet) {
    CNodeDataMap map;
    const CNodeData node(CNodeData::Integer_ID, &map);
    EXPECT_DEATH((void)node.GetName(), testing::HasSubstr("NodeID.IsValid()"));
}

class NodeDataCompare : public testing::Test {
protected:
    NodeDataCompare()
        : m_One(MakeNode(m_Map, CNodeData::EnumEntry_ID, "E")),
          m_Other(MakeNode(m_Map, CNodeData::EnumEntry_ID, "E")) {}

    CNodeDataMap m_Map;
    std::unique_ptr<CNodeData> m_One;
    std::unique_ptr<CNodeData> m_Other;
};

TEST_F(NodeDataCompare, EqualsPairByPair) {
    m_One->AddProperty(ID::Value_ID, 1);
    m_Other->AddProperty(ID::Value_ID, 1);
    EXPECT_TRUE(*m_One == *m_Other);
}

TEST_F(NodeDataCompare, DiffersInTheFirstUnequalPair) {
    m_One->AddProperty(ID::Value_ID, 1);
    m_Other->AddProperty(ID::Value_ID, 2);
    EXPECT_FALSE(*m_One == *m_Other);
}

TEST_F(NodeDataCompare, CountsUnlikeNodesAsEqual) {
    m_One->AddProperty(ID::Value_ID, 1);
    EXPECT_TRUE(*m_One == *m_Other) << "another number of properties";
    EXPECT_TRUE(*m_One == *MakeNode(m_Map, CNodeData::Integer_ID, "E")) << "another type";
    EXPECT_TRUE(*m_One == *MakeNode(m_Map, CNodeData::EnumEntry_ID, "F")) << "another name";
}

TEST_F(NodeDataCompare, CountsEmptyNodesAsEqual) {
    EXPECT_TRUE(CNodeData(CNodeData::EnumEntry_ID, &m_Map) ==
                CNodeData(CNodeData::EnumEntry_ID, &m_Map));
}

TEST(NodeDataCopy, TakesTypeAndGivenIdentifier) {
    CNodeDataMap source;
    CNodeDataMap target;
    const auto pNode = MakeNode(source, CNodeData::Float_ID, "Gain", {{ID::pValue_ID, "Reg"}});
    target.GetNodeID("Reg", true);
    const NodeID_t nodeID = target.GetNodeID("Gain", true);

    const CNodeData copy(*pNode, nodeID, &target, false);
    EXPECT_EQ(copy.GetNodeType(), CNodeData::Float_ID);
    EXPECT_EQ(copy.GetNodeID(), NodeID_t(1));
    EXPECT_EQ(copy.FindProperty(ID::Name_ID)->String(), "Gain");
    EXPECT_EQ(copy.FindProperty(ID::pValue_ID)->NodeID(), NodeID_t(0));
}

TEST(NodeDataCopy, DropsUnknownTargetsOnRequest) {
    CNodeDataMap source;
    CNodeDataMap target;
    const auto pNode = MakeNode(source, CNodeData::Float_ID, "Gain",
                                {{ID::pDependent_ID, "Far"}, {ID::pValue_ID, "Reg"}});
    target.GetNodeID("Reg", true);
    const CNodeData copy(*pNode, target.GetNodeID("Gain", true), &target, true);
    EXPECT_EQ(copy.FindProperty(ID::pDependent_ID), nullptr);
    EXPECT_EQ(target.GetNodeName(copy.FindProperty(ID::pValue_ID)->NodeID()), "Reg");
}

TEST(NodeDataCopyDeathTest, NeedsAllTargetsOtherwise) {
    CNodeDataMap source;
    CNodeDataMap target;
    const auto pNode = MakeNode(source, CNodeData::Float_ID, "Gain", {{ID::pDependent_ID, "Far"}});
    EXPECT_DEATH(CNodeData(*pNode, NodeID_t(0), &target, false),
                 testing::HasSubstr("TargetNodeID != NodeID_t()"));
}

struct TypeText {
    int type;
    const char* text;
};

class NodeDataType : public testing::TestWithParam<TypeText> {};

TEST_P(NodeDataType, HasItsElementName) {
    EXPECT_STREQ(CNodeData::Value2String(static_cast<CNodeData::ENodeType_t>(GetParam().type)),
                 GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    All, NodeDataType,
    testing::Values(TypeText{0, "Node"}, TypeText{1, "Category"}, TypeText{2, "Integer"},
                    TypeText{3, "Enumeration"}, TypeText{4, "EnumEntry"},
                    TypeText{5, "MaskedIntReg"}, TypeText{6, "Register"}, TypeText{7, "IntReg"},
                    TypeText{8, "Float"}, TypeText{9, "FloatReg"}, TypeText{10, "SwissKnife"},
                    TypeText{11, "IntSwissKnife"}, TypeText{12, "IntKey"}, TypeText{13, "TextDesc"},
                    TypeText{14, "Port"}, TypeText{15, "ConfRom"}, TypeText{16, "AdvFeatureLock"},
                    TypeText{17, "SmartFeature"}, TypeText{18, "String"}, TypeText{19, "StringReg"},
                    TypeText{20, "Boolean"}, TypeText{21, "Command"}, TypeText{22, "Converter"},
                    TypeText{23, "IntConverter"}, TypeText{27, "RegisterDescription"}));

class NodeDataTypeDeathTest : public testing::TestWithParam<int> {};

TEST_P(NodeDataTypeDeathTest, HasNoTextForWhatIsNoNodeOfAMap) {
    EXPECT_DEATH((void)CNodeData::Value2String(static_cast<CNodeData::ENodeType_t>(GetParam())),
                 testing::HasSubstr("false"));
}

INSTANTIATE_TEST_SUITE_P(All, NodeDataTypeDeathTest, testing::Values(24, 25, 26, 28));

TEST(NodeDataPrint, DumpsTheNodeWithItsProperties) {
    CNodeDataMap map;
    map.GetNodeID("Reg", true);
    const auto pNode = MakeNode(map, CNodeData::Integer_ID, "Gain", {{ID::pValue_ID, "Reg"}});
    EXPECT_EQ(pNode->ToString(tssText),
              "Integer::Gain\n"
              "  NodeID = 1\n"
              "  Name = 0 'Gain'\n"
              "  pValue = 0 (Reg)\n");
}

TEST(NodeDataPrint, WritesNameAndNameSpaceIntoTheStartTag) {
    CNodeDataMap map;
    const auto pNode = MakeNode(map, CNodeData::Integer_ID, "Gain");
    pNode->AddProperty(ID::Min_ID, 1);
    pNode->AddProperty(ID::NameSpace_ID, CProperty::ENameSpace_ID, Standard);
    pNode->AddProperty(ID::MergePriority_ID, 1);
    pNode->AddProperty(ID::ExposeStatic_ID, CProperty::EYesNo_ID, No);
    EXPECT_EQ(pNode->ToString(tssXmlStartTag),
              "<Integer Name=\"Gain\" NameSpace=\"Standard\" ExposeStatic=\"No\">");
    EXPECT_EQ(pNode->ToString(tssXmlEndTag), "</Integer>");
}

TEST(NodeDataPrint, WritesTheCustomNameSpaceWhenThereIsNone) {
    CNodeDataMap map;
    EXPECT_EQ(MakeNode(map, CNodeData::Category_ID, "Root")->ToString(tssXmlStartTag),
              "<Category Name=\"Root\" NameSpace=\"Custom\">");
}

class NodeDataStyleDeathTest : public testing::TestWithParam<int> {};

TEST_P(NodeDataStyleDeathTest, RefusesStylesOfPropertiesAndMaps) {
    CNodeDataMap map;
    const auto pNode = MakeNode(map, CNodeData::Integer_ID, "Gain");
    EXPECT_DEATH((void)pNode->ToString(static_cast<EToStringStyle_t>(GetParam())),
                 testing::HasSubstr("false"));
}

INSTANTIATE_TEST_SUITE_P(Others, NodeDataStyleDeathTest, testing::Values(1, 2, 5, 6, 7));

}  // namespace
}  // namespace NodeDataTest
