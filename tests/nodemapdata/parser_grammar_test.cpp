// Which elements and attributes stand where.

#include "ParserFixture.h"

namespace NodeDataTest {
namespace {

constexpr const char* kExpectedElement = "expected element not encountered";
constexpr const char* kUnexpectedElement = "unexpected element encountered";

const std::string kCommonGroup =
    "<Extension/><ToolTip>t</ToolTip><Description>d</Description><DisplayName>n</DisplayName>"
    "<Visibility>Guru</Visibility><DocuURL>u</DocuURL><IsDeprecated>No</IsDeprecated>"
    "<EventID>9001</EventID><pIsImplemented>A</pIsImplemented><pIsAvailable>A</pIsAvailable>"
    "<pIsLocked>A</pIsLocked><pBlockPolling>A</pBlockPolling>"
    "<ImposedAccessMode>RO</ImposedAccessMode><pError>A</pError><pError>B</pError>"
    "<pAlias>A</pAlias><pCastAlias>A</pCastAlias>";
const std::string kAddresses =
    "<Address>0</Address><IntSwissKnife Name=\"K\"><Formula>1</Formula></IntSwissKnife>"
    "<pAddress>A</pAddress><pIndex>I</pIndex><Address>4</Address>";
const std::string kRest =
    "<AccessMode>RW</AccessMode><pPort>P</pPort><Cachable>NoCache</Cachable>"
    "<PollingTime>1</PollingTime><pInvalidator>A</pInvalidator><pInvalidator>B</pInvalidator>";
const std::string kRegister =
    "<Streamable>Yes</Streamable>" + kAddresses + "<Length>4</Length>" + kRest;
const std::string kInvalidators = "<pInvalidator>A</pInvalidator><pInvalidator>B</pInvalidator>";
const std::string kSelected = "<pSelected>A</pSelected><pSelected>B</pSelected>";
const std::string kLook = "<Unit>u</Unit><Representation>Linear</Representation>";
const std::string kNotation =
    "<DisplayNotation>Fixed</DisplayNotation><DisplayPrecision>2</DisplayPrecision>";
const std::string kIndexed =
    "<pIndex>I</pIndex><ValueIndexed Index=\"1\">5</ValueIndexed>"
    "<pValueIndexed Index=\"2\">A</pValueIndexed><pValueDefault>A</pValueDefault>";
const std::string kInputs =
    "<pVariable Name=\"V\">A</pVariable><Constant Name=\"C\">1</Constant>"
    "<Expression Name=\"E\">1</Expression>";
const std::string kFormulas =
    "<FormulaTo>1</FormulaTo><FormulaFrom>1</FormulaFrom>"
    "<pValue>A</pValue>";

/// An element with everything that it may hold, in order.
struct Full {
    const char* element;
    std::string attributes;
    std::string content;
};

const std::vector<Full>& AllElements() {
    static const std::string name = "Name=\"N\"";
    static const std::string inputs =
        kCommonGroup + kInvalidators + "<Streamable>No</Streamable>" + kInputs;
    static const std::vector<Full> all{
        {"Node", name, kCommonGroup + kInvalidators},
        {"Category", name,
         kCommonGroup + kInvalidators + "<pFeature>A</pFeature><pFeature>B</pFeature>"},
        {"Integer", name,
         kCommonGroup + kInvalidators +
             "<Streamable>No</Streamable><Value>1</Value><Min>1</Min>"
             "<Max>2</Max><Inc>1</Inc>" +
             kLook + "<ValidValueSet>1;2</ValidValueSet>" + kSelected},
        {"Integer", name,
         "<pValueCopy>A</pValueCopy><pValue>A</pValue><pValueCopy>A</pValueCopy>"
         "<pValueCopy>B</pValueCopy><pMin>A</pMin><pMax>A</pMax><pInc>A</pInc>"},
        {"Integer", name, kIndexed + "<Min>1</Min>"},
        {"Integer", name, "<pIndex>I</pIndex><ValueDefault>1</ValueDefault>"},
        {"Float", name,
         kCommonGroup + kInvalidators +
             "<Streamable>No</Streamable><Value>1.5</Value><Min>1</Min>"
             "<Max>2</Max><Inc>1</Inc>" +
             kLook + kNotation},
        {"Float", name, "<pValue>A</pValue><pMin>A</pMin><pMax>A</pMax><pInc>A</pInc>"},
        {"Float", name, kIndexed + kNotation},
        {"Boolean", name,
         kCommonGroup + kInvalidators +
             "<Streamable>No</Streamable><Value>1</Value>"
             "<OnValue>1</OnValue><OffValue>0</OffValue>" +
             kSelected},
        {"Boolean", name, "<pValue>A</pValue>"},
        {"Command", name,
         kCommonGroup + kInvalidators +
             "<Value>1</Value><CommandValue>1</CommandValue><PollingTime>5</PollingTime>"},
        {"Command", name, "<pValue>A</pValue><pCommandValue>A</pCommandValue>"},
        {"String", name,
         kCommonGroup + kInvalidators + "<Streamable>No</Streamable><Value>v</Value>"},
        {"String", name, "<pValue>A</pValue>"},
        {"String", name, ""},
        {"Enumeration", name,
         kCommonGroup + kInvalidators +
             "<Streamable>No</Streamable><EnumEntry Name=\"X\"><Value>1</Value></EnumEntry>"
             "<EnumEntry Name=\"Y\"><Value>2</Value></EnumEntry><Value>1</Value>" +
             kSelected + "<PollingTime>5</PollingTime>"},
        {"Enumeration", name,
         "<EnumEntry Name=\"X\"><Value>1</Value></EnumEntry><pValue>A</pValue>"},
        {"Enumeration", name, "<EnumEntry Name=\"X\"><Value>1</Value></EnumEntry>"},
        {"Register", name, kCommonGroup + kRegister},
        {"IntReg", name,
         kCommonGroup + kRegister + "<Sign>Signed</Sign><Endianess>BigEndian</Endianess>" + kLook +
             kSelected},
        {"IntReg", name, "<pIndex>I</pIndex><pLength>A</pLength>" + kRest},
        {"MaskedIntReg", name,
         kCommonGroup + kRegister +
             "<Bit>1</Bit><Sign>Signed</Sign><Endianess>BigEndian</Endianess>" + kLook + kSelected},
        {"MaskedIntReg", name,
         kRegister + "<LSB>1</LSB><MSB>2</MSB><Endianess>BigEndian</Endianess>"},
        {"FloatReg", name,
         kCommonGroup + kRegister + "<Endianess>BigEndian</Endianess>" + kLook + kNotation},
        {"StringReg", name, kCommonGroup + kRegister},
        {"StructReg", "Comment=\"c\"",
         kCommonGroup + kRegister + "<Endianess>BigEndian</Endianess><StructEntry Name=\"S\">" +
             kCommonGroup + kInvalidators +
             "<AccessMode>RO</AccessMode><Cachable>NoCache</Cachable><PollingTime>1</PollingTime>"
             "<Streamable>No</Streamable><Bit>1</Bit><Sign>Signed</Sign>" +
             kLook + kSelected +
             "</StructEntry><StructEntry Name=\"T\"><LSB>1</LSB><MSB>2</MSB></StructEntry>"},
        {"StructReg", "", kRegister},
        {"AdvFeatureLock", name,
         kCommonGroup + kRegister + "<FeatureID>1</FeatureID><Timeout>2</Timeout>"},
        {"SmartFeature", name,
         "<FeatureID>g</FeatureID><Address>0</Address><pPort>P</pPort>"
         "<pIsImplemented>A</pIsImplemented><pIsAvailable>A</pIsAvailable>"},
        {"SmartFeature", name, "<FeatureID>g</FeatureID><pAddress>A</pAddress><pPort>P</pPort>"},
        {"ConfRom", name,
         kCommonGroup + kInvalidators +
             "<Unit>1</Unit><Address>0</Address><Length>4</Length><pPort>P</pPort>"
             "<TextDesc Name=\"X\">1</TextDesc><IntKey Name=\"Y\">2</IntKey>"
             "<TextDesc Name=\"Z\">3</TextDesc>"},
        {"TextDesc", name, "<p1212Parser>R</p1212Parser><Key>1</Key>"},
        {"IntKey", name, "<p1212Parser>R</p1212Parser><Key>1</Key>"},
        {"SwissKnife", name, inputs + "<Formula>1</Formula>" + kLook + kNotation},
        {"IntSwissKnife", name, inputs + "<Formula>1</Formula>" + kLook},
        {"Converter", name,
         inputs + kFormulas + kLook + kNotation +
             "<Slope>Increasing</Slope><IsLinear>Yes</IsLinear>"},
        {"IntConverter", name, inputs + kFormulas + kLook + "<Slope>Increasing</Slope>"},
        {"Port", name,
         kCommonGroup + kInvalidators +
             "<ChunkID>01</ChunkID><SwapEndianess>Yes</SwapEndianess>"
             "<CacheChunkData>No</CacheChunkData>"},
        {"Port", name, "<pChunkID>A</pChunkID>"},
        {"Group", "Comment=\"c\"", "<Group><Node Name=\"A\"/></Group><Node Name=\"B\"/>"},
    };
    return all;
}

class ParserElement : public Parser, public testing::WithParamInterface<Full> {
protected:
    static std::string Element(const std::string& content) {
        return std::string("<") + GetParam().element + " " + GetParam().attributes + ">" + content +
               "</" + GetParam().element + ">";
    }
};

TEST_P(ParserElement, TakesAllThatItMayHold) {
    EXPECT_EQ(FailureOfBody(Element(GetParam().content), 1), "");
    m_Map.Clear();
    EXPECT_EQ(FailureOfBody(Element(GetParam().content), 0), "");
}

TEST_P(ParserElement, RefusesAnUnknownElementAtItsEnd) {
    EXPECT_EQ(FailureOfBody(Element(GetParam().content + "<Foo/>")), OutOfPlace());
}

TEST_P(ParserElement, RefusesCharactersBetweenItsElements) {
    const std::string content = GetParam().content;
    EXPECT_THAT(FailureOfBody(Element("x" + content)),
                testing::EndsWith("'unexpected characters encountered'"));
    EXPECT_THAT(FailureOfBody(Element(content + "&#x20;\n<![CDATA[y]]>")),
                testing::EndsWith("'unexpected characters encountered'"));
}

TEST_P(ParserElement, RefusesAnUnknownAttribute) {
    const std::string element =
        std::string("<") + GetParam().element + " Foo=\"1\" " + GetParam().attributes + ">";
    EXPECT_EQ(FailureOfBody(element), ErrorAt(2, 0, "unexpected attribute encountered"));
}

TEST_P(ParserElement, NeedsItsName) {
    if (GetParam().attributes == "Name=\"N\"") {
        EXPECT_EQ(FailureOfBody(std::string("<") + GetParam().element + ">"),
                  ErrorAt(2, 0, "expected attribute not encountered"));
    }
}

INSTANTIATE_TEST_SUITE_P(All, ParserElement, testing::ValuesIn(AllElements()),
                         [](const testing::TestParamInfo<Full>& full) {
                             return full.param.element + std::to_string(full.index);
                         });

/// A body, with what is wrong with it as an older document and where. The same
/// as a newer one fails at the root if an element is out of place.
struct Wrong {
    const char* body;
    unsigned column;
    const char* error;
};

void PrintTo(const Wrong& wrong, std::ostream* stream) {
    *stream << wrong.body;
}

class ParserOrder : public Parser, public testing::WithParamInterface<Wrong> {};

TEST_P(ParserOrder, IsKept) {
    const Wrong& wrong = GetParam();
    const std::string atElement = ErrorAt(2, wrong.column, wrong.error);
    EXPECT_EQ(FailureOfBody(wrong.body, 0), atElement);
    m_Map.Clear();
    EXPECT_EQ(FailureOfBody(wrong.body, 1),
              wrong.error == kUnexpectedElement ? OutOfPlace() : atElement);
}

INSTANTIATE_TEST_SUITE_P(
    OutOfPlace, ParserOrder,
    testing::Values(
        Wrong{"<Foo/>", 0, kUnexpectedElement}, Wrong{"<Value>1</Value>", 0, kUnexpectedElement},
        Wrong{"<StructEntry Name=\"A\"/>", 0, kUnexpectedElement},
        Wrong{"<RegisterDescription/>", 0, kUnexpectedElement},
        Wrong{"<Node Name=\"A\"><ToolTip/><ToolTip/></Node>", 25, kUnexpectedElement},
        Wrong{"<Node Name=\"A\"><Description/><ToolTip/></Node>", 29, kUnexpectedElement},
        Wrong{"<Node Name=\"A\"><pFeature>B</pFeature></Node>", 15, kUnexpectedElement},
        Wrong{"<Integer Name=\"A\"><Value>1</Value><pValue>B</pValue></Integer>", 34,
              kUnexpectedElement},
        Wrong{"<Integer Name=\"A\"><Value>1</Value><Max>1</Max><Min>1</Min></Integer>", 46,
              kUnexpectedElement},
        Wrong{"<Integer Name=\"A\"><Value>1</Value><Min>1</Min><pMin>B</pMin></Integer>", 46,
              kUnexpectedElement},
        Wrong{"<Integer Name=\"A\"><Value><B/></Value></Integer>", 25, kUnexpectedElement},
        Wrong{"<Command Name=\"A\"><Streamable>No</Streamable></Command>", 18, kUnexpectedElement},
        Wrong{"<Port Name=\"A\"><ChunkID>0</ChunkID><pChunkID>B</pChunkID></Port>", 35,
              kUnexpectedElement},
        Wrong{"<TextDesc Name=\"A\"><ToolTip/></TextDesc>", 19, kUnexpectedElement},
        Wrong{"<Category Name=\"A\"><Node Name=\"B\"/></Category>", 19, kUnexpectedElement}));

INSTANTIATE_TEST_SUITE_P(
    Missing, ParserOrder,
    testing::Values(
        // At the end of the element
        Wrong{"<Integer Name=\"A\"></Integer>", 18, kExpectedElement},
        Wrong{"<Integer Name=\"A\"><pValueCopy>B</pValueCopy></Integer>", 44, kExpectedElement},
        Wrong{"<Integer Name=\"A\"><pIndex>B</pIndex></Integer>", 36, kExpectedElement},
        Wrong{"<Boolean Name=\"A\"></Boolean>", 18, kExpectedElement},
        Wrong{"<Command Name=\"A\"><Value>1</Value></Command>", 34, kExpectedElement},
        Wrong{"<Enumeration Name=\"A\"></Enumeration>", 22, kExpectedElement},
        Wrong{"<Enumeration Name=\"E\"><EnumEntry Name=\"A\"></EnumEntry>", 42, kExpectedElement},
        Wrong{"<IntReg Name=\"A\"><Address>0</Address></IntReg>", 37, kExpectedElement},
        Wrong{"<SwissKnife Name=\"A\"></SwissKnife>", 21, kExpectedElement},
        Wrong{"<IntKey Name=\"A\"><p1212Parser>R</p1212Parser></IntKey>", 45, kExpectedElement},
        // Where a later element stands in its place
        Wrong{"<Integer Name=\"A\"><Min>1</Min></Integer>", 18, kExpectedElement},
        Wrong{"<Enumeration Name=\"A\"><pValue>B</pValue></Enumeration>", 22, kExpectedElement},
        Wrong{"<IntReg Name=\"A\"><Length>4</Length></IntReg>", 17, kExpectedElement},
        Wrong{"<IntReg Name=\"A\"><Address>0</Address><Length>4</Length><pPort>B</pPort></IntReg>",
              55, kExpectedElement},
        Wrong{"<Converter Name=\"A\"><FormulaFrom>1</FormulaFrom></Converter>", 20,
              kExpectedElement}));

TEST_F(Parser, RefusesAPortBeforeTheAccessModeOfAMaskedRegister) {
    EXPECT_EQ(FailureOfBody("<MaskedIntReg Name=\"A\"><Address>0</Address><pLength>B</pLength>"),
              OutOfPlace());
}

// Attributes of the root and of texts

TEST_F(Parser, NeedsEachAttributeOfTheRootButTheToolTip) {
    const std::string all = RootAttributes();
    for (size_t begin = 0; begin < all.size();) {
        const size_t end =
            all.find("\" ", begin) == std::string::npos ? all.size() : all.find("\" ", begin) + 2;
        const std::string attribute = all.substr(begin, end - begin);
        const std::string others = all.substr(0, begin) + all.substr(end);
        const bool isOptional = attribute.starts_with("ToolTip");
        m_Map.Clear();
        EXPECT_EQ(FailureOfText(DescribeWith(others, "")),
                  isOptional ? "" : ErrorAt(1, 0, "expected attribute not encountered"))
            << attribute;
        begin = end;
    }
}

TEST_F(Parser, RefusesAnUnknownAttributeOfTheRoot) {
    EXPECT_EQ(FailureOfText(DescribeWith(RootAttributes() + " Foo=\"1\"", "")),
              ErrorAt(1, 0, "unexpected attribute encountered"));
}

TEST_F(Parser, RefusesAnAttributeTwice) {
    EXPECT_EQ(FailureOfBody("<Node Name=\"A\" Name=\"B\"/>"),
              ErrorAt(2, 15, "duplicate attribute"));
}

TEST_F(Parser, RefusesAQualifiedAttributeOfTheSchema) {
    EXPECT_EQ(
        FailureOfBody("<Node xmlns:g=\"http://www.genicam.org/GenApi/Version_1_1\" g:Name=\"A\"/>"),
        ErrorAt(2, 0, "unexpected attribute encountered"));
}

TEST_F(Parser, RefusesAttributesOfPlainTexts) {
    EXPECT_EQ(FailureOfBody("<Integer Name=\"A\"><Value Index=\"1\">1</Value></Integer>"),
              ErrorAt(2, 18, "unexpected attribute encountered"));
}

TEST_F(Parser, NeedsTheAttributesOfVariablesAndIndexedValues) {
    EXPECT_EQ(FailureOfBody("<SwissKnife Name=\"A\"><pVariable>B</pVariable>"),
              ErrorAt(2, 21, "expected attribute not encountered"));
    EXPECT_EQ(FailureOfBody("<Integer Name=\"A\"><pIndex>B</pIndex><ValueIndexed>1</ValueIndexed>"),
              ErrorAt(2, 36, "expected attribute not encountered"));
}

TEST_F(Parser, AllowsAKeyInsideAConfRomItsNameAndNameSpaceAlone) {
    EXPECT_EQ(
        FailureOfBody("<ConfRom Name=\"R\"><Unit>1</Unit><Address>0</Address><Length>4</Length>"
                      "<pPort>P</pPort>\n<IntKey Name=\"K\" MergePriority=\"1\">1</IntKey>"),
        ErrorAt(3, 0, "unexpected attribute encountered"));
}

}  // namespace
}  // namespace NodeDataTest
