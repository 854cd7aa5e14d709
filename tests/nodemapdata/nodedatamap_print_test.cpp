#include <sstream>

#include "support/NodeDataBuilder.h"

namespace NodeDataTest {
namespace {

std::string Print(const CNodeDataMap& map, EToStringStyle_t style) {
    std::ostringstream stream;
    CNodeDataMap::Print(stream, map, style);
    return stream.str();
}

TEST(NodeDataMapPrint, DumpsTheNodesInTheirOrder) {
    CNodeDataMap map;
    AddNode(map, CNodeData::Integer_ID, "A", {{ID::pValue_ID, "B"}});
    AddNode(map, CNodeData::IntReg_ID, "B");
    EXPECT_EQ(Print(map, tssText),
              "Integer::A\n  NodeID = 0\n  Name = 0 'A'\n  pValue = 1 (B)\n\n"
              "IntReg::B\n  NodeID = 1\n  Name = 1 'B'\n\n");
}

TEST(NodeDataMapPrint, WritesADocument) {
    CNodeDataMap map;
    AddRoot(map).AddProperty(ID::ModelName_ID, "Model");
    CNodeData& node = AddNode(map, CNodeData::Integer_ID, "A", {{ID::pValue_ID, "B"}});
    node.AddProperty(ID::NameSpace_ID, CProperty::ENameSpace_ID, Standard);
    node.AddProperty(ID::MergePriority_ID, 1);
    node.AddProperty(ID::ExposeStatic_ID, CProperty::EYesNo_ID, No);
    node.AddProperty(ID::ToolTip_ID, "a<b & c");
    AddNode(map, CNodeData::IntReg_ID, "B").AddProperty(ID::Address_ID, 256);
    EXPECT_EQ(Print(map, tssXmlDocument),
              R"(<?xml version="1.0" encoding="UTF-8" standalone="no" ?>
<RegisterDescription SchemaMajorVersion="1" SchemaMinorVersion="1" ModelName="Model">
    <Integer Name="A" NameSpace="Standard" ExposeStatic="No">
        <pValue>B</pValue>
        <ToolTip>a&lt;b &amp; c</ToolTip>
        <IsFeature>No</IsFeature>
    </Integer>

    <IntReg Name="B" NameSpace="Custom">
        <Address>256</Address>
        <IsFeature>No</IsFeature>
    </IntReg>

</RegisterDescription>
)");
}

TEST(NodeDataMapPrint, SaysNoFeatureOnlyBeforeTheFirstOne) {
    CNodeDataMap map;
    AddRoot(map);
    AddNode(map, CNodeData::Integer_ID, "A");
    AddNode(map, CNodeData::Integer_ID, "B");
    AddNode(map, CNodeData::Integer_ID, "C")
        .AddProperty(ID::IsFeature_ID, CProperty::EYesNo_ID, Yes);
    AddNode(map, CNodeData::Integer_ID, "D");
    EXPECT_EQ(Print(map, tssXmlDocument),
              R"(<?xml version="1.0" encoding="UTF-8" standalone="no" ?>
<RegisterDescription SchemaMajorVersion="1" SchemaMinorVersion="1">
    <Integer Name="A" NameSpace="Custom">
        <IsFeature>No</IsFeature>
    </Integer>

    <Integer Name="B" NameSpace="Custom">
        <IsFeature>No</IsFeature>
    </Integer>

    <Integer Name="C" NameSpace="Custom">
        <IsFeature>Yes</IsFeature>
    </Integer>

    <Integer Name="D" NameSpace="Custom">
    </Integer>

</RegisterDescription>
)");
}

class NodeDataMapStyleDeathTest : public testing::TestWithParam<int> {};

TEST_P(NodeDataMapStyleDeathTest, RefusesStylesOfNodesAndProperties) {
    CNodeDataMap map;
    AddRoot(map);
    EXPECT_DEATH((void)Print(map, static_cast<EToStringStyle_t>(GetParam())),
                 testing::HasSubstr("false"));
}

INSTANTIATE_TEST_SUITE_P(Others, NodeDataMapStyleDeathTest, testing::Values(2, 3, 4, 5, 6, 7));

}  // namespace
}  // namespace NodeDataTest
