// Which texts are values, and how they read.

#include <cmath>
#include <cstdint>
#include <limits>

#include "ParserFixture.h"

namespace NodeDataTest {
namespace {

using GenICam_3_0_ORVANE::PropertyException;

constexpr const char* kPattern = "value does not match pattern";
constexpr const char* kTooSmall = "value is less than minimum allowed";
constexpr const char* kTooLarge = "value is greater than maximum allowed";

/// Where a text stands for a value.
struct Place {
    std::string before;
    std::string after;

    std::string With(const std::string& text) const { return before + text + after; }
    /// What its failure reads like: values are judged at the end of their element.
    std::string Error(const std::string& text, const char* error) const {
        return ErrorAt(2, static_cast<unsigned>((before + text).size()), error);
    }
};

const Place kInteger{"<Integer Name=\"A\"><Value>", "</Value></Integer>"};
const Place kFloat{"<Float Name=\"A\"><Value>", "</Value></Float>"};
const Place kAddress{"<IntReg Name=\"A\"><Address>",
                     std::string("</Address>") + kRegisterRest + "</IntReg>"};
const Place kReference{"<Node Name=\"A\"><pError>", "</pError></Node>"};

Place LengthOf(const std::string& element) {
    return {"<" + element + " Name=\"A\"><Address>0</Address><Length>",
            "</Length><AccessMode>RW</AccessMode><pPort>P</pPort></" + element + ">"};
}

class ParserValue : public Parser {
protected:
    const CProperty& Value(const Place& place, const std::string& text,
                           ID::EProperty_ID_t id = ID::Value_ID) {
        m_Map.Clear();
        Parse(place.With(text));
        return *NodeOf(m_Map, "A").FindProperty(id);
    }
    std::string Failure(const Place& place, const std::string& text) {
        m_Map.Clear();
        return FailureOfBody(place.With(text));
    }
    /// Texts of a place that pass, and texts that fail in one way.
    void Expect(const Place& place, const std::vector<const char*>& good,
                const std::vector<const char*>& bad, const char* error) {
        for (const char* const text : good) {
            EXPECT_EQ(Failure(place, text), "") << text;
        }
        for (const char* const text : bad) {
            EXPECT_EQ(Failure(place, text), place.Error(text, error));
        }
    }
};

TEST_F(ParserValue, ReadsIntegers) {
    constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
    constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();
    const std::vector<std::pair<const char*, int64_t>> texts{{"0", 0},
                                                             {"9", 9},
                                                             {"-9", -9},
                                                             {"+9", 9},
                                                             {"007", 7},
                                                             {" \n\t9\r\n", 9},
                                                             {"0x1F", 31},
                                                             {"0x1f", 31},
                                                             {"0X10", 16},
                                                             {"-0x10", -16},
                                                             {"0x0000000000000000001", 1},
                                                             {"9223372036854775807", kHighest},
                                                             {"-9223372036854775808", kLowest},
                                                             {"0x7FFFFFFFFFFFFFFF", kHighest},
                                                             {"0x8000000000000000", kLowest},
                                                             {"0xFFFFFFFFFFFFFFFF", -1}};
    for (const auto& [text, value] : texts) {
        EXPECT_EQ(Value(kInteger, text).Integer(), value) << text;
    }
}

class ParserNoInteger : public Parser, public testing::WithParamInterface<const char*> {};

TEST_P(ParserNoInteger, LeavesAsThePropertysException) {
    const std::string text = GetParam();
    EXPECT_EQ(FailureOfBody<PropertyException>(kInteger.With(text)),
              "Error in property of type 'Value': cannot convert '" + text + "' to int64_t");
    EXPECT_EQ(m_Map.GetContextNode(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(All, ParserNoInteger,
                         testing::Values("", "abc", "1a", "1 2", "1.5", "0x", "0xG", "-", "+-5",
                                         "--5", "0x-5", "10h", "9223372036854775808",
                                         "-9223372036854775809", "0x10000000000000000",
                                         "99999999999999999999999"));

TEST_F(ParserValue, NamesThePropertyThatIsNoInteger) {
    const auto message = [](const char* type) {
        return std::string("Error in property of type '") + type +
               "': cannot convert 'x' to int64_t";
    };
    const std::string masked = "<MaskedIntReg Name=\"A\"><Address>0</Address>" +
                               std::string(kRegisterRest) + "<Bit>x</Bit>";
    EXPECT_EQ(FailureOfBody<PropertyException>(masked), message("Invalid PropertyID 113"));
    m_Map.Clear();
    EXPECT_EQ(FailureOfBody<PropertyException>(
                  "<IntSwissKnife Name=\"A\"><Constant Name=\"C\">x</Constant>"),
              message("Invalid PropertyID 114"));
    m_Map.Clear();
    EXPECT_EQ(FailureOfBody<PropertyException>(kAddress.With("x")), message("Address"));
    m_Map.Clear();
    EXPECT_EQ(FailureOfBody<PropertyException>(LengthOf("FloatReg").With("x")), message("Length"));
    m_Map.Clear();
    EXPECT_EQ(
        FailureOfBody<PropertyException>(
            "<Integer Name=\"A\"><pIndex>I</pIndex><ValueIndexed Index=\"x\">1</ValueIndexed>"),
        message("Index"));
    m_Map.Clear();
    EXPECT_EQ(
        FailureOfBody<PropertyException>("<IntReg Name=\"A\"><pIndex Offset=\"x\">I</pIndex>"),
        message("Offset"));
}

TEST_F(ParserValue, ReadsDoubles) {
    const std::vector<std::pair<const char*, double>> texts{
        {"9", 9.0},        {"-9.5", -9.5},      {"+.5", 0.5},
        {"5.", 5.0},       {" 9e+9\n", 9e9},    {"9.9E-11", 9.9e-11},
        {"INF", INFINITY}, {"-INF", -INFINITY}, {"1e308", 1e308}};
    for (const auto& [text, value] : texts) {
        EXPECT_EQ(Value(kFloat, text).Float(), value) << text;
    }
    EXPECT_TRUE(std::isnan(Value(kFloat, "NaN").Float()));
}

TEST_F(ParserValue, RefusesWhatIsNoDouble) {
    Expect(kFloat, {"1"}, {"", "x", "1,5", "1e", "0x10", "--1", "+-1", "inf", "nan", "1e999"},
           "invalid double value");
    const std::string constant = "<SwissKnife Name=\"A\"><Constant Name=\"C\">x";
    EXPECT_EQ(FailureOfBody(constant + "</Constant>"),
              ErrorAt(2, static_cast<unsigned>(constant.size()), "invalid double value"));
}

TEST_F(ParserValue, ReadsAddressesAsBits) {
    EXPECT_EQ(Value(kAddress, "0xFFFFFFFFFFFFFFF0", ID::Address_ID).Integer(), -16);
    Expect(kAddress, {"0", "0x10"}, {"-1", "-0x10"}, kTooSmall);
}

TEST_F(ParserValue, LimitsTheLengthsOfIntegersByValue) {
    for (const char* const element : {"IntReg"}) {
        Expect(LengthOf(element), {"1", "8", "0x04", "08"}, {"0", "-1"}, kTooSmall);
        Expect(LengthOf(element), {}, {"9", "0x10"}, kTooLarge);
    }
}

TEST_F(ParserValue, LimitsTheLengthsOfFloatsByValue) {
    Expect(LengthOf("FloatReg"), {"4", "8", "0x08"}, {"0", "3", "5", "16"}, kPattern);
}

TEST_F(ParserValue, LimitsOtherLengthsFromBelowAlone) {
    for (const char* const element : {"Register", "StringReg"}) {
        Expect(LengthOf(element), {"1", "0x0400"}, {"0", "-4"}, kTooSmall);
    }
}

TEST_F(ParserValue, AllowsNoNegativeBitsTimesAndPrecisions) {
    const Place bit{
        "<MaskedIntReg Name=\"A\"><Address>0</Address>" + std::string(kRegisterRest) + "<Bit>",
        "</Bit><Endianess>BigEndian</Endianess></MaskedIntReg>"};
    const Place time{
        "<Command Name=\"A\"><Value>1</Value><CommandValue>1</CommandValue><PollingTime>",
        "</PollingTime></Command>"};
    const Place precision{"<Float Name=\"A\"><Value>1</Value><DisplayPrecision>",
                          "</DisplayPrecision></Float>"};
    for (const Place& place : {bit, time, precision}) {
        Expect(place, {"0", "63"}, {"-1"}, kTooSmall);
    }
}

TEST_F(ParserValue, LimitsReferencesToWords) {
    Expect(kReference, {"B", "_b", "10umx10um", " B \n"}, {"", "B C", "B-C", "B.C"}, kPattern);
}

TEST_F(ParserValue, CountsColumnsInCharacters) {
    EXPECT_EQ(FailureOfBody(kReference.With("\xC3\xA4\xC3\xB6")), ErrorAt(2, 25, kPattern));
}

TEST_F(ParserValue, LimitsNamesToWords) {
    const auto failure = [&](const std::string& name) {
        m_Map.Clear();
        return FailureOfBody("<Node Name=\"" + name + "\"/>");
    };
    EXPECT_EQ(failure("10umx10um"), "");
    EXPECT_EQ(failure(""), ErrorAt(2, 0, kPattern));
    EXPECT_EQ(failure("A B"), ErrorAt(2, 0, kPattern));
    EXPECT_EQ(failure("A.B"), ErrorAt(2, 0, kPattern));
}

TEST_F(ParserValue, LimitsTheNamesOfVariables) {
    const auto failure = [&](const std::string& name) {
        m_Map.Clear();
        return FailureOfBody("<SwissKnife Name=\"A\">\n<pVariable Name=\"" + name +
                             "\">B</pVariable><Formula>1</Formula></SwissKnife>");
    };
    for (const char* const good : {"X", "set", "var_d_736", "_x", "X.Entry.On"}) {
        EXPECT_EQ(failure(good), "") << good;
    }
    for (const char* const bad : {"", "1X", ".X", "X-Y", "X Y"}) {
        EXPECT_EQ(failure(bad), ErrorAt(3, 0, kPattern)) << bad;
    }
}

TEST_F(ParserValue, LimitsIdentifiersOfEventsAndChunksToDigits) {
    const Place event{"<Node Name=\"A\"><EventID>", "</EventID></Node>"};
    const Place chunk{"<Port Name=\"A\"><ChunkID>", "</ChunkID></Port>"};
    for (const Place& place : {event, chunk}) {
        Expect(place, {"9", "90aF", " 9001 "}, {"", "0x90", "9G", "90 01"}, kPattern);
    }
    EXPECT_EQ(Value(event, " 9001 ", ID::EventID_ID).String(), "9001");
}

TEST_F(ParserValue, NeedsAFormula) {
    const Place formula{"<SwissKnife Name=\"A\"><Formula>", "</Formula></SwissKnife>"};
    Expect(formula, {"1", " "}, {""}, "length is less than minimum allowed");
    EXPECT_EQ(Value(formula, " A &lt;\nB ", ID::Formula_ID).String(), " A <\nB ");
}

TEST_F(ParserValue, TakesTextsAsTheyStand) {
    const Place text{"<String Name=\"A\"><Value>", "</Value></String>"};
    EXPECT_EQ(Value(text, " a\n&amp;<![CDATA[<b>]]>\r\nc ").String(), " a\n&<b>\nc ");
    EXPECT_EQ(Value(text, "").String(), "");
}

TEST_F(ParserValue, RefusesElementsInTexts) {
    EXPECT_EQ(FailureOfBody("<String Name=\"A\"><Value>a<b/></Value></String>", 0),
              ErrorAt(2, 25, "unexpected element encountered"));
}

/// An element with the texts that it may hold.
struct Choice {
    Place place;
    ID::EProperty_ID_t id;
    std::vector<const char*> texts;
};

const std::vector<Choice>& AllChoices() {
    static const std::vector<const char*> yesNo{"Yes", "No"};
    static const std::vector<Choice> all{
        {{"<Node Name=\"A\"><Visibility>", "</Visibility></Node>"},
         ID::Visibility_ID,
         {"Beginner", "Expert", "Guru", "Invisible"}},
        {{"<Node Name=\"A\"><IsDeprecated>", "</IsDeprecated></Node>"}, ID::IsDeprecated_ID, yesNo},
        {{"<Node Name=\"A\"><ImposedAccessMode>", "</ImposedAccessMode></Node>"},
         ID::ImposedAccessMode_ID,
         {"RO", "WO", "RW", "NA", "NI"}},
        {{"<String Name=\"A\"><Streamable>", "</Streamable></String>"}, ID::Streamable_ID, yesNo},
        {{"<Integer Name=\"A\"><Value>1</Value><Representation>", "</Representation></Integer>"},
         ID::Representation_ID,
         {"Linear", "Logarithmic", "Boolean", "PureNumber", "HexNumber", "IPV4Address",
          "MACAddress"}},
        {{"<Float Name=\"A\"><Value>1</Value><DisplayNotation>", "</DisplayNotation></Float>"},
         ID::DisplayNotation_ID,
         {"Automatic", "Fixed", "Scientific"}},
        {{"<IntReg Name=\"A\"><Address>0</Address><Length>4</Length><AccessMode>",
          "</AccessMode><pPort>P</pPort></IntReg>"},
         ID::AccessMode_ID,
         {"RO", "WO", "RW", "NA", "NI"}},
        {{"<IntReg Name=\"A\"><Address>0</Address>" + std::string(kRegisterRest) + "<Cachable>",
          "</Cachable></IntReg>"},
         ID::Cachable_ID,
         {"NoCache", "WriteThrough", "WriteAround"}},
        {{"<IntReg Name=\"A\"><Address>0</Address>" + std::string(kRegisterRest) + "<Sign>",
          "</Sign></IntReg>"},
         ID::Sign_ID,
         {"Signed", "Unsigned"}},
        {{"<IntReg Name=\"A\"><Address>0</Address>" + std::string(kRegisterRest) + "<Endianess>",
          "</Endianess></IntReg>"},
         ID::Endianess_ID,
         {"BigEndian", "LittleEndian"}},
        {{"<Converter Name=\"A\"><FormulaTo>1</FormulaTo><FormulaFrom>1</FormulaFrom>"
          "<pValue>B</pValue><Slope>",
          "</Slope></Converter>"},
         ID::Slope_ID,
         {"Increasing", "Decreasing", "Varying", "Automatic"}},
        {{"<Converter Name=\"A\"><FormulaTo>1</FormulaTo><FormulaFrom>1</FormulaFrom>"
          "<pValue>B</pValue><IsLinear>",
          "</IsLinear></Converter>"},
         ID::IsLinear_ID,
         yesNo},
        {{"<Port Name=\"A\"><SwapEndianess>", "</SwapEndianess></Port>"},
         ID::SwapEndianess_ID,
         yesNo},
        {{"<Port Name=\"A\"><CacheChunkData>", "</CacheChunkData></Port>"},
         ID::CacheChunkData_ID,
         yesNo},
    };
    return all;
}

class ParserChoice : public ParserValue, public testing::WithParamInterface<Choice> {};

TEST_P(ParserChoice, IsOneOfItsTexts) {
    const Choice& choice = GetParam();
    for (const std::string text : choice.texts) {
        EXPECT_EQ(Value(choice.place, text, choice.id).ToString(tssValue), text);
        EXPECT_EQ(Value(choice.place, " " + text + "\n", choice.id).ToString(tssValue), text);
    }
    std::vector<const char*> wrong{"Foo", "yes", "RO RW", "_UndefinedYesNo", "_UndefinedAccesMode"};
    if (choice.id != ID::Streamable_ID) {
        wrong.push_back("");
    }
    Expect(choice.place, {}, wrong, "value is not in enumeration");
}

INSTANTIATE_TEST_SUITE_P(All, ParserChoice, testing::ValuesIn(AllChoices()),
                         [](const testing::TestParamInfo<Choice>& choice) {
                             return CPropertyID(choice.param.id).ToString();
                         });

/// An attribute's text with what is wrong with it; null for nothing.
struct AttributeText {
    const char* name;
    const char* text;
    const char* error;
};

void PrintTo(const AttributeText& attribute, std::ostream* stream) {
    *stream << attribute.name << "=" << attribute.text;
}

class ParserAttribute : public Parser, public testing::WithParamInterface<AttributeText> {};
class ParserRootAttribute : public ParserAttribute {};

TEST_P(ParserAttribute, HasItsOwnRules) {
    const AttributeText& attribute = GetParam();
    EXPECT_EQ(FailureOfBody(std::string("<Node Name=\"A\" ") + attribute.name + "=\"" +
                            attribute.text + "\"/>"),
              attribute.error == nullptr ? "" : ErrorAt(2, 0, attribute.error));
}

INSTANTIATE_TEST_SUITE_P(
    All, ParserAttribute,
    testing::Values(AttributeText{"NameSpace", "Custom", nullptr},
                    AttributeText{"NameSpace", "Other", "value is not in enumeration"},
                    AttributeText{"ExposeStatic", "No", nullptr},
                    AttributeText{"ExposeStatic", "", "value is not in enumeration"},
                    AttributeText{"MergePriority", "-1", nullptr},
                    AttributeText{"MergePriority", "+1", nullptr},
                    AttributeText{"MergePriority", "-2", kTooSmall},
                    AttributeText{"MergePriority", "2", kTooLarge},
                    AttributeText{"MergePriority", "x", "invalid integer value"}));

TEST_P(ParserRootAttribute, HasItsOwnRules) {
    const AttributeText& attribute = GetParam();
    std::string attributes = RootAttributes();
    const size_t begin = attributes.find(std::string(" ") + attribute.name + "=\"") +
                         std::string(attribute.name).size() + 3;
    attributes.replace(begin, attributes.find('"', begin) - begin, attribute.text);
    EXPECT_EQ(FailureOfText(DescribeWith(attributes, "")),
              attribute.error == nullptr ? "" : ErrorAt(1, 0, attribute.error));
}

INSTANTIATE_TEST_SUITE_P(
    All, ParserRootAttribute,
    testing::Values(
        AttributeText{"VendorName", "", nullptr},
        AttributeText{"StandardNameSpace", "None", nullptr},
        AttributeText{"StandardNameSpace", "USB", nullptr},
        AttributeText{"StandardNameSpace", "CXP", "value is not in enumeration"},
        AttributeText{"MajorVersion", "007", nullptr},
        AttributeText{"MajorVersion", "-1", "invalid integer value"},
        AttributeText{"MajorVersion", "0x1", "invalid integer value"},
        AttributeText{"MajorVersion", "", "invalid integer value"},
        AttributeText{"SubMinorVersion", "99999999999999999999", "invalid integer value"},
        AttributeText{"ProductGuid", "", nullptr}, AttributeText{"ProductGuid", "1111", kPattern},
        AttributeText{"VersionGuid", "66666666-7777-8888-9999-AAAAAAAAAAAG", kPattern},
        AttributeText{"VersionGuid", "{66666666-7777-8888-9999-AAAAAAAAAAAA}", kPattern}));

}  // namespace
}  // namespace NodeDataTest
