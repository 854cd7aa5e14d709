// The list of cameras: when it is searched for, and what it holds until then.

#include <cstring>
#include <future>

#include "support/ApiTest.h"
#include "support/FeatureCalls.h"

namespace {

class KnownListTest : public ApiTest {
protected:
    void SetUp() override { Init(); }

    uint64_t Searches() const { return producer.CallCount("IFUpdateDeviceList"); }
    /// The record of the first camera in the present list.
    static OV_DEVICE_BASE_INFO Record() {
        OV_DEVICE_BASE_INFO records[4] = {};
        size_t size = sizeof(records);
        EXPECT_OV_OK(OVGetAllDeviceBaseInfo(records, &size));
        return records[0];
    }
    static size_t Size() {
        size_t size = 1;
        EXPECT_OV_OK(OVGetAllDeviceBaseInfo(nullptr, &size));
        return size;
    }
};

TEST_F(KnownListTest, ASearchTakesTheCallersTimeOut) {
    uint32_t count = 0;
    EXPECT_OV_OK(OVUpdateDeviceList(&count, 1234));
    EXPECT_EQ(producer.SearchTimeout(0), 1234);
    EXPECT_OV_OK(OVUpdateAllDeviceList(&count, 56));
    EXPECT_EQ(producer.SearchTimeout(0), 56);
    EXPECT_EQ(count, 1U);
}

TEST_F(KnownListTest, ASearchOfTheListsOwnTakesTwoHundredMilliseconds) {
    EXPECT_EQ(Size(), sizeof(OV_DEVICE_BASE_INFO));
    EXPECT_EQ(producer.SearchTimeout(0), 200);
}

TEST_F(KnownListTest, AListWithEntriesIsNotSearchedForAgain) {
    Update();
    producer.SetDeviceCount(0, 2);
    const uint64_t before = Searches();
    EXPECT_EQ(Size(), sizeof(OV_DEVICE_BASE_INFO));
    EXPECT_EQ(Searches(), before);
}

TEST_F(KnownListTest, AnEmptyListIsSearchedForEachTime) {
    producer.SetDeviceCount(0, 0);
    EXPECT_EQ(Size(), 0U);
    EXPECT_EQ(Size(), 0U);
    EXPECT_EQ(Searches(), 2U);
    producer.SetDeviceCount(0, 2);
    EXPECT_EQ(Size(), 2 * sizeof(OV_DEVICE_BASE_INFO));
}

TEST_F(KnownListTest, AnEmptyListFitsIntoNoBytes) {
    producer.SetDeviceCount(0, 0);
    OV_DEVICE_BASE_INFO record;
    std::memset(&record, 0x5A, sizeof(record));
    size_t size = 0;
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(&record, &size));
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(record.reserved[0], 0x5A);
}

TEST_F(KnownListTest, ALargerBufferIsFilledAsFarAsItIsNeeded) {
    Update();
    OV_DEVICE_BASE_INFO records[2];
    std::memset(records, 0x5A, sizeof(records));
    size_t size = sizeof(records);
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(records, &size));
    EXPECT_EQ(size, sizeof(records[0]));
    EXPECT_STREQ(records[0].szDeviceID, "TestCamera0_0");
    EXPECT_EQ(records[1].szDeviceID[0], 0x5A);
}

TEST_F(KnownListTest, CamerasHaveTheirPlacesInTheProducersOrder) {
    producer.SetInterfaceCount(2);
    producer.SetDeviceCount(0, 2);
    ASSERT_EQ(Update(), 3U);
    OV_DEVICE_BASE_INFO records[3];
    size_t size = sizeof(records);
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(records, &size));
    EXPECT_STREQ(records[0].szDeviceID, "TestCamera0_0");
    EXPECT_STREQ(records[1].szDeviceID, "TestCamera0_1");
    EXPECT_STREQ(records[2].szDeviceID, "TestCamera1_0");
}

TEST_F(KnownListTest, StaysAsItIsUntilTheNextSearch) {
    Update();
    producer.LoseDevice(0, 0);
    EXPECT_EQ(Size(), sizeof(OV_DEVICE_BASE_INFO));
    EXPECT_EQ(Update(), 0U);
    producer.ReturnDevice(0, 0);
    EXPECT_EQ(Update(), 1U);
}

TEST_F(KnownListTest, ShowsANewNameAndAccessThoughTheListIsTheSame) {
    Update();
    producer.SetDeviceText(0, 0, "UserID", "Renamed");
    producer.SetDeviceNumber(0, 0, "AccessStatus", 3);
    EXPECT_STREQ(Record().szUserID, "User0_0") << "until the next update";
    Update();
    EXPECT_STREQ(Record().szUserID, "Renamed");
    EXPECT_EQ(Record().accessStatus, OV_ACCESS_STATUS_NOACCESS);
    OV_DEV_HANDLE handle = nullptr;
    const OV_OPEN_PARAM param{"Renamed", OV_OPEN_USERID, OV_ACCESS_CONTROL};
    EXPECT_OV_OK(OVOpenDevice(&param, &handle));
}

TEST_F(KnownListTest, KeepsAWrittenNameWhileTheProducerToldTheOldOne) {
    // The interface's features are older than those of the camera.
    constexpr const char* kLagging =
        R"(<Integer Name="DeviceSelector"><Value>0</Value></Integer>
           <String Name="DeviceUserID"><Value>Old</Value></String>
           <Port Name="InterfacePort"/>)";
    const std::string text = DescribeCamera(kLagging);
    OVCloseLib();
    producer.SetDescription("Interface", "Interface.xml", text.data(), text.size());
    Init();
    Update();
    EXPECT_STREQ(Record().szUserID, "Old");
    OV_DEV_HANDLE const handle = Open();
    EXPECT_OV_OK(OVSetString(handle, OV_FEATURE_DeviceUserID, "New"));
    EXPECT_STREQ(Record().szUserID, "New");
    Update();
    EXPECT_STREQ(Record().szUserID, "New");
    producer.SetDeviceCount(0, 2);
    Update();
    EXPECT_STREQ(Record().szUserID, "New");
}

TEST_F(KnownListTest, LosesAndRegainsTheCamerasOfAnInterface) {
    producer.SetInterfaceCount(2);
    EXPECT_EQ(Update(), 2U);
    producer.LoseInterface(1);
    EXPECT_EQ(Update(), 1U);
    producer.ReturnInterface(1);
    EXPECT_EQ(Update(), 2U);
}

TEST_F(KnownListTest, IsForgottenWithTheLibrary) {
    Update();
    EXPECT_OV_OK(OVCloseLib());
    Init();
    OV_DEVICE_IP_INFO record{};
    ExpectFailure(OVGetDeviceIPInfo(1, &record), OV_STATUS_OUT_OF_RANGE, "Index out of range");
    EXPECT_EQ(Searches(), 1U);
}

TEST_F(KnownListTest, DoesNotWaitForASearchOnAnotherThread) {
    producer.BlockCall("IFUpdateDeviceList");
    auto searching = std::async(std::launch::async, [this] { return Update(); });
    ASSERT_EQ(producer.WaitForCalls("IFUpdateDeviceList", 1, 60000), 0);
    EXPECT_EQ(Size(), 0U) << "as it stands";
    OV_DEV_HANDLE handle = nullptr;
    ExpectFailure(OVOpenDeviceByIndex(1, &handle), OV_STATUS_OUT_OF_RANGE, "Index out of range");
    producer.ReleaseCall("IFUpdateDeviceList");
    EXPECT_EQ(searching.get(), 1U);
    EXPECT_EQ(Searches(), 1U);
    EXPECT_EQ(Size(), sizeof(OV_DEVICE_BASE_INFO));
}

TEST_F(KnownListTest, ASearchThatFailsIsLoggedAndKeepsTheList) {
    Update();
    producer.SetDeviceCount(0, 2);
    producer.FailCall("IFUpdateDeviceList", 1, -1010);
    EXPECT_EQ(Update(), 1U);
    EXPECT_EQ(Update(), 2U);
}

TEST_F(KnownListTest, CamerasOfAProducerThatRefusesEveryFactAreListedBlank) {
    for (const char* const function : {"IFGetDeviceInfo", "IFGetInfo", "TLGetInterfaceInfo"}) {
        producer.FailCall(function, 0, -1014);
    }
    ASSERT_EQ(Update(), 1U);
    OV_DEVICE_BASE_INFO record{};
    size_t size = sizeof(record);
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(&record, &size));
    EXPECT_STREQ(record.szDeviceID, "TestCamera0_0") << "from the list itself";
    EXPECT_STREQ(record.szSN, "SN0_0") << "from the interface's features";
    EXPECT_STREQ(record.szVendorName, "");
    EXPECT_STREQ(record.szModelName, "");
    EXPECT_STREQ(record.szDisplayName, "");
    EXPECT_EQ(record.accessStatus, OV_ACCESS_STATUS_UNKNOWN);
    EXPECT_EQ(record.deviceClass, OV_DEVICE_CLASS_UNKNOWN);
}

TEST_F(KnownListTest, TextsAreCutAtTheirLimits) {
    const std::string text(300, 'x');
    for (const char* const key : {"Vendor", "Model", "DisplayName"}) {
        producer.SetDeviceText(0, 0, key, text.c_str());
    }
    producer.SetDeviceText(0, 0, "ID", std::string(70, 'i').c_str());
    producer.SetDeviceText(0, 0, "SerialNumber", std::string(60, 's').c_str());
    ASSERT_EQ(Update(), 1U);
    OV_DEVICE_BASE_INFO record;
    std::memset(&record, 0x5A, sizeof(record));
    size_t size = sizeof(record);
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(&record, &size));
    EXPECT_EQ(std::string(record.szVendorName), std::string(31, 'x'));
    EXPECT_EQ(std::string(record.szModelName), std::string(31, 'x'));
    EXPECT_EQ(std::string(record.szSN), std::string(31, 's'));
    EXPECT_EQ(std::string(record.szDisplayName), std::string(128, 'x'));
    EXPECT_EQ(std::string(record.szDeviceID), std::string(64, 'i'));
    EXPECT_EQ(record.szDeviceID[67], 0);
    EXPECT_EQ(record.szDisplayName[131], 0);
}

struct Access {
    int64_t producers;
    OV_ACCESS_STATUS shown;
};

class AccessStatus : public KnownListTest, public testing::WithParamInterface<Access> {};

TEST_P(AccessStatus, KeepsThreeOfTheProducersValues) {
    producer.SetDeviceNumber(0, 0, "AccessStatus", GetParam().producers);
    Update();
    OV_DEVICE_BASE_INFO record{};
    size_t size = sizeof(record);
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(&record, &size));
    EXPECT_EQ(record.accessStatus, GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Of, AccessStatus,
                         testing::Values(Access{-1, 0}, Access{0, 0}, Access{1, 1}, Access{2, 2},
                                         Access{3, 3}, Access{4, 0}, Access{5, 0}, Access{7, 0}),
                         [](const auto& of) {
                             return of.param.producers < 0 ? "Negative"
                                                           : std::to_string(of.param.producers);
                         });

struct Class {
    const char* name;
    const char* tlType;
    const char* tlId;
    OV_DEVICE_CLASS shown;
};

class DeviceClass : public ApiTest, public testing::WithParamInterface<Class> {};

TEST_P(DeviceClass, FollowsTheTransportAndTheProducer) {
    producer.SetProducerText("TLType", GetParam().tlType);
    producer.SetProducerText("ID", GetParam().tlId);
    Init();
    ASSERT_EQ(Update(), 1U);
    OV_DEVICE_BASE_INFO record{};
    size_t size = sizeof(record);
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(&record, &size));
    EXPECT_EQ(record.deviceClass, GetParam().shown);
    OV_DEVICE_IP_INFO addresses{};
    if (GetParam().shown != OV_DEVICE_CLASS_GEV) {
        ExpectFailure(OVGetDeviceIPInfo(1, &addresses), OV_STATUS_INVALID_PARAMETER,
                      "The device is not GEV");
    } else {
        EXPECT_OV_OK(OVGetDeviceIPInfo(1, &addresses));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, DeviceClass,
    testing::Values(Class{"GigE", "GEV", "Any", 2}, Class{"SmartGigE", "GEV", "Smart_Camera_TL", 2},
                    Class{"Usb", "U3V", "Any", 3}, Class{"Custom", "Custom", "Any", 1},
                    Class{"Smart", "Custom", "Smart_Camera_TL", 4}, Class{"Other", "CL", "Any", 0},
                    Class{"SmallLetters", "gev", "Any", 0}),
    [](const auto& of) { return std::string(of.param.name); });

}  // namespace
