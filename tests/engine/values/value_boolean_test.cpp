// Booleans, held as one of two numbers.

#include "ValueGraph.h"

namespace ValueTest {

namespace {

class BooleanValue : public ValueGraph {
protected:
    CNodeData& AddFlag() {
        AddReg("Reg", 0);
        return Add(CNodeData::Boolean_ID, "Flag", {{ID::pValue_ID, "Reg"}});
    }
    void SetValues(CNodeData& flag, int64_t on, int64_t off) {
        flag.AddProperty(ID::OnValue_ID, on);
        flag.AddProperty(ID::OffValue_ID, off);
    }
    IBoolean& Flag() { return Get<IBoolean>("Flag"); }
};

}  // namespace

TEST_F(BooleanValue, StandsForOneAndZero) {
    AddFlag();
    Build();
    Flag() = true;
    EXPECT_EQ(m_Port.Peek(0), 1);
    EXPECT_TRUE(Flag()());
    Flag().SetValue(false);
    EXPECT_EQ(m_Port.Peek(0), 0);
    EXPECT_FALSE(Flag().GetValue());
}

TEST_F(BooleanValue, ReadsZeroAsTrueWhenThatIsItsOnValue) {
    SetValues(AddFlag(), 0, 1);
    Build();
    EXPECT_TRUE(Flag().GetValue());
    Flag().SetValue(false);
    EXPECT_EQ(m_Port.Peek(0), 1);
}

TEST_F(BooleanValue, RefusesANumberThatIsNeither) {
    SetValues(AddFlag(), 5, 3);
    m_Port.Put(0, 4);
    Build();
    EXPECT_EQ(FailureText<LogicalErrorException>([&] { Flag().GetValue(); }),
              "Value '4' is neither true (5) nor false (3)");
}

TEST_F(BooleanValue, RefusesIdenticalOnAndOffValues) {
    SetValues(AddFlag(), 2, 2);
    EXPECT_EQ(FailureText<RuntimeException>([&] { Build(); }),
              "Boolean node 'Flag' has identical on and off value");
}

TEST_F(BooleanValue, ConvertsTexts) {
    AddFlag();
    Build();
    Flag().FromString("true");
    EXPECT_EQ(Flag().ToString(), "true");
    Flag().FromString("0");
    EXPECT_EQ(Flag().ToString(), "false");
    EXPECT_EQ(FailureText<InvalidArgumentException>([&] { Flag().FromString("perhaps"); }),
              "Node 'Flag' : cannot convert string 'perhaps' to boolean");
}

TEST_F(BooleanValue, ChecksAccess) {
    AddReg("Reg", 0, RO);
    Add(CNodeData::Boolean_ID, "Flag", {{ID::pValue_ID, "Reg"}});
    Build();
    EXPECT_EQ(FailureText<AccessException>([&] { Flag().SetValue(true); }),
              "Node is not writable.");
}

TEST_F(BooleanValue, KeepsWhatWasWritten) {
    AddFlag();
    Build();
    Flag().SetValue(true);
    EXPECT_TRUE(Flag().IsValueCacheValid());
    EXPECT_TRUE(Flag().GetValue());
    EXPECT_EQ(m_Port.reads, 0);
}

TEST_F(BooleanValue, IsSpokenForByTheBooleanInterface) {
    AddFlag();
    Build();
    EXPECT_EQ(Get<INode>("Flag").GetPrincipalInterfaceType(), intfIBoolean);
}

struct ConstantFlag {
    int64_t constant;
    bool value;
};

class ConstantFlags : public BooleanValue, public testing::WithParamInterface<ConstantFlag> {};

TEST_P(ConstantFlags, AreTrueForOneAlone) {
    CNodeData& flag = Add(CNodeData::Boolean_ID, "Flag");
    flag.AddProperty(ID::Value_ID, GetParam().constant);
    SetValues(flag, 7, 5);
    Build();
    EXPECT_EQ(Flag().GetValue(), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Of, ConstantFlags,
                         testing::Values(ConstantFlag{1, true}, ConstantFlag{0, false},
                                         ConstantFlag{7, false}));

TEST_F(BooleanValue, MayBeAFeatureWhenConstant) {
    CNodeData& flag = Add(CNodeData::Boolean_ID, "Flag");
    flag.AddProperty(ID::Value_ID, 1);
    SetValues(flag, 7, 5);
    Add(CNodeData::Category_ID, "Root", {{ID::pFeature_ID, "Flag"}});
    Build();
    EXPECT_TRUE(Flag().GetValue());
}

}  // namespace ValueTest
