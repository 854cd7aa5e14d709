// List updates on threads of their own.

#include "TLClassUpdate/Updater.h"

#include <unistd.h>

#include <ctime>
#include <mutex>
#include <thread>

#include "TLClassDevice/Device.h"
#include "TransportTest.h"

namespace {

/// The pauses that were asked for, in microseconds.
class Pauses {
public:
    static void Note(useconds_t pause) {
        const std::lock_guard lock(s_mutex);
        s_pauses.push_back(pause);
    }
    /// Those so far, which are forgotten.
    static std::vector<useconds_t> Take() {
        const std::lock_guard lock(s_mutex);
        return std::exchange(s_pauses, {});
    }

private:
    static std::mutex s_mutex;
    static std::vector<useconds_t> s_pauses;
};

std::mutex Pauses::s_mutex;
std::vector<useconds_t> Pauses::s_pauses;

}  // namespace

/// Takes the place of the system's own: a test sees who would wait how long.
int usleep(useconds_t pause) {
    Pauses::Note(pause);
    const timespec length{0, static_cast<long>(pause % 1000000) * 1000};
    return nanosleep(&length, nullptr);
}

namespace OVTLClass {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Plays an updater.
class ScriptedUpdater : public IUpdater {
public:
    explicit ScriptedUpdater(std::vector<std::string>& steps, std::string name)
        : m_steps(steps), m_name(std::move(name)) {}

    void DoUpdate(unsigned timeout) override {
        m_steps.push_back(m_name + " update " + std::to_string(timeout));
        _SetTimeout(timeout);
        finished = finishesAtOnce;
    }
    bool DoIsFinished() override { return finished; }
    void DoStopUpdate() override { m_steps.push_back(m_name + " stop"); }

    unsigned Timeout() { return _GetTimeout(); }
    void SetChanged() { _SetListChangedFlag(true); }

    bool finished = true;
    bool finishesAtOnce = true;

private:
    std::vector<std::string>& m_steps;
    std::string m_name;
};

class UpdaterManager : public ::testing::Test {
protected:
    std::shared_ptr<ScriptedUpdater> Make(const std::string& name) {
        return std::make_shared<ScriptedUpdater>(steps, name);
    }

    std::vector<std::string> steps;
    std::shared_ptr<ScriptedUpdater> a = Make("a");
    std::shared_ptr<ScriptedUpdater> b = Make("b");
    CUpdaterManager::List list{a, nullptr, b};
    CUpdaterManager::List none;
    CUpdaterManager::List nulls{nullptr, nullptr};
};

TEST_F(UpdaterManager, StartsInOrderWithTheTimeout) {
    CUpdaterManager::StartAllUpdater(list, 250, 0);
    EXPECT_THAT(steps, ElementsAre("a update 250", "b update 250"));
    EXPECT_EQ(b->Timeout(), 250U);
}

TEST_F(UpdaterManager, DoesNotPauseWithoutAnInterval) {
    Pauses::Take();
    CUpdaterManager::StartAllUpdater({a, b, Make("c")}, 0, 0);
    EXPECT_THAT(Pauses::Take(), IsEmpty());
}

TEST_F(UpdaterManager, PausesBetweenTwoStartsAndNotAfterTheLast) {
    Pauses::Take();
    CUpdaterManager::StartAllUpdater({a, b, Make("c")}, 0, 3);
    EXPECT_THAT(Pauses::Take(), ElementsAre(3000, 3000));
    CUpdaterManager::StartAllUpdater({a}, 0, 3);
    EXPECT_THAT(Pauses::Take(), IsEmpty());
}

TEST_F(UpdaterManager, TellsWhetherAllAreFinished) {
    EXPECT_TRUE(CUpdaterManager::IsAllUpdaterFinished(list));
    b->finished = false;
    EXPECT_FALSE(CUpdaterManager::IsAllUpdaterFinished(list));
    EXPECT_TRUE(CUpdaterManager::IsAllUpdaterFinished(none));
    EXPECT_TRUE(CUpdaterManager::IsAllUpdaterFinished(nulls));
}

TEST_F(UpdaterManager, TellsWhetherOneIsFinished) {
    a->finished = false;
    EXPECT_TRUE(CUpdaterManager::IsOneUpdaterFinished(list));
    b->finished = false;
    EXPECT_FALSE(CUpdaterManager::IsOneUpdaterFinished(list));
    EXPECT_FALSE(CUpdaterManager::IsOneUpdaterFinished(none));
}

TEST_F(UpdaterManager, TellsWhetherOneChangedItsList) {
    EXPECT_FALSE(CUpdaterManager::IsOneUpdaterListChanged(list));
    b->SetChanged();
    EXPECT_TRUE(CUpdaterManager::IsOneUpdaterListChanged(list));
    EXPECT_FALSE(CUpdaterManager::IsOneUpdaterListChanged(none));
}

TEST_F(UpdaterManager, WaitsUpToTheTimeout) {
    EXPECT_EQ(CUpdaterManager::WaitForAllUpdaterFinished(list, 0), 1);
    a->finished = false;
    EXPECT_EQ(CUpdaterManager::WaitForAllUpdaterFinished(list, 2), 0);
    EXPECT_EQ(CUpdaterManager::WaitForOneUpdaterFinished(list, CUpdaterManager::kNoLimit), 1);
    b->finished = false;
    EXPECT_EQ(CUpdaterManager::WaitForOneUpdaterFinished(list, 2), 0);
}

TEST_F(UpdaterManager, DoesNotWaitForAListWithoutElements) {
    EXPECT_EQ(CUpdaterManager::WaitForOneUpdaterFinished(none, CUpdaterManager::kNoLimit), 1);
    EXPECT_EQ(CUpdaterManager::WaitForOneUpdaterFinished(nulls, CUpdaterManager::kNoLimit), 1);
    EXPECT_EQ(CUpdaterManager::WaitForAllUpdaterFinished(none, CUpdaterManager::kNoLimit), 1);
}

TEST_F(UpdaterManager, StopsThoseThatStillRun) {
    b->finished = false;
    CUpdaterManager::StopAllUpdater(list);
    EXPECT_THAT(steps, ElementsAre("b stop"));
}

TEST(ParallelUpdate, OfNothingChangesNothing) {
    bool changed = true;
    Pauses::Take();
    CStaticParalledUpdater::UpdateDeviceList({}, 1000, 1000, changed);
    EXPECT_FALSE(changed);
    changed = true;
    CStaticParalledUpdater::UpdateInterfaceList({nullptr}, 1000, changed);
    EXPECT_FALSE(changed);
    EXPECT_THAT(Pauses::Take(), IsEmpty());
}

/// Two producers, of which the second can be held up.
class ParallelUpdateOfTwo : public ProducerTest {
protected:
    ParallelUpdateOfTwo() : ProducerTest("OvGVTL.cti"), other(Staged("OvU3VTL.cti")) {
        other.Reset();
        other.SetProducerText("TLType", "GEV");
    }
    ~ParallelUpdateOfTwo() override {
        manager.DoUninit();
        ExpectNothingOpen(other);
    }
    void SetUp() override {
        manager.DoInit({"OvGVTL.cti", "OvU3VTL.cti"});
        tls = manager.DoGetTLList();
    }

    std::vector<std::shared_ptr<IInterface>> Interfaces() {
        bool changed = false;
        CStaticParalledUpdater::UpdateInterfaceList(tls, 0, changed);
        EXPECT_TRUE(changed);
        return {tls[0]->DoGetInterfaceList().at(0), tls[1]->DoGetInterfaceList().at(0)};
    }

    TestProducer other;
    std::vector<std::shared_ptr<ITL>> tls;
};

TEST_F(ParallelUpdateOfTwo, UpdatesAllInterfaceLists) {
    bool changed = false;
    CStaticParalledUpdater::UpdateInterfaceList(tls, 0, changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(tls[1]->DoGetInterfaceList().size(), 1U);
    CStaticParalledUpdater::UpdateInterfaceList(tls, 0, changed);
    EXPECT_FALSE(changed);
}

TEST_F(ParallelUpdateOfTwo, UpdatesAllDeviceLists) {
    const auto interfaces = Interfaces();
    bool changed = false;
    CStaticParalledUpdater::UpdateDeviceList({interfaces[0], nullptr, interfaces[1]}, 0, 0,
                                             changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(interfaces[0]->DoGetDeviceList().size(), 1U);
    EXPECT_EQ(interfaces[1]->DoGetDeviceList().size(), 1U);
    CStaticParalledUpdater::UpdateDeviceList(interfaces, 0, 0, changed);
    EXPECT_FALSE(changed);
    other.SetDeviceCount(0, 2);
    CStaticParalledUpdater::UpdateDeviceList(interfaces, 0, 0, changed);
    EXPECT_TRUE(changed);
}

TEST_F(ParallelUpdateOfTwo, TheFirstToEndStopsTheOther) {
    const auto interfaces = Interfaces();
    const std::uint64_t writesBefore = other.CallCount("GCWritePort");
    other.BlockCall("IFUpdateDeviceList");
    std::thread helper([&] {
        EXPECT_EQ(other.WaitForCalls("GCWritePort", writesBefore + 1, 60000), 0);
        other.ReleaseCall("IFUpdateDeviceList");
    });
    bool changed = false;
    CStaticParalledUpdater::UpdateDeviceList(interfaces, 0, 0, changed);
    helper.join();
    EXPECT_EQ(other.StopUpdateCount(0), 1);
    EXPECT_EQ(producer.StopUpdateCount(0), 0);
    EXPECT_TRUE(changed);
}

TEST_F(ParallelUpdateOfTwo, InterfaceUpdatesStopNobody) {
    other.BlockCall("TLUpdateInterfaceList");
    std::thread helper([&] {
        EXPECT_EQ(other.WaitForCalls("TLUpdateInterfaceList", 1, 60000), 0);
        other.ReleaseCall("TLUpdateInterfaceList");
    });
    bool changed = false;
    CStaticParalledUpdater::UpdateInterfaceList(tls, 0, changed);
    helper.join();
    EXPECT_TRUE(changed);
    EXPECT_EQ(tls[1]->DoGetInterfaceList().size(), 1U);
}

TEST_F(ParallelUpdateOfTwo, AnUpdaterRunsOneUpdateAtATime) {
    other.BlockCall("TLUpdateInterfaceList");
    CTLUpdater updater(tls[1]);
    EXPECT_TRUE(updater.DoIsFinished());
    updater.DoUpdate(0);
    ASSERT_EQ(other.WaitForCalls("TLUpdateInterfaceList", 1, 60000), 0);
    EXPECT_FALSE(updater.DoIsFinished());
    updater.DoUpdate(0);
    updater.DoStopUpdate();
    other.ReleaseCall("TLUpdateInterfaceList");
    while (!updater.DoIsFinished()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(other.CallCount("TLUpdateInterfaceList"), 1U);
    EXPECT_TRUE(updater.IsListChanged());
    updater.DoUpdate(0);
    while (!updater.DoIsFinished()) {
        std::this_thread::yield();
    }
    EXPECT_FALSE(updater.IsListChanged());
}

TEST_F(ParallelUpdateOfTwo, AStopOfAClosedInterfaceIsLogged) {
    const LogCapture log;
    const auto interfaces = Interfaces();
    interfaces[0]->DoCloseInterface();
    CIFUpdater(interfaces[0]).DoStopUpdate();
    EXPECT_THAT(log.Lines(), HasLogged("DoStopUpdate", "Null IFeatureControl pointer"));
}

TEST_F(ParallelUpdateOfTwo, AStopThatFailsIsLogged) {
    const auto interfaces = Interfaces();
    const LogCapture log;
    producer.FailCall("GCWritePort", 0, GenTL::GC_ERR_IO);
    CIFUpdater(interfaces[0]).DoStopUpdate();
    EXPECT_THAT(log.Lines(), Contains(HasSubstr("Planned failure of GCWritePort")));
}

}  // namespace
}  // namespace OVTLClass
