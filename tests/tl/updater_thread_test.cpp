// Updates when the system has no thread left.

#include <pthread.h>

#include "TLClassUpdate/Updater.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::Not;

/// No thread can be made while it lives: each would need more memory than
/// there are addresses for.
class NoThreads {
public:
    NoThreads() {
        pthread_getattr_default_np(&m_before);
        pthread_attr_t greedy;
        pthread_getattr_default_np(&greedy);
        pthread_attr_setstacksize(&greedy, size_t{1} << 60);
        EXPECT_EQ(pthread_setattr_default_np(&greedy), 0);
        pthread_attr_destroy(&greedy);
    }
    ~NoThreads() {
        pthread_setattr_default_np(&m_before);
        pthread_attr_destroy(&m_before);
    }
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;

private:
    pthread_attr_t m_before{};
};

class UpdateWithoutThreads : public ProducerTest {};

TEST_F(UpdateWithoutThreads, IsLoggedAndFinishedAtOnce) {
    CTLUpdater updater(Init());
    const LogCapture log;
    const NoThreads none;
    updater.DoUpdate(0);
    EXPECT_TRUE(updater.DoIsFinished());
    EXPECT_FALSE(updater.IsListChanged());
    EXPECT_THAT(log.Lines(), HasLogged("DoUpdate", "Failed to start thread"));
    EXPECT_EQ(producer.CallCount("TLUpdateInterfaceList"), 0U);
}

TEST_F(UpdateWithoutThreads, ForgetsTheChangeOfTheUpdateBefore) {
    const auto owner = InitInterface();
    const auto updater = std::make_shared<CIFUpdater>(owner);
    updater->DoUpdate(0);
    CUpdaterManager::WaitForAllUpdaterFinished({updater}, CUpdaterManager::kNoLimit);
    EXPECT_TRUE(updater->IsListChanged());
    const NoThreads none;
    updater->DoUpdate(0);
    EXPECT_FALSE(updater->IsListChanged());
}

TEST_F(UpdateWithoutThreads, OfManyListsReturnsWithoutAChange) {
    const auto owner = InitInterface();
    const LogCapture log;
    {
        const NoThreads none;
        bool changed = true;
        CStaticParalledUpdater::UpdateDeviceList({owner, owner}, 0, 0, changed);
        EXPECT_FALSE(changed);
        changed = true;
        CStaticParalledUpdater::UpdateInterfaceList({owner->DoGetTL()}, 0, changed);
        EXPECT_FALSE(changed);
    }
    EXPECT_EQ(log.Lines().size(), 3U);
    EXPECT_THAT(log.Lines(), Each(::testing::HasSubstr("Failed to start thread")));
    EXPECT_THAT(owner->DoGetDeviceList(), IsEmpty());
    bool changed = false;
    CStaticParalledUpdater::UpdateDeviceList({owner}, 0, 0, changed);
    EXPECT_TRUE(changed);
    EXPECT_THAT(owner->DoGetDeviceList(), Not(IsEmpty()));
}

}  // namespace
}  // namespace OVTLClass
