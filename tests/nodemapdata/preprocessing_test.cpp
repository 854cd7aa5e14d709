#include "PreprocessingFixture.h"

namespace NodeDataTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using PreprocessingDeathTest = Preprocessing;

TEST_F(PreprocessingDeathTest, NeedsAMap) {
    EXPECT_DEATH(CNodeDataMapFactory::PreProcessNodeDataMap(nullptr),
                 testing::HasSubstr("pNodeDataMap"));
}

TEST_F(PreprocessingDeathTest, NeedsTheFirstNodeOfADescription) {
    CNodeDataMap empty;
    EXPECT_DEATH(CNodeDataMapFactory::PreProcessNodeDataMap(&empty),
                 testing::HasSubstr("NodeID.IsValid()"));
}

TEST_F(Preprocessing, LeavesADescriptionWithoutNodesAlone) {
    const size_t numProperties = NodeOf(m_Map, "_RegisterDescription").GetProperties().size();
    Run();
    EXPECT_EQ(NodeOf(m_Map, "_RegisterDescription").GetProperties().size(), numProperties);
}

TEST_F(Preprocessing, NamesTheFirstDanglingNode) {
    Add(CNodeData::Integer_ID, "Gain", {{ID::pValue_ID, "Missing"}, {ID::pMin_ID, "Lost"}});
    EXPECT_EQ(FailureOfRun(), "Error in XML stream : dangling node reference 'Missing'");
}

TEST_F(PreprocessingDeathTest, NeedsNodesBehindLinks) {
    Add(CNodeData::Integer_ID, "Gain").AddProperty(ID::pValue_ID, 5);
    EXPECT_DEATH(Run(), testing::HasSubstr("m_DataType == Node_ID"));
}

TEST_F(Preprocessing, GivesAnIntegerOverARegisterItsTerminalAndDependent) {
    Add(CNodeData::Integer_ID, "Gain", {{ID::pValue_ID, "Reg"}});
    Add(CNodeData::IntReg_ID, "Reg");
    Run();
    EXPECT_THAT(Of("Gain", ID::pTerminal_ID), ElementsAre("Reg"));
    EXPECT_THAT(Of("Reg", ID::pTerminal_ID), ElementsAre("Reg"));
    EXPECT_THAT(Of("Reg", ID::pDependent_ID), ElementsAre("Gain"));
    EXPECT_THAT(Of("Gain", ID::pDependent_ID), IsEmpty());
}

TEST_F(Preprocessing, AppendsBehindWhatTheDescriptionSays) {
    Add(CNodeData::Integer_ID, "Gain", {{ID::pValue_ID, "Reg"}});
    Add(CNodeData::IntReg_ID, "Reg").AddProperty(ID::Address_ID, 0);
    Run();
    EXPECT_THAT(IDsOf(NodeOf(m_Map, "Reg")),
                ElementsAre(ID::Name_ID, ID::Address_ID, ID::pDependent_ID, ID::pTerminal_ID));
}

TEST_F(Preprocessing, FollowsDependenciesThroughAnyChain) {
    Add(CNodeData::Integer_ID, "A", {{ID::pValue_ID, "B"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pMin_ID, "C"}});
    Add(CNodeData::Integer_ID, "C", {{ID::pInvalidator_ID, "D"}});
    Add(CNodeData::Integer_ID, "D");
    Run();
    EXPECT_THAT(Of("D", ID::pDependent_ID), ElementsAre("C", "B", "A"));
    EXPECT_THAT(Of("C", ID::pDependent_ID), ElementsAre("B", "A"));
    EXPECT_THAT(Of("B", ID::pDependent_ID), ElementsAre("A"));
}

TEST_F(Preprocessing, ListsDependentsFromTheHighestIdentifierDown) {
    Add(CNodeData::IntReg_ID, "Reg");
    Add(CNodeData::Integer_ID, "A", {{ID::pValue_ID, "Reg"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pValue_ID, "Reg"}});
    Add(CNodeData::Integer_ID, "C", {{ID::pValue_ID, "Reg"}});
    Run();
    EXPECT_THAT(Of("Reg", ID::pDependent_ID), ElementsAre("C", "B", "A"));
}

TEST_F(Preprocessing, LeavesANodeOutOfItsOwnDependents) {
    Add(CNodeData::Integer_ID, "A", {{ID::pInvalidator_ID, "B"}, {ID::pInvalidator_ID, "A"}});
    Add(CNodeData::Integer_ID, "B", {{ID::pInvalidator_ID, "C"}});
    Add(CNodeData::Integer_ID, "C", {{ID::pInvalidator_ID, "A"}});
    Run();
    EXPECT_THAT(Of("A", ID::pDependent_ID), ElementsAre("C", "B"));
    EXPECT_THAT(Of("B", ID::pDependent_ID), ElementsAre("C", "A"));
    EXPECT_THAT(Of("C", ID::pDependent_ID), ElementsAre("B", "A"));
}

TEST_F(Preprocessing, CountsOffsetsOfAnIndexAsRead) {
    AddOffset(m_Map, Add(CNodeData::IntReg_ID, "Reg"), "Index", "Offset");
    Add(CNodeData::Integer_ID, "Index");
    Add(CNodeData::Integer_ID, "Offset");
    Run();
    EXPECT_THAT(Of("Index", ID::pDependent_ID), ElementsAre("Reg"));
    EXPECT_THAT(Of("Offset", ID::pDependent_ID), ElementsAre("Reg"));
}

TEST_F(Preprocessing, DoesNotInvalidateThroughAliasesAndSelectedNodes) {
    Add(CNodeData::Integer_ID, "A", {{ID::pAlias_ID, "B"}, {ID::pCastAlias_ID, "B"}});
    Add(CNodeData::Integer_ID, "B");
    Add(CNodeData::Integer_ID, "S", {{ID::pSelected_ID, "B"}});
    Run();
    EXPECT_THAT(Of("B", ID::pDependent_ID), IsEmpty());
    EXPECT_THAT(Of("S", ID::pDependent_ID), ElementsAre("B")) << "told who selects it";
}

TEST_F(Preprocessing, MakesAPlainIntegerItsOwnTerminal) {
    Add(CNodeData::Integer_ID, "Gain").AddProperty(ID::Value_ID, 5);
    Run();
    EXPECT_THAT(Of("Gain", ID::pTerminal_ID), ElementsAre("Gain"));
}

TEST_F(Preprocessing, FindsNoTerminalBehindASwissKnife) {
    Add(CNodeData::Integer_ID, "Gain", {{ID::pValue_ID, "Knife"}});
    Add(CNodeData::SwissKnife_ID, "Knife", {{ID::pVariable_ID, "Reg"}});
    Add(CNodeData::IntReg_ID, "Reg");
    Run();
    EXPECT_THAT(Of("Knife", ID::pTerminal_ID), IsEmpty());
    EXPECT_THAT(Of("Gain", ID::pTerminal_ID), IsEmpty());
}

TEST_F(Preprocessing, ListsTerminalsFromTheLowestIdentifierUp) {
    Add(CNodeData::IntReg_ID, "R1");
    Add(CNodeData::Integer_ID, "Gain",
        {{ID::pValue_ID, "Sub"}, {ID::pValueCopy_ID, "R1"}, {ID::pMin_ID, "R3"}});
    Add(CNodeData::IntReg_ID, "R2");
    Add(CNodeData::IntReg_ID, "R3");
    Add(CNodeData::Integer_ID, "Sub", {{ID::pValue_ID, "R2"}, {ID::pValueCopy_ID, "R1"}});
    Run();
    EXPECT_THAT(Of("Gain", ID::pTerminal_ID), ElementsAre("R1", "R2"));
}

TEST_F(Preprocessing, StopsAtTerminalsThatWriteFurther) {
    Add(CNodeData::IntReg_ID, "Outer", {{ID::pValue_ID, "Inner"}});
    Add(CNodeData::IntReg_ID, "Inner");
    Run();
    EXPECT_THAT(Of("Outer", ID::pTerminal_ID), ElementsAre("Outer"));
}

struct TerminalType {
    CNodeData::ENodeType_t type;
    bool alone;    ///< is a terminal when it writes to nothing
    bool writing;  ///< is a terminal when it writes to another node
};

class PreprocessingTerminalType : public Preprocessing,
                                  public testing::WithParamInterface<TerminalType> {};

TEST_P(PreprocessingTerminalType, DecidesWhereAValueEnds) {
    Add(CNodeData::IntReg_ID, "Reg");
    Add(GetParam().type, "Alone");
    Add(GetParam().type, "Writing", {{ID::pValue_ID, "Reg"}});
    Run();
    EXPECT_EQ(Of("Alone", ID::pTerminal_ID),
              GetParam().alone ? std::vector<std::string>{"Alone"} : std::vector<std::string>{});
    EXPECT_THAT(Of("Writing", ID::pTerminal_ID),
                ElementsAre(GetParam().writing ? "Writing" : "Reg"));
}

constexpr TerminalType Always(CNodeData::ENodeType_t type) {
    return {type, true, true};
}
constexpr TerminalType Unlinked(CNodeData::ENodeType_t type) {
    return {type, true, false};
}
constexpr TerminalType Never(CNodeData::ENodeType_t type) {
    return {type, false, false};
}

INSTANTIATE_TEST_SUITE_P(
    All, PreprocessingTerminalType,
    testing::Values(Always(CNodeData::Node_ID), Always(CNodeData::EnumEntry_ID),
                    Always(CNodeData::MaskedIntReg_ID), Always(CNodeData::Register_ID),
                    Always(CNodeData::IntReg_ID), Always(CNodeData::FloatReg_ID),
                    Always(CNodeData::AdvFeatureLock_ID), Always(CNodeData::StringReg_ID),
                    Unlinked(CNodeData::Integer_ID), Unlinked(CNodeData::Enumeration_ID),
                    Unlinked(CNodeData::Float_ID), Unlinked(CNodeData::String_ID),
                    Unlinked(CNodeData::Boolean_ID), Unlinked(CNodeData::Command_ID),
                    Unlinked(CNodeData::Converter_ID), Unlinked(CNodeData::IntConverter_ID),
                    Never(CNodeData::Category_ID), Never(CNodeData::SwissKnife_ID),
                    Never(CNodeData::IntSwissKnife_ID), Never(CNodeData::IntKey_ID),
                    Never(CNodeData::TextDesc_ID), Never(CNodeData::Port_ID),
                    Never(CNodeData::ConfRom_ID), Never(CNodeData::SmartFeature_ID),
                    Never(CNodeData::RegisterDescription_ID)));

TEST_F(Preprocessing, MarksTheFeaturesBelowTheRootCategory) {
    Add(CNodeData::Category_ID, "Root", {{ID::pFeature_ID, "Analog"}});
    Add(CNodeData::Category_ID, "Analog", {{ID::pFeature_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Add(CNodeData::Category_ID, "Loose", {{ID::pFeature_ID, "Hidden"}});
    Add(CNodeData::Integer_ID, "Hidden");
    Run();
    for (const char* name : {"Root", "Analog", "Gain"}) {
        EXPECT_EQ(CountOf(NodeOf(m_Map, name), ID::IsFeature_ID), 1U) << name;
    }
    for (const char* name : {"Loose", "Hidden", "_RegisterDescription"}) {
        EXPECT_EQ(CountOf(NodeOf(m_Map, name), ID::IsFeature_ID), 0U) << name;
    }
    const EYesNo isFeature = NodeOf(m_Map, "Gain").FindProperty(ID::IsFeature_ID)->EYesNo();
    EXPECT_EQ(isFeature, Yes);
}

TEST_F(Preprocessing, MarksAFeatureOfTwoCategoriesTwice) {
    Add(CNodeData::Category_ID, "Root", {{ID::pFeature_ID, "A"}, {ID::pFeature_ID, "B"}});
    Add(CNodeData::Category_ID, "A", {{ID::pFeature_ID, "Gain"}});
    Add(CNodeData::Category_ID, "B", {{ID::pFeature_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Run();
    EXPECT_EQ(CountOf(NodeOf(m_Map, "Gain"), ID::IsFeature_ID), 2U);
    EXPECT_EQ(CountOf(NodeOf(m_Map, "A"), ID::IsFeature_ID), 1U);
}

TEST_F(Preprocessing, MarksNothingBelowARootThatIsNoCategory) {
    Add(CNodeData::Node_ID, "Root", {{ID::pFeature_ID, "Gain"}});
    Add(CNodeData::Integer_ID, "Gain");
    Run();
    EXPECT_EQ(CountOf(NodeOf(m_Map, "Gain"), ID::IsFeature_ID), 0U);
}

TEST_F(Preprocessing, DoesNotCreateARoot) {
    Run();
    EXPECT_FALSE(m_Map.FindNodeID("Root").IsValid());
}

TEST_F(Preprocessing, FollowsLongChains) {
    constexpr int length = 1000;
    Add(CNodeData::Category_ID, "Root", {{ID::pFeature_ID, "N0"}});
    for (int i = 0; i < length; ++i) {
        const std::string name = "N" + std::to_string(i);
        const std::string next = "N" + std::to_string(i + 1);
        Add(CNodeData::Integer_ID, name.c_str(), {{ID::pValue_ID, next.c_str()}});
    }
    const std::string last = "N" + std::to_string(length);
    Add(CNodeData::IntReg_ID, last.c_str());
    Run();
    EXPECT_THAT(Of("N0", ID::pTerminal_ID), ElementsAre(last));
    EXPECT_EQ(Of(last.c_str(), ID::pDependent_ID).size(), size_t{length + 1});
}

}  // namespace
}  // namespace NodeDataTest
