#include "StreamTest.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;

class StreamSenderTest : public StreamTest {};

constexpr uint32_t kPackets = 5;  // 64 x 64 bytes in packets of 1500

TEST_F(StreamSenderTest, SendsFramesPacketByPacket) {
    Run(2);
    const auto packets = ReceiveUpTo(2);
    ASSERT_EQ(packets.size(), 2 * kPackets);
    Bytes image;
    for (uint32_t i = 0; i < 2 * kPackets; ++i) {
        const StreamHeader header = ParseStreamHeader(packets[i]).value();
        EXPECT_EQ(header.blockId, i / kPackets + 1);
        EXPECT_EQ(header.packetId, i % kPackets);
        if (i < kPackets && header.format == PacketFormat::Data) {
            Append(image, ByteView(packets[i]).subspan(header.Size()));
        }
    }
    Bytes expected(64 * 64);
    OvVirtual::FrameRenderer().Render(
        OvVirtual::FrameSettingsOf(m_device.Camera().Settings(), false, 1), 0, expected, {});
    EXPECT_EQ(image, expected);
}

TEST_F(StreamSenderTest, SendsFromThePortThatItNames) {
    Run(1);
    EXPECT_EQ(Receive().sender, Endpoint(kHere, m_sourcePort));
}

TEST_F(StreamSenderTest, SendsTheLongFormIfItIsAskedTo) {
    m_setup.isExtended = true;
    Run(1);
    EXPECT_TRUE(ParseStreamHeader(Receive().bytes)->isExtended);
}

TEST_F(StreamSenderTest, SendsAPacketOfTheSizeThatIsTested) {
    m_sender->Configure(m_setup);
    m_sender->FireTestPacket();
    const Datagram packet = Receive();
    EXPECT_EQ(packet.bytes.size(), 1500 - kIpUdpHeaderSize);
    EXPECT_EQ(ParseStreamHeader(packet.bytes)->blockId, 0U);
    EXPECT_EQ(m_account[Count::TestPackets], 1U);
}

TEST_F(StreamSenderTest, SendsPacketsAgain) {
    Run(1);
    const auto packets = ReceiveUpTo(1);
    m_sender->Resend({.isExtended = false, .blockId = 1, .firstPacket = 1, .lastPacket = 2}, true);
    for (const size_t packet : {1U, 2U}) {
        const Bytes again = Receive().bytes;
        EXPECT_EQ(ParseStreamHeader(again)->status, Status::PacketResend);
        EXPECT_EQ(Bytes(again.begin() + 2, again.end()),
                  Bytes(packets[packet].begin() + 2, packets[packet].end()));
    }
    EXPECT_EQ(m_account[Count::ResentPackets], 2U);
}

TEST_F(StreamSenderTest, SaysWhyAPacketCantBeSentAgain) {
    m_sender->Configure(m_setup);
    m_sender->Resend({.isExtended = false, .blockId = 9, .firstPacket = 3, .lastPacket = 4}, true);
    const StreamHeader header = ParseStreamHeader(Receive().bytes).value();
    EXPECT_EQ(header.status, Status::PacketAndPreviousRemoved);
    EXPECT_EQ(header.blockId, 9U);
    EXPECT_EQ(header.packetId, 3U);
    m_sender->Resend({.isExtended = false, .blockId = 9, .firstPacket = 3, .lastPacket = 4}, false);
    EXPECT_EQ(ParseStreamHeader(Receive().bytes)->status, Status::PacketUnavailable);
    EXPECT_EQ(m_account[Count::RefusedResends], 2U);
}

TEST_F(StreamSenderTest, RefusesPacketsThatABlockHasNot) {
    Run(1);
    ReceiveUpTo(1);
    m_sender->Resend({.isExtended = false, .blockId = 1, .firstPacket = 4, .lastPacket = kPackets},
                     true);
    EXPECT_FALSE(ParseStreamHeader(Receive().bytes)->IsGood());
    m_sender->Resend({.isExtended = false, .blockId = 1, .firstPacket = 2, .lastPacket = 1}, true);
    EXPECT_FALSE(ParseStreamHeader(Receive().bytes)->IsGood());
}

TEST_F(StreamSenderTest, KeepsTheLastBlocksForResends) {
    Run(6);
    ReceiveUpTo(6);
    m_sender->Resend({.isExtended = false, .blockId = 3, .firstPacket = 1, .lastPacket = 1}, true);
    EXPECT_EQ(ParseStreamHeader(Receive().bytes)->status, Status::PacketResend);
    m_sender->Resend({.isExtended = false, .blockId = 2, .firstPacket = 1, .lastPacket = 1}, true);
    EXPECT_EQ(ParseStreamHeader(Receive().bytes)->status, Status::PacketAndPreviousRemoved);
}

TEST_F(StreamSenderTest, SendsNothingThroughAClosedChannel) {
    m_sender->Resend({.isExtended = false, .blockId = 1, .firstPacket = 1, .lastPacket = 1}, true);
    m_sender->FireTestPacket();
    EXPECT_EQ(m_account[Count::StreamPackets], 0U);
    EXPECT_EQ(m_account[Count::TestPackets], 0U);
    EXPECT_EQ(m_account[Count::NetworkFailures], 0U);
}

TEST_F(StreamSenderTest, PausesBetweenPacketsWithoutLosingOne) {
    m_setup.delay = 1000;
    Run(2);
    EXPECT_EQ(ReceiveUpTo(2).size(), 2 * kPackets);
}

TEST_F(StreamSenderTest, BeginsItsNumbersAnewWhenItLosesCount) {
    Faults faults;
    faults.stream.jumpBack = 1;
    Misbehave(faults);
    Run(3);
    std::vector<uint64_t> blocks;
    for (uint32_t i = 0; i < 3 * kPackets; ++i) {
        const StreamHeader header = ParseStreamHeader(Receive().bytes).value();
        if (header.format == PacketFormat::Leader) {
            blocks.push_back(header.blockId);
        }
    }
    EXPECT_EQ(blocks, (std::vector<uint64_t>{1, 1, 1}));
    EXPECT_EQ(m_account[Count::JumpsBack], 2U);
}

TEST_F(StreamSenderTest, SaysAnotherSizeThanTheFrameHas) {
    Faults faults;
    faults.stream.wrongLeader = 1;
    Misbehave(faults);
    Run(1);
    const Bytes packet = Receive().bytes;
    EXPECT_EQ(ParseLeader(ByteView(packet).subspan(kStreamHeaderSize))->shape.sizeY, 128U);
    EXPECT_EQ(m_account[Count::WrongLeaders], 1U);
}

TEST_F(StreamSenderTest, SendsAgainWhatItLost) {
    Faults faults;
    faults.stream.lost = 1;
    Misbehave(faults);
    Run(1);
    while (m_account[Count::LostPackets] < kPackets) {
        std::this_thread::yield();
    }
    m_sender->Resend({.isExtended = false, .blockId = 1, .firstPacket = 0, .lastPacket = 4}, true);
    for (uint32_t i = 0; i < kPackets; ++i) {
        EXPECT_EQ(ParseStreamHeader(Receive().bytes)->packetId, i);
    }
    EXPECT_EQ(m_account[Count::LostPackets], kPackets);
}

}  // namespace
