#include <cstdint>
#include <set>
#include <sstream>

#include "support/NodeDataBuilder.h"

namespace NodeDataTest {
namespace {

TEST(PropertyID, IsUninitialisedAtFirst) {
    EXPECT_FALSE(CPropertyID().IsInitialized());
    EXPECT_EQ(CPropertyID(), static_cast<ID::EProperty_ID_t>(109));
}

TEST(PropertyID, IsInitialisedWithAnyOtherNumber) {
    for (const uint32_t number : {0U, 1U, 108U, 110U, 113U}) {
        EXPECT_TRUE(CPropertyID(static_cast<ID::EProperty_ID_t>(number)).IsInitialized()) << number;
    }
}

TEST(PropertyID, PrintsItsName) {
    std::ostringstream stream;
    stream << CPropertyID(ID::pValue_ID) << ' ' << CPropertyID(ID::VersionGuid_ID);
    EXPECT_EQ(stream.str(), "pValue VersionGuid");
}

class PropertyIDWithoutName : public testing::TestWithParam<uint32_t> {};

TEST_P(PropertyIDWithoutName, PrintsItsNumber) {
    const CPropertyID id = static_cast<ID::EProperty_ID_t>(GetParam());
    EXPECT_EQ(id.ToString(), "Invalid PropertyID " + std::to_string(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Numbers, PropertyIDWithoutName,
                         testing::Values(0, 7, 26, 30, 36, 37, 109, 113, 114, 4000000000U));

struct Fixed {
    ID::EProperty_ID_t id;
    uint32_t number;
    const char* name;
};

class PropertyIDNumber : public testing::TestWithParam<Fixed> {};

TEST_P(PropertyIDNumber, IsFixed) {
    EXPECT_EQ(static_cast<uint32_t>(GetParam().id), GetParam().number);
    EXPECT_EQ(CPropertyID(GetParam().id).ToString(), GetParam().name);
}

// The ends of the groups and some from within.
INSTANTIATE_TEST_SUITE_P(
    Numbers, PropertyIDNumber,
    testing::Values(
        Fixed{ID::pValue_ID, 1, "pValue"}, Fixed{ID::pSwissKnifeFrom_ID, 6, "pSwissKnifeFrom"},
        Fixed{ID::pIsAvailable_ID, 8, "pIsAvailable"}, Fixed{ID::pError_ID, 11, "pError"},
        Fixed{ID::pVariable_ID, 16, "pVariable"}, Fixed{ID::p1212Parser_ID, 22, "p1212Parser"},
        Fixed{ID::pFeature_ID, 25, "pFeature"}, Fixed{ID::pInvalidator_ID, 27, "pInvalidator"},
        Fixed{ID::pEnumEntry_ID, 29, "pEnumEntry"}, Fixed{ID::pDependent_ID, 31, "pDependent"},
        Fixed{ID::pTerminal_ID, 35, "pTerminal"}, Fixed{ID::NodeType_ID, 38, "NodeType"},
        Fixed{ID::IsFeature_ID, 41, "IsFeature"}, Fixed{ID::Value_ID, 55, "Value"},
        Fixed{ID::Symbolic_ID, 73, "Symbolic"}, Fixed{ID::FormulaFrom_ID, 88, "FormulaFrom"},
        Fixed{ID::MergePriority_ID, 91, "MergePriority"},
        Fixed{ID::SchemaMajorVersion_ID, 101, "SchemaMajorVersion"},
        Fixed{ID::VersionGuid_ID, 108, "VersionGuid"}));

TEST(PropertyID, HasNamesForAllNumbersButTheGaps) {
    const std::set<uint32_t> gaps = {0, 7, 26, 30, 36, 37};
    for (uint32_t number = 0; number < 109; ++number) {
        const std::string text = CPropertyID(static_cast<ID::EProperty_ID_t>(number)).ToString();
        EXPECT_EQ(text.starts_with("Invalid"), gaps.contains(number)) << number;
    }
}

struct LinkClass {
    ID::EProperty_ID_t id;
    bool writes, reads, invalidates, links;
};

class PropertyIDLinkClass : public testing::TestWithParam<LinkClass> {};

TEST_P(PropertyIDLinkClass, FollowsFromTheNumber) {
    const CPropertyID id = GetParam().id;
    EXPECT_EQ(id.IsWritingLink(), GetParam().writes);
    EXPECT_EQ(id.IsReadingLink(), GetParam().reads);
    EXPECT_EQ(id.IsInvalidatingLink(), GetParam().invalidates);
    EXPECT_EQ(id.IsLink(), GetParam().links);
}

INSTANTIATE_TEST_SUITE_P(Ends, PropertyIDLinkClass,
                         testing::Values(LinkClass{ID::pValue_ID, true, true, true, true},
                                         LinkClass{ID::pSwissKnifeFrom_ID, true, true, true, true},
                                         LinkClass{ID::pIsAvailable_ID, false, true, true, true},
                                         LinkClass{ID::pFeature_ID, false, true, true, true},
                                         LinkClass{ID::pInvalidator_ID, false, false, true, true},
                                         LinkClass{ID::pEnumEntry_ID, false, false, true, true},
                                         LinkClass{ID::pDependent_ID, false, false, false, true},
                                         LinkClass{ID::pTerminal_ID, false, false, false, true},
                                         LinkClass{ID::NodeType_ID, false, false, false, false},
                                         LinkClass{ID::VersionGuid_ID, false, false, false,
                                                   false}));

TEST(IndexID, IsInvalidAtFirst) {
    EXPECT_FALSE(NodeID_t().IsValid());
    EXPECT_EQ(NodeID_t().ToIndex(), -1);
    EXPECT_EQ(NodeID_t(), NodeID_t(-1));
}

TEST(IndexID, IsValidFromZeroOn) {
    EXPECT_TRUE(StringID_t(0).IsValid());
    EXPECT_TRUE(StringID_t(2147483647).IsValid());
    EXPECT_FALSE(StringID_t(-2).IsValid());
    EXPECT_EQ(StringID_t(size_t{7}).ToIndex(), 7);
}

}  // namespace
}  // namespace NodeDataTest
