// From an identifier to the module that has the feature.

#include <gtest/gtest.h>

#include "OvTestControl.h"
#include "TLClassDevice/Device.h"
#include "TLClassFeature/FeatureControl.h"
#include "api/DeviceManager.h"
#include "api/FeatureAccess.h"
#include "support/ApiTest.h"
#include "tl/TransportTest.h"

namespace {

using namespace OVTLClass;

constexpr OV_FEATURE_ID IntAt(OV_FEATURE_LEVEL level) {
    return OV_FEATURE_TYPE_INT | level;
}

/// A camera of a GigE Vision producer, seen from inside the library.
class FeatureAccessTest : public ApiTest {
protected:
    FeatureAccessTest() : ApiTest("OvGVTL.cti") {}

    void SetUp() override {
        Init();
        ASSERT_EQ(Update(), 1U);
    }
    static COvDeviceInfo& InfoOf(OV_DEV_HANDLE handle) {
        return *static_cast<COvDeviceInfo*>(static_cast<IOvDeviceInfo*>(handle));
    }
};

TEST_F(FeatureAccessTest, EachLevelHasTheFeaturesOfItsModule) {
    COvDeviceInfo& info = InfoOf(Open());
    const struct {
        OV_FEATURE_LEVEL level;
        const char* feature;
    } kModules[] = {
        {OV_FEATURE_LEVEL_REMOTE_DEVICE, "Width"},
        {OV_FEATURE_LEVEL_TL, "InterfaceSelector"},
        {OV_FEATURE_LEVEL_INTERFACE, "DeviceSelector"},
        {OV_FEATURE_LEVEL_LOCAL_DEVICE, "DeviceCommandTimeout"},
        {OV_FEATURE_LEVEL_STREAM, "StreamAnnouncedBufferCount"},
    };
    for (const auto& asked : kModules) {
        for (const auto& owner : kModules) {
            EXPECT_EQ(GetFeatureControl(info, IntAt(asked.level)).DoExist(owner.feature),
                      &asked == &owner)
                << owner.feature << " at " << asked.level;
        }
    }
}

TEST_F(FeatureAccessTest, ThereAreNoOtherLevels) {
    const COvDeviceInfo& info = InfoOf(Open());
    for (OV_FEATURE_LEVEL level = 5; level <= 15; ++level) {
        EXPECT_UNEXPECTED(-1, "UnKnown Feature Level", GetFeatureControl(info, IntAt(level << 24)));
    }
}

TEST_F(FeatureAccessTest, AClosedCameraHasNoFeatures) {
    OV_DEV_HANDLE const handle = Open();
    COvDeviceInfo info;
    info.SetDevice(InfoOf(handle).GetDevice());
    ASSERT_OV_OK(OVCloseDevice(handle));
    EXPECT_UNEXPECTED(-1, "dynamic_cast OVTLClass::CFeatureControl failed",
                      GetFeatureControl(info, OV_FEATURE_Width));
    EXPECT_UNEXPECTED(-1, "DataStream's number is 0",
                      GetFeatureControl(info, OV_FEATURE_StreamLostFrameCount));
}

std::string ListedUserId() {
    OV_DEVICE_BASE_INFO record{};
    size_t size = sizeof record;
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(&record, &size));
    return record.szUserID;
}

TEST_F(FeatureAccessTest, ANewUserIdStandsInTheHandleAndInTheList) {
    OV_DEV_HANDLE const handle = Open();
    ASSERT_OV_OK(OVSetString(handle, OV_FEATURE_DeviceUserID, "new"));
    EXPECT_EQ(InfoOf(handle).GetUserId(), "new");
    EXPECT_EQ(ListedUserId(), "new");
}

TEST_F(FeatureAccessTest, ANewUserIdOfACameraOpenedByAddressStandsInItsHandleOnly) {
    const std::string listed = ListedUserId();
    const OV_OPEN_PARAM param{"192.168.7.7", OV_OPEN_IP, OV_ACCESS_EXCLUSIVE};
    // Searches of the adapters' own subnets don't find it.
    producer.SetDeviceCount(0, 2);
    producer.SetDeviceNumber(0, 1, "IP", 0xC0A80707);
    producer.SetForeign(0, 1, 1);
    OV_DEV_HANDLE handle = nullptr;
    ASSERT_OV_OK(OVOpenDevice(&param, &handle));
    ASSERT_OV_OK(OVSetString(handle, OV_FEATURE_DeviceUserID, "new"));
    EXPECT_EQ(InfoOf(handle).GetUserId(), "new");
    EXPECT_EQ(ListedUserId(), listed);
}

TEST_F(FeatureAccessTest, AUserIdThatTheCameraDidNotTakeIsNotStored) {
    OV_DEV_HANDLE const handle = Open();
    const std::string before = InfoOf(handle).GetUserId();
    producer.FailCall("GCWritePort", 1, -1010);
    EXPECT_EQ(OVSetString(handle, OV_FEATURE_DeviceUserID, "new"), -1010);
    EXPECT_EQ(InfoOf(handle).GetUserId(), before);
    EXPECT_EQ(ListedUserId(), before);
}

}  // namespace
