// Features of every type, by their identifiers.

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <functional>
#include <future>
#include <map>

#include "CameraTest.h"
#include "OvINodes.h"
#include "support/FeatureRows.h"

namespace {

using Feature = OV_FEATURE_ID;

class CameraFeatures : public CameraTest {
protected:
    bool Is(OV_STATUS (*ask)(OV_DEV_HANDLE, Feature, bool*), Feature feature) const {
        bool answer = false;
        EXPECT_OV_OK(ask(camera, feature, &answer));
        return answer;
    }
    /// Asks for the size, and then for the content.
    template <class Element>
    OV_STATUS ReadTwice(OV_STATUS (*read)(OV_DEV_HANDLE, Feature, Element*, size_t*),
                        Feature feature) const {
        size_t size = 0;
        const OV_STATUS status = read(camera, feature, nullptr, &size);
        std::vector<Element> content(size);
        return status == OV_STATUS_SUCCESS ? read(camera, feature, content.data(), &size) : status;
    }
    OV_STATUS ReadEntries(Feature feature) const {
        uint32_t count = 0;
        const OV_STATUS status = OVGetEnumEntryNums(camera, feature, &count);
        std::vector<OV_ENUM_DESCRIPTION> entries(count);
        size_t size = count * sizeof(OV_ENUM_DESCRIPTION);
        return status == OV_STATUS_SUCCESS
                   ? OVGetEnumDescription(camera, feature, entries.data(), &size)
                   : status;
    }
    /// Reads value and limits by the calls of the feature's type.
    OV_STATUS Read(Feature feature) const {
        int64_t number = 0;
        double real = 0;
        bool flag = false;
        OV_INT_RANGE range{};
        OV_FLOAT_RANGE realRange{};
        const auto both = [](OV_STATUS first, OV_STATUS second) {
            return first == OV_STATUS_SUCCESS ? second : first;
        };
        switch (feature & OV_FEATURE_TYPE_MASK) {
            case OV_FEATURE_TYPE_INT:
                return both(OVGetInt(camera, feature, &number),
                            OVGetIntRange(camera, feature, &range));
            case OV_FEATURE_TYPE_FLOAT:
                return both(OVGetFloat(camera, feature, &real),
                            OVGetFloatRange(camera, feature, &realRange));
            case OV_FEATURE_TYPE_ENUM:
                return both(OVGetEnum(camera, feature, &number), ReadEntries(feature));
            case OV_FEATURE_TYPE_BOOL:
                return OVGetBool(camera, feature, &flag);
            case OV_FEATURE_TYPE_STRING:
                return ReadTwice(OVGetString, feature);
            case OV_FEATURE_TYPE_BUFFER:
                return ReadTwice(OVGetBuffer, feature);
            default:
                return OV_STATUS_ERROR_TYPE;
        }
    }
};

TEST_F(CameraFeatures, AreReadByTheCallsOfTheirTypeWhereTheyCanBe) {
    std::map<OV_FEATURE_TYPE, unsigned> read;
    for (const FeatureRow& row : kFeatureRows) {
        const bool isCommand = (row.id & OV_FEATURE_TYPE_MASK) == OV_FEATURE_TYPE_COMMAND;
        if (!isCommand && Is(&OVIsImplemented, row.id) && Is(&OVIsReadable, row.id)) {
            EXPECT_OV_OK(Read(row.id)) << row.name;
            ++read[row.id & OV_FEATURE_TYPE_MASK];
        }
    }
    for (const OV_FEATURE_TYPE type :
         {OV_FEATURE_TYPE_INT, OV_FEATURE_TYPE_FLOAT, OV_FEATURE_TYPE_ENUM, OV_FEATURE_TYPE_BOOL,
          OV_FEATURE_TYPE_STRING, OV_FEATURE_TYPE_BUFFER}) {
        EXPECT_GE(read[type], 1U) << std::hex << type;
    }
    EXPECT_GE(read[OV_FEATURE_TYPE_INT], 10U);
}

TEST_F(CameraFeatures, OfIntegersStayWithinTheirLimits) {
    OV_INT_RANGE range{};
    ASSERT_OV_OK(OVGetIntRange(camera, OV_FEATURE_Width, &range));
    EXPECT_GT(range.nInc, 1);
    for (const int64_t value : {range.nMin, range.nMin + range.nInc, range.nMax}) {
        ASSERT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, value));
        EXPECT_EQ(GetInt(camera, OV_FEATURE_Width), value);
    }
    for (const int64_t value : {range.nMin - range.nInc, range.nMin + 1, range.nMax + range.nInc}) {
        EXPECT_EQ(OVSetInt(camera, OV_FEATURE_Width, value), OV_STATUS_OUT_OF_RANGE);
        EXPECT_EQ(GetInt(camera, OV_FEATURE_Width), range.nMax);
    }
}

TEST_F(CameraFeatures, OfIntegersHaveLimitsThatFollowOthers) {
    OV_INT_RANGE before{};
    ASSERT_OV_OK(OVGetIntRange(camera, OV_FEATURE_OffsetX, &before));
    ASSERT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 2 * kWidth));
    OV_INT_RANGE after{};
    ASSERT_OV_OK(OVGetIntRange(camera, OV_FEATURE_OffsetX, &after));
    EXPECT_EQ(after.nMax, before.nMax - kWidth);
}

TEST_F(CameraFeatures, OfFloatsStayWithinTheirLimits) {
    OV_FLOAT_RANGE range{};
    ASSERT_OV_OK(OVGetFloatRange(camera, OV_FEATURE_ExposureTime, &range));
    EXPECT_EQ(std::string(range.szUnit), "us");
    for (const double value : {range.dMin, range.dMax, 1234.0}) {
        ASSERT_OV_OK(OVSetFloat(camera, OV_FEATURE_ExposureTime, value));
        double read = 0;
        ASSERT_OV_OK(OVGetFloat(camera, OV_FEATURE_ExposureTime, &read));
        EXPECT_DOUBLE_EQ(read, value);
    }
    EXPECT_EQ(OVSetFloat(camera, OV_FEATURE_ExposureTime, range.dMax * 2), OV_STATUS_OUT_OF_RANGE);
    EXPECT_EQ(OVSetFloat(camera, OV_FEATURE_ExposureTime, std::nan("")), OV_STATUS_OUT_OF_RANGE);
}

TEST_F(CameraFeatures, OfEnumerationsHaveEachOfTheirEntries) {
    uint32_t count = 0;
    ASSERT_OV_OK(OVGetEnumEntryNums(camera, OV_FEATURE_PixelFormat, &count));
    EXPECT_GE(count, 2U);
    std::vector<OV_ENUM_DESCRIPTION> entries(count);
    size_t size = count * sizeof(OV_ENUM_DESCRIPTION);
    ASSERT_OV_OK(OVGetEnumDescription(camera, OV_FEATURE_PixelFormat, entries.data(), &size));
    for (const OV_ENUM_DESCRIPTION& entry : entries) {
        ASSERT_OV_OK(OVSetEnum(camera, OV_FEATURE_PixelFormat, entry.nValue)) << entry.szSymbolic;
        int64_t value = 0;
        ASSERT_OV_OK(OVGetEnum(camera, OV_FEATURE_PixelFormat, &value));
        EXPECT_EQ(value, entry.nValue);
    }
    EXPECT_EQ(OVSetEnum(camera, OV_FEATURE_PixelFormat, 99), OV_STATUS_INVALID_PARAMETER);
}

TEST_F(CameraFeatures, OfBooleansAreSetAndRead) {
    for (const bool wanted : {true, false}) {
        ASSERT_OV_OK(OVSetBool(camera, OV_FEATURE_ReverseX, wanted));
        bool value = !wanted;
        ASSERT_OV_OK(OVGetBool(camera, OV_FEATURE_ReverseX, &value));
        EXPECT_EQ(value, wanted);
    }
}

TEST_F(CameraFeatures, OfTextsAreSetAndRead) {
    size_t longest = 0;
    ASSERT_OV_OK(OVGetStringMaxLength(camera, OV_FEATURE_DeviceUserID, &longest));
    for (const char* const wanted : {"left", "", "fourteen bytes"}) {
        ASSERT_OV_OK(OVSetString(camera, OV_FEATURE_DeviceUserID, wanted));
        std::vector<char> text(longest, '#');
        size_t size = longest;
        ASSERT_OV_OK(OVGetString(camera, OV_FEATURE_DeviceUserID, text.data(), &size));
        EXPECT_STREQ(text.data(), wanted);
        EXPECT_EQ(size, std::strlen(wanted) + 1);
    }
    EXPECT_EQ(OVSetString(camera, OV_FEATURE_DeviceUserID, std::string(longest, 'x').c_str()),
              OV_STATUS_OUT_OF_RANGE);
    EXPECT_OV_OK(OVSetString(camera, OV_FEATURE_DeviceUserID, ""));
    EXPECT_EQ(OVSetString(camera, OV_FEATURE_DeviceModelName, "mine"), OV_STATUS_INVALID_ACCESS);
}

TEST_F(CameraFeatures, OfBytesAreSetFromTheirBegin) {
    size_t length = 0;
    ASSERT_OV_OK(OVGetBufferLength(camera, OV_FEATURE_LUTValueAll, &length));
    std::vector<uint8_t> table(length, 1);
    ASSERT_OV_OK(OVSetBuffer(camera, OV_FEATURE_LUTValueAll, table.data(), length));
    const uint8_t start[3] = {7, 8, 9};
    ASSERT_OV_OK(OVSetBuffer(camera, OV_FEATURE_LUTValueAll, start, sizeof start));
    std::copy(std::begin(start), std::end(start), table.begin());
    std::vector<uint8_t> content(length + 10, 0xEE);
    size_t size = content.size();
    ASSERT_OV_OK(OVGetBuffer(camera, OV_FEATURE_LUTValueAll, content.data(), &size));
    EXPECT_EQ(size, length);
    EXPECT_TRUE(std::equal(table.begin(), table.end(), content.begin()));
    EXPECT_EQ(content[length], 0xEE);
    EXPECT_EQ(OVSetBuffer(camera, OV_FEATURE_LUTValueAll, content.data(), length + 1),
              OV_STATUS_OUT_OF_RANGE);
}

TEST_F(CameraFeatures, OfCommandsReachTheCamera) {
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_TimestampLatch));
    const int64_t first = GetInt(camera, OV_FEATURE_TimestampLatchValue);
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_TimestampLatch));
    const int64_t second = GetInt(camera, OV_FEATURE_TimestampLatchValue);
    EXPECT_GT(second, first);
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_TimestampLatchReset));
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_TimestampLatch));
    EXPECT_LT(GetInt(camera, OV_FEATURE_TimestampLatchValue),
              GetInt(camera, OV_FEATURE_TimestampTickFrequency) * 60)
        << "since the reset";
}

TEST_F(CameraFeatures, OfTheHostAreRead) {
    EXPECT_OV_OK(OVStreamOn(camera));
    EXPECT_GE(GetInt(camera, OV_FEATURE_StreamAnnouncedBufferCount), 5);
    EXPECT_OV_OK(OVStreamOff(camera));
}

TEST_F(CameraFeatures, ThatTheCameraLacksAreToldAsSuch) {
    for (const Feature feature : {Feature{OV_FEATURE_DevicePHYVersion}, Feature{OV_FEATURE_HDRMode},
                                  Feature{OV_FEATURE_StreamTransferSize}}) {
        EXPECT_FALSE(Is(&OVIsImplemented, feature));
    }
    size_t size = 0;
    EXPECT_EQ(OVGetString(camera, OV_FEATURE_DevicePHYVersion, nullptr, &size),
              OV_STATUS_NOT_IMPLEMENTED);
}

TEST_F(CameraFeatures, OfTheImagesSizeAreLockedWhileFramesFlow) {
    ASSERT_OV_OK(OVStreamOn(camera));
    EXPECT_FALSE(Is(&OVIsWritable, OV_FEATURE_Width));
    EXPECT_EQ(OVSetInt(camera, OV_FEATURE_Width, 2 * kWidth), OV_STATUS_INVALID_ACCESS);
    EXPECT_OV_OK(OVSetFloat(camera, OV_FEATURE_ExposureTime, 200));
    ASSERT_OV_OK(OVStreamOff(camera));
    EXPECT_TRUE(Is(&OVIsWritable, OV_FEATURE_Width));
    EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 2 * kWidth));
}

TEST_F(CameraFeatures, TellTheirListenersOfEachChange) {
    const auto count = [](Feature, void* user) { ++*static_cast<std::atomic<int>*>(user); };
    std::atomic<int> widths{0};
    std::atomic<int> payloads{0};
    std::atomic<int> gains{0};
    OV_FEATURE_CALLBACK_HANDLE handles[3] = {};
    ASSERT_OV_OK(OVRegisterFeatureCallback(camera, &widths, count, OV_FEATURE_Width, &handles[0]));
    ASSERT_OV_OK(
        OVRegisterFeatureCallback(camera, &payloads, count, OV_FEATURE_PayloadSize, &handles[1]));
    ASSERT_OV_OK(OVRegisterFeatureCallback(camera, &gains, count, OV_FEATURE_Gain, &handles[2]));
    EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 2 * kWidth));
    EXPECT_GE(widths, 1);
    EXPECT_GE(payloads, 1) << "it depends on the width";
    EXPECT_EQ(gains, 0);
    EXPECT_EQ(GetInt(camera, OV_FEATURE_PayloadSize), 2 * kWidth * kHeight);
    EXPECT_OV_OK(OVUnregisterFeatureCallback(camera, OV_FEATURE_Width, handles[0]));
    const int before = widths;
    EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, kWidth));
    EXPECT_EQ(widths, before);
    EXPECT_GE(payloads, 2);
}

/// A camera whose features a capture callback reads and sets.
struct Handed {
    OV_DEV_HANDLE camera;
    std::promise<std::array<OV_STATUS, 2>> statuses;
    std::atomic<bool> isDone{false};

    static void OnFrame(OV_FRAME_CALLBACK_PARAM* frame) {
        auto& self = *static_cast<Handed*>(frame->pUserParam);
        if (self.isDone.exchange(true)) {
            return;
        }
        int64_t width = 0;
        const OV_STATUS read = OVGetInt(self.camera, OV_FEATURE_Width, &width);
        self.statuses.set_value(
            {read, OVSetFloat(self.camera, OV_FEATURE_ExposureTime, static_cast<double>(width))});
    }
};

TEST_F(CameraFeatures, MayBeUsedInACaptureCallback) {
    Handed handed{camera, {}, {}};
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &handed, &Handed::OnFrame));
    ASSERT_OV_OK(OVStreamOn(camera));
    EXPECT_EQ(handed.statuses.get_future().get(), (std::array<OV_STATUS, 2>{}));
    ASSERT_OV_OK(OVStreamOff(camera));
    double exposure = 0;
    EXPECT_OV_OK(OVGetFloat(camera, OV_FEATURE_ExposureTime, &exposure));
    EXPECT_DOUBLE_EQ(exposure, kWidth);
}

}  // namespace
