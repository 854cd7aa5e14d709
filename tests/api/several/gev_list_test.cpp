// The list when cameras speak GigE Vision: how far a search goes, which adapter
// a camera is listed with, and its addresses.

#include <algorithm>
#include <cstring>
#include <future>

#include "support/SeveralProducersTest.h"

namespace {

constexpr int64_t kLocalNetwork = 0;
constexpr int64_t kWholeNetwork = 1;

class GevListTest : public SeveralProducersTest {
protected:
    void SetUp() override {
        usb.SetDeviceCount(0, 0);
        custom.SetDeviceCount(0, 0);
    }
    static void Init() { ASSERT_OV_OK(OVInitLib()); }
    static std::vector<std::string> Ids(const std::vector<OV_DEVICE_BASE_INFO>& records) {
        std::vector<std::string> ids;
        for (const OV_DEVICE_BASE_INFO& record : records) {
            ids.emplace_back(record.szDeviceID);
        }
        return ids;
    }
    static uint32_t UpdateAll() {
        uint32_t count = 0;
        EXPECT_OV_OK(OVUpdateAllDeviceList(&count, 1000));
        return count;
    }
    static OV_DEVICE_IP_INFO Addresses(uint32_t index) {
        OV_DEVICE_IP_INFO record;
        std::memset(&record, 0x5A, sizeof(record));
        EXPECT_OV_OK(OVGetDeviceIPInfo(index, &record));
        return record;
    }
    using IdList = std::vector<std::string>;
};

TEST_F(GevListTest, OneUpdateSearchesTheSubnetsTheOtherTheWholeNetwork) {
    gev.SetInterfaceCount(2);
    Init();
    List();
    EXPECT_EQ(gev.SearchMode(0), kLocalNetwork);
    UpdateAll();
    EXPECT_EQ(gev.SearchMode(0), kWholeNetwork);
    EXPECT_EQ(gev.SearchMode(1), kWholeNetwork);
    List();
    EXPECT_EQ(gev.SearchMode(1), kLocalNetwork);
}

TEST_F(GevListTest, ACameraInAForeignSubnetIsFoundInTheWholeNetworkOnly) {
    gev.SetForeign(0, 0, 1);
    Init();
    EXPECT_EQ(List().size(), 0U);
    EXPECT_EQ(UpdateAll(), 1U);
    EXPECT_EQ(List().size(), 0U);
}

TEST_F(GevListTest, SearchesOfTheListsOwnGoAsFarAsTheLastUpdate) {
    Init();
    List();
    OV_DEV_HANDLE handle = nullptr;
    EXPECT_EQ(OVOpenDeviceByIndex(9, &handle), OV_STATUS_OUT_OF_RANGE);
    EXPECT_EQ(gev.SearchMode(0), kLocalNetwork);
    UpdateAll();
    EXPECT_EQ(OVOpenDeviceByIndex(9, &handle), OV_STATUS_OUT_OF_RANGE);
    EXPECT_EQ(gev.SearchMode(0), kWholeNetwork);
}

TEST_F(GevListTest, ACameraIsListedWithTheFirstAdapterThatSeesIt) {
    gev.SetInterfaceCount(3);
    gev.SetDeviceCount(0, 0);
    gev.SetDeviceCount(2, 0);
    gev.ShareDevice(1, 0, 2);
    Init();
    EXPECT_EQ(Ids(List()), IdList{"TestCamera1_0"});
    EXPECT_STREQ(Addresses(1).szNICDescription, "Adapter 1");
    gev.LoseInterface(1);
    EXPECT_EQ(Ids(List()), IdList{"TestCamera1_0"});
    EXPECT_STREQ(Addresses(1).szNICDescription, "Adapter 2");
}

TEST_F(GevListTest, AnInterfaceOfAnotherTypeListsItsCameras) {
    gev.SetInterfaceCount(2);
    gev.SetInterfaceText(1, "TLType", "Custom");
    gev.SetDeviceCount(1, 3);
    gev.SetDeviceText(1, 0, "TLType", "U3V");
    gev.SetDeviceText(1, 1, "TLType", "U3V");
    gev.SetDeviceText(1, 2, "TLType", "GEV");
    Init();
    const auto records = List();
    ASSERT_EQ(Ids(records),
              (IdList{"TestCamera1_0", "TestCamera1_1", "TestCamera1_2", "TestCamera0_0"}))
        << "cameras without an address are different ones";
    EXPECT_EQ(records[0].deviceClass, OV_DEVICE_CLASS_U3V);
    EXPECT_EQ(records[1].deviceClass, OV_DEVICE_CLASS_U3V);
    EXPECT_EQ(records[2].deviceClass, OV_DEVICE_CLASS_GEV);
    EXPECT_EQ(gev.SearchTimeout(1), 1000);
    EXPECT_STREQ(Addresses(3).szNICDescription, "Adapter 1");
    OV_DEV_HANDLE handle = nullptr;
    EXPECT_OV_OK(OVOpenDeviceByIndex(1, &handle));
    EXPECT_OV_OK(OVCloseDevice(handle));
    gev.SetDeviceCount(1, 0);
    EXPECT_EQ(Ids(List()), IdList{"TestCamera0_0"});
}

TEST_F(GevListTest, InterfacesOfOtherTypesAreSearchedAfterTheAdapters) {
    gev.SetInterfaceCount(3);
    gev.SetInterfaceText(0, "TLType", "U3V");
    gev.HoldSearch(0, 1);
    gev.HoldSearch(2, 1);
    Init();
    auto searching = std::async(std::launch::async, [] { return List().size(); });
    ASSERT_EQ(gev.WaitForCalls("IFUpdateDeviceList", 3, 60000), 0);
    EXPECT_EQ(gev.StopUpdateCount(2), 1) << "by the other adapter";
    gev.HoldSearch(0, 0);
    EXPECT_EQ(searching.get(), 3U);
    EXPECT_EQ(gev.StopUpdateCount(0), 0);
}

TEST_F(GevListTest, AGigEVisionCameraOfAProducerOfAnotherTypeHasItsAddresses) {
    gev.SetDeviceCount(0, 0);
    custom.SetInterfaceText(0, "TLType", "GEV");
    custom.SetDeviceCount(0, 1);
    custom.SetDeviceText(0, 0, "TLType", "GEV");
    Init();
    ASSERT_EQ(Ids(List()), IdList{"TestCamera0_0"});
    EXPECT_STREQ(Addresses(1).szIP, "192.168.10.100");
    EXPECT_STREQ(Addresses(1).szNICIP, "192.168.10.1");
}

TEST_F(GevListTest, ShowsNewAddressesThoughTheListIsTheSame) {
    Init();
    List();
    constexpr struct {
        const char* key;
        int64_t number;
    } numbers[] = {
        {"MAC", 0x0A0B0C0D0E0F}, {"IP", 0x0A000005}, {"Mask", 0xFF000000}, {"Gateway", 0x0A000001}};
    for (const auto& number : numbers) {
        gev.SetDeviceNumber(0, 0, number.key, number.number);
    }
    gev.SetInterfaceNumber(0, "IP", 0x0A000002);
    EXPECT_STREQ(Addresses(1).szIP, "192.168.10.100") << "until the next update";
    List();
    EXPECT_STREQ(Addresses(1).szMAC, "0A-0B-0C-0D-0E-0F");
    EXPECT_STREQ(Addresses(1).szIP, "10.0.0.5");
    EXPECT_STREQ(Addresses(1).szSubnetMask, "255.0.0.0");
    EXPECT_STREQ(Addresses(1).szGateway, "10.0.0.1");
    EXPECT_STREQ(Addresses(1).szNICIP, "10.0.0.2");
}

TEST_F(GevListTest, OnlyCamerasOfOneProducerAreTheSameByTheirAddress) {
    custom.SetProducerText("TLType", "GEV");
    custom.SetDeviceCount(0, 1);
    Init();
    EXPECT_EQ(Ids(List()), (IdList{"TestCamera0_0", "TestCamera0_0"}));
    EXPECT_STREQ(Addresses(1).szMAC, Addresses(2).szMAC);
}

TEST_F(GevListTest, CamerasAreSortedByTheirAddressWithoutASign) {
    gev.SetInterfaceCount(2);
    gev.SetDeviceCount(0, 2);
    gev.SetDeviceNumber(0, 0, "MAC", -1);
    gev.SetDeviceNumber(0, 1, "MAC", 0x0000800000000000);
    gev.SetDeviceNumber(1, 0, "MAC", 0x00007FFFFFFFFFFF);
    Init();
    EXPECT_EQ(Ids(List()), (IdList{"TestCamera1_0", "TestCamera0_1", "TestCamera0_0"}));
}

TEST_F(GevListTest, CamerasOfOtherTransportsAreNeitherSortedNorMerged) {
    gev.SetDeviceCount(0, 0);
    usb.SetInterfaceCount(2);
    usb.SetDeviceCount(0, 2);
    usb.SetDeviceNumber(0, 0, "MAC", 9);
    usb.SetDeviceNumber(0, 1, "MAC", 1);
    usb.SetDeviceCount(1, 0);
    usb.ShareDevice(0, 0, 1);
    Init();
    EXPECT_EQ(Ids(List()), (IdList{"TestCamera0_0", "TestCamera0_1", "TestCamera0_0"}));
}

TEST_F(GevListTest, AnAdapterWithoutAnAddressIsListedWithItsCameras) {
    gev.SetInterfaceCount(2);
    gev.SetInterfaceNumber(0, "IP", 0);
    Init();
    EXPECT_EQ(Ids(List()), (IdList{"TestCamera0_0", "TestCamera1_0"}));
    EXPECT_EQ(gev.SearchTimeout(0), 0) << "no time is spent on it";
    EXPECT_EQ(gev.SearchTimeout(1), 1000);
    EXPECT_STREQ(Addresses(1).szNICIP, "0.0.0.0");
}

TEST_F(GevListTest, AddressesFillTheWholeRecord) {
    gev.SetDeviceText(0, 0, "ID", std::string(70, 'i').c_str());
    gev.SetInterfaceText(0, "Description", std::string(127, 'd').c_str());
    gev.SetInterfaceNumber(0, "MAC", 0x00000A0B0C0D0E0F);
    Init();
    List();
    const OV_DEVICE_IP_INFO record = Addresses(1);
    EXPECT_EQ(std::string(record.szDeviceID), std::string(64, 'i'));
    EXPECT_STREQ(record.szMAC, "00-AA-BB-CC-00-64");
    EXPECT_STREQ(record.szIP, "192.168.10.100");
    EXPECT_STREQ(record.szSubnetMask, "255.255.255.0");
    EXPECT_STREQ(record.szGateway, "192.168.10.254");
    EXPECT_STREQ(record.szNICMAC, "0A-0B-0C-0D-0E-0F");
    EXPECT_STREQ(record.szNICIP, "192.168.10.1");
    EXPECT_STREQ(record.szNICSubnetMask, "255.255.255.0");
    EXPECT_STREQ(record.szNICGateway, "192.168.10.254");
    EXPECT_EQ(std::string(record.szNICDescription), std::string(127, 'd'));
    const auto isZero = [](char byte) { return byte == 0; };
    EXPECT_TRUE(std::all_of(std::begin(record.reserved), std::end(record.reserved), isZero));
    EXPECT_TRUE(isZero(record.szMAC[31]) && isZero(record.szDeviceID[67]));
}

TEST_F(GevListTest, AddressesNeedAPlaceInTheListAndDoNotSearch) {
    Init();
    OV_DEVICE_IP_INFO record{};
    ExpectFailure(OVGetDeviceIPInfo(1, &record), OV_STATUS_OUT_OF_RANGE, "Index out of range");
    EXPECT_EQ(gev.CallCount("IFUpdateDeviceList"), 0U);
    List();
    ExpectFailure(OVGetDeviceIPInfo(2, &record), OV_STATUS_OUT_OF_RANGE, "Index out of range");
}

TEST_F(GevListTest, AUsbVisionCameraHasNoAddresses) {
    usb.SetDeviceCount(0, 1);
    Init();
    ASSERT_EQ(List().size(), 2U);
    OV_DEVICE_IP_INFO record{};
    ExpectFailure(OVGetDeviceIPInfo(2, &record), OV_STATUS_INVALID_PARAMETER,
                  "The device is not GEV");
}

TEST_F(GevListTest, TheFirstAdapterToEndStopsTheSearchOfTheOthers) {
    gev.SetInterfaceCount(2);
    gev.HoldSearch(1, 1);
    Init();
    EXPECT_EQ(Ids(List()), (IdList{"TestCamera0_0", "TestCamera1_0"}));
    EXPECT_EQ(gev.StopUpdateCount(1), 1);
    EXPECT_EQ(gev.StopUpdateCount(0), 0);
}

}  // namespace
