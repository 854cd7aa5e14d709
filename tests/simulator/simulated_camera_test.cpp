#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "gige/control/CameraMemory.h"
#include "gige/discovery/AdapterSearch.h"
#include "gige/net/UdpLink.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/CameraUrl.h"
#include "gige/protocol/Discovery.h"
#include "simulator/SimulatedCamera.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;
using namespace std::chrono_literals;
using OvSimulator::Clock;

constexpr IpAddresses kHere{.ip = {0x7F000001}, .mask = {0xFF000000}, .gateway = {}};

/// A host with a socket of its own.
class Host {
public:
    explicit Host(const Endpoint& camera) : m_camera(camera), m_channel(MakeLink(camera), 1) {
        m_memory.SetCapability(m_memory.ReadRegister(kRegControlCapability));
    }
    CameraMemory& Memory() { return m_memory; }
    Endpoint Camera() const { return m_camera; }

private:
    static std::unique_ptr<DatagramLink> MakeLink(const Endpoint& camera) {
        UdpSocket socket;
        socket.Bind({kHere.ip, 0});
        return std::make_unique<UdpLink>(std::move(socket), camera);
    }

    const Endpoint m_camera;
    ControlChannel m_channel;
    CameraMemory m_memory{m_channel};
};

class SimulatedCameraTest : public testing::Test {
protected:
    std::string Text(TextRegister text) {
        Bytes bytes(text.width);
        m_host.Memory().Read(text.address, bytes);
        return ReadText(bytes);
    }

    SimulatedCamera m_camera{MakeProfile(0, kHere, 0)};
    Host m_host{m_camera.Address()};
};

TEST_F(SimulatedCameraTest, SaysWhoItIs) {
    EXPECT_EQ(Text(kRegVendor), "oviapi");
    EXPECT_EQ(Text(kRegModel), "Simulated-5M-Color");
    EXPECT_EQ(Text(kRegSerialNumber), m_camera.Profile().serialNumber);
    EXPECT_EQ(m_host.Memory().ReadRegister(kRegCurrentIp), 0x7F000001U);
}

TEST_F(SimulatedCameraTest, HasItsDescriptionInItsMemory) {
    const auto url = ParseCameraUrl(Text(kRegFirstUrl)).value();
    EXPECT_EQ(url.fileName, "OvSimulatedCamera_1_0_0.zip");
    Bytes content(url.size);
    m_host.Memory().Read(url.address, content);
    EXPECT_EQ(ReadText(ByteView(content).first(2)), "PK");
}

TEST_F(SimulatedCameraTest, IsSetByItsOwner) {
    constexpr uint32_t kAddress = kApplicationBase + 0x0310;
    m_host.Memory().WriteRegister(kRegPrivilege, kPrivilegeControl);
    const std::array width{std::byte{64}, std::byte{1}, std::byte{0}, std::byte{0}};
    m_host.Memory().Write(kAddress, width);
    Bytes read(4);
    m_host.Memory().Read(kAddress, read);
    EXPECT_EQ(read, Bytes(width.begin(), width.end()));
    EXPECT_EQ(m_camera.Counts()[Count::ControlTaken], 1U);
    EXPECT_EQ(m_camera.Counts()[Count::MemoryWrites], 1U);
}

TEST_F(SimulatedCameraTest, RefusesASecondOwnerAndNamesTheFirst) {
    Host second(m_camera.Address());
    m_host.Memory().WriteRegister(kRegPrivilege, kPrivilegeControl);
    EXPECT_THROW(second.Memory().WriteRegister(kRegPrivilege, kPrivilegeControl), Refusal);
    EXPECT_EQ(second.Memory().ReadRegister(kRegOwnerIp), 0x7F000001U);
    EXPECT_NE(second.Memory().ReadRegister(kRegOwnerPort), 0U);
    EXPECT_EQ(m_camera.Counts()[Count::ControlDenied], 1U);
}

TEST_F(SimulatedCameraTest, IsFreeAgainAfterItDroppedOffTheBus) {
    constexpr uint32_t kDropOff = kApplicationBase + 0x0A20;
    constexpr uint32_t kDropOffTime = kApplicationBase + 0x0A24;
    m_host.Memory().WriteRegister(kRegPrivilege, kPrivilegeControl);
    m_host.Memory().WriteRegister(kDropOffTime, 0);
    m_host.Memory().WriteRegister(kDropOff, 1);
    EXPECT_EQ(m_host.Memory().ReadRegister(kRegPrivilege), 0U);
}

TEST_F(SimulatedCameraTest, AnswersAtTheAddressThatItIsGiven) {
    const IpAddresses there{.ip = {0x7F000109}, .mask = {0xFF000000}, .gateway = {}};
    UdpSocket host;
    host.Bind({kHere.ip, 0});
    const Bytes payload = BuildForcedAddress(
        {.mac = m_camera.Profile().mac, .ip = there.ip, .mask = there.mask, .gateway = {}});
    host.SendTo(m_camera.Address(), BuildCommand({.flags = kFlagAnswerRequired,
                                                  .command = Command::ForceIp,
                                                  .requestId = 1,
                                                  .payload = payload}));
    const Datagram answer = host.Receive(Clock::now() + 10s).value();
    const Endpoint moved{there.ip, m_host.Camera().port};
    EXPECT_EQ(answer.sender, moved);
    EXPECT_EQ(m_camera.Address(), moved);
    Host atNewPlace(moved);
    EXPECT_EQ(atNewPlace.Memory().ReadRegister(kRegCurrentIp), there.ip.value);
}

/// A camera with faults, and a host that is patient enough for them.
class FaultyCamera {
public:
    explicit FaultyCamera(const ControlFaults& faults) : camera(ProfileWith(faults)) {}

    SimulatedCamera camera;
    Host host{camera.Address()};

private:
    static CameraProfile ProfileWith(const ControlFaults& faults) {
        CameraProfile profile = MakeProfile(0, kHere, 0);
        profile.faults.control = faults;
        return profile;
    }
};

TEST(FaultyCameras, AreReadInSpiteOfForeignAndDoubledAnswers) {
    ControlFaults faults;
    faults.foreign = 1;
    faults.doubled = 1;
    FaultyCamera faulty(faults);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(faulty.host.Memory().ReadRegister(kRegCurrentIp), kHere.ip.value);
    }
    EXPECT_EQ(faulty.camera.Counts()[Count::ForeignAnswers], 21U);
    EXPECT_EQ(faulty.camera.Counts()[Count::DoubledAnswers], 21U);
}

TEST(FaultyCameras, RefuseControlToEveryone) {
    ControlFaults faults;
    faults.refusesControl = true;
    FaultyCamera faulty(faults);
    EXPECT_THROW(faulty.host.Memory().WriteRegister(kRegPrivilege, kPrivilegeControl), Refusal);
    EXPECT_EQ(faulty.host.Memory().ReadRegister(kRegPrivilege), 0U);
    EXPECT_EQ(faulty.camera.Counts()[Count::ControlRefused], 1U);
}

TEST(FaultyCameras, FallSilentForEver) {
    ControlFaults faults;
    faults.diesAfter = 3;
    FaultyCamera faulty(faults);  // the host's first command
    faulty.host.Memory().ReadRegister(kRegVersion);
    faulty.host.Memory().ReadRegister(kRegVersion);
    EXPECT_THROW(faulty.host.Memory().ReadRegister(kRegVersion), OvProducer::Failure);
    EXPECT_EQ(faulty.camera.Counts()[Count::Commands], 3U);
    EXPECT_EQ(faulty.camera.Counts()[Count::Deaths], 1U);
    EXPECT_GT(faulty.camera.Counts()[Count::UnheardPackets], 0U);
}

TEST(FaultyCameras, TakeAnotherAddress) {
    ControlFaults faults;
    faults.movesAfter = 2;
    faults.movesTo = {0x7F000107};
    FaultyCamera faulty(faults);
    faulty.host.Memory().WriteRegister(kRegPrivilege, kPrivilegeControl);
    const Endpoint before = faulty.host.Camera();
    EXPECT_THROW(faulty.host.Memory().ReadRegister(kRegVersion), OvProducer::Failure);
    EXPECT_EQ(faulty.camera.Address(), Endpoint(faults.movesTo, before.port));
    Host there(faulty.camera.Address());
    EXPECT_EQ(there.Memory().ReadRegister(kRegPrivilege), 0U);
    EXPECT_EQ(faulty.camera.Counts()[Count::AddressChanges], 1U);
}

TEST(FaultyCameras, LieAboutTheLengthOfTheirDescription) {
    const auto length = [](int64_t wrong) {
        ControlFaults faults;
        faults.wrongLength = wrong;
        FaultyCamera faulty(faults);
        Bytes bytes(kRegFirstUrl.width);
        faulty.host.Memory().Read(kRegFirstUrl.address, bytes);
        return ParseCameraUrl(ReadText(bytes)).value().size;
    };
    EXPECT_EQ(length(1000), length(0) + 1000);
    EXPECT_EQ(length(-1000), length(0) - 1000);
}

TEST(SimulatedCameras, AreAllFoundByOneSearch) {
    const IpAddresses next{.ip = {0x7F000002}, .mask = {0xFF000000}, .gateway = {}};
    const SimulatedCamera first(MakeProfile(0, kHere, 0));
    const SimulatedCamera second(MakeProfile(1, next, first.Address().port));
    const Adapter loopback = AdapterFor("", kHere.ip);
    AdapterSearch search(loopback, first.Address().port);
    FoundCameras found;
    search.Run(500ms, {}, found);
    std::vector<std::string> models;
    for (const FoundCamera& camera : found.List(loopback, SearchRange::Network, Clock::now())) {
        models.push_back(camera.identity.model);
    }
    EXPECT_THAT(models, testing::UnorderedElementsAre("Simulated-5M-Color", "Simulated-5M-Mono"));
}

TEST(SimulatedCameras, CantHaveAnAddressOfNoAdapter) {
    const IpAddresses nowhere{.ip = {0xC6336401}, .mask = {0xFFFFFF00}, .gateway = {}};
    EXPECT_THROW(SimulatedCamera(MakeProfile(0, nowhere, 0)), OvProducer::Failure);
}

TEST(SimulatedCameras, CantHaveTheSameAddress) {
    const SimulatedCamera first(MakeProfile(0, kHere, 0));
    EXPECT_THROW(SimulatedCamera(MakeProfile(1, kHere, first.Address().port)), OvProducer::Failure);
}

}  // namespace
