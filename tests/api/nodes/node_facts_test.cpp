// What a description says of its nodes.

#include "NodeTest.h"
#include "support/FeatureCalls.h"

namespace {

class NodeFacts : public NodeTest {
protected:
    OV_NODE_TYPE Type(const std::string& name) const { return Info(Node(name)).type; }
    std::string Text(const std::string& name, OV_NODE_TEXT text) const {
        return NodeTest::Text(Node(name), text);
    }
};

TEST_F(NodeFacts, NameTheTypeOfEachNode) {
    EXPECT_EQ(Type("Width"), OV_NODE_TYPE_INTEGER);
    EXPECT_EQ(Type("WidthLimit"), OV_NODE_TYPE_INTEGER);
    EXPECT_EQ(Type("ExposureTime"), OV_NODE_TYPE_FLOAT);
    EXPECT_EQ(Type("Gain"), OV_NODE_TYPE_FLOAT);
    EXPECT_EQ(Type("PixelFormat"), OV_NODE_TYPE_ENUMERATION);
    EXPECT_EQ(Type("ReverseX"), OV_NODE_TYPE_BOOLEAN);
    EXPECT_EQ(Type("DeviceUserID"), OV_NODE_TYPE_STRING);
    EXPECT_EQ(Type("UserData"), OV_NODE_TYPE_REGISTER);
    EXPECT_EQ(Type("UserSetSave"), OV_NODE_TYPE_COMMAND);
    EXPECT_EQ(Type("Root"), OV_NODE_TYPE_CATEGORY);
    EXPECT_EQ(Type("EnumEntry_PixelFormat_Mono8"), OV_NODE_TYPE_ENTRY);
    EXPECT_EQ(Type("Device"), OV_NODE_TYPE_PORT);
}

TEST_F(NodeFacts, SayWhatCanBeDone) {
    EXPECT_EQ(Info(Node("Width")).access, OV_NODE_ACCESS_READ_WRITE);
    EXPECT_EQ(Info(Node("DeviceModelName")).access, OV_NODE_ACCESS_READ_ONLY);
    OV_NODE_ACCESS access = -1;
    EXPECT_OV_OK(OvNodeGetAccess(Node("Width"), &access));
    EXPECT_EQ(access, OV_NODE_ACCESS_READ_WRITE);
}

TEST_F(NodeFacts, SayWhomANodeIsFor) {
    EXPECT_EQ(Info(Node("Width")).visibility, OV_NODE_VISIBILITY_BEGINNER);
    EXPECT_EQ(Info(Node("SensorWidth")).visibility, OV_NODE_VISIBILITY_EXPERT);
    EXPECT_EQ(Info(Node("GevPersistentIPAddress")).visibility, OV_NODE_VISIBILITY_GURU);
    EXPECT_EQ(Info(Node("WidthReg")).visibility, OV_NODE_VISIBILITY_INVISIBLE);
}

TEST_F(NodeFacts, HaveFlags) {
    EXPECT_EQ(Info(Node("Width")).nFlags, static_cast<uint32_t>(OV_NODE_FLAG_FEATURE) |
                                              OV_NODE_FLAG_CACHED | OV_NODE_FLAG_STANDARD);
    EXPECT_EQ(Info(Node("WidthReg")).nFlags, static_cast<uint32_t>(OV_NODE_FLAG_CACHED));
    EXPECT_EQ(Info(Node("PayloadSize")).nFlags,
              static_cast<uint32_t>(OV_NODE_FLAG_FEATURE) | OV_NODE_FLAG_STANDARD);
    Describe(DescribeCamera(
        "<Integer Name=\"A\"><IsDeprecated>Yes</IsDeprecated>"
        "<Streamable>Yes</Streamable><Value>1</Value></Integer>" +
        DescriptionXml::RegXml{.name = "Polled", .polling = "<PollingTime>500</PollingTime>"}()));
    const OV_NODE_INFO info = Info(Node("A"));
    EXPECT_NE(info.nFlags & OV_NODE_FLAG_DEPRECATED, 0U);
    EXPECT_NE(info.nFlags & OV_NODE_FLAG_STREAMABLE, 0U);
    EXPECT_EQ(info.nPollingTime, -1);
    EXPECT_EQ(Info(Node("Polled")).nPollingTime, 500);
}

TEST_F(NodeFacts, SayHowToShowANumber) {
    EXPECT_EQ(Info(Node("Width")).representation, OV_NODE_REPRESENTATION_LINEAR);
    EXPECT_EQ(Info(Node("ExposureTime")).representation, OV_NODE_REPRESENTATION_LOGARITHMIC);
    EXPECT_EQ(Info(Node("GevPersistentIPAddress")).representation, OV_NODE_REPRESENTATION_IPV4);
    EXPECT_EQ(Info(Node("ReverseX")).representation, OV_NODE_REPRESENTATION_NONE);
}

TEST_F(NodeFacts, HaveTexts) {
    EXPECT_EQ(Text("ExposureTime", OV_NODE_TEXT_NAME), "ExposureTime");
    EXPECT_EQ(Text("ExposureTime", OV_NODE_TEXT_DISPLAY_NAME), "ExposureTime");
    EXPECT_EQ(Text("ExposureTime", OV_NODE_TEXT_TOOL_TIP), "Time that the sensor gathers light");
    EXPECT_EQ(Text("ExposureTime", OV_NODE_TEXT_DESCRIPTION), "");
    EXPECT_EQ(Text("ExposureTime", OV_NODE_TEXT_UNIT), "us");
    EXPECT_EQ(Text("ExposureTime", OV_NODE_TEXT_DOCUMENT), "");
    EXPECT_EQ(Text("DeviceModelName", OV_NODE_TEXT_DESCRIPTION), "Model of the camera");
    EXPECT_EQ(Text("EventExposureEndPort", OV_NODE_TEXT_EVENT), "9001");
    EXPECT_EQ(Text("DeviceModelName", OV_NODE_TEXT_UNIT), "");
}

TEST_F(NodeFacts, OfOtherKindsAreUnknown) {
    size_t size = 7;
    ExpectFailure(OvNodeGetText(Node("Width"), 99, nullptr, &size), OV_STATUS_INVALID_PARAMETER,
                  "Unknown node text");
    EXPECT_NE(LastError::Get().text.find("{OvNodeGetText:line["), std::string::npos);
    ExpectFailure(OvNodeGetRelated(Node("Width"), 99, nullptr, &size), OV_STATUS_INVALID_PARAMETER,
                  "Unknown node relation");
    EXPECT_NE(LastError::Get().text.find("{OvNodeGetRelated:line["), std::string::npos);
    for (const OV_NODE_MODULE module : {-1, 5}) {
        OV_NODE_HANDLE node = 0;
        ExpectFailure(OvNodeFind(camera, module, "Root", &node), OV_STATUS_INVALID_PARAMETER,
                      "Unknown node module");
        ExpectFailure(OvNodeGetAll(camera, module, nullptr, &size), OV_STATUS_INVALID_PARAMETER,
                      "Unknown node module");
        ExpectFailure(OvNodeGetXml(camera, module, nullptr, &size), OV_STATUS_INVALID_PARAMETER,
                      "Unknown node module");
    }
    EXPECT_EQ(size, 7U);
}

class NodeProperties : public NodeTest {
protected:
    std::string Property(const std::string& node, const char* name,
                         OV_NODE_PROPERTY_PART part = OV_NODE_PROPERTY_VALUE) const {
        return TextFrom([&](char* memory, size_t* size) {
            return OvNodeGetProperty(Node(node), name, part, memory, size);
        });
    }
};

TEST_F(NodeProperties, AreWhatTheDescriptionSays) {
    EXPECT_EQ(Property("Width", "pIsLocked"), "TLParamsLocked");
    EXPECT_EQ(Property("Width", "pMax"), "WidthLimit");
    EXPECT_EQ(Property("Width", "Min"), "8");
    EXPECT_EQ(Property("WidthReg", "pPort"), "Device");
    Describe(DescribeCamera(
        "<IntSwissKnife Name=\"Sum\"><pVariable Name=\"A\">One</pVariable>"
        "<pVariable Name=\"B\">Two</pVariable><Formula>A + B</Formula></IntSwissKnife>"
        "<Integer Name=\"One\"><Value>1</Value></Integer>"
        "<Integer Name=\"Two\"><Value>2</Value></Integer>"));
    EXPECT_EQ(Property("Sum", "Formula"), "A + B");
    EXPECT_EQ(Property("Sum", "pVariable"), "One\tTwo");
    EXPECT_EQ(Property("Sum", "pVariable", OV_NODE_PROPERTY_ATTRIBUTE), "A\tB");
    EXPECT_EQ(Property("One", "Value", OV_NODE_PROPERTY_ATTRIBUTE), "");
}

TEST_F(NodeProperties, AreListedByName) {
    Describe(DescribeCamera("<Integer Name=\"One\"><Value>1</Value></Integer>"));
    const std::string names = TextFrom([&](char* memory, size_t* size) {
        return OvNodeGetPropertyNames(Node("One"), memory, size);
    });
    EXPECT_EQ(names, "pTerminal\tName\tValue") << "what the library has found is among it";
}

TEST_F(NodeProperties, OfOtherNamesAreUnknown) {
    size_t size = 7;
    const OV_NODE_HANDLE node = Node("Width");
    ExpectFailure(OvNodeGetProperty(node, "Formula", OV_NODE_PROPERTY_VALUE, nullptr, &size),
                  OV_STATUS_NOT_IMPLEMENTED, "The description of \"Width\" has no \"Formula\"");
    ExpectFailure(OvNodeGetProperty(node, "Min", 2, nullptr, &size), OV_STATUS_INVALID_PARAMETER,
                  "Unknown part of a property");
    EXPECT_EQ(size, 7U);
}

/// The value leads to a node that isn't there, and a formula divides by zero.
TEST_F(NodeFacts, OfANodeThatFailsDontEndAList) {
    Describe(DescribeCamera(
        "<Category Name=\"Root\"><pFeature>Broken</pFeature><pFeature>Divided</pFeature>"
        "<pFeature>Sound</pFeature></Category>"
        "<Integer Name=\"Broken\"><pValue>Divided</pValue><pMax>Divided</pMax></Integer>"
        "<IntSwissKnife Name=\"Divided\"><Formula>1 / 0</Formula></IntSwissKnife>"
        "<Integer Name=\"Sound\"><Value>5</Value></Integer>"));
    const auto nodes = All();
    EXPECT_EQ(Names(nodes), (std::vector<std::string>{"Root", "Broken", "Divided", "Sound"}));
    int64_t value = 7;
    EXPECT_EQ(OvNodeGetInteger(nodes[1], &value), OV_STATUS_ERROR);
    EXPECT_EQ(OvNodeGetInteger(nodes[2], &value), OV_STATUS_ERROR);
    EXPECT_EQ(value, 7);
    EXPECT_OV_OK(OvNodeGetInteger(nodes[3], &value));
    EXPECT_EQ(value, 5);
}

TEST_F(NodeFacts, OfAFeatureThatTheCameraLacksAreThereButNotItsValue) {
    Describe(DescribeCamera(
        "<Integer Name=\"A\"><pIsImplemented>No</pIsImplemented><Value>1</Value></Integer>"
        "<Integer Name=\"No\"><Value>0</Value></Integer>"));
    EXPECT_EQ(Info(Node("A")).access, OV_NODE_ACCESS_NOT_IMPLEMENTED);
    EXPECT_EQ(Info(Node("A")).type, OV_NODE_TYPE_INTEGER);
    int64_t value = 7;
    ExpectFailure(OvNodeGetInteger(Node("A"), &value), OV_STATUS_NOT_IMPLEMENTED,
                  "The feature \"A\" is not implemented");
    ExpectFailure(OvNodeSetInteger(Node("A"), 1), OV_STATUS_NOT_IMPLEMENTED,
                  "The feature \"A\" is not implemented");
    EXPECT_EQ(value, 7);
}

}  // namespace
