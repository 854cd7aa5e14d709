// Commands: execution and the watch for its end.

#include <thread>

#include "ValueGraph.h"

namespace ValueTest {

namespace {

/// "Start" writes 5 to the register at 0.
class CommandValue : public ValueGraph {
protected:
    void BuildWith(EAccessMode mode) {
        AddReg("Reg", 0, mode);
        Add(CNodeData::Command_ID, "Start", {{ID::pValue_ID, "Reg"}})
            .AddProperty(ID::CommandValue_ID, 5);
        Build();
    }
    ICommand& Start() { return Get<ICommand>("Start"); }
};

/// Notes whether another thread could take the map's lock after the call.
class LockProbe : public CNodeCallback {
public:
    LockProbe(INode* node, std::vector<bool>& isFree) : CNodeCallback(node), m_IsFree(isFree) {}
    void operator()(ECallbackType type) const override;
    void Destroy() override { delete this; }

private:
    std::vector<bool>& m_IsFree;
};

void LockProbe::operator()(ECallbackType type) const {
    if (type != cbPostOutsideLock) {
        return;
    }
    bool isFree = false;
    std::thread([&] {
        CLock& lock = m_pNode->GetNodeMap()->GetLock();
        isFree = lock.TryLock();
        if (isFree) {
            lock.Unlock();
        }
    }).join();
    m_IsFree.push_back(isFree);
}

}  // namespace

TEST_F(CommandValue, WritesItsCommandValue) {
    BuildWith(RW);
    Start()();
    EXPECT_EQ(m_Port.Peek(0), 5);
}

TEST_F(CommandValue, RunsUntilTheDeviceChangesTheValue) {
    BuildWith(RW);
    EXPECT_TRUE(Start().IsDone());
    Start().Execute();
    EXPECT_FALSE(Start().IsDone());
    EXPECT_FALSE(Start().IsDone());
    m_Port.Put(0, 0);
    EXPECT_TRUE(Start().IsDone());
    EXPECT_TRUE(Start().IsDone());
    EXPECT_EQ(m_Port.reads, 3) << "a command that is done is not asked about";
}

TEST_F(CommandValue, IsDoneAtOnceWhenItsEndCannotBeRead) {
    BuildWith(WO);
    Start().Execute();
    EXPECT_EQ(m_Port.Peek(0), 5);
    EXPECT_TRUE(Start().IsDone());
    EXPECT_EQ(m_Port.reads, 0);
}

TEST_F(CommandValue, RunsItsCallbacksOnceItIsFoundDone) {
    BuildWith(RW);
    Start().Execute();
    Record("Start");
    Start().IsDone();
    EXPECT_TRUE(m_Calls.empty());
    m_Port.Put(0, 0);
    Start().IsDone();
    EXPECT_THAT(m_Calls, testing::ElementsAre("Start inside", "Start outside"));
    Start().IsDone();
    EXPECT_EQ(m_Calls.size(), 2U);
}

TEST_F(CommandValue, RefusesWhatIsNotWritable) {
    BuildWith(RO);
    EXPECT_EQ(FailureText<AccessException>([&] { Start().Execute(false); }),
              "Node is not writable.");
}

TEST_F(CommandValue, IsNotDoneNorRunningWhenNotImplemented) {
    BuildWith(NI);
    EXPECT_EQ(FailureText<AccessException>([&] { Start().IsDone(); }), "Node is not implemented.");
}

TEST_F(CommandValue, TellsInItsTextWhetherItRuns) {
    BuildWith(RW);
    EXPECT_EQ(Start().ToString(), "0");
    Start().Execute();
    EXPECT_EQ(Start().ToString(), "1");
    m_Port.Put(0, 0);
    EXPECT_EQ(Start().ToString(), "0");
}

TEST_F(CommandValue, RunsCallbacksAfterTheLockWhenItsTextFindsItDone) {
    BuildWith(RW);
    Start().Execute();
    std::vector<bool> isFree;
    auto& node = Get<INode>("Start");
    node.RegisterCallback(new LockProbe(&node, isFree));
    m_Port.Put(0, 0);
    EXPECT_EQ(Start().ToString(), "0");
    EXPECT_THAT(isFree, testing::ElementsAre(true));
}

TEST_F(CommandValue, TakesItsCommandValueFromANode) {
    AddReg("Reg", 0);
    AddReg("What", 4);
    m_Port.Put(4, 9);
    Add(CNodeData::Command_ID, "Start", {{ID::pValue_ID, "Reg"}, {ID::pCommandValue_ID, "What"}});
    Build();
    Start().Execute();
    EXPECT_EQ(m_Port.Peek(0), 9);
    EXPECT_FALSE(Start().IsDone());
    m_Port.Put(0, 0);
    EXPECT_TRUE(Start().IsDone());
}

TEST_F(CommandValue, NeedsACommandValueThatCanBeRead) {
    AddReg("Reg", 0);
    AddReg("What", 4, WO);
    Add(CNodeData::Command_ID, "Start", {{ID::pValue_ID, "Reg"}, {ID::pCommandValue_ID, "What"}});
    Build();
    EXPECT_EQ(FailureText<LogicalErrorException>([&] { Start().Execute(); }),
              "Unable to execute because 'What' is not readable");
    EXPECT_EQ(m_Port.writes, 0);
}

TEST_F(CommandValue, IsWatchedNoMoreAfterAFailedWrite) {
    BuildWith(RW);
    m_Port.failWrites = true;
    EXPECT_THROW(Start().Execute(), RuntimeException);
    EXPECT_TRUE(Start().IsDone());
    EXPECT_TRUE(m_Map->GetBathometer().IsZero());
}

TEST_F(CommandValue, IsSpokenForByTheCommandInterface) {
    BuildWith(RW);
    EXPECT_EQ(Get<INode>("Start").GetPrincipalInterfaceType(), intfICommand);
}

class CommandTexts : public CommandValue, public testing::WithParamInterface<const char*> {};

class StartingTexts : public CommandTexts {};

TEST_P(StartingTexts, Execute) {
    BuildWith(RW);
    Start().FromString(GetParam());
    EXPECT_EQ(m_Port.Peek(0), 5);
}

INSTANTIATE_TEST_SUITE_P(Of, StartingTexts, testing::Values("true", "1"));

class RefusedTexts : public CommandTexts {};

TEST_P(RefusedTexts, DoNotExecute) {
    BuildWith(RW);
    EXPECT_EQ(FailureText<InvalidArgumentException>([&] { Start().FromString(GetParam()); }),
              "'" + std::string(GetParam()) + "' does not convert to TRUE");
    EXPECT_EQ(m_Port.writes, 0);
}

INSTANTIATE_TEST_SUITE_P(Of, RefusedTexts, testing::Values("false", "0", "go"));

}  // namespace ValueTest
