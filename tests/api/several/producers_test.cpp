// Three producers beside the library: GigE Vision, USB3 Vision and another.

#include "support/SeveralProducersTest.h"

namespace {

TEST_F(SeveralProducersTest, CamerasComeInTheOrderOfTheProducers) {
    ASSERT_OV_OK(OVInitLib());
    const auto cameras = List();
    ASSERT_EQ(cameras.size(), 3U);
    EXPECT_EQ(cameras[0].deviceClass, OV_DEVICE_CLASS_GEV);
    EXPECT_EQ(cameras[1].deviceClass, OV_DEVICE_CLASS_U3V);
    EXPECT_EQ(cameras[2].deviceClass, OV_DEVICE_CLASS_CUSTOM);
}

TEST_F(SeveralProducersTest, ASecondThatFailsClosesTheFirst) {
    usb.FailCall("GCInitLib", 1, -1010);
    EXPECT_EQ(OVInitLib(), -1010);
    EXPECT_EQ(gev.OpenCount("Library"), 0);
    EXPECT_EQ(gev.SuccessCount("GCCloseLib"), 1U);
    EXPECT_EQ(gev.SuccessCount("TLClose"), 1U);
    EXPECT_EQ(custom.CallCount("GCInitLib"), 0U);
    EXPECT_OV_OK(OVInitLib());
}

TEST_F(SeveralProducersTest, ASmartCameraIsToldByTheIdOfItsProducer) {
    custom.SetProducerText("ID", "Smart_Camera_TL");
    ASSERT_OV_OK(OVInitLib());
    EXPECT_EQ(List()[2].deviceClass, OV_DEVICE_CLASS_SMART);
}

TEST_F(SeveralProducersTest, AGigEVisionCameraHasAddresses) {
    gev.SetInterfaceNumber(0, "MAC", 0x0000010203040506);
    gev.SetInterfaceNumber(0, "IP", 0xC0A80001);
    gev.SetInterfaceNumber(0, "Mask", 0xFFFFFF00);
    gev.SetInterfaceNumber(0, "Gateway", 0xC0A800FE);
    gev.SetInterfaceText(0, "Description", "first adapter");
    gev.SetDeviceNumber(0, 0, "MAC", 0x0000AABBCCDDEEFF);
    gev.SetDeviceNumber(0, 0, "IP", 0xC0A80002);
    gev.SetDeviceNumber(0, 0, "Mask", 0xFFFFFF00);
    gev.SetDeviceNumber(0, 0, "Gateway", 0);
    ASSERT_OV_OK(OVInitLib());
    List();
    OV_DEVICE_IP_INFO record{};
    ASSERT_OV_OK(OVGetDeviceIPInfo(1, &record));
    EXPECT_STREQ(record.szMAC, "AA-BB-CC-DD-EE-FF");
    EXPECT_STREQ(record.szIP, "192.168.0.2");
    EXPECT_STREQ(record.szSubnetMask, "255.255.255.0");
    EXPECT_STREQ(record.szGateway, "0.0.0.0");
    EXPECT_STREQ(record.szNICMAC, "01-02-03-04-05-06");
    EXPECT_STREQ(record.szNICIP, "192.168.0.1");
    EXPECT_STREQ(record.szNICGateway, "192.168.0.254");
    EXPECT_STREQ(record.szNICDescription, "first adapter");
    EXPECT_EQ(OVGetDeviceIPInfo(2, &record), OV_STATUS_INVALID_PARAMETER);
}

TEST_F(SeveralProducersTest, ACameraOnTwoAdaptersIsOneEntry) {
    gev.SetInterfaceCount(2);
    gev.SetDeviceCount(1, 0);
    ASSERT_EQ(gev.ShareDevice(0, 0, 1), 0);
    ASSERT_OV_OK(OVInitLib());
    EXPECT_EQ(List().size(), 3U);
    OV_DEVICE_IP_INFO record{};
    ASSERT_OV_OK(OVGetDeviceIPInfo(1, &record));
    EXPECT_STREQ(record.szNICDescription, "Adapter 0") << "the first adapter's is kept";
}

TEST_F(SeveralProducersTest, GigEVisionCamerasAreSortedByMacAddress) {
    gev.SetDeviceCount(0, 2);
    gev.SetInterfaceNumber(0, "IP", 0xC0A80001);
    gev.SetDeviceNumber(0, 0, "MAC", 0x0000AABBCCDDEEFF);
    gev.SetDeviceNumber(0, 1, "MAC", 0x0000000000000001);
    gev.SetDeviceText(0, 0, "SerialNumber", "second");
    gev.SetDeviceText(0, 1, "SerialNumber", "first");
    ASSERT_OV_OK(OVInitLib());
    const auto cameras = List();
    ASSERT_EQ(cameras.size(), 4U);
    EXPECT_STREQ(cameras[0].szSN, "first");
    EXPECT_STREQ(cameras[1].szSN, "second");
}

}  // namespace
