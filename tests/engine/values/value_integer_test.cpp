// Integers: access checks, limits, steps, texts.

#include <limits>

#include "ValueGraph.h"

namespace ValueTest {

namespace {

constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();

/// "Gain" over a register, with 2 to 20 in steps of 4.
class IntegerValue : public ValueGraph {
protected:
    IntegerValue() {
        AddReg("GainReg", 0);
        CNodeData& gain = AddInteger("Gain", {{ID::pValue_ID, "GainReg"}});
        gain.AddProperty(ID::Min_ID, 2);
        gain.AddProperty(ID::Max_ID, 20);
        gain.AddProperty(ID::Inc_ID, 4);
        m_Port.Put(0, 6);
        Build();
    }

    IInteger& Gain() { return Get<IInteger>("Gain"); }
};

}  // namespace

TEST_F(IntegerValue, RefusesToVerifyAValueBetweenTwoSteps) {
    EXPECT_EQ(FailureText<OutOfRangeException>([&] { Gain().SetValue(4); }),
              "The difference between Value = 4 and Min = 2 must be dividable without rest by "
              "Inc = 4.");
    EXPECT_EQ(m_Port.writes, 0);
}

TEST_F(IntegerValue, TakesAValueBetweenTwoStepsUnverified) {
    Gain().SetValue(4, false);
    EXPECT_EQ(m_Port.Peek(0), 4);
}

TEST_F(IntegerValue, RefusesToVerifyAValueBelowTheMinimum) {
    EXPECT_EQ(FailureText<OutOfRangeException>([&] { Gain().SetValue(-2); }),
              "Value = -2 must be equal or greater than Min = 2.");
}

TEST_F(IntegerValue, RefusesToVerifyAValueAboveTheMaximum) {
    EXPECT_EQ(FailureText<OutOfRangeException>([&] { Gain().SetValue(22); }),
              "Value = 22 must be equal or smaller than Max = 20.");
}

TEST_F(IntegerValue, VerifiesWhatItReads) {
    m_Port.Put(0, 8);
    EXPECT_EQ(FailureText<OutOfRangeException>([&] { Gain().GetValue(true); }),
              "The difference between Value = 8 and Min = 2 must be dividable without rest by "
              "Inc = 4.");
    EXPECT_EQ(Gain().GetValue(), 8);
}

TEST_F(IntegerValue, WritesAndReadsAsOperators) {
    Gain() = 10;
    EXPECT_EQ(Gain()(), 10);
    EXPECT_EQ(*Gain(), 10);
    EXPECT_EQ(m_Port.Peek(0), 10);
}

TEST_F(IntegerValue, NamesTheNodeAndTheOutermostCallInAFailure) {
    try {
        Gain().FromString("3");
        FAIL();
    } catch (const OutOfRangeException& failure) {
        EXPECT_THAT(failure.what(),
                    testing::HasSubstr("OutOfRangeException thrown in node 'Gain' while calling "
                                       "'Gain.FromString()'"));
    }
}

TEST_F(IntegerValue, NarrowsItsLimitsToWhatIsImposed) {
    Gain().ImposeMin(5);
    Gain().ImposeMax(15);
    EXPECT_EQ(Gain().GetMin(), 5);
    EXPECT_EQ(Gain().GetMax(), 15);
    EXPECT_EQ(Gain().GetInc(), 4);
}

TEST_F(IntegerValue, IgnoresImposedLimitsThatAreWider) {
    Gain().ImposeMin(-5);
    Gain().ImposeMax(150);
    EXPECT_EQ(Gain().GetMin(), 2);
    EXPECT_EQ(Gain().GetMax(), 20);
}

TEST_F(IntegerValue, TellsItsListenersOfAnImposedLimit) {
    Record("Gain");
    Gain().ImposeMax(15);
    EXPECT_THAT(m_Calls, testing::ElementsAre("Gain inside", "Gain outside"));
}

TEST_F(IntegerValue, StepsByItsIncrement) {
    EXPECT_EQ(Gain().GetIncMode(), fixedIncrement);
    EXPECT_EQ(Gain().GetListOfValidValues().size(), 0U);
}

TEST_F(IntegerValue, IsSpokenForByTheIntegerInterface) {
    EXPECT_EQ(Get<INode>("Gain").GetPrincipalInterfaceType(), intfIInteger);
}

TEST_F(IntegerValue, ConvertsTexts) {
    Gain().FromString("14");
    EXPECT_EQ(Gain().ToString(), "14");
    EXPECT_EQ(FailureText<InvalidArgumentException>([&] { Gain().FromString("some"); }),
              "Node 'Gain' : cannot convert string 'some' to int.");
}

TEST_F(IntegerValue, LeavesTheWriteCounterBalancedAfterAFailure) {
    m_Port.failWrites = true;
    EXPECT_EQ(FailureText<RuntimeException>([&] { Gain().SetValue(10); }), "The device is gone");
    EXPECT_TRUE(m_Map->GetBathometer().IsZero());
    EXPECT_EQ(Gain().GetValue(), 6);
}

using IntegerAccess = ValueGraph;

TEST_F(IntegerAccess, ReadsNothingFromWhatIsWriteOnly) {
    AddReg("Reg", 0, WO);
    AddInteger("Trigger", {{ID::pValue_ID, "Reg"}});
    Build();
    EXPECT_EQ(FailureText<AccessException>([&] { Get<IInteger>("Trigger").GetValue(); }),
              "Node is not readable.");
    EXPECT_EQ(m_Port.reads, 0);
}

TEST_F(IntegerAccess, WritesNothingToWhatIsReadOnly) {
    AddReg("Reg", 0, RO);
    AddInteger("Status", {{ID::pValue_ID, "Reg"}});
    Build();
    EXPECT_EQ(FailureText<AccessException>([&] { Get<IInteger>("Status").SetValue(1); }),
              "Node is not writable.");
    EXPECT_EQ(m_Port.writes, 0);
}

TEST_F(IntegerAccess, HasNoLimitsWhileNotAvailable) {
    AddReg("Off", 0, RO);
    AddInteger("Gain", {{ID::pIsAvailable_ID, "Off"}}).AddProperty(ID::Value_ID, 3);
    Build();
    auto& gain = Get<IInteger>("Gain");
    EXPECT_EQ(FailureText<AccessException>([&] { gain.GetMin(); }), "Node is not available.");
    EXPECT_EQ(FailureText<AccessException>([&] { gain.GetMax(); }), "Node is not available.");
}

TEST_F(IntegerAccess, RefusesAnIncrementBelowOne) {
    AddReg("Reg", 0);
    AddInteger("Gain", {{ID::pValue_ID, "Reg"}}).AddProperty(ID::Inc_ID, 0);
    Build();
    EXPECT_EQ(FailureText<LogicalErrorException>([&] { Get<IInteger>("Gain").SetValue(1); }),
              "Increment must be larger than 0.");
}

TEST_F(IntegerAccess, ChecksStepsOverTheWholeRange) {
    CNodeData& gain = AddInteger("Gain");
    gain.AddProperty(ID::Value_ID, kHighest);
    gain.AddProperty(ID::Min_ID, kLowest);
    gain.AddProperty(ID::Inc_ID, 2);
    Build();
    EXPECT_EQ(FailureText<OutOfRangeException>([&] { Get<IInteger>("Gain").GetValue(true); }),
              "The difference between Value = 9223372036854775807 and Min = -9223372036854775808 "
              "must be dividable without rest by Inc = 2.");
}

TEST_F(IntegerAccess, ReportsTheErrorThatTheDeviceFlagsAfterAWrite) {
    AddReg("Reg", 0);
    AddReg("ErrorReg", 4, RO, NoCache);
    AddEntry("None", 0);
    AddEntry("TooHot", 1).AddProperty(ID::ToolTip_ID, "Let it cool down");
    Add(CNodeData::Enumeration_ID, "Error",
        {{ID::pValue_ID, "ErrorReg"}, {ID::pEnumEntry_ID, "None"}, {ID::pEnumEntry_ID, "TooHot"}});
    AddInteger("Gain", {{ID::pError_ID, "Error"}, {ID::pValue_ID, "Reg"}});
    Build();
    auto& gain = Get<IInteger>("Gain");
    gain.SetValue(1);
    m_Port.Put(4, 1);
    EXPECT_EQ(FailureText<RuntimeException>([&] { gain.SetValue(2); }),
              "TooHot : Let it cool down");
    EXPECT_EQ(m_Port.Peek(0), 2);
    EXPECT_FALSE(gain.IsValueCacheValid());
    gain.SetValue(3, false);
    EXPECT_EQ(m_Port.Peek(0), 3);
}

struct IntegerText {
    ERepresentation representation;
    int64_t value;
    const char* text;
};

class IntegerTexts : public ValueGraph, public testing::WithParamInterface<IntegerText> {};

TEST_P(IntegerTexts, FollowTheRepresentation) {
    AddReg("Reg", 0);
    AddInteger("Value", {{ID::pValue_ID, "Reg"}})
        .AddProperty(ID::Representation_ID, CProperty::ERepresentation_ID,
                     GetParam().representation);
    Build();
    auto& value = Get<IInteger>("Value");
    value.FromString(GetParam().text);
    EXPECT_EQ(value.GetValue(), GetParam().value);
    EXPECT_EQ(value.ToString(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Of, IntegerTexts,
                         testing::Values(IntegerText{PureNumber, -12, "-12"},
                                         IntegerText{HexNumber, 0x1f, "0x1f"},
                                         IntegerText{Boolean, 1, "true"},
                                         IntegerText{IPV4Address, 0x0A000001, "10.0.0.1"}));

}  // namespace ValueTest
