#include <gtest/gtest.h>

#include "LoopbackSocket.h"
#include "NotingSink.h"
#include "ScriptedCamera.h"
#include "gige/control/ControlChannel.h"
#include "gige/message/MessageChannel.h"
#include "gige/message/MessageReceiver.h"
#include "gige/protocol/Bootstrap.h"

namespace {

using namespace OvGige;
using namespace std::chrono_literals;
using Writes = std::vector<RegisterWrite>;

class MessageChannels : public testing::Test {
protected:
    ScriptedCamera m_camera;
    ControlChannel m_control{m_camera.Link(), 1};
    CameraMemory m_memory{m_control};
    MessageChannel m_channel{m_memory};
};

TEST_F(MessageChannels, AreOpenedWithTheirPortAtTheEnd) {
    m_channel.Open({kLoopback, 50'000});
    EXPECT_EQ(m_camera.Writes(), (Writes{{kRegMessagePort, 0},
                                         {kRegMessageDestination, kLoopback.value},
                                         {kRegMessageTimeout, 300},
                                         {kRegMessageRetries, 2},
                                         {kRegMessagePort, 50'000}}));
}

TEST_F(MessageChannels, AreOpenedWhereTheCamerasPatienceIsFixed) {
    m_camera.Refuse(kRegMessageTimeout, Status::WriteProtect);
    m_camera.Refuse(kRegMessageRetries, Status::InvalidAddress);
    m_channel.Open({kLoopback, 50'000});
    EXPECT_EQ(m_camera.Writes().back(), (RegisterWrite{kRegMessagePort, 50'000}));
}

TEST_F(MessageChannels, ArentOpenedWhereTheCameraRefusesThem) {
    m_camera.Refuse(kRegMessagePort, Status::NotImplemented);
    EXPECT_THROW(m_channel.Open({kLoopback, 50'000}), Refusal);
}

TEST_F(MessageChannels, AreThereIfTheCameraSaysSo) {
    EXPECT_FALSE(m_channel.IsThere());
    m_camera[kRegMessageChannelCount] = 1;
    EXPECT_TRUE(m_channel.IsThere());
}

TEST_F(MessageChannels, NameTheirPortIfTheCameraSaysThatItDoes) {
    m_camera[kRegMessageSourcePort] = 0xFFFF1234;
    EXPECT_EQ(m_channel.SourcePort(), 0);
    m_camera[kRegMessageCapability] = kOffersMessageSourcePort;
    EXPECT_EQ(m_channel.SourcePort(), 0x1234);
}

/// A receiver on loopback, and a socket that is the camera's.
class MessageReceivers : public testing::Test {
protected:
    void Start(uint16_t sourcePort = 0) {
        UdpSocket socket = LoopbackSocket();
        m_host = socket.Local();
        m_receiver = std::make_unique<MessageReceiver>(
            std::move(socket), Endpoint{kLoopback, sourcePort}, m_sink, m_end);
    }
    void Send(UdpSocket& from, uint16_t requestId) const {
        const Bytes event = BuildEvent({.id = 0x9001, .timestamp = requestId}, false);
        from.SendTo(m_host, BuildCommand({.flags = kFlagAnswerRequired,
                                          .command = Command::Event,
                                          .requestId = requestId,
                                          .payload = event}));
    }
    Bytes Received() {
        const auto datagram = m_camera.Receive(Clock::now() + 1min);
        return datagram ? datagram->bytes : Bytes();
    }
    static Bytes AnswerTo(uint16_t requestId) {
        return BuildAnswer(
            {.answer = OvGige::AnswerTo(Command::Event), .requestId = requestId, .payload = {}});
    }

    UdpSocket m_camera = LoopbackSocket();
    std::shared_ptr<OvTest::NotingSink> m_sink = std::make_shared<OvTest::NotingSink>();
    std::shared_ptr<const WakeFile> m_end = std::make_shared<const WakeFile>();
    Endpoint m_host;
    std::unique_ptr<MessageReceiver> m_receiver;
};

TEST_F(MessageReceivers, HandOnEventsAndAcknowledgeThemToTheirSender) {
    Start();
    Send(m_camera, 1);
    EXPECT_EQ(Received(), AnswerTo(1));
    Send(m_camera, 2);
    EXPECT_EQ(Received(), AnswerTo(2));
    EXPECT_EQ(m_sink->Events().size(), 2U);
    EXPECT_EQ(m_receiver->Account().events, 2U);
}

TEST_F(MessageReceivers, OpenAFirewallToWhereMessagesComeFrom) {
    Start(m_camera.Local().port);
    EXPECT_EQ(Received(), Bytes(1));
}

TEST_F(MessageReceivers, IgnoreOtherSenders) {
    Start();
    UdpSocket other;
    other.Bind({{kLoopback.value + 1}, 0});
    Send(other, 1);
    Send(m_camera, 2);
    EXPECT_EQ(Received(), AnswerTo(2));
    EXPECT_EQ(m_sink->Events().size(), 1U);
    EXPECT_EQ(m_receiver->Account().foreign, 1U);
}

TEST_F(MessageReceivers, TakeNothingAfterTheirStop) {
    Start();
    m_receiver->Stop();
    Send(m_camera, 1);
    EXPECT_EQ(m_sink->Events().size(), 0U);
}

TEST_F(MessageReceivers, EndWithTheConnection) {
    Start();
    m_end->Signal();
    Send(m_camera, 1);
    m_receiver.reset();
    EXPECT_EQ(m_sink->Events().size(), 0U);
}

}  // namespace
