#include "PreprocessingFixture.h"

namespace NodeDataTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PreprocessingSelection : public Preprocessing {};

TEST_F(PreprocessingSelection, TellsTheSelectedNodeWhoSelectsIt) {
    Add(CNodeData::Integer_ID, "S1", {{ID::pSelected_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "S2", {{ID::pSelected_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Run();
    EXPECT_THAT(Of("Gain", ID::pSelecting_ID), ElementsAre("S1", "S2"));
    EXPECT_THAT(Of("S1", ID::pSelected_ID), ElementsAre("Gain"));
}

TEST_F(PreprocessingSelection, DrawsInWhatReadsASelectedNode) {
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}});
    Add(CNodeData::Float_ID, "GainAbs", {{ID::pValue_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Run();
    EXPECT_THAT(Of("Selector", ID::pSelected_ID), ElementsAre("Gain", "GainAbs"));
    EXPECT_THAT(Of("GainAbs", ID::pSelecting_ID), ElementsAre("Selector"));
}

TEST_F(PreprocessingSelection, GoesOnFromWhatItDrewIn) {
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}});
    Add(CNodeData::Float_ID, "Third", {{ID::pMin_ID, "Second"}});
    Add(CNodeData::Float_ID, "Second", {{ID::pVariable_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Run();
    EXPECT_THAT(Of("Selector", ID::pSelected_ID), ElementsAre("Gain", "Second", "Third"));
    EXPECT_THAT(Of("Third", ID::pSelecting_ID), ElementsAre("Selector"));
}

TEST_F(PreprocessingSelection, DrawsInReadersInAscendingOrderOfIdentifier) {
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}});
    Add(CNodeData::Float_ID, "B", {{ID::pValue_ID, "Gain"}, {ID::pMax_ID, "Gain"}});
    Add(CNodeData::Float_ID, "A", {{ID::pValue_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Run();
    EXPECT_THAT(Of("Selector", ID::pSelected_ID), ElementsAre("Gain", "B", "A"));
}

TEST_F(PreprocessingSelection, LeavesCategoriesOut) {
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}});
    Add(CNodeData::Category_ID, "Analog", {{ID::pFeature_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Run();
    EXPECT_THAT(Of("Selector", ID::pSelected_ID), ElementsAre("Gain"));
    EXPECT_THAT(Of("Analog", ID::pSelecting_ID), IsEmpty());
}

TEST_F(PreprocessingSelection, LeavesOutWhatOnlyInvalidates) {
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Other", {{ID::pInvalidator_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Run();
    EXPECT_THAT(Of("Selector", ID::pSelected_ID), ElementsAre("Gain"));
}

TEST_F(PreprocessingSelection, CountsTheOffsetOfAnIndexAsRead) {
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Offset"}});
    AddOffset(m_Map, Add(CNodeData::IntReg_ID, "Reg"), "Index", "Offset");
    Add(CNodeData::Integer_ID, "Index");
    Add(CNodeData::Integer_ID, "Offset");
    Run();
    EXPECT_THAT(Of("Selector", ID::pSelected_ID), ElementsAre("Offset", "Reg"));
}

TEST_F(PreprocessingSelection, EntersAReaderOnceForEachWayToIt) {
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Add(CNodeData::Float_ID, "Left", {{ID::pValue_ID, "Gain"}});
    Add(CNodeData::Float_ID, "Right", {{ID::pValue_ID, "Gain"}});
    Add(CNodeData::SwissKnife_ID, "Sum", {{ID::pVariable_ID, "Left"}, {ID::pVariable_ID, "Right"}});
    Run();
    EXPECT_THAT(Of("Selector", ID::pSelected_ID),
                ElementsAre("Gain", "Left", "Right", "Sum", "Sum"));
    EXPECT_THAT(Of("Sum", ID::pSelecting_ID), ElementsAre("Selector", "Selector"));
}

// The reader selects the selector itself, so the reader's list of selected
// nodes and the selector's list of selecting ones suppress the entries.
TEST_F(PreprocessingSelection, SkipsAReaderThatSelectsTheSelector) {
    SetVersion(1, 0);
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Reader", {{ID::pMin_ID, "Gain"}, {ID::pSelected_ID, "Selector"}});
    Add(CNodeData::Integer_ID, "Gain");
    Run();
    EXPECT_THAT(Of("Selector", ID::pSelected_ID), ElementsAre("Gain"));
    EXPECT_THAT(Of("Reader", ID::pSelecting_ID), IsEmpty());
}

TEST_F(PreprocessingSelection, RefusesNodesThatSelectEachOther) {
    Add(CNodeData::Integer_ID, "A", {{ID::pSelected_ID, "B"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pSelected_ID, "A"}});
    EXPECT_EQ(FailureOfRun(), "ERROR : pSelected cycle detected : A -> B -> A");
}

TEST_F(PreprocessingSelection, NamesOnlyTheNodesOnTheCycle) {
    Add(CNodeData::Integer_ID, "Start", {{ID::pSelected_ID, "X"}});
    Add(CNodeData::Integer_ID, "X", {{ID::pSelected_ID, "Y"}});
    Add(CNodeData::Integer_ID, "Y", {{ID::pSelected_ID, "Z"}});
    Add(CNodeData::Integer_ID, "Z", {{ID::pSelected_ID, "X"}});
    EXPECT_EQ(FailureOfRun(), "ERROR : pSelected cycle detected : X -> Y -> Z -> X");
}

TEST_F(PreprocessingSelection, MarksANodeThatSelectsItself) {
    Add(CNodeData::Integer_ID, "A", {{ID::pSelected_ID, "A"}});
    Run();
    EXPECT_THAT(Of("A", ID::pSelected_ID), ElementsAre("A"));
    EXPECT_THAT(Of("A", ID::pSelecting_ID), ElementsAre("A"));
}

TEST_F(PreprocessingSelection, MarksASelectorThatReadsWhatItSelectsLikeOneThatSelectsItself) {
    Add(CNodeData::Integer_ID, "Selector",
        {{ID::pSelected_ID, "Gain"}, {ID::pMin_ID, "Sum"}, {ID::pMax_ID, "Gain"}});
    Add(CNodeData::IntSwissKnife_ID, "Sum", {{ID::pVariable_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Run();
    EXPECT_THAT(Of("Selector", ID::pSelected_ID), ElementsAre("Gain", "Sum"));
    EXPECT_THAT(Of("Selector", ID::pSelecting_ID), ElementsAre("Selector"));
    EXPECT_THAT(Of("Gain", ID::pSelecting_ID), ElementsAre("Selector"));
    EXPECT_THAT(Of("Sum", ID::pSelecting_ID), ElementsAre("Selector"));
}

class PreprocessingEndlessSelection : public Preprocessing,
                                      public testing::WithParamInterface<int> {};

TEST_P(PreprocessingEndlessSelection, EndsForSelectedNodesThatReadEachOther) {
    SetVersion(1, GetParam());
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain", {{ID::pMin_ID, "GainAbs"}});
    Add(CNodeData::Integer_ID, "GainAbs", {{ID::pMax_ID, "Gain"}});
    EXPECT_EQ(FailureOfRun(), "ERROR : read cycle detected : Gain -> GainAbs -> Gain");
}

TEST_P(PreprocessingEndlessSelection, EndsForCyclesBehindTheSelectedNode) {
    SetVersion(1, GetParam());
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Add(CNodeData::Integer_ID, "A", {{ID::pMin_ID, "Gain"}, {ID::pMax_ID, "C"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pMin_ID, "A"}});
    Add(CNodeData::Integer_ID, "C", {{ID::pMin_ID, "B"}});
    EXPECT_EQ(FailureOfRun(), "ERROR : read cycle detected : A -> C -> B -> A");
}

TEST_P(PreprocessingEndlessSelection, EndsForASelectorOnTheCycle) {
    SetVersion(1, GetParam());
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}, {ID::pMin_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain", {{ID::pMin_ID, "Selector"}});
    EXPECT_EQ(FailureOfRun(), "ERROR : read cycle detected : Selector -> Gain -> Selector");
}

TEST_P(PreprocessingEndlessSelection, EndsForCyclesThroughAnOffset) {
    SetVersion(1, GetParam());
    Add(CNodeData::Integer_ID, "Selector", {{ID::pSelected_ID, "Gain"}});
    AddOffset(m_Map, Add(CNodeData::IntReg_ID, "Reg"), "Index", "Gain");
    Add(CNodeData::Integer_ID, "Index");
    Add(CNodeData::Integer_ID, "Gain", {{ID::pMin_ID, "Reg"}});
    EXPECT_EQ(FailureOfRun(), "ERROR : read cycle detected : Gain -> Reg -> Gain");
}

INSTANTIATE_TEST_SUITE_P(MinorVersions, PreprocessingEndlessSelection, testing::Values(0, 1));

}  // namespace
}  // namespace NodeDataTest
