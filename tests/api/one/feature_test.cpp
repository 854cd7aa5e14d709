// Features by their identifiers: values, sizes, and the order of checks.

#include <algorithm>
#include <set>

#include "support/ApiTest.h"

namespace {

constexpr OV_FEATURE_ID Unknown(OV_FEATURE_ID known) {
    return known | 0xFFFFFF;
}

class FeatureTest : public OpenCameraTest {};

// Values.

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
    size = 311;
    ExpectFailure(OVGetEnumDescription(camera, OV_FEATURE_PixelFormat, entries, &size),
                  OV_STATUS_NEED_MORE_BUFFER, "Need more buffer to get enum description");
    EXPECT_EQ(size, 311U) << "a failure leaves the size";
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
    size = 4;
    ExpectFailure(OVGetString(camera, OV_FEATURE_DeviceUserID, text, &size),
                  OV_STATUS_NEED_MORE_BUFFER, "Need more buffer to get string");
    EXPECT_EQ(text[0], '#');
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
    size = length - 1;
    ExpectFailure(OVGetBuffer(camera, OV_FEATURE_LUTValueAll, content.data(), &size),
                  OV_STATUS_NEED_MORE_BUFFER, "Need more buffer to get buffer");
    ASSERT_OV_OK(OVGetBuffer(camera, OV_FEATURE_LUTValueAll, nullptr, &size));
    EXPECT_EQ(size, length);
}

TEST_F(FeatureTest, NamesComeWithTheirSize) {
    size_t size = 0;
    ASSERT_OV_OK(OVGetFeatureName(camera, OV_FEATURE_Width, nullptr, &size));
    EXPECT_EQ(size, 6U);
    char name[6] = {};
    size = 5;
    ExpectFailure(OVGetFeatureName(camera, OV_FEATURE_Width, name, &size),
                  OV_STATUS_NEED_MORE_BUFFER, "Need more buffer to get feature name");
    size = 6;
    ASSERT_OV_OK(OVGetFeatureName(camera, OV_FEATURE_Width, name, &size));
    EXPECT_STREQ(name, "Width");
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

// The table.

struct Row {
    const char* name;
    OV_FEATURE_ID id;
};

const Row kRows[] = {
#define OV_TEST_ROW(name, type, level, number) {#name, OV_FEATURE_##name},
    OV_FEATURE_TABLE(OV_TEST_ROW)
#undef OV_TEST_ROW
};

TEST_F(FeatureTest, EveryIdentifierHasItsOwnName) {
    EXPECT_EQ(std::size(kRows), 243U);
    std::set<OV_FEATURE_ID> ids;
    for (const Row& row : kRows) {
        EXPECT_TRUE(ids.insert(row.id).second) << row.name;
        char name[128] = {};
        size_t size = sizeof name;
        EXPECT_OV_OK(OVGetFeatureName(camera, row.id, name, &size));
        EXPECT_STREQ(name, row.name);
    }
}

TEST_F(FeatureTest, KnownIdentifiersKeepTheirNumbers) {
    EXPECT_EQ(OV_FEATURE_DeviceUserID, 0x50000007);
    EXPECT_EQ(OV_FEATURE_AcquisitionStart, 0x70000bb9);
    EXPECT_EQ(OV_FEATURE_AcquisitionStop, 0x70000bba);
}

// Checks. Each call gets its arguments from here, to be spoilt one by one.

struct Arguments {
    OV_DEV_HANDLE camera = nullptr;
    OV_FEATURE_ID feature = 0;
    bool hasPointer = true;

    template <class T>
    T* Pointer() const {
        static T value{};
        return hasPointer ? &value : nullptr;
    }
};

struct Call {
    const char* name;
    OV_FEATURE_ID feature;
    OV_STATUS (*run)(const Arguments& a);
    /// H handle, T type, N name, P pointer, in the order of the checks.
    const char* order;
};

const Call kCalls[] = {
    {"OVIsImplemented", OV_FEATURE_Width,
     [](const Arguments& a) { return OVIsImplemented(a.camera, a.feature, a.Pointer<bool>()); },
     "HPN"},
    {"OVIsReadable", OV_FEATURE_Width,
     [](const Arguments& a) { return OVIsReadable(a.camera, a.feature, a.Pointer<bool>()); },
     "HNP"},
    {"OVIsWritable", OV_FEATURE_Width,
     [](const Arguments& a) { return OVIsWritable(a.camera, a.feature, a.Pointer<bool>()); },
     "HNP"},
    {"OVGetFeatureName", OV_FEATURE_Width,
     [](const Arguments& a) {
         return OVGetFeatureName(a.camera, a.feature, nullptr, a.Pointer<size_t>());
     },
     "HPN"},
    {"OVGetIntRange", OV_FEATURE_Width,
     [](const Arguments& a) {
         return OVGetIntRange(a.camera, a.feature, a.Pointer<OV_INT_RANGE>());
     },
     "HTNP"},
    {"OVGetInt", OV_FEATURE_Width,
     [](const Arguments& a) { return OVGetInt(a.camera, a.feature, a.Pointer<int64_t>()); },
     "HTNP"},
    {"OVSetInt", OV_FEATURE_Width,
     [](const Arguments& a) { return OVSetInt(a.camera, a.feature, 16); }, "HTN"},
    {"OVGetFloatRange", OV_FEATURE_ExposureTime,
     [](const Arguments& a) {
         return OVGetFloatRange(a.camera, a.feature, a.Pointer<OV_FLOAT_RANGE>());
     },
     "HTNP"},
    {"OVGetFloat", OV_FEATURE_ExposureTime,
     [](const Arguments& a) { return OVGetFloat(a.camera, a.feature, a.Pointer<double>()); },
     "HTNP"},
    {"OVSetFloat", OV_FEATURE_ExposureTime,
     [](const Arguments& a) { return OVSetFloat(a.camera, a.feature, 1000); }, "HTN"},
    {"OVGetEnumEntryNums", OV_FEATURE_PixelFormat,
     [](const Arguments& a) {
         return OVGetEnumEntryNums(a.camera, a.feature, a.Pointer<uint32_t>());
     },
     "HTNP"},
    {"OVGetEnumDescription", OV_FEATURE_PixelFormat,
     [](const Arguments& a) {
         return OVGetEnumDescription(a.camera, a.feature, nullptr, a.Pointer<size_t>());
     },
     "HTNP"},
    {"OVGetEnum", OV_FEATURE_PixelFormat,
     [](const Arguments& a) { return OVGetEnum(a.camera, a.feature, a.Pointer<int64_t>()); },
     "HTNP"},
    {"OVSetEnum", OV_FEATURE_PixelFormat,
     [](const Arguments& a) { return OVSetEnum(a.camera, a.feature, 0x01080001); }, "HTN"},
    {"OVGetBool", OV_FEATURE_ReverseX,
     [](const Arguments& a) { return OVGetBool(a.camera, a.feature, a.Pointer<bool>()); }, "HTNP"},
    {"OVSetBool", OV_FEATURE_ReverseX,
     [](const Arguments& a) { return OVSetBool(a.camera, a.feature, false); }, "HTN"},
    {"OVGetStringLength", OV_FEATURE_DeviceUserID,
     [](const Arguments& a) { return OVGetStringLength(a.camera, a.feature, a.Pointer<size_t>()); },
     "HTNP"},
    {"OVGetStringMaxLength", OV_FEATURE_DeviceUserID,
     [](const Arguments& a) {
         return OVGetStringMaxLength(a.camera, a.feature, a.Pointer<size_t>());
     },
     "HTNP"},
    {"OVGetString", OV_FEATURE_DeviceUserID,
     [](const Arguments& a) {
         return OVGetString(a.camera, a.feature, nullptr, a.Pointer<size_t>());
     },
     "HTNP"},
    {"OVSetString", OV_FEATURE_DeviceUserID,
     [](const Arguments& a) {
         return OVSetString(a.camera, a.feature, a.hasPointer ? "id" : nullptr);
     },
     "HTNP"},
    {"OVGetBufferLength", OV_FEATURE_LUTValueAll,
     [](const Arguments& a) { return OVGetBufferLength(a.camera, a.feature, a.Pointer<size_t>()); },
     "HTNP"},
    {"OVGetBuffer", OV_FEATURE_LUTValueAll,
     [](const Arguments& a) {
         return OVGetBuffer(a.camera, a.feature, nullptr, a.Pointer<size_t>());
     },
     "HTNP"},
    {"OVSendCommand", OV_FEATURE_TriggerSoftware,
     [](const Arguments& a) { return OVSendCommand(a.camera, a.feature); }, "HTN"},
};

class FeatureChecks : public FeatureTest, public testing::WithParamInterface<Call> {
protected:
    void Spoil(Arguments& arguments, char check) const {
        const OV_FEATURE_ID known = GetParam().feature;
        switch (check) {
            case 'H':
                arguments.camera = nullptr;
                break;
            case 'T':
                arguments.feature =
                    known == OV_FEATURE_Width ? OV_FEATURE_DeviceUserID : OV_FEATURE_Width;
                break;
            case 'N':
                arguments.feature = Unknown(known);
                break;
            default:
                arguments.hasPointer = false;
        }
    }
    void ExpectRefused(const Arguments& arguments, char check) {
        const OV_STATUS status = GetParam().run(arguments);
        switch (check) {
            case 'H':
                ExpectFailure(status, OV_STATUS_INVALID_HANDLE, "Invalid device handle");
                break;
            case 'T':
                ExpectFailure(status, OV_STATUS_ERROR_TYPE, "FeatureID type error");
                break;
            case 'N':
                ExpectFailure(status, OV_STATUS_INVALID_PARAMETER, "Invalid feature ID");
                break;
            default:
                ExpectFailure(status, OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
        }
    }
};

TEST_P(FeatureChecks, PassWhenAllIsRight) {
    EXPECT_OV_OK(GetParam().run({camera, GetParam().feature, true}));
}

TEST_P(FeatureChecks, TheFirstOfTwoBadArgumentsDecides) {
    const std::string order = GetParam().order;
    for (size_t first = 0; first < order.size(); ++first) {
        for (size_t second = first; second < order.size(); ++second) {
            SCOPED_TRACE(order.substr(first, 1) + order[second]);
            Arguments arguments{camera, GetParam().feature, true};
            Spoil(arguments, order[second]);
            Spoil(arguments, order[first]);
            ExpectRefused(arguments, order[first]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, FeatureChecks, testing::ValuesIn(kCalls),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
