// Categories: what they list and to whom they show themselves. And nodes with
// no value at all.

#include "ValueGraph.h"

namespace ValueTest {

namespace {

class CategoryValue : public ValueGraph {
protected:
    CNodeData& AddFeature(const char* name, EVisibility visibility,
                          const std::vector<Link>& links = {}) {
        CNodeData& node = AddInteger(name, links);
        node.AddProperty(ID::Value_ID, 1);
        node.AddProperty(ID::Visibility_ID, CProperty::EVisibility_ID, visibility);
        return node;
    }
    CNodeData& AddCategory(const char* name, const std::vector<const char*>& features) {
        CNodeData& node = Add(CNodeData::Category_ID, name);
        for (const char* const feature : features) {
            node.AddProperty(ID::pFeature_ID, m_Data.GetNodeID(feature, true));
        }
        return node;
    }
    EVisibility VisibilityOf(const char* name) { return Get<INode>(name).GetVisibility(); }
    EAccessMode ModeOf(const char* name) { return Get<INode>(name).GetAccessMode(); }
};

}  // namespace

TEST_F(CategoryValue, ListsItsFeaturesInOrder) {
    AddCategory("Root", {"B", "A"});
    AddFeature("A", Beginner);
    AddFeature("B", Beginner);
    Build();
    value_vector features;
    Get<ICategory>("Root").GetFeatures(features);
    ASSERT_EQ(features.size(), 2U);
    EXPECT_EQ(features[0]->GetNode()->GetName(), "B");
    EXPECT_EQ(features[1]->GetNode()->GetName(), "A");
}

TEST_F(CategoryValue, LeavesOutNodesWithoutAValue) {
    AddCategory("Root", {"Device"});
    Build();
    value_vector features;
    Get<ICategory>("Root").GetFeatures(features);
    EXPECT_TRUE(features.empty());
    EXPECT_EQ(VisibilityOf("Root"), Invisible);
}

TEST_F(CategoryValue, ShowsItselfToWhoeverSeesAFeature) {
    AddCategory("Root", {"A", "B"});
    AddFeature("A", Guru);
    AddFeature("B", Expert);
    Build();
    EXPECT_EQ(VisibilityOf("Root"), Expert);
}

TEST_F(CategoryValue, IsInvisibleWhenEmpty) {
    AddCategory("Root", {}).AddProperty(ID::Visibility_ID, CProperty::EVisibility_ID, Beginner);
    Build();
    EXPECT_EQ(VisibilityOf("Root"), Invisible);
}

TEST_F(CategoryValue, IsInvisibleWhenEmptyWhateverItsAliasShows) {
    AddCategory("Inner", {"A"});
    AddFeature("A", Beginner);
    AddCategory("Empty", {}).AddProperty(ID::pAlias_ID, m_Data.GetNodeID("Inner", true));
    Build();
    EXPECT_EQ(VisibilityOf("Inner"), Beginner);
    EXPECT_EQ(VisibilityOf("Empty"), Invisible);
}

TEST_F(CategoryValue, DoesNotAskItsDescriptionForItsVisibility) {
    AddCategory("Root", {"A"}).AddProperty(ID::Visibility_ID, CProperty::EVisibility_ID, Beginner);
    AddFeature("A", Guru);
    Build();
    EXPECT_EQ(VisibilityOf("Root"), Guru);
}

/// The outer categories come first in one description and last in the other.
class NestedCategories : public CategoryValue, public testing::WithParamInterface<bool> {};

TEST_P(NestedCategories, ShowThemselvesInAnyOrder) {
    if (GetParam()) {
        AddCategory("Root", {"Middle"});
        AddCategory("Middle", {"Inner"});
        AddCategory("Inner", {"A"});
    } else {
        AddCategory("Inner", {"A"});
        AddCategory("Middle", {"Inner"});
        AddCategory("Root", {"Middle"});
    }
    AddFeature("A", Expert);
    Build();
    EXPECT_EQ(VisibilityOf("Inner"), Expert);
    EXPECT_EQ(VisibilityOf("Middle"), Expert);
    EXPECT_EQ(VisibilityOf("Root"), Expert);
}

INSTANTIATE_TEST_SUITE_P(FromRoot, NestedCategories, testing::Bool());

TEST_F(CategoryValue, PassesALowerVisibilityUpward) {
    AddCategory("Root", {"Inner"});
    AddCategory("Inner", {"A"});
    AddFeature("A", Guru);
    Build();
    Get<INodePrivate>("Inner").SetInvisibleIfHigher(Beginner);
    EXPECT_EQ(VisibilityOf("Root"), Beginner);
    Get<INodePrivate>("Inner").SetInvisibleIfHigher(Expert);
    EXPECT_EQ(VisibilityOf("Root"), Beginner);
}

TEST_F(CategoryValue, IsReadOnlyWithAFeatureThatIsImplemented) {
    AddReg("HasA", 0);
    AddCategory("Root", {"A", "B"});
    AddFeature("A", Beginner, {{ID::pIsImplemented_ID, "HasA"}});
    AddFeature("B", Beginner, {{ID::pIsAvailable_ID, "HasA"}});
    Build();
    EXPECT_EQ(ModeOf("Root"), RO);
    EXPECT_EQ(Get<ICategory>("Root").ToString(), "Root");
}

TEST_F(CategoryValue, IsNotImplementedWithoutSuchAFeature) {
    AddReg("HasA", 0);
    AddCategory("Root", {"A"});
    AddCategory("Empty", {});
    AddFeature("A", Beginner, {{ID::pIsImplemented_ID, "HasA"}});
    Build();
    EXPECT_EQ(ModeOf("Root"), NI);
    EXPECT_EQ(ModeOf("Empty"), NI);
    Get<IInteger>("HasA").SetValue(1);
    EXPECT_EQ(ModeOf("Root"), RO);
}

TEST_F(CategoryValue, IsNotImplementedWhenItsOwnConditionSaysSo) {
    AddReg("HasRoot", 0);
    AddCategory("Root", {"A"})
        .AddProperty(ID::pIsImplemented_ID, m_Data.GetNodeID("HasRoot", true));
    AddFeature("A", Beginner);
    Build();
    EXPECT_EQ(ModeOf("Root"), NI);
    Get<IInteger>("HasRoot").SetValue(1);
    EXPECT_EQ(ModeOf("Root"), RO);
}

TEST_F(CategoryValue, IsSpokenForByTheCategoryInterface) {
    AddCategory("Root", {});
    Build();
    EXPECT_EQ(Get<INode>("Root").GetPrincipalInterfaceType(), intfICategory);
}

using PlainNode = ValueGraph;

TEST_F(PlainNode, HasNoValueToWrite) {
    Add(CNodeData::Node_ID, "Event");
    Build();
    EXPECT_EQ(FailureText<LogicalErrorException>([&] { Get<IValue>("Event").FromString("1"); }),
              "NodeImpl Event can't set value from string : 1. Use derived class!");
    EXPECT_EQ(Get<INode>("Event").GetPrincipalInterfaceType(), intfIBase);
}

}  // namespace ValueTest
