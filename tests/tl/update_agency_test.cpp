// The whole search for cameras.

#include <algorithm>

#include "TLClassDevice/Device.h"
#include "TLClassUpdate/UpdateAgency.h"
#include "TransportTest.h"
#include "support/XmlNodeMap.h"

namespace OVTLClass {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

constexpr int64_t kLocal = 0;
constexpr int64_t kWhole = 1;

/// Looks for GigE Vision cameras on two adapters.
class GevSearch : public ProducerTest {
protected:
    GevSearch() : ProducerTest("OvGVTL.cti") {}
    void SetUp() override {
        producer.SetInterfaceCount(2);
        Init();
        agency = std::make_unique<CGevUpdateAgency>(CTLQuery::QueryAllGevTL());
    }
    void TearDown() override { agency.reset(); }

    bool Update() {
        bool changed = false;
        agency->DoUpdate(0, 0, changed);
        return changed;
    }
    static std::vector<std::string> Devices() {
        std::vector<std::string> ids;
        for (const auto& device : CDeviceQuery::QueryAllDevice()) {
            ids.push_back(device->DoGetDeviceInfo().id.value);
        }
        return ids;
    }
    /// Another description for interfaces, with the nodes that an update needs.
    void DescribeInterface(const std::string& body) {
        const std::string text = EngineTest::XmlNodeMap::Describe(
            R"(<Integer Name="DeviceSelector"><pValue>SelectorReg</pValue><Min>0</Min><Max>0</Max>
               </Integer><IntReg Name="SelectorReg"><Address>0x208</Address><Length>8</Length>
               <AccessMode>RW</AccessMode><pPort>InterfacePort</pPort><Sign>Signed</Sign>
               <Endianess>LittleEndian</Endianess></IntReg>
               <Integer Name="GevInterfaceSubnetIPAddress"><Value>1</Value></Integer>
               <Port Name="InterfacePort"/>)" +
            body);
        producer.SetDescription("Interface", "Interface.xml", text.data(), text.size());
    }

    std::unique_ptr<CGevUpdateAgency> agency;
};

TEST_F(GevSearch, FindsInterfacesAndTheirDevices) {
    EXPECT_TRUE(Update());
    EXPECT_THAT(Devices(), ElementsAre("TestCamera0_0", "TestCamera1_0"));
    EXPECT_EQ(CInterfaceQuery::QueryAllInterface().size(), 2U);
}

TEST_F(GevSearch, IsUnchangedWhenNothingIsNew) {
    Update();
    EXPECT_FALSE(Update());
}

TEST_F(GevSearch, IsChangedByEitherList) {
    Update();
    producer.SetDeviceCount(1, 2);
    EXPECT_TRUE(Update());
    producer.LoseInterface(1);
    EXPECT_TRUE(Update());
}

TEST_F(GevSearch, StaysInTheSubnetsUnlessTheWholeNetworkIsAskedFor) {
    bool changed = false;
    agency->DoUpdateInWholeNetwork(0, 0, changed);
    EXPECT_EQ(producer.SearchMode(0), kWhole);
    EXPECT_EQ(producer.SearchMode(1), kWhole);
    agency->DoUpdate(0, 0, changed);
    EXPECT_EQ(producer.SearchMode(0), kLocal);
    agency->DoUpdateInWholeNetwork(0, 0, changed);
    agency->DoUpdateInLocalNetwork(0, 0, changed);
    EXPECT_EQ(producer.SearchMode(1), kLocal);
}

TEST_F(GevSearch, SetsTheModeBeforeTheSearch) {
    Update();
    producer.ClearLog();
    Update();
    const std::vector<std::string> calls = producer.Log();
    const auto search = std::find(calls.begin(), calls.end(), "IFUpdateDeviceList");
    EXPECT_NE(std::find(calls.begin(), search, "GCWritePort"), search);
    EXPECT_NE(search, calls.end());
}

TEST_F(GevSearch, LogsAnInterfaceWithoutTheModeAndStillSearchesIt) {
    const LogCapture log;
    DescribeInterface("");
    EXPECT_TRUE(Update());
    EXPECT_THAT(log.Lines(), Contains(MatchesRegex(".*:'SetListMode':Cannot find the feature "
                                                   "\"DeviceUpdateListMode\" from the interface "
                                                   "\"TestInterface1\"")));
    EXPECT_THAT(Devices(), ElementsAre("TestCamera0_0", "TestCamera1_0"));
}

TEST_F(GevSearch, LogsAModeThatTheInterfaceLacksAndStillSearchesIt) {
    const LogCapture log;
    DescribeInterface(R"(<Enumeration Name="DeviceUpdateListMode">
        <EnumEntry Name="Other"><Value>0</Value></EnumEntry><Value>0</Value></Enumeration>)");
    EXPECT_TRUE(Update());
    EXPECT_THAT(log.Lines(),
                Contains(MatchesRegex(".*\\{The enumeration feature \"DeviceUpdateListMode\" does "
                                      "not contain the entry \"DirectedSubnetBroadcast\"\\}")));
    EXPECT_THAT(Devices(), ElementsAre("TestCamera0_0", "TestCamera1_0"));
}

TEST_F(GevSearch, LogsAnInterfaceWithoutFeatures) {
    Update();
    const LogCapture log;
    CInterfaceQuery::QueryAllInterface().at(0)->DoCloseInterface();
    Update();
    EXPECT_THAT(log.Lines(),
                Contains(MatchesRegex(".*:'SetListMode':Cannot find the feature control of the "
                                      "interface: TestInterface0")));
}

TEST_F(GevSearch, RefreshesAnAdapterWithoutAnAddressWithoutTellingSo) {
    producer.SetInterfaceNumber(0, "IP", 0);
    Update();
    EXPECT_THAT(Devices(), ElementsAre("TestCamera0_0", "TestCamera1_0"));
    producer.SetDeviceCount(0, 2);
    EXPECT_FALSE(Update());
    EXPECT_THAT(Devices(), ElementsAre("TestCamera0_0", "TestCamera0_1", "TestCamera1_0"));
}

TEST_F(GevSearch, GoesOnWhenOneInterfaceFails) {
    Update();
    const LogCapture log;
    producer.SetDeviceCount(0, 2);
    producer.SetDeviceCount(1, 2);
    producer.FailCall("IFUpdateDeviceList", 1, GenTL::GC_ERR_IO);
    EXPECT_TRUE(Update());
    EXPECT_EQ(Devices().size(), 3U);
    EXPECT_THAT(log.Lines(),
                HasLogged("DoUpdateDeviceList", "Planned failure of IFUpdateDeviceList"));
}

TEST_F(GevSearch, LeavesNothingOutOfAListWithEmptyPlaces) {
    CGevUpdateAgency sparse({nullptr, CTLQuery::QueryAllGevTL().at(0)});
    bool changed = false;
    sparse.DoUpdate(0, 0, changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(Devices().size(), 2U);
}

/// Looks for cameras of every other transport.
class GenericSearch : public ProducerTest {
protected:
    void SetUp() override {
        Init();
        agency = std::make_unique<CGenericUpdateAgency>(CTLQuery::QueryAllGenericTL());
    }
    void TearDown() override { agency.reset(); }

    bool Update() {
        bool changed = false;
        agency->DoUpdate(0, 0, changed);
        return changed;
    }

    std::unique_ptr<CGenericUpdateAgency> agency;
};

TEST_F(GenericSearch, FindsInterfacesAndTheirDevices) {
    EXPECT_TRUE(Update());
    EXPECT_EQ(CDeviceQuery::QueryAllDevice().size(), 1U);
    EXPECT_FALSE(Update());
}

TEST_F(GenericSearch, KnowsNoMode) {
    const LogCapture log;
    Update();
    EXPECT_THAT(log.Lines(), IsEmpty());
    EXPECT_EQ(producer.SearchMode(0), 0);
}

TEST_F(GenericSearch, RefreshesTheInterfacesFirst) {
    producer.ClearLog();
    Update();
    const std::vector<std::string> calls = producer.Log();
    EXPECT_EQ(calls.at(0), "TLUpdateInterfaceList");
    EXPECT_THAT(calls, Contains("IFUpdateDeviceList"));
}

}  // namespace
}  // namespace OVTLClass
