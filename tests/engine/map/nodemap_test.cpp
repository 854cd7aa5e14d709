// The map of all nodes of a description.

#include "GenApi/IDestroy.h"
#include "GenApi/IDeviceInfo.h"
#include "GenApi/Version.h"
#include "NodeGraph.h"
#include "formula/IFormulaNode.h"

namespace EngineTest {

namespace {

class NodeMap : public testing::Test {
protected:
    XmlNodeMap m_Nodes{IntegerXml("Own") +
                       "<Integer Name=\"Common\" NameSpace=\"Standard\"><Value>1</Value></Integer>"
                       "<Port Name=\"Extra\"/>" +
                       RegXml{.name = "Reg", .address = 0}()};
    INodeMap& m_Map = m_Nodes.Map();
    INodeMapPrivate& m_Private = dynamic_cast<INodeMapPrivate&>(m_Nodes.Map());
};

}  // namespace

TEST_F(NodeMap, ListsItsNodesInTheOrderOfTheDescription) {
    node_vector list(1, nullptr);
    m_Map.GetNodes(list);
    std::vector<std::string> names;
    for (INode* const node : list) {
        names.emplace_back(node->GetName());
    }
    EXPECT_THAT(names, testing::ElementsAre("Own", "Common", "Extra", "Reg", "Device"));
    EXPECT_EQ(m_Map.GetNumNodes(), 5U);
}

TEST_F(NodeMap, FindsNodesByTheirPlainNames) {
    EXPECT_EQ(m_Map.GetNode("Own")->GetName(), "Own");
    EXPECT_EQ(m_Map.GetNode("Common")->GetName(), "Common");
    EXPECT_EQ(m_Map.GetNode("own"), nullptr);
    EXPECT_EQ(m_Map.GetNode(""), nullptr);
}

TEST_F(NodeMap, FindsNodesByQualifiedNamesInTheirSpaceOnly) {
    EXPECT_EQ(m_Map.GetNode("Cust::Own"), m_Map.GetNode("Own"));
    EXPECT_EQ(m_Map.GetNode("Std::Own"), nullptr);
    EXPECT_EQ(m_Map.GetNode("Std::Common"), m_Map.GetNode("Common"));
    EXPECT_EQ(m_Map.GetNode("Cust::Common"), nullptr);
    EXPECT_EQ(m_Map.GetNode("Other::Own"), nullptr);
    EXPECT_EQ(m_Map.GetNode("::Own"), nullptr);
    EXPECT_EQ(m_Map.GetNode("Std::"), nullptr);
}

TEST(NodeMapNames, PreferTheMakersNodeToTheStandards) {
    NodesByHand nodes;
    CInteger& standard = nodes.AddValue("Standard");
    CInteger& custom = nodes.AddValue("Custom");
    for (CInteger* const node : {&standard, &custom}) {
        nodes.Set(*node, CPropertyID::Name_ID, std::string_view("Gain"));
    }
    nodes.Set(standard, CPropertyID::NameSpace_ID, CProperty::ENameSpace_ID, Standard);
    nodes.Complete();
    EXPECT_EQ(nodes.Map().GetNode("Gain"), &custom);
    EXPECT_EQ(nodes.Map().GetNode("Cust::Gain"), &custom);
    EXPECT_EQ(nodes.Map().GetNode("Std::Gain"), &standard);
    EXPECT_EQ(nodes.Map().GetNumNodes(), 2U);
}

TEST(NodeMapNames, AreKnownOnceTheMapIsComplete) {
    NodesByHand nodes;
    nodes.AddValue("Node");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { nodes.Map().GetNode("Node"); }),
              "Map not allocated");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { nodes.Map().GetNumNodes(); }),
              "Map not allocated");
    nodes.Complete();
    EXPECT_NE(nodes.Map().GetNode("Node"), nullptr);
}

TEST_F(NodeMap, ConnectsAPortByName) {
    TestPort port;
    port.SetAccessMode(RO);
    EXPECT_EQ(m_Map.GetNode("Extra")->GetAccessMode(), NI);
    EXPECT_TRUE(m_Map.Connect(&port, "Extra"));
    EXPECT_EQ(m_Map.GetNode("Extra")->GetAccessMode(), RO);
}

TEST_F(NodeMap, ConnectsThePortOfTheDeviceByDefault) {
    TestPort port;
    port.Put(0, 77);
    EXPECT_TRUE(m_Map.Connect(&port));
    EXPECT_EQ(m_Nodes.Get<IInteger>("Reg").GetValue(), 77);
}

TEST_F(NodeMap, ConnectsNothingToWhatIsNoPort) {
    auto& own = m_Nodes.Get<IInteger>("Own");
    own.GetValue();
    NotingCallback::Calls calls;
    NotingCallback::On(m_Nodes.Get("Own"), calls);
    TestPort port;
    EXPECT_FALSE(m_Map.Connect(&port, "Own"));
    EXPECT_FALSE(m_Map.Connect(&port, "Missing"));
    EXPECT_TRUE(own.IsValueCacheValid());
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(port.GetAccesses().empty());
}

TEST_F(NodeMap, InvalidatesAllNodesAndTellsEachClientOnce) {
    m_Nodes.Get<IInteger>("Own").GetValue();
    NotingCallback::Calls calls;
    NotingCallback::On(m_Nodes.Get("Own"), calls);
    NotingCallback::On(m_Nodes.Get("Reg"), calls);
    m_Map.InvalidateNodes();
    EXPECT_FALSE(m_Nodes.Get<IInteger>("Own").IsValueCacheValid());
    ASSERT_EQ(calls.size(), 4U);
    EXPECT_THAT(NotingCallback::Calls(calls.begin(), calls.begin() + 2),
                testing::UnorderedElementsAre("Own inside", "Reg inside"));
    EXPECT_THAT(NotingCallback::Calls(calls.begin() + 2, calls.end()),
                testing::UnorderedElementsAre("Own outside", "Reg outside"));
}

TEST_F(NodeMap, PollsNothingWhenNoNodeHasATime) {
    NotingCallback::Calls calls;
    NotingCallback::On(m_Nodes.Get("Reg"), calls);
    m_Map.Poll(1'000'000);
    EXPECT_TRUE(calls.empty());
}

TEST_F(NodeMap, FindsNodesByIdentifier) {
    INodePrivate* const own = m_Private.GetNodeByID(NodeID_t(1));
    EXPECT_EQ(own, m_Map.GetNode("Own"));
    EXPECT_EQ(own->GetNodeID(), NodeID_t(1));
    EXPECT_EQ(own->GetNodeType(), CNodeData::Integer_ID);
    EXPECT_EQ(m_Private.GetNodeByID(NodeID_t(0)), nullptr) << "the root element is no node";
}

TEST_F(NodeMap, KeepsTheOutermostEntryPoint) {
    auto& own = m_Nodes.Get<INodePrivate>("Own");
    auto& reg = m_Nodes.Get<INodePrivate>("Reg");
    EXPECT_EQ(m_Private.GetEntryPoint(), "");
    m_Private.SetEntryPoint(meSetValue, &own, false);
    m_Private.SetEntryPoint(meGetMin, &reg, true);
    EXPECT_EQ(m_Private.GetEntryPoint(), "Own.SetValue()");
    m_Private.ResetEntryPoint();
    EXPECT_EQ(m_Private.GetEntryPoint(), "Own.SetValue()");
    m_Private.ResetEntryPoint();
    EXPECT_EQ(m_Private.GetEntryPoint(), "");
    m_Private.SetEntryPoint(meGetMin, &reg, false);
    EXPECT_EQ(m_Private.GetEntryPoint(), "Reg.GetMin()");
    m_Private.ResetEntryPoint();
}

TEST_F(NodeMap, DropsCachesAfterACallThatIgnoredThemIfItWasTheOutermost) {
    auto& reg = m_Nodes.Get<IInteger>("Reg");
    auto& node = m_Nodes.Get<INodePrivate>("Reg");
    for (const bool isOuterIgnoring : {false, true}) {
        reg.GetValue();
        m_Private.SetEntryPoint(meGetValue, &node, isOuterIgnoring);
        m_Private.SetEntryPoint(meGetValue, &node, !isOuterIgnoring);
        m_Private.ResetEntryPoint();
        EXPECT_TRUE(reg.IsValueCacheValid());
        m_Private.ResetEntryPoint();
        EXPECT_EQ(reg.IsValueCacheValid(), !isOuterIgnoring);
    }
}

namespace {

class EntryMethod : public testing::TestWithParam<std::pair<EMethod, const char*>> {};

}  // namespace

TEST_P(EntryMethod, HasAName) {
    NodesByHand nodes;
    CInteger& node = nodes.AddValue("Node");
    nodes.Complete();
    nodes.Map().SetEntryPoint(GetParam().first, &node, false);
    EXPECT_EQ(nodes.Map().GetEntryPoint(), GetParam().second);
    nodes.Map().ResetEntryPoint();
}

INSTANTIATE_TEST_SUITE_P(
    Of, EntryMethod,
    testing::Values(
        std::pair{meGetAccessMode, "Node.GetAccessMode()"},
        std::pair{meToString, "Node.ToString()"}, std::pair{meFromString, "Node.FromString()"},
        std::pair{meGetValue, "Node.GetValue()"}, std::pair{meSetValue, "Node.SetValue()"},
        std::pair{meGetMin, "Node.GetMin()"}, std::pair{meGetMax, "Node.GetMax()"},
        std::pair{meGetInc, "Node.GetInc()"}, std::pair{meExecute, "Node.Execute()"},
        std::pair{meIsDone, "Node.IsDone()"}, std::pair{meSetIntValue, "Node.SetIntValue()"},
        std::pair{meGetIntValue, "Node.GetIntValue()"}, std::pair{meSet, "Node.Set()"},
        std::pair{meGet, "Node.Get()"}, std::pair{meGetIncMode, "Node._UndefinedMethod()"},
        std::pair{meGetListOfValidValues, "Node._UndefinedMethod()"}));

TEST_F(NodeMap, TellsOfItsDevice) {
    auto& info = dynamic_cast<IDeviceInfo&>(m_Map);
    EXPECT_EQ(info.GetModelName(), "Model");
    EXPECT_EQ(info.GetVendorName(), "Vendor");
    EXPECT_EQ(info.GetToolTip(), "A camera");
    EXPECT_EQ(info.GetStandardNameSpace(), "GEV");
    EXPECT_EQ(info.GetProductGuid(), "11111111-2222-3333-4444-555555555555");
    EXPECT_EQ(info.GetProductVersionGuid(), "66666666-7777-8888-9999-AAAAAAAAAAAA");
    EXPECT_EQ(m_Map.GetDeviceName(), "Device");
}

TEST_F(NodeMap, TellsOfVersions) {
    auto& info = dynamic_cast<IDeviceInfo&>(m_Map);
    Version_t version;
    info.GetSchemaVersion(version);
    EXPECT_EQ(version.Major * 100 + version.Minor * 10 + version.SubMinor, 117);
    info.GetDeviceVersion(version);
    EXPECT_EQ(version.Major * 100 + version.Minor * 10 + version.SubMinor, 456);
    uint16_t build = 9;
    info.GetGenApiVersion(version, build);
    EXPECT_EQ(version.Major * 100 + version.Minor * 10 + version.SubMinor, 302);
    EXPECT_EQ(build, 0);
}

TEST_F(NodeMap, GivesItsPropertiesBack) {
    CNodeDataMap data;
    CNodeData::PropertyVector_t properties;
    EXPECT_TRUE(m_Private.GetProperty(data, CPropertyID::ModelName_ID, properties));
    EXPECT_TRUE(m_Private.GetProperty(data, CPropertyID::SchemaSubMinorVersion_ID, properties));
    EXPECT_TRUE(m_Private.GetProperty(data, CPropertyID::StandardNameSpace_ID, properties));
    EXPECT_FALSE(m_Private.GetProperty(data, CPropertyID::Value_ID, properties));
    ASSERT_EQ(properties.size(), 3U);
    EXPECT_EQ(properties[0], CProperty(&data, CPropertyID::ModelName_ID, "Model"));
    EXPECT_EQ(properties[1], CProperty(&data, CPropertyID::SchemaSubMinorVersion_ID, 7));
    EXPECT_EQ(properties[2], CProperty(&data, CPropertyID::StandardNameSpace_ID,
                                       CProperty::EStandardNameSpace_ID, GEV));
}

TEST_F(NodeMap, KeepsAPointerOfTheClient) {
    int data = 0;
    auto& userData = dynamic_cast<IUserData&>(m_Map);
    EXPECT_EQ(userData.SetUserData(&data), nullptr);
    EXPECT_EQ(userData.GetUserData(), &data);
    EXPECT_EQ(userData.SetUserData(nullptr), &data);
}

namespace {

/// A formula that a test breaks.
class BreakableFormula : public CInteger, public IFormulaNode {
public:
    void CheckExpressions() override {
        ++checks;
        if (isBroken) {
            LOGICAL_ERROR_EXCEPTION_NODE("It does not parse");
        }
    }
    bool isBroken = false;
    int checks = 0;
};

}  // namespace

TEST(NodeMapFormulas, AreAllCheckedWhateverFails) {
    NodesByHand nodes;
    auto& first = nodes.Add<BreakableFormula>("First");
    auto& fine = nodes.Add<BreakableFormula>("Fine");
    auto& second = nodes.Add<BreakableFormula>("Second");
    nodes.AddValue("Other");
    nodes.Complete();
    first.isBroken = second.isBroken = true;
    gcstring_vector errors;
    EXPECT_FALSE(nodes.Map().ParseSwissKnifes(&errors));
    ASSERT_EQ(errors.size(), 2U);
    EXPECT_THAT(std::string(errors[0]),
                testing::StartsWith("Error while parsing equation for node 'First': It does not "
                                    "parse : LogicalErrorException thrown in node 'First' (file "));
    EXPECT_THAT(std::string(errors[1]),
                testing::StartsWith("Error while parsing equation for node 'Second': "));
    EXPECT_FALSE(nodes.Map().ParseSwissKnifes(nullptr));
    first.isBroken = second.isBroken = false;
    EXPECT_TRUE(nodes.Map().ParseSwissKnifes(&errors));
    EXPECT_EQ(fine.checks, 3);
}

TEST(NodeMapFormulas, OfALoadedMapParse) {
    XmlNodeMap nodes("<IntSwissKnife Name=\"Node\"><Formula>1 + 2</Formula></IntSwissKnife>");
    EXPECT_TRUE(nodes->ParseSwissKnifes());
}

TEST(NodeMapFormulas, AreFineWhereThereAreNone) {
    XmlNodeMap nodes(IntegerXml("Node"));
    gcstring_vector errors;
    EXPECT_TRUE(nodes->ParseSwissKnifes(&errors));
    EXPECT_TRUE(errors.empty());
}

TEST(NodeMapDestroy, EndsNodesAndTheirCallbacks) {
    struct Callback : CNodeCallback {
        Callback(INode* node, bool& isGone) : CNodeCallback(node), m_IsGone(isGone) {}
        void operator()(ECallbackType /*type*/) const override {}
        void Destroy() override {
            m_IsGone = true;
            delete this;
        }
        bool& m_IsGone;
    };
    bool isGone = false;
    CNodeMapFactory factory(XmlNodeMap::Describe(IntegerXml("Node")).c_str());
    INodeMap* const map = factory.CreateNodeMap();
    INode* const node = map->GetNode("Node");
    node->RegisterCallback(new Callback(node, isGone));
    dynamic_cast<IDestroy&>(*map).Destroy();
    EXPECT_TRUE(isGone);
}

TEST(NodeMapSlots, StayEmptyWhereMarkedSo) {
    CNodeMap map("Device");
    map.SetNumNodes(2);
    map.RegisterNode(nullptr, CNodeData::RegisterDescription_ID, NodeID_t(0));
    auto node = std::make_unique<CInteger>();
    map.RegisterNode(node.release(), CNodeData::Integer_ID, NodeID_t(1));
    map.FinalConstruct();
    EXPECT_EQ(map.GetNodeByID(NodeID_t(0)), nullptr);
    EXPECT_EQ(map.GetNumNodes(), 1U);
}

namespace {

using Misuse = void (*)(CNodeMap& map);
struct MisuseCase {
    const char* name;
    const char* text;
    Misuse misuse;
};
class NodeMapMisuse : public testing::TestWithParam<MisuseCase> {};

}  // namespace

TEST_P(NodeMapMisuse, IsABug) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    CNodeMap map("Device");
    map.SetNumNodes(1);
    EXPECT_DEATH(GetParam().misuse(map), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Of, NodeMapMisuse,
    testing::Values(
        MisuseCase{"IdentifierBeyondTheEnd",
                   "\\(size_t\\)NodeID.ToIndex\\(\\) < m_Node2NodeID.size\\(\\)",
                   [](CNodeMap& map) { map.GetNodeByID(NodeID_t(1)); }},
        MisuseCase{"EntryWithoutAMethod", "EntryMethod != meUndefined",
                   [](CNodeMap& map) {
                       CInteger node;
                       map.SetEntryPoint(meUndefined, &node, false);
                   }},
        MisuseCase{"EntryWithoutANode", "pEntryNode",
                   [](CNodeMap& map) { map.SetEntryPoint(meGetValue, nullptr, false); }},
        MisuseCase{"PropertyOfAnother", "!\"CNodeMap::SetProperty: Unhandled property ID detected!",
                   [](CNodeMap& map) {
                       CNodeDataMap data;
                       map.SetProperty(CProperty(&data, CPropertyID::Value_ID, 1));
                   }},
        MisuseCase{"NodeWithoutAType", "_NotImpl_ID",
                   [](CNodeMap& map) {
                       CInteger node;
                       map.RegisterNode(&node, CNodeData::_NotImpl_ID, NodeID_t(0));
                   }},
        MisuseCase{
            "NoNode", "node != nullptr",
            [](CNodeMap& map) { map.RegisterNode(nullptr, CNodeData::Integer_ID, NodeID_t(0)); }},
        MisuseCase{"TwoNodesOfOneName", "ret.second == true",
                   [](CNodeMap& /*map*/) {
                       NodesByHand nodes;
                       CInteger& one = nodes.AddValue("One");
                       CInteger& other = nodes.AddValue("Other");
                       nodes.Set(one, CPropertyID::Name_ID, std::string_view("Same"));
                       nodes.Set(other, CPropertyID::Name_ID, std::string_view("Same"));
                       nodes.Complete();
                   }},
        MisuseCase{"WriteEndedTwice", "m_value > 0",
                   [](CNodeMap& map) { map.GetBathometer().Decrement(); }},
        MisuseCase{"NodeWithoutAMap", "m_pNodeMap != NULL",
                   [](CNodeMap& /*map*/) { CInteger().GetAccessMode(); }}),
    [](const testing::TestParamInfo<MisuseCase>& example) { return example.param.name; });

}  // namespace EngineTest
