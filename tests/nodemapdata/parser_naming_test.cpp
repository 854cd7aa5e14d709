// How nodes inside others get their names, and the entries of enumerations.

#include "parser_fixture.h"

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
