// Texts held by the description or by another node.

#include "ValueGraph.h"

namespace ValueTest {

namespace {

/// "Name" over a register of eight characters.
class StringValue : public ValueGraph {
protected:
    void BuildWith(EAccessMode mode) {
        CNodeData& reg = Add(CNodeData::StringReg_ID, "Reg", {{ID::pPort_ID, "Device"}});
        reg.AddProperty(ID::Address_ID, 0);
        reg.AddProperty(ID::Length_ID, 8);
        reg.AddProperty(ID::AccessMode_ID, CProperty::EAccessMode_ID, mode);
        Add(CNodeData::String_ID, "Name", {{ID::pValue_ID, "Reg"}});
        Build();
    }
    IString& Name() { return Get<IString>("Name"); }
};

}  // namespace

TEST_F(StringValue, WritesAndReads) {
    BuildWith(RW);
    Name() = "cam";
    EXPECT_EQ(Name().GetValue(), "cam");
    EXPECT_EQ(Name()(), "cam");
    EXPECT_EQ(*Name(), "cam");
    EXPECT_EQ(Get<IString>("Reg").GetValue(), "cam");
}

TEST_F(StringValue, HasTheLengthOfItsSource) {
    BuildWith(RW);
    EXPECT_EQ(Name().GetMaxLength(), 8);
}

TEST_F(StringValue, IsItsOwnText) {
    BuildWith(RW);
    Name().FromString("cam");
    EXPECT_EQ(Name().ToString(), "cam");
}

TEST_F(StringValue, KeepsWhatWasWritten) {
    BuildWith(RW);
    Name().SetValue("cam");
    EXPECT_TRUE(Name().IsValueCacheValid());
    EXPECT_EQ(Name().GetValue(), "cam");
    EXPECT_EQ(m_Port.reads, 0);
}

TEST_F(StringValue, RefusesToWriteWhatIsReadOnly) {
    BuildWith(RO);
    EXPECT_EQ(FailureText<AccessException>([&] { Name().SetValue("cam"); }),
              "Node is not writable.");
}

TEST_F(StringValue, RefusesToReadWhatIsWriteOnly) {
    BuildWith(WO);
    EXPECT_EQ(FailureText<AccessException>([&] { Name().GetValue(); }), "Node is not readable.");
}

TEST_F(StringValue, MayComeFromTheDescription) {
    Add(CNodeData::String_ID, "Name").AddProperty(ID::Value_ID, "fixed");
    Build();
    EXPECT_EQ(Name().GetValue(), "fixed");
}

TEST_F(StringValue, IsSpokenForByTheStringInterface) {
    BuildWith(RW);
    EXPECT_EQ(Get<INode>("Name").GetPrincipalInterfaceType(), intfIString);
}

}  // namespace ValueTest
