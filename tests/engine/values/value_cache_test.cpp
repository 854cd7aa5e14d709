// The typed cache of a node, and what writes and reads leave in it.

#include "ValueGraph.h"

namespace ValueTest {

namespace {

class TypedCache : public ValueGraph {
protected:
    void BuildWith(ECachingMode caching) {
        AddReg("Reg", 0, RW, caching);
        AddInteger("Gain", {{ID::pValue_ID, "Reg"}});
        m_Port.Put(0, 5);
        Build();
        m_pGain = &Get<IInteger>("Gain");
    }

    IInteger* m_pGain = nullptr;
};

}  // namespace

TEST_F(TypedCache, KeepsWhatIsWrittenThrough) {
    BuildWith(WriteThrough);
    m_pGain->SetValue(7);
    EXPECT_TRUE(m_pGain->IsValueCacheValid());
    m_Port.Put(0, 8);
    EXPECT_EQ(m_pGain->GetValue(), 7);
    EXPECT_EQ(m_Port.reads, 0);
}

TEST_F(TypedCache, KeepsTheCachesOfEveryNodeThatAWriteGoesThrough) {
    BuildWith(WriteThrough);
    m_pGain->SetValue(7);
    EXPECT_TRUE(Get<IInteger>("Reg").IsValueCacheValid());
}

TEST_F(TypedCache, KeepsOnlyWhatIsReadWhenWrittenAround) {
    BuildWith(WriteAround);
    m_pGain->SetValue(7);
    EXPECT_FALSE(m_pGain->IsValueCacheValid());
    EXPECT_EQ(m_pGain->GetValue(), 7);
    EXPECT_TRUE(m_pGain->IsValueCacheValid());
    EXPECT_EQ(m_Port.reads, 1);
    m_pGain->GetValue();
    EXPECT_EQ(m_Port.reads, 1);
}

TEST_F(TypedCache, KeepsNothingWithoutCaching) {
    BuildWith(NoCache);
    m_pGain->SetValue(7);
    EXPECT_FALSE(m_pGain->IsValueCacheValid());
    m_pGain->GetValue();
    m_pGain->GetValue();
    EXPECT_FALSE(m_pGain->IsValueCacheValid());
    EXPECT_EQ(m_Port.reads, 2);
}

TEST_F(TypedCache, IsNotAskedWhenVerifying) {
    BuildWith(WriteThrough);
    m_pGain->GetValue();
    m_Port.Put(0, 9);
    ASSERT_TRUE(m_pGain->IsValueCacheValid());
    EXPECT_EQ(m_pGain->GetValue(), 5);
    EXPECT_EQ(m_pGain->GetValue(true), 9);
}

TEST_F(TypedCache, IsNotAskedWhenTheCallerSaysSo) {
    BuildWith(WriteThrough);
    EXPECT_EQ(m_pGain->GetValue(), 5);
    m_Port.Put(0, 6);
    EXPECT_EQ(m_pGain->GetValue(), 5);
    EXPECT_EQ(m_pGain->GetValue(false, true), 6);
}

TEST_F(TypedCache, DropsItsValueWhenTheNodeBehindIsWritten) {
    BuildWith(WriteThrough);
    m_pGain->GetValue();
    Get<IInteger>("Reg").SetValue(9);
    EXPECT_FALSE(m_pGain->IsValueCacheValid());
    EXPECT_EQ(m_pGain->GetValue(), 9);
}

TEST_F(TypedCache, DropsItsValueWhenAWriteFails) {
    BuildWith(WriteThrough);
    m_pGain->SetValue(7);
    m_Port.failWrites = true;
    EXPECT_THROW(m_pGain->SetValue(8), RuntimeException);
    EXPECT_FALSE(m_pGain->IsValueCacheValid());
    EXPECT_EQ(m_pGain->GetValue(), 7);
}

TEST_F(TypedCache, OutlivesOnlyTheInvalidationOfItsOwnWrite) {
    BuildWith(WriteThrough);
    m_pGain->SetValue(7);
    Get<INode>("Gain").InvalidateNode();
    EXPECT_FALSE(m_pGain->IsValueCacheValid());
}

TEST_F(TypedCache, FiresOnceForAWriteThatGoesThroughSeveralNodes) {
    BuildWith(WriteThrough);
    Record("Gain");
    Record("Reg");
    m_pGain->SetValue(7);
    EXPECT_THAT(m_Calls, testing::UnorderedElementsAre("Gain inside", "Reg inside", "Gain outside",
                                                       "Reg outside"));
}

TEST_F(TypedCache, FiresNothingForAWriteThatFails) {
    BuildWith(WriteThrough);
    Record("Gain");
    m_Port.failWrites = true;
    EXPECT_THROW(m_pGain->SetValue(8), RuntimeException);
    EXPECT_TRUE(m_Calls.empty());
}

}  // namespace ValueTest
