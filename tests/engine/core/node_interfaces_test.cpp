// What a node says that it is besides a node.

#include <array>

#include "FactorySupport.h"
#include "core/PolyReference.h"
#include "factory/NodeCreation.h"
#include "ports/PortImplIntern.h"
#include "values/CategoryImpl.h"
#include "values/EnumEntryImpl.h"

namespace EngineTest {

namespace {

class NodeInterfaces : public testing::TestWithParam<int> {
protected:
    NodeInterfaces() : m_Node(CreateNode(static_cast<CNodeData::ENodeType_t>(GetParam()))) {}

    /// Whether an answer is what a cast finds.
    template <class Interface>
    void ExpectSame(Interface* told, const char* name) {
        EXPECT_EQ(told, dynamic_cast<Interface*>(m_Node.get())) << name;
    }

    std::unique_ptr<INodePrivate> m_Node;
};

}  // namespace

TEST_P(NodeInterfaces, AreThoseThatACastFinds) {
    ExpectSame(m_Node->AsValue(), "IValue");
    ExpectSame(m_Node->AsInteger(), "IInteger");
    ExpectSame(m_Node->AsFloat(), "IFloat");
    ExpectSame(m_Node->AsBoolean(), "IBoolean");
    ExpectSame(m_Node->AsEnumeration(), "IEnumeration");
    ExpectSame(m_Node->AsString(), "IString");
    ExpectSame(m_Node->AsEnumEntry(), "CEnumEntryImpl");
    ExpectSame(m_Node->AsCategory(), "CCategoryImpl");
    ExpectSame(m_Node->AsPort(), "CPortImplIntern");
}

INSTANTIATE_TEST_SUITE_P(OfAllTypes, NodeInterfaces,
                         testing::Range(int{CNodeData::Node_ID},
                                        int{CNodeData::IntConverter_ID} + 1),
                         [](const auto& type) {
                             return CNodeData::Value2String(
                                 static_cast<CNodeData::ENodeType_t>(type.param));
                         });

TEST(NodeParents, AreListedOnceForEachLinkInTheOrderOfTheNodes) {
    XmlNodeMap nodes(IntegerXml("First", "", "<pValue>R</pValue><pMin>R</pMin>") +
                     RegXml{.name = "R", .address = 0}() +
                     IntegerXml("Second", Element("pIsLocked", "R")));
    node_vector parents;
    nodes.Get("R").GetParents(parents);
    ASSERT_EQ(parents.size(), 3U);
    EXPECT_EQ(parents[0], &nodes.Get("First"));
    EXPECT_EQ(parents[1], &nodes.Get("First"));
    EXPECT_EQ(parents[2], &nodes.Get("Second"));
    nodes.Get("Second").GetParents(parents);
    EXPECT_EQ(parents.size(), 0U);
}

TEST(NodeDependents, AreUsableWhereTheRootElementIsAmongThem) {
    // The root element is told who selects it, and so depends on all that the selector reads.
    XmlNodeMap nodes(RegXml{.name = "R", .address = 0}() +
                     IntegerXml("Selector", "",
                                "<pValue>R</pValue>"
                                "<pSelected>_RegisterDescription</pSelected>"));
    auto& reg = nodes.Get<IInteger>("R");
    reg.SetValue(5);
    EXPECT_EQ(reg.GetValue(false, true), 5);
    node_vector dependents;
    nodes.Get("R").GetChildren(dependents, DependingNodes);
    ASSERT_EQ(dependents.size(), 1U);
    EXPECT_EQ(dependents[0], &nodes.Get("Selector"));
}

namespace {

const std::string kLongText = "A text that no string keeps within itself, however small it is";

std::string DescribedNodes() {
    return IntegerXml("Texts", Element("ToolTip", kLongText) + Element("Description", "short") +
                                   Element("DisplayName", kLongText) +
                                   Element("DocuURL", "http://example.com/a/b/c/d/e/f") +
                                   Element("EventID", "9001")) +
           "<Enumeration Name=\"E\"><EnumEntry Name=\"OneThatHasALongName\"><Value>1</Value>"
           "</EnumEntry><Value>1</Value></Enumeration>"
           "<IntSwissKnife Name=\"Knife\"><pVariable Name=\"X\">Texts</pVariable>"
           "<Formula>X + X + X + X + X + X + X + X</Formula><Unit>millimetres per second</Unit>"
           "</IntSwissKnife>";
}

/// All that comes from the description, as a client gets it.
void ExpectDescribedTexts(INodeMap& map) {
    INode& node = *map.GetNode("Texts");
    EXPECT_EQ(node.GetToolTip(), kLongText.c_str());
    EXPECT_EQ(node.GetDescription(), "short");
    EXPECT_EQ(node.GetDisplayName(), kLongText.c_str());
    EXPECT_EQ(node.GetDocuURL(), "http://example.com/a/b/c/d/e/f");
    EXPECT_EQ(node.GetEventID(), "9001");
    EXPECT_EQ(node.GetDeviceName(), "Device");
    EXPECT_EQ(dynamic_cast<IValue&>(*map.GetNode("E")).ToString(), "OneThatHasALongName");
    auto& knife = dynamic_cast<IInteger&>(*map.GetNode("Knife"));
    EXPECT_EQ(knife.GetValue(), 8);
    EXPECT_EQ(knife.GetUnit(), "millimetres per second");
    gcstring value;
    gcstring attribute;
    EXPECT_TRUE(map.GetNode("Knife")->GetProperty("Formula", value, attribute));
    EXPECT_EQ(value, "X + X + X + X + X + X + X + X");
    EXPECT_TRUE(map.GetNode("Knife")->GetProperty("pVariable", value, attribute));
    EXPECT_EQ(value, "Texts");
    EXPECT_EQ(attribute, "X");
    node_vector dependents;
    node.GetChildren(dependents, DependingNodes);
    EXPECT_EQ(dependents.size(), 1U);
}

}  // namespace

TEST(NodeTexts, StayWhenTheFactoryAndItsDescriptionAreGone) {
    std::optional<CNodeMapFactory> factory(Description(DescribedNodes()));
    const MapOwner map(factory->CreateNodeMap());
    factory.reset();
    ExpectDescribedTexts(*map.operator->());
}

TEST(NodeTexts, StayForEachMapOfAFactoryThatReleasesItsDescription) {
    CNodeMapFactory factory(Description(DescribedNodes()));
    const MapOwner first(factory.CreateNodeMap("Device", false));
    std::optional<MapOwner> second(std::in_place, factory.CreateNodeMap("Device", true));
    second.reset();
    ExpectDescribedTexts(*first.operator->());
}

TEST(NodeTexts, StayForNodesOfMergedDescriptions) {
    std::optional<CNodeMapFactory> factory(Description("Other", 1));
    factory->AddInjectionData(CNodeMapFactory(
        Description(DescribedNodes() + "<Port Name=\"Device\" MergePriority=\"-1\"/>")));
    const MapOwner map(factory->CreateNodeMap());
    factory.reset();
    ExpectDescribedTexts(*map.operator->());
}

TEST(NodeTexts, StayForNodesOfNodes) {
    std::optional<MapOwner> source(std::in_place,
                                   CNodeMapFactory(Description(DescribedNodes())).CreateNodeMap());
    const MapOwner map(
        CNodeMapFactory::CreateNodeDataFromNodeMap(source->operator->()).CreateNodeMap());
    source.reset();
    ExpectDescribedTexts(*map.operator->());
}

TEST(NodeTexts, StayForNodesOfTheCacheWhenTheFileIsGone) {
    const ScratchFolder folder;
    const EnvironmentScope scope("GENICAM_CACHE_V3_0", folder.Path());
    const gcstring description = Description(DescribedNodes());
    const MapOwner written(CNodeMapFactory(description, CacheUsage_ForceWrite).CreateNodeMap());
    std::optional<CNodeMapFactory> factory(std::in_place, description, CacheUsage_ForceRead);
    const MapOwner map(factory->CreateNodeMap());
    factory.reset();
    fs::remove_all(folder.Path());
    ExpectDescribedTexts(*map.operator->());
    ExpectDescribedTexts(*written.operator->());
}

}  // namespace EngineTest
