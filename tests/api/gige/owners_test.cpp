// Cameras that another host has, or wants.

#include "GigeCameraTest.h"

namespace {

using OvGige::Access;
using OvSimulator::Count;

class GigeOwners : public ClosedGigeCameraTest {
protected:
    /// The list's word on who may open the camera, after a search.
    static OV_ACCESS_STATUS Status() {
        AwaitCameras(kCameras);
        return Records()[0].accessStatus;
    }
    void ExpectRefused(OV_ACCESS_MODE access, const OtherHost& owner) {
        ExpectFailure(OpenBy("1", OV_OPEN_INDEX, access, &camera), OV_STATUS_INVALID_ACCESS,
                      "Access denied:The camera is in use by " + OvGige::TextOf(owner.Address()));
        EXPECT_EQ(camera, nullptr);
    }
};

TEST_F(GigeOwners, AreNamedToWhoWantsControlToo) {
    {
        const OtherHost owner(First().Address(), Access::Control);
        EXPECT_EQ(Status(), OV_ACCESS_STATUS_READONLY);
        ExpectRefused(OV_ACCESS_CONTROL, owner);
        ExpectRefused(OV_ACCESS_EXCLUSIVE, owner);
        ASSERT_OV_OK(OpenBy("1", OV_OPEN_INDEX, OV_ACCESS_READONLY, &camera));
        EXPECT_GT(GetInt(camera, OV_FEATURE_Width), 0);
        EXPECT_OV_OK(OVCloseDevice(camera));
    }
    EXPECT_EQ(Status(), OV_ACCESS_STATUS_READWRITE);
    EXPECT_OV_OK(OVOpenDeviceByIndex(1, &camera));
}

TEST_F(GigeOwners, OfACameraForThemselvesRefuseReadersToo) {
    const OtherHost owner(First().Address(), Access::Exclusive);
    EXPECT_EQ(Status(), OV_ACCESS_STATUS_NOACCESS);
    for (const OV_ACCESS_MODE access :
         {OV_ACCESS_READONLY, OV_ACCESS_CONTROL, OV_ACCESS_EXCLUSIVE}) {
        ExpectRefused(access, owner);
    }
}

TEST_F(GigeOwners, LetOthersReadOrNot) {
    ASSERT_OV_OK(OpenBy("1", OV_OPEN_INDEX, OV_ACCESS_CONTROL, &camera));
    {
        OtherHost reader(First().Address(), Access::ReadOnly);
        EXPECT_EQ(reader.ReadRegister(OvGige::kRegPrivilege), OvGige::kPrivilegeControl);
    }
    EXPECT_THROW(OtherHost(First().Address(), Access::Control), OvProducer::Failure);
    EXPECT_OV_OK(OVCloseDevice(camera));
    ASSERT_OV_OK(OVOpenDeviceByIndex(1, &camera));
    EXPECT_THROW(OtherHost(First().Address(), Access::ReadOnly), OvProducer::Failure);
}

TEST_F(GigeOwners, GiveTheCameraBackWithTheLibrarysEnd) {
    const uint64_t given = Counted(Count::ControlGiven);
    ASSERT_OV_OK(OVOpenDeviceByIndex(1, &camera));
    ASSERT_OV_OK(OVStreamOn(camera));
    EXPECT_OV_OK(OVCloseLib());
    EXPECT_EQ(Counted(Count::ControlGiven), given + 1);
    const OtherHost next(First().Address(), Access::Exclusive);
}

}  // namespace
