// Who may do what to a simulated camera, and for how long.

#include "ServerTest.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;
using namespace std::chrono_literals;

class Control : public ServerTest {};

TEST_F(Control, IsNeededToWrite) {
    EXPECT_EQ(WriteRegister(kRegPersistentIp, 1), Status::AccessDenied);
    EXPECT_EQ(WriteMemory(kApplicationBase + 0x0310, Bytes(4)).status, Status::AccessDenied);
    TakeControl();
    EXPECT_EQ(WriteRegister(kRegPersistentIp, 1), Status::Success);
}

TEST_F(Control, IsShownWithItsOwner) {
    EXPECT_EQ(Register(kRegPrivilege), 0U);
    TakeControl();
    EXPECT_EQ(Register(kRegPrivilege, kSecond), kPrivilegeControl);
    EXPECT_EQ(Register(kRegOwnerIp, kSecond), kFirst.ip.value);
    EXPECT_EQ(Register(kRegOwnerPort, kSecond), kFirst.port);
    EXPECT_EQ(m_account[Count::ControlTaken], 1U);
}

TEST_F(Control, IsDeniedToASecondHost) {
    TakeControl();
    EXPECT_EQ(WriteRegister(kRegPrivilege, kPrivilegeControl, kSecond), Status::AccessDenied);
    EXPECT_EQ(WriteRegister(kRegPrivilege, 0, kSecond), Status::AccessDenied);
    EXPECT_EQ(WriteRegister(kRegPersistentIp, 1, kSecond), Status::AccessDenied);
    EXPECT_EQ(ReadRegister(kRegVersion, kSecond).status, Status::Success);
    EXPECT_EQ(m_account[Count::ControlDenied], 2U);
}

TEST_F(Control, IsOfOnePortOfAHost) {
    TakeControl();
    const Endpoint otherPort{kFirst.ip, 1};
    EXPECT_EQ(WriteRegister(kRegPersistentIp, 1, otherPort), Status::AccessDenied);
}

TEST_F(Control, KeepsOthersFromReadingIfItIsExclusive) {
    TakeControl(kPrivilegeExclusive);
    EXPECT_EQ(ReadRegister(kRegVersion, kSecond).status, Status::AccessDenied);
    EXPECT_EQ(ReadMemory(kDescriptionAddress, 4, kSecond).status, Status::AccessDenied);
    EXPECT_EQ(Register(kRegPrivilege, kSecond), kPrivilegeExclusive);
    EXPECT_EQ(Register(kRegOwnerIp, kSecond), kFirst.ip.value);
    EXPECT_EQ(ReadRegister(kRegVersion).status, Status::Success);
}

TEST_F(Control, CanBeChangedByItsOwner) {
    TakeControl();
    TakeControl(kPrivilegeExclusive);
    EXPECT_EQ(Register(kRegPrivilege), kPrivilegeExclusive);
    EXPECT_EQ(m_account[Count::ControlTaken], 1U);
}

TEST_F(Control, CantBeHandedOn) {
    EXPECT_EQ(WriteRegister(kRegPrivilege, 0x6), Status::InvalidParameter);
    EXPECT_EQ(WriteRegister(kRegPrivilege, 0x00010002), Status::InvalidParameter);
    EXPECT_EQ(Register(kRegPrivilege), 0U);
}

TEST_F(Control, MayBeGivenBackByWhoNeverHadIt) {
    EXPECT_EQ(WriteRegister(kRegPrivilege, 0), Status::Success);
    EXPECT_EQ(WriteMemory(kRegPrivilege, Bytes(4)).status, Status::Success);
    EXPECT_EQ(Register(kRegPrivilege), 0U);
    EXPECT_EQ(m_account[Count::ControlGiven], 0U);
}

TEST_F(Control, CantBeTakenAsPartOfMemory) {
    TakeControl();
    const Bytes words = BuildNumbers(std::array{0U, 0U});
    EXPECT_EQ(WriteMemory(kRegPrivilege, words).status, Status::WriteProtect);
    EXPECT_EQ(Register(kRegPrivilege), kPrivilegeControl);
}

TEST_F(Control, EndsWhenItsOwnerGivesItBack) {
    TakeControl();
    m_device.Camera().Start();
    EXPECT_EQ(WriteRegister(kRegPrivilege, 0), Status::Success);
    EXPECT_EQ(Register(kRegOwnerPort), 0U);
    EXPECT_FALSE(m_device.Camera().IsAcquiring());
    EXPECT_EQ(WriteRegister(kRegPrivilege, kPrivilegeControl, kSecond), Status::Success);
    EXPECT_EQ(m_account[Count::ControlGiven], 1U);
}

TEST_F(Control, EndsWhenItsOwnerFallsSilent) {
    EXPECT_FALSE(m_server.ExpiryTime());
    TakeControl();
    m_device.Camera().Start();
    m_device.Camera().SetParamsLocked(true);
    EXPECT_EQ(m_server.ExpiryTime(), m_now + 3s);
    m_server.Expire(m_now + 2999ms);
    EXPECT_EQ(Register(kRegPrivilege, kSecond), kPrivilegeControl);
    m_server.Expire(m_now + 3s);
    EXPECT_EQ(Register(kRegPrivilege, kSecond), 0U);
    EXPECT_EQ(m_account[Count::ControlLost], 1U);
    EXPECT_FALSE(m_device.Camera().IsAcquiring());
    EXPECT_FALSE(m_device.Camera().ParamsLocked());
}

TEST_F(Control, LastsAsLongAsItsOwnerAsksForAnything) {
    TakeControl();
    m_now += 2s;
    ReadRegister(kRegVersion, kFirst);
    EXPECT_EQ(m_server.ExpiryTime(), m_now + 3s);
    ReadRegister(kRegVersion, kSecond);
    m_now += 2s;
    ReadRegister(kRegVersion, kSecond);
    EXPECT_EQ(m_server.ExpiryTime(), m_now + 1s);
}

TEST_F(Control, FollowsTheTimeoutThatIsSet) {
    TakeControl();
    WriteRegister(kRegHeartbeatTimeout, 1000);
    EXPECT_EQ(m_server.ExpiryTime(), m_now + 1s);
    WriteRegister(kRegHeartbeatTimeout, 1);
    EXPECT_EQ(Register(kRegHeartbeatTimeout), 500U);
}

TEST_F(Control, LastsForEverWithoutHeartbeat) {
    TakeControl();
    WriteRegister(kRegControlConfig, kConfigHeartbeatOff);
    EXPECT_FALSE(m_server.ExpiryTime());
    m_server.Expire(m_now + 1h);
    EXPECT_EQ(Register(kRegPrivilege), kPrivilegeControl);
}

TEST_F(Control, IsAskedForAnewAfterItWasLost) {
    const Bytes payload = BuildWrites(std::array{RegisterWrite{kRegPrivilege, kPrivilegeControl}});
    const CommandPacket command{.flags = kFlagAnswerRequired,
                                .command = Command::WriteRegister,
                                .requestId = 1,
                                .payload = payload};
    AskWith(command, kFirst);
    WriteRegister(kRegHeartbeatTimeout, 500);
    AskWith({.flags = kFlagAnswerRequired,
             .command = Command::WriteRegister,
             .requestId = 1,
             .payload = payload},
            kFirst);
    m_now += 500ms;
    m_server.Expire(m_now);
    AskWith(command, kFirst);
    EXPECT_EQ(Register(kRegPrivilege), kPrivilegeControl);
}

}  // namespace
