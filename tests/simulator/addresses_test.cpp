// How a simulated camera is searched for and gets its addresses.

#include "ServerTest.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;

constexpr IpAddresses kOther{.ip = {0x0A000064}, .mask = {0xFF000000}, .gateway = {}};

class Addresses : public ServerTest {
protected:
    void Restart() { EXPECT_FALSE(Force({}, m_profile.mac)); }
};

TEST_F(Addresses, AreSaidToWhoSearches) {
    const Answered answer = Search(kFirst, true).value();
    EXPECT_EQ(answer.to, kFirst);
    EXPECT_EQ(answer.answer, AnswerTo(Command::Discovery));
    const Identity identity = ParseIdentity(answer.payload).value();
    EXPECT_EQ(identity.mac, m_profile.mac);
    EXPECT_EQ(identity.ip, kCamera.ip);
    EXPECT_EQ(identity.mask, kCamera.mask);
    EXPECT_EQ(identity.gateway, kCamera.gateway);
    EXPECT_EQ(identity.vendor, "oviapi");
    EXPECT_EQ(identity.model, "Simulated-5M-Color");
    EXPECT_EQ(identity.serialNumber, m_profile.serialNumber);
    EXPECT_EQ(identity.version, 0x00020000U);
    EXPECT_EQ(identity.supportedIpConfig, 7U);
    EXPECT_EQ(identity.currentIpConfig, 6U);
    EXPECT_EQ(m_account[Count::Discoveries], 1U);
}

TEST_F(Addresses, AreSaidToForeignSubnetsByBroadcastIfThatIsAskedFor) {
    EXPECT_FALSE(Search(kForeign, true));
    EXPECT_EQ(m_account[Count::Ignored], 1U);
    const Answered answer = Search(kForeign, true, kFlagBroadcastAnswer).value();
    EXPECT_EQ(answer.to, Endpoint(kEverybody, kForeign.port));
}

TEST_F(Addresses, AreSaidToARouterWhoAsksTheCameraAlone) {
    EXPECT_EQ(Search(kForeign, false)->to, kForeign);
}

TEST_F(Addresses, HaveTheNameThatTheUserGave) {
    TakeControl();
    Bytes name(kRegUserName.width);
    WriteText(name, "left");
    EXPECT_EQ(WriteMemory(kRegUserName.address, name).status, Status::Success);
    EXPECT_EQ(ParseIdentity(Search(kFirst, true)->payload)->userName, "left");
    EXPECT_EQ(m_device.Camera().UserId(), "left");
    m_device.Camera().SetUserId("right");
    EXPECT_EQ(ParseIdentity(Search(kFirst, true)->payload)->userName, "right");
}

TEST_F(Addresses, CanBeForced) {
    const Answered answer = Force(kOther, m_profile.mac).value();
    EXPECT_EQ(answer.status, Status::Success);
    EXPECT_EQ(answer.to, kForeign);  // which is in the new subnet
    EXPECT_EQ(m_place.moves, std::vector{kOther});
    EXPECT_EQ(m_device.Addresses(), kOther);
    EXPECT_EQ(m_account[Count::ForcedAddresses], 1U);
}

TEST_F(Addresses, ArentForcedOnAnotherCamera) {
    EXPECT_FALSE(Force(kOther, MacAddress::Of(1)));
    EXPECT_EQ(m_device.Addresses(), kCamera);
}

TEST_F(Addresses, ArentForcedOnACameraThatSomebodyHas) {
    TakeControl();
    EXPECT_FALSE(Force(kOther, m_profile.mac));
    EXPECT_EQ(m_device.Addresses(), kCamera);
}

TEST_F(Addresses, ArentTakenWithABrokenMask) {
    IpAddresses broken = kOther;
    broken.mask = {0xFF00FF00};
    EXPECT_EQ(Force(broken, m_profile.mac)->status, Status::InvalidParameter);
    EXPECT_EQ(m_device.Addresses(), kCamera);
}

TEST_F(Addresses, StayIfTheMachineRefusesNewOnes) {
    m_place.isRefusing = true;
    EXPECT_EQ(Force(kOther, m_profile.mac)->status, Status::Error);
    EXPECT_EQ(m_device.Addresses(), kCamera);
    EXPECT_EQ(m_account[Count::AddressesRefused], 1U);
}

TEST_F(Addresses, AreForgottenAtARestartIfTheyWereForced) {
    Force(kOther, m_profile.mac);
    Restart();
    EXPECT_EQ(m_device.Addresses(), kCamera);
}

TEST_F(Addresses, AreKeptThroughARestartIfTheyArePersistent) {
    TakeControl();
    WriteRegister(kRegPersistentIp, kOther.ip.value);
    WriteRegister(kRegPersistentMask, kOther.mask.value);
    WriteRegister(kRegPersistentGateway, 0);
    EXPECT_EQ(WriteRegister(kRegCurrentIpConfig, kIpPersistent | kIpDhcp), Status::Success);
    EXPECT_EQ(m_device.Addresses(), kCamera);
    WriteRegister(kRegPrivilege, 0);
    Restart();
    EXPECT_EQ(m_device.Addresses(), kOther);
    // A forced address counts until the next restart.
    Force(kCamera, m_profile.mac);
    EXPECT_EQ(m_device.Addresses(), kCamera);
    Restart();
    EXPECT_EQ(m_device.Addresses(), kOther);
}

TEST_F(Addresses, ArentPersistentWithoutTheBit) {
    TakeControl();
    WriteRegister(kRegPersistentIp, kOther.ip.value);
    WriteRegister(kRegPersistentMask, kOther.mask.value);
    WriteRegister(kRegPrivilege, 0);
    Restart();
    EXPECT_EQ(m_device.Addresses(), kCamera);
}

TEST_F(Addresses, AreTheCamerasOwnMakingIfNobodyOffersAny) {
    TakeControl();
    WriteRegister(kRegCurrentIpConfig, 0);
    EXPECT_EQ(Register(kRegCurrentIpConfig), kIpLinkLocal);  // can't be switched off
    WriteRegister(kRegPrivilege, 0);
    Restart();
    const IpAddresses own = m_device.Addresses();
    EXPECT_EQ(own.mask.value, 0xFFFF0000U);
    EXPECT_TRUE(IsSameSubnet(own.ip, {0xA9FE0000}, own.mask));
    EXPECT_TRUE(IsHostAddress(own.ip, own.mask));
}

}  // namespace
