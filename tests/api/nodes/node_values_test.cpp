// Values of every type, read and set by handle.

#include <array>

#include "NodeTest.h"
#include "support/FeatureCalls.h"

namespace {

constexpr uint64_t kWidthAddress = 0x400;

class NodeValues : public NodeTest {
protected:
    void ExpectSymbolic(const std::string& name, const std::string& symbolic) const {
        EXPECT_EQ(TextFrom([&](char* text, size_t* size) {
                      return OvNodeGetSymbolic(Node(name), text, size);
                  }),
                  symbolic);
    }
    int64_t Integer(const std::string& name) const {
        int64_t value = 0;
        EXPECT_OV_OK(OvNodeGetInteger(Node(name), &value));
        return value;
    }
};

TEST_F(NodeValues, AnIntegerIsReadAndSetWithinItsLimits) {
    const OV_NODE_HANDLE width = Node("Width");
    EXPECT_EQ(Integer("Width"), 64);
    OV_INT_RANGE range{};
    EXPECT_OV_OK(OvNodeGetIntegerRange(width, &range));
    EXPECT_EQ(range.nMin, 8);
    EXPECT_EQ(range.nMax, 64);
    EXPECT_EQ(range.nInc, 8);
    EXPECT_OV_OK(OvNodeSetInteger(width, 32));
    EXPECT_EQ(Integer("Width"), 32);
    ExpectFailure(OvNodeSetInteger(width, 72), OV_STATUS_OUT_OF_RANGE,
                  "Value = 72 must be equal or smaller than Max = 64.");
    ExpectFailure(OvNodeSetInteger(width, 33), OV_STATUS_OUT_OF_RANGE,
                  "The difference between Value = 33 and Min = 8 must be dividable without rest "
                  "by Inc = 8.");
    EXPECT_EQ(Integer("Width"), 32);
}

TEST_F(NodeValues, BothInterfacesSeeWhatOneSets) {
    EXPECT_OV_OK(OvNodeSetInteger(Node("Width"), 32));
    int64_t value = 0;
    EXPECT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &value));
    EXPECT_EQ(value, 32);
    EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 40));
    EXPECT_EQ(Integer("Width"), 40);
}

TEST_F(NodeValues, AnInvalidatedNodeIsReadAnew) {
    EXPECT_EQ(Integer("Width"), 64);
    WriteWord(kWidthAddress, 48);
    EXPECT_EQ(Integer("Width"), 64);
    EXPECT_OV_OK(OvNodeInvalidate(Node("Width")));
    EXPECT_EQ(Integer("Width"), 48);
}

TEST_F(NodeValues, AFloatIsReadAndSetWithinItsLimits) {
    const OV_NODE_HANDLE exposure = Node("ExposureTime");
    EXPECT_OV_OK(OvNodeSetFloat(exposure, 1234.5));
    double value = 0;
    EXPECT_OV_OK(OvNodeGetFloat(exposure, &value));
    EXPECT_EQ(value, 1234.5);
    OV_FLOAT_RANGE range{};
    EXPECT_OV_OK(OvNodeGetFloatRange(exposure, &range));
    EXPECT_EQ(range.dMin, 20);
    EXPECT_EQ(range.dMax, 1000000);
    EXPECT_FALSE(range.bIncIsValid);
    EXPECT_STREQ(range.szUnit, "us");
    EXPECT_EQ(OvNodeSetFloat(exposure, 19), OV_STATUS_OUT_OF_RANGE);
}

TEST_F(NodeValues, ABooleanIsReadAndSet) {
    bool value = false;
    EXPECT_OV_OK(OvNodeSetBoolean(Node("ReverseX"), true));
    EXPECT_OV_OK(OvNodeGetBoolean(Node("ReverseX"), &value));
    EXPECT_TRUE(value);
}

TEST_F(NodeValues, AnEnumerationIsSetByNameAndByNumber) {
    const OV_NODE_HANDLE mode = Node("TriggerMode");
    int64_t number = 7;
    EXPECT_OV_OK(OvNodeSetSymbolic(mode, "On"));
    EXPECT_OV_OK(OvNodeGetNumber(mode, &number));
    EXPECT_EQ(number, 1);
    EXPECT_OV_OK(OvNodeSetNumber(mode, 0));
    ExpectSymbolic("TriggerMode", "Off");
    ExpectFailure(OvNodeSetSymbolic(mode, "Maybe"), OV_STATUS_INVALID_PARAMETER,
                  "Feature 'TriggerMode' : cannot convert value 'Maybe', the value is invalid.");
    ExpectFailure(OvNodeSetNumber(mode, 2), OV_STATUS_INVALID_PARAMETER,
                  "Feature 'TriggerMode' : cannot convert value '2', the value is invalid.");
    ExpectSymbolic("TriggerMode", "Off");
}

TEST_F(NodeValues, AnEntryHasANameAndANumberOfItsOwn) {
    int64_t number = 0;
    EXPECT_OV_OK(OvNodeGetNumber(Node("EnumEntry_PixelFormat_Mono10"), &number));
    EXPECT_EQ(number, 0x01100003);
    ExpectSymbolic("EnumEntry_PixelFormat_Mono10", "Mono10");
    EXPECT_EQ(OvNodeSetNumber(Node("EnumEntry_PixelFormat_Mono10"), 1), OV_STATUS_ERROR_TYPE);
}

TEST_F(NodeValues, AnEntryThatCantBeChosenNowIsRefused) {
    Describe(DescribeCamera(
        "<Enumeration Name=\"Mode\"><EnumEntry Name=\"A\"><Value>0</Value></EnumEntry>"
        "<EnumEntry Name=\"B\"><pIsAvailable>Switch</pIsAvailable><Value>1</Value></EnumEntry>"
        "<Value>0</Value></Enumeration><Integer Name=\"Switch\"><Value>0</Value></Integer>"));
    ExpectFailure(OvNodeSetSymbolic(Node("Mode"), "B"), OV_STATUS_INVALID_ACCESS,
                  "Failed to write enumeration value. Enum entry is not writable");
    EXPECT_EQ(OvNodeSetNumber(Node("Mode"), 1), OV_STATUS_INVALID_ACCESS);
    EXPECT_EQ(OvNodeSetAsText(Node("Mode"), "B"), OV_STATUS_INVALID_ACCESS);
    ExpectSymbolic("Mode", "A");
    EXPECT_EQ(Info(Node("EnumEntry_Mode_B")).access, OV_NODE_ACCESS_NOT_AVAILABLE);
    EXPECT_OV_OK(OvNodeSetInteger(Node("Switch"), 1));
    EXPECT_OV_OK(OvNodeSetSymbolic(Node("Mode"), "B"));
    ExpectSymbolic("Mode", "B");
}

TEST_F(NodeValues, ANumberWithoutAnEntryIsReadAsANumberOnly) {
    WriteWord(0x428, 9);
    int64_t number = 0;
    EXPECT_OV_OK(OvNodeGetNumber(Node("TriggerMode"), &number));
    EXPECT_EQ(number, 9);
    size_t size = 7;
    ExpectFailure(OvNodeGetSymbolic(Node("TriggerMode"), nullptr, &size), OV_STATUS_ERROR,
                  "Feature 'TriggerMode' : cannot convert value '9', the value is invalid.");
    EXPECT_EQ(size, 7U);
}

TEST_F(NodeValues, AListOfValuesIsReturned) {
    Describe(
        DescribeCamera(DescriptionXml::RegXml{.name = "Reg", .address = 0x900}() +
                       "<Integer Name=\"Steps\"><pValue>Reg</pValue>"
                       "<ValidValueSet>1;2;4;8</ValidValueSet></Integer>"
                       "<Float Name=\"Factor\"><Value>1</Value><Min>0</Min><Max>10</Max></Float>"));
    EXPECT_EQ(ArrayFrom<int64_t>([&](int64_t* values, size_t* number) {
                  return OvNodeGetIntegerValues(Node("Steps"), values, number);
              }),
              (std::vector<int64_t>{1, 2, 4, 8}));
    EXPECT_TRUE(ArrayFrom<double>([&](double* values, size_t* number) {
                    return OvNodeGetFloatValues(Node("Factor"), values, number);
                }).empty());
}

TEST_F(NodeValues, AStringIsReadAndSet) {
    const OV_NODE_HANDLE id = Node("DeviceUserID");
    EXPECT_OV_OK(OvNodeSetString(id, "Left"));
    EXPECT_EQ(TextFrom([&](char* text, size_t* size) { return OvNodeGetString(id, text, size); }),
              "Left");
    size_t size = 0;
    EXPECT_OV_OK(OvNodeGetStringMaxSize(id, &size));
    EXPECT_EQ(size, 65U);
    std::array<char, 4> tooSmall{'a', 'b', 'c', 'd'};
    size = tooSmall.size();
    ExpectFailure(OvNodeGetString(id, tooSmall.data(), &size), OV_STATUS_NEED_MORE_BUFFER,
                  "Need more buffer");
    EXPECT_EQ(size, 4U);
    EXPECT_EQ(tooSmall[0], 'a');
    EXPECT_EQ(OvNodeSetString(id, std::string(64, 'x').c_str()), OV_STATUS_OUT_OF_RANGE);
}

TEST_F(NodeValues, ANewUserIdIsInTheDeviceListAtOnce) {
    for (const auto set : {&OvNodeSetString, &OvNodeSetAsText}) {
        const std::string id = set == &OvNodeSetString ? "Left" : "Right";
        EXPECT_OV_OK(set(Node("DeviceUserID"), id.c_str()));
        OV_DEVICE_BASE_INFO info{};
        size_t size = sizeof info;
        EXPECT_OV_OK(OVGetAllDeviceBaseInfo(&info, &size));
        EXPECT_EQ(info.szUserID, id);
    }
}

TEST_F(NodeValues, BytesOfTheUserIdAreInTheDeviceListAtOnce) {
    const auto listed = [] {
        OV_DEVICE_BASE_INFO info{};
        size_t size = sizeof info;
        EXPECT_OV_OK(OVGetAllDeviceBaseInfo(&info, &size));
        return std::string(info.szUserID);
    };
    const auto set = [&](const std::string& text, size_t size) {
        return OvNodeSetRegister(Node("DeviceUserID"),
                                 reinterpret_cast<const uint8_t*>(text.c_str()), size);
    };
    EXPECT_OV_OK(set("Right", 6));
    EXPECT_EQ(listed(), "Right");
    EXPECT_OV_OK(set("N", 1));
    EXPECT_EQ(listed(), "Night");
    EXPECT_EQ(set(std::string(65, 'x'), 65), OV_STATUS_OUT_OF_RANGE);
    EXPECT_EQ(listed(), "Night");
}

TEST_F(NodeValues, ARegisterIsReadAndSetInPart) {
    const OV_NODE_HANDLE data = Node("UserData");
    const std::array<uint8_t, 3> bytes{1, 2, 3};
    EXPECT_OV_OK(OvNodeSetRegister(data, bytes.data(), bytes.size()));
    const auto content = ArrayFrom<uint8_t>(
        [&](uint8_t* memory, size_t* size) { return OvNodeGetRegister(data, memory, size); });
    ASSERT_EQ(content.size(), 64U);
    EXPECT_EQ(content[0], 1);
    EXPECT_EQ(content[2], 3);
    EXPECT_EQ(content[3], 0);
    EXPECT_EQ(OvNodeSetRegister(data, content.data(), 65), OV_STATUS_OUT_OF_RANGE);
    int64_t address = 0;
    int64_t length = 0;
    EXPECT_OV_OK(OvNodeGetRegisterPlace(data, &address, &length));
    EXPECT_EQ(address, 0x800);
    EXPECT_EQ(length, 64);
}

TEST_F(NodeValues, ANumberThatIsARegisterHasBytesAsWell) {
    EXPECT_EQ(ArrayFrom<uint8_t>([&](uint8_t* memory, size_t* size) {
                  return OvNodeGetRegister(Node("WidthReg"), memory, size);
              }),
              (std::vector<uint8_t>{64, 0, 0, 0}));
}

TEST_F(NodeValues, ACommandIsExecutedAndDone) {
    bool isDone = false;
    EXPECT_OV_OK(OvNodeExecute(Node("UserSetSave")));
    EXPECT_EQ(producer.CommandCount(0, 0, "UserSetSave"), 1);
    EXPECT_OV_OK(OvNodeIsDone(Node("UserSetSave"), &isDone));
    EXPECT_TRUE(isDone);
}

TEST_F(NodeValues, StartAndStopOfTheAcquisitionIncludeTheHost) {
    EXPECT_OV_OK(OvNodeExecute(Node("AcquisitionStart")));
    EXPECT_EQ(producer.OpenCount("Acquisition"), 1);
    EXPECT_EQ(ParamsLocked(), 1U);
    EXPECT_OV_OK(OvNodeExecute(Node("AcquisitionStop")));
    EXPECT_EQ(producer.OpenCount("Acquisition"), 0);
    EXPECT_OV_OK(OvNodeSetAsText(Node("AcquisitionStart"), "1"));
    EXPECT_EQ(producer.OpenCount("Acquisition"), 1);
    EXPECT_OV_OK(OvNodeSetAsText(Node("AcquisitionStop"), "true"));
    EXPECT_EQ(producer.OpenCount("Acquisition"), 0);
}

TEST_F(NodeValues, AnyValueIsATextBothWays) {
    const struct {
        const char* name;
        const char* text;
    } rows[] = {{"Width", "48"},          {"ExposureTime", "2000"},
                {"ReverseX", "true"},     {"PixelFormat", "Mono12"},
                {"DeviceUserID", "Mine"}, {"GevPersistentIPAddress", "192.168.0.7"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_OV_OK(OvNodeSetAsText(Node(row.name), row.text));
        EXPECT_OV_OK(OvNodeInvalidate(Node(row.name)));
        EXPECT_EQ(Value(Node(row.name)), row.text);
    }
    EXPECT_OV_OK(OvNodeSetAsText(Node("TriggerSoftware"), "1"));
    EXPECT_EQ(producer.CommandCount(0, 0, "TriggerSoftware"), 1);
}

TEST_F(NodeValues, ATextThatIsNoValueIsRefused) {
    ExpectFailure(OvNodeSetAsText(Node("Width"), "wide"), OV_STATUS_INVALID_PARAMETER,
                  "Node 'Width' : cannot convert string 'wide' to int.");
    ExpectFailure(OvNodeSetAsText(Node("TriggerSoftware"), "0"), OV_STATUS_INVALID_PARAMETER,
                  "A command is executed by \"1\" or \"true\", not by \"0\"");
    EXPECT_EQ(producer.CommandCount(0, 0, "TriggerSoftware"), 0);
}

TEST_F(NodeValues, ALockedFeatureCantBeSet) {
    EXPECT_OV_OK(OVStreamOn(camera));
    ExpectFailure(OvNodeSetInteger(Node("Width"), 32), OV_STATUS_INVALID_ACCESS,
                  "Node is not writable.");
    EXPECT_EQ(Info(Node("Width")).access, OV_NODE_ACCESS_READ_ONLY);
    EXPECT_OV_OK(OVStreamOff(camera));
    EXPECT_OV_OK(OvNodeSetInteger(Node("Width"), 32));
}

TEST_F(NodeValues, ACameraThatIsGoneIsOffline) {
    EXPECT_EQ(Integer("Width"), 64);
    const OV_NODE_HANDLE payload = Node("PayloadSize");
    producer.LoseDevice(0, 0);
    EXPECT_EQ(Integer("Width"), 64);
    int64_t value = 7;
    EXPECT_EQ(OvNodeGetInteger(payload, &value), OV_STATUS_OFFLINE);
    EXPECT_EQ(OvNodeSetInteger(Node("Width"), 32), OV_STATUS_OFFLINE);
    EXPECT_EQ(OvNodeSetAsText(Node("DeviceUserID"), "gone"), OV_STATUS_OFFLINE);
    EXPECT_EQ(OvNodeExecute(Node("UserSetSave")), OV_STATUS_OFFLINE);
    EXPECT_EQ(value, 7);
    producer.ReturnDevice(0, 0);
}

}  // namespace
