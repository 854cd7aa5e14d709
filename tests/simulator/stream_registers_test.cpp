// How registers steer a simulated camera's stream.

#include "ServerTest.h"
#include "simulator/stream/StreamRegisters.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;

class StreamRegisters : public ServerTest {
protected:
    StreamRegisters() {
        ConnectStreamRegisters(
            m_device.Bootstrap(), [this](const StreamSetup& setup) { m_setup = setup; },
            [this] { ++m_fired; });
    }
    void SetUp() override { TakeControl(); }

    StreamSetup m_setup;
    int m_fired = 0;
};

TEST_F(StreamRegisters, OpenAndCloseTheChannel) {
    WriteRegister(kRegStreamDestination, kFirst.ip.value);
    EXPECT_FALSE(m_setup.IsOpen());
    WriteRegister(kRegStreamPort, 5000);
    EXPECT_TRUE(m_setup.IsOpen());
    EXPECT_EQ(m_setup.destination, Endpoint(kFirst.ip, 5000));
    WriteRegister(kRegStreamPort, 0);
    EXPECT_FALSE(m_setup.IsOpen());
}

TEST_F(StreamRegisters, CloseTheChannelWhenTheOwnerLeaves) {
    WriteRegister(kRegStreamDestination, kFirst.ip.value);
    WriteRegister(kRegStreamPort, 5000);
    WriteRegister(kRegPrivilege, 0);
    EXPECT_FALSE(m_setup.IsOpen());
    EXPECT_EQ(Register(kRegStreamPort), 0U);
}

TEST_F(StreamRegisters, RoundThePacketSize) {
    for (const auto& [asked, granted] :
         {std::pair{0x40002329U, 0x40002328U}, {100U, 576U}, {0x0000FFFFU, 16000U}}) {
        EXPECT_EQ(WriteRegister(kRegStreamPacketSize, asked), Status::Success);
        EXPECT_EQ(Register(kRegStreamPacketSize), granted);
        EXPECT_EQ(m_setup.packetSize, granted & 0xFFFF);
        EXPECT_EQ(m_setup.doNotFragment, (granted & 0x40000000) != 0);
    }
}

TEST_F(StreamRegisters, FireATestPacketOnce) {
    WriteRegister(kRegStreamPacketSize, 0xC0000000 | 9000);
    EXPECT_EQ(m_fired, 1);
    EXPECT_EQ(m_setup.packetSize, 9000U);
    EXPECT_EQ(Register(kRegStreamPacketSize), 0x40000000U | 9000);
    WriteRegister(kRegStreamPacketDelay, 10);
    EXPECT_EQ(m_fired, 1);
    EXPECT_EQ(m_setup.delay, 10U);
}

TEST_F(StreamRegisters, ChooseTheFormOfPackets) {
    WriteRegister(kRegStreamConfig, 0xFFFFFFFF);
    EXPECT_TRUE(m_setup.isExtended);
    EXPECT_EQ(Register(kRegStreamConfig), 0x40000000U);
    WriteRegister(kRegStreamSwitches, 0xFFFFFFFE);
    EXPECT_FALSE(m_setup.marksChunks);
    EXPECT_EQ(Register(kRegStreamSwitches), 0U);
}

TEST_F(StreamRegisters, HandOnWhatIsAskedForAgain) {
    const ResendRequest request{
        .isExtended = true, .blockId = 7, .firstPacket = 3, .lastPacket = 5};
    const Bytes payload = BuildResend(request);
    const CommandPacket command{.flags = request.Flags(),
                                .command = Command::PacketResend,
                                .requestId = 1,
                                .payload = payload};
    EXPECT_FALSE(AskWith(command, kSecond));
    EXPECT_EQ(m_place.resends, std::vector{request});
    EXPECT_FALSE(m_place.saidMore);
    WriteRegister(kRegControlConfig, kConfigExtendedStatus1);
    EXPECT_FALSE(AskWith(command, kSecond));
    EXPECT_TRUE(m_place.saidMore);
    EXPECT_EQ(m_account[Count::ResendCommands], 2U);
    EXPECT_EQ(m_account[Count::AskedPackets], 6U);
}

}  // namespace
