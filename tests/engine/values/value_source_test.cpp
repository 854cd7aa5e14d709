// Where integers and floats get their values from, and what they write to.

#include <limits>

#include "ValueGraph.h"
#include "values/IntegerImpl.h"

namespace ValueTest {

namespace {

/// "Gain" selected by "Index": register A at 1, a constant at 2, register D
/// otherwise.
class IndexedValue : public ValueGraph {
protected:
    void BuildGain(EAccessMode defaultMode = RW) {
        AddReg("IndexReg", 0, m_IndexMode);
        AddReg("A", 4);
        AddReg("D", 8, defaultMode);
        CNodeData& gain = AddInteger("Gain", {{ID::pIndex_ID, "IndexReg"}});
        gain.AddProperty(ID::pValueIndexed_ID, m_Data.GetNodeID("A", true));
        AtIndex(gain, 1);
        gain.AddProperty(ID::ValueIndexed_ID, 42);
        AtIndex(gain, 2);
        gain.AddProperty(ID::pValueDefault_ID, m_Data.GetNodeID("D", true));
        m_Port.Put(4, 100);
        m_Port.Put(8, 200);
        Build();
    }
    IInteger& Gain() { return Get<IInteger>("Gain"); }
    void Select(int64_t index) { Get<IInteger>("IndexReg").SetValue(index); }

    EAccessMode m_IndexMode = RW;
};

/// Reaches the mark that a write leaves on its node.
struct Inside : CIntegerImpl {
    static constexpr bool CNodeImpl::*KeepCache = &Inside::m_KeepCache;
};

/// "Gain" over register A, copied to B and C.
class CopiedValue : public ValueGraph {
protected:
    void BuildGain(EAccessMode modeOfCopy = RW, int64_t incOfCopy = 1) {
        AddReg("A", 0);
        AddReg("BReg", 4, modeOfCopy);
        CNodeData& copy = AddInteger("B", {{ID::pValue_ID, "BReg"}});
        copy.AddProperty(ID::Inc_ID, incOfCopy);
        copy.AddProperty(ID::Min_ID, -10);
        copy.AddProperty(ID::Max_ID, 1000);
        AddReg("C", 8);
        AddInteger("Gain",
                   {{ID::pValueCopy_ID, "B"}, {ID::pValue_ID, "A"}, {ID::pValueCopy_ID, "C"}});
        Build();
    }
    IInteger& Gain() { return Get<IInteger>("Gain"); }
};

}  // namespace

TEST_F(IndexedValue, ReadsTheSourceThatTheIndexSelects) {
    BuildGain();
    Select(1);
    EXPECT_EQ(Gain().GetValue(), 100);
    Select(2);
    EXPECT_EQ(Gain().GetValue(), 42);
}

TEST_F(IndexedValue, FallsBackToTheDefault) {
    BuildGain();
    Select(7);
    EXPECT_EQ(Gain().GetValue(), 200);
}

TEST_F(IndexedValue, WritesOnlyTheSelectedSource) {
    BuildGain();
    Select(1);
    Gain().SetValue(5);
    EXPECT_EQ(m_Port.Peek(4), 5);
    EXPECT_EQ(m_Port.Peek(8), 200);
}

TEST_F(IndexedValue, TakesItsRightsFromTheSelectedSource) {
    BuildGain(RO);
    Select(1);
    EXPECT_EQ(Gain().GetAccessMode(), RW);
    Select(7);
    EXPECT_EQ(Gain().GetAccessMode(), RO);
}

TEST_F(IndexedValue, IsNotAvailableWithoutAReadableIndex) {
    m_IndexMode = WO;
    BuildGain();
    EXPECT_EQ(Gain().GetAccessMode(), NA);
}

TEST_F(IndexedValue, IsNotImplementedWithoutAnImplementedIndex) {
    m_IndexMode = NI;
    BuildGain();
    EXPECT_EQ(Gain().GetAccessMode(), NI);
}

TEST_F(IndexedValue, TakesItsLimitsFromTheSelectedSource) {
    BuildGain();
    Select(1);
    EXPECT_EQ(Gain().GetMax(), std::numeric_limits<int32_t>::max());
    Select(2);
    EXPECT_EQ(Gain().GetMax(), std::numeric_limits<int64_t>::max());
}

TEST_F(IndexedValue, IsReadOnlyWhereAConstantIsSelected) {
    BuildGain();
    Select(2);
    EXPECT_EQ(Gain().GetAccessMode(), RO);
    EXPECT_EQ(FailureText<AccessException>([&] { Gain().SetValue(43); }), "Node is not writable.");
    EXPECT_EQ(FailureText<RuntimeException>([&] { Gain().SetValue(43, false); }),
              "CIntegerPolyRef::SetValue(): uninitialized pointer");
    EXPECT_EQ(Gain().GetValue(), 42);
}

TEST_F(IndexedValue, IsNotAvailableWhereTheIndexSelectsNothing) {
    AddReg("IndexReg", 0);
    AddReg("A", 4);
    CNodeData& gain = AddInteger("Gain", {{ID::pIndex_ID, "IndexReg"}});
    gain.AddProperty(ID::pValueIndexed_ID, m_Data.GetNodeID("A", true));
    AtIndex(gain, 1);
    Build();
    EXPECT_EQ(Gain().GetAccessMode(), NA);
    Select(1);
    EXPECT_EQ(Gain().GetAccessMode(), RW);
}

// A camera may lack what stands at an index that isn't selected.
TEST_F(IndexedValue, LeavesItsRightsToTheSelectedSourceAlone) {
    BuildGain();
    for (const EAccessMode missing : {NI, NA}) {
        Get<INode>("A").ImposeAccessMode(missing);
        Select(7);
        EXPECT_EQ(Gain().GetAccessMode(), RW);
        EXPECT_EQ(Gain().GetValue(), 200);
        Select(2);
        EXPECT_EQ(Gain().GetAccessMode(), RO);
        EXPECT_EQ(Gain().GetValue(), 42);
        Select(1);
        EXPECT_EQ(Gain().GetAccessMode(), missing);
    }
}

TEST_F(IndexedValue, NeedsWhatItReadsBesideItsSources) {
    AddReg("IndexReg", 0);
    AddReg("A", 4);
    AddReg("D", 8);
    CNodeData& gain = AddInteger("Gain", {{ID::pIndex_ID, "IndexReg"}, {ID::pMax_ID, "A"}});
    gain.AddProperty(ID::pValueIndexed_ID, m_Data.GetNodeID("A", true));
    AtIndex(gain, 1);
    gain.AddProperty(ID::pValueDefault_ID, m_Data.GetNodeID("D", true));
    Build();
    EXPECT_EQ(Gain().GetAccessMode(), RW);
    Get<INode>("A").ImposeAccessMode(NA);
    EXPECT_EQ(Gain().GetAccessMode(), NA);
}

// The rights belong to what was selected when they were computed, so even the
// invalidation that spares a value just written must drop them.
TEST_F(IndexedValue, ForgetsItsRightsEvenWhereItsValueIsKept) {
    BuildGain(RO);
    Select(1);
    ASSERT_EQ(Gain().GetAccessMode(), RW);
    Gain().GetValue();
    Get<CNodeImpl>("Gain").*Inside::KeepCache = true;
    Select(7);
    EXPECT_TRUE(Gain().IsValueCacheValid());
    EXPECT_EQ(Gain().GetAccessMode(), RO);
}

TEST_F(CopiedValue, WritesToAllSources) {
    BuildGain();
    Gain().SetValue(6);
    EXPECT_EQ(m_Port.Peek(0), 6);
    EXPECT_EQ(m_Port.Peek(4), 6);
    EXPECT_EQ(m_Port.Peek(8), 6);
}

TEST_F(CopiedValue, ReadsFromTheSourceThatIsNoCopy) {
    BuildGain();
    m_Port.Put(0, 3);
    m_Port.Put(4, 4);
    EXPECT_EQ(Gain().GetValue(), 3);
    EXPECT_EQ(m_Port.reads, 1);
}

TEST_F(CopiedValue, KeepsToTheNarrowestLimits) {
    BuildGain();
    EXPECT_EQ(Gain().GetMin(), -10);
    EXPECT_EQ(Gain().GetMax(), 1000);
}

TEST_F(CopiedValue, LosesItsWriteAccessWithThatOfACopy) {
    BuildGain(RO);
    EXPECT_EQ(Gain().GetAccessMode(), RO);
}

TEST_F(CopiedValue, LosesItsWriteAccessWhenIncrementsDiffer) {
    BuildGain(RW, 2);
    EXPECT_EQ(Gain().GetAccessMode(), RO);
}

TEST_F(CopiedValue, IsWritableWhenAllSourcesAre) {
    BuildGain();
    EXPECT_EQ(Gain().GetAccessMode(), RW);
}

TEST_F(CopiedValue, IsNotAvailableWhenOnlyReadingWouldRemainOfAWriteOnlySource) {
    AddReg("A", 0, WO);
    AddReg("B", 4, RO);
    AddInteger("Gain", {{ID::pValue_ID, "A"}, {ID::pValueCopy_ID, "B"}});
    Build();
    EXPECT_EQ(Gain().GetAccessMode(), NA);
}

// A value with copies of its own.

class HeldValueWithCopies : public ValueGraph {
protected:
    void BuildGain(EAccessMode modeOfCopy = RW) {
        AddReg("A", 0);
        AddReg("B", 4, modeOfCopy);
        AddInteger("Gain", {{ID::pValueCopy_ID, "A"}, {ID::pValueCopy_ID, "B"}})
            .AddProperty(ID::Value_ID, 3);
        AddInteger("Shown", {{ID::pValue_ID, "Gain"}});
        Build();
    }
    IInteger& Gain() { return Get<IInteger>("Gain"); }
};

TEST_F(HeldValueWithCopies, WritesToItselfAndToThem) {
    BuildGain();
    EXPECT_EQ(Gain().GetValue(), 3);
    Record("Shown");
    Record("Gain");
    Gain().SetValue(6);
    EXPECT_THAT(m_Calls, testing::UnorderedElementsAre("Shown inside", "Gain inside",
                                                       "Shown outside", "Gain outside"));
    EXPECT_EQ(Gain().GetValue(true, true), 6);
    EXPECT_EQ(m_Port.Peek(0), 6);
    EXPECT_EQ(m_Port.Peek(4), 6);
    EXPECT_EQ(Get<IInteger>("Shown").GetValue(), 6);
    EXPECT_EQ(Gain().GetMax(), std::numeric_limits<int32_t>::max());
}

TEST_F(HeldValueWithCopies, KeepsWhatItHadWhereACopyFails) {
    BuildGain();
    m_Port.failWrites = true;
    EXPECT_EQ(FailureText<RuntimeException>([&] { Gain().SetValue(6); }), "The device is gone");
    EXPECT_EQ(Gain().GetValue(), 3);
}

TEST_F(HeldValueWithCopies, IsReadOnlyWithACopyThatIs) {
    BuildGain(RO);
    EXPECT_EQ(Gain().GetAccessMode(), RO);
}

/// "Gain" over an integer register and a float register, one of them the copy.
class CopyOverFloats : public ValueGraph {
protected:
    void AddSources() {
        AddReg("Whole", 0);
        CNodeData& reg = Add(CNodeData::FloatReg_ID, "Real", {{ID::pPort_ID, "Device"}});
        reg.AddProperty(ID::Address_ID, 8);
        reg.AddProperty(ID::Length_ID, 8);
        reg.AddProperty(ID::AccessMode_ID, CProperty::EAccessMode_ID, RW);
        reg.AddProperty(ID::Endianess_ID, CProperty::EEndianess_ID, LittleEndian);
    }
    template <class Interface>
    void ExpectCopied() {
        auto& gain = Get<Interface>("Gain");
        EXPECT_EQ(gain.GetAccessMode(), RW);
        gain.SetValue(7);
        EXPECT_EQ(gain.GetValue(true, true), 7);
        EXPECT_EQ(Get<IFloat>("Real").GetValue(true, true), 7.0);
    }
};

TEST_F(CopyOverFloats, OfAnIntegerIsWritten) {
    AddSources();
    AddInteger("Gain", {{ID::pValue_ID, "Whole"}, {ID::pValueCopy_ID, "Real"}});
    Build();
    ExpectCopied<IInteger>();
    EXPECT_EQ(m_Port.Peek(0), 7);
    EXPECT_EQ(Get<IInteger>("Gain").GetMin(), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(Get<IInteger>("Gain").GetMax(), std::numeric_limits<int32_t>::max());
    EXPECT_EQ(Get<IInteger>("Gain").GetInc(), 1);
}

TEST_F(CopyOverFloats, MayHaveAFloatToReadFromToo) {
    AddSources();
    AddInteger("Gain", {{ID::pValue_ID, "Real"}, {ID::pValueCopy_ID, "Whole"}});
    Build();
    ExpectCopied<IInteger>();
    EXPECT_EQ(m_Port.Peek(0), 7);
}

TEST_F(CopyOverFloats, MayHaveNothingButFloats) {
    AddSources();
    Add(CNodeData::Float_ID, "Limited").AddProperty(ID::Value_ID, 0.0);
    CNodeData& limited = *m_Data.GetLastNodeData();
    limited.AddProperty(ID::Min_ID, -2.0);
    limited.AddProperty(ID::Max_ID, 9.0);
    AddInteger("Gain", {{ID::pValue_ID, "Real"}, {ID::pValueCopy_ID, "Limited"}});
    Build();
    ExpectCopied<IInteger>();
    EXPECT_EQ(Get<IFloat>("Limited").GetValue(), 7.0);
    EXPECT_EQ(Get<IInteger>("Gain").GetMin(), -2);
    EXPECT_EQ(Get<IInteger>("Gain").GetMax(), 9);
}

TEST_F(CopyOverFloats, OfAFloatIsWritten) {
    AddSources();
    Add(CNodeData::Float_ID, "Gain", {{ID::pValue_ID, "Whole"}, {ID::pValueCopy_ID, "Real"}});
    Build();
    ExpectCopied<IFloat>();
    EXPECT_EQ(m_Port.Peek(0), 7);
}

TEST_F(CopyOverFloats, WithOtherStepsTakesTheWriteAccess) {
    AddSources();
    Add(CNodeData::Float_ID, "Stepped", {{ID::pValue_ID, "Real"}}).AddProperty(ID::Inc_ID, 2.0);
    AddInteger("Gain", {{ID::pValue_ID, "Whole"}, {ID::pValueCopy_ID, "Stepped"}});
    Build();
    EXPECT_EQ(Get<IInteger>("Gain").GetAccessMode(), RO);
}

using ValueSource = ValueGraph;

TEST_F(ValueSource, ForwardsRepresentationAndUnit) {
    CNodeData& reg = AddReg("Reg", 0);
    reg.AddProperty(ID::Representation_ID, CProperty::ERepresentation_ID, HexNumber);
    reg.AddProperty(ID::Unit_ID, "mV");
    AddInteger("Plain", {{ID::pValue_ID, "Reg"}});
    CNodeData& own = AddInteger("Own", {{ID::pValue_ID, "Reg"}});
    own.AddProperty(ID::Representation_ID, CProperty::ERepresentation_ID, Linear);
    own.AddProperty(ID::Unit_ID, "V");
    Build();
    EXPECT_EQ(Get<IInteger>("Plain").GetRepresentation(), HexNumber);
    EXPECT_EQ(Get<IInteger>("Plain").GetUnit(), "mV");
    EXPECT_EQ(Get<IInteger>("Own").GetRepresentation(), Linear);
    EXPECT_EQ(Get<IInteger>("Own").GetUnit(), "V");
}

TEST_F(ValueSource, TakesLimitsFromOtherNodes) {
    AddReg("MinReg", 0);
    AddReg("MaxReg", 4);
    AddReg("IncReg", 8);
    AddReg("Reg", 12);
    AddInteger("Gain", {{ID::pValue_ID, "Reg"},
                        {ID::pMin_ID, "MinReg"},
                        {ID::pMax_ID, "MaxReg"},
                        {ID::pInc_ID, "IncReg"}});
    m_Port.Put(0, -6);
    m_Port.Put(4, 60);
    m_Port.Put(8, 3);
    Build();
    auto& gain = Get<IInteger>("Gain");
    EXPECT_EQ(gain.GetMin(), -6);
    EXPECT_EQ(gain.GetMax(), 60);
    EXPECT_EQ(gain.GetInc(), 3);
}

TEST_F(ValueSource, ListsItsValidValues) {
    AddReg("Reg", 0);
    AddInteger("Binning", {{ID::pValue_ID, "Reg"}}).AddProperty(ID::ValidValueSet_ID, "1;2; 4;0x8");
    Build();
    auto& binning = Get<IInteger>("Binning");
    EXPECT_EQ(binning.GetIncMode(), listIncrement);
    const int64_autovector_t all = binning.GetListOfValidValues(false);
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all[3], 8);
    binning.ImposeMin(2);
    binning.ImposeMax(4);
    const int64_autovector_t bounded = binning.GetListOfValidValues();
    ASSERT_EQ(bounded.size(), 2U);
    EXPECT_EQ(bounded[0], 2);
    EXPECT_EQ(bounded[1], 4);
}

TEST_F(ValueSource, ListsTheValidValuesOfItsSource) {
    AddReg("Reg", 0);
    AddInteger("Inner", {{ID::pValue_ID, "Reg"}}).AddProperty(ID::ValidValueSet_ID, "1;2;4");
    AddInteger("Binning", {{ID::pValue_ID, "Inner"}});
    Build();
    EXPECT_EQ(Get<IInteger>("Binning").GetListOfValidValues().size(), 3U);
}

class OverriddenValueSet : public ValueGraph, public testing::WithParamInterface<CPropertyID> {};

TEST_P(OverriddenValueSet, IsNotListed) {
    AddReg("Reg", 0);
    AddInteger("Inner", {{ID::pValue_ID, "Reg"}}).AddProperty(ID::ValidValueSet_ID, "1;2;4");
    AddInteger("Binning", {{ID::pValue_ID, "Inner"}}).AddProperty(GetParam(), 1);
    Build();
    EXPECT_EQ(Get<IInteger>("Binning").GetIncMode(), fixedIncrement);
    EXPECT_EQ(Get<IInteger>("Binning").GetListOfValidValues(false).size(), 0U);
}

INSTANTIATE_TEST_SUITE_P(By, OverriddenValueSet,
                         testing::Values(CPropertyID(ID::Min_ID), CPropertyID(ID::Max_ID),
                                         CPropertyID(ID::Inc_ID)));

TEST_F(ValueSource, RefusesAValueSetThatIsNone) {
    AddReg("Reg", 0);
    AddInteger("Binning", {{ID::pValue_ID, "Reg"}}).AddProperty(ID::ValidValueSet_ID, "1;many");
    EXPECT_EQ(FailureText<InvalidArgumentException>([&] { Build(); }),
              "Node 'Binning' : cannot convert string 'many' to a value.");
}

}  // namespace ValueTest
