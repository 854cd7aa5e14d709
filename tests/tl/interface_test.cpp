// An interface: opening, closing, and the list of its devices.

#include <algorithm>
#include <optional>

#include "InterfaceListTest.h"
#include "TLClassFeature/IFeatureControl.h"

namespace OVTLClass {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class InterfaceTest : public InterfaceListTest {
protected:
    explicit InterfaceTest(const char* fileName = "KwTL.cti") : InterfaceListTest(fileName) {}
    void SetUp() override { owner = InitInterface(); }
};

TEST_F(InterfaceTest, HasFeaturesAndItsOwnDescriptionWhileOpen) {
    EXPECT_TRUE(owner->DoIsInterfaceOpen());
    EXPECT_EQ(owner->GetFeatureControl()->DoGetString("InterfaceID"), "TestInterface0");
    EXPECT_EQ(owner->DoGetCommonInterfaceInfo().description.value, "Adapter 0");
    EXPECT_EQ(owner->DoGetInterfaceInfo().displayName.value, "Test Interface 0");
}

TEST_F(InterfaceTest, OpensOnce) {
    owner->DoOpenInterface();
    EXPECT_EQ(producer.CallCount("TLOpenInterface"), 1U);
}

TEST_F(InterfaceTest, IsBlankOnceClosed) {
    Update();
    owner->DoCloseInterface();
    EXPECT_FALSE(owner->DoIsInterfaceOpen());
    EXPECT_EQ(owner->GetFeatureControl(), nullptr);
    EXPECT_EQ(owner->GetNodeMapRef(), nullptr);
    EXPECT_EQ(owner->GetXML(), "");
    EXPECT_FALSE(owner->DoGetCommonInterfaceInfo().description.valid);
    EXPECT_THAT(Present(), IsEmpty());
    producer.ClearLog();
    owner->DoCloseInterface();
    EXPECT_FALSE(Update());
    EXPECT_THAT(producer.Log(), IsEmpty());
}

TEST_F(InterfaceTest, ClosesItsDevicesFirst) {
    Update();
    First()->DoOpenDevice(3);
    owner->DoCloseInterface();
    const std::vector<std::string> calls = producer.Log();
    EXPECT_THAT(std::vector(calls.end() - 2, calls.end()), ElementsAre("DevClose", "IFClose"));
}

TEST_F(InterfaceTest, ClosesDevicesThatWereLostWhileOpen) {
    Update();
    const std::weak_ptr<IDevice> device = First();
    device.lock()->DoOpenDevice(3);
    producer.LoseDevice(0, 0);
    Update();
    owner->DoCloseInterface();
    EXPECT_EQ(producer.OpenCount("Device"), 0);
    EXPECT_TRUE(device.expired());
}

TEST_F(InterfaceTest, LogsAFailedClose) {
    const LogCapture log;
    producer.FailAfterCall("IFClose", 1, GenTL::GC_ERR_ERROR);
    owner->DoCloseInterface();
    EXPECT_FALSE(owner->DoIsInterfaceOpen());
    EXPECT_THAT(log.Lines(),
                ElementsAre(::testing::EndsWith(":'DoCloseInterface':Planned failure of IFClose")));
    manager.DoUninit();
    producer.Reset();
}

TEST_F(InterfaceTest, GivesALostHandleBackWithoutAWord) {
    const LogCapture log;
    producer.FailAfterCall("IFClose", 1, GenTL::GC_ERR_ERROR);
    owner->SetInterfaceLostStatus();
    EXPECT_EQ(producer.CallCount("IFClose"), 1U);
    EXPECT_THAT(log.Lines(), IsEmpty());
    manager.DoUninit();
    producer.Reset();
}

TEST_F(InterfaceTest, HasNoDevicesBeforeTheFirstUpdate) {
    EXPECT_THAT(Present(), IsEmpty());
    EXPECT_THAT(LostOpen(), IsEmpty());
}

TEST_F(InterfaceTest, ListsDevicesInTheProducersOrder) {
    producer.SetDeviceCount(0, 3);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestCamera0_0", "TestCamera0_1", "TestCamera0_2"));
    const auto device = owner->DoGetDeviceList()[2];
    EXPECT_FALSE(device->DoIsDeviceOpen());
    EXPECT_EQ(device->DoGetInterface(), owner);
    EXPECT_EQ(device->DoGetCommonDeviceInfo().serialNumber.value, "SN0_2");
    EXPECT_EQ(device->DoGetCommonDeviceInfo().userId.value, "User0_2");
    EXPECT_EQ(device->DoGetCommonDeviceInfo().version.value, "1.0.0");
}

TEST_F(InterfaceTest, ReadsRecordsBeforeFeatures) {
    producer.ClearLog();
    Update();
    const std::vector<std::string> calls = producer.Log();
    EXPECT_EQ(calls.at(0), "IFUpdateDeviceList");
    EXPECT_EQ(calls.at(1), "IFGetNumDevices");
    const auto write = std::find(calls.begin(), calls.end(), "GCWritePort");
    EXPECT_EQ(std::find(write, calls.end(), "IFGetDeviceInfo"), calls.end());
}

TEST_F(InterfaceTest, LendsItsRecordsForTheUpdateOnly) {
    Update();
    EXPECT_EQ(First()->DoGetDeviceInfo().pCommonInfo, nullptr);
    EXPECT_EQ(First()->DoGetDeviceInfo().pSpecialInfo, nullptr);
}

TEST_F(InterfaceTest, KeepsItsListWhenTheProducerSaysSo) {
    Update();
    const auto before = owner->DoGetDeviceList();
    EXPECT_FALSE(Update());
    EXPECT_EQ(owner->DoGetDeviceList(), before);
}

TEST_F(InterfaceTest, RefreshesWhatItKnowsOfItsDevicesWhenTheListStays) {
    Update();
    producer.SetDeviceText(0, 0, "UserID", "Renamed");
    producer.SetDeviceText(0, 0, "DisplayName", "New name");
    producer.SetDeviceNumber(0, 0, "AccessStatus", 3);
    EXPECT_FALSE(Update());
    EXPECT_EQ(First()->DoGetCommonDeviceInfo().userId.value, "Renamed");
    EXPECT_EQ(First()->DoGetDeviceInfo().displayName.value, "New name");
    EXPECT_EQ(First()->DoGetDeviceInfo().accessStatus.value, 3);
}

TEST_F(InterfaceTest, KeepsWhatTheProducerDoesNotTellAnyMore) {
    Update();
    producer.FailCall("IFGetDeviceInfo", 0, GenTL::GC_ERR_NOT_AVAILABLE);
    EXPECT_FALSE(Update());
    const DEV_INFO info = First()->DoGetDeviceInfo();
    EXPECT_EQ(info.vendor.value, "oviapi");
    EXPECT_EQ(info.model.value, "TestCamera");
    EXPECT_EQ(info.accessStatus.value, 1);
    EXPECT_TRUE(info.tlType.valid);
}

TEST_F(InterfaceTest, KeepsAWrittenUserIdUntilTheProducerTellsAnotherThanBefore) {
    Update();
    const auto userId = [this] { return First()->DoGetCommonDeviceInfo().userId.value; };
    First()->DoSetUserId("Written");
    producer.SetDeviceCount(0, 2);
    EXPECT_TRUE(Update());
    EXPECT_EQ(userId(), "Written");
    EXPECT_FALSE(Update());
    EXPECT_EQ(userId(), "Written");
    producer.SetDeviceText(0, 0, "UserID", "Written elsewhere");
    EXPECT_FALSE(Update());
    EXPECT_EQ(userId(), "Written elsewhere");
}

TEST_F(InterfaceTest, RepeatsARenewalThatFailed) {
    Update();
    producer.SetDeviceCount(0, 2);
    producer.FailCall("IFGetNumDevices", 1, GenTL::GC_ERR_IO);
    EXPECT_FALSE(Update());
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestCamera0_0", "TestCamera0_1"));
    EXPECT_FALSE(Update());
}

struct UpdateRefusal {
    const char* function;
    const char* logged;
};

class InterfaceUpdateFails : public InterfaceTest,
                             public ::testing::WithParamInterface<UpdateRefusal> {};

TEST_P(InterfaceUpdateFails, AndKeepsTheList) {
    Update();
    const auto before = owner->DoGetDeviceList();
    const LogCapture log;
    producer.SetDeviceCount(0, 2);
    producer.FailCall(GetParam().function, 1, GenTL::GC_ERR_IO);
    EXPECT_FALSE(Update());
    EXPECT_EQ(owner->DoGetDeviceList(), before);
    EXPECT_THAT(log.Lines(), Contains(HasSubstr(GetParam().logged)));
}

INSTANTIATE_TEST_SUITE_P(
    At, InterfaceUpdateFails,
    ::testing::Values(UpdateRefusal{"IFUpdateDeviceList",
                                    ":'DoUpdateDeviceList':Planned failure of IFUpdateDeviceList"},
                      UpdateRefusal{"IFGetNumDevices", "{Planned failure of IFGetNumDevices}"},
                      UpdateRefusal{"GCWritePort",
                                    "{The two device information vectors have different size}"}),
    [](const auto& at) { return std::string(at.param.function); });

TEST_F(InterfaceTest, KeepsTheObjectOfADeviceThatStays) {
    Update();
    const auto first = First();
    producer.SetDeviceText(0, 0, "UserID", "Renamed");
    producer.SetDeviceText(0, 0, "DisplayName", "New name");
    producer.SetDeviceCount(0, 2);
    EXPECT_TRUE(Update());
    EXPECT_EQ(First(), first);
    EXPECT_EQ(first->DoGetDeviceInfo().displayName.value, "New name");
    EXPECT_EQ(first->DoGetCommonDeviceInfo().userId.value, "Renamed");
}

TEST_F(InterfaceTest, ForgetsAClosedDeviceThatVanished) {
    Update();
    const std::weak_ptr<IDevice> device = First();
    producer.LoseDevice(0, 0);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), IsEmpty());
    EXPECT_THAT(LostOpen(), IsEmpty());
    EXPECT_TRUE(device.expired());
}

TEST_F(InterfaceTest, KeepsADeviceThatVanishedWhileOpenAndTakesTheSameBack) {
    Update();
    const auto device = First();
    device->DoOpenDevice(3);
    void* const handle = device->DoGetDeviceHandle();
    producer.LoseDevice(0, 0);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), IsEmpty());
    EXPECT_THAT(owner->DoGetLostOpenDeviceList(), ElementsAre(device));
    producer.ReturnDevice(0, 0);
    EXPECT_TRUE(Update());
    EXPECT_THAT(owner->DoGetDeviceList(), ElementsAre(device));
    EXPECT_THAT(LostOpen(), IsEmpty());
    EXPECT_EQ(device->DoGetDeviceHandle(), handle);
}

TEST_F(InterfaceTest, ForgetsALostDeviceAtTheNextQuietUpdateAfterItsClose) {
    Update();
    const auto device = First();
    device->DoOpenDevice(3);
    producer.LoseDevice(0, 0);
    Update();
    EXPECT_FALSE(Update());
    EXPECT_THAT(owner->DoGetLostOpenDeviceList(), ElementsAre(device));
    device->DoCloseDevice();
    EXPECT_THAT(owner->DoGetLostOpenDeviceList(), ElementsAre(device));
    EXPECT_FALSE(Update());
    EXPECT_THAT(LostOpen(), IsEmpty());
}

TEST_F(InterfaceTest, KeepsTheOrderOfLostDevices) {
    producer.SetDeviceCount(0, 3);
    Update();
    for (const auto& device : owner->DoGetDeviceList()) {
        device->DoOpenDevice(3);
    }
    producer.LoseDevice(0, 2);
    Update();
    producer.LoseDevice(0, 0);
    Update();
    EXPECT_THAT(LostOpen(), ElementsAre("TestCamera0_0", "TestCamera0_2"));
    EXPECT_THAT(Present(), ElementsAre("TestCamera0_1"));
}

TEST_F(InterfaceTest, IsPlainForAnyTransportButGigEVision) {
    Update();
    EXPECT_TRUE(IsExactly<CInterface>(owner));
    EXPECT_EQ(owner->DoGetGevInterfaceInfo(), std::nullopt);
    EXPECT_EQ(owner->DoCreateDeviceByIPAddress(0x0A000005), nullptr);
    EXPECT_TRUE(IsExactly<CDevice>(First()));
    EXPECT_EQ(First()->DoGetGevDeviceInfo(), std::nullopt);
}

/// An interface for GigE Vision.
class GevInterfaceTest : public InterfaceTest {
protected:
    GevInterfaceTest() : InterfaceTest("OvGVTL.cti") {}
    CGevInterface& Gev() { return dynamic_cast<CGevInterface&>(*owner); }

    static constexpr int64_t kListed = 0xC0A80A64;
};

TEST_F(GevInterfaceTest, KnowsItsOwnAddressesWhileOpen) {
    const GEV_IF_INFO info = Gev().DoGetGevInterfaceInfo().value();
    EXPECT_EQ(info.ipAddress.value, 0xC0A80A01);
    EXPECT_EQ(info.subnetMask.value, 0xFFFFFF00);
    EXPECT_EQ(info.gateway.value, 0xC0A80AFE);
    EXPECT_TRUE(info.macAddress.valid);
    owner->DoCloseInterface();
    EXPECT_FALSE(Gev().DoGetGevInterfaceInfo()->ipAddress.valid);
}

TEST_F(GevInterfaceTest, ListsDevicesWithAddresses) {
    Update();
    const auto device = std::dynamic_pointer_cast<CGevDevice>(First());
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(device->DoGetGevDeviceInfo()->ipAddress.value, kListed);
    EXPECT_EQ(device->DoGetGevDeviceInfo()->macAddress.value, 0x00AABBCC0064);
}

TEST_F(GevInterfaceTest, TakesNewAddressesOfADeviceThatStays) {
    Update();
    const auto device = std::dynamic_pointer_cast<CGevDevice>(First());
    producer.SetDeviceNumber(0, 0, "IP", 0x0A000005);
    producer.SetDeviceCount(0, 2);
    Update();
    EXPECT_EQ(device->DoGetGevDeviceInfo()->ipAddress.value, 0x0A000005);
}

TEST_F(GevInterfaceTest, RefreshesTheAddressesOfItsDevicesWhenTheListStays) {
    Update();
    const auto device = std::dynamic_pointer_cast<CGevDevice>(First());
    producer.SetDeviceNumber(0, 0, "IP", 0x0A000005);
    producer.SetDeviceNumber(0, 0, "Mask", 0xFF000000);
    producer.SetDeviceNumber(0, 0, "Gateway", 0x0A000001);
    EXPECT_FALSE(Update());
    EXPECT_EQ(device->DoGetGevDeviceInfo()->ipAddress.value, 0x0A000005);
    EXPECT_EQ(device->DoGetGevDeviceInfo()->subnetMask.value, 0xFF000000);
    EXPECT_EQ(device->DoGetGevDeviceInfo()->gateway.value, 0x0A000001);
}

TEST_F(GevInterfaceTest, FindsAListedDeviceByItsAddress) {
    Update();
    EXPECT_EQ(Gev().DoCreateDeviceByIPAddress(kListed), First());
}

TEST_F(GevInterfaceTest, MakesADeviceForAnAddressOnce) {
    const auto made = Gev().DoCreateDeviceByIPAddress(kListed);
    EXPECT_EQ(made->DoGetDeviceInfo().id.value, "IP::192.168.10.100");
    EXPECT_EQ(made->DoGetDeviceInfo().tlType.value, "GEV");
    EXPECT_EQ(made->DoGetInterface(), owner);
    EXPECT_NE(dynamic_cast<CGevDevice*>(made.get()), nullptr);
    EXPECT_THAT(owner->DoGetDeviceList(), ElementsAre(made));
    EXPECT_EQ(Gev().DoCreateDeviceByIPAddress(kListed), made);
    EXPECT_THAT(owner->DoGetDeviceList(), ElementsAre(made));
    EXPECT_NE(Gev().DoCreateDeviceByIPAddress(kListed + 1), made);
}

TEST_F(GevInterfaceTest, OpensADeviceThatWasMadeForItsAddress) {
    const auto made = Gev().DoCreateDeviceByIPAddress(kListed);
    made->DoOpenDevice(3);
    EXPECT_TRUE(made->DoIsDeviceOpen());
    made->DoCloseDevice();
}

}  // namespace
}  // namespace OVTLClass
