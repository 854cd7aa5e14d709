// Nodes by name, in the order of their tree, and by their relations.

#include <set>
#include <thread>

#include "NodeTest.h"
#include "support/FeatureCalls.h"

namespace {

using Strings = std::vector<std::string>;

class NodeFind : public NodeTest {};

TEST_F(NodeFind, FindsTheSameNodeByTheSameHandle) {
    const OV_NODE_HANDLE width = Node("Width");
    EXPECT_NE(width, 0U);
    EXPECT_EQ(Node("Width"), width);
    EXPECT_EQ(Node("Std::Width"), width);
    EXPECT_NE(Node("Height"), width);
    EXPECT_EQ(Name(width), "Width");
}

TEST_F(NodeFind, FindsWhatUsersAreNotShown) {
    EXPECT_EQ(Name(Node("WidthReg")), "WidthReg");
    EXPECT_EQ(Name(Node("Device")), "Device");
}

TEST_F(NodeFind, NamesTheNearestFeaturesForANameThatIsNotThere) {
    OV_NODE_HANDLE node = 7;
    ExpectFailure(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "widht", &node),
                  OV_STATUS_NOT_IMPLEMENTED, "There is no feature \"widht\"; like it: \"Width\"");
    ExpectFailure(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "Persistent", &node),
                  OV_STATUS_NOT_IMPLEMENTED,
                  "There is no feature \"Persistent\"; like it: \"GevPersistentIPAddress\", "
                  "\"GevPersistentSubnetMask\", \"GevPersistentDefaultGateway\"");
    EXPECT_EQ(node, 7U);
}

TEST_F(NodeFind, SaysSoWhenNoNameIsNear) {
    OV_NODE_HANDLE node = 7;
    ExpectFailure(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "Xylophone", &node),
                  OV_STATUS_NOT_IMPLEMENTED, "There is no feature \"Xylophone\"");
    ExpectFailure(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "", &node), OV_STATUS_NOT_IMPLEMENTED,
                  "There is no feature \"\"");
    EXPECT_EQ(node, 7U);
}

TEST_F(NodeFind, ReachesAllModules) {
    for (OV_NODE_MODULE module = OV_NODE_MODULE_CAMERA; module <= OV_NODE_MODULE_STREAM; ++module) {
        SCOPED_TRACE(module);
        const auto all = All(module);
        ASSERT_GT(all.size(), 1U);
        EXPECT_EQ(Name(all[0]), "Root");
        EXPECT_EQ(Node("Root", module), all[0]);
    }
    EXPECT_EQ(Value(Node("TLType", OV_NODE_MODULE_SYSTEM)), "Custom");
}

TEST_F(NodeFind, ListsEachCategoryBeforeItsContent) {
    const Strings names = Names(All());
    ASSERT_GT(names.size(), 40U);
    EXPECT_EQ(Strings(names.begin(), names.begin() + 4),
              (Strings{"Root", "DeviceControl", "DeviceVendorName", "DeviceModelName"}));
    EXPECT_EQ(Strings(names.end() - 4, names.end()),
              (Strings{"EventExposureEndData", "EventExposureEnd", "EventExposureEndTimestamp",
                       "EventExposureEndFrameID"}));
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
}

TEST_F(NodeFind, ListsOnceWhatSeveralCategoriesHold) {
    Describe(DescribeCamera(
        "<Category Name=\"Root\"><pFeature>Outer</pFeature><pFeature>A</pFeature></Category>"
        "<Category Name=\"Outer\"><pFeature>A</pFeature></Category>"
        "<Integer Name=\"A\"><Value>1</Value></Integer>"
        "<Integer Name=\"Unlisted\"><Value>2</Value></Integer>"));
    EXPECT_EQ(Names(All()), (Strings{"Root", "Outer", "A"}));
    EXPECT_EQ(Value(Node("Unlisted")), "2");
}

TEST_F(NodeFind, ListsNothingWithoutARoot) {
    Describe(DescribeCamera("<Integer Name=\"A\"><Value>1</Value></Integer>"));
    EXPECT_TRUE(All().empty());
}

TEST_F(NodeFind, AListThatIsTooLongChangesNothing) {
    size_t number = 2;
    OV_NODE_HANDLE nodes[2] = {5, 6};
    ExpectFailure(OvNodeGetAll(camera, OV_NODE_MODULE_CAMERA, nodes, &number),
                  OV_STATUS_NEED_MORE_BUFFER, "Need more buffer");
    EXPECT_EQ(number, 2U);
    EXPECT_EQ(nodes[0], 5U);
}

TEST_F(NodeFind, RelatesNodes) {
    EXPECT_EQ(Related("AnalogControl", OV_NODE_RELATION_FEATURES), Strings{"Gain"});
    EXPECT_EQ(Related("TriggerMode", OV_NODE_RELATION_ENTRIES),
              (Strings{"EnumEntry_TriggerMode_Off", "EnumEntry_TriggerMode_On"}));
    EXPECT_EQ(Related("Width", OV_NODE_RELATION_PARENTS), Strings{"ImageFormatControl"});
    EXPECT_EQ(Related("Width", OV_NODE_RELATION_REGISTERS), Strings{"WidthReg"});
    EXPECT_EQ(Related("Width", OV_NODE_RELATION_SOURCES),
              (Strings{"TLParamsLocked", "WidthReg", "WidthLimit"}));
    EXPECT_EQ(Related("Gain", OV_NODE_RELATION_FEATURES), Strings{});
    EXPECT_EQ(Related("Gain", OV_NODE_RELATION_ENTRIES), Strings{});
}

TEST_F(NodeFind, RelatesSelectorsAndWhatTheySelect) {
    Describe(DescribeCamera(
        "<Integer Name=\"Selector\"><Value>0</Value><pSelected>Chosen</pSelected></Integer>"
        "<Integer Name=\"Chosen\"><Value>1</Value></Integer>"));
    EXPECT_EQ(Related("Selector", OV_NODE_RELATION_SELECTED), Strings{"Chosen"});
    EXPECT_EQ(Related("Chosen", OV_NODE_RELATION_SELECTORS), Strings{"Selector"});
    EXPECT_EQ(Related("Chosen", OV_NODE_RELATION_SELECTED), Strings{});
    EXPECT_NE(Info(Node("Selector")).nFlags & OV_NODE_FLAG_SELECTOR, 0U);
    EXPECT_EQ(Info(Node("Chosen")).nFlags & OV_NODE_FLAG_SELECTOR, 0U);
}

TEST_F(NodeFind, ReturnsTheDescriptionOfEachModule) {
    for (OV_NODE_MODULE module = OV_NODE_MODULE_CAMERA; module <= OV_NODE_MODULE_STREAM; ++module) {
        SCOPED_TRACE(module);
        const std::string xml = TextFrom(
            [&](char* text, size_t* size) { return OvNodeGetXml(camera, module, text, size); });
        EXPECT_EQ(xml.substr(0, 5), "<?xml");
        EXPECT_NE(xml.find("</RegisterDescription>"), std::string::npos);
    }
}

TEST_F(NodeFind, ReturnsTheVeryDescriptionThatTheProducerHas) {
    const std::string own = DescribeCamera("<Integer Name=\"A\"><Value>1</Value></Integer>");
    Describe(own);
    EXPECT_EQ(TextFrom([&](char* text, size_t* size) {
                  return OvNodeGetXml(camera, OV_NODE_MODULE_CAMERA, text, size);
              }),
              own);
}

}  // namespace
