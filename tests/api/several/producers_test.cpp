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

}  // namespace
