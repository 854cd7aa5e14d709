// The system module: opening, closing, and the list of its interfaces.

#include <algorithm>

#include "TLClassInterface/GevInterface.h"
#include "TransportTest.h"
#include "support/XmlNodeMap.h"

namespace OVTLClass {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// A module of the producer, made without the manager.
class SystemModule : public ProducerTest {
protected:
    SystemModule() : lib(std::make_shared<const CGenTLLib>(Staged(m_fileName))), tl(lib, {}) {
        lib->GCInitLib();
    }
    ~SystemModule() override {
        tl.DoCloseTL();
        lib->GCCloseLib();
    }

    void ExpectClosedAndEmpty() {
        EXPECT_FALSE(tl.DoIsTLOpen());
        EXPECT_EQ(tl.GetFeatureControl(), nullptr);
        EXPECT_EQ(tl.GetNodeMapRef(), nullptr);
        EXPECT_EQ(tl.GetXML(), "");
    }

    std::shared_ptr<const CGenTLLib> lib;
    CTL tl;
};

TEST_F(SystemModule, IsClosedAndEmptyAtFirst) {
    ExpectClosedAndEmpty();
}

TEST_F(SystemModule, HasFeaturesWhileItIsOpen) {
    tl.DoOpenTL();
    EXPECT_TRUE(tl.DoIsTLOpen());
    ASSERT_NE(tl.GetFeatureControl(), nullptr);
    EXPECT_EQ(tl.GetFeatureControl()->DoGetString("TLID"), "OvTest_Custom");
    EXPECT_THAT(tl.GetXML(), ::testing::HasSubstr("Description of the system module"));
    tl.DoCloseTL();
    ExpectClosedAndEmpty();
}

TEST_F(SystemModule, OpensOnce) {
    tl.DoOpenTL();
    tl.DoOpenTL();
    EXPECT_EQ(producer.CallCount("TLOpen"), 1U);
}

TEST_F(SystemModule, CloseOfAClosedModuleDoesNothing) {
    producer.ClearLog();
    tl.DoCloseTL();
    EXPECT_THAT(producer.Log(), IsEmpty());
}

TEST_F(SystemModule, AFailedOpeningLeavesItClosedAndCanBeRepeated) {
    producer.SetUrl("System", "");
    EXPECT_UNEXPECTED(-1, "UrlNum <= 0", tl.DoOpenTL());
    ExpectClosedAndEmpty();
    EXPECT_EQ(producer.OpenCount("System"), 0);
    producer.SetUrl("System", nullptr);
    tl.DoOpenTL();
    EXPECT_TRUE(tl.DoIsTLOpen());
}

TEST_F(SystemModule, LogsAFailedCloseAndIsClosed) {
    tl.DoOpenTL();
    const LogCapture log;
    producer.FailAfterCall("TLClose", 1, GenTL::GC_ERR_ERROR);
    tl.DoCloseTL();
    EXPECT_FALSE(tl.DoIsTLOpen());
    EXPECT_THAT(log.Lines(), HasLogged("DoCloseTL", "Planned failure of TLClose"));
    EXPECT_THAT(log.Lines(), SizeIs(1));
    // The planned failure left the producer's count of open modules behind.
    lib->GCCloseLib();
    producer.Reset();
    lib->GCInitLib();
}

TEST_F(SystemModule, UpdatesNothingWhileItIsClosed) {
    producer.ClearLog();
    bool changed = true;
    tl.DoUpdateInterfaceList(0, changed);
    EXPECT_FALSE(changed);
    EXPECT_THAT(producer.Log(), IsEmpty());
}

/// The interfaces of a system module under the manager.
class InterfaceList : public ProducerTest {
protected:
    explicit InterfaceList(const char* fileName = "KwTL.cti") : ProducerTest(fileName) {}
    void SetUp() override { tl = Init(); }

    bool Update() {
        bool changed = false;
        tl->DoUpdateInterfaceList(0, changed);
        return changed;
    }

    static std::vector<std::string> IdsOf(const std::vector<std::shared_ptr<IInterface>>& list) {
        std::vector<std::string> ids;
        for (const auto& entry : list) {
            ids.push_back(entry->DoGetInterfaceInfo().id.value);
        }
        return ids;
    }
    std::vector<std::string> Present() { return IdsOf(tl->DoGetInterfaceList()); }
    std::vector<std::string> Lost() { return IdsOf(tl->DoGetLostInterfaceList()); }

    std::shared_ptr<CTL> tl;
};

TEST_F(InterfaceList, IsEmptyBeforeTheFirstUpdate) {
    EXPECT_THAT(Present(), IsEmpty());
    EXPECT_THAT(Lost(), IsEmpty());
}

TEST_F(InterfaceList, HoldsOpenInterfacesInTheProducersOrder) {
    producer.SetInterfaceCount(3);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestInterface0", "TestInterface1", "TestInterface2"));
    for (const auto& entry : tl->DoGetInterfaceList()) {
        EXPECT_TRUE(entry->DoIsInterfaceOpen());
        EXPECT_EQ(entry->DoGetTL(), tl);
    }
}

TEST_F(InterfaceList, StaysAsItIsWhenTheProducerSaysSo) {
    producer.SetInterfaceCount(2);
    Update();
    producer.LoseInterface(0);
    Update();
    const auto before = tl->DoGetInterfaceList();
    producer.ClearLog();
    EXPECT_FALSE(Update());
    EXPECT_EQ(tl->DoGetInterfaceList(), before);
    EXPECT_THAT(Lost(), ElementsAre("TestInterface0"));
    EXPECT_THAT(producer.Log(), ElementsAre("TLUpdateInterfaceList"));
}

TEST_F(InterfaceList, StaysAsItIsWhenTheUpdateFails) {
    Update();
    const LogCapture log;
    producer.SetInterfaceCount(2);
    producer.FailCall("TLUpdateInterfaceList", 1, GenTL::GC_ERR_IO);
    EXPECT_FALSE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestInterface0"));
    EXPECT_THAT(log.Lines(),
                HasLogged("DoUpdateInterfaceList", "Planned failure of TLUpdateInterfaceList"));
}

TEST_F(InterfaceList, StaysAsItIsWhenTheCountFails) {
    Update();
    const LogCapture log;
    producer.SetInterfaceCount(2);
    producer.FailCall("TLGetNumInterfaces", 1, GenTL::GC_ERR_IO);
    EXPECT_FALSE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestInterface0"));
    EXPECT_THAT(log.Lines(),
                Contains(::testing::HasSubstr("Planned failure of TLGetNumInterfaces")));
}

TEST_F(InterfaceList, KeepsTheObjectOfAnInterfaceThatStays) {
    Update();
    const auto first = tl->DoGetInterfaceList().at(0);
    producer.SetInterfaceCount(2);
    producer.SetInterfaceText(0, "DisplayName", "Renamed");
    EXPECT_TRUE(Update());
    EXPECT_EQ(tl->DoGetInterfaceList().at(0), first);
    EXPECT_EQ(first->DoGetInterfaceInfo().displayName.value, "Renamed");
}

TEST_F(InterfaceList, MovesAnInterfaceThatVanishedToTheLostOnes) {
    producer.SetInterfaceCount(2);
    Update();
    const auto first = tl->DoGetInterfaceList().at(0);
    producer.LoseInterface(0);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestInterface1"));
    EXPECT_THAT(Lost(), ElementsAre("TestInterface0"));
    EXPECT_TRUE(first->DoIsInterfaceOpen());
    EXPECT_EQ(producer.CallCount("IFClose"), 0U);
}

TEST_F(InterfaceList, TakesALostInterfaceBackAsTheSameObject) {
    producer.SetInterfaceCount(2);
    Update();
    const auto first = tl->DoGetInterfaceList().at(0);
    producer.LoseInterface(0);
    Update();
    producer.ReturnInterface(0);
    EXPECT_TRUE(Update());
    EXPECT_EQ(tl->DoGetInterfaceList().at(0), first);
    EXPECT_THAT(Lost(), IsEmpty());
    EXPECT_EQ(producer.CallCount("TLOpenInterface"), 2U);
}

TEST_F(InterfaceList, ClosesLostInterfacesWithTheModule) {
    producer.SetInterfaceCount(2);
    Update();
    producer.LoseInterface(0);
    Update();
    tl->DoCloseTL();
    EXPECT_EQ(producer.SuccessCount("IFClose"), 2U);
    EXPECT_THAT(Present(), IsEmpty());
    EXPECT_THAT(Lost(), IsEmpty());
}

TEST_F(InterfaceList, LeavesOutAnInterfaceThatFailsToOpen) {
    const LogCapture log;
    producer.SetInterfaceCount(2);
    producer.FailCall("TLOpenInterface", 1, GenTL::GC_ERR_IO);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestInterface1"));
    EXPECT_THAT(Lost(), IsEmpty());
    EXPECT_THAT(log.Lines(), Contains(::testing::HasSubstr("Planned failure of TLOpenInterface")));
}

TEST_F(InterfaceList, UndoesTheOpeningOfAnInterfaceWithoutADescription) {
    producer.SetUrl("Interface", "");
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), IsEmpty());
    EXPECT_EQ(producer.SuccessCount("TLOpenInterface"), 1U);
    EXPECT_EQ(producer.SuccessCount("IFClose"), 1U);
}

TEST_F(InterfaceList, GivesTheSharedPointerOfItsOwnChildrenOnly) {
    Update();
    const auto first = tl->DoGetInterfaceList().at(0);
    EXPECT_EQ(tl->GetChild(first.get()), first);
    EXPECT_EQ(tl->GetChild(tl.get()), nullptr);
    EXPECT_EQ(tl->GetChild(nullptr), nullptr);
    tl->DoCloseTL();
    EXPECT_EQ(tl->GetChild(first.get()), nullptr);
}

/// The interfaces of a GigE Vision system module.
class GevInterfaceList : public InterfaceList {
protected:
    GevInterfaceList() : InterfaceList("OvGVTL.cti") {}
    CGevTL& Gev() { return dynamic_cast<CGevTL&>(*tl); }
};

TEST_F(GevInterfaceList, KnowsTheVersionOfTheModule) {
    EXPECT_EQ(Gev().GetGevTLInfo().versionMajor.value, 2);
    EXPECT_EQ(Gev().GetGevTLInfo().versionMinor.value, 0);
    EXPECT_TRUE(Gev().GetGevTLInfo().versionMajor.valid);
}

TEST_F(GevInterfaceList, HoldsInterfacesWithAddresses) {
    Update();
    const auto gev = std::dynamic_pointer_cast<CGevInterface>(tl->DoGetInterfaceList().at(0));
    ASSERT_NE(gev, nullptr);
    EXPECT_EQ(gev->DoGetGevInterfaceInfo()->ipAddress.value, 0xC0A80A01);
    EXPECT_EQ(gev->DoGetGevInterfaceInfo()->macAddress.value, 0x001122330001);
}

TEST_F(GevInterfaceList, KeepsNoAddressesOnceTheUpdateIsOver) {
    Update();
    EXPECT_THAT(Gev().GetAllGevInterfaceInfo(), IsEmpty());
    EXPECT_EQ(tl->DoGetInterfaceList().at(0)->DoGetInterfaceInfo().pSpecialInfo, nullptr);
}

TEST_F(GevInterfaceList, TakesNewAddressesOfAnInterfaceThatStays) {
    Update();
    const auto gev = std::dynamic_pointer_cast<CGevInterface>(tl->DoGetInterfaceList().at(0));
    producer.SetInterfaceNumber(0, "IP", 0x0A000001);
    producer.SetInterfaceCount(2);
    EXPECT_TRUE(Update());
    EXPECT_EQ(gev->DoGetGevInterfaceInfo()->ipAddress.value, 0x0A000001);
}

TEST_F(GevInterfaceList, RefreshesAddressesWhenTheListStays) {
    Update();
    const auto gev = std::dynamic_pointer_cast<CGevInterface>(tl->DoGetInterfaceList().at(0));
    producer.SetInterfaceNumber(0, "IP", 0x0A000001);
    EXPECT_FALSE(Update());
    EXPECT_EQ(gev->DoGetGevInterfaceInfo()->ipAddress.value, 0x0A000001);
    EXPECT_THAT(Gev().GetAllGevInterfaceInfo(), IsEmpty());
}

TEST_F(GevInterfaceList, RepeatsARenewalThatFailed) {
    Update();
    producer.SetInterfaceCount(2);
    producer.FailCall("TLGetNumInterfaces", 1, GenTL::GC_ERR_IO);
    EXPECT_FALSE(Update());
    EXPECT_TRUE(Update());
    EXPECT_EQ(tl->DoGetInterfaceList().size(), 2U);
    EXPECT_FALSE(Update());
}

/// A system whose description bounds its selector, or knows no addresses.
class OddSystemList : public GevInterfaceList, public ::testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        const std::string text = EngineTest::XmlNodeMap::Describe(
            std::string(GetParam()) +
            R"(<IntReg Name="SelectorReg"><Address>0x708</Address><Length>8</Length>
               <AccessMode>RW</AccessMode><pPort>TLPort</pPort><Cachable>NoCache</Cachable>
               <Sign>Signed</Sign><Endianess>LittleEndian</Endianess></IntReg>
               <IntReg Name="CachedMax"><Address>0x710</Address><Length>8</Length>
               <AccessMode>RO</AccessMode><pPort>TLPort</pPort><Sign>Signed</Sign>
               <Endianess>LittleEndian</Endianess></IntReg><Port Name="TLPort"/>)");
        producer.SetDescription("System", "System.xml", text.data(), text.size());
        GevInterfaceList::SetUp();
    }
};

TEST_P(OddSystemList, CountsInterfacesByTheProducer) {
    EXPECT_TRUE(Update());
    producer.SetInterfaceCount(3);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), ElementsAre("TestInterface0", "TestInterface1", "TestInterface2"));
    producer.SetInterfaceCount(0);
    EXPECT_TRUE(Update());
    EXPECT_THAT(Present(), IsEmpty());
}

TEST_P(OddSystemList, KeepsTheAddressesThatInterfacesTellThemselves) {
    Update();
    producer.SetInterfaceCount(2);
    Update();
    Update();
    const auto gev = std::dynamic_pointer_cast<CGevInterface>(tl->DoGetInterfaceList().at(0));
    ASSERT_NE(gev, nullptr);
    EXPECT_EQ(gev->DoGetGevInterfaceInfo()->ipAddress.value, 0xC0A80A01);
}

#define OV_TEST_SELECTOR(bound)                                                          \
    "<Integer Name=\"InterfaceSelector\"><pValue>SelectorReg</pValue><Min>0</Min>" bound \
    "</Integer>"
INSTANTIATE_TEST_SUITE_P(Of, OddSystemList,
                         ::testing::Values(OV_TEST_SELECTOR("<pMax>CachedMax</pMax>"),
                                           OV_TEST_SELECTOR("<Max>0</Max>"), OV_TEST_SELECTOR(""),
                                           ""));
#undef OV_TEST_SELECTOR

TEST_F(GevInterfaceList, StaysAsItIsWhenAddressesAreMissing) {
    Update();
    const auto before = tl->DoGetInterfaceList();
    const LogCapture log;
    producer.SetInterfaceCount(2);
    producer.FailCall("GCWritePort", 1, GenTL::GC_ERR_IO);
    EXPECT_FALSE(Update());
    EXPECT_EQ(tl->DoGetInterfaceList(), before);
    EXPECT_THAT(log.Lines(), Contains(::testing::HasSubstr(
                                 "The two interface information vectors have different size")));
    EXPECT_THAT(Gev().GetAllGevInterfaceInfo(), IsEmpty());
}

TEST_F(GevInterfaceList, AsksForAddressesAfterTheRecords) {
    producer.ClearLog();
    Update();
    const std::vector<std::string> calls = producer.Log();
    const auto position = [&calls](const char* name) {
        return std::find(calls.begin(), calls.end(), name) - calls.begin();
    };
    EXPECT_EQ(calls.at(0), "TLUpdateInterfaceList");
    EXPECT_EQ(calls.at(1), "TLGetNumInterfaces");
    EXPECT_LT(position("TLGetInterfaceInfo"), position("GCWritePort"));
    EXPECT_LT(position("GCWritePort"), position("TLOpenInterface"));
}

}  // namespace
}  // namespace OVTLClass
