#include <gtest/gtest.h>

#include <array>
#include <string>

#include "gige/control/CameraMemory.h"
#include "gige/net/UdpLink.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/CameraUrl.h"
#include "simulator/SimulatedCamera.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;

constexpr IpAddresses kHere{.ip = {0x7F000001}, .mask = {0xFF000000}, .gateway = {}};

/// A host with a socket of its own.
class Host {
public:
    explicit Host(const Endpoint& camera) : m_channel(MakeLink(camera), 1) {
        m_memory.SetCapability(m_memory.ReadRegister(kRegControlCapability));
    }
    CameraMemory& Memory() { return m_memory; }

private:
    static std::unique_ptr<DatagramLink> MakeLink(const Endpoint& camera) {
        UdpSocket socket;
        socket.Bind({kHere.ip, 0});
        return std::make_unique<UdpLink>(std::move(socket), camera);
    }

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
    constexpr uint32_t kWidth = kApplicationBase + 0x0310;
    m_host.Memory().WriteRegister(kRegPrivilege, kPrivilegeControl);
    const std::array width{std::byte{64}, std::byte{1}, std::byte{0}, std::byte{0}};
    m_host.Memory().Write(kWidth, width);
    Bytes read(4);
    m_host.Memory().Read(kWidth, read);
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

}  // namespace
