// Features by their identifiers: values and sizes.

#include <algorithm>
#include <cstring>
#include <set>

#include "support/ApiTest.h"
#include "support/CommaLocale.h"
#include "support/FeatureCalls.h"
#include "support/FeatureRows.h"

namespace {

class FeatureTest : public OpenCameraTest {};

TEST_F(FeatureTest, IntegersRoundTripWithinTheirLimits) {
    OV_INT_RANGE range{};
    ASSERT_OV_OK(OVGetIntRange(camera, OV_FEATURE_Width, &range));
    EXPECT_EQ(range.nMin, 8);
    EXPECT_EQ(range.nInc, 8);
    ASSERT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 32));
    int64_t value = 0;
    ASSERT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &value));
    EXPECT_EQ(value, 32);
    EXPECT_EQ(OVSetInt(camera, OV_FEATURE_Width, range.nMax + 8), OV_STATUS_OUT_OF_RANGE);
    EXPECT_EQ(OVSetInt(camera, OV_FEATURE_Width, 9), OV_STATUS_OUT_OF_RANGE);
    ASSERT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &value));
    EXPECT_EQ(value, 32);
}

TEST_F(FeatureTest, AreThoseOfTheDescriptionThatTheCameraHasNow) {
    int64_t value = 0;
    ASSERT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &value));
    ASSERT_EQ(value, 64);
    ASSERT_OV_OK(OVCloseDevice(camera));
    const std::string text = DescribeCamera(
        "<Integer Name=\"Width\"><Value>4711</Value></Integer>"
        "<Float Name=\"Height\"><Value>0.5</Value></Float>");
    producer.SetDescription("Remote", "Other.xml", text.data(), text.size());
    camera = Open();
    ASSERT_NE(camera, nullptr);
    ASSERT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &value));
    EXPECT_EQ(value, 4711);
    ASSERT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &value)) << "a second time";
    EXPECT_EQ(value, 4711);
    for (int time = 0; time < 2; ++time) {
        ExpectFailure(OVGetInt(camera, OV_FEATURE_Height, &value), OV_STATUS_ERROR,
                      "Dynamic_cast failed");
        ExpectFailure(OVGetInt(camera, OV_FEATURE_OffsetX, &value), OV_STATUS_NOT_IMPLEMENTED,
                      "The feature \"OffsetX\" is not implemented");
    }
}

TEST_F(FeatureTest, FloatsRoundTripWithinTheirLimits) {
    OV_FLOAT_RANGE range{};
    ASSERT_OV_OK(OVGetFloatRange(camera, OV_FEATURE_ExposureTime, &range));
    EXPECT_LT(range.dMin, range.dMax);
    ASSERT_OV_OK(OVSetFloat(camera, OV_FEATURE_ExposureTime, range.dMin));
    double value = 0;
    ASSERT_OV_OK(OVGetFloat(camera, OV_FEATURE_ExposureTime, &value));
    EXPECT_DOUBLE_EQ(value, range.dMin);
    EXPECT_EQ(OVSetFloat(camera, OV_FEATURE_ExposureTime, range.dMax * 2), OV_STATUS_OUT_OF_RANGE);
}

TEST_F(FeatureTest, TextsOfRangesHaveADecimalPointInEveryLocale) {
    const auto refused = [this] {
        EXPECT_EQ(OVSetFloat(camera, OV_FEATURE_ExposureTime, 1e30), OV_STATUS_OUT_OF_RANGE);
        return LastError::Get().text;
    };
    const std::string text = refused();
    ASSERT_NE(text.find(".000000 must be smaller than or equal "), std::string::npos) << text;
    const CommaLocale locale;
    EXPECT_EQ(refused(), text);
}

TEST_F(FeatureTest, BooleansAndEnumerationsRoundTrip) {
    ASSERT_OV_OK(OVSetBool(camera, OV_FEATURE_ReverseX, true));
    bool isReversed = false;
    ASSERT_OV_OK(OVGetBool(camera, OV_FEATURE_ReverseX, &isReversed));
    EXPECT_TRUE(isReversed);
    ASSERT_OV_OK(OVSetEnum(camera, OV_FEATURE_TriggerMode, 1));
    int64_t mode = 0;
    ASSERT_OV_OK(OVGetEnum(camera, OV_FEATURE_TriggerMode, &mode));
    EXPECT_EQ(mode, 1);
}

TEST_F(FeatureTest, AnEnumerationOfThreeEntriesTakes312Bytes) {
    uint32_t count = 0;
    ASSERT_OV_OK(OVGetEnumEntryNums(camera, OV_FEATURE_PixelFormat, &count));
    EXPECT_EQ(count, 3U);
    size_t size = 0;
    ASSERT_OV_OK(OVGetEnumDescription(camera, OV_FEATURE_PixelFormat, nullptr, &size));
    EXPECT_EQ(size, 312U);
    OV_ENUM_DESCRIPTION entries[3] = {};
    size = 400;
    ASSERT_OV_OK(OVGetEnumDescription(camera, OV_FEATURE_PixelFormat, entries, &size));
    EXPECT_EQ(size, 312U);
    EXPECT_STREQ(entries[0].szSymbolic, "Mono8");
    EXPECT_EQ(entries[0].nValue, 0x01080001);
}

TEST_F(FeatureTest, ATextsSizeCountsTheTerminator) {
    ASSERT_OV_OK(OVSetString(camera, OV_FEATURE_DeviceUserID, "left"));
    size_t size = 0;
    producer.ClearLog();
    ASSERT_OV_OK(OVGetString(camera, OV_FEATURE_DeviceUserID, nullptr, &size));
    EXPECT_EQ(size, 5U);
    ASSERT_OV_OK(OVGetStringLength(camera, OV_FEATURE_DeviceUserID, &size));
    EXPECT_EQ(size, 5U);
    size_t longest = 0;
    ASSERT_OV_OK(OVGetStringMaxLength(camera, OV_FEATURE_DeviceUserID, &longest));
    EXPECT_GT(longest, 5U);
    char text[8] = "#######";
    size = sizeof text;
    ASSERT_OV_OK(OVGetString(camera, OV_FEATURE_DeviceUserID, text, &size));
    EXPECT_STREQ(text, "left");
    EXPECT_EQ(size, 5U);
    EXPECT_EQ(text[5], '#') << "beyond the size";
}

TEST_F(FeatureTest, ANewUserIdShowsInTheListWithoutASearch) {
    ASSERT_OV_OK(OVSetString(camera, OV_FEATURE_DeviceUserID, "new"));
    const uint64_t searches = producer.CallCount("IFUpdateDeviceList");
    OV_DEVICE_BASE_INFO info{};
    size_t size = sizeof info;
    ASSERT_OV_OK(OVGetAllDeviceBaseInfo(&info, &size));
    EXPECT_STREQ(info.szUserID, "new");
    EXPECT_EQ(producer.CallCount("IFUpdateDeviceList"), searches);
}

TEST_F(FeatureTest, ABufferLargerThanTheFeatureStoresTheFeaturesSize) {
    size_t length = 0;
    ASSERT_OV_OK(OVGetBufferLength(camera, OV_FEATURE_LUTValueAll, &length));
    ASSERT_GT(length, 0U);
    std::vector<uint8_t> table(length);
    for (size_t i = 0; i < length; ++i) {
        table[i] = static_cast<uint8_t>(i * 3);
    }
    ASSERT_OV_OK(OVSetBuffer(camera, OV_FEATURE_LUTValueAll, table.data(), length));
    std::vector<uint8_t> content(length + 10, 0xEE);
    size_t size = content.size();
    ASSERT_OV_OK(OVGetBuffer(camera, OV_FEATURE_LUTValueAll, content.data(), &size));
    EXPECT_EQ(size, length);
    EXPECT_TRUE(std::equal(table.begin(), table.end(), content.begin()));
    EXPECT_EQ(content[length], 0xEE);
}

TEST_F(FeatureTest, WhatTheCameraLacksIsToldAsSuch) {
    bool answer = true;
    EXPECT_OV_OK(OVIsImplemented(camera, OV_FEATURE_DevicePHYVersion, &answer));
    EXPECT_FALSE(answer);
    EXPECT_OV_OK(OVIsReadable(camera, OV_FEATURE_Width, &answer));
    EXPECT_TRUE(answer);
    EXPECT_OV_OK(OVIsWritable(camera, OV_FEATURE_DeviceModelName, &answer));
    EXPECT_FALSE(answer);
    size_t size = 0;
    EXPECT_EQ(OVGetString(camera, OV_FEATURE_DevicePHYVersion, nullptr, &size),
              OV_STATUS_NOT_IMPLEMENTED);
}

TEST_F(FeatureTest, CommandsReachTheCamera) {
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_TriggerSoftware));
    EXPECT_EQ(producer.CommandCount(0, 0, "TriggerSoftware"), 1);
}

TEST_F(FeatureTest, EveryIdentifierHasItsOwnName) {
    EXPECT_EQ(std::size(kFeatureRows), 243U);
    std::set<OV_FEATURE_ID> ids;
    for (const FeatureRow& row : kFeatureRows) {
        EXPECT_TRUE(ids.insert(row.id).second) << row.name;
        char name[128] = {};
        size_t size = sizeof name;
        EXPECT_OV_OK(OVGetFeatureName(camera, row.id, name, &size));
        EXPECT_STREQ(name, row.name);
        EXPECT_EQ(size, std::strlen(row.name) + 1);
    }
}

}  // namespace
