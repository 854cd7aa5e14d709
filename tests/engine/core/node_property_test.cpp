// What a node tells of itself, and where it takes that from.

#include <sys/utsname.h>

#include <cstdlib>
#include <filesystem>

#include "NodeGraph.h"

namespace EngineTest {

TEST(NodeName, IsQualifiedByItsSpaceOnDemand) {
    XmlNodeMap nodes(
        "<Integer Name=\"Own\"><Value>1</Value></Integer>"
        "<Integer Name=\"Common\" NameSpace=\"Standard\"><Value>1</Value></Integer>");
    EXPECT_EQ(nodes.Get("Own").GetName(), "Own");
    EXPECT_EQ(nodes.Get("Own").GetName(true), "Cust::Own");
    EXPECT_EQ(nodes.Get("Own").GetNameSpace(), Custom);
    EXPECT_EQ(nodes.Get("Common").GetName(true), "Std::Common");
    EXPECT_EQ(nodes.Get("Common").GetNameSpace(), Standard);
}

TEST(NodeTexts, ComeFromTheDescription) {
    XmlNodeMap nodes(IntegerXml("Node", Element("ToolTip", "A tip") +
                                            Element("Description", "At length") +
                                            Element("DisplayName", "The Node")));
    INode& node = nodes.Get("Node");
    EXPECT_EQ(node.GetToolTip(), "A tip");
    EXPECT_EQ(node.GetDescription(), "At length");
    EXPECT_EQ(node.GetDisplayName(), "The Node");
    EXPECT_EQ(node.GetDeviceName(), "Device");
    EXPECT_EQ(node.GetNodeMap(), &nodes.Map());
}

TEST(NodeDefaults, HoldWhereTheDescriptionIsSilent) {
    XmlNodeMap nodes("<Node Name=\"Node\"/>");
    INode& node = nodes.Get("Node");
    EXPECT_EQ(node.GetDisplayName(), "Node");
    EXPECT_EQ(node.GetToolTip(), "");
    EXPECT_EQ(node.GetDescription(), "");
    EXPECT_EQ(node.GetDocuURL(), "");
    EXPECT_EQ(node.GetEventID(), "");
    EXPECT_EQ(node.GetVisibility(), Beginner);
    EXPECT_EQ(node.GetCachingMode(), WriteThrough);
    EXPECT_EQ(node.GetPollingTime(), -1);
    EXPECT_EQ(node.GetAccessMode(), RW);
    EXPECT_EQ(node.GetAlias(), nullptr);
    EXPECT_EQ(node.GetCastAlias(), nullptr);
    EXPECT_EQ(node.GetPrincipalInterfaceType(), intfIBase);
    EXPECT_FALSE(node.IsStreamable());
    EXPECT_FALSE(node.IsDeprecated());
    EXPECT_FALSE(node.IsFeature());
    EXPECT_FALSE(nodes.Get<ISelector>("Node").IsSelector());
}

TEST(NodeFlags, ComeFromTheDescription) {
    XmlNodeMap nodes(
        "<Category Name=\"Root\"><pFeature>Node</pFeature></Category>" + IntegerXml("Other") +
        IntegerXml("Node", Element("IsDeprecated", "Yes") + Element("EventID", "9001") +
                               Element("pAlias", "Other") + Element("pCastAlias", "Node") +
                               Element("Streamable", "Yes")));
    INode& node = nodes.Get("Node");
    EXPECT_TRUE(node.IsDeprecated());
    EXPECT_TRUE(node.IsStreamable());
    EXPECT_TRUE(node.IsFeature());
    EXPECT_EQ(node.GetEventID(), "9001");
    EXPECT_EQ(node.GetAlias(), &nodes.Get("Other"));
    EXPECT_EQ(node.GetCastAlias(), &node);
    EXPECT_FALSE(nodes.Get("Other").IsFeature());
}

namespace {

struct VisibilityCase {
    std::string own;
    EVisibility imposed;
    EVisibility expected;
};
class ImposedVisibility : public testing::TestWithParam<VisibilityCase> {};

}  // namespace

TEST_P(ImposedVisibility, CanOnlyHide) {
    XmlNodeMap nodes(IntegerXml("Node", Element("Visibility", GetParam().own)));
    nodes.Get("Node").ImposeVisibility(GetParam().imposed);
    EXPECT_EQ(nodes.Get("Node").GetVisibility(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Of, ImposedVisibility,
                         testing::Values(VisibilityCase{"Beginner", Beginner, Beginner},
                                         VisibilityCase{"Beginner", Guru, Guru},
                                         VisibilityCase{"Guru", Expert, Guru},
                                         VisibilityCase{"Expert", Invisible, Invisible}));

TEST(ImposedVisibility, FiresCallbacks) {
    XmlNodeMap nodes(IntegerXml("Node"));
    NotingCallback::Calls calls;
    NotingCallback::On(nodes.Get("Node"), calls);
    nodes.Get("Node").ImposeVisibility(Guru);
    EXPECT_THAT(calls, testing::ElementsAre("Node inside", "Node outside"));
}

TEST(UserData, GivesTheOldPointerBack) {
    XmlNodeMap nodes(IntegerXml("Node"));
    int data = 0;
    auto& node = nodes.Get<IUserData>("Node");
    EXPECT_EQ(node.GetUserData(), nullptr);
    EXPECT_EQ(node.SetUserData(&data), nullptr);
    EXPECT_EQ(node.GetUserData(), &data);
    EXPECT_EQ(node.SetUserData(nullptr), &data);
}

namespace {

struct InterfaceCase {
    std::string element;
    std::string content;
    EInterfaceType expected;
};
class PrincipalInterface : public testing::TestWithParam<InterfaceCase> {};

constexpr const char* kRegister =
    "<Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>";

}  // namespace

TEST_P(PrincipalInterface, SpeaksForTheNode) {
    const InterfaceCase& c = GetParam();
    XmlNodeMap nodes("<" + c.element + " Name=\"Node\">" + c.content + "</" + c.element + ">");
    EXPECT_EQ(nodes.Get("Node").GetPrincipalInterfaceType(), c.expected);
}

INSTANTIATE_TEST_SUITE_P(Of, PrincipalInterface,
                         testing::Values(InterfaceCase{"Node", "", intfIBase},
                                         InterfaceCase{"Port", "", intfIPort},
                                         InterfaceCase{"Integer", "<Value>1</Value>", intfIInteger},
                                         InterfaceCase{"Float", "<Value>1</Value>", intfIFloat},
                                         InterfaceCase{"String", "<Value>x</Value>", intfIString},
                                         InterfaceCase{"StringReg", kRegister, intfIString},
                                         InterfaceCase{"Register", kRegister, intfIRegister},
                                         InterfaceCase{"IntReg", kRegister, intfIInteger}));

namespace {

std::vector<std::string> Names(const node_vector& nodes) {
    std::vector<std::string> names;
    for (INode* const node : nodes) {
        names.emplace_back(node->GetName());
    }
    return names;
}

struct LinkCase {
    const char* node;
    ELinkType type;
    std::vector<std::string> expected;
};

class Links : public testing::TestWithParam<LinkCase> {
protected:
    XmlNodeMap m_Nodes{RegXml{.name = "Reg", .address = 0}() +
                       RegXml{.name = "CopyReg", .address = 4}() +
                       RegXml{.name = "Switch", .address = 8}() +
                       IntegerXml("Node", Element("pIsAvailable", "Switch"),
                                  Element("pValue", "Reg") + Element("pValueCopy", "CopyReg"))};
};

}  // namespace

TEST_P(Links, AreListedByType) {
    node_vector list;
    m_Nodes.Get(GetParam().node).GetChildren(list, GetParam().type);
    EXPECT_THAT(Names(list), testing::UnorderedElementsAreArray(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Of, Links,
    testing::Values(LinkCase{"Node", ReadingChildren, {"Switch", "Reg", "CopyReg"}},
                    LinkCase{"Node", WritingChildren, {"Reg", "CopyReg"}},
                    LinkCase{"Node", AllChildren, {"Switch", "Reg", "CopyReg"}},
                    LinkCase{"Node", ValueChildren, {"Reg", "CopyReg"}},
                    LinkCase{"Node", TerminalNodes, {"Reg", "CopyReg"}},
                    LinkCase{"Node", ParentNodes, {}}, LinkCase{"Switch", ParentNodes, {"Node"}},
                    LinkCase{"Switch", DependingNodes, {"Node"}},
                    LinkCase{"Reg", TerminalNodes, {"Reg"}}));

TEST_F(Links, ParentsHaveAnOperationOfTheirOwn) {
    node_vector list(1, nullptr);
    m_Nodes.Get("Reg").GetParents(list);
    EXPECT_THAT(Names(list), testing::ElementsAre("Node"));
}

TEST_F(Links, TellATerminalNode) {
    EXPECT_TRUE(m_Nodes.Get<INodePrivate>("Reg").IsTerminalNode());
    EXPECT_FALSE(m_Nodes.Get<INodePrivate>("Node").IsTerminalNode());
}

TEST(ValueChildren, LeaveTheInnerNodesOfConvertersOut) {
    XmlNodeMap nodes(RegXml{.name = "Reg", .address = 0}() +
                     "<Converter Name=\"Node\"><FormulaTo>FROM</FormulaTo>"
                     "<FormulaFrom>TO</FormulaFrom><pValue>Reg</pValue></Converter>");
    node_vector list;
    nodes.Get("Node").GetChildren(list, ValueChildren);
    EXPECT_THAT(Names(list), testing::ElementsAre("Reg"));
}

TEST(ValueChildren, LeaveHiddenNodesOut) {
    NodesByHand nodes;
    CInteger& hidden = nodes.AddValue("_Hidden");
    CInteger& shown = nodes.AddValue("Shown");
    CInteger& node = nodes.Add("Node");
    nodes.Link(node, CPropertyID::pValue_ID, shown);
    nodes.Link(node, CPropertyID::pValueCopy_ID, hidden);
    nodes.Complete();
    node_vector written;
    node.GetChildren(written, WritingChildren);
    EXPECT_THAT(Names(written), testing::ElementsAre("Shown", "_Hidden"));
}

TEST(Selector, KnowsWhatItSelects) {
    XmlNodeMap nodes(IntegerXml("Gain") +
                     IntegerXml("Selector", "", "<Value>0</Value>" + Element("pSelected", "Gain")));
    auto& selector = nodes.Get<ISelector>("Selector");
    auto& gain = nodes.Get<ISelector>("Gain");
    EXPECT_TRUE(selector.IsSelector());
    EXPECT_FALSE(gain.IsSelector());
    value_vector list;
    selector.GetSelectedFeatures(list);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0]->GetNode(), &nodes.Get("Gain"));
    gain.GetSelectingFeatures(list);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0]->GetNode(), &nodes.Get("Selector"));
}

TEST(Link, ToTheRootElementIsRaisedWhenTheNodeIsUsed) {
    XmlNodeMap nodes(IntegerXml("Node", Element("pAlias", "_RegisterDescription")) +
                     IntegerXml("Other"));
    const auto failure = [&](const auto& use) {
        return DescriptionOf<RuntimeException>([&] { use(nodes.Get<IInteger>("Node")); });
    };
    const std::string text = "Node 'Node' : the link 'pAlias' leads to no node";
    EXPECT_EQ(failure([](IInteger& node) { node.GetValue(); }), text);
    EXPECT_EQ(failure([](IInteger& node) { node.SetValue(1); }), text);
    EXPECT_EQ(failure([](IInteger& node) { node.SetValue(1, false); }), text);
    EXPECT_EQ(failure([](IInteger& node) { node.ToString(); }), text);
    EXPECT_EQ(failure([](IInteger& node) { node.FromString("1", false); }), text);
    EXPECT_EQ(failure([](IInteger& node) { node.GetMin(); }), text);
    EXPECT_EQ(failure([](IInteger& node) { node.GetInc(); }), text);
    EXPECT_EQ(failure([](IInteger& node) { node.GetIncMode(); }), text);
    EXPECT_EQ(failure([](IInteger& node) { node.GetListOfValidValues(); }), text);
    EXPECT_EQ(nodes.Get("Node").GetAccessMode(), NA);
    EXPECT_EQ(nodes.Get<IInteger>("Other").GetValue(), 1);
}

TEST(Property, ThatNoNodeKnowsIsABug) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    NodesByHand nodes;
    CInteger& node = nodes.AddValue("Node");
    EXPECT_DEATH(nodes.Set(node, CPropertyID::Key_ID, 1),
                 "false && \"Not all property ids are handled.\"");
    EXPECT_DEATH(nodes.Link(node, CPropertyID::pPort_ID, node),
                 "false && \"Not all property ids are handled.\"");
}

namespace {

struct PropertyCase {
    const char* name;
    const char* value;
};
class HeldProperty : public testing::TestWithParam<PropertyCase> {
protected:
    XmlNodeMap m_Nodes{
        IntegerXml("One") + IntegerXml("Other") +
        "<Node Name=\"Node\" NameSpace=\"Standard\" MergePriority=\"1\" ExposeStatic=\"No\">" +
        Element("ToolTip", "A tip") + Element("DisplayName", "N") + Element("Visibility", "Guru") +
        Element("IsDeprecated", "Yes") + Element("pIsLocked", "One") +
        Element("ImposedAccessMode", "RO") + Element("pInvalidator", "One") +
        Element("pInvalidator", "Other") + "</Node>"};
    INode& m_Node = m_Nodes.Get("Node");
};

}  // namespace

TEST_P(HeldProperty, IsGivenAsText) {
    gcstring value("old");
    gcstring attribute("old");
    EXPECT_TRUE(m_Node.GetProperty(GetParam().name, value, attribute));
    EXPECT_EQ(value, GetParam().value);
    EXPECT_EQ(attribute, "");
}

INSTANTIATE_TEST_SUITE_P(
    Of, HeldProperty,
    testing::Values(PropertyCase{"Name", "Node"}, PropertyCase{"NameSpace", "Standard"},
                    PropertyCase{"ToolTip", "A tip"}, PropertyCase{"DisplayName", "N"},
                    PropertyCase{"Visibility", "Guru"}, PropertyCase{"IsDeprecated", "Yes"},
                    PropertyCase{"pIsLocked", "One"}, PropertyCase{"ImposedAccessMode", "RO"},
                    PropertyCase{"ExposeStatic", "No"},
                    PropertyCase{"pInvalidator", "One\tOther"}));

TEST_F(HeldProperty, IsAmongTheNames) {
    gcstring_vector names(1, "old");
    m_Node.GetPropertyNames(names);
    std::vector<std::string> found;
    for (const gcstring& name : names) {
        found.emplace_back(name);
    }
    EXPECT_THAT(found, testing::IsSupersetOf({"Name", "NameSpace", "ToolTip", "DisplayName",
                                              "Visibility", "pIsLocked", "pInvalidator"}));
    EXPECT_THAT(found, testing::Not(testing::Contains("old")));
    EXPECT_THAT(found, testing::Not(testing::Contains("MergePriority")));
    EXPECT_THAT(found, testing::Not(testing::Contains("Description")));
}

TEST_F(HeldProperty, IsNotWhatTheDescriptionLeftOut) {
    for (const char* const name : {"Description", "pIsAvailable", "MergePriority", "Nonsense"}) {
        gcstring value("old");
        gcstring attribute("old");
        EXPECT_FALSE(m_Node.GetProperty(name, value, attribute)) << name;
        EXPECT_EQ(value, "");
        EXPECT_EQ(attribute, "");
    }
}

TEST_F(HeldProperty, GoesBackIntoNodeData) {
    CNodeDataMap data;
    CNodeData::PropertyVector_t properties;
    auto& node = m_Nodes.Get<INodePrivate>("Node");
    EXPECT_TRUE(node.GetProperty(data, CPropertyID::ToolTip_ID, properties));
    EXPECT_TRUE(node.GetProperty(data, CPropertyID::pInvalidator_ID, properties));
    EXPECT_TRUE(node.GetProperty(data, CPropertyID::Visibility_ID, properties));
    EXPECT_FALSE(node.GetProperty(data, CPropertyID::EventID_ID, properties));
    ASSERT_EQ(properties.size(), 4U);
    EXPECT_EQ(properties[0], CProperty(&data, CPropertyID::ToolTip_ID, "A tip"));
    EXPECT_EQ(properties[1],
              CProperty(&data, CPropertyID::pInvalidator_ID, data.GetNodeID("One", false)));
    EXPECT_EQ(properties[2],
              CProperty(&data, CPropertyID::pInvalidator_ID, data.GetNodeID("Other", false)));
    EXPECT_EQ(properties[3],
              CProperty(&data, CPropertyID::Visibility_ID, CProperty::EVisibility_ID, Guru));
}

namespace {

/// Puts an environment variable back when a test is over.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const char* value) : m_Name(name) {
        if (const char* const old = std::getenv(name)) {
            m_Old = old;
            m_IsSet = true;
        }
        setenv(name, value, 1);
    }
    ~ScopedVariable() {
        if (m_IsSet) {
            setenv(m_Name, m_Old.c_str(), 1);
        } else {
            unsetenv(m_Name);
        }
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const char* m_Name;
    std::string m_Old;
    bool m_IsSet = false;
};

std::string DocuURL(const std::string& text) {
    XmlNodeMap nodes(RegXml{.name = "Width", .address = 0}() +
                     RegXml{.name = "Trigger", .address = 4, .access = "WO"}() +
                     "<String Name=\"Page\"><Value>p$(Width)</Value></String>"
                     "<String Name=\"Endless\"><Value>$(Endless)</Value></String>" +
                     IntegerXml("Node", Element("DocuURL", text)));
    nodes.Port().Put(0, 640);
    return nodes.Get("Node").GetDocuURL().c_str();
}

struct MacroCase {
    std::string text;
    std::string expected;
};
class DocuMacro : public testing::TestWithParam<MacroCase> {};

}  // namespace

TEST_P(DocuMacro, IsReplaced) {
    EXPECT_EQ(DocuURL(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Of, DocuMacro,
    testing::Values(MacroCase{"http://docs/index.html", "http://docs/index.html"},
                    MacroCase{"$(Sys::NodeName)", "Node"},
                    MacroCase{"$(Sys::VendorName)/$(Sys::ModelName)", "Vendor/Model"},
                    MacroCase{"$(Sys::StandardNamespace)", "GEV"},
                    MacroCase{"v$(Sys::GenApiVersion)", "v3.0.2"},
                    MacroCase{"$(Sys::SchemaVersion)", "1.1.7"},
                    MacroCase{"$(Sys::DeviceVersion)", "4.5.6"},
                    MacroCase{"a/$(Width)/b", "a/640/b"}, MacroCase{"$(Trigger)", "Unknown"},
                    MacroCase{"$(Missing)", "Unknown"}, MacroCase{"$(Sys::Missing)", "Unknown"},
                    MacroCase{"$(Device)", "Unknown"}, MacroCase{"$()", "Unknown"},
                    MacroCase{"$(Page)", "p640"}, MacroCase{"a$(Width", "a$(Width"},
                    MacroCase{"a)$(Width)", "a)640"}));

TEST(DocuMacro, OfTheProgramIsItsFileName) {
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").filename();
    EXPECT_EQ(DocuURL("$(Sys::Application)"), program);
}

TEST(DocuMacro, OfTheLanguageIsAVariable) {
    const ScopedVariable language("LANG", "en_GB.UTF-8");
    EXPECT_EQ(DocuURL("$(Sys::Language)"), "en_GB.UTF-8");
}

TEST(DocuMacro, OfTheSystemJoinsAllThatItTells) {
    utsname system{};
    ASSERT_EQ(uname(&system), 0);
    EXPECT_EQ(DocuURL("$(Sys::OperatingSystem)"), std::string(system.sysname) + "_" +
                                                      system.nodename + "_" + system.release + "_" +
                                                      system.version + "_" + system.machine);
}

TEST(DocuMacro, ThatLeadsBackToItselfComesToAnEnd) {
    EXPECT_EQ(DocuURL("$(Endless)"), "$(Endless)");
}

}  // namespace EngineTest
