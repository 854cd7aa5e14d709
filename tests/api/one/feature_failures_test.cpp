// A camera that is gone, and a producer that fails, under every call on a feature.

#include "support/ApiTest.h"
#include "support/FeatureCalls.h"

namespace {

constexpr uint64_t kGate = 0x1000;
constexpr const char* kLost = "The device is lost";

/// A camera that must be asked whatever is done to its features.
class AskedCamera : public ApiTest {
protected:
    void SetUp() override {
        const std::string description = DescriptionThatAsksTheCamera();
        producer.SetDescription("Remote", "Asking.xml", description.data(), description.size());
        Init();
        ASSERT_EQ(Update(), 1U);
        const uint32_t one = 1;
        const uint32_t format = 0x01080001;
        producer.WriteMemory(0, 0, kGate, &one, sizeof one);
        producer.WriteMemory(0, 0, kGate + 12, &format, sizeof format);
        camera = Open();
        ASSERT_NE(camera, nullptr);
    }

    OV_DEV_HANDLE camera = nullptr;
};

class FeatureFailures : public AskedCamera, public testing::WithParamInterface<FeatureCall> {
protected:
    FeatureArguments Good() const { return {camera, GetParam().feature}; }
    bool ReachesTheCamera() const { return std::string(GetParam().function) != "OVGetFeatureName"; }
    void ExpectFailed(OV_STATUS status) {
        FeatureArguments arguments = Good();
        EXPECT_EQ(GetParam().run(arguments), status) << LastError::Get().text;
        EXPECT_EQ(LastError::Get().status, status);
        EXPECT_TRUE(arguments.IsUntouched());
    }
};

TEST_P(FeatureFailures, ALostCameraIsToldByEveryCallThatReachesTheCamera) {
    producer.LoseDevice(0, 0);
    FeatureArguments arguments = Good();
    if (ReachesTheCamera()) {
        ExpectFailure(GetParam().run(arguments), OV_STATUS_OFFLINE, kLost);
        EXPECT_TRUE(arguments.IsUntouched());
    } else {
        EXPECT_OV_OK(GetParam().run(arguments));
    }
}

TEST_P(FeatureFailures, EndWhenTheCameraReturns) {
    producer.LoseDevice(0, 0);
    FeatureArguments arguments = Good();
    GetParam().run(arguments);
    producer.ReturnDevice(0, 0);
    EXPECT_OV_OK(GetParam().run(arguments));
}

TEST_P(FeatureFailures, AProducersCodeHasItsStatus) {
    if (!ReachesTheCamera()) {
        return;
    }
    const struct {
        int32_t code;
        OV_STATUS status;
    } kCodes[] = {
        {-1, -1},
        {-1001, -1001},
        {-1003, OV_STATUS_NOT_IMPLEMENTED},
        {-1005, OV_STATUS_INVALID_ACCESS},
        {-1006, -1006},
        {-1009, OV_STATUS_INVALID_PARAMETER},
        {-1010, -1010},
        {-1011, OV_STATUS_TIMEOUT},
        {-10000, OV_STATUS_OFFLINE},
    };
    for (const auto& row : kCodes) {
        SCOPED_TRACE(row.code);
        producer.FailCall("GCReadPort", 1, row.code);
        ExpectFailed(row.status);
    }
    FeatureArguments arguments = Good();
    EXPECT_OV_OK(GetParam().run(arguments));
}

TEST_P(FeatureFailures, LeaveTheOutputsAloneWhereTheProducerHadReadAlready) {
    if (!ReachesTheCamera()) {
        return;
    }
    const uint64_t before = producer.CallCount("GCReadPort");
    FeatureArguments good = Good();
    ASSERT_OV_OK(GetParam().run(good));
    const uint64_t reads = producer.CallCount("GCReadPort") - before;
    for (unsigned read = 1; read <= reads; ++read) {
        SCOPED_TRACE(read);
        producer.FailAfterCall("GCReadPort", read, -1010);
        ExpectFailed(-1010);
    }
}

INSTANTIATE_TEST_SUITE_P(All, FeatureFailures, testing::ValuesIn(feature_calls::kAll),
                         [](const auto& test) { return NameOf(test.param); });

class LostCamera : public OpenCameraTest {
protected:
    void SetUp() override {
        OpenCameraTest::SetUp();
        producer.LoseDevice(0, 0);
    }
};

TEST_F(LostCamera, NeitherStartsNorStops) {
    for (const OV_FEATURE_ID command :
         {OV_FEATURE_ID{OV_FEATURE_AcquisitionStart}, OV_FEATURE_ID{OV_FEATURE_AcquisitionStop}}) {
        EXPECT_EQ(OVSendCommand(camera, command), OV_STATUS_OFFLINE);
        EXPECT_NE(LastError::Get().text.find(kLost), std::string::npos);
    }
}

TEST_F(LostCamera, KeepsItsListedUserId) {
    OV_DEVICE_BASE_INFO before{};
    OV_DEVICE_BASE_INFO after{};
    size_t size = sizeof before;
    ASSERT_OV_OK(OVGetAllDeviceBaseInfo(&before, &size));
    EXPECT_EQ(OVSetString(camera, OV_FEATURE_DeviceUserID, "gone"), OV_STATUS_OFFLINE);
    ASSERT_OV_OK(OVGetAllDeviceBaseInfo(&after, &size));
    EXPECT_STREQ(after.szUserID, before.szUserID);
}

TEST_F(LostCamera, IsToldByItsHostSide) {
    int64_t value = 0;
    ExpectFailure(OVGetInt(camera, OV_FEATURE_DeviceCommandTimeout, &value), OV_STATUS_OFFLINE,
                  kLost);
}

}  // namespace
