#include <gtest/gtest.h>

#include <semaphore>
#include <thread>

#include "ScriptedCamera.h"
#include "gige/device/CameraConnection.h"
#include "gige/protocol/Bootstrap.h"

namespace OvGige {

void PrintTo(const RegisterWrite& write, std::ostream* out) {
    *out << std::hex << write.address << "=" << write.value;
}

}  // namespace OvGige

namespace {

using namespace OvGige;
using namespace std::chrono_literals;
using OvProducer::Failure;

using Writes = std::vector<RegisterWrite>;

class CameraConnectionTest : public testing::Test {
protected:
    CameraConnectionTest() {
        m_camera[kRegHeartbeatTimeout] = 600'000;  // one beat, and the next after the test
    }

    std::unique_ptr<CameraConnection> Connect(Access access = Access::Control) {
        return std::make_unique<CameraConnection>(
            m_camera.Link(), ConnectionOptions{.access = access,
                                               .patience = {},
                                               .isAbandoned = [](const Endpoint&) { return false; },
                                               .pause = [](std::chrono::milliseconds) {},
                                               .onLoss =
                                                   [this] {
                                                       ++m_losses;
                                                       m_lost.release();
                                                   }});
    }

    /// Waits for the heartbeat's first two reads, after which it sends nothing for the rest of a
    /// test.
    void WaitForFirstBeat() const {
        while (m_camera.Commands() < 5) {
            std::this_thread::yield();
        }
    }

    ScriptedCamera m_camera;
    std::atomic<int> m_losses = 0;
    std::binary_semaphore m_lost{0};
};

TEST_F(CameraConnectionTest, TakesTheCameraAndGivesItBack) {
    Connect();
    EXPECT_EQ(m_camera.Writes(), Writes({{kRegPrivilege, kPrivilegeControl}, {kRegPrivilege, 0}}));
}

TEST_F(CameraConnectionTest, ForReadingWritesNothing) {
    m_camera[kRegControlCapability] = 0xFFFFFFFF;
    Connect(Access::ReadOnly);
    EXPECT_EQ(m_camera.Writes(), Writes());
}

TEST_F(CameraConnectionTest, SwitchesOnWhatTheCameraOffers) {
    m_camera[kRegControlCapability] =
        kOffersPending | kOffersExtendedStatus1 | kOffersExtendedStatus2;
    m_camera[kRegControlConfig] = 0x00080000;  // a synchronised clock, which stays as it is
    Connect();
    EXPECT_EQ(m_camera[kRegControlConfig], 0x000C0006U);
}

TEST_F(CameraConnectionTest, SwitchesOnNothingElse) {
    m_camera[kRegControlCapability] = ~(kOffersPending | kOffersExtendedStatus1);
    Connect();
    EXPECT_EQ(m_camera[kRegControlConfig], 0x00040000U);
}

TEST_F(CameraConnectionTest, SwitchesTheHeartbeatOnAgain) {
    m_camera[kRegControlConfig] = kConfigHeartbeatOff;
    Connect();
    EXPECT_EQ(m_camera[kRegControlConfig], 0U);
}

TEST_F(CameraConnectionTest, GivesTheCameraBackThatCantBeConfigured) {
    m_camera[kRegControlConfig] = kConfigHeartbeatOff;
    m_camera.Refuse(kRegControlConfig, Status::WriteProtect);
    EXPECT_THROW(Connect(), Refusal);
    EXPECT_EQ(m_camera.Writes(), Writes({{kRegPrivilege, kPrivilegeControl}, {kRegPrivilege, 0}}));
}

TEST_F(CameraConnectionTest, GivesUpACameraThatDoesntAnswerAfterTwoTries) {
    m_camera.FallSilent();
    try {
        Connect();
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_TIMEOUT);
    }
    EXPECT_EQ(m_camera.Commands(), 2);
}

TEST_F(CameraConnectionTest, KnowsTheFrequencyOfTheCamerasClock) {
    m_camera[kRegTickFrequencyHigh] = 1;
    m_camera[kRegTickFrequencyLow] = 2;
    EXPECT_EQ(Connect()->TickFrequency(), 0x1'0000'0002U);
}

TEST_F(CameraConnectionTest, IsLostOnceWithTheFirstReason) {
    const auto connection = Connect();
    connection->CheckUsable();
    connection->Lose("The adapter eth0 is down");
    connection->Lose("The camera has another owner");
    EXPECT_EQ(m_losses, 1);
    try {
        connection->CheckUsable();
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_CUSTOM_ID);
        EXPECT_STREQ(failure.what(), "The adapter eth0 is down");
    }
}

TEST_F(CameraConnectionTest, ServesNobodyOnceItIsClosed) {
    const auto connection = Connect();
    connection->Close();
    EXPECT_EQ(m_camera.Writes(), Writes({{kRegPrivilege, kPrivilegeControl}, {kRegPrivilege, 0}}));
    EXPECT_THROW(connection->Memory().ReadRegister(0), Failure);
    connection->Close();
    EXPECT_EQ(m_camera.Writes().size(), 2U);
}

TEST_F(CameraConnectionTest, SendsNothingOnceItIsLost) {
    const auto connection = Connect();
    WaitForFirstBeat();
    connection->Lose("The adapter eth0 is down");
    const int before = m_camera.Commands();
    EXPECT_THROW(connection->Memory().ReadRegister(0), Failure);
    EXPECT_EQ(m_camera.Commands(), before);
}

TEST_F(CameraConnectionTest, IsNotGivenBackOnceItIsLost) {
    {
        const auto connection = Connect();
        connection->Lose("The adapter eth0 is down");
    }
    EXPECT_EQ(m_camera.Writes(), Writes({{kRegPrivilege, kPrivilegeControl}}));
}

TEST_F(CameraConnectionTest, IsLostByAHeartbeatThatHasNoOwnerAnyMore) {
    m_camera[kRegHeartbeatTimeout] = 3;
    const auto connection = Connect();
    m_camera.Set(kRegPrivilege, 0);
    m_lost.acquire();
    EXPECT_THROW(connection->CheckUsable(), Failure);
}

TEST_F(CameraConnectionTest, WaitsForASilentCameraOnceWhenItEnds) {
    auto connection = Connect();
    WaitForFirstBeat();
    m_camera.FallSilent();
    connection.reset();
    EXPECT_EQ(m_camera.Commands(), 6);
}

}  // namespace
