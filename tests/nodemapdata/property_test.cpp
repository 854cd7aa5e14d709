#include <cmath>
#include <cstdint>
#include <limits>

#include "properties/PropertyEnum.h"
#include "support/NodeDataBuilder.h"

namespace NodeDataTest {
namespace {

class Property : public testing::Test {
protected:
    static CProperty Make(ID::EProperty_ID_t id, auto... value) {
        return CProperty(&Map(), id, value...);
    }
    static CNodeDataMap& Map() {
        static CNodeDataMap map;
        return map;
    }
};

TEST_F(Property, IsUndefinedAtFirst) {
    const CProperty property(&Map());
    EXPECT_EQ(property.GetDataType(), 22);
    EXPECT_FALSE(property.GetPropertyID().IsInitialized());
    EXPECT_FALSE(property.IsInitialized());
    EXPECT_EQ(property.GetAttribute(), nullptr);
    EXPECT_EQ(property.GetNodeDataMap(), &Map());
}

TEST_F(Property, NeedsIdentifierAndTypeToBeInitialised) {
    EXPECT_FALSE(CProperty(&Map(), CPropertyID(), 1).IsInitialized());
    EXPECT_FALSE(Make(ID::Min_ID, CProperty::_UndefinedDataType_ID, No).IsInitialized());
    EXPECT_TRUE(Make(ID::Min_ID, 1).IsInitialized());
}

TEST_F(Property, HoldsEachKindOfValue) {
    EXPECT_EQ(Make(ID::Min_ID, std::numeric_limits<int64_t>::min()).Integer(), INT64_MIN);
    EXPECT_EQ(Make(ID::Max_ID, 0.1).Float(), 0.1);
    EXPECT_EQ(Make(ID::pValue_ID, NodeID_t(5)).NodeID(), NodeID_t(5));
    EXPECT_EQ(Make(ID::ToolTip_ID, StringID_t(3)).StringID(), StringID_t(3));
    EXPECT_EQ(Make(ID::ToolTip_ID, "a tip").String(), "a tip");
}

TEST_F(Property, GivesEnumerationsToWhomeverReceivesThem) {
    const EYesNo value = Make(ID::IsFeature_ID, CProperty::EYesNo_ID, Yes).EYesNo();
    EXPECT_EQ(value, Yes);
    EXPECT_EQ(Make(ID::Visibility_ID, CProperty::EVisibility_ID, CEnumNumber(99))
                  .EVisibility()
                  .ToNumber(),
              99);
}

TEST_F(Property, TakesAnotherText) {
    CProperty property = Make(ID::Symbolic_ID, "before");
    property.SetStringID(Map().SetString("after"));
    EXPECT_EQ(property.String(), "after");
}

TEST_F(Property, OwnsItsAttribute) {
    CProperty property = Make(ID::pIndex_ID, NodeID_t(0));
    property.SetAttribute(std::make_unique<CProperty>(Make(ID::Offset_ID, 4)));
    ASSERT_NE(property.GetAttribute(), nullptr);
    EXPECT_EQ(property.GetAttribute()->Integer(), 4);
    EXPECT_EQ(property.GetNodeDataMap(), &Map());

    property.SetAttribute(std::make_unique<CProperty>(Make(ID::Offset_ID, 8)));
    EXPECT_EQ(property.GetAttribute()->Integer(), 8);

    property.SetAttribute(nullptr);
    EXPECT_EQ(property.GetAttribute(), nullptr);
    EXPECT_EQ(property.GetNodeDataMap(), &Map());
}

TEST_F(Property, CopiesWithinTheMapVerbatim) {
    CProperty source = Make(ID::pVariable_ID, NodeID_t(2));
    auto pName = std::make_unique<CProperty>(Make(ID::Name_ID, "VAR"));
    pName->SetAttribute(std::make_unique<CProperty>(Make(ID::Index_ID, 9)));
    source.SetAttribute(std::move(pName));

    const CProperty copy(source);  // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(copy, source);
    ASSERT_NE(copy.GetAttribute(), nullptr);
    EXPECT_NE(copy.GetAttribute(), source.GetAttribute());
    EXPECT_EQ(copy.GetAttribute()->StringID(), source.GetAttribute()->StringID());
    EXPECT_EQ(copy.GetAttribute()->GetAttribute()->Integer(), 9);
}

TEST_F(Property, MovesWithItsAttribute) {
    CProperty source = Make(ID::pIndex_ID, NodeID_t(1));
    source.SetAttribute(std::make_unique<CProperty>(Make(ID::Offset_ID, 4)));
    const CProperty* const pAttribute = source.GetAttribute();

    CProperty moved(std::move(source));
    EXPECT_EQ(moved.GetAttribute(), pAttribute);

    CProperty assigned(&Map());
    assigned = moved;
    EXPECT_EQ(assigned, moved);
    EXPECT_NE(assigned.GetAttribute(), pAttribute);
}

TEST_F(Property, EntersItsTextInAnotherMap) {
    CNodeDataMap target;
    target.SetString("other");
    const CProperty copy(Make(ID::Unit_ID, "ms"), &target);
    EXPECT_EQ(copy.StringID(), StringID_t(1));
    EXPECT_EQ(copy.String(), "ms");
    EXPECT_EQ(copy.GetNodeDataMap(), &target);
}

TEST_F(Property, FindsItsNodeByNameInAnotherMap) {
    CNodeDataMap source;
    CNodeDataMap target;
    target.GetNodeID("First", true);
    target.GetNodeID("Reg", true);
    target.GetNodeID("Off", true);
    CProperty property(&source, ID::pIndex_ID, source.GetNodeID("Reg", true));
    property.SetAttribute(
        std::make_unique<CProperty>(&source, ID::pOffset_ID, source.GetNodeID("Off", true)));

    const CProperty copy(property, &target);
    EXPECT_EQ(copy.NodeID(), NodeID_t(1));
    EXPECT_EQ(copy.GetAttribute()->NodeID(), NodeID_t(2));
    EXPECT_EQ(copy.GetAttribute()->GetNodeDataMap(), &target);
}

using PropertyDeathTest = Property;

TEST_F(PropertyDeathTest, NeedsTheNodeInAnotherMap) {
    CNodeDataMap source;
    CNodeDataMap target;
    const CProperty property(&source, ID::pValue_ID, source.GetNodeID("Reg", true));
    EXPECT_DEATH(CProperty(property, &target), testing::HasSubstr("TargetNodeID != NodeID_t()"));
}

TEST_F(PropertyDeathTest, RefusesAnAttributeOfAnotherMap) {
    CNodeDataMap other;
    CProperty property = Make(ID::pIndex_ID, NodeID_t(0));
    EXPECT_DEATH(
        property.SetAttribute(std::make_unique<CProperty>(&other, CPropertyID(ID::Offset_ID), 1)),
        testing::HasSubstr("GetNodeDataMap()"));
}

/// One accessor of a typed value, and the text that tells its misuse.
struct Accessor {
    const char* condition;
    void (*call)(const CProperty&);
};

#define OV_ACCESSOR(name, type)                                            \
    Accessor {                                                             \
        "m_DataType == " #type, [](const CProperty& p) { (void)p.name(); } \
    }

class PropertyAccessorDeathTest : public testing::TestWithParam<Accessor> {};

TEST_P(PropertyAccessorDeathTest, AssertsTheDataType) {
    CNodeDataMap map;
    const CProperty property(&map);
    EXPECT_DEATH(GetParam().call(property), testing::HasSubstr(GetParam().condition));
}

INSTANTIATE_TEST_SUITE_P(
    All, PropertyAccessorDeathTest,
    testing::Values(OV_ACCESSOR(Integer, Integer_ID), OV_ACCESSOR(Float, Float_ID),
                    OV_ACCESSOR(NodeID, Node_ID), OV_ACCESSOR(StringID, String_ID),
                    OV_ACCESSOR(String, String_ID), OV_ACCESSOR(EAccessMode, EAccessMode_ID),
                    OV_ACCESSOR(ECachingMode, ECachingMode_ID),
                    OV_ACCESSOR(EDisplayNotation, EDisplayNotation_ID),
                    OV_ACCESSOR(EEndianess, EEndianess_ID), OV_ACCESSOR(ENameSpace, ENameSpace_ID),
                    OV_ACCESSOR(ERepresentation, ERepresentation_ID), OV_ACCESSOR(ESign, ESign_ID),
                    OV_ACCESSOR(ESlope, ESlope_ID),
                    OV_ACCESSOR(EStandardNameSpace, EStandardNameSpace_ID),
                    OV_ACCESSOR(EVisibility, EVisibility_ID), OV_ACCESSOR(EYesNo, EYesNo_ID),
                    OV_ACCESSOR(EInputDirection, EInputDirection_ID)));

TEST_F(Property, EqualsByIdentifierTypeAndValue) {
    EXPECT_EQ(Make(ID::Min_ID, 1), Make(ID::Min_ID, 1));
    EXPECT_NE(Make(ID::Min_ID, 1), Make(ID::Max_ID, 1));
    EXPECT_NE(Make(ID::Min_ID, 1), Make(ID::Min_ID, 1.0));
    EXPECT_NE(Make(ID::Min_ID, 1), Make(ID::Min_ID, int64_t{1} << 32 | 1));
    EXPECT_NE(Make(ID::pValue_ID, NodeID_t(1)), Make(ID::pValue_ID, NodeID_t(2)));
    EXPECT_NE(Make(ID::IsFeature_ID, CProperty::EYesNo_ID, Yes),
              Make(ID::IsFeature_ID, CProperty::EYesNo_ID, No));
}

TEST_F(Property, ComparesFloatsAsNumbers) {
    EXPECT_EQ(Make(ID::Min_ID, 0.0), Make(ID::Min_ID, -0.0));
    EXPECT_NE(Make(ID::Min_ID, std::nan("")), Make(ID::Min_ID, std::nan("")));
}

TEST_F(Property, ComparesTextsByContentEachInItsMap) {
    CNodeDataMap other;
    EXPECT_EQ(Make(ID::Unit_ID, "ms"), CProperty(&other, ID::Unit_ID, "ms"));
    EXPECT_NE(Make(ID::Unit_ID, "ms"), CProperty(&other, ID::Unit_ID, "us"));
}

TEST_F(Property, ComparesNodesByNumberEvenAcrossMaps) {
    CNodeDataMap other;
    Map().GetNodeID("A", true);
    other.GetNodeID("B", true);
    EXPECT_EQ(Make(ID::pValue_ID, NodeID_t(0)), CProperty(&other, ID::pValue_ID, NodeID_t(0)));
}

TEST_F(Property, IgnoresTheAttributeInComparison) {
    CProperty one = Make(ID::pIndex_ID, NodeID_t(1));
    CProperty other = one;
    one.SetAttribute(std::make_unique<CProperty>(Make(ID::Offset_ID, 4)));
    EXPECT_EQ(one, other);
    other.SetAttribute(std::make_unique<CProperty>(Make(ID::Offset_ID, 8)));
    EXPECT_EQ(one, other);
}

TEST_F(PropertyDeathTest, CannotCompareUndefinedTypes) {
    EXPECT_DEATH((void)(CProperty(&Map()) == CProperty(&Map())),
                 testing::HasSubstr("isIdentical && \"Undefined comparison in DataTypeID:\""));
}

}  // namespace
}  // namespace NodeDataTest
