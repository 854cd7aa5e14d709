// Descriptions that would take more work or memory than they are worth: what
// preprocessing does grows with what it finds, or it refuses.

#include "PreprocessingFixture.h"
#include "preprocessing/NodeDataPreprocessor.h"

namespace NodeDataTest {
namespace {

constexpr const char* kTooManyProperties =
    "Error in XML stream : the nodes are linked too closely, preprocessing would add more than "
    "16000000 properties";
constexpr const char* kTooManySteps =
    "Error in XML stream : the nodes are linked too closely, preprocessing would take more than "
    "160000000 steps";

std::string Numbered(const char* name, size_t number) {
    return name + std::to_string(number);
}

class PreprocessingBounds : public Preprocessing {
protected:
    void AddNumbered(CNodeData::ENodeType_t type, const char* name, size_t number,
                     const std::vector<std::pair<CPropertyID, std::string>>& links = {}) {
        Links targets;
        for (const auto& [id, target] : links) {
            targets.emplace_back(id, target.c_str());
        }
        Add(type, Numbered(name, number).c_str(), targets);
    }
    /// Node n links to node n + 1.
    void AddChain(size_t length, ID::EProperty_ID_t link) {
        for (size_t i = 0; i + 1 < length; ++i) {
            AddNumbered(CNodeData::Integer_ID, "N", i, {{link, Numbered("N", i + 1)}});
        }
        AddNumbered(CNodeData::Integer_ID, "N", length - 1);
    }
    /// Two nodes A and B on each level, which both link to both of the next.
    void AddDiamonds(CNodeData::ENodeType_t type, size_t levels, ID::EProperty_ID_t link) {
        for (size_t i = 0; i < levels; ++i) {
            for (const char* const name : {"A", "B"}) {
                AddNumbered(type, name, i,
                            {{link, Numbered("A", i + 1)}, {link, Numbered("B", i + 1)}});
            }
        }
        AddNumbered(CNodeData::Integer_ID, "A", levels);
        AddNumbered(CNodeData::Integer_ID, "B", levels);
    }
    CPreprocessingBudget Spend() {
        CNodeDataPreprocessor preprocessor(m_Map);
        preprocessor.Run();
        return preprocessor.GetBudget();
    }
    size_t Count(const std::string& name, CPropertyID id) const {
        return CountOf(NodeOf(m_Map, name.c_str()), id);
    }
};

TEST_F(PreprocessingBounds, TakesNoWorkBetweenNodesWithoutLinks) {
    constexpr size_t kCount = 500000;
    for (size_t i = 0; i < kCount; ++i) {
        AddNumbered(CNodeData::Integer_ID, "N", i);
    }
    const CPreprocessingBudget spent = Spend();
    EXPECT_EQ(spent.GetNumProperties(), kCount) << "each is its own terminal";
    EXPECT_LE(spent.GetNumSteps(), 2 * kCount);
}

TEST_F(PreprocessingBounds, TakesNoWorkBetweenSelectorsOfDifferentNodes) {
    constexpr size_t kCount = 100000;
    for (size_t i = 0; i < kCount; ++i) {
        AddNumbered(CNodeData::Integer_ID, "S", i, {{ID::pSelected_ID, Numbered("N", i)}});
        AddNumbered(CNodeData::Integer_ID, "N", i);
    }
    EXPECT_LE(Spend().GetNumSteps(), 8 * kCount);
}

TEST_F(PreprocessingBounds, TakesAStepForEachDependentOfAChain) {
    constexpr size_t kLength = 2000;
    AddChain(kLength, ID::pValue_ID);
    const CPreprocessingBudget spent = Spend();
    EXPECT_EQ(Count(Numbered("N", kLength - 1), ID::pDependent_ID), kLength - 1);
    constexpr size_t kDependents = kLength * (kLength - 1) / 2;
    EXPECT_EQ(spent.GetNumProperties(), kDependents + kLength);
    EXPECT_LE(spent.GetNumSteps(), kDependents + 8 * kLength);
}

TEST_F(PreprocessingBounds, RefusesAVeryLongChain) {
    AddChain(10000, ID::pValue_ID);
    EXPECT_EQ(FailureOfRun(), kTooManyProperties);
}

TEST_F(PreprocessingBounds, RefusesAVeryLongCircle) {
    AddChain(10000, ID::pInvalidator_ID);
    NodeOf(m_Map, "N9999").AddProperty(ID::pInvalidator_ID, m_Map.FindNodeID("N0"));
    EXPECT_EQ(FailureOfRun(), kTooManyProperties);
}

TEST_F(PreprocessingBounds, GathersACircleInOneRound) {
    constexpr size_t kLength = 1500;
    AddChain(kLength, ID::pInvalidator_ID);
    NodeOf(m_Map, Numbered("N", kLength - 1).c_str())
        .AddProperty(ID::pInvalidator_ID, m_Map.FindNodeID("N0"));
    const CPreprocessingBudget spent = Spend();
    EXPECT_LE(spent.GetNumSteps(), 8 * kLength);
    for (const size_t number : {size_t{0}, size_t{700}, kLength - 1}) {
        EXPECT_EQ(Count(Numbered("N", number), ID::pDependent_ID), kLength - 1);
    }
}

TEST_F(PreprocessingBounds, TakesEachSetOnceWhereAllNodesLinkToAll) {
    constexpr size_t kCount = 600;
    for (size_t i = 0; i < kCount; ++i) {
        std::vector<std::pair<CPropertyID, std::string>> links;
        for (size_t next = i + 1; next < kCount; ++next) {
            links.emplace_back(ID::pInvalidator_ID, Numbered("N", next));
        }
        AddNumbered(CNodeData::Integer_ID, "N", i, links);
    }
    constexpr size_t kLinks = kCount * (kCount - 1) / 2;
    EXPECT_LE(Spend().GetNumSteps(), 3 * kLinks);
}

TEST_F(PreprocessingBounds, RefusesToUniteTheSameSetsOverAndOver) {
    // Each node C is told the nodes A by each node B.
    constexpr size_t kCount = 600;
    std::vector<std::pair<CPropertyID, std::string>> toB;
    std::vector<std::pair<CPropertyID, std::string>> toC;
    for (size_t i = 0; i < kCount; ++i) {
        toB.emplace_back(ID::pInvalidator_ID, Numbered("B", i));
        toC.emplace_back(ID::pInvalidator_ID, Numbered("C", i));
        AddNumbered(CNodeData::Integer_ID, "C", i);
    }
    for (size_t i = 0; i < kCount; ++i) {
        AddNumbered(CNodeData::Integer_ID, "A", i, toB);
        AddNumbered(CNodeData::Integer_ID, "B", i, toC);
    }
    EXPECT_EQ(FailureOfRun(), kTooManySteps);
}

TEST_F(PreprocessingBounds, MarksAFeatureOnceForEachWayThroughTheCategories) {
    Add(CNodeData::Category_ID, "Root", {{ID::pFeature_ID, "A0"}, {ID::pFeature_ID, "B0"}});
    AddDiamonds(CNodeData::Category_ID, 14, ID::pFeature_ID);
    Run();
    EXPECT_EQ(Count("Root", ID::IsFeature_ID), 1U);
    EXPECT_EQ(Count("A0", ID::IsFeature_ID), 1U);
    EXPECT_EQ(Count("B3", ID::IsFeature_ID), 8U);
    EXPECT_EQ(Count("A14", ID::IsFeature_ID), 16384U);
}

TEST_F(PreprocessingBounds, RefusesDeepDiamondsOfCategories) {
    Add(CNodeData::Category_ID, "Root", {{ID::pFeature_ID, "A0"}, {ID::pFeature_ID, "B0"}});
    AddDiamonds(CNodeData::Category_ID, 70, ID::pFeature_ID);
    EXPECT_EQ(FailureOfRun(), kTooManyProperties);
}

TEST_F(PreprocessingBounds, SelectsAReaderOnceForEachWayToIt) {
    AddDiamonds(CNodeData::IntSwissKnife_ID, 10, ID::pVariable_ID);
    Add(CNodeData::Integer_ID, "S", {{ID::pSelected_ID, "A10"}});
    Run();
    EXPECT_EQ(Count("A0", ID::pSelecting_ID), 512U);
    EXPECT_EQ(Count("S", ID::pSelected_ID), 2047U);
}

TEST_F(PreprocessingBounds, RefusesDeepDiamondsOfSelectedNodes) {
    AddDiamonds(CNodeData::IntSwissKnife_ID, 40, ID::pVariable_ID);
    Add(CNodeData::Integer_ID, "S", {{ID::pSelected_ID, "A40"}});
    EXPECT_EQ(FailureOfRun(), kTooManyProperties);
}

TEST_F(PreprocessingBounds, FollowsDiamondsOfLinksOnce) {
    constexpr size_t kLevels = 200;
    AddDiamonds(CNodeData::Integer_ID, kLevels, ID::pValue_ID);
    const CPreprocessingBudget spent = Spend();
    EXPECT_EQ(Count(Numbered("A", kLevels), ID::pDependent_ID), 2 * kLevels);
    EXPECT_EQ(Count("A0", ID::pTerminal_ID), 2U);
    EXPECT_LE(spent.GetNumSteps(), spent.GetNumProperties() * 5 / 2);
}

}  // namespace
}  // namespace NodeDataTest
