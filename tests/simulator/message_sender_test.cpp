#include <gtest/gtest.h>

#include <optional>
#include <thread>

#include "framework/Event.h"
#include "simulator/message/MessageSender.h"
#include "virtual/CameraEvents.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;
using namespace std::chrono_literals;
using OvSimulator::Clock;

/// A camera's messages to a socket of this machine.
class MessageSenders : public testing::Test {
protected:
    static constexpr Ipv4 kHere{0x7F000001};

    MessageSenders() { m_host.Bind({kHere, 0}); }

    void Start(const MessageFaults& faults = {}) {
        CameraProfile profile = MakeProfile(0, {}, kControlPort);
        profile.faults.message = faults;
        m_sender.emplace(profile, m_account);
        m_port = m_sender->Occupy(kHere);
        m_sender->Configure({.destination = m_host.Local(), .timeout = 20ms, .retries = 1000});
    }
    void Happen(uint64_t frame) {
        const auto item = OvVirtual::MakeEventItem(OvVirtual::CameraEvent::ExposureEnd, frame, 5);
        m_sender->Post(GenTL::EVENT_REMOTE_DEVICE, OvProducer::MakeMessageEntry(0x9001, item));
    }
    Datagram Receive() { return m_host.Receive(Clock::now() + 1min).value(); }
    void Acknowledge(const Datagram& datagram) {
        const CommandPacket message = ParseCommand(datagram.bytes).value();
        m_host.SendTo(datagram.sender, BuildAnswer({.answer = AnswerTo(message.command),
                                                    .requestId = message.requestId,
                                                    .payload = {}}));
    }

    UdpSocket m_host;
    Account m_account;
    std::optional<MessageSender> m_sender;
    uint16_t m_port = 0;
};

TEST_F(MessageSenders, SendTheCamerasEvents) {
    Start();
    Happen(7);
    const Datagram datagram = Receive();
    EXPECT_EQ(datagram.sender, (Endpoint{kHere, m_port}));
    const CommandPacket message = ParseCommand(datagram.bytes).value();
    EXPECT_EQ(message.command, Command::EventData);
    EXPECT_EQ(message.flags, kFlagAnswerRequired);
    Bytes data;
    Append(data, uint64_t{7});
    const Bytes event =
        BuildEvent({.id = 0x9001, .channel = 0, .blockId = 8, .timestamp = 5, .data = data}, false);
    EXPECT_EQ(Bytes(message.payload.begin(), message.payload.end()), event);
}

TEST_F(MessageSenders, RepeatWhatNobodyAcknowledges) {
    Start();
    Happen(7);
    const Datagram first = Receive();
    EXPECT_EQ(Receive().bytes, first.bytes);
    Acknowledge(first);
    while (m_account[Count::Acknowledgements] == 0) {
        std::this_thread::yield();
    }
    EXPECT_GE(m_account[Count::RepeatedMessages], 1U);
    EXPECT_EQ(m_account[Count::Messages], 1U);
}

TEST_F(MessageSenders, HearTheHostOnly) {
    Start();
    Happen(7);
    const Datagram first = Receive();
    UdpSocket other;
    other.Bind({kHere, 0});
    std::swap(other, m_host);
    Acknowledge(first);
    std::swap(other, m_host);
    EXPECT_EQ(Receive().bytes, first.bytes);
    EXPECT_EQ(m_account[Count::Acknowledgements], 0U);
}

TEST_F(MessageSenders, HaveSomebodyElseSend) {
    MessageFaults faults;
    faults.foreign = 1;
    Start(faults);
    Happen(7);
    const Datagram foreign = Receive();
    EXPECT_NE(foreign.sender.ip, kHere);
    const Datagram own = Receive();
    EXPECT_EQ(own.sender.ip, kHere);
    EXPECT_NE(foreign.bytes, own.bytes);
}

TEST_F(MessageSenders, FallSilentWithACameraThatDropsOffTheBus) {
    Start();
    m_sender->Post(GenTL::EVENT_DEVICE_OFFLINE, {});
    Happen(7);
    EXPECT_EQ(m_account[Count::Events], 0U);
}

}  // namespace
