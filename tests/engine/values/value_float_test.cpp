// Floats: checks, increments, texts.

#include <limits>

#include "ValueGraph.h"
#include "text/FloatText.h"

namespace ValueTest {

namespace {

class FloatValue : public ValueGraph {
protected:
    CNodeData& AddFloat(const char* name, const std::vector<Link>& links = {}) {
        return Add(CNodeData::Float_ID, name, links);
    }
    /// A float register of eight bytes at 0 and "Gain" over it.
    CNodeData& AddGain() {
        CNodeData& reg = Add(CNodeData::FloatReg_ID, "Reg", {{ID::pPort_ID, "Device"}});
        reg.AddProperty(ID::Address_ID, 0);
        reg.AddProperty(ID::Length_ID, 8);
        reg.AddProperty(ID::AccessMode_ID, CProperty::EAccessMode_ID, RW);
        reg.AddProperty(ID::Endianess_ID, CProperty::EEndianess_ID, LittleEndian);
        return AddFloat("Gain", {{ID::pValue_ID, "Reg"}});
    }
    IFloat& Gain() { return Get<IFloat>("Gain"); }
};

}  // namespace

TEST_F(FloatValue, RefusesToVerifyAValueBelowTheMinimum) {
    AddGain().AddProperty(ID::Min_ID, 1.5);
    Build();
    EXPECT_EQ(FailureText<OutOfRangeException>([&] { Gain().SetValue(1.25); }),
              "Value 1.250000 must be greater than or equal 1.500000.");
    Gain().SetValue(1.25, false);
    EXPECT_EQ(Gain().GetValue(), 1.25);
}

TEST_F(FloatValue, RefusesToVerifyAValueAboveTheMaximum) {
    AddGain().AddProperty(ID::Max_ID, 2.5);
    Build();
    EXPECT_EQ(FailureText<OutOfRangeException>([&] { Gain().SetValue(2.75); }),
              "Value 2.750000 must be smaller than or equal 2.500000.");
}

TEST_F(FloatValue, RefusesToVerifyWhatIsNoNumber) {
    AddGain().AddProperty(ID::Max_ID, 2.5);
    Build();
    EXPECT_THROW(Gain().SetValue(std::numeric_limits<double>::quiet_NaN()), OutOfRangeException);
    EXPECT_EQ(m_Port.writes, 0);
}

TEST_F(FloatValue, DoesNotCheckSteps) {
    AddGain().AddProperty(ID::Inc_ID, 0.5);
    Build();
    Gain().SetValue(0.75);
    EXPECT_EQ(Gain().GetValue(true), 0.75);
}

TEST_F(FloatValue, HasNoIncrementUnlessOneIsGiven) {
    AddGain();
    Build();
    EXPECT_FALSE(Gain().HasInc());
    EXPECT_EQ(Gain().GetIncMode(), noIncrement);
    EXPECT_EQ(FailureText<RuntimeException>([&] { Gain().GetInc(); }),
              "node does not have an increment.");
}

TEST_F(FloatValue, HasTheIncrementOfItsDescription) {
    AddGain().AddProperty(ID::Inc_ID, 0.5);
    Build();
    EXPECT_TRUE(Gain().HasInc());
    EXPECT_EQ(Gain().GetIncMode(), fixedIncrement);
    EXPECT_EQ(Gain().GetInc(), 0.5);
}

TEST_F(FloatValue, HasTheIncrementOfAnIntegerSource) {
    AddReg("Reg", 0);
    AddInteger("Raw", {{ID::pValue_ID, "Reg"}}).AddProperty(ID::Inc_ID, 4);
    AddFloat("Gain", {{ID::pValue_ID, "Raw"}});
    Build();
    EXPECT_TRUE(Gain().HasInc());
    EXPECT_EQ(Gain().GetInc(), 4.0);
}

TEST_F(FloatValue, LosesItsWriteAccessWhenOnlyOneSourceHasSteps) {
    AddReg("Raw", 16);
    AddGain().AddProperty(ID::pValueCopy_ID, m_Data.GetNodeID("Raw", true));
    Build();
    EXPECT_EQ(Gain().GetAccessMode(), RO);
}

TEST_F(FloatValue, KeepsWhatItReads) {
    AddGain();
    Build();
    Gain().GetValue();
    EXPECT_TRUE(Gain().IsValueCacheValid());
    Gain().GetValue();
    EXPECT_EQ(m_Port.reads, 1);
}

TEST_F(FloatValue, NarrowsItsLimitsToWhatIsImposed) {
    AddGain().AddProperty(ID::Max_ID, 2.5);
    Build();
    Gain().ImposeMin(0.5);
    Gain().ImposeMax(2.0);
    EXPECT_EQ(Gain().GetMin(), 0.5);
    EXPECT_EQ(Gain().GetMax(), 2.0);
}

TEST_F(FloatValue, ConvertsTexts) {
    AddGain();
    Build();
    Gain().FromString("1.5e2");
    EXPECT_EQ(Gain().GetValue(), 150.0);
    EXPECT_EQ(FailureText<InvalidArgumentException>([&] { Gain().FromString("much"); }),
              "Node 'Gain' : cannot convert string 'much' to double.");
}

TEST_F(FloatValue, TakesDisplaySettingsFromItsSource) {
    CNodeData& inner = AddGain();
    inner.AddProperty(ID::DisplayNotation_ID, CProperty::EDisplayNotation_ID, fnScientific);
    inner.AddProperty(ID::DisplayPrecision_ID, 3);
    AddFloat("Outer", {{ID::pValue_ID, "Gain"}});
    Build();
    EXPECT_EQ(Get<IFloat>("Outer").GetDisplayNotation(), fnScientific);
    EXPECT_EQ(Get<IFloat>("Outer").GetDisplayPrecision(), 3);
}

TEST_F(FloatValue, IsSpokenForByTheFloatInterface) {
    AddGain();
    Build();
    EXPECT_EQ(Get<INode>("Gain").GetPrincipalInterfaceType(), intfIFloat);
}

struct FloatPrint {
    const char* name;
    EDisplayNotation notation;
    int64_t precision;
    double value;
    const char* text;
};

class FloatPrints : public testing::TestWithParam<FloatPrint> {};

TEST_P(FloatPrints, FollowNotationAndPrecision) {
    const FloatPrint& print = GetParam();
    EXPECT_EQ(CFloatText(print.notation, print.precision).Print(print.value), print.text);
}

INSTANTIATE_TEST_SUITE_P(
    Of, FloatPrints,
    testing::Values(FloatPrint{"AutomaticDefault", fnAutomatic, -1, 1234567.5, "1.23457e+06"},
                    FloatPrint{"AutomaticThree", fnAutomatic, 3, 0.12345, "0.123"},
                    FloatPrint{"FixedDefault", fnFixed, -1, 2.5, "2.500000"},
                    FloatPrint{"FixedTwo", fnFixed, 2, 2.126, "2.13"},
                    FloatPrint{"FixedNone", fnFixed, 0, 2.6, "3"},
                    FloatPrint{"ScientificTwo", fnScientific, 2, 1250.0, "1.25e+03"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(FloatValue, TakesBackAMaximumThatRoundsUp) {
    AddGain().AddProperty(ID::Max_ID, 23.9999999);
    Build();
    Gain().SetValue(23.9999999);
    EXPECT_EQ(Gain().ToString(), "23.9999");
    Gain().FromString("23.9999");
}

struct Nudge {
    const char* name;
    double value;
    double min;
    double max;
    const char* text;
};

/// At one digit behind the point.
class NudgedFloat : public FloatValue, public testing::WithParamInterface<Nudge> {};

TEST_P(NudgedFloat, PrintsWhatItWouldTakeBack) {
    CNodeData& gain = AddGain();
    gain.AddProperty(ID::Min_ID, GetParam().min);
    gain.AddProperty(ID::Max_ID, GetParam().max);
    gain.AddProperty(ID::DisplayNotation_ID, CProperty::EDisplayNotation_ID, fnFixed);
    gain.AddProperty(ID::DisplayPrecision_ID, 1);
    Build();
    Gain().SetValue(GetParam().value);
    EXPECT_EQ(Gain().ToString(), GetParam().text);
    Gain().FromString(GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(At, NudgedFloat,
                         testing::Values(Nudge{"TheMaximum", 2.97, 0.0, 2.97, "2.9"},
                                         Nudge{"TheMinimum", 1.02, 1.02, 5.0, "1.1"},
                                         Nudge{"NoLimit", 2.97, 0.0, 5.0, "3.0"},
                                         Nudge{"AMaximumThatPrintsBelow", 2.92, 0.0, 2.92, "2.9"}),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace ValueTest
