// Nodes whose value is a formula: variables, access, caching, what they tell.

#include <limits>

#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "NodeGraph.h"
#include "formula/SwissKnifeBase.h"

namespace EngineTest {

namespace {

/// A formula over variables, each given as "NAME=Node".
struct KnifeXml {
    std::string name = "Knife";
    std::string formula;
    std::vector<std::pair<std::string, std::string>> variables = {};
    std::string implied = {};  ///< constants and expressions
    std::string tail = {};     ///< elements behind the formula
    std::string common = {};   ///< elements that all nodes have

    std::string As(const std::string& type) const {
        std::string xml = "<" + type + " Name=\"" + name + "\">" + common;
        for (const auto& [variable, node] : variables) {
            xml.append("<pVariable Name=\"").append(variable).append("\">");
            xml.append(node).append("</pVariable>");
        }
        return xml + implied + Element("Formula", "<![CDATA[" + formula + "]]>") + tail + "</" +
               type + ">";
    }
    std::string Float() const { return As("SwissKnife"); }
    std::string Integer() const { return As("IntSwissKnife"); }
};

double FloatOf(const std::string& body, const char* name = "Knife") {
    return XmlNodeMap(body).Get<IFloat>(name).GetValue();
}
int64_t IntegerOf(const std::string& body, const char* name = "Knife") {
    return XmlNodeMap(body).Get<IInteger>(name).GetValue();
}

}  // namespace

TEST(SwissKnife, ComputesFromItsVariables) {
    XmlNodeMap nodes(
        KnifeXml{.formula = "RAW*GAIN+0.5", .variables = {{"RAW", "Reg"}, {"GAIN", "Gain"}}}
            .Float() +
        IntReg("Reg", 0) +
        "<FloatReg Name=\"Gain\"><Address>8</Address><Length>8</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "<Endianess>LittleEndian</Endianess></FloatReg>");
    auto& knife = nodes.Get<IFloat>("Knife");
    nodes.Port().Put<int32_t>(0, 4);
    nodes.Port().Put(8, 1.25);
    EXPECT_EQ(knife.GetValue(), 5.5);
    nodes.Get<IInteger>("Reg").SetValue(-8);
    EXPECT_EQ(knife.GetValue(), -9.5);
    nodes.Get<IFloat>("Gain").SetValue(0.5);
    EXPECT_EQ(knife.GetValue(), -3.5);
}

TEST(IntSwissKnife, ComputesFromItsVariablesInIntegers) {
    const std::string variables = IntReg("Reg", 0) +
                                  "<Float Name=\"Float\"><Value>2.5</Value></Float>" +
                                  "<Boolean Name=\"Flag\"><Value>1</Value></Boolean>";
    XmlNodeMap nodes(KnifeXml{.formula = "RAW/2+FLOAT*100+FLAG",
                              .variables = {{"RAW", "Reg"}, {"FLOAT", "Float"}, {"FLAG", "Flag"}}}
                         .Integer() +
                     variables);
    nodes.Port().Put<int32_t>(0, 7);
    EXPECT_EQ(nodes.Get<IInteger>("Knife").GetValue(), 3 + 300 + 1);
}

TEST(SwissKnife, KnowsConstantsAndExpressions) {
    const std::string implied =
        "<Constant Name=\"STEP\">0.25</Constant><Constant Name=\"BASE\">10</Constant>"
        "<Expression Name=\"SCALED\">RAW*STEP</Expression>";
    XmlNodeMap nodes(
        KnifeXml{.formula = "BASE+SCALED", .variables = {{"RAW", "Raw"}}, .implied = implied}
            .Float() +
        IntegerXml("Raw", "", Element("Value", "6")));
    EXPECT_EQ(nodes.Get<IFloat>("Knife").GetValue(), 11.5);
    EXPECT_EQ(nodes.Get<IFloat>("_Knife_SCALED").GetValue(), 1.5);
}

TEST(IntSwissKnife, KnowsConstantsAndExpressions) {
    const std::string implied =
        "<Constant Name=\"MASK\">0xF0</Constant><Expression Name=\"HIGH\">RAW >> 4</Expression>";
    EXPECT_EQ(IntegerOf(KnifeXml{.formula = "HIGH+(RAW&MASK)",
                                 .variables = {{"RAW", "Raw"}},
                                 .implied = implied}
                            .Integer() +
                        IntegerXml("Raw", "", Element("Value", "0x1A5"))),
              0x1A + 0xA0);
}

TEST(SwissKnife, ComputesWithoutVariables) {
    EXPECT_EQ(FloatOf(KnifeXml{.formula = "SQRT(16)+PI-PI"}.Float()), 4.0);
    EXPECT_EQ(IntegerOf(KnifeXml{.formula = "(1 << 40) | 1"}.Integer()), (int64_t{1} << 40) | 1);
}

TEST(SwissKnife, MayReadAnotherOne) {
    EXPECT_EQ(FloatOf(KnifeXml{.formula = "A*2", .variables = {{"A", "Inner"}}}.Float() +
                      KnifeXml{.name = "Inner", .formula = "7/2"}.Integer()),
              6.0);
}

// What a name behind a point picks.

namespace {

struct Extension {
    const char* name;
    double value;
};

class ExtendedVariable : public testing::TestWithParam<Extension> {
protected:
    static std::string Nodes() {
        return "<Integer Name=\"Width\"><Visibility>Guru</Visibility><Value>32</Value>"
               "<Min>16</Min><Max>640</Max><Inc>8</Inc></Integer>"
               "<Enumeration Name=\"Mode\">"
               "<EnumEntry Name=\"Slow\"><Value>3</Value></EnumEntry>"
               "<EnumEntry Name=\"Fast\"><Value>7</Value><NumericValue>12</NumericValue>"
               "</EnumEntry><Value>3</Value></Enumeration>";
    }
    static KnifeXml Knife(const std::string& variable) {
        const char* const node = variable.starts_with("MODE") ? "Mode" : "Width";
        return {.formula = variable + "+1", .variables = {{variable, node}}};
    }
};

}  // namespace

TEST_P(ExtendedVariable, StandsForAnAspectOfItsNode) {
    const auto [name, value] = GetParam();
    EXPECT_EQ(FloatOf(Knife(name).Float() + Nodes()), value + 1);
    EXPECT_EQ(IntegerOf(Knife(name).Integer() + Nodes()), static_cast<int64_t>(value) + 1);
}

INSTANTIATE_TEST_SUITE_P(
    Aspects, ExtendedVariable,
    testing::Values(Extension{"W", 32}, Extension{"W.Value", 32}, Extension{"W.Min", 16},
                    Extension{"W.Max", 640}, Extension{"W.Inc", 8}, Extension{"W.AccessMode", RW},
                    Extension{"W.Visibility", Guru}, Extension{"W.CachingMode", WriteThrough},
                    Extension{"MODE", 3}, Extension{"MODE.Value", 3},
                    Extension{"MODE.Entry.Slow", 3}, Extension{"MODE.Entry.Fast", 12}),
    [](const auto& row) {
        std::string name = row.param.name;
        std::replace(name.begin(), name.end(), '.', '_');
        return name;
    });

namespace {

template <class Interface>
std::string FailureToRead(const std::string& body) {
    XmlNodeMap nodes(body);
    return DescriptionOf<RuntimeException>([&] { nodes.Get<Interface>("Knife").GetValue(); });
}

}  // namespace

TEST(SwissKnife, RefusesExtensionsThatItDoesNotKnow) {
    const std::string width = IntegerXml("Width");
    for (const std::string extension : {"Foo", "value", "Entry", "Min.Max", ""}) {
        const KnifeXml knife{.formula = "1", .variables = {{"W." + extension, "Width"}}};
        EXPECT_EQ(FailureToRead<IFloat>(knife.Float() + width), "Invalid Extension " + extension);
        EXPECT_EQ(FailureToRead<IInteger>(knife.Integer() + width),
                  "Invalid Extension " + extension);
    }
}

TEST(SwissKnife, RefusesEntriesOfWhatIsNoEnumeration) {
    const KnifeXml knife{.formula = "1", .variables = {{"W.Entry.Slow", "Width"}}};
    EXPECT_EQ(FailureToRead<IFloat>(knife.Float() + IntegerXml("Width")),
              "Variable does not point to enumeration W.Entry.Slow");
    EXPECT_EQ(FailureToRead<IInteger>(knife.Integer() + IntegerXml("Width")),
              "Variable 'W.Entry.Slow' does not point to enumeration");
}

TEST(SwissKnife, RefusesEntriesThatTheEnumerationDoesNotHave) {
    const KnifeXml knife{.formula = "1", .variables = {{"M.Entry.Slow", "Mode"}}};
    const std::string mode =
        "<Enumeration Name=\"Mode\"><EnumEntry Name=\"Fast\"><Value>7</Value></EnumEntry>"
        "<Value>7</Value></Enumeration>";
    const std::string text = "Variable 'M.Entry.Slow' does not point to EnumEntry 'Slow'";
    EXPECT_EQ(FailureToRead<IFloat>(knife.Float() + mode), text);
    EXPECT_EQ(FailureToRead<IInteger>(knife.Integer() + mode), text);
}

// Failures.

TEST(SwissKnife, RaisesWhyItsFormulaDoesNotParseWhenItIsUsed) {
    const KnifeXml knife{.formula = "A+(B", .variables = {{"A", "A"}}};
    XmlNodeMap nodes(knife.Float() + IntegerXml("A"));
    const std::string text =
        "Knife : Failed to parse formula 'A+(B' : error message is '#Brackets do not match!'";
    auto& node = nodes.Get<IFloat>("Knife");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { node.GetValue(); }), text);
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { node.GetValue(true, true); }), text);
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { node.ToString(); }), text);
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { node.GetMin(); }), text);
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { node.GetMax(); }), text);
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { node.SetValue(1, false); }), text);
    EXPECT_EQ(nodes.Get<IInteger>("A").GetValue(), 1);
    gcstring_vector errors;
    EXPECT_FALSE(nodes->ParseSwissKnifes(&errors));
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_THAT(errors[0].c_str(),
                testing::StartsWith("Error while parsing equation for node 'Knife': " + text));
}

TEST(IntSwissKnife, LoadsWithAFunctionThatItsLanguageDoesNotHave) {
    const KnifeXml knife{.formula = "ABS(MAXIMUM - INDEX-1)",
                         .variables = {{"MAXIMUM", "A"}, {"INDEX", "A"}}};
    XmlNodeMap nodes(knife.Integer() + IntegerXml("A"));
    EXPECT_EQ(
        DescriptionOf<LogicalErrorException>([&] { nodes.Get<IInteger>("Knife").GetValue(); }),
        "Knife : Failed to parse formula 'ABS(MAXIMUM - INDEX-1)' : error message is "
        "'# ABS - Unknown function/variable!'");
}

TEST(SwissKnife, ThatDoesNotParseMakesThoseUnavailableWhoseAccessModeNeedsIt) {
    const std::string knife = KnifeXml{.formula = "(1"}.Integer();
    for (const char* const link : {"pIsAvailable", "pIsImplemented", "pIsLocked"}) {
        XmlNodeMap nodes(knife + IntegerXml("A", Element(link, "Knife")));
        EXPECT_EQ(nodes.Get("A").GetAccessMode(), NA) << link;
        EXPECT_EQ(nodes.Get("Knife").GetAccessMode(), NA);
        EXPECT_EQ(nodes.Get("Device").GetAccessMode(), RW);
        EXPECT_EQ(DescriptionOf<AccessException>([&] { nodes.Get<IInteger>("A").GetValue(); }),
                  "Node is not readable.");
    }
}

TEST(SwissKnife, ThatDoesNotParseIsNotImplementedWhereItSaysSo) {
    XmlNodeMap nodes(
        KnifeXml{.formula = "(1", .common = Element("pIsImplemented", "No")}.Integer() +
        IntegerXml("No", "", "<Value>0</Value>"));
    EXPECT_EQ(nodes.Get("Knife").GetAccessMode(), NI);
}

TEST(SwissKnife, ThatDoesNotParseFailsItsConverter) {
    for (const bool isFrom : {true, false}) {
        XmlNodeMap nodes(std::string("<Converter Name=\"Conv\"><FormulaTo>") +
                         (isFrom ? "FROM" : "FROM*(2") + "</FormulaTo><FormulaFrom>" +
                         (isFrom ? "TO*(2" : "TO") +
                         "</FormulaFrom><pValue>A</pValue></Converter>" + IntegerXml("A"));
        const std::string text = std::string("Conv_Convert") + (isFrom ? "From" : "To") +
                                 " : Failed to parse formula '" + (isFrom ? "TO*(2" : "FROM*(2") +
                                 "' : error message is '#Brackets do not match!'";
        auto& node = nodes.Get<IFloat>("Conv");
        EXPECT_EQ(node.GetAccessMode(), NA);
        EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { node.GetValue(); }), text);
        EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { node.SetValue(1); }), text);
    }
}

TEST(SwissKnife, IsCheckedAgainByItsMap) {
    XmlNodeMap nodes(
        KnifeXml{.formula = "A*2", .variables = {{"A", "A"}}}.Float() +
        KnifeXml{.name = "Int", .formula = "A*3", .variables = {{"A", "A"}}}.Integer() +
        IntegerXml("A", "", Element("Value", "5")));
    gcstring_vector errors;
    EXPECT_TRUE(nodes->ParseSwissKnifes(&errors));
    EXPECT_EQ(errors.size(), 0U);
    EXPECT_EQ(nodes.Get<IFloat>("Knife").GetValue(), 10);
    EXPECT_EQ(nodes.Get<IInteger>("Int").GetValue(), 15);
}

namespace {

/// Notes whether another thread could have changed it while it was checked.
class WatchedKnife : public CSwissKnife {
public:
    void CheckExpressions() override { wasFree = IsFreeForOthers(GetLock()); }

    bool wasFree = true;
};

}  // namespace

TEST(SwissKnife, IsCheckedWithTheLockOfItsMap) {
    NodesByHand nodes;
    auto& knife = nodes.Add<WatchedKnife>("Knife");
    nodes.Set(knife, CPropertyID::Formula_ID, std::string_view("1"));
    nodes.Complete();
    knife.wasFree = true;
    EXPECT_TRUE(nodes.Map().ParseSwissKnifes(nullptr));
    EXPECT_FALSE(knife.wasFree);
}

TEST(SwissKnife, TellsWhyItsFormulaCannotBeEvaluated) {
    for (const bool isFloat : {true, false}) {
        const KnifeXml knife{.formula = "100/A", .variables = {{"A", "Reg"}}};
        XmlNodeMap nodes((isFloat ? knife.Float() : knife.Integer()) + IntReg("Reg", 0));
        const auto read = [&] {
            return isFloat ? nodes.Get<IFloat>("Knife").GetValue()
                           : static_cast<double>(nodes.Get<IInteger>("Knife").GetValue());
        };
        EXPECT_EQ(DescriptionOf<LogicalErrorException>(read),
                  "Knife : Failed to evaluate formula '100/A' : error message is "
                  "'#Infinity somewhere!'");
        EXPECT_FALSE(nodes.Get<IValue>("Knife").IsValueCacheValid());
        nodes.Get<IInteger>("Reg").SetValue(4);
        EXPECT_EQ(read(), 25.0);
        EXPECT_TRUE(nodes.Get<IValue>("Knife").IsValueCacheValid());
    }
}

TEST(SwissKnife, FailsWithAVariableThatCannotBeRead) {
    XmlNodeMap nodes(KnifeXml{.formula = "A", .variables = {{"A", "Reg"}}}.Float() +
                     IntReg("Reg", 0));
    nodes.Port().FailAccess(1);
    EXPECT_THROW(nodes.Get<IFloat>("Knife").GetValue(), TimeoutException);
    EXPECT_EQ(nodes.Get<IFloat>("Knife").GetValue(), 0.0);
}

TEST(SwissKnife, DoesNotRecurseForeverWhenItReadsItself) {
    const KnifeXml knife{.formula = "A+1", .variables = {{"A", "Knife"}}};
    XmlNodeMap floats(knife.Float(), {.schemaMinor = 0});
    const std::string text =
        "Knife : Failed to evaluate formula 'A+1' : error message is '#Internal error!'";
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { floats.Get<IFloat>("Knife").GetValue(); }),
              text);
    XmlNodeMap integers(knife.Integer(), {.schemaMinor = 0});
    EXPECT_EQ(
        DescriptionOf<LogicalErrorException>([&] { integers.Get<IInteger>("Knife").GetValue(); }),
        text);
    // The next attempt fails in the same way.
    EXPECT_THROW(integers.Get<IInteger>("Knife").GetValue(), LogicalErrorException);
}

TEST(SwissKnife, MayDecideOverTheAccessToItsOwnVariable) {
    const KnifeXml knife{.formula = "A>0", .variables = {{"A", "Reg"}}};
    XmlNodeMap nodes(
        knife.Integer() +
            RegXml{.name = "Reg", .address = 0, .common = Element("pIsAvailable", "Knife")}(),
        {.schemaMinor = 0});
    nodes.Port().Put<int32_t>(0, 5);
    EXPECT_EQ(nodes.Get<IInteger>("Knife").GetValue(), 1);
}

// Writing and access.

TEST(SwissKnife, CanOnlyBeRead) {
    XmlNodeMap nodes(KnifeXml{.formula = "1"}.Float() +
                     KnifeXml{.name = "Int", .formula = "1"}.Integer());
    EXPECT_EQ(nodes.Get("Knife").GetAccessMode(), RO);
    EXPECT_EQ(nodes.Get("Int").GetAccessMode(), RO);
    EXPECT_EQ(DescriptionOf<AccessException>([&] { nodes.Get<IFloat>("Knife").SetValue(2); }),
              "Node is not writable.");
    EXPECT_EQ(DescriptionOf<AccessException>([&] { nodes.Get<IInteger>("Int").SetValue(2); }),
              "Node is not writable.");
}

TEST(SwissKnife, RefusesWritesThatNothingElseRefused) {
    XmlNodeMap nodes(KnifeXml{.formula = "1"}.Float() +
                     KnifeXml{.name = "Int", .formula = "1"}.Integer());
    EXPECT_EQ(DescriptionOf<LogicalErrorException>(
                  [&] { nodes.Get<IFloat>("Knife").SetValue(2, false); }),
              "SwissKnife : Knife SetValue failed. SwissKnife is read only");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>(
                  [&] { nodes.Get<IInteger>("Int").SetValue(2, false); }),
              "IntSwissKnife : Int SetValue failed. IntSwissKnife is read only.");
}

TEST(SwissKnife, IsAsAccessibleAsItsVariables) {
    const auto modeOver = [](const std::string& common, const std::string& access) {
        XmlNodeMap nodes(KnifeXml{.formula = "A", .variables = {{"A", "Reg"}}}.Integer() +
                         RegXml{.name = "Reg", .address = 0, .access = access, .common = common}() +
                         IntegerXml("Zero", "", Element("Value", "0")));
        return nodes.Get("Knife").GetAccessMode();
    };
    EXPECT_EQ(modeOver("", "RW"), RO);
    EXPECT_EQ(modeOver("", "RO"), RO);
    EXPECT_EQ(modeOver(Element("pIsAvailable", "Zero"), "RW"), NA);
    EXPECT_EQ(modeOver(Element("pIsImplemented", "Zero"), "RW"), NI);
    // What cannot be read fails when it is read.
    EXPECT_EQ(modeOver("", "WO"), RO);
}

TEST(SwissKnife, HasConditionsOfItsOwn) {
    XmlNodeMap nodes(KnifeXml{.formula = "1", .common = Element("pIsAvailable", "Flag")}.Float() +
                     IntReg("Flag", 0));
    EXPECT_EQ(nodes.Get("Knife").GetAccessMode(), NA);
    EXPECT_EQ(DescriptionOf<AccessException>([&] { nodes.Get<IFloat>("Knife").GetValue(); }),
              "Node is not readable.");
    nodes.Get<IInteger>("Flag").SetValue(1);
    EXPECT_EQ(nodes.Get("Knife").GetAccessMode(), RO);
    EXPECT_EQ(nodes.Get<IFloat>("Knife").GetValue(), 1.0);
}

// Caching.

namespace {

/// The knife's caching mode over registers of these modes.
ECachingMode ModeOver(const std::string& first, const std::string& second) {
    XmlNodeMap nodes(
        KnifeXml{.formula = "A+B", .variables = {{"A", "First"}, {"B", "Second"}}}.Integer() +
        IntReg("First", 0, first) + IntReg("Second", 4, second));
    return nodes.Get("Knife").GetCachingMode();
}

}  // namespace

TEST(SwissKnife, CachesAsItsVariablesDo) {
    EXPECT_EQ(ModeOver("WriteThrough", "WriteThrough"), WriteThrough);
    EXPECT_EQ(ModeOver("WriteThrough", "WriteAround"), WriteAround);
    EXPECT_EQ(ModeOver("NoCache", "WriteAround"), NoCache);
    EXPECT_EQ(ModeOver("WriteThrough", "NoCache"), NoCache);
    XmlNodeMap nodes(KnifeXml{.formula = "1"}.Float());
    EXPECT_EQ(nodes.Get("Knife").GetCachingMode(), WriteThrough);
}

TEST(SwissKnife, IsEvaluatedOnceUntilAVariableChanges) {
    XmlNodeMap nodes(
        KnifeXml{.formula = "A+B", .variables = {{"A", "First"}, {"B", "Second"}}}.Integer() +
        IntReg("First", 0) + IntReg("Second", 4));
    auto& knife = nodes.Get<IInteger>("Knife");
    nodes.Port().Put<int32_t>(0, 1);
    EXPECT_EQ(knife.GetValue(), 1);
    EXPECT_EQ(nodes.Port().GetReads(), 2U);
    nodes.Port().Put<int32_t>(0, 2);
    EXPECT_EQ(knife.GetValue(), 1);
    EXPECT_EQ(nodes.Port().GetReads(), 2U);
    nodes.Get<IInteger>("Second").SetValue(10);
    EXPECT_EQ(knife.GetValue(), 11);
    // The value just written is known, the other register's still is.
    EXPECT_EQ(nodes.Port().GetReads(), 2U);
}

TEST(SwissKnife, PassesOnThatTheCacheIsToBeIgnored) {
    XmlNodeMap nodes(KnifeXml{.formula = "A", .variables = {{"A", "Reg"}}}.Float() +
                     IntReg("Reg", 0));
    auto& knife = nodes.Get<IFloat>("Knife");
    EXPECT_EQ(knife.GetValue(), 0.0);
    nodes.Port().Put<int32_t>(0, 7);
    EXPECT_EQ(knife.GetValue(), 0.0);
    EXPECT_EQ(knife.GetValue(false, true), 7.0);
    EXPECT_EQ(nodes.Port().GetReads(), 2U);
}

TEST(SwissKnife, PassesOnThatValuesAreToBeVerified) {
    XmlNodeMap nodes(KnifeXml{.formula = "A", .variables = {{"A", "Limited"}}}.Integer() +
                     IntegerXml("Limited", "", "<pValue>Reg</pValue><Max>5</Max>") +
                     IntReg("Reg", 0));
    nodes.Port().Put<int32_t>(0, 6);
    auto& knife = nodes.Get<IInteger>("Knife");
    EXPECT_EQ(knife.GetValue(), 6);
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { knife.GetValue(true); }),
              "Value = 6 must be equal or smaller than Max = 5.");
}

TEST(SwissKnife, IsNotCachedOverWhatIsNot) {
    XmlNodeMap nodes(KnifeXml{.formula = "A*2", .variables = {{"A", "Reg"}}}.Integer() +
                     IntReg("Reg", 0, "NoCache"));
    auto& knife = nodes.Get<IInteger>("Knife");
    EXPECT_EQ(knife.GetValue(), 0);
    nodes.Port().Put<int32_t>(0, 21);
    EXPECT_EQ(knife.GetValue(), 42);
}

// What it tells of itself.

TEST(SwissKnife, HasTheLimitsOfItsKindOfNumbers) {
    XmlNodeMap nodes(KnifeXml{.formula = "1"}.Float() +
                     KnifeXml{.name = "Int", .formula = "1"}.Integer());
    auto& knife = nodes.Get<IFloat>("Knife");
    EXPECT_EQ(knife.GetMin(), std::numeric_limits<double>::lowest());
    EXPECT_EQ(knife.GetMax(), std::numeric_limits<double>::max());
    EXPECT_FALSE(knife.HasInc());
    auto& integer = nodes.Get<IInteger>("Int");
    EXPECT_EQ(integer.GetMin(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(integer.GetMax(), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(integer.GetInc(), 1);
    EXPECT_EQ(integer.GetIncMode(), fixedIncrement);
}

TEST(SwissKnife, TellsHowToShowIt) {
    XmlNodeMap nodes(KnifeXml{.formula = "1",
                              .tail = "<Unit>us</Unit><Representation>Logarithmic</Representation>"
                                      "<DisplayNotation>Fixed</DisplayNotation>"
                                      "<DisplayPrecision>3</DisplayPrecision>"}
                         .Float() +
                     KnifeXml{.name = "Int",
                              .formula = "255",
                              .tail = "<Unit>B</Unit><Representation>HexNumber</Representation>"}
                         .Integer() +
                     KnifeXml{.name = "Plain", .formula = "1"}.Float());
    auto& knife = nodes.Get<IFloat>("Knife");
    EXPECT_EQ(knife.GetUnit(), "us");
    EXPECT_EQ(knife.GetRepresentation(), Logarithmic);
    EXPECT_EQ(knife.GetDisplayNotation(), fnFixed);
    EXPECT_EQ(knife.GetDisplayPrecision(), 3);
    EXPECT_EQ(nodes.Get<IValue>("Knife").ToString(), "1.000");
    auto& integer = nodes.Get<IInteger>("Int");
    EXPECT_EQ(integer.GetUnit(), "B");
    EXPECT_EQ(integer.GetRepresentation(), HexNumber);
    EXPECT_EQ(nodes.Get<IValue>("Int").ToString(), "0xff");
    auto& plain = nodes.Get<IFloat>("Plain");
    EXPECT_EQ(plain.GetUnit(), "");
    EXPECT_EQ(plain.GetRepresentation(), PureNumber);
    EXPECT_EQ(plain.GetDisplayNotation(), fnAutomatic);
    EXPECT_EQ(plain.GetDisplayPrecision(), -1);
}

TEST(SwissKnife, GivesItsDescriptionBack) {
    XmlNodeMap nodes(KnifeXml{.formula = "A<B",
                              .variables = {{"A", "First"}, {"B.Max", "Second"}, {"B", "Second"}},
                              .tail = "<Unit>us</Unit>"}
                         .Float() +
                     IntegerXml("First") + IntegerXml("Second"));
    gcstring value;
    gcstring attribute;
    auto& knife = nodes.Get("Knife");
    ASSERT_TRUE(knife.GetProperty("Formula", value, attribute));
    EXPECT_EQ(value, "A<B");
    ASSERT_TRUE(knife.GetProperty("pVariable", value, attribute));
    EXPECT_EQ(value, "First\tSecond\tSecond");
    EXPECT_EQ(attribute, "A\tB.Max\tB");
    ASSERT_TRUE(knife.GetProperty("Unit", value, attribute));
    EXPECT_EQ(value, "us");
    EXPECT_FALSE(knife.GetProperty("Representation", value, attribute));
    gcstring_vector names;
    knife.GetPropertyNames(names);
    std::vector<std::string> list;
    for (const gcstring& name : names) {
        list.emplace_back(name);
    }
    EXPECT_THAT(list, testing::IsSupersetOf({"Name", "pVariable", "Formula", "Unit"}));
}

// Case.

TEST(SwissKnife, ReadsNamesByCase) {
    const KnifeXml knife{.formula = "Raw+raw", .variables = {{"Raw", "A"}, {"raw", "B"}}};
    EXPECT_EQ(IntegerOf(knife.Integer() + IntegerXml("A", "", Element("Value", "5")) +
                        IntegerXml("B", "", Element("Value", "70"))),
              75);
    const KnifeXml wrong{.formula = "RAW", .variables = {{"Raw", "A"}}};
    EXPECT_THROW(FloatOf(wrong.Float() + IntegerXml("A")), LogicalErrorException);
}

TEST(SwissKnife, ReadsNamesOfTheOldestSchemaWithoutRegardToCase) {
    const KnifeXml knife{.formula = "RAW+raw*Raw", .variables = {{"Raw", "A"}}};
    const std::string five = IntegerXml("A", "", Element("Value", "5"));
    XmlNodeMap floats(knife.Float() + five, {.schemaMinor = 0});
    EXPECT_EQ(floats.Get<IFloat>("Knife").GetValue(), 30.0);
    XmlNodeMap integers(knife.Integer() + five, {.schemaMinor = 0});
    EXPECT_EQ(integers.Get<IInteger>("Knife").GetValue(), 30);
}

}  // namespace EngineTest
