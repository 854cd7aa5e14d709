// Numbers, lengths and texts that no camera should have: each ends in a value
// or in an exception.

#include <cmath>
#include <functional>
#include <limits>

#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "NodeGraph.h"
#include "ports/PortWriteList.h"

namespace EngineTest {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTwoTo63 = 0x1p63;

const std::string kLowestText = "-9223372036854775808";
const std::string kHighestText = "9223372036854775807";

std::string RegisterXml(const std::string& type, const std::string& name,
                        const std::string& addressAndLength, const std::string& rest = "") {
    return RegXml{.name = name,
                  .caching = "",
                  .tail = rest,
                  .type = type,
                  .place = addressAndLength,
                  .length = "",
                  .sign = "",
                  .endianess = ""}();
}

/// Addresses and sizes in memory that need no memory.
class VastPort : public TestPort {
public:
    void Read(void* /*buffer*/, int64_t address, int64_t length) override {
        last = {false, address, length};
    }
    void Write(const void* /*buffer*/, int64_t address, int64_t length) override {
        last = {true, address, length};
    }

    Access last{};
};

// Floats that are read or written as integers.

struct FloatAsInteger {
    const char* name;
    double value;
    int64_t number;  ///< where the text is empty
    const char* text;
};

void PrintTo(const FloatAsInteger& test, std::ostream* out) {
    *out << test.name;
}

const FloatAsInteger kFloats[] = {
    {"TwoTo63", kTwoTo63, 0, "9223372036854775808.000000"},
    {"MinusTwoTo63", -kTwoTo63, kLowest, ""},
    {"BelowTwoTo63", 9223372036854774784.0, 9223372036854774784, ""},
    {"BelowMinusTwoTo63", -9223372036854777856.0, 0, "-9223372036854777856.000000"},
    {"NoNumber", std::nan(""), 0, "nan"},
    {"Infinity", kInfinity, 0, "inf"},
    {"MinusInfinity", -kInfinity, 0, "-inf"},
    {"Half", 0.5, 1, ""},
    {"MinusHalf", -0.5, -1, ""},
    {"AlmostZero", -0.49, 0, ""},
};

class FloatAsIntegerTest : public testing::TestWithParam<FloatAsInteger> {
protected:
    std::string OutOfRange(const char* operation) const {
        return std::string(operation) + ": Float value " + GetParam().text +
               " out of integer range";
    }
};

TEST_P(FloatAsIntegerTest, IsRoundedOrRefused) {
    XmlNodeMap nodes(RegisterXml("FloatReg", "Reg", "<Address>0</Address><Length>8</Length>") +
                     IntegerXml("Node", "", Element("pValue", "Reg")));
    nodes.Port().Put(0, GetParam().value);
    auto& node = nodes.Get<IInteger>("Node");
    if (*GetParam().text == '\0') {
        EXPECT_EQ(node.GetValue(), GetParam().number);
    } else {
        EXPECT_EQ(DescriptionOf<RuntimeException>([&] { node.GetValue(); }),
                  OutOfRange("CIntegerPolyRef::GetValue()"));
    }
}

TEST_P(FloatAsIntegerTest, IsAlsoOfLimits) {
    XmlNodeMap nodes(RegisterXml("FloatReg", "Reg", "<Address>0</Address><Length>8</Length>") +
                     "<Float Name=\"Limited\"><Value>0</Value><pMin>Reg</pMin><pMax>Reg</pMax>"
                     "<pInc>Reg</pInc></Float>" +
                     IntegerXml("Node", "", Element("pValue", "Limited")));
    nodes.Port().Put(0, GetParam().value);
    auto& node = nodes.Get<IInteger>("Node");
    const std::pair<const char*, std::function<int64_t()>> limits[] = {
        {"CIntegerPolyRef::GetMin()", [&] { return node.GetMin(); }},
        {"CIntegerPolyRef::GetMax()", [&] { return node.GetMax(); }},
        {"CIntegerPolyRef::GetInc()", [&] { return node.GetInc(); }},
    };
    for (const auto& [operation, ask] : limits) {
        if (*GetParam().text == '\0') {
            EXPECT_EQ(ask(), GetParam().number);
        } else if (std::isfinite(GetParam().value)) {
            EXPECT_EQ(DescriptionOf<RuntimeException>(ask), OutOfRange(operation));
        } else {
            // Limits narrow the largest and the lowest number, or say nothing.
            EXPECT_NE(DescriptionOf<RuntimeException>(ask), "");
        }
    }
}

TEST_P(FloatAsIntegerTest, IsWrittenToAnInteger) {
    XmlNodeMap nodes(RegisterXml("IntReg", "Reg", "<Address>0</Address><Length>8</Length>",
                                 "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>") +
                     "<Float Name=\"Node\"><pValue>Reg</pValue></Float>");
    auto& node = nodes.Get<IFloat>("Node");
    const std::string text =
        DescriptionOf<RuntimeException>([&] { node.SetValue(GetParam().value, false); });
    if (*GetParam().text == '\0') {
        EXPECT_EQ(text, "");
        EXPECT_EQ(nodes.Port().Peek<int64_t>(0), GetParam().number);
    } else {
        EXPECT_EQ(text, "CIntegerPolyRef::SetValue(): double value outside int64 range");
        EXPECT_EQ(nodes.Port().GetWrites(), 0U);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, FloatAsIntegerTest, testing::ValuesIn(kFloats),
                         [](const auto& test) { return std::string(test.param.name); });

// Integers at the ends of their range.

TEST(ExtremeInteger, MayBeAnyValueLimitAndStep) {
    XmlNodeMap nodes(IntegerXml("Node", "", Element("pValue", "Reg")) +
                     RegisterXml("IntReg", "Reg", "<Address>0</Address><Length>8</Length>",
                                 "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>"));
    auto& node = nodes.Get<IInteger>("Node");
    for (const int64_t value : {kLowest, kHighest, int64_t{0}, int64_t{-1}}) {
        node.SetValue(value);
        EXPECT_EQ(node.GetValue(true), value);
    }
    node.ImposeMin(kHighest);
    EXPECT_EQ(node.GetMin(), kHighest);
    EXPECT_EQ(
        DescriptionOf<OutOfRangeException>([&] { node.SetValue(kLowest); }),
        "Value = " + kLowestText + " must be equal or greater than Min = " + kHighestText + ".");
    node.ImposeMin(kLowest);
    node.ImposeMax(kLowest);
    EXPECT_EQ(node.GetMax(), kLowest);
    node.SetValue(kLowest);
}

struct Steps {
    const char* name;
    std::string limits;
    int64_t value;
    std::string failure;
};

const Steps kSteps[] = {
    {"OverTheWholeRange",
     "<Min>" + kLowestText + "</Min><Max>" + kHighestText + "</Max><Inc>" + kHighestText + "</Inc>",
     kHighest - 1, ""},
    {"BetweenTwo",
     "<Min>" + kLowestText + "</Min><Max>" + kHighestText + "</Max><Inc>" + kHighestText + "</Inc>",
     kHighest,
     "The difference between Value = " + kHighestText + " and Min = " + kLowestText +
         " must be dividable without rest by Inc = " + kHighestText + "."},
    {"BelowOne", "<Min>0</Min><Inc>" + kLowestText + "</Inc>", 1,
     "Increment must be larger than 0."},
    {"OfNothing", "<Min>0</Min><Inc>0</Inc>", 1, "Increment must be larger than 0."},
    {"WithoutARange", "<Min>" + kHighestText + "</Min><Max>" + kLowestText + "</Max>", 0,
     "Value = 0 must be equal or greater than Min = " + kHighestText + "."},
};

class ExtremeSteps : public testing::TestWithParam<Steps> {};

TEST_P(ExtremeSteps, AreCheckedWithoutOverflow) {
    XmlNodeMap nodes(IntegerXml("Node", "", "<pValue>Reg</pValue>" + GetParam().limits) +
                     RegisterXml("IntReg", "Reg", "<Address>0</Address><Length>8</Length>",
                                 "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>"));
    EXPECT_EQ(DescriptionOf<GenericException>(
                  [&] { nodes.Get<IInteger>("Node").SetValue(GetParam().value); }),
              GetParam().failure);
}

INSTANTIATE_TEST_SUITE_P(Of, ExtremeSteps, testing::ValuesIn(kSteps),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(ExtremeEnumeration, MayHaveAnyNumber) {
    XmlNodeMap nodes(RegisterXml("IntReg", "Reg", "<Address>0</Address><Length>8</Length>",
                                 "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>") +
                     "<Enumeration Name=\"E\"><EnumEntry Name=\"Low\"><Value>" + kLowestText +
                     "</Value></EnumEntry><EnumEntry Name=\"High\"><Value>" + kHighestText +
                     "</Value></EnumEntry><pValue>Reg</pValue></Enumeration>" +
                     IntegerXml("Nearest", "", Element("pValue", "E")));
    auto& choice = nodes.Get<IEnumeration>("E");
    choice = "High";
    EXPECT_EQ(nodes.Port().Peek<int64_t>(0), kHighest);
    nodes.Get<IInteger>("Nearest").SetValue(-1, false);
    EXPECT_EQ(nodes.Port().Peek<int64_t>(0), kLowest);
    EXPECT_EQ(*choice, "Low");
    // As a double the highest number is one too many.
    choice = "High";
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { nodes.Get<IInteger>("Nearest").GetValue(); }),
              "CIntegerPolyRef::GetValue(): Float value 9223372036854775808.000000 out of integer "
              "range");
}

TEST(ExtremeEnumeration, HasNoIntegerForWhatIsNoNumber) {
    for (const char* const number : {"NaN", "INF", "-INF", "1e300"}) {
        XmlNodeMap nodes("<Enumeration Name=\"E\"><EnumEntry Name=\"A\"><Value>0</Value>" +
                         Element("NumericValue", number) +
                         "</EnumEntry><Value>0</Value></Enumeration>"
                         "<IntSwissKnife Name=\"K\"><pVariable Name=\"X.Entry.A\">E</pVariable>"
                         "<Formula>X.Entry.A</Formula></IntSwissKnife>" +
                         IntegerXml("I", "", Element("pValue", "E")));
        EXPECT_THROW(nodes.Get<IInteger>("K").GetValue(), RuntimeException) << number;
        EXPECT_THROW(nodes.Get<IInteger>("I").GetValue(), RuntimeException) << number;
    }
}

TEST(ExtremeCommand, TakesAnyNumber) {
    for (const std::string& number : {kLowestText, kHighestText}) {
        XmlNodeMap nodes(RegisterXml("IntReg", "Reg", "<Address>0</Address><Length>8</Length>",
                                     "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>") +
                         "<Command Name=\"C\"><pValue>Reg</pValue>" +
                         Element("CommandValue", number) + "</Command>");
        nodes.Get<ICommand>("C").Execute();
        EXPECT_EQ(std::to_string(nodes.Port().Peek<int64_t>(0)), number);
        EXPECT_FALSE(nodes.Get<ICommand>("C").IsDone());
    }
}

TEST(ExtremeBoolean, StandsForAnyNumbers) {
    XmlNodeMap nodes(RegisterXml("IntReg", "Reg", "<Address>0</Address><Length>8</Length>",
                                 "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>") +
                     "<Boolean Name=\"B\"><pValue>Reg</pValue>" + Element("OnValue", kLowestText) +
                     Element("OffValue", kHighestText) + "</Boolean>");
    nodes.Get<IBoolean>("B").SetValue(true);
    EXPECT_EQ(nodes.Port().Peek<int64_t>(0), kLowest);
    EXPECT_TRUE(nodes.Get<IBoolean>("B").GetValue(true));
}

TEST(ExtremePolling, CountsUpToAnyTime) {
    NotingCallback::Calls calls;
    XmlNodeMap nodes(RegXml{.name = "Reg", .polling = Element("PollingTime", kHighestText)}());
    NotingCallback::On(nodes.Get("Reg"), calls);
    nodes->Poll(kHighest - 1);
    EXPECT_TRUE(calls.empty());
    nodes->Poll(kHighest);
    EXPECT_EQ(calls.size(), 2U);
    nodes->Poll(-1);
    nodes->Poll(kLowest);
    EXPECT_EQ(calls.size(), 2U);
}

TEST(ExtremeConverter, RefusesWhatItsSourceCannotTake) {
    XmlNodeMap nodes(RegisterXml("IntReg", "Reg", "<Address>0</Address><Length>8</Length>",
                                 "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>") +
                     "<Converter Name=\"C\"><FormulaTo>FROM * 1e300</FormulaTo>"
                     "<FormulaFrom>TO * 1e300</FormulaFrom><pValue>Reg</pValue>"
                     "<Slope>Automatic</Slope></Converter>"
                     "<IntConverter Name=\"I\"><FormulaTo>FROM * FROM</FormulaTo>"
                     "<FormulaFrom>0 - TO</FormulaFrom><pValue>Reg</pValue>"
                     "<Slope>Automatic</Slope></IntConverter>");
    auto& converter = nodes.Get<IFloat>("C");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { converter.SetValue(kInfinity, false); }),
              "CIntegerPolyRef::SetValue(): double value outside int64 range");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { converter.SetValue(std::nan(""), false); }),
              "CIntegerPolyRef::SetValue(): double value outside int64 range");
    EXPECT_EQ(converter.GetMax(), std::numeric_limits<double>::max());
    nodes.Port().Put(0, kLowest);
    auto& wrapping = nodes.Get<IInteger>("I");
    EXPECT_EQ(wrapping.GetValue(), kLowest);
    wrapping.SetValue(kLowest, false);
    EXPECT_EQ(nodes.Port().Peek<int64_t>(0), 0);
    wrapping.GetMin();
    wrapping.GetMax();
}

// Addresses.

TEST(ExtremeAddress, WrapsAsBitsDo) {
    VastPort port;
    XmlNodeMap nodes(
        IntegerXml("Index", "", Element("Value", kHighestText)) +
        RegisterXml("Register", "Sum",
                    Element("Address", kHighestText) + Element("Address", kHighestText) +
                        "<Length>4</Length>") +
        RegisterXml("Register", "Product",
                    "<Address>0</Address><pIndex Offset=\"" + kHighestText +
                        "\">Index</pIndex><Length>4</Length>") +
        RegisterXml("Register", "Lengths", "<pIndex>Index</pIndex>" + Element("Length", "1000")));
    nodes->Connect(&port);
    EXPECT_EQ(nodes.Get<IRegister>("Sum").GetAddress(), -2);
    EXPECT_EQ(nodes.Get<IRegister>("Product").GetAddress(), 1);
    EXPECT_EQ(nodes.Get<IRegister>("Lengths").GetAddress(), -1000);
    uint8_t bytes[4];
    nodes.Get<IRegister>("Sum").Get(bytes, sizeof(bytes));
    EXPECT_EQ(port.last, (TestPort::Access{false, -2, 4}));
}

TEST(ExtremeAddress, IsRefusedByThePortThatHasNone) {
    XmlNodeMap nodes(
        RegisterXml("Register", "Reg", Element("Address", kHighestText) + "<Length>4</Length>"));
    uint8_t bytes[4] = {};
    EXPECT_THROW(nodes.Get<IRegister>("Reg").Get(bytes, sizeof(bytes)), OutOfRangeException);
    EXPECT_THROW(nodes.Get<IRegister>("Reg").Set(bytes, sizeof(bytes)), OutOfRangeException);
}

// Lengths.

/// Registers whose length the device tells.
class ExtremeLength : public testing::TestWithParam<int64_t> {
protected:
    ExtremeLength() {
        nodes.Port().Put(0, GetParam());
        nodes.Get<INode>("Length").InvalidateNode();
    }

    XmlNodeMap nodes{
        RegisterXml("IntReg", "Length", "<Address>0</Address><Length>8</Length>",
                    "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>") +
        RegisterXml("Register", "Raw", "<Address>8</Address><pLength>Length</pLength>") +
        RegisterXml("StringReg", "Text", "<Address>8</Address><pLength>Length</pLength>") +
        RegisterXml("IntReg", "Number", "<Address>8</Address><pLength>Length</pLength>",
                    "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>") +
        RegisterXml("FloatReg", "Real", "<Address>8</Address><pLength>Length</pLength>",
                    "<Endianess>LittleEndian</Endianess>")};
};

TEST_P(ExtremeLength, IsRefusedByException) {
    uint8_t bytes[16] = {};
    auto& raw = nodes.Get<IRegister>("Raw");
    EXPECT_EQ(raw.GetLength(), GetParam());
    EXPECT_THROW(raw.Get(bytes, -1), OutOfRangeException);
    EXPECT_THROW(raw.Set(bytes, -1), OutOfRangeException);
    EXPECT_THROW(nodes.Get<IValue>("Raw").ToString(), OutOfRangeException);
    EXPECT_THROW(nodes.Get<IValue>("Raw").FromString("0x01"), OutOfRangeException);
    EXPECT_THROW(nodes.Get<IString>("Text").GetValue(), OutOfRangeException);
    EXPECT_THROW(nodes.Get<IString>("Text").SetValue("text"), OutOfRangeException);
    EXPECT_THROW(nodes.Get<IInteger>("Number").GetValue(), OutOfRangeException);
    EXPECT_THROW(nodes.Get<IInteger>("Number").SetValue(1, false), OutOfRangeException);
    EXPECT_THROW(nodes.Get<IInteger>("Number").GetMin(), OutOfRangeException);
    EXPECT_THROW(nodes.Get<IFloat>("Real").SetValue(1, false), RuntimeException);
    EXPECT_EQ(nodes.Port().GetWrites(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Of, ExtremeLength,
                         testing::Values(kLowest, -1, int64_t{1} << 31, kHighest),
                         [](const auto& test) { return "Case" + std::to_string(test.index); });

TEST(ZeroLength, HasNoBytes) {
    XmlNodeMap nodes(RegisterXml("Register", "Raw", "<Address>8</Address><pLength>L</pLength>") +
                     RegisterXml("StringReg", "Text", "<Address>8</Address><pLength>L</pLength>") +
                     IntegerXml("L", "", "<Value>0</Value>"));
    EXPECT_EQ(nodes.Get<IValue>("Raw").ToString(), "0x");
    nodes.Get<IValue>("Raw").FromString("");
    EXPECT_EQ(nodes.Get<IString>("Text").GetValue(), "");
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { nodes.Get<IString>("Text").SetValue(""); }),
              "String exceeds maximum length. Max length is 0");
}

/// The port decides whether there are that many bytes; until then they take no
/// memory.
TEST(GigabyteLength, IsAskedOfThePort) {
    VastPort port;
    constexpr int64_t kGigabyte = int64_t{1} << 30;
    XmlNodeMap nodes(RegisterXml("Register", "Raw", "<Address>0</Address><pLength>L</pLength>") +
                     RegisterXml("StringReg", "Text", "<Address>0</Address><pLength>L</pLength>",
                                 "<Cachable>NoCache</Cachable>") +
                     IntegerXml("L", "", Element("Value", std::to_string(kGigabyte))));
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { nodes.Get<IValue>("Raw").ToString(); }),
              "No memory at 0x0");
    EXPECT_EQ(
        DescriptionOf<OutOfRangeException>([&] { nodes.Get<IValue>("Raw").FromString("01"); }),
        "No memory at 0x0");
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { nodes.Get<IString>("Text").GetValue(); }),
              "No memory at 0x0");
    nodes->Connect(&port);
    EXPECT_EQ(nodes.Get<IString>("Text").GetValue(), "");
    EXPECT_EQ(port.last, (TestPort::Access{false, 0, kGigabyte}));
    nodes.Get<IString>("Text").SetValue("text");
    EXPECT_EQ(port.last, (TestPort::Access{true, 0, kGigabyte}));
}

TEST(FloatLength, OfNeitherKindFailsTheRead) {
    for (const auto& [length, text] :
         {std::pair("9", "Length <= 8"), std::pair("3", "Length == kDoubleLength"),
          std::pair("0", "Length == kDoubleLength"), std::pair("-1", "Length == kDoubleLength")}) {
        XmlNodeMap nodes(RegisterXml("FloatReg", "F", "<Address>0</Address><pLength>L</pLength>") +
                         IntegerXml("L", "", Element("Value", length)));
        EXPECT_EQ(DescriptionOf<RuntimeException>([&] { nodes.Get<IFloat>("F").GetValue(); }),
                  text);
        EXPECT_EQ(nodes.Port().GetReads(), 0U);
    }
}

// Bits.

namespace {

std::string BitsXml(const std::string& lsb, const std::string& msb) {
    return RegisterXml(
        "MaskedIntReg", "M", "<Address>0</Address><Length>8</Length>",
        Element("LSB", lsb) + Element("MSB", msb) + "<Endianess>LittleEndian</Endianess>");
}

/// What the use of a field of these bits raises; empty where it can be used.
std::string FailureOfBits(const std::string& lsb, const std::string& msb) {
    XmlNodeMap nodes(BitsXml(lsb, msb) + IntegerXml("Other"));
    EXPECT_EQ(nodes.Get<IInteger>("Other").GetValue(), 1);
    auto& node = nodes.Get<IInteger>("M");
    const auto failure = DescriptionOf<RuntimeException>([&] { node.GetValue(); });
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { node.SetValue(1, false); }), failure);
    EXPECT_EQ(node.GetAccessMode(), failure.empty() ? RW : NA);
    return failure;
}

using ExtremeBit = testing::TestWithParam<const char*>;

}  // namespace

/// A number that only looks like that of a bit when cut must not become one.
TEST_P(ExtremeBit, IsRaisedWhenTheFieldIsUsed) {
    EXPECT_EQ(FailureOfBits(GetParam(), "3"), "m_LSB < 64");
    EXPECT_EQ(FailureOfBits("0", GetParam()), "m_MSB < 64");
}

INSTANTIATE_TEST_SUITE_P(Of, ExtremeBit,
                         testing::Values("64", "4294967296", "9223372036854775807",
                                         "0xFFFFFFFFFFFFFFFF"));

TEST(Bits, AreNeverAllOfTheNumber) {
    EXPECT_EQ(FailureOfBits("0", "63"), "m_MSB - m_LSB + 1 < sizeof(int64_t) * 8");
    EXPECT_EQ(FailureOfBits("1", "63"), "");
}

// Texts.

TEST(ExtremeText, OfANumberIsRefusedOrRead) {
    XmlNodeMap nodes(RegisterXml("IntReg", "Reg", "<Address>0</Address><Length>8</Length>",
                                 "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>") +
                     "<Float Name=\"F\"><Value>1</Value></Float>"
                     "<Boolean Name=\"B\"><Value>1</Value></Boolean>");
    auto& number = nodes.Get<IValue>("Reg");
    number.FromString(kLowestText.c_str());
    EXPECT_EQ(nodes.Port().Peek<int64_t>(0), kLowest);
    EXPECT_EQ(number.ToString(), kLowestText.c_str());
    number.FromString("0xffffffffffffffff");
    EXPECT_EQ(nodes.Port().Peek<int64_t>(0), -1);
    const gcstring enormous(std::string(1 << 20, 'x').c_str());
    for (const gcstring& text : {gcstring(""), gcstring(" "), gcstring("-"), enormous}) {
        for (const char* const node : {"Reg", "F", "B"}) {
            EXPECT_THROW(nodes.Get<IValue>(node).FromString(text), InvalidArgumentException)
                << node;
        }
    }
    for (const char* const text : {"nan", "inf", "1e400"}) {
        EXPECT_THROW(nodes.Get<IValue>("F").FromString(text), InvalidArgumentException) << text;
    }
}

struct ExtremeTexts {
    const char* representation;
    const char* ofLowest;
    const char* ofHighest;
};

class ExtremeRepresentation : public testing::TestWithParam<ExtremeTexts> {};

TEST_P(ExtremeRepresentation, PrintsTheEndsOfTheRange) {
    XmlNodeMap nodes(RegisterXml("IntReg", "Reg", "<Address>0</Address><Length>8</Length>",
                                 "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess>" +
                                     Element("Representation", GetParam().representation)));
    auto& number = nodes.Get<IInteger>("Reg");
    number.SetValue(kLowest);
    EXPECT_EQ(number.ToString(), GetParam().ofLowest);
    number.SetValue(kHighest);
    EXPECT_EQ(number.ToString(), GetParam().ofHighest);
    EXPECT_THROW(number.FromString(""), InvalidArgumentException);
}

INSTANTIATE_TEST_SUITE_P(
    As, ExtremeRepresentation,
    testing::Values(ExtremeTexts{"Linear", "-9223372036854775808", "9223372036854775807"},
                    ExtremeTexts{"Logarithmic", "-9223372036854775808", "9223372036854775807"},
                    ExtremeTexts{"Boolean", "true", "true"},
                    ExtremeTexts{"PureNumber", "-9223372036854775808", "9223372036854775807"},
                    ExtremeTexts{"HexNumber", "0x8000000000000000", "0x7fffffffffffffff"},
                    ExtremeTexts{"IPV4Address", "0.0.0.0", "255.255.255.255"},
                    ExtremeTexts{"MACAddress", "00:00:00:00:00:00", "ff:ff:ff:ff:ff:ff"}),
    [](const auto& test) { return std::string(test.param.representation); });

TEST(ExtremeFloat, PrintsWhatIsNoNumber) {
    XmlNodeMap nodes(RegisterXml("FloatReg", "Reg", "<Address>0</Address><Length>8</Length>",
                                 "<Endianess>LittleEndian</Endianess>"
                                 "<DisplayNotation>Fixed</DisplayNotation>"
                                 "<DisplayPrecision>9223372036854775807</DisplayPrecision>"));
    auto& number = nodes.Get<IFloat>("Reg");
    for (const double value : {kInfinity, -kInfinity, std::nan(""), 1e308, 5e-324}) {
        number.SetValue(value, false);
        EXPECT_NE(number.ToString(), "");
    }
    number.ImposeMin(std::nan(""));
    number.ImposeMax(kInfinity);
    number.SetValue(1);
    EXPECT_THROW(number.SetValue(std::nan("")), OutOfRangeException);
    EXPECT_THROW(number.SetValue(kInfinity), OutOfRangeException);
}

TEST(ExtremeString, IsTakenToTheLastByteAndNoFurther) {
    constexpr size_t kLength = 4096;
    XmlNodeMap nodes(RegisterXml("StringReg", "S", "<Address>0</Address><Length>4096</Length>"));
    auto& text = nodes.Get<IString>("S");
    const gcstring longest(std::string(kLength - 1, 'x').c_str());
    text.SetValue(longest);
    EXPECT_EQ(text.GetValue(true, true), longest);
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { text.SetValue(longest + "x"); }),
              "String exceeds maximum length. Max length is 4096");
    text.SetValue("");
    EXPECT_EQ(text.GetValue(true, true), "");
}

// What a client hands over.

TEST(NullBuffer, IsRefusedEvenWhereTheCallIsLogged) {
    EngineLog log;
    XmlNodeMap nodes(RegisterXml("Register", "Raw", "<Address>0</Address><Length>4</Length>"));
    auto& raw = nodes.Get<IRegister>("Raw");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { raw.Set(nullptr, 4); }),
              "CRegisterImpl::InternalSet : pBuffer must not be NULL");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { raw.Get(nullptr, 4); }),
              "CRegisterImpl::InternalGet : pBuffer must not be NULL");
}

TEST(WriteList, RefusesLessThanNoBytes) {
    CPortWriteList list;
    const uint8_t byte = 1;
    EXPECT_THROW(list.Write(&byte, 0, -1), InvalidArgumentException);
    EXPECT_THROW(list.Write(nullptr, 0, 1), InvalidArgumentException);
    list.Write(&byte, 0, 0);
}

}  // namespace

}  // namespace EngineTest
