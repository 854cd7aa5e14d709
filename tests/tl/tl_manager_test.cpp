// The manager brings all producers up or none, and takes them down in order.

#include <dlfcn.h>

#include <cstdlib>
#include <map>

#include "TLClassMain/Query.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Three producers under the manager.
class ManagerTest : public ProducerTest {
protected:
    ManagerTest()
        : ProducerTest("OvGVTL.cti"), usb(Staged("OvU3VTL.cti")), custom(Staged("KwTL.cti")) {
        usb.Reset();
        custom.Reset();
    }
    ~ManagerTest() override {
        manager.DoUninit();
        ExpectNothingOpen(usb);
        ExpectNothingOpen(custom);
    }

    void InitAll() { manager.DoInit({"OvGVTL.cti", "OvU3VTL.cti", "KwTL.cti"}); }

    /// The transports of the open system modules.
    std::vector<std::string> Types() {
        std::vector<std::string> types;
        for (const auto& tl : manager.DoGetTLList()) {
            types.push_back(tl->DoGetTLInfo().tlType.value);
        }
        return types;
    }

    TestProducer usb;
    TestProducer custom;
};

TEST_F(ManagerTest, IsOneObject) {
    EXPECT_EQ(CTLManager::GetInstance(), CTLManager::GetInstance());
    EXPECT_EQ(ITLManager::GetInstance(), CTLManager::GetInstance());
}

TEST_F(ManagerTest, KeepsTheOrderOfTheNames) {
    InitAll();
    EXPECT_THAT(Types(), ElementsAre("GEV", "U3V", "Custom"));
    manager.DoUninit();
    manager.DoInit({"KwTL.cti", "OvGVTL.cti"});
    EXPECT_THAT(Types(), ElementsAre("Custom", "GEV"));
}

TEST_F(ManagerTest, PassesOverANameThatIsNotThere) {
    const LogCapture log;
    manager.DoInit({"Missing.cti", "KwTL.cti"});
    EXPECT_THAT(Types(), ElementsAre("Custom"));
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(ManagerTest, RaisesWhenNoneOfTheNamesIsThere) {
    EXPECT_RAISES(CNotFoundTLError, "Not found TL library", manager.DoInit({"Missing.cti"}));
    InitAll();
}

TEST_F(ManagerTest, RefusesASecondInit) {
    InitAll();
    EXPECT_UNEXPECTED(-1, "Can not initialize again without uninitialization", InitAll());
    EXPECT_THAT(Types(), ElementsAre("GEV", "U3V", "Custom"));
}

TEST_F(ManagerTest, UninitBeforeInitDoesNothing) {
    manager.DoUninit();
    EXPECT_THAT(producer.Log(), IsEmpty());
}

TEST_F(ManagerTest, CanBeInitialisedAgainAfterUninit) {
    InitAll();
    manager.DoUninit();
    EXPECT_THAT(Types(), IsEmpty());
    InitAll();
    EXPECT_THAT(Types(), ElementsAre("GEV", "U3V", "Custom"));
}

TEST_F(ManagerTest, ASecondProducerThatFailsClosesTheFirstAndSparesTheThird) {
    usb.FailCall("GCInitLib", 1, GenTL::GC_ERR_ERROR);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_ERROR, "Planned failure of GCInitLib", InitAll());
    EXPECT_THAT(Types(), IsEmpty());
    EXPECT_EQ(producer.SuccessCount("TLOpen"), 1U);
    const std::vector<std::string> calls = producer.Log();
    ASSERT_GE(calls.size(), 2U);
    EXPECT_EQ(calls[calls.size() - 2], "TLClose");
    EXPECT_EQ(calls.back(), "GCCloseLib");
    EXPECT_THAT(usb.Log(), ElementsAre("GCInitLib", "GCGetLastError", "GCGetLastError"));
    EXPECT_THAT(custom.Log(), IsEmpty());
}

TEST_F(ManagerTest, AFileThatIsNoLibraryFailsAllTheOthers) {
    const std::vector<std::string> names = {"OvGVTL.cti", "Broken.cti", "KwTL.cti"};
    EXPECT_UNEXPECTED(-1, "Failed to load file " + Staged("Broken.cti") + "\n",
                      manager.DoInit(names));
    EXPECT_THAT(Types(), IsEmpty());
    EXPECT_THAT(custom.Log(), IsEmpty());
}

TEST_F(ManagerTest, ALibraryWithoutCallsIsNotComplete) {
    EXPECT_UNEXPECTED(-1, "The TL library is not complete", manager.DoInit({"Empty.cti"}));
}

TEST_F(ManagerTest, TakesProducersDownFromFirstToLast) {
    InitAll();
    const LogCapture log;
    producer.FailAfterCall("GCCloseLib", 1, GenTL::GC_ERR_ERROR);
    usb.FailAfterCall("TLClose", 1, GenTL::GC_ERR_ERROR);
    custom.FailAfterCall("GCCloseLib", 1, GenTL::GC_ERR_ERROR);
    manager.DoUninit();
    EXPECT_THAT(log.Lines(),
                ElementsAre(::testing::EndsWith(":'__Uninit':Planned failure of GCCloseLib"),
                            ::testing::EndsWith(":'DoCloseTL':Planned failure of TLClose"),
                            ::testing::EndsWith(":'__Uninit':Planned failure of GCCloseLib")));
    producer.Reset();
    usb.Reset();
    custom.Reset();
}

TEST_F(ManagerTest, MakesAGigEVisionModuleForThatTransportAlone) {
    InitAll();
    const auto list = manager.DoGetTLList();
    EXPECT_NE(dynamic_cast<CGevTL*>(list[0].get()), nullptr);
    EXPECT_TRUE(IsExactly<CTL>(list[1]));
    EXPECT_TRUE(IsExactly<CTL>(list[2]));
    EXPECT_EQ(CTLQuery::QueryAllTL().size(), 3U);
    EXPECT_EQ(CTLQuery::QueryAllGevTL().size(), 1U);
    EXPECT_EQ(CTLQuery::QueryAllGenericTL().size(), 3U);
}

TEST_F(ManagerTest, KnowsOnlyItsOwnModules) {
    InitAll();
    const auto first = std::dynamic_pointer_cast<CTL>(manager.DoGetTLList()[0]);
    EXPECT_EQ(manager.GetTLPointer(first.get()), first);
    manager.DoUninit();
    EXPECT_EQ(manager.GetTLPointer(first.get()), nullptr);
    EXPECT_EQ(manager.GetTLPointer(nullptr), nullptr);
}

TEST_F(ManagerTest, ReadsWhatTheProducerTellsOfItself) {
    InitAll();
    const TL_INFO info = manager.DoGetTLList()[0]->DoGetTLInfo();
    EXPECT_EQ(info.id.value, "OvTest_GEV");
    EXPECT_EQ(info.vendor.value, "oviapi");
    EXPECT_EQ(info.model.value, "TestProducer");
    EXPECT_EQ(info.version.value, "1.0.0");
    EXPECT_EQ(info.displayName.value, "Test Producer");
    EXPECT_EQ(info.name.value, "OvGVTL.cti");
    EXPECT_EQ(info.pathName.value, Staged("OvGVTL.cti"));
    EXPECT_TRUE(info.id.valid && info.vendor.valid && info.model.valid && info.version.valid &&
                info.displayName.valid && info.name.valid && info.pathName.valid);
}

TEST_F(ManagerTest, LeavesBlankWhatTheProducerRefusesToTell) {
    constexpr int32_t kVendor = 1;
    constexpr int32_t kType = 4;
    producer.FailCommand("GCGetInfo", kVendor, GenTL::GC_ERR_NOT_AVAILABLE);
    producer.FailCommand("GCGetInfo", kType, GenTL::GC_ERR_NOT_IMPLEMENTED);
    InitAll();
    const auto tl = manager.DoGetTLList()[0];
    EXPECT_FALSE(tl->DoGetTLInfo().vendor.valid);
    EXPECT_EQ(tl->DoGetTLInfo().vendor.value, "");
    EXPECT_TRUE(tl->DoGetTLInfo().model.valid);
    EXPECT_TRUE(IsExactly<CTL>(tl));
}

struct Step {
    const char* function;
    int32_t code;
};

/// Every producer call of an initialisation that has to succeed.
class ManagerInitFails : public ManagerTest, public ::testing::WithParamInterface<Step> {};

TEST_P(ManagerInitFails, AndUndoesAllSteps) {
    custom.FailCall(GetParam().function, 1, GetParam().code);
    EXPECT_UNEXPECTED(GetParam().code, "Planned failure of " + std::string(GetParam().function),
                      InitAll());
    EXPECT_THAT(Types(), IsEmpty());
    ExpectNothingOpen(producer);
    ExpectNothingOpen(usb);
    ExpectNothingOpen(custom);
    InitAll();
    EXPECT_EQ(Types().size(), 3U);
}

INSTANTIATE_TEST_SUITE_P(At, ManagerInitFails,
                         ::testing::Values(Step{"GCInitLib", GenTL::GC_ERR_RESOURCE_IN_USE},
                                           Step{"TLOpen", GenTL::GC_ERR_IO},
                                           Step{"GCGetNumPortURLs", GenTL::GC_ERR_IO},
                                           Step{"GCGetPortURLInfo", GenTL::GC_ERR_IO},
                                           Step{"GCReadPort", GenTL::GC_ERR_IO},
                                           Step{"GCGetPortInfo", GenTL::GC_ERR_NO_DATA}),
                         [](const auto& step) { return std::string(step.param.function); });

TEST_F(ManagerTest, SurvivesAFailureOfAnyCall) {
    InitAll();
    const std::vector<std::string> calls = custom.Log();
    manager.DoUninit();
    std::map<std::string, unsigned> seen;
    for (const std::string& call : calls) {
        SCOPED_TRACE(call + " " + std::to_string(++seen[call]));
        custom.Reset();
        custom.FailCall(call.c_str(), seen[call], GenTL::GC_ERR_ERROR);
        try {
            InitAll();
            EXPECT_EQ(Types().size(), 3U);
            manager.DoUninit();
        } catch (const CUnexpectedError& error) {
            EXPECT_EQ(error.GetStatus(), GenTL::GC_ERR_ERROR);
            EXPECT_THAT(Types(), IsEmpty());
        }
        ExpectNothingOpen(producer);
        ExpectNothingOpen(custom);
    }
    EXPECT_GE(calls.size(), 20U);
}

TEST_F(ManagerTest, LogsAnUndoThatFailsAndRaisesTheCause) {
    const LogCapture log;
    producer.FailCall("GCGetNumPortURLs", 1, GenTL::GC_ERR_IO);
    producer.FailAfterCall("TLClose", 1, GenTL::GC_ERR_ERROR);
    producer.FailAfterCall("GCCloseLib", 1, GenTL::GC_ERR_ERROR);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of GCGetNumPortURLs", InitAll());
    EXPECT_THAT(
        log.Lines(),
        ElementsAre(::testing::MatchesRegex(
                        ".*TL\\.cpp\\([0-9]+\\):'~CTLOpenAgency':Planned failure of TLClose"),
                    ::testing::MatchesRegex(
                        ".*TLManager\\.cpp\\([0-9]+\\):'~CGCInitLibAgency':Planned failure of "
                        "GCCloseLib")));
    producer.Reset();
}

bool IsLoaded(const char* fileName) {
    void* const handle = dlopen(Staged(fileName).c_str(), RTLD_LAZY | RTLD_NOLOAD);
    return handle != nullptr && dlclose(handle) == 0;
}

TEST(Manager, LeavesNothingLoadedAfterAFailure) {
    CTLManager& manager = *CTLManager::GetInstance();
    manager.DoInit({"OvGVTL.cti", "OvU3VTL.cti"});
    EXPECT_TRUE(IsLoaded("OvGVTL.cti"));
    manager.DoUninit();
    EXPECT_FALSE(IsLoaded("OvGVTL.cti"));
    EXPECT_THROW(manager.DoInit({"OvGVTL.cti", "OvU3VTL.cti", "Empty.cti"}), CUnexpectedError);
    EXPECT_FALSE(IsLoaded("OvGVTL.cti"));
    EXPECT_FALSE(IsLoaded("OvU3VTL.cti"));
    EXPECT_FALSE(IsLoaded("Empty.cti"));
}

TEST(Environment, CopiesAVariableToAnAlias) {
    setenv("OV_TEST_SOURCE", "a folder", 1);
    CTLManager::__SetGenICamEnvironment("OV_TEST_SOURCE", "OV_TEST_ALIAS");
    EXPECT_STREQ(getenv("OV_TEST_ALIAS"), "a folder");
}

TEST(Environment, RaisesForAVariableThatIsUnset) {
    unsetenv("OV_TEST_SOURCE");
    EXPECT_UNEXPECTED(-1, "Failed to get environment",
                      CTLManager::__SetGenICamEnvironment("OV_TEST_SOURCE", "OV_TEST_ALIAS"));
}

TEST(Environment, RaisesForAnAliasThatTheSystemRefuses) {
    setenv("OV_TEST_SOURCE", "a folder", 1);
    EXPECT_UNEXPECTED(-1, "Failed to set environment",
                      CTLManager::__SetGenICamEnvironment("OV_TEST_SOURCE", ""));
}

}  // namespace
}  // namespace OVTLClass
