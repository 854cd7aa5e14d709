// What becomes of each element and attribute.

#include "ParserFixture.h"

namespace NodeDataTest {
namespace {

TEST_F(Parser, TurnsTheAttributesOfANodeIntoProperties) {
    Parse("<Node Name=\"A\" NameSpace=\"Standard\" MergePriority=\"-1\" ExposeStatic=\"Yes\"/>");
    EXPECT_THAT(PropertiesOf("A"),
                ElementsAre("<NameSpace>Standard</NameSpace>", "<MergePriority>-1</MergePriority>",
                            "<ExposeStatic>Yes</ExposeStatic>"));
    EXPECT_EQ(NodeOf(m_Map, "A").GetProperties().front().ToString(tssValue), "A");
}

/// An element, the content of which is one property after the other.
struct Kept {
    const char* element;
    CNodeData::ENodeType_t type;
    std::string content;
    /// What the properties look like, where not like the content.
    std::string properties = content;
};

void PrintTo(const Kept& kept, std::ostream* stream) {
    *stream << kept.element << kept.content;
}

class ParserProperty : public Parser, public testing::WithParamInterface<Kept> {};

TEST_P(ParserProperty, StandsForEachElementInOrder) {
    const std::string element = GetParam().element;
    // The name may stand in other words of the content, the quote does not.
    Parse("<" + element + " Name=\"N\">" + GetParam().content + "</" + element + ">");
    EXPECT_EQ(NodeOf(m_Map, "N").GetNodeType(), GetParam().type);
    std::string properties;
    for (const std::string& property : PropertiesOf("N")) {
        properties += property;
    }
    EXPECT_EQ(properties, GetParam().properties);
}

using D = CNodeData;

INSTANTIATE_TEST_SUITE_P(
    All, ParserProperty,
    testing::Values(
        Kept{"Node", D::Node_ID,
             "<ToolTip>t</ToolTip><Description>d</Description><DisplayName>n</DisplayName>"
             "<Visibility>Invisible</Visibility><DocuURL>http://a/b</DocuURL>"
             "<IsDeprecated>Yes</IsDeprecated><EventID>90aF</EventID>"
             "<pIsImplemented>A</pIsImplemented><pIsAvailable>B</pIsAvailable>"
             "<pIsLocked>C</pIsLocked><pBlockPolling>D</pBlockPolling>"
             "<ImposedAccessMode>WO</ImposedAccessMode><pError>E</pError><pError>F</pError>"
             "<pAlias>G</pAlias><pCastAlias>H</pCastAlias><pInvalidator>I</pInvalidator>"},
        Kept{"Category", D::Category_ID, "<pFeature>A</pFeature><pFeature>B</pFeature>"},
        Kept{"Integer", D::Integer_ID,
             "<Streamable>Yes</Streamable><Value>-5</Value><Min>-9</Min><Max>9</Max><Inc>2</Inc>"
             "<Unit>mm</Unit><Representation>HexNumber</Representation>"
             "<ValidValueSet>1;2</ValidValueSet><pSelected>A</pSelected>"},
        Kept{"Integer", D::Integer_ID,
             "<pValueCopy>A</pValueCopy><pValue>B</pValue><pValueCopy>C</pValueCopy>"
             "<pMin>D</pMin><pMax>E</pMax><pInc>F</pInc>"},
        Kept{"Integer", D::Integer_ID,
             "<pIndex>I</pIndex><ValueIndexed Index=\"1\">5</ValueIndexed>"
             "<pValueIndexed Index=\"2\">A</pValueIndexed><ValueDefault>6</ValueDefault>"},
        Kept{"Integer", D::Integer_ID, "<pIndex>I</pIndex><pValueDefault>A</pValueDefault>"},
        Kept{"Float", D::Float_ID,
             "<Value>1.5</Value><Min>-1.5</Min><Max>2.5</Max><Inc>0.5</Inc><Unit>us</Unit>"
             "<Representation>Logarithmic</Representation>"
             "<DisplayNotation>Scientific</DisplayNotation><DisplayPrecision>3</DisplayPrecision>"},
        Kept{"Float", D::Float_ID,
             "<pIndex>I</pIndex><ValueIndexed Index=\"1\">2.5</ValueIndexed>"
             "<ValueDefault>0.5</ValueDefault>"},
        Kept{"Boolean", D::Boolean_ID,
             "<Value>1</Value><OnValue>3</OnValue><OffValue>2</OffValue><pSelected>A</pSelected>"},
        Kept{"Command", D::Command_ID,
             "<pValue>A</pValue><CommandValue>7</CommandValue><PollingTime>100</PollingTime>"},
        Kept{"Command", D::Command_ID, "<Value>1</Value><pCommandValue>A</pCommandValue>"},
        Kept{"String", D::String_ID, "<Streamable>No</Streamable><Value> a text </Value>"},
        Kept{"Register", D::Register_ID,
             "<Address>16</Address><pAddress>A</pAddress><pIndex Offset=\"8\">I</pIndex>"
             "<pLength>B</pLength><AccessMode>RO</AccessMode><pPort>P</pPort>"
             "<Cachable>WriteAround</Cachable><PollingTime>5</PollingTime>"
             "<pInvalidator>C</pInvalidator>"},
        Kept{"IntReg", D::IntReg_ID,
             std::string("<Address>0</Address>") + kRegisterRest +
                 "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess><Unit>u</Unit>"
                 "<Representation>Linear</Representation><pSelected>A</pSelected>"},
        Kept{"MaskedIntReg", D::MaskedIntReg_ID,
             std::string("<Address>0</Address>") + kRegisterRest +
                 "<LSB>3</LSB><MSB>7</MSB><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>"},
        Kept{"MaskedIntReg", D::MaskedIntReg_ID,
             std::string("<Address>0</Address>") + kRegisterRest +
                 "<Bit>31</Bit><Endianess>BigEndian</Endianess>",
             std::string("<Address>0</Address>") + kRegisterRest +
                 "<LSB>31</LSB><MSB>31</MSB><Endianess>BigEndian</Endianess>"},
        Kept{"FloatReg", D::FloatReg_ID,
             std::string("<Address>0</Address>") + kRegisterRest +
                 "<Endianess>BigEndian</Endianess><DisplayNotation>Automatic</DisplayNotation>"},
        Kept{"StringReg", D::StringReg_ID, std::string("<Address>0</Address>") + kRegisterRest},
        Kept{"AdvFeatureLock", D::AdvFeatureLock_ID,
             std::string("<Address>0</Address>") + kRegisterRest +
                 "<FeatureID>20</FeatureID><Timeout>6</Timeout>"},
        Kept{"SmartFeature", D::SmartFeature_ID,
             "<FeatureID>8A6F</FeatureID><Address>0</Address><pPort>P</pPort>"
             "<pIsImplemented>A</pIsImplemented><pIsAvailable>B</pIsAvailable>"},
        Kept{"ConfRom", D::ConfRom_ID,
             "<Unit>66</Unit><Address>0</Address><Length>1024</Length><pPort>P</pPort>"},
        Kept{"IntKey", D::IntKey_ID, "<p1212Parser>R</p1212Parser><Key>56</Key>"},
        Kept{"TextDesc", D::TextDesc_ID, "<p1212Parser>R</p1212Parser><Key>56</Key>"},
        Kept{"SwissKnife", D::SwissKnife_ID,
             "<pVariable Name=\"X\">A</pVariable><Formula>X*2</Formula><Unit>u</Unit>"},
        Kept{"IntSwissKnife", D::IntSwissKnife_ID,
             "<pVariable Name=\"X.Min\">A</pVariable><Formula>1</Formula>"
             "<Representation>Linear</Representation>"},
        Kept{"Port", D::Port_ID,
             "<ChunkID>4F32</ChunkID><SwapEndianess>Yes</SwapEndianess>"
             "<CacheChunkData>No</CacheChunkData>"},
        Kept{"Port", D::Port_ID, "<pChunkID>A</pChunkID>"}));

TEST_F(Parser, AddsAReferencedNameBeforeItsNodeIsSeen) {
    Parse(
        "<Category Name=\"Root\"><pFeature>A</pFeature></Category>"
        "<Node Name=\"B\"/><Node Name=\"A\"/>");
    EXPECT_THAT(NodeNames(), ElementsAre("_RegisterDescription", "Root", "A", "B"));
}

TEST_F(Parser, PrefersAConstantOffsetToAReference) {
    const auto offsetOf = [&](const std::string& attributes) {
        m_Map.Clear();
        Parse("<IntReg Name=\"R\"><pIndex " + attributes + ">I</pIndex>" + kRegisterRest +
              "</IntReg>");
        return PropertiesOf("R").front();
    };
    EXPECT_EQ(offsetOf("Offset=\"8\" pOffset=\"O\""), "<pIndex Offset=\"8\">I</pIndex>");
    EXPECT_EQ(offsetOf("pOffset=\"O\" Offset=\"0x10\""), "<pIndex Offset=\"16\">I</pIndex>");
    EXPECT_EQ(offsetOf("Offset=\"\" pOffset=\"O\""), "<pIndex pOffset=\"O\">I</pIndex>");
    EXPECT_EQ(offsetOf("pOffset=\"O\" Offset=\"\""), "<pIndex pOffset=\"O\">I</pIndex>");
    EXPECT_EQ(offsetOf("Offset=\"\" pOffset=\"\""), "<pIndex>I</pIndex>");
    EXPECT_EQ(offsetOf(""), "<pIndex>I</pIndex>");
}

TEST_F(Parser, LeavesTextsThatPeopleReadOutWhenAsked) {
    const std::string body =
        "<Node Name=\"A\"><Extension>e</Extension><ToolTip>t</ToolTip>"
        "<Description>d</Description><DisplayName>n</DisplayName><DocuURL>u</DocuURL></Node>";
    ParseText(Describe(body), true);
    EXPECT_THAT(PropertiesOf("A"), ElementsAre("<Extension>e</Extension>", "<DocuURL>u</DocuURL>"));
    EXPECT_THAT(PropertiesOf("_RegisterDescription"), testing::Contains("<ToolTip>Tip</ToolTip>"));
}

TEST_F(Parser, ChecksSuppressedTextsAllTheSame) {
    EXPECT_EQ(FailureText([&] {
                  ParseText(Describe("<Node Name=\"A\"><ToolTip/><ToolTip/></Node>"), true);
              }),
              OutOfPlace());
}

TEST_F(Parser, KeepsAnExtensionAsText) {
    const auto kept = [&](const std::string& content) {
        m_Map.Clear();
        Parse("<Node Name=\"A\"><Extension>" + content + "</Extension></Node>");
        return NodeOf(m_Map, "A").FindProperty(ID::Extension_ID)->String();
    };
    EXPECT_EQ(kept(""), "");
    EXPECT_EQ(kept("a &lt; b"), "a < b");
    EXPECT_EQ(kept("<b/>"), "<b></b>");
    EXPECT_EQ(kept("x<b c=\"1\" d=\"2>\"> y <Extension>z</Extension></b>\n"),
              "x<b c=\"1\" d=\"2>\"> y <Extension>z</Extension></b>\n");
    EXPECT_EQ(kept("<Foo><Value>1</Value></Foo>"), "<Foo><Value>1</Value></Foo>");
    EXPECT_EQ(kept("<o:b xmlns:o=\"http://other\" o:c=\"1\"/>"), "<b c=\"1\"></b>");
}

TEST_F(Parser, LeavesNoTraceOfGroups) {
    Parse(
        "<Group Comment=\"c\"><Node Name=\"A\"/><Group><IntSwissKnife Name=\"K\">"
        "<Formula>1</Formula></IntSwissKnife></Group></Group><Group/>");
    EXPECT_THAT(NodeNames(), ElementsAre("_RegisterDescription", "A", "K"));
    EXPECT_EQ(CountOf(NodeOf(m_Map, "_RegisterDescription"), ID::pAddress_ID), 0U);
}

TEST_F(Parser, FindsADuplicateNode) {
    EXPECT_EQ(
        FailureOfBody("<Node Name=\"A\"></Node>\n<Integer Name=\"A\"><Value>1</Value></Integer>"),
        BuilderErrorAt(3, 34, "Found a duplicate node'A'."));
}

}  // namespace
}  // namespace NodeDataTest
