#include <cstdint>

#include "properties/PropertyEnum.h"
#include "support/NodeDataBuilder.h"

namespace NodeDataTest {
namespace {

class PropertyPrint : public testing::Test {
protected:
    CProperty Make(ID::EProperty_ID_t id, auto... value) { return CProperty(&m_Map, id, value...); }

    CNodeDataMap m_Map;
};

TEST_F(PropertyPrint, DumpsEachKindOfValue) {
    m_Map.SetString("unused");
    m_Map.GetNodeID("Root", true);
    EXPECT_EQ(Make(ID::ToolTip_ID, "a tip").ToString(tssText), "ToolTip = 1 'a tip'");
    EXPECT_EQ(Make(ID::pValue_ID, NodeID_t(0)).ToString(tssText), "pValue = 0 (Root)");
    EXPECT_EQ(Make(ID::IsFeature_ID, CProperty::EYesNo_ID, Yes).ToString(tssText),
              "IsFeature = 1 <Yes>");
    EXPECT_EQ(Make(ID::Min_ID, -5).ToString(tssText), "Min = -5");
    EXPECT_EQ(Make(ID::Max_ID, 2.5).ToString(tssText), "Max = 2.5");
}

TEST_F(PropertyPrint, DumpsTheAttributeBehindTheValue) {
    m_Map.GetNodeID("Idx", true);
    CProperty property = Make(ID::pIndex_ID, NodeID_t(0));
    property.SetAttribute(std::make_unique<CProperty>(Make(ID::Offset_ID, 4)));
    EXPECT_EQ(property.ToString(tssText), "pIndex = 0 (Idx) ( Offset = 4 ) ");
}

TEST_F(PropertyPrint, WritesAnElement) {
    m_Map.GetNodeID("Reg", true);
    EXPECT_EQ(Make(ID::pValue_ID, NodeID_t(0)).ToString(tssXmlElement), "<pValue>Reg</pValue>");
    EXPECT_EQ(Make(ID::Min_ID, 7).ToString(tssXmlElement), "<Min>7</Min>");
    EXPECT_EQ(
        Make(ID::Visibility_ID, CProperty::EVisibility_ID, CEnumNumber(2)).ToString(tssXmlElement),
        "<Visibility>Guru</Visibility>");
}

TEST_F(PropertyPrint, WritesTheAttributeIntoTheTag) {
    m_Map.GetNodeID("Reg", true);
    CProperty property = Make(ID::pVariable_ID, NodeID_t(0));
    property.SetAttribute(std::make_unique<CProperty>(Make(ID::Name_ID, "VAR")));
    EXPECT_EQ(property.ToString(tssXmlElement), "<pVariable Name=\"VAR\">Reg</pVariable>");
}

TEST_F(PropertyPrint, WritesAnAttributeAndAPlainValue) {
    const CProperty property = Make(ID::Name_ID, "Gain");
    EXPECT_EQ(property.ToString(tssXmlAttribute), "Name=\"Gain\"");
    EXPECT_EQ(property.ToString(tssValue), "Gain");
}

TEST_F(PropertyPrint, EscapesMarkupOfAToolTipInAnElementOnly) {
    const CProperty property = Make(ID::ToolTip_ID, "a<b & c");
    EXPECT_EQ(property.ToString(tssXmlElement), "<ToolTip>a&lt;b &amp; c</ToolTip>");
    EXPECT_EQ(property.ToString(tssText), "ToolTip = 0 'a<b & c'");
    EXPECT_EQ(property.ToString(tssXmlAttribute), "ToolTip=\"a<b & c\"");
    EXPECT_EQ(property.ToString(tssValue), "a<b & c");
}

class EscapedProperty : public testing::TestWithParam<ID::EProperty_ID_t> {};

TEST_P(EscapedProperty, EscapesFourCharactersAndLeavesTheApostrophe) {
    CNodeDataMap map;
    const CProperty property(&map, GetParam(), "<a> & \"b\" 'c'");
    const std::string name = CPropertyID(GetParam()).ToString();
    EXPECT_EQ(property.ToString(tssXmlElement),
              "<" + name + ">&lt;a&gt; &amp; &quot;b&quot; 'c'</" + name + ">");
}

INSTANTIATE_TEST_SUITE_P(All, EscapedProperty,
                         testing::Values(ID::Description_ID, ID::ToolTip_ID, ID::DisplayName_ID,
                                         ID::Unit_ID, ID::Formula_ID, ID::FormulaTo_ID,
                                         ID::FormulaFrom_ID, ID::Comment_ID));

class RawProperty : public testing::TestWithParam<ID::EProperty_ID_t> {};

TEST_P(RawProperty, IsWrittenAsItStands) {
    CNodeDataMap map;
    const CProperty property(&map, GetParam(), "<a>&\"");
    const std::string name = CPropertyID(GetParam()).ToString();
    EXPECT_EQ(property.ToString(tssXmlElement), "<" + name + "><a>&\"</" + name + ">");
}

INSTANTIATE_TEST_SUITE_P(Some, RawProperty,
                         testing::Values(ID::Extension_ID, ID::DocuURL_ID, ID::Value_ID,
                                         ID::Name_ID, ID::ValidValueSet_ID));

TEST_F(PropertyPrint, WritesFloatsSoThatTheyReadBackTheSame) {
    EXPECT_EQ(Make(ID::Min_ID, 0.1).ToString(tssValue), "0.1");
    EXPECT_EQ(Make(ID::Min_ID, 1234567.0).ToString(tssValue), "1234567");
    EXPECT_EQ(Make(ID::Min_ID, 1.0 / 3).ToString(tssValue), "0.3333333333333333");
    EXPECT_EQ(Make(ID::Min_ID, -2e300).ToString(tssValue), "-2e+300");
}

class PropertyStyleDeathTest : public testing::TestWithParam<int> {};

TEST_P(PropertyStyleDeathTest, RefusesStylesOfNodesAndMaps) {
    CNodeDataMap map;
    const CProperty property(&map, ID::Min_ID, 1);
    EXPECT_DEATH((void)property.ToString(static_cast<EToStringStyle_t>(GetParam())),
                 testing::HasSubstr("false"));
}

INSTANTIATE_TEST_SUITE_P(Others, PropertyStyleDeathTest, testing::Values(1, 3, 4, 7));

struct EnumText {
    CProperty::EDataType_t type;
    int32_t number;
    const char* text;
};

class PropertyEnumText : public testing::TestWithParam<EnumText> {};

TEST_P(PropertyEnumText, GoesBothWaysUnlessItMarksTheUndefined) {
    const auto& [type, number, text] = GetParam();
    EXPECT_EQ(EnumNumberToText(type, number), text);
    const auto found = EnumNumberFromText(type, text);
    EXPECT_EQ(found.has_value(), text[0] != '_');
    if (found) {
        EXPECT_EQ(found->ToNumber(), number);
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, PropertyEnumText,
    testing::Values(
        EnumText{CProperty::EAccessMode_ID, 0, "NI"}, EnumText{CProperty::EAccessMode_ID, 1, "NA"},
        EnumText{CProperty::EAccessMode_ID, 2, "WO"}, EnumText{CProperty::EAccessMode_ID, 3, "RO"},
        EnumText{CProperty::EAccessMode_ID, 4, "RW"},
        EnumText{CProperty::EAccessMode_ID, 5, "_UndefinedAccesMode"},
        EnumText{CProperty::EAccessMode_ID, 6, "_CycleDetectAccesMode"},
        EnumText{CProperty::ECachingMode_ID, 0, "NoCache"},
        EnumText{CProperty::ECachingMode_ID, 1, "WriteThrough"},
        EnumText{CProperty::ECachingMode_ID, 2, "WriteAround"},
        EnumText{CProperty::ECachingMode_ID, 3, "_UndefinedCachingMode"},
        EnumText{CProperty::EDisplayNotation_ID, 0, "Automatic"},
        EnumText{CProperty::EDisplayNotation_ID, 1, "Fixed"},
        EnumText{CProperty::EDisplayNotation_ID, 2, "Scientific"},
        EnumText{CProperty::EDisplayNotation_ID, 3, "_UndefinedEDisplayNotation"},
        EnumText{CProperty::EEndianess_ID, 0, "BigEndian"},
        EnumText{CProperty::EEndianess_ID, 1, "LittleEndian"},
        EnumText{CProperty::EEndianess_ID, 2, "_UndefinedEndian"},
        EnumText{CProperty::ENameSpace_ID, 0, "Custom"},
        EnumText{CProperty::ENameSpace_ID, 1, "Standard"},
        EnumText{CProperty::ENameSpace_ID, 2, "_UndefinedNameSpace"},
        EnumText{CProperty::ERepresentation_ID, 0, "Linear"},
        EnumText{CProperty::ERepresentation_ID, 1, "Logarithmic"},
        EnumText{CProperty::ERepresentation_ID, 2, "Boolean"},
        EnumText{CProperty::ERepresentation_ID, 3, "PureNumber"},
        EnumText{CProperty::ERepresentation_ID, 4, "HexNumber"},
        EnumText{CProperty::ERepresentation_ID, 5, "IPV4Address"},
        EnumText{CProperty::ERepresentation_ID, 6, "MACAddress"},
        EnumText{CProperty::ERepresentation_ID, 7, "_UndefinedRepresentation"},
        EnumText{CProperty::ESign_ID, 0, "Signed"}, EnumText{CProperty::ESign_ID, 1, "Unsigned"},
        EnumText{CProperty::ESign_ID, 2, "_UndefinedSign"},
        EnumText{CProperty::ESlope_ID, 0, "Increasing"},
        EnumText{CProperty::ESlope_ID, 1, "Decreasing"},
        EnumText{CProperty::ESlope_ID, 2, "Varying"},
        EnumText{CProperty::ESlope_ID, 3, "Automatic"},
        EnumText{CProperty::ESlope_ID, 4, "_UndefinedESlope"},
        EnumText{CProperty::EStandardNameSpace_ID, 0, "None"},
        EnumText{CProperty::EStandardNameSpace_ID, 1, "GEV"},
        EnumText{CProperty::EStandardNameSpace_ID, 2, "IIDC"},
        EnumText{CProperty::EStandardNameSpace_ID, 3, "CL"},
        EnumText{CProperty::EStandardNameSpace_ID, 4, "USB"},
        EnumText{CProperty::EStandardNameSpace_ID, 5, "_UndefinedStandardNameSpace"},
        EnumText{CProperty::EVisibility_ID, 0, "Beginner"},
        EnumText{CProperty::EVisibility_ID, 1, "Expert"},
        EnumText{CProperty::EVisibility_ID, 2, "Guru"},
        EnumText{CProperty::EVisibility_ID, 3, "Invisible"},
        EnumText{CProperty::EVisibility_ID, 99, "_UndefinedVisibility"},
        EnumText{CProperty::EYesNo_ID, 0, "No"}, EnumText{CProperty::EYesNo_ID, 1, "Yes"},
        EnumText{CProperty::EYesNo_ID, 2, "_UndefinedYesNo"},
        EnumText{CProperty::EInputDirection_ID, 0, "From"},
        EnumText{CProperty::EInputDirection_ID, 1, "To"},
        EnumText{CProperty::EInputDirection_ID, 2, "None"}));

TEST(PropertyEnum, KnowsNoOtherTextsAndNumbers) {
    EXPECT_FALSE(EnumNumberFromText(CProperty::EYesNo_ID, "yes").has_value());
    EXPECT_FALSE(EnumNumberFromText(CProperty::EYesNo_ID, "").has_value());
    EXPECT_FALSE(EnumNumberFromText(CProperty::Integer_ID, "Yes").has_value());
    EXPECT_EQ(EnumNumberToText(CProperty::EVisibility_ID, 50), "");
}

}  // namespace
}  // namespace NodeDataTest
