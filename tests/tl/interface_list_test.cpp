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

/// What bounds the selector of an interface.
struct Bound {
    const char* name;
    const char* text;
};

class SelectorBound : public OddListTest, public ::testing::WithParamInterface<Bound> {};

TEST_P(SelectorBound, SaysNothingOfTheNumberOfDevices) {
    const std::string text = EngineTest::XmlNodeMap::Describe(
        std::string(R"(<Integer Name="DeviceSelector"><pValue>SelectorReg</pValue><Min>0</Min>)") +
        GetParam().text +
        R"(</Integer><IntReg Name="SelectorReg"><Address>0x208</Address><Length>8</Length>
           <AccessMode>RW</AccessMode><pPort>InterfacePort</pPort><Cachable>NoCache</Cachable>
           <Sign>Signed</Sign><Endianess>LittleEndian</Endianess></IntReg>
           <IntReg Name="CachedMax"><Address>0x210</Address><Length>8</Length>
           <AccessMode>RO</AccessMode><pPort>InterfacePort</pPort><Sign>Signed</Sign>
           <Endianess>LittleEndian</Endianess></IntReg><Port Name="InterfacePort"/>)");
    producer.SetDescription("Interface", "Interface.xml", text.data(), text.size());
    owner = InitInterface();
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestCamera0_0"));
    producer.SetDeviceCount(0, 3);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestCamera0_0", "TestCamera0_1", "TestCamera0_2"));
    producer.SetDeviceCount(0, 1);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestCamera0_0"));
    producer.SetDeviceCount(0, 0);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(That, SelectorBound,
                         ::testing::Values(Bound{"IsCached", "<pMax>CachedMax</pMax>"},
                                           Bound{"IsZero", "<Max>0</Max>"},
                                           Bound{"IsHuge", "<Max>0x7FFFFFFFFFFFFFFF</Max>"},
                                           Bound{"IsMissing", ""}),
                         [](const auto& that) { return std::string(that.param.name); });

TEST_F(OddListTest, CachedFeaturesAreReadAnewOnceTheListChanged) {
    const std::string text = EngineTest::XmlNodeMap::Describe(
        R"(<Integer Name="DeviceSelector"><pValue>SelectorReg</pValue><Min>0</Min>
           <pMax>CachedMax</pMax></Integer>
           <IntReg Name="SelectorReg"><Address>0x208</Address><Length>8</Length>
           <AccessMode>RW</AccessMode><pPort>InterfacePort</pPort><Cachable>NoCache</Cachable>
           <Sign>Signed</Sign><Endianess>LittleEndian</Endianess></IntReg>
           <IntReg Name="CachedMax"><Address>0x210</Address><Length>8</Length>
           <AccessMode>RO</AccessMode><pPort>InterfacePort</pPort><Sign>Signed</Sign>
           <Endianess>LittleEndian</Endianess></IntReg>
           <StringReg Name="DeviceUserID"><Address>0x480</Address><Length>128</Length>
           <AccessMode>RO</AccessMode><pPort>InterfacePort</pPort></StringReg>
           <Port Name="InterfacePort"/>)");
    producer.SetDescription("Interface", "Interface.xml", text.data(), text.size());
    owner = InitInterface();
    Update();
    EXPECT_EQ(owner->GetFeatureControl()->DoGetIntRange("DeviceSelector").max, 0);
    producer.SetDeviceCount(0, 2);
    EXPECT_TRUE(Update());
    EXPECT_EQ(owner->GetFeatureControl()->DoGetIntRange("DeviceSelector").max, 1);
    EXPECT_EQ(owner->DoGetDeviceList().at(0)->DoGetCommonDeviceInfo().userId.value, "User0_0");
    EXPECT_EQ(owner->DoGetDeviceList().at(1)->DoGetCommonDeviceInfo().userId.value, "User0_1");
    producer.SetDeviceText(0, 1, "UserID", "Renamed");
    EXPECT_FALSE(Update());
    EXPECT_EQ(owner->DoGetDeviceList().at(1)->DoGetCommonDeviceInfo().userId.value, "Renamed");
}

TEST_F(OddListTest, AnInterfaceOfAnotherTypeListsGigEVisionAndUsb3VisionDevices) {
    std::string body = R"(<Integer Name="DeviceSelector"><pValue>SelectorReg</pValue><Min>0</Min>
                          </Integer><Port Name="InterfacePort"/>)";
    constexpr struct {
        const char* name;
        const char* address;
    } registers[] = {{"SelectorReg", "0x208"},
                     {"GevDeviceMACAddress", "0x220"},
                     {"GevDeviceIPAddress", "0x228"}};
    for (const auto& reg : registers) {
        body += std::string("<IntReg Name=\"") + reg.name + "\"><Address>" + reg.address +
                "</Address><Length>8</Length><AccessMode>RW</AccessMode>"
                "<pPort>InterfacePort</pPort><Sign>Signed</Sign>"
                "<Endianess>LittleEndian</Endianess></IntReg>";
    }
    const std::string text = EngineTest::XmlNodeMap::Describe(body);
    producer.SetDescription("Interface", "Interface.xml", text.data(), text.size());
    producer.SetDeviceCount(0, 3);
    producer.SetDeviceText(0, 1, "TLType", "GEV");
    producer.SetDeviceText(0, 2, "TLType", "U3V");
    owner = InitInterface();
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestCamera0_0", "TestCamera0_1", "TestCamera0_2"));
    const auto devices = owner->DoGetDeviceList();
    EXPECT_EQ(std::dynamic_pointer_cast<CGevDevice>(devices[0]), nullptr);
    EXPECT_EQ(std::dynamic_pointer_cast<CGevDevice>(devices[2]), nullptr);
    const auto gev = std::dynamic_pointer_cast<CGevDevice>(devices[1]);
    ASSERT_NE(gev, nullptr);
    EXPECT_EQ(gev->DoGetGevDeviceInfo()->macAddress.value, 0x00AABBCC0065);
    EXPECT_EQ(gev->DoGetDeviceInfo().pSpecialInfo, nullptr);
    producer.SetDeviceNumber(0, 1, "IP", 0x0A000005);
    EXPECT_FALSE(Update());
    EXPECT_EQ(gev->DoGetGevDeviceInfo()->ipAddress.value, 0x0A000005);
}

TEST_F(OddListTest, AGigEVisionDeviceWithoutAddressesIsListedAllTheSame) {
    const std::string text = EngineTest::XmlNodeMap::Describe("<Port Name=\"InterfacePort\"/>");
    producer.SetDescription("Interface", "Interface.xml", text.data(), text.size());
    producer.SetDeviceText(0, 0, "TLType", "GEV");
    owner = InitInterface();
    EXPECT_TRUE(Update());
    const auto gev = std::dynamic_pointer_cast<CGevDevice>(First());
    ASSERT_NE(gev, nullptr);
    EXPECT_FALSE(gev->DoGetGevDeviceInfo()->macAddress.valid);
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
    EXPECT_EQ(IdOfAddress(kForeign), "IP::10.0.0.5");
    EXPECT_TRUE(IsMadeForAddress(*Gev().DoCreateDeviceByIPAddress(kForeign)));
    EXPECT_FALSE(IsMadeForAddress(*Gev().DoCreateDeviceByIPAddress(kListed)));
}

TEST_F(AddressDeviceTest, AreBlankButForTheirIdAndTransport) {
    const auto made = Gev().DoCreateDeviceByIPAddress(kForeign);
    const DEV_INFO info = made->DoGetDeviceInfo();
    EXPECT_EQ(info.vendor.value + info.model.value + info.displayName.value, "");
    EXPECT_FALSE(info.accessStatus.valid);
    EXPECT_FALSE(made->DoGetCommonDeviceInfo().serialNumber.valid);
    EXPECT_FALSE(made->DoGetGevDeviceInfo()->ipAddress.valid);
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
    EXPECT_EQ(Gev().DoGetGevInterfaceInfo()->ipAddress.value, 7);
    EXPECT_EQ(owner->DoGetInterfaceInfo().pSpecialInfo, nullptr);
    GEV_DEV_INFO foreign;
    info.pSpecialInfo = &foreign;
    owner->DoUpdateInterfaceInformation(info);
    EXPECT_EQ(Gev().DoGetGevInterfaceInfo()->ipAddress.value, 7);
}

TEST_F(AddressDeviceTest, ADeviceTakesAddressesThatBelongToItOnly) {
    const auto device = std::dynamic_pointer_cast<CGevDevice>(owner->DoGetDeviceList().at(0));
    ASSERT_NE(device, nullptr);
    DEV_INFO info = device->DoGetDeviceInfo();
    GEV_IF_INFO foreign;
    info.pSpecialInfo = &foreign;
    device->DoUpdateDeviceInformation(info);
    EXPECT_EQ(device->DoGetGevDeviceInfo()->ipAddress.value, kListed);
    GEV_DEV_INFO addresses;
    addresses.ipAddress = {kForeign, true};
    info.pSpecialInfo = &addresses;
    device->DoUpdateDeviceInformation(info);
    EXPECT_EQ(device->DoGetGevDeviceInfo()->ipAddress.value, kForeign);
    EXPECT_EQ(device->DoGetDeviceInfo().pSpecialInfo, nullptr);
}

}  // namespace
}  // namespace OVTLClass
