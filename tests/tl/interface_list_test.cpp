// The list of an interface where producers are odd: counts that don't match,
// IDs that come twice, and devices that were made for an address.

#include "InterfaceListTest.h"
#include "TLClassFeature/FeatureControl.h"
#include "support/XmlNodeMap.h"

namespace OVTLClass {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class OddListTest : public InterfaceListTest {
protected:
    explicit OddListTest(const char* fileName = "KwTL.cti") : InterfaceListTest(fileName) {}
};

TEST_F(OddListTest, ASelectorUpToZeroCountsOneDevice) {
    // Producers whose selector can't be empty lose their last device late.
    const std::string text = EngineTest::XmlNodeMap::Describe(
        R"(<Integer Name="DeviceSelector"><pValue>SelectorReg</pValue><Min>0</Min><Max>0</Max>
           </Integer><IntReg Name="SelectorReg"><Address>0x240</Address><Length>8</Length>
           <AccessMode>RW</AccessMode><pPort>InterfacePort</pPort><Sign>Signed</Sign>
           <Endianess>LittleEndian</Endianess></IntReg><Port Name="InterfacePort"/>)");
    producer.SetDescription("Interface", "Interface.xml", text.data(), text.size());
    owner = InitInterface();
    EXPECT_TRUE(Update());
    const auto before = owner->DoGetDeviceList();
    ASSERT_EQ(before.size(), 1U);
    const LogCapture log;
    producer.SetDeviceCount(0, 0);
    EXPECT_FALSE(Update());
    EXPECT_EQ(owner->DoGetDeviceList(), before);
    EXPECT_THAT(log.Lines(), Contains(HasSubstr("The two device information vectors have "
                                                "different size")));
}

TEST_F(OddListTest, AFailedUpdateKeepsTheLostDevicesToo) {
    owner = InitInterface();
    Update();
    const auto device = First();
    device->DoOpenDevice(3);
    producer.LoseDevice(0, 0);
    Update();
    device->DoCloseDevice();
    producer.FailCall("IFUpdateDeviceList", 1, GenTL::GC_ERR_IO);
    EXPECT_FALSE(Update());
    EXPECT_THAT(owner->DoGetLostOpenDeviceList(), ElementsAre(device));
    EXPECT_FALSE(Update());
    EXPECT_THAT(owner->DoGetLostOpenDeviceList(), IsEmpty());
}

TEST_F(OddListTest, AProducerWithoutTheCallIsLoggedAsIncomplete) {
    owner = InitInterface();
    const LogCapture log;
    producer.FailCall("IFUpdateDeviceList", 1, -1);
    EXPECT_FALSE(Update());
    EXPECT_THAT(log.Lines(), HasLogged("DoUpdateDeviceList", "The TL library is not complete"));
}

TEST_F(OddListTest, ADeviceThatRefusesEveryFactIsListedByItsId) {
    owner = InitInterface();
    producer.FailCall("IFGetDeviceInfo", 0, GenTL::GC_ERR_NOT_IMPLEMENTED);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestCamera0_0"));
    const DEV_INFO info = owner->DoGetDeviceList().at(0)->DoGetDeviceInfo();
    EXPECT_FALSE(info.vendor.valid || info.model.valid || info.tlType.valid);
    EXPECT_FALSE(info.displayName.valid || info.accessStatus.valid);
    EXPECT_EQ(info.accessStatus.value, 0);
}

TEST_F(OddListTest, TwoDevicesOfOneIdAreOneObjectOnceItIsKnown) {
    owner = InitInterface();
    Update();
    const auto device = First();
    producer.SetDeviceCount(0, 3);
    producer.SetDeviceText(0, 1, "ID", "TestCamera0_0");
    EXPECT_TRUE(Update());
    const auto now = owner->DoGetDeviceList();
    ASSERT_EQ(now.size(), 3U);
    EXPECT_EQ(now[0], device);
    EXPECT_EQ(now[1], device);
    EXPECT_NE(now[2], device);
}

/// Shows what only derived classes may ask.
class OpenedInterface : public CInterface {
public:
    using CInterface::__DoGetAllDeviceSpecialInformation;
    using CInterface::CInterface;
};

TEST_F(OddListTest, HasOneEmptySpecialRecordForEachDeviceOfAPlainInterface) {
    const auto tl = Init();
    OpenedInterface plain(std::make_shared<const CGenTLLib>(Staged("Empty.cti")), tl, nullptr, {});
    EXPECT_THAT(plain.__DoGetAllDeviceSpecialInformation(3),
                ElementsAre(nullptr, nullptr, nullptr));
    EXPECT_THAT(plain.__DoGetAllDeviceSpecialInformation(0), IsEmpty());
}

/// Devices that were made for an address.
class AddressDeviceTest : public OddListTest {
protected:
    AddressDeviceTest() : OddListTest("OvGVTL.cti") {}
    void SetUp() override {
        owner = InitInterface();
        Update();
    }
    CGevInterface& Gev() { return dynamic_cast<CGevInterface&>(*owner); }

    static constexpr int64_t kListed = 0xC0A80A64;
    static constexpr int64_t kForeign = 0x0A000005;
};

TEST_F(AddressDeviceTest, AreTheSameObjectForTheSameAddress) {
    const auto made = Gev().DoCreateDeviceByIPAddress(kForeign);
    EXPECT_EQ(Gev().DoCreateDeviceByIPAddress(kForeign), made);
    EXPECT_NE(Gev().DoCreateDeviceByIPAddress(kForeign + 1), made);
    EXPECT_EQ(owner->DoGetDeviceList().size(), 3U);
}

TEST_F(AddressDeviceTest, AreToldByTheirId) {
    EXPECT_EQ(CGevInterface::IdOfAddress(kForeign), "IP::10.0.0.5");
    EXPECT_TRUE(CGevInterface::IsMadeForAddress(*Gev().DoCreateDeviceByIPAddress(kForeign)));
    EXPECT_FALSE(CGevInterface::IsMadeForAddress(*Gev().DoCreateDeviceByIPAddress(kListed)));
}

TEST_F(AddressDeviceTest, AreBlankButForTheirIdAndTransport) {
    const auto made = Gev().DoCreateDeviceByIPAddress(kForeign);
    const DEV_INFO info = made->DoGetDeviceInfo();
    EXPECT_EQ(info.vendor.value + info.model.value + info.displayName.value, "");
    EXPECT_FALSE(info.accessStatus.valid);
    EXPECT_FALSE(made->DoGetCommonDeviceInfo().serialNumber.valid);
    EXPECT_FALSE(dynamic_cast<CGevDevice&>(*made).GetGevDeviceInfo().ipAddress.valid);
}

TEST_F(AddressDeviceTest, StayWhileTheListStays) {
    const auto made = Gev().DoCreateDeviceByIPAddress(kForeign);
    EXPECT_FALSE(Update());
    EXPECT_EQ(Gev().DoCreateDeviceByIPAddress(kForeign), made);
}

TEST_F(AddressDeviceTest, GoWithTheNextListWhenTheyAreClosed) {
    const std::weak_ptr<IDevice> made = Gev().DoCreateDeviceByIPAddress(kForeign);
    producer.SetDeviceCount(0, 2);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestCamera0_0", "TestCamera0_1"));
    EXPECT_TRUE(made.expired());
}

TEST_F(AddressDeviceTest, CountAsLostWhileTheyAreOpen) {
    producer.SetForeign(0, 0, 1);
    Update();
    const auto made = Gev().DoCreateDeviceByIPAddress(kListed);
    made->DoOpenDevice(4);
    producer.SetDeviceCount(0, 2);
    EXPECT_TRUE(Update());
    EXPECT_THAT(owner->DoGetLostOpenDeviceList(), ElementsAre(made));
    EXPECT_EQ(made->DoGetRemoteDeviceFeatureControl()->DoGetInt("Width"), 64);
    made->DoCloseDevice();
    EXPECT_FALSE(Update());
    EXPECT_THAT(owner->DoGetLostOpenDeviceList(), IsEmpty());
}

TEST_F(AddressDeviceTest, AreNotMadeForAnInterfaceThatIsGone) {
    producer.LoseInterface(0);
    bool changed = false;
    owner->DoGetTL()->DoUpdateInterfaceList(0, changed);
    EXPECT_TRUE(changed);
    EXPECT_UNEXPECTED(-1, "The system doesn't list the interface any more",
                      Gev().DoCreateDeviceByIPAddress(kForeign));
    EXPECT_EQ(Present().size(), 1U);
}

TEST_F(AddressDeviceTest, AnInterfaceTakesAddressesThatBelongToItOnly) {
    GEV_IF_INFO addresses;
    addresses.ipAddress = {7, true};
    IF_INFO info = owner->DoGetInterfaceInfo();
    info.pSpecialInfo = &addresses;
    owner->DoUpdateInterfaceInformation(info);
    EXPECT_EQ(Gev().GetGevInterfaceInfo().ipAddress.value, 7);
    EXPECT_EQ(owner->DoGetInterfaceInfo().pSpecialInfo, nullptr);
    GEV_DEV_INFO foreign;
    info.pSpecialInfo = &foreign;
    owner->DoUpdateInterfaceInformation(info);
    EXPECT_EQ(Gev().GetGevInterfaceInfo().ipAddress.value, 7);
}

TEST_F(AddressDeviceTest, ADeviceTakesAddressesThatBelongToItOnly) {
    const auto device = std::dynamic_pointer_cast<CGevDevice>(owner->DoGetDeviceList().at(0));
    ASSERT_NE(device, nullptr);
    DEV_INFO info = device->DoGetDeviceInfo();
    GEV_IF_INFO foreign;
    info.pSpecialInfo = &foreign;
    device->DoUpdateDeviceInformation(info);
    EXPECT_EQ(device->GetGevDeviceInfo().ipAddress.value, kListed);
    GEV_DEV_INFO addresses;
    addresses.ipAddress = {kForeign, true};
    info.pSpecialInfo = &addresses;
    device->DoUpdateDeviceInformation(info);
    EXPECT_EQ(device->GetGevDeviceInfo().ipAddress.value, kForeign);
    EXPECT_EQ(device->DoGetDeviceInfo().pSpecialInfo, nullptr);
}

}  // namespace
}  // namespace OVTLClass
