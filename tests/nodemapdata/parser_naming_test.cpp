// How nodes inside others get their names, and the entries of enumerations.

#include "ParserFixture.h"

namespace NodeDataTest {
namespace {

std::string Entry(const std::string& name, int value = 1) {
    return "<EnumEntry Name=\"" + name + "\"><Value>" + std::to_string(value) +
           "</Value></EnumEntry>";
}

std::string Enumeration(const std::string& entries, const std::string& attributes = "") {
    return "<Enumeration Name=\"E\" " + attributes + ">" + entries +
           "<pValue>R</pValue></Enumeration>";
}

TEST_F(Parser, NamesEntriesByTheirEnumeration) {
    Parse(Enumeration(Entry("Off", 0) + Entry("On", 1)));
    EXPECT_THAT(NodeNames(), ElementsAre("_RegisterDescription", "E", "EnumEntry_E_Off",
                                         "EnumEntry_E_On", "?R"));
    EXPECT_THAT(PropertiesOf("E"),
                ElementsAre("<pEnumEntry>EnumEntry_E_Off</pEnumEntry>",
                            "<pEnumEntry>EnumEntry_E_On</pEnumEntry>", "<pValue>R</pValue>"));
    EXPECT_THAT(PropertiesOf("EnumEntry_E_Off"),
                ElementsAre("<Symbolic>Off</Symbolic>", "<Value>0</Value>"));
}

TEST_F(Parser, StoresAnEntryBeforeItsEnumeration) {
    Parse(Enumeration(Entry("A")));
    EXPECT_EQ(m_Map.GetLastNodeData()->GetName(), "_RegisterDescription");
    EXPECT_EQ(NodeOf(m_Map, "EnumEntry_E_A").GetNodeType(), CNodeData::EnumEntry_ID);
}

TEST_F(Parser, GivesEntriesTheMergePriorityOfTheirEnumeration) {
    Parse(Enumeration(Entry("A") + Entry("B"), "MergePriority=\"1\""));
    for (const char* const name : {"EnumEntry_E_A", "EnumEntry_E_B"}) {
        const auto& properties = NodeOf(m_Map, name).GetProperties();
        ASSERT_EQ(properties.size(), 4U);
        EXPECT_EQ(properties[0].GetPropertyID(), ID::Symbolic_ID);
        EXPECT_EQ(properties[1].ToString(tssText), "MergePriority = 1");
        EXPECT_EQ(properties[2].GetPropertyID(), ID::Name_ID);
    }
}

TEST_F(Parser, GivesEntriesNoMergePriorityOfZero) {
    Parse(Enumeration(Entry("A"), "MergePriority=\"0\""));
    EXPECT_EQ(CountOf(NodeOf(m_Map, "EnumEntry_E_A"), ID::MergePriority_ID), 0U);
}

/// A node with another one inside, of which it decides.
struct NestedNode {
    const char* name;
    const char* xml;
    const char* inner;
};
void PrintTo(const NestedNode& node, std::ostream* out) {
    *out << node.name;
}

class ParserNestedNode : public Parser, public testing::WithParamInterface<NestedNode> {};

TEST_P(ParserNestedNode, InheritsTheMergePriority) {
    for (const char* const priority : {"-1", "1"}) {
        m_Map.Clear();
        std::string body = GetParam().xml;
        body.insert(body.find(" Name="), std::string(" MergePriority=\"") + priority + "\"");
        Parse(body);
        EXPECT_EQ(NodeOf(m_Map, GetParam().inner).GetMergePriority(), std::stoi(priority));
        EXPECT_EQ(CountOf(NodeOf(m_Map, GetParam().inner), ID::MergePriority_ID), 1U);
    }
}

TEST_P(ParserNestedNode, HasNoMergePriorityWithoutOneAroundIt) {
    Parse(GetParam().xml);
    EXPECT_EQ(CountOf(NodeOf(m_Map, GetParam().inner), ID::MergePriority_ID), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ParserNestedNode,
    testing::Values(
        NestedNode{"AddressOfARegister",
                   "<Register Name=\"R\"><IntSwissKnife Name=\"Addr\"><Formula>1</Formula>"
                   "</IntSwissKnife><Length>4</Length><AccessMode>RW</AccessMode>"
                   "<pPort>Device</pPort></Register>",
                   "_R_Addr"},
        NestedNode{"AddressOfAStringRegister",
                   "<StringReg Name=\"R\"><IntSwissKnife Name=\"Addr\"><Formula>1</Formula>"
                   "</IntSwissKnife><Length>4</Length><AccessMode>RW</AccessMode>"
                   "<pPort>Device</pPort></StringReg>",
                   "Addr"},
        NestedNode{"ConstantOfANestedFormula",
                   "<Register Name=\"R\"><IntSwissKnife Name=\"Addr\"><Constant Name=\"C\">1"
                   "</Constant><Formula>C</Formula></IntSwissKnife><Length>4</Length>"
                   "<AccessMode>RW</AccessMode><pPort>Device</pPort></Register>",
                   "__R_Addr_C"},
        NestedNode{"Constant",
                   "<SwissKnife Name=\"K\"><Constant Name=\"C\">1</Constant>"
                   "<Formula>C</Formula></SwissKnife>",
                   "_K_C"},
        NestedNode{"Expression",
                   "<SwissKnife Name=\"K\"><Expression Name=\"E\">1</Expression>"
                   "<Formula>E</Formula></SwissKnife>",
                   "_K_E"},
        NestedNode{"ConstantOfAConverter",
                   "<Converter Name=\"C\"><Constant Name=\"X\">1</Constant><FormulaTo>X"
                   "</FormulaTo><FormulaFrom>X</FormulaFrom><pValue>V</pValue></Converter>",
                   "_C_X"},
        NestedNode{"FormulaOfAConverter",
                   "<Converter Name=\"C\"><FormulaTo>1</FormulaTo><FormulaFrom>1</FormulaFrom>"
                   "<pValue>V</pValue></Converter>",
                   "C_ConvertTo"},
        NestedNode{"KeyOfARom",
                   "<ConfRom Name=\"Rom\"><Unit>1</Unit><Address>0</Address><Length>4</Length>"
                   "<pPort>Device</pPort><IntKey Name=\"Key\">1</IntKey></ConfRom>",
                   "Key"}));

TEST_F(Parser, LeavesANestedNodeTheMergePriorityOfItsOwn) {
    Parse(
        "<Register Name=\"R\" MergePriority=\"1\"><IntSwissKnife Name=\"Addr\" "
        "MergePriority=\"-1\"><Formula>1</Formula></IntSwissKnife><Length>4</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort></Register>");
    EXPECT_EQ(NodeOf(m_Map, "_R_Addr").GetMergePriority(), -1);
}

TEST_F(Parser, ReplacesTheSymbolicTextOfAnEntry) {
    Parse(
        Enumeration("<EnumEntry Name=\"A\" NameSpace=\"Standard\"><Value>1</Value>"
                    "<NumericValue>2.5</NumericValue><Symbolic>Alpha</Symbolic>"
                    "<IsSelfClearing>Yes</IsSelfClearing></EnumEntry>"));
    EXPECT_THAT(PropertiesOf("EnumEntry_E_A"),
                ElementsAre("<Symbolic>Alpha</Symbolic>", "<NameSpace>Standard</NameSpace>",
                            "<Value>1</Value>", "<NumericValue>2.5</NumericValue>",
                            "<IsSelfClearing>Yes</IsSelfClearing>"));
}

TEST_F(Parser, KeepsOneNodeForARepeatedEntryAndLinksItEachTime) {
    Parse(Enumeration(Entry("A") + Entry("A")));
    EXPECT_THAT(LinksOf(m_Map, "E", ID::pEnumEntry_ID),
                ElementsAre("EnumEntry_E_A", "EnumEntry_E_A"));
    EXPECT_THAT(NodeNames(), ElementsAre("_RegisterDescription", "E", "EnumEntry_E_A", "?R"));
}

TEST_F(Parser, LinksARepeatedEntryThatOthersPartFromTheFirst) {
    Parse(Enumeration(Entry("A") + Entry("B") + Entry("A")));
    EXPECT_THAT(LinksOf(m_Map, "E", ID::pEnumEntry_ID),
                ElementsAre("EnumEntry_E_A", "EnumEntry_E_B", "EnumEntry_E_A"));
}

TEST_F(Parser, RefusesAnEntryOfTheSameNameWithOtherContent) {
    EXPECT_EQ(FailureOfBody(Enumeration(Entry("A", 1) + "\n" + Entry("A", 2))),
              BuilderErrorAt(3, 36, "Found a duplicate node'EnumEntry_E_A'."));
}

TEST_F(Parser, RefusesAStandaloneEntryInNewDocuments) {
    EXPECT_EQ(FailureOfBody("\n  " + Entry("A")),
              BuilderErrorAt(3, 2,
                             "Standalone <EnumEntry> node detected which is ignored in schema "
                             "v1.0 but forbidden otherwise"));
}

TEST_F(Parser, TakesAStandaloneEntryOfTheOlderSchemaUnderItsPlainName) {
    Parse("<EnumEntry Name=\"A\"><Value>1</Value><Symbolic>S</Symbolic></EnumEntry>", 0);
    EXPECT_THAT(NodeNames(), ElementsAre("_RegisterDescription", "A"));
    // There is no symbolic text that the element could replace.
    EXPECT_THAT(PropertiesOf("A"), ElementsAre("<Value>1</Value>"));
}

TEST_F(Parser, JudgesAStandaloneEntryByTheVersionThatTheRootTells) {
    const std::string newer = DescribeWith(RootAttributes(0), Entry("A"), 1);
    EXPECT_EQ(FailureOfText(newer), "");
    m_Map.Clear();
    EXPECT_THAT(FailureOfText(DescribeWith(RootAttributes(1), Entry("A"), 0)),
                testing::HasSubstr("Standalone <EnumEntry> node detected"));
}

/// A register type and whether it names the nodes inside it.
struct Register {
    const char* element;
    const char* end;
    bool isContext;
};

class ParserRegister : public Parser, public testing::WithParamInterface<Register> {};

TEST_P(ParserRegister, NamesAFormulaInsideIt) {
    const Register& kind = GetParam();
    Parse(std::string("<") + kind.element +
          " Name=\"R\"><IntSwissKnife Name=\"Addr\"><Constant Name=\"C\">2</Constant>"
          "<Formula>C</Formula></IntSwissKnife>" +
          kRegisterRest + kind.end + "</" + kind.element + ">");
    const char* const name = kind.isContext ? "_R_Addr" : "Addr";
    EXPECT_THAT(LinksOf(m_Map, "R", ID::pAddress_ID), ElementsAre(name));
    EXPECT_EQ(NodeOf(m_Map, name).GetNodeType(), CNodeData::IntSwissKnife_ID);
    EXPECT_TRUE(IsDefined(("_" + std::string(name) + "_C").c_str()));
    EXPECT_EQ(m_Map.GetContextNode(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    All, ParserRegister,
    testing::Values(Register{"Register", "", true}, Register{"IntReg", "", true},
                    Register{"MaskedIntReg", "<Bit>1</Bit><Endianess>BigEndian</Endianess>", true},
                    Register{"FloatReg", "", true}, Register{"StringReg", "", false},
                    Register{"AdvFeatureLock", "", false}),
    [](const testing::TestParamInfo<Register>& kind) { return kind.param.element; });

TEST_F(Parser, LinksAFormulaAmongOtherAddressesInOrder) {
    Parse(
        "<IntReg Name=\"R\"><Address>1</Address><IntSwissKnife Name=\"K\"><Formula>1</Formula>"
        "</IntSwissKnife><pAddress>A</pAddress>" +
        std::string(kRegisterRest) + "</IntReg>");
    EXPECT_THAT(PropertiesOf("R"), testing::IsSupersetOf({"<pAddress>_R_K</pAddress>"}));
    EXPECT_EQ(PropertiesOf("R")[1], "<pAddress>_R_K</pAddress>");
}

TEST_F(Parser, KeepsThePlainNameOfAFormulaInsideASmartFeature) {
    Parse(
        "<SmartFeature Name=\"S\"><FeatureID>f</FeatureID><IntSwissKnife Name=\"K\">"
        "<Formula>1</Formula></IntSwissKnife><pPort>P</pPort></SmartFeature>");
    EXPECT_THAT(LinksOf(m_Map, "S", ID::pAddress_ID), ElementsAre("K"));
}

TEST_F(Parser, LinksAFormulaAtTheRootToNothing) {
    Parse("<IntSwissKnife Name=\"K\"><Formula>1</Formula></IntSwissKnife>");
    EXPECT_EQ(CountOf(NodeOf(m_Map, "_RegisterDescription"), ID::pAddress_ID), 0U);
}

}  // namespace
}  // namespace NodeDataTest
