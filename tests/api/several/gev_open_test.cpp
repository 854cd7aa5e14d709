// Opening a GigE Vision camera by its addresses, listed or not.

#include "support/SeveralProducersTest.h"

namespace {

constexpr const char* kAddress = "192.168.10.100";

class GevOpenTest : public SeveralProducersTest {
protected:
    void SetUp() override {
        usb.SetDeviceCount(0, 0);
        custom.SetDeviceCount(0, 0);
        ASSERT_OV_OK(OVInitLib());
    }
    OV_STATUS OpenAt(const char* address, OV_ACCESS_MODE access = OV_ACCESS_EXCLUSIVE) {
        return OpenBy(address, OV_OPEN_IP, &handle, access);
    }
    /// Moves the camera to where the searches of OVUpdateDeviceList don't find it.
    void MakeForeign() {
        gev.SetForeign(0, 0, 1);
        EXPECT_EQ(List().size(), 0U);
    }
    void ExpectNothingOpen() const {
        EXPECT_EQ(gev.OpenCount("Device"), 0);
        EXPECT_EQ(gev.OpenCount("Stream"), 0);
    }

    OV_DEV_HANDLE handle = nullptr;
};

TEST_F(GevOpenTest, ByTheAddressOfAListedCameraOpensTheEntry) {
    List();
    ASSERT_OV_OK(OpenAt(kAddress));
    OV_DEV_HANDLE other = nullptr;
    ExpectFailure(OVOpenDeviceByIndex(1, &other), OV_STATUS_INVALID_ACCESS,
                  "The device has already been opened");
    ExpectFailure(OpenAt(kAddress), OV_STATUS_INVALID_ACCESS, "The device has already been opened");
}

TEST_F(GevOpenTest, ByMacAddressWantsCapitals) {
    ExpectFailure(OpenBy("00-aa-bb-cc-00-64", OV_OPEN_MAC, &handle), OV_STATUS_NOT_FOUND_DEVICE,
                  "Not found device");
    ExpectFailure(OpenBy("00:AA:BB:CC:00:64", OV_OPEN_MAC, &handle), OV_STATUS_NOT_FOUND_DEVICE,
                  "Not found device");
    EXPECT_OV_OK(OpenBy("00-AA-BB-CC-00-64", OV_OPEN_MAC, &handle));
}

TEST_F(GevOpenTest, ByAnAddressInNoListOpensAnUnlistedCamera) {
    MakeForeign();
    ASSERT_OV_OK(OpenAt(kAddress));
    EXPECT_OV_OK(OVSetInt(handle, OV_FEATURE_Width, 32));
    EXPECT_EQ(List().size(), 0U) << "it doesn't join the list";
    EXPECT_OV_OK(OVSetInt(handle, OV_FEATURE_Width, 64)) << "an update leaves it open";
    EXPECT_OV_OK(OVCloseDevice(handle));
    ExpectNothingOpen();
}

TEST_F(GevOpenTest, AnUnlistedCameraOpensOnce) {
    MakeForeign();
    ASSERT_OV_OK(OpenAt(kAddress));
    ExpectFailure(OpenAt(kAddress), OV_STATUS_INVALID_ACCESS, "The device has already been opened");
    ExpectFailure(OpenAt("192.168.010.100"), OV_STATUS_INVALID_ACCESS,
                  "The device has already been opened");
    EXPECT_EQ(gev.CallCount("IFOpenDevice"), 1U);
    EXPECT_OV_OK(OVCloseDevice(handle));
    EXPECT_OV_OK(OpenAt(kAddress)) << "and again after its close";
}

TEST_F(GevOpenTest, AnUnlistedCameraTakesTheAccessModeThatIsGiven) {
    MakeForeign();
    ASSERT_OV_OK(OpenAt(kAddress, OV_ACCESS_READONLY));
    EXPECT_EQ(OVSetInt(handle, OV_FEATURE_Width, 32), OV_STATUS_INVALID_ACCESS);
}

TEST_F(GevOpenTest, AnUnlistedCameraIsLookedForOnEachAdapter) {
    gev.SetInterfaceCount(3);
    gev.SetForeign(1, 0, 1);
    List();
    const uint64_t before = gev.CallCount("IFOpenDevice");
    ASSERT_OV_OK(OpenAt("192.168.11.100"));
    EXPECT_EQ(gev.CallCount("IFOpenDevice"), before + 2) << "and no further than where it is";
    EXPECT_EQ(usb.CallCount("IFOpenDevice") + custom.CallCount("IFOpenDevice"), 0U);
}

TEST_F(GevOpenTest, AnUnlistedCameraWithoutAStreamEndsClosed) {
    MakeForeign();
    gev.SetStreamNumber(0, 0, "Count", 0);
    ExpectFailure(OpenAt(kAddress), OV_STATUS_NOT_FOUND_DEVICE,
                  "Can't open device by IP: 192.168.10.100");
    ExpectNothingOpen();
    gev.SetStreamNumber(0, 0, "Count", 1);
    EXPECT_OV_OK(OpenAt(kAddress));
}

TEST_F(GevOpenTest, AnAddressThatNobodyHasIsNotFound) {
    for (const char* const address : {"10.0.0.7", "1.2.3", "7"}) {
        ExpectFailure(OpenAt(address), OV_STATUS_NOT_FOUND_DEVICE,
                      std::string("Can't open device by IP: ") + address);
    }
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(List().size(), 1U) << "the attempts leave nothing in the list";
    ExpectFailure(OpenAt("10.0.0.7"), OV_STATUS_NOT_FOUND_DEVICE,
                  "Can't open device by IP: 10.0.0.7");
}

TEST_F(GevOpenTest, AnAddressThatIsNoneIsRefusedWithoutASearch) {
    for (const char* const address : {"192.168.1.255", "0.1.2.3", "1.2.3.4.5", "1..2.3", "a.b.c.d",
                                      "1.2.3.4 ", "1234.1.1.1", "."}) {
        ExpectFailure(OpenAt(address), OV_STATUS_INVALID_PARAMETER, "IP string is wrong format");
    }
    EXPECT_EQ(gev.CallCount("IFUpdateDeviceList"), 0U);
}

TEST_F(GevOpenTest, AnUnlistedCameraSurvivesAListThatChanges) {
    MakeForeign();
    ASSERT_OV_OK(OpenAt(kAddress));
    gev.SetDeviceCount(0, 2);
    EXPECT_EQ(List().size(), 1U);
    EXPECT_OV_OK(OVSetInt(handle, OV_FEATURE_Width, 32));
    ExpectFailure(OpenAt(kAddress), OV_STATUS_INVALID_ACCESS, "The device has already been opened");
    EXPECT_OV_OK(OVCloseDevice(handle));
    EXPECT_EQ(List().size(), 1U);
    EXPECT_OV_OK(OpenAt(kAddress));
}

TEST_F(GevOpenTest, CloseLibClosesUnlistedCameras) {
    MakeForeign();
    ASSERT_OV_OK(OpenAt(kAddress));
    ASSERT_OV_OK(OVStreamOn(handle));
    EXPECT_OV_OK(OVCloseLib());
    ExpectNothingOpen();
}

TEST_F(GevOpenTest, ACameraThatIsOpenThroughAnotherAdapterIsRefusedByTheProducer) {
    gev.SetInterfaceCount(2);
    gev.SetDeviceCount(1, 0);
    gev.ShareDevice(0, 0, 1);
    ASSERT_EQ(List().size(), 1U);
    ASSERT_OV_OK(OpenAt(kAddress));
    gev.LoseInterface(0);
    ASSERT_EQ(List().size(), 1U);
    OV_DEV_HANDLE other = nullptr;
    ExpectFailure(OVOpenDeviceByIndex(1, &other), OV_STATUS_INVALID_ACCESS,
                  "Access denied:The camera is open through another adapter");
    EXPECT_OV_OK(OVCloseDevice(handle));
    EXPECT_OV_OK(OVOpenDeviceByIndex(1, &other));
}

}  // namespace
