// What the feature calls write: records, sizes, and nothing beyond.

#include <algorithm>
#include <cstring>
#include <functional>

#include "support/ApiTest.h"
#include "support/FeatureCalls.h"

namespace {

constexpr uint8_t kFilled = 0xA5;

template <class Record>
Record Filled() {
    Record record;
    std::memset(&record, kFilled, sizeof record);
    return record;
}

bool IsFilled(const void* bytes, size_t size) {
    const auto* const first = static_cast<const uint8_t*>(bytes);
    return std::all_of(first, first + size, [](uint8_t byte) { return byte == kFilled; });
}

const std::string kLongName(70, 'N');

std::string FloatWithUnit(const std::string& name, const std::string& rest) {
    return "<Float Name=\"" + name + "\"><Value>1</Value>" + rest + "</Float>";
}

const std::string kRecordNodes =
    FloatWithUnit("ExposureTime", "<Min>0.5</Min><Max>10</Max><Unit>us</Unit>") +
    FloatWithUnit("Gain", "<Min>0</Min><Max>10</Max><Unit>12345678</Unit>") +
    FloatWithUnit("Gamma", "<Min>0</Min><Max>10</Max><Inc>0.25</Inc><Unit>123456789</Unit>") +
    FloatWithUnit("BlackLevel", "<Min>0</Min><Max>10</Max>") +
    R"(<Integer Name="Width"><Value>16</Value><Min>-8</Min><Max>64</Max><Inc>4</Inc></Integer>
       <Integer Name="Hidden"><Value>0</Value></Integer>
       <Enumeration Name="PixelFormat">
         <EnumEntry Name="Mono8"><Value>1</Value></EnumEntry>
         <EnumEntry Name="Locked"><pIsAvailable>Hidden</pIsAvailable><Value>2</Value></EnumEntry>
         <EnumEntry Name="Missing"><pIsImplemented>Hidden</pIsImplemented><Value>3</Value></EnumEntry>
         <EnumEntry Name=")" +
    kLongName + R"("><Value>-4</Value></EnumEntry><Value>1</Value></Enumeration>
       <String Name="DeviceModelName"><Value></Value></String>)";

class FeatureRecords : public ApiTest {
protected:
    void SetUp() override {
        const std::string description = DescribeCamera(kRecordNodes);
        producer.SetDescription("Remote", "Records.xml", description.data(), description.size());
        Init();
        ASSERT_EQ(Update(), 1U);
        camera = Open();
        ASSERT_NE(camera, nullptr);
    }
    OV_FLOAT_RANGE FloatRange(OV_FEATURE_ID feature) {
        auto range = Filled<OV_FLOAT_RANGE>();
        EXPECT_OV_OK(OVGetFloatRange(camera, feature, &range));
        EXPECT_TRUE(IsFilled(range.reserved, sizeof range.reserved));
        return range;
    }

    OV_DEV_HANDLE camera = nullptr;
};

TEST_F(FeatureRecords, AnIntegersLimitsLeaveTheReservedBytes) {
    auto range = Filled<OV_INT_RANGE>();
    ASSERT_OV_OK(OVGetIntRange(camera, OV_FEATURE_Width, &range));
    EXPECT_EQ(range.nMin, -8);
    EXPECT_EQ(range.nMax, 64);
    EXPECT_EQ(range.nInc, 4);
    EXPECT_TRUE(IsFilled(range.reserved, sizeof range.reserved));
}

TEST_F(FeatureRecords, AFloatWithoutAnIncrementTellsSo) {
    const OV_FLOAT_RANGE range = FloatRange(OV_FEATURE_ExposureTime);
    EXPECT_DOUBLE_EQ(range.dMin, 0.5);
    EXPECT_DOUBLE_EQ(range.dMax, 10);
    EXPECT_DOUBLE_EQ(range.dInc, 0);
    EXPECT_FALSE(range.bIncIsValid);
}

TEST_F(FeatureRecords, AFloatWithAnIncrementGivesIt) {
    const OV_FLOAT_RANGE range = FloatRange(OV_FEATURE_Gamma);
    EXPECT_DOUBLE_EQ(range.dInc, 0.25);
    EXPECT_TRUE(range.bIncIsValid);
}

TEST_F(FeatureRecords, AUnitFillsItsFieldAndIsCutThere) {
    const auto unit = [this](OV_FEATURE_ID feature) {
        const OV_FLOAT_RANGE range = FloatRange(feature);
        return std::string(range.szUnit, sizeof range.szUnit);
    };
    EXPECT_EQ(unit(OV_FEATURE_BlackLevel), std::string(8, '\0'));
    EXPECT_EQ(unit(OV_FEATURE_ExposureTime), std::string("us\0\0\0\0\0\0", 8));
    EXPECT_EQ(unit(OV_FEATURE_Gain), "12345678");
    EXPECT_EQ(unit(OV_FEATURE_Gamma), "12345678");
}

TEST_F(FeatureRecords, EntriesLeaveTheReservedBytesAndTheNextRecord) {
    OV_ENUM_DESCRIPTION entries[3];
    std::fill(std::begin(entries), std::end(entries), Filled<OV_ENUM_DESCRIPTION>());
    size_t size = sizeof entries;
    ASSERT_OV_OK(OVGetEnumDescription(camera, OV_FEATURE_PixelFormat, entries, &size));
    EXPECT_EQ(size, 208U);
    for (const OV_ENUM_DESCRIPTION& entry : entries) {
        EXPECT_TRUE(IsFilled(entry.reserved, sizeof entry.reserved));
    }
    EXPECT_TRUE(IsFilled(&entries[2], sizeof entries[2]));
}

TEST_F(FeatureRecords, AnEntrysNameFillsItsFieldAndIsCutThere) {
    OV_ENUM_DESCRIPTION entries[2];
    std::fill(std::begin(entries), std::end(entries), Filled<OV_ENUM_DESCRIPTION>());
    size_t size = sizeof entries;
    ASSERT_OV_OK(OVGetEnumDescription(camera, OV_FEATURE_PixelFormat, entries, &size));
    EXPECT_EQ(std::string(entries[0].szSymbolic, 64), "Mono8" + std::string(59, '\0'));
    EXPECT_EQ(entries[0].nValue, 1);
    EXPECT_EQ(std::string(entries[1].szSymbolic, 64), kLongName.substr(0, 64));
    EXPECT_EQ(entries[1].nValue, -4);
}

TEST_F(FeatureRecords, EntriesThatCannotBeChosenAreHidden) {
    uint32_t count = 0;
    ASSERT_OV_OK(OVGetEnumEntryNums(camera, OV_FEATURE_PixelFormat, &count));
    EXPECT_EQ(count, 2U);
    size_t size = 0;
    ASSERT_OV_OK(OVGetEnumDescription(camera, OV_FEATURE_PixelFormat, nullptr, &size));
    EXPECT_EQ(size, 208U);
}

TEST_F(FeatureRecords, AnEmptyTextTakesOneByte) {
    size_t size = 0;
    ASSERT_OV_OK(OVGetStringLength(camera, OV_FEATURE_DeviceModelName, &size));
    EXPECT_EQ(size, 1U);
    char text[2] = {'#', '#'};
    ASSERT_OV_OK(OVGetString(camera, OV_FEATURE_DeviceModelName, text, &size));
    EXPECT_EQ(text[0], '\0');
    EXPECT_EQ(text[1], '#');
}

// Two calls: the size, then the content.

class FeatureSizes : public OpenCameraTest {
protected:
    uint64_t ReadsOf(const std::function<OV_STATUS()>& call) {
        const uint64_t before = producer.CallCount("GCReadPort");
        EXPECT_OV_OK(call());
        return producer.CallCount("GCReadPort") - before;
    }
};

TEST_F(FeatureSizes, ATextIsReadOnceForItsSizeAndTwiceForItsContent) {
    ASSERT_OV_OK(OVSetString(camera, OV_FEATURE_DeviceUserID, "left"));
    size_t size = 0;
    EXPECT_EQ(ReadsOf([&] { return OVGetString(camera, OV_FEATURE_DeviceUserID, nullptr, &size); }),
              1U);
    EXPECT_EQ(size, 5U);
    char text[5];
    EXPECT_EQ(ReadsOf([&] { return OVGetString(camera, OV_FEATURE_DeviceUserID, text, &size); }),
              2U);
}

TEST_F(FeatureSizes, ABuffersSizeNeedsNoReading) {
    size_t size = 0;
    const auto length = [&] { return OVGetBufferLength(camera, OV_FEATURE_LUTValueAll, &size); };
    EXPECT_EQ(ReadsOf(length), 0U);
    EXPECT_EQ(size, 256U);
    size = 0;
    const auto query = [&] { return OVGetBuffer(camera, OV_FEATURE_LUTValueAll, nullptr, &size); };
    EXPECT_EQ(ReadsOf(query), 0U);
    EXPECT_EQ(size, 256U);
}

struct SizedCall {
    const char* name;
    OV_STATUS (*run)(OV_DEV_HANDLE camera, void* content, size_t* size);
    size_t size;
    const char* failure;
};

const SizedCall kSizedCalls[] = {
    {"OVGetFeatureName",
     [](OV_DEV_HANDLE camera, void* content, size_t* size) {
         return OVGetFeatureName(camera, OV_FEATURE_Width, static_cast<char*>(content), size);
     },
     6, "Need more buffer to get feature name"},
    {"OVGetEnumDescription",
     [](OV_DEV_HANDLE camera, void* content, size_t* size) {
         return OVGetEnumDescription(camera, OV_FEATURE_PixelFormat,
                                     static_cast<OV_ENUM_DESCRIPTION*>(content), size);
     },
     312, "Need more buffer to get enum description"},
    {"OVGetString",
     [](OV_DEV_HANDLE camera, void* content, size_t* size) {
         return OVGetString(camera, OV_FEATURE_DeviceUserID, static_cast<char*>(content), size);
     },
     5, "Need more buffer to get string"},
    {"OVGetBuffer",
     [](OV_DEV_HANDLE camera, void* content, size_t* size) {
         return OVGetBuffer(camera, OV_FEATURE_LUTValueAll, static_cast<uint8_t*>(content), size);
     },
     256, "Need more buffer to get buffer"},
};

class FeatureSizeRule : public FeatureSizes, public testing::WithParamInterface<SizedCall> {
protected:
    void SetUp() override {
        FeatureSizes::SetUp();
        ASSERT_OV_OK(OVSetString(camera, OV_FEATURE_DeviceUserID, "left"));
        content.assign(1024, kFilled);
    }
    OV_STATUS Run(void* memory, size_t* size) { return GetParam().run(camera, memory, size); }

    std::vector<uint8_t> content;
};

TEST_P(FeatureSizeRule, NullMemoryAsksForTheSizeWhateverSizeIsGiven) {
    for (size_t size : {size_t{0}, size_t{1}, size_t{5000}}) {
        ASSERT_OV_OK(Run(nullptr, &size));
        EXPECT_EQ(size, GetParam().size);
    }
}

TEST_P(FeatureSizeRule, ASmallerSizeIsRefusedAndStays) {
    for (const size_t given : {size_t{0}, size_t{1}, GetParam().size - 1}) {
        size_t size = given;
        ExpectFailure(Run(content.data(), &size), OV_STATUS_NEED_MORE_BUFFER, GetParam().failure);
        EXPECT_EQ(size, given);
        EXPECT_TRUE(IsFilled(content.data(), content.size()));
    }
}

TEST_P(FeatureSizeRule, TheSizeItselfAndMoreSucceedAndGiveTheSize) {
    for (const size_t given : {GetParam().size, GetParam().size + 1, size_t{1024}}) {
        content.assign(1024, kFilled);
        size_t size = given;
        ASSERT_OV_OK(Run(content.data(), &size));
        EXPECT_EQ(size, GetParam().size);
        EXPECT_TRUE(IsFilled(content.data() + size, content.size() - size)) << "beyond the size";
    }
}

INSTANTIATE_TEST_SUITE_P(All, FeatureSizeRule, testing::ValuesIn(kSizedCalls),
                         [](const auto& test) { return std::string(test.param.name); });

// Values that the engine refuses.

TEST_F(FeatureSizes, AMissingEntryIsAnInvalidParameter) {
    EXPECT_EQ(OVSetEnum(camera, OV_FEATURE_PixelFormat, 99), OV_STATUS_INVALID_PARAMETER);
}

TEST_F(FeatureSizes, AReadOnlyTextIsADeniedAccess) {
    EXPECT_EQ(OVSetString(camera, OV_FEATURE_DeviceModelName, "mine"), OV_STATUS_INVALID_ACCESS);
}

TEST_F(FeatureSizes, AFeatureOfAnotherTypeInTheCameraIsAnError) {
    // The camera has the float as an integer.
    const std::string nodes = "<Integer Name=\"ExposureTime\"><Value>1</Value></Integer>";
    const std::string description = DescribeCamera(nodes);
    ASSERT_OV_OK(OVCloseDevice(camera));
    producer.SetDescription("Remote", "Other.xml", description.data(), description.size());
    camera = Open();
    double value = 0;
    ExpectFailure(OVGetFloat(camera, OV_FEATURE_ExposureTime, &value), OV_STATUS_ERROR,
                  "Dynamic_cast failed");
}

TEST_F(FeatureSizes, AShorterBufferChangesTheFirstBytes) {
    std::vector<uint8_t> table(256, 1);
    ASSERT_OV_OK(OVSetBuffer(camera, OV_FEATURE_LUTValueAll, table.data(), table.size()));
    const uint8_t start[3] = {7, 8, 9};
    ASSERT_OV_OK(OVSetBuffer(camera, OV_FEATURE_LUTValueAll, start, sizeof start));
    std::copy(std::begin(start), std::end(start), table.begin());
    std::vector<uint8_t> content(256);
    size_t size = content.size();
    ASSERT_OV_OK(OVGetBuffer(camera, OV_FEATURE_LUTValueAll, content.data(), &size));
    EXPECT_EQ(content, table);
}

TEST_F(FeatureSizes, ALongerBufferIsOutOfRange) {
    const std::vector<uint8_t> bytes(300);
    for (const size_t size : {size_t{257}, size_t{300}, SIZE_MAX, SIZE_MAX / 2 + 1}) {
        EXPECT_EQ(OVSetBuffer(camera, OV_FEATURE_LUTValueAll, bytes.data(), size),
                  OV_STATUS_OUT_OF_RANGE)
            << size << LastError::Get().text;
    }
}

}  // namespace
