// Nodes that show another node's value through a pair of formulas.

#include <limits>

#include "GenApi/IFloat.h"
#include "NodeGraph.h"

namespace EngineTest {

namespace {

/// A converter named "Conv" over "Raw".
struct ConverterXml {
    std::string to = "(FROM-10)/2";
    std::string from = "TO*2+10";
    std::string slope = {};
    std::string isLinear = {};
    std::string variables = {};  ///< elements before the formulas
    std::string tail = {};       ///< elements behind the source

    std::string As(const std::string& type) const {
        const auto optional = [](const char* tag, const std::string& content) {
            return content.empty() ? "" : Element(tag, content);
        };
        return "<" + type + " Name=\"Conv\">" + variables + Element("FormulaTo", to) +
               Element("FormulaFrom", from) + "<pValue>Raw</pValue>" + tail +
               optional("Slope", slope) + optional("IsLinear", isLinear) + "</" + type + ">";
    }
    std::string Float() const { return As("Converter"); }
    std::string Integer() const { return As("IntConverter"); }
};

/// The source: an integer over a register at 0.
std::string RawXml(const std::string& access = "RW", const std::string& common = "") {
    return IntegerXml("Raw", common, "<pValue>Reg</pValue><Min>0</Min><Max>100</Max><Inc>4</Inc>") +
           RegXml{.name = "Reg", .address = 0, .access = access}();
}

struct Limits {
    double min;
    double max;
    bool operator==(const Limits&) const = default;
};

Limits FloatLimits(const ConverterXml& converter) {
    XmlNodeMap nodes(converter.Float() + RawXml());
    auto& node = nodes.Get<IFloat>("Conv");
    return {node.GetMin(), node.GetMax()};
}

}  // namespace

TEST(Converter, ReadsAndWritesThroughItsFormulas) {
    XmlNodeMap nodes(ConverterXml{}.Float() + RawXml());
    auto& node = nodes.Get<IFloat>("Conv");
    nodes.Port().Put<int32_t>(0, 8);
    EXPECT_EQ(node.GetValue(), 26.0);
    node.SetValue(50);
    EXPECT_EQ(nodes.Port().Peek<int32_t>(0), 20);
    EXPECT_EQ(node.GetValue(), 50.0);
    nodes.Get<IInteger>("Raw").SetValue(40);
    EXPECT_EQ(node.GetValue(), 90.0);
}

TEST(IntConverter, ReadsAndWritesThroughItsFormulas) {
    XmlNodeMap nodes(ConverterXml{}.Integer() + RawXml());
    auto& node = nodes.Get<IInteger>("Conv");
    nodes.Port().Put<int32_t>(0, 8);
    EXPECT_EQ(node.GetValue(), 26);
    node.SetValue(50);
    EXPECT_EQ(nodes.Port().Peek<int32_t>(0), 20);
    EXPECT_EQ(node.GetValue(), 50);
}

TEST(Converter, RoundsForASourceOfIntegers) {
    XmlNodeMap nodes(ConverterXml{.to = "FROM*10", .from = "TO/10"}.Float() + RawXml());
    nodes.Get<IFloat>("Conv").SetValue(0.82, false);
    EXPECT_EQ(nodes.Port().Peek<int32_t>(0), 8);
    nodes.Get<IFloat>("Conv").SetValue(0.38, false);
    EXPECT_EQ(nodes.Port().Peek<int32_t>(0), 4);
}

TEST(Converter, KnowsVariablesConstantsAndExpressions) {
    const ConverterXml converter{.to = "(FROM-BASE)/DOUBLE",
                                 .from = "TO*DOUBLE+BASE",
                                 .variables =
                                     "<pVariable Name=\"GAIN\">Gain</pVariable>"
                                     "<Constant Name=\"BASE\">7</Constant>"
                                     "<Expression Name=\"DOUBLE\">GAIN*2</Expression>"};
    const std::string gain = IntegerXml("Gain", "", Element("Value", "3"));
    XmlNodeMap floats(converter.Float() + RawXml() + gain);
    floats.Get<IFloat>("Conv").SetValue(31);
    EXPECT_EQ(floats.Port().Peek<int32_t>(0), 4);
    EXPECT_EQ(floats.Get<IFloat>("Conv").GetValue(false, true), 31.0);
    XmlNodeMap integers(converter.Integer() + RawXml() + gain);
    integers.Get<IInteger>("Conv").SetValue(31);
    EXPECT_EQ(integers.Port().Peek<int32_t>(0), 4);
    EXPECT_EQ(integers.Get<IInteger>("Conv").GetValue(false, true), 31);
}

TEST(Converter, TakesTheInverseAsItIsGiven) {
    XmlNodeMap nodes(ConverterXml{.to = "FROM", .from = "TO+1", .slope = "Varying"}.Float() +
                     RawXml());
    auto& node = nodes.Get<IFloat>("Conv");
    node.SetValue(8);
    EXPECT_EQ(nodes.Port().Peek<int32_t>(0), 8);
    EXPECT_EQ(node.GetValue(false, true), 9.0);
}

TEST(Converter, HasTwoInnerKnives) {
    XmlNodeMap nodes(ConverterXml{}.Float() + RawXml());
    ASSERT_NE(nodes->GetNode("Conv_ConvertTo"), nullptr);
    ASSERT_NE(nodes->GetNode("Conv_ConvertFrom"), nullptr);
    node_vector children;
    nodes.Get("Conv").GetChildren(children, ValueChildren);
    ASSERT_EQ(children.size(), 1U);
    EXPECT_EQ(children[0]->GetName(), "Raw");
}

// Limits.

TEST(Converter, HasTheLimitsOfItsSourceThroughTheFormula) {
    EXPECT_EQ(FloatLimits({.from = "TO*2+10", .slope = "Increasing"}), (Limits{10, 210}));
    EXPECT_EQ(FloatLimits({.from = "10-TO*2", .slope = "Decreasing"}), (Limits{-190, 10}));
    // The word of the description counts, not the formula.
    EXPECT_EQ(FloatLimits({.from = "10-TO*2", .slope = "Increasing"}), (Limits{10, -190}));
}

TEST(Converter, HasNoLimitsWhereTheSlopeVaries) {
    EXPECT_EQ(FloatLimits({.slope = "Varying"}),
              (Limits{-1.7976931348623157e308, 1.7976931348623157e308}));
    XmlNodeMap nodes(ConverterXml{.slope = "Varying"}.Integer() + RawXml());
    EXPECT_EQ(nodes.Get<IInteger>("Conv").GetMin(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(nodes.Get<IInteger>("Conv").GetMax(), std::numeric_limits<int64_t>::max());
}

TEST(Converter, FindsItsSlopeWhenItIsNotGiven) {
    for (const char* const slope : {"", "Automatic"}) {
        EXPECT_EQ(FloatLimits({.from = "TO*2+10", .slope = slope}), (Limits{10, 210}));
        EXPECT_EQ(FloatLimits({.from = "10-TO*2", .slope = slope}), (Limits{-190, 10}));
        EXPECT_EQ(FloatLimits({.from = "TO*0+3", .slope = slope}), (Limits{3, 3}));
    }
}

TEST(IntConverter, HasTheLimitsOfItsSourceThroughTheFormula) {
    const auto limits = [](const char* from, const char* slope) {
        XmlNodeMap nodes(ConverterXml{.from = from, .slope = slope}.Integer() + RawXml());
        auto& node = nodes.Get<IInteger>("Conv");
        return std::pair(node.GetMin(), node.GetMax());
    };
    const std::pair<int64_t, int64_t> rising(10, 210);
    const std::pair<int64_t, int64_t> falling(-190, 10);
    EXPECT_EQ(limits("TO*2+10", "Increasing"), rising);
    EXPECT_EQ(limits("TO*2+10", "Automatic"), rising);
    EXPECT_EQ(limits("10-TO*2", "Decreasing"), falling);
    EXPECT_EQ(limits("10-TO*2", ""), falling);
}

TEST(Converter, KeepsTheSlopeThatItHasFound) {
    XmlNodeMap nodes(ConverterXml{.from = "TO*FACTOR",
                                  .variables = "<pVariable Name=\"FACTOR\">Factor</pVariable>"}
                         .Float() +
                     RawXml() + RegXml{.name = "Factor", .address = 4}());
    auto& node = nodes.Get<IFloat>("Conv");
    auto& factor = nodes.Get<IInteger>("Factor");
    factor.SetValue(2);
    EXPECT_EQ(node.GetMin(), 0.0);
    EXPECT_EQ(node.GetMax(), 200.0);
    factor.SetValue(-2);
    EXPECT_EQ(node.GetMin(), 0.0);
    EXPECT_EQ(node.GetMax(), -200.0);
}

TEST(Converter, ChecksItsOwnLimitsAndHasTheSourceCheckIts) {
    XmlNodeMap nodes(ConverterXml{.slope = "Increasing"}.Float() + RawXml());
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { nodes.Get<IFloat>("Conv").SetValue(9); }),
              "Value 9.000000 must be greater than or equal 10.000000.");
    // Within the limits, but between the source's steps.
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { nodes.Get<IFloat>("Conv").SetValue(20); }),
              "The difference between Value = 5 and Min = 0 must be dividable without rest by "
              "Inc = 4.");
    XmlNodeMap varying(ConverterXml{.slope = "Varying"}.Integer() + RawXml());
    auto& node = varying.Get<IInteger>("Conv");
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { node.SetValue(1000); }),
              "Value = 495 must be equal or smaller than Max = 100.");
    EXPECT_EQ(varying.Port().GetWrites(), 0U);
    node.SetValue(1000, false);
    EXPECT_EQ(varying.Port().Peek<int32_t>(0), 495);
}

// Increments.

namespace {

/// The increment, or 0 for none.
double IncrementOf(const ConverterXml& converter) {
    XmlNodeMap nodes(converter.Float() + RawXml());
    auto& node = nodes.Get<IFloat>("Conv");
    if (!node.HasInc()) {
        EXPECT_EQ(DescriptionOf<RuntimeException>([&] { node.GetInc(); }),
                  "node does not have an increment.");
        EXPECT_EQ(node.GetIncMode(), noIncrement);
        return 0;
    }
    EXPECT_EQ(node.GetIncMode(), fixedIncrement);
    return node.GetInc();
}

}  // namespace

TEST(Converter, HasTheIncrementOfItsSourceWhenItIsLinear) {
    EXPECT_EQ(IncrementOf({.from = "TO*2", .slope = "Increasing", .isLinear = "Yes"}), 8.0);
    EXPECT_EQ(IncrementOf({.from = "TO*-2", .slope = "Decreasing", .isLinear = "Yes"}), 8.0);
    EXPECT_EQ(IncrementOf({.from = "TO*2", .isLinear = "Yes"}), 8.0);
    EXPECT_EQ(IncrementOf({.from = "TO*-2", .slope = "Automatic", .isLinear = "Yes"}), 8.0);
}

TEST(Converter, HasAnIncrementThatAnOffsetDoesNotChange) {
    EXPECT_EQ(IncrementOf({.from = "TO*2+10", .slope = "Increasing", .isLinear = "Yes"}), 8.0);
    EXPECT_EQ(IncrementOf({.from = "10-TO*2", .slope = "Decreasing", .isLinear = "Yes"}), 8.0);
    EXPECT_EQ(IncrementOf({.from = "10-TO*2", .isLinear = "Yes"}), 8.0);
}

TEST(Converter, HasNoIncrementOtherwise) {
    EXPECT_EQ(IncrementOf({.from = "TO*2", .slope = "Increasing"}), 0.0);
    EXPECT_EQ(IncrementOf({.from = "TO*2", .slope = "Increasing", .isLinear = "No"}), 0.0);
    EXPECT_EQ(IncrementOf({.from = "TO*2", .slope = "Varying", .isLinear = "Yes"}), 0.0);
}

TEST(Converter, NeedsNoDeviceToTellWhetherItHasAnIncrement) {
    XmlNodeMap nodes(ConverterXml{.isLinear = "Yes"}.Float() +
                     IntegerXml("Raw", "", "<pValue>Reg</pValue><pMin>Reg</pMin>") +
                     RegXml{.name = "Reg", .address = 0}());
    EXPECT_TRUE(nodes.Get<IFloat>("Conv").HasInc());
    EXPECT_EQ(nodes.Port().GetReads(), 0U);
}

TEST(IntConverter, AlwaysHasAnIncrementOfOne) {
    for (const char* const slope : {"Increasing", "Decreasing", "Varying", "Automatic"}) {
        XmlNodeMap nodes(ConverterXml{.slope = slope}.Integer() + RawXml());
        EXPECT_EQ(nodes.Get<IInteger>("Conv").GetInc(), 1) << slope;
        EXPECT_EQ(nodes.Get<IInteger>("Conv").GetIncMode(), fixedIncrement) << slope;
    }
}

// Access and caching.

TEST(Converter, IsAsAccessibleAsItsSource) {
    const auto modeOver = [](const std::string& access, const std::string& common = "") {
        XmlNodeMap nodes(ConverterXml{}.Float() + RawXml(access, common) +
                         IntegerXml("Zero", "", Element("Value", "0")));
        return nodes.Get("Conv").GetAccessMode();
    };
    EXPECT_EQ(modeOver("RW"), RW);
    EXPECT_EQ(modeOver("RO"), RO);
    EXPECT_EQ(modeOver("WO"), WO);
    EXPECT_EQ(modeOver("RW", Element("pIsAvailable", "Zero")), NA);
    EXPECT_EQ(modeOver("RW", Element("pIsImplemented", "Zero")), NI);
}

TEST(Converter, IsNotAvailableWithoutAVariable) {
    XmlNodeMap nodes(ConverterXml{.to = "FROM/A",
                                  .from = "TO*A",
                                  .variables = "<pVariable Name=\"A\">Factor</pVariable>"}
                         .Integer() +
                     RawXml() + IntegerXml("Factor", Element("pIsAvailable", "Zero")) +
                     IntegerXml("Zero", "", Element("Value", "0")));
    EXPECT_EQ(nodes.Get("Conv").GetAccessMode(), NA);
}

TEST(Converter, KeepsItsValueUntilTheSourceOrAVariableChanges) {
    XmlNodeMap nodes(
        ConverterXml{.from = "TO*A", .variables = "<pVariable Name=\"A\">Factor</pVariable>"}
            .Float() +
        RawXml() + RegXml{.name = "Factor", .address = 4}());
    auto& node = nodes.Get<IFloat>("Conv");
    nodes.Port().Put<int32_t>(0, 8);
    nodes.Port().Put<int32_t>(4, 2);
    EXPECT_EQ(node.GetValue(), 16.0);
    nodes.Port().ForgetAccesses();
    EXPECT_EQ(node.GetValue(), 16.0);
    EXPECT_EQ(nodes.Port().GetReads(), 0U);
    nodes.Get<IInteger>("Factor").SetValue(3);
    EXPECT_EQ(node.GetValue(), 24.0);
    nodes.Get<IInteger>("Raw").SetValue(4);
    EXPECT_EQ(node.GetValue(), 12.0);
    nodes.Port().Put<int32_t>(0, 12);
    EXPECT_EQ(node.GetValue(false, true), 36.0);
}

TEST(Converter, KeepsTheValueThatWasWritten) {
    XmlNodeMap nodes(ConverterXml{.to = "FROM*10", .from = "TO/10"}.Float() + RawXml());
    auto& node = nodes.Get<IFloat>("Conv");
    node.SetValue(0.82, false);
    EXPECT_EQ(node.GetValue(), 0.82);
    EXPECT_EQ(node.GetValue(false, true), 0.8);
}

TEST(Converter, RunsItsCallbacksWhenTheSourceIsWritten) {
    XmlNodeMap nodes(ConverterXml{}.Float() + RawXml());
    NotingCallback::Calls calls;
    NotingCallback::On(nodes.Get("Conv"), calls);
    nodes.Get<IInteger>("Raw").SetValue(8);
    EXPECT_THAT(calls, testing::ElementsAre("Conv inside", "Conv outside"));
}

// Failures.

TEST(Converter, RaisesWhyAFormulaDoesNotParseWhenItIsUsed) {
    XmlNodeMap floats(ConverterXml{.to = "TO*2"}.Float() + RawXml());
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { floats.Get<IFloat>("Conv").SetValue(1); }),
              "Conv_ConvertTo : Failed to parse formula 'TO*2' : error message is "
              "'# TO - Unknown function/variable!'");
    XmlNodeMap integers(ConverterXml{.from = "FROM*2"}.Integer() + RawXml());
    EXPECT_EQ(
        DescriptionOf<LogicalErrorException>([&] { integers.Get<IInteger>("Conv").GetValue(); }),
        "Conv_ConvertFrom : Failed to parse formula 'FROM*2' : error message is "
        "'# FROM - Unknown function/variable!'");
}

TEST(Converter, TellsWhichFormulaCannotBeEvaluated) {
    XmlNodeMap nodes(ConverterXml{.to = "1/FROM", .from = "1/TO", .slope = "Varying"}.Float() +
                     RawXml());
    auto& node = nodes.Get<IFloat>("Conv");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { node.GetValue(); }),
              "Conv_ConvertFrom : Failed to evaluate formula '1/TO' : error message is "
              "'#Infinity somewhere!'");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { node.SetValue(0); }),
              "Conv_ConvertTo : Failed to evaluate formula '1/FROM' : error message is "
              "'#Infinity somewhere!'");
    EXPECT_EQ(nodes.Port().GetWrites(), 0U);
}

TEST(Converter, NeedsBothFormulas) {
    const std::string half =
        "<Converter Name=\"Conv\"><FormulaTo>FROM</FormulaTo><pValue>Raw</pValue></Converter>";
    EXPECT_THROW(XmlNodeMap(half + RawXml()), RuntimeException);
}

TEST(Converter, HasBothFormulasChecked) {
    XmlNodeMap nodes(ConverterXml{}.Float() + RawXml());
    gcstring_vector errors;
    EXPECT_TRUE(nodes->ParseSwissKnifes(&errors));
    EXPECT_EQ(errors.size(), 0U);
}

// What it tells of itself.

namespace {

std::string ShownRaw() {
    return "<Float Name=\"Raw\"><pValue>Reg</pValue><Unit>us</Unit>"
           "<Representation>Logarithmic</Representation><DisplayNotation>Scientific"
           "</DisplayNotation><DisplayPrecision>5</DisplayPrecision></Float>" +
           RegXml{.name = "Reg", .address = 0}();
}

}  // namespace

TEST(Converter, IsShownLikeItsSource) {
    XmlNodeMap nodes(ConverterXml{}.Float() + ShownRaw());
    auto& node = nodes.Get<IFloat>("Conv");
    EXPECT_EQ(node.GetUnit(), "us");
    EXPECT_EQ(node.GetRepresentation(), Logarithmic);
    EXPECT_EQ(node.GetDisplayNotation(), fnScientific);
    EXPECT_EQ(node.GetDisplayPrecision(), 5);
    XmlNodeMap integers(ConverterXml{}.Integer() + ShownRaw());
    EXPECT_EQ(integers.Get<IInteger>("Conv").GetUnit(), "us");
    EXPECT_EQ(integers.Get<IInteger>("Conv").GetRepresentation(), Logarithmic);
}

TEST(Converter, IsShownAsItSays) {
    const std::string tail = "<Unit>ms</Unit><Representation>Linear</Representation>";
    XmlNodeMap nodes(ConverterXml{.tail = tail + "<DisplayNotation>Fixed</DisplayNotation>"
                                                 "<DisplayPrecision>2</DisplayPrecision>"}
                         .Float() +
                     ShownRaw());
    auto& node = nodes.Get<IFloat>("Conv");
    EXPECT_EQ(node.GetUnit(), "ms");
    EXPECT_EQ(node.GetRepresentation(), Linear);
    EXPECT_EQ(node.GetDisplayNotation(), fnFixed);
    EXPECT_EQ(node.GetDisplayPrecision(), 2);
    XmlNodeMap integers(ConverterXml{.tail = tail}.Integer() + ShownRaw());
    EXPECT_EQ(integers.Get<IInteger>("Conv").GetUnit(), "ms");
    EXPECT_EQ(integers.Get<IInteger>("Conv").GetRepresentation(), Linear);
}

TEST(Converter, GivesItsDescriptionBack) {
    XmlNodeMap nodes(ConverterXml{.slope = "Decreasing",
                                  .isLinear = "Yes",
                                  .variables = "<pVariable Name=\"A\">Reg</pVariable>"}
                         .Float() +
                     RawXml());
    auto& node = nodes.Get("Conv");
    const auto property = [&node](const char* name) {
        gcstring value;
        gcstring attribute;
        return node.GetProperty(name, value, attribute) ? std::string(value + "|" + attribute)
                                                        : "none";
    };
    EXPECT_EQ(property("FormulaTo"), "(FROM-10)/2|");
    EXPECT_EQ(property("FormulaFrom"), "TO*2+10|");
    EXPECT_EQ(property("pValue"), "Raw|");
    EXPECT_EQ(property("pSwissKnifeTo"), "Conv_ConvertTo|");
    EXPECT_EQ(property("pSwissKnifeFrom"), "Conv_ConvertFrom|");
    EXPECT_EQ(property("pVariable"), "Reg|A");
    EXPECT_EQ(property("Slope"), "Decreasing|");
    EXPECT_EQ(property("IsLinear"), "Yes|");
    EXPECT_EQ(property("Unit"), "none");
    gcstring value;
    gcstring attribute;
    ASSERT_TRUE(nodes.Get("Conv_ConvertTo").GetProperty("InputDirection", value, attribute));
    EXPECT_EQ(value, "To");
}

}  // namespace EngineTest
