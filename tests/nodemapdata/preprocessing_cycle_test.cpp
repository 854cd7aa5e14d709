#include "PreprocessingFixture.h"

namespace NodeDataTest {
namespace {

class PreprocessingCycle : public Preprocessing {};

TEST_F(PreprocessingCycle, RefusesNodesThatWriteToEachOther) {
    Add(CNodeData::Integer_ID, "A", {{ID::pValue_ID, "B"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pValue_ID, "A"}});
    EXPECT_EQ(FailureOfRun(), "WARNING: PropagateTerminals cycle detected in node = 'A'\n");
}

TEST_F(PreprocessingCycle, RefusesThemInTheFirstSchemaVersionToo) {
    SetVersion(1, 0);
    Add(CNodeData::Integer_ID, "Start", {{ID::pValue_ID, "A"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pValue_ID, "A"}});
    Add(CNodeData::Integer_ID, "A", {{ID::pValue_ID, "B"}});
    EXPECT_EQ(FailureOfRun(), "WARNING: PropagateTerminals cycle detected in node = 'A'\n");
}

TEST_F(PreprocessingCycle, RefusesNodesThatReadEachOther) {
    Add(CNodeData::Integer_ID, "A", {{ID::pMin_ID, "B"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pMin_ID, "A"}});
    EXPECT_EQ(FailureOfRun(), "ERROR : read cycle detected : A -> B -> A");
}

TEST_F(PreprocessingCycle, NamesOnlyTheNodesOnTheCycleInReadingDirection) {
    Add(CNodeData::Integer_ID, "Start", {{ID::pMax_ID, "X"}});
    Add(CNodeData::Integer_ID, "X", {{ID::pIsLocked_ID, "Z"}});
    Add(CNodeData::Integer_ID, "Y", {{ID::pMin_ID, "X"}});
    Add(CNodeData::Integer_ID, "Z", {{ID::pIsAvailable_ID, "Y"}});
    EXPECT_EQ(FailureOfRun(), "ERROR : read cycle detected : X -> Z -> Y -> X");
}

TEST_F(PreprocessingCycle, ToleratesRepeatedReadsOfOneNode) {
    Add(CNodeData::Integer_ID, "A", {{ID::pMin_ID, "B"}, {ID::pMax_ID, "C"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pMin_ID, "C"}, {ID::pMax_ID, "C"}});
    Add(CNodeData::Integer_ID, "C");
    EXPECT_EQ(FailureOfRun(), "");
}

TEST_F(PreprocessingCycle, ToleratesCyclesOfInvalidation) {
    Add(CNodeData::Integer_ID, "A", {{ID::pInvalidator_ID, "B"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pInvalidator_ID, "A"}});
    EXPECT_EQ(FailureOfRun(), "");
}

TEST_F(PreprocessingCycle, FollowsOnlyTheIndexAndNotItsOffset) {
    AddOffset(m_Map, Add(CNodeData::IntReg_ID, "Reg"), "Index", "Offset");
    Add(CNodeData::Integer_ID, "Index");
    Add(CNodeData::Integer_ID, "Offset", {{ID::pMin_ID, "Reg"}});
    EXPECT_EQ(FailureOfRun(), "");
}

struct Version {
    int major, minor;
    bool isTolerant;
};

class PreprocessingReadCycleVersion : public Preprocessing,
                                      public testing::WithParamInterface<Version> {};

TEST_P(PreprocessingReadCycleVersion, ToleratesReadCyclesOfTheFirstVersionOnly) {
    SetVersion(GetParam().major, GetParam().minor);
    Add(CNodeData::Integer_ID, "A", {{ID::pMin_ID, "B"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pMin_ID, "A"}});
    EXPECT_EQ(FailureOfRun(),
              GetParam().isTolerant ? "" : "ERROR : read cycle detected : A -> B -> A");
}

// The numbers are kept to 16 bits.
INSTANTIATE_TEST_SUITE_P(Versions, PreprocessingReadCycleVersion,
                         testing::Values(Version{1, 0, true}, Version{1, 1, false},
                                         Version{0, 0, false}, Version{2, 0, false},
                                         Version{0, 1, false}, Version{0x10001, 0, true}));

TEST_F(PreprocessingCycle, ChecksDescriptionsWithoutAVersion) {
    NodeOf(m_Map, "_RegisterDescription").RemoveProperties(ID::SchemaMajorVersion_ID);
    NodeOf(m_Map, "_RegisterDescription").RemoveProperties(ID::SchemaMinorVersion_ID);
    Add(CNodeData::Integer_ID, "A", {{ID::pMin_ID, "A"}});
    EXPECT_EQ(FailureOfRun(), "ERROR : read cycle detected : A -> A");
}

class PreprocessingFeatureCycle : public Preprocessing, public testing::WithParamInterface<int> {};

TEST_P(PreprocessingFeatureCycle, RefusesCategoriesThatListEachOther) {
    SetVersion(1, GetParam());
    Add(CNodeData::Category_ID, "Root", {{ID::pFeature_ID, "A"}});
    Add(CNodeData::Category_ID, "A", {{ID::pFeature_ID, "B"}});
    Add(CNodeData::Category_ID, "B", {{ID::pFeature_ID, "A"}});
    EXPECT_EQ(FailureOfRun(), "ERROR : read cycle detected : A -> B -> A");
}

INSTANTIATE_TEST_SUITE_P(MinorVersions, PreprocessingFeatureCycle, testing::Values(0, 1));

TEST_F(PreprocessingCycle, ReportsASelectionBeforeAReadCycle) {
    Add(CNodeData::Integer_ID, "A", {{ID::pMin_ID, "B"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pMin_ID, "A"}});
    Add(CNodeData::Integer_ID, "S", {{ID::pSelected_ID, "T"}});
    Add(CNodeData::Integer_ID, "T", {{ID::pSelected_ID, "S"}});
    EXPECT_EQ(FailureOfRun(), "ERROR : pSelected cycle detected : S -> T -> S");
}

// Nodes assert in their destructor that the scratch lists are gone.
TEST_F(PreprocessingCycle, LeavesNoScratchListsBehindAFailure) {
    {
        CNodeDataMap map;
        AddRoot(map);
        AddNode(map, CNodeData::Integer_ID, "A", {{ID::pMin_ID, "A"}});
        EXPECT_EQ(FailureText([&] { CNodeDataMapFactory::PreProcessNodeDataMap(&map); }),
                  "ERROR : read cycle detected : A -> A");
    }
    SUCCEED();
}

TEST_F(PreprocessingCycle, KeepsWhatWasAddedBeforeTheFailure) {
    Add(CNodeData::Integer_ID, "A", {{ID::pMin_ID, "A"}, {ID::pMax_ID, "B"}});
    Add(CNodeData::Integer_ID, "B");
    EXPECT_NE(FailureOfRun(), "");
    EXPECT_THAT(Of("B", ID::pDependent_ID), testing::ElementsAre("A"));
}

}  // namespace
}  // namespace NodeDataTest
