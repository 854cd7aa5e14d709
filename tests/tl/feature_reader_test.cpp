// Records from the features of a module's own description.

#include "FeatureNodes.h"
#include "TLClassInfo/FeatureAgency.h"
#include "TLClassInfo/FeatureReader.h"
#include "TransportTest.h"
#include "support/DescriptionXml.h"

namespace OVTLClass {
namespace {

using namespace DescriptionXml;  // NOLINT(google-build-using-namespace)

std::string Number(const std::string& name, int64_t value) {
    return IntegerXml(name, "", Element("Value", std::to_string(value)));
}

/// A number in a register of its own.
std::string Selector(const std::string& name, int64_t max) {
    const std::string address = name == "DeviceSelector" ? "0" : "8";
    return IntegerXml(name, "",
                      Element("pValue", name + "Reg") + "<Min>0</Min>" +
                          Element("Max", std::to_string(max))) +
           RegXml{.name = name + "Reg",
                  .caching = "",
                  .place = Element("Address", address),
                  .sign = "Unsigned"}();
}

std::string Text(const std::string& name, const std::string& value) {
    return "<String Name=\"" + name + "\"><Value>" + value + "</Value></String>";
}

/// Follows the value of a selector: `first` plus the index.
std::string Selected(const std::string& name, const std::string& selector, int64_t first) {
    return "<IntSwissKnife Name=\"" + name + "\"><pVariable Name=\"INDEX\">" + selector +
           "</pVariable><Formula>INDEX + " + std::to_string(first) + "</Formula></IntSwissKnife>";
}

TEST(FeatureReader, ReadsAsManyRecordsAsTheProducerCounts) {
    const std::string unbounded =
        "<Integer Name=\"DeviceSelector\"><Value>0</Value></Integer>"
        "<Integer Name=\"InterfaceSelector\"><Value>0</Value></Integer>";
    for (const std::string& selectors :
         {unbounded, Selector("DeviceSelector", 9) + Selector("InterfaceSelector", 9)}) {
        FeatureNodes nodes(selectors);
        for (const size_t count : {0U, 1U, 3U}) {
            EXPECT_EQ(
                CCommonFeatureAgency::GetAllDeviceFeatureByInterface(nodes.Control(), count).size(),
                count);
            EXPECT_EQ(
                CGevFeatureAgency::GetAllDeviceFeatureByInterface(nodes.Control(), count).size(),
                count);
            EXPECT_EQ(CGevFeatureAgency::GetAllInterfaceFeatureByTL(nodes.Control(), count).size(),
                      count);
        }
    }
}

TEST(FeatureReader, LeavesTheRecordBlankOfAnIndexThatTheSelectorRefuses) {
    FeatureNodes nodes(Selector("DeviceSelector", 0) + Text("DeviceUserID", "Of the first"));
    const LogCapture log;
    const auto all = CCommonFeatureAgency::GetAllDeviceFeatureByInterface(nodes.Control(), 2);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].userId.value, "Of the first");
    EXPECT_FALSE(all[1].userId.valid);
    EXPECT_EQ(all[1].userId.value, "");
    EXPECT_THAT(log.Lines(),
                ::testing::ElementsAre(::testing::HasSubstr(":'Selects':{DoSetInt:line[")));
}

TEST(FeatureReader, LeavesRecordsBlankWithoutASelector) {
    FeatureNodes nodes(Text("DeviceUserID", "Of whom?"));
    const auto all = CCommonFeatureAgency::GetAllDeviceFeatureByInterface(nodes.Control(), 1);
    ASSERT_EQ(all.size(), 1U);
    EXPECT_FALSE(all[0].userId.valid);
    EXPECT_EQ(CGevFeatureAgency::GetAllInterfaceFeatureByTL(nodes.Control(), 2).size(), 2U);
    EXPECT_EQ(CGevFeatureAgency::GetAllDeviceFeatureByInterface(nodes.Control(), 2).size(), 2U);
}

TEST(FeatureReader, ReadsPastTheCaches) {
    FeatureNodes nodes(
        "<StringReg Name=\"DeviceUserID\"><Address>0</Address><Length>4</Length>"
        "<AccessMode>RO</AccessMode><pPort>Device</pPort></StringReg>"
        "<Integer Name=\"GevDeviceIPAddress\"><pValue>IpReg</pValue></Integer>"
        "<IntReg Name=\"IpReg\"><Address>4</Address><Length>4</Length><AccessMode>RO</AccessMode>"
        "<pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>");
    nodes.Port().PutBytes(0, {'O', 'l', 'd', 0, 1, 0, 0, 0});
    CCommonFeatureAgency::GetDeviceFeatureBySelf(nodes.Control());
    CGevFeatureAgency::GetDeviceFeatureBySelf(nodes.Control());
    nodes.Port().PutBytes(0, {'N', 'e', 'w', 0, 2, 0, 0, 0});
    EXPECT_EQ(CCommonFeatureAgency::GetDeviceFeatureBySelf(nodes.Control()).userId.value, "New");
    EXPECT_EQ(CGevFeatureAgency::GetDeviceFeatureBySelf(nodes.Control()).ipAddress.value, 2);
}

TEST(FeatureReader, LeavesAMissingFeatureInvalidAndGoesOn) {
    FeatureNodes nodes(Text("DeviceVersion", "1.2") + Text("DeviceUserID", "Left"));
    const COMMON_DEVICE_INFO info = CCommonFeatureAgency::GetDeviceFeatureBySelf(nodes.Control());
    EXPECT_TRUE(info.version.valid);
    EXPECT_EQ(info.version.value, "1.2");
    EXPECT_FALSE(info.serialNumber.valid);
    EXPECT_EQ(info.serialNumber.value, "");
    EXPECT_TRUE(info.userId.valid);
    EXPECT_EQ(info.userId.value, "Left");
}

TEST(FeatureReader, LeavesAFeatureOfAnotherTypeInvalid) {
    FeatureNodes nodes(Number("DeviceVersion", 1) + Text("GevVersionMajor", "2") +
                       Number("GevVersionMinor", 3));
    EXPECT_FALSE(CCommonFeatureAgency::GetDeviceFeatureBySelf(nodes.Control()).version.valid);
    const GEV_TL_INFO info = CGevFeatureAgency::GetTLFeatureBySelf(nodes.Control());
    EXPECT_FALSE(info.versionMajor.valid);
    EXPECT_TRUE(info.versionMinor.valid);
    EXPECT_EQ(info.versionMinor.value, 3);
}

TEST(FeatureReader, LeavesAFeatureThatCannotBeReadInvalid) {
    FeatureNodes nodes(
        "<StringReg Name=\"InterfaceDescription\"><Address>0</Address>"
        "<Length>8</Length><AccessMode>RO</AccessMode><pPort>Device</pPort>"
        "</StringReg>");
    nodes.Port().FailAccess(1);
    EXPECT_FALSE(
        CCommonFeatureAgency::GetInterfaceFeatureBySelf(nodes.Control()).description.valid);
    nodes.Port().PutBytes(0, {'L', 'A', 'N', 0, 0, 0, 0, 0});
    const auto info = CCommonFeatureAgency::GetInterfaceFeatureBySelf(nodes.Control());
    EXPECT_TRUE(info.description.valid);
    EXPECT_EQ(info.description.value, "LAN");
}

void ExpectAddresses(const GEV_ADDRESS_INFO& info, int64_t mac, int64_t ip, int64_t mask,
                     int64_t gateway) {
    EXPECT_TRUE(info.macAddress.valid && info.ipAddress.valid && info.subnetMask.valid &&
                info.gateway.valid);
    EXPECT_EQ(info.macAddress.value, mac);
    EXPECT_EQ(info.ipAddress.value, ip);
    EXPECT_EQ(info.subnetMask.value, mask);
    EXPECT_EQ(info.gateway.value, gateway);
}

TEST(FeatureReader, ReadsTheAddressesOfAnInterfaceFromItself) {
    FeatureNodes nodes(Number("GevInterfaceMACAddress", 1) +
                       Number("GevInterfaceSubnetIPAddress", 2) +
                       Number("GevInterfaceSubnetMask", 3) + Number("GevInterfaceGateway", 4));
    ExpectAddresses(CGevFeatureAgency::GetInterfaceFeatureBySelf(nodes.Control()), 1, 2, 3, 4);
}

TEST(FeatureReader, ReadsTheAddressesOfADeviceFromItself) {
    FeatureNodes nodes(Number("GevDeviceMACAddress", 1) + Number("GevDeviceIPAddress", 2) +
                       Number("GevDeviceSubnetMask", 3) + Number("GevDeviceGateway", 4));
    ExpectAddresses(CGevFeatureAgency::GetDeviceFeatureBySelf(nodes.Control()), 1, 2, 3, 4);
}

TEST(FeatureReader, SelectsEachInterfaceOfASystemInTurn) {
    const char* const selector = "InterfaceSelector";
    FeatureNodes nodes(Selector(selector, 2) + Selected("GevInterfaceMACAddress", selector, 10) +
                       Selected("GevInterfaceDefaultIPAddress", selector, 20) +
                       Selected("GevInterfaceDefaultSubnetMask", selector, 30) +
                       Selected("GevInterfaceDefaultGateway", selector, 40));
    const auto all = CGevFeatureAgency::GetAllInterfaceFeatureByTL(nodes.Control(), 3);
    ASSERT_EQ(all.size(), 3U);
    ExpectAddresses(all[0], 10, 20, 30, 40);
    ExpectAddresses(all[2], 12, 22, 32, 42);
    EXPECT_EQ(nodes->DoGetInt(selector), 2);
}

TEST(FeatureReader, SelectsEachDeviceOfAnInterfaceInTurn) {
    const char* const selector = "DeviceSelector";
    FeatureNodes nodes(Selector(selector, 1) + Selected("GevDeviceMACAddress", selector, 10) +
                       Selected("GevDeviceIPAddress", selector, 20) +
                       Selected("GevDeviceSubnetMask", selector, 30) +
                       Selected("GevDeviceGateway", selector, 40));
    const auto all = CGevFeatureAgency::GetAllDeviceFeatureByInterface(nodes.Control(), 2);
    ASSERT_EQ(all.size(), 2U);
    ExpectAddresses(all[1], 11, 21, 31, 41);
}

TEST(FeatureReader, GivesWhatItGatheredBeforeASelectionFailed) {
    FeatureNodes nodes(Selector("DeviceSelector", 3));
    const LogCapture log;
    nodes.Port().FailAccess(3);
    EXPECT_EQ(CCommonFeatureAgency::GetAllDeviceFeatureByInterface(nodes.Control(), 4).size(), 2U);
    EXPECT_THAT(log.Lines(), ::testing::Contains(::testing::HasSubstr("Access failed")));
}

}  // namespace
}  // namespace OVTLClass
