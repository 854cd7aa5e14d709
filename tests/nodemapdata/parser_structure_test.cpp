// Elements that imply nodes or become several.

#include "ParserFixture.h"

namespace NodeDataTest {
namespace {

// Structures

std::string Structure(const std::string& entries, const std::string& before = "") {
    return "<StructReg Comment=\"c\">" + before +
           "<Address>16</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>P</pPort>"
           "<Endianess>BigEndian</Endianess>" +
           entries + "</StructReg>";
}

TEST_F(Parser, TurnsAStructureIntoItsEntries) {
    Parse(
        Structure("<StructEntry Name=\"A\"><Bit>1</Bit></StructEntry>"
                  "<StructEntry Name=\"B\"><LSB>2</LSB><MSB>3</MSB></StructEntry>"));
    EXPECT_THAT(NodeNames(), ElementsAre("_RegisterDescription", "?P", "A", "B"));
    const auto fromTemplate = [](const char* lsb, const char* msb) {
        return ElementsAre(lsb, msb, "<Comment>c</Comment>", "<Address>16</Address>",
                           "<Length>4</Length>", "<AccessMode>RW</AccessMode>", "<pPort>P</pPort>",
                           "<Endianess>BigEndian</Endianess>");
    };
    EXPECT_THAT(PropertiesOf("A"), fromTemplate("<LSB>1</LSB>", "<MSB>1</MSB>"));
    EXPECT_THAT(PropertiesOf("B"), fromTemplate("<LSB>2</LSB>", "<MSB>3</MSB>"));
    EXPECT_EQ(NodeOf(m_Map, "A").GetNodeType(), CNodeData::MaskedIntReg_ID);
    EXPECT_EQ(m_Map.GetContextNode(), nullptr);
}

TEST_F(Parser, LetsAnEntrysOwnValueWin) {
    Parse(
        Structure("<StructEntry Name=\"A\"><ToolTip>own</ToolTip><pInvalidator>I</pInvalidator>"
                  "<AccessMode>RO</AccessMode><Bit>1</Bit></StructEntry>",
                  "<ToolTip>all</ToolTip><Visibility>Guru</Visibility>"));
    EXPECT_THAT(PropertiesOf("A"),
                ElementsAre("<ToolTip>own</ToolTip>", "<pInvalidator>I</pInvalidator>",
                            "<AccessMode>RO</AccessMode>", "<LSB>1</LSB>", "<MSB>1</MSB>",
                            "<Comment>c</Comment>", "<Visibility>Guru</Visibility>",
                            "<Address>16</Address>", "<Length>4</Length>", "<pPort>P</pPort>",
                            "<Endianess>BigEndian</Endianess>"));
}

TEST_F(Parser, CopiesAllAddressesOfAStructureWithTheirOffsets) {
    Parse(
        "<StructReg><Address>1</Address><Address>2</Address><pIndex Offset=\"8\">I</pIndex>"
        "<IntSwissKnife Name=\"K\"><Formula>1</Formula></IntSwissKnife>" +
        std::string(kRegisterRest) + "<StructEntry Name=\"A\"><Bit>0</Bit></StructEntry>" +
        "</StructReg>");
    EXPECT_THAT(
        PropertiesOf("A"),
        testing::IsSupersetOf({"<Address>1</Address>", "<Address>2</Address>",
                               "<pIndex Offset=\"8\">I</pIndex>", "<pAddress>K</pAddress>"}));
}

TEST_F(Parser, LeavesNothingOfAStructureWithoutEntries) {
    Parse(Structure(""));
    EXPECT_THAT(NodeNames(), ElementsAre("_RegisterDescription", "?P"));
}

TEST_F(Parser, NeedsNoCommentOfAStructure) {
    Parse("<StructReg><Address>0</Address>" + std::string(kRegisterRest) +
          "<StructEntry Name=\"A\"><Bit>0</Bit></StructEntry></StructReg>");
    EXPECT_EQ(CountOf(NodeOf(m_Map, "A"), ID::Comment_ID), 0U);
}

// Formulas

TEST_F(Parser, MakesANodeOfAConstant) {
    Parse(
        "<SwissKnife Name=\"K\"><Constant Name=\"C\"> 2.5 </Constant><Formula>C</Formula>"
        "</SwissKnife>");
    EXPECT_THAT(PropertiesOf("K"),
                ElementsAre("<pVariable Name=\"C\">_K_C</pVariable>", "<Formula>C</Formula>"));
    EXPECT_EQ(NodeOf(m_Map, "_K_C").GetNodeType(), CNodeData::Float_ID);
    EXPECT_THAT(PropertiesOf("_K_C"), ElementsAre("<Value>2.5</Value>"));
}

TEST_F(Parser, MakesAnIntegerNodeOfTheConstantOfAnIntegerFormula) {
    Parse(
        "<IntSwissKnife Name=\"K\"><Constant Name=\"C\">0x10</Constant><Formula>C</Formula>"
        "</IntSwissKnife>");
    EXPECT_EQ(NodeOf(m_Map, "_K_C").GetNodeType(), CNodeData::Integer_ID);
    EXPECT_THAT(PropertiesOf("_K_C"), ElementsAre("<Value>16</Value>"));
}

TEST_F(Parser, MakesAFormulaOfAnExpression) {
    Parse(
        "<SwissKnife Name=\"K\"><Expression Name=\"E\">1+2</Expression><Formula>E</Formula>"
        "</SwissKnife>");
    EXPECT_EQ(NodeOf(m_Map, "_K_E").GetNodeType(), CNodeData::SwissKnife_ID);
    EXPECT_THAT(PropertiesOf("_K_E"), ElementsAre("<Formula>1+2</Formula>"));
    EXPECT_THAT(PropertiesOf("K"),
                ElementsAre("<pVariable Name=\"E\">_K_E</pVariable>", "<Formula>E</Formula>"));
}

TEST_F(Parser, LetsAnExpressionUseWhatStandsBeforeIt) {
    Parse(
        "<IntSwissKnife Name=\"K\"><pVariable Name=\"V\">A</pVariable>"
        "<Constant Name=\"C\">1</Constant><Expression Name=\"E\">V+C</Expression>"
        "<Expression Name=\"F\">E*2</Expression><Formula>F</Formula></IntSwissKnife>");
    EXPECT_EQ(NodeOf(m_Map, "_K_F").GetNodeType(), CNodeData::IntSwissKnife_ID);
    EXPECT_THAT(
        PropertiesOf("_K_F"),
        ElementsAre("<pVariable Name=\"V\">A</pVariable>", "<pVariable Name=\"C\">_K_C</pVariable>",
                    "<pVariable Name=\"E\">_K_E</pVariable>", "<Formula>E*2</Formula>"));
}

TEST_F(Parser, RefusesTwoConstantsOfOneName) {
    EXPECT_EQ(FailureOfBody("<SwissKnife Name=\"K\">\n<Constant Name=\"C\">1</Constant>\n"
                            "<Constant Name=\"C\">1</Constant>"),
              BuilderErrorAt(4, 20, "Found a duplicate node'_K_C'."));
}

// Converters

const std::string kConverterContent =
    "<Streamable>No</Streamable><pVariable Name=\"V\">A</pVariable>"
    "<Constant Name=\"C\">2</Constant><Expression Name=\"E\">C+1</Expression>"
    "<FormulaTo>FROM*V</FormulaTo><FormulaFrom>TO/V</FormulaFrom><pValue>R</pValue>"
    "<Unit>u</Unit><Slope>Increasing</Slope>";

/// A converter type with the types of its inner nodes.
struct ConverterKind {
    const char* element;
    CNodeData::ENodeType_t type;
    CNodeData::ENodeType_t formula;
    CNodeData::ENodeType_t constant;
};

class ParserConverter : public Parser, public testing::WithParamInterface<ConverterKind> {
protected:
    void ParseConverter(const std::string& attributes = "") {
        const std::string element = GetParam().element;
        Parse("<" + element + " Name=\"C\"" + attributes + ">" + kConverterContent + "</" +
              element + ">");
    }
};

TEST_P(ParserConverter, MakesANodeForEachDirection) {
    ParseConverter();
    EXPECT_EQ(NodeOf(m_Map, "C").GetNodeType(), GetParam().type);
    EXPECT_THAT(
        PropertiesOf("C"),
        ElementsAre("<Streamable>No</Streamable>", "<pVariable Name=\"V\">A</pVariable>",
                    "<pVariable Name=\"C\">_C_C</pVariable>",
                    "<pVariable Name=\"E\">_C_E</pVariable>", "<FormulaTo>FROM*V</FormulaTo>",
                    "<FormulaFrom>TO/V</FormulaFrom>", "<pValue>R</pValue>", "<Unit>u</Unit>",
                    "<Slope>Increasing</Slope>", "<pSwissKnifeTo>C_ConvertTo</pSwissKnifeTo>",
                    "<pSwissKnifeFrom>C_ConvertFrom</pSwissKnifeFrom>"));
    const auto formula = [](const char* direction, const char* text) {
        return ElementsAre(direction, "<pVariable Name=\"V\">A</pVariable>",
                           "<pVariable Name=\"C\">_C_C</pVariable>",
                           "<pVariable Name=\"E\">_C_E</pVariable>", text);
    };
    EXPECT_THAT(PropertiesOf("C_ConvertTo"),
                formula("<InputDirection>To</InputDirection>", "<Formula>FROM*V</Formula>"));
    EXPECT_THAT(PropertiesOf("C_ConvertFrom"),
                formula("<InputDirection>From</InputDirection>", "<Formula>TO/V</Formula>"));
    EXPECT_EQ(NodeOf(m_Map, "C_ConvertTo").GetNodeType(), GetParam().formula);
    EXPECT_EQ(NodeOf(m_Map, "C_ConvertFrom").GetNodeType(), GetParam().formula);
    EXPECT_EQ(NodeOf(m_Map, "_C_C").GetNodeType(), GetParam().constant);
    EXPECT_EQ(NodeOf(m_Map, "_C_E").GetNodeType(), GetParam().formula);
    EXPECT_EQ(m_Map.GetContextNode(), nullptr);
}

TEST_P(ParserConverter, GivesItsFormulasItsMergePriority) {
    ParseConverter(" MergePriority=\"-1\"");
    for (const char* const name : {"C", "C_ConvertTo", "C_ConvertFrom"}) {
        EXPECT_EQ(NodeOf(m_Map, name).GetMergePriority(), -1) << name;
    }
    EXPECT_EQ(PropertiesOf("C_ConvertTo").back(), "<MergePriority>-1</MergePriority>");
}

TEST_P(ParserConverter, GivesItsFormulasNoMergePriorityOfZero) {
    ParseConverter(" MergePriority=\"0\"");
    EXPECT_EQ(CountOf(NodeOf(m_Map, "C_ConvertTo"), ID::MergePriority_ID), 0U);
}

TEST_P(ParserConverter, EntersItsTextsAnewForEachNode) {
    ParseConverter();
    const auto textOf = [&](const char* node, ID::EProperty_ID_t id) {
        return NodeOf(m_Map, node).FindProperty(id)->StringID();
    };
    EXPECT_NE(textOf("C", ID::FormulaTo_ID), textOf("C_ConvertTo", ID::Formula_ID));
    const auto nameOf = [&](const char* node) {
        return NodeOf(m_Map, node).FindProperty(ID::pVariable_ID)->GetAttribute()->StringID();
    };
    EXPECT_NE(nameOf("C"), nameOf("C_ConvertTo"));
    EXPECT_NE(nameOf("C_ConvertTo"), nameOf("C_ConvertFrom"));
}

INSTANTIATE_TEST_SUITE_P(
    All, ParserConverter,
    testing::Values(ConverterKind{"Converter", CNodeData::Converter_ID, CNodeData::SwissKnife_ID,
                                  CNodeData::Float_ID},
                    ConverterKind{"IntConverter", CNodeData::IntConverter_ID,
                                  CNodeData::IntSwissKnife_ID, CNodeData::Integer_ID}),
    [](const testing::TestParamInfo<ConverterKind>& kind) { return kind.param.element; });

TEST_F(Parser, RefusesANodeOfTheNameOfAFormulaOfAConverter) {
    EXPECT_EQ(FailureOfBody("<Node Name=\"C_ConvertFrom\"/>\n<Converter Name=\"C\"><FormulaTo>1"
                            "</FormulaTo><FormulaFrom>1</FormulaFrom><pValue>R</pValue>"
                            "</Converter>"),
              BuilderErrorAt(3, 90, "Found a duplicate node'C_ConvertFrom'."));
    EXPECT_EQ(m_Map.GetContextNode(), nullptr);
}

// Configuration ROMs

const std::string kRomBegin =
    "<ConfRom Name=\"R\"><Unit>0x42</Unit><Address>0</Address><Length>1024</Length>"
    "<pPort>P</pPort>\n";

TEST_F(Parser, TakesTheKeysOfAConfRom) {
    Parse(kRomBegin +
          "<TextDesc Name=\"T\" NameSpace=\"Standard\">17</TextDesc><IntKey Name=\"I\"> 0x38\n"
          "</IntKey></ConfRom>");
    EXPECT_EQ(NodeOf(m_Map, "T").GetNodeType(), CNodeData::TextDesc_ID);
    EXPECT_THAT(PropertiesOf("T"), ElementsAre("<NameSpace>Standard</NameSpace>",
                                               "<p1212Parser>R</p1212Parser>", "<Key>17</Key>"));
    EXPECT_EQ(NodeOf(m_Map, "I").GetNodeType(), CNodeData::IntKey_ID);
    EXPECT_THAT(PropertiesOf("I"), ElementsAre("<p1212Parser>R</p1212Parser>", "<Key>56</Key>"));
    EXPECT_EQ(m_Map.GetContextNode(), nullptr);
}

TEST_F(Parser, RefusesAKeyThatIsNoInteger) {
    EXPECT_EQ(FailureOfBody(kRomBegin + "<IntKey Name=\"I\">x</IntKey></ConfRom>"),
              BuilderErrorAt(3, 18, "%S it not a valid integer"));
    EXPECT_EQ(m_Map.GetContextNode(), nullptr);
}

TEST_F(Parser, ChecksTheAttributesOfAKey) {
    const auto failure = [&](const std::string& attributes) {
        m_Map.Clear();
        return FailureOfBody(kRomBegin + "<IntKey " + attributes + ">1</IntKey></ConfRom>");
    };
    EXPECT_EQ(failure(""), ErrorAt(3, 0, "expected attribute not encountered"));
    EXPECT_EQ(failure("Name=\"a b\""), ErrorAt(3, 0, "value does not match pattern"));
    EXPECT_EQ(failure("Name=\"I\" NameSpace=\"x\""), ErrorAt(3, 0, "value is not in enumeration"));
}

TEST_F(Parser, RefusesAnElementInAKey) {
    EXPECT_EQ(FailureOfBody(kRomBegin + "<IntKey Name=\"I\"><Key>1</Key></IntKey>", 0),
              ErrorAt(3, 17, "unexpected element encountered"));
}

TEST_F(Parser, LinksAFormulaInsideAConfRomUnderItsPlainName) {
    Parse(
        "<ConfRom Name=\"R\"><Unit>1</Unit><IntSwissKnife Name=\"K\"><Formula>1</Formula>"
        "</IntSwissKnife><Length>4</Length><pPort>P</pPort></ConfRom>");
    EXPECT_THAT(LinksOf(m_Map, "R", ID::pAddress_ID), ElementsAre("K"));
}

}  // namespace
}  // namespace NodeDataTest
