#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstring>
#include <thread>

#include "CameraStreamTest.h"

namespace {

using namespace OvGige;
using namespace OvTest;
using namespace std::chrono_literals;

TEST_F(CameraStreams, FillBuffersInTheirOrder) {
    Announce(2);
    acquisition.Start(GenTL::GENTL_INFINITE);
    for (uint64_t block = 1; block <= 6; ++block) {
        SendBlock(block);
        const auto buffer = Next();
        EXPECT_EQ(buffer->facts->FrameId(), block);
        for (size_t i = 0; i < buffer->size; ++i) {
            ASSERT_EQ(buffer->base[i], static_cast<std::byte>(block * 16 + i / kData + 1));
        }
        pool.Queue(buffer->Handle());
    }
    acquisition.Stop(true);
    EXPECT_EQ(Counter("StreamBlockCompleteCount"), 6U);
    EXPECT_EQ(Counter("StreamPacketUsedCount"), 30U);
}

TEST_F(CameraStreams, OpenAndCloseTheCamerasChannel) {
    acquisition.Start(GenTL::GENTL_INFINITE);
    const uint32_t port = host.camera[kRegStreamPort];
    EXPECT_NE(port, 0U);
    EXPECT_EQ(Counter("StreamHostPort"), port);
    acquisition.Stop(true);
    EXPECT_EQ(host.camera.Writes(),
              (std::vector<RegisterWrite>{{kRegStreamPort, 0},
                                          {kRegStreamDestination, kLoopback.value},
                                          {kRegStreamPort, port},
                                          {kRegStreamPort, 0}}));
}

TEST_F(CameraStreams, SwitchOffWhatTheyDontUnderstand) {
    host.camera[kRegStreamSwitches] = kStreamSwitchGenDc | 0x40;
    acquisition.Start(GenTL::GENTL_INFINITE);
    EXPECT_EQ(host.camera[kRegStreamSwitches], 0x40U);
}

TEST_F(CameraStreams, AskTheCameraForALostPacketFromTheirOwnSocket) {
    Announce(1);
    acquisition.Start(GenTL::GENTL_INFINITE);
    SendLeader(1, 3);
    SendData(1, 1);
    SendData(1, 3);
    SendTrailer(1, 4);
    const auto datagram = host.sender.Receive(Clock::now() + 10s);
    ASSERT_TRUE(datagram);
    EXPECT_EQ(datagram->sender, DestinationOf(host));
    const auto command = ParseCommand(datagram->bytes);
    ASSERT_TRUE(command);
    EXPECT_EQ(command->command, Command::PacketResend);
    EXPECT_EQ(command->flags, 0);
    EXPECT_EQ(ParseResend(command->payload, command->flags),
              (ResendRequest{.blockId = 1, .firstPacket = 2, .lastPacket = 2}));
    SendData(1, 2);
    const auto buffer = Next();
    EXPECT_EQ(buffer->base[kData], std::byte{0x12});
    EXPECT_EQ(Counter("StreamPacketAskedCount"), 1U);
    EXPECT_EQ(Counter("StreamPacketAnsweredCount"), 1U);
    EXPECT_EQ(Counter("StreamBlockCompleteCount"), 1U);
}

TEST_F(CameraStreams, DontAskACameraThatOffersNoResends) {
    Announce(1);
    host.memory.SetCapability(0);
    acquisition.Start(GenTL::GENTL_INFINITE);
    SendLeader(1, 3);
    SendData(1, 1);
    SendData(1, 3);
    SendTrailer(1, 4);
    Next();
    EXPECT_EQ(Counter("StreamPacketAskedCount"), 0U);
    EXPECT_EQ(Counter("StreamBlockIncompleteCount"), 1U);
}

TEST_F(CameraStreams, IgnorePacketsOfOthers) {
    Announce(1);
    acquisition.Start(GenTL::GENTL_INFINITE);
    UdpSocket other;
    other.Bind({{kLoopback.value + 1}, 0});
    other.SendTo(DestinationOf(host), Bytes(8));
    SendBlock(1);
    Next();
    EXPECT_EQ(Counter("StreamPacketIgnoredCount"), 1U);
    EXPECT_EQ(Counter("StreamBlockCompleteCount"), 1U);
}

TEST_F(CameraStreams, PutPacketsOfABurstToTheirPlacesWhateverTheirOrder) {
    constexpr uint32_t kPackets = 100;
    Announce(1, kPackets * kData);
    acquisition.Start(GenTL::GENTL_INFINITE);
    SendLeader(1, kPackets);
    for (uint32_t id = 1; id <= kPackets; ++id) {
        // Neighbours change places, and every seventh comes twice.
        const uint32_t other = ((id - 1) ^ 1) + 1;
        SendData(1, other);
        if (id % 7 == 0) {
            SendData(1, other);
        }
    }
    SendTrailer(1, kPackets + 1);
    const auto buffer = Next();
    for (size_t i = 0; i < buffer->size; ++i) {
        ASSERT_EQ(buffer->base[i], static_cast<std::byte>(16 + i / kData + 1)) << i;
    }
    EXPECT_EQ(Counter("StreamPacketDoubleCount"), 14U);
    EXPECT_EQ(Counter("StreamBlockCompleteCount"), 1U);
}

TEST_F(CameraStreams, CountABlockThatFindsNoBuffer) {
    Announce(1);
    acquisition.Start(GenTL::GENTL_INFINITE);
    SendBlock(1);
    const auto buffer = Next();
    SendBlock(2);
    SendBlock(3);
    SendData(4, 9);
    // The packet after them shows that they were taken.
    while (Counter("StreamBlockNoBufferCount") < 3) {
        std::this_thread::yield();
    }
    pool.Queue(buffer->Handle());
    SendBlock(5);
    EXPECT_EQ(Next()->facts->FrameId(), 5U);
    EXPECT_EQ(pool.Counters().lost, 3U);
}

TEST_F(CameraStreams, EndAfterTheirFrames) {
    Announce(3);
    acquisition.Start(2);
    for (uint64_t block = 1; block <= 3; ++block) {
        SendBlock(block);
    }
    EXPECT_EQ(Next()->facts->FrameId(), 1U);
    EXPECT_EQ(Next()->facts->FrameId(), 2U);
    while (acquisition.IsGrabbing()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(pool.Counters().delivered, 2U);
    acquisition.Stop(false);
    EXPECT_EQ(host.camera[kRegStreamPort], 0U);
}

TEST_F(CameraStreams, GiveEveryBufferBackWhenTheyAreKilled) {
    Announce(2);
    acquisition.Start(GenTL::GENTL_INFINITE);
    SendLeader(1, 3);
    SendData(1, 1);
    while (Counter("StreamPacketUsedCount") < 2) {
        std::this_thread::yield();
    }
    acquisition.Stop(true);
    for (const auto& buffer : buffers) {
        EXPECT_NE(buffer->facts->State(), OvProducer::BufferState::Filling);
    }
    EXPECT_EQ(Counter("StreamBlockIncompleteCount"), 1U);
}

TEST_F(CameraStreams, CanBeStartedAgainAndAgain) {
    Announce(2);
    for (int round = 0; round < 20; ++round) {
        acquisition.Start(GenTL::GENTL_INFINITE);
        SendBlock(1);
        const auto buffer = Next();
        acquisition.Stop(round % 2 == 0);
        EXPECT_EQ(Counter("StreamBlockCompleteCount"), 1U);
        pool.Queue(buffer->Handle());
    }
}

TEST_F(CameraStreams, FailAfterTheTimeoutWhenTheCameraIsGone) {
    acquisition.Start(GenTL::GENTL_INFINITE);
    try {
        Next(1);
        FAIL() << "There is a frame";
    } catch (const OvProducer::Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_TIMEOUT);
    }
    host.isGone = true;
    try {
        Next(1);
        FAIL() << "There is a frame";
    } catch (const OvProducer::Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_CUSTOM_ID);
    }
}

TEST_F(CameraStreams, CantStartWhenTheCameraIsGone) {
    host.isGone = true;
    EXPECT_THROW(acquisition.Start(1), OvProducer::Failure);
    EXPECT_FALSE(acquisition.IsGrabbing());
    host.isGone = false;
    acquisition.Start(1);
    EXPECT_TRUE(acquisition.IsGrabbing());
}

TEST_F(CameraStreams, LeaveNoChannelOpenWhenTheStartFails) {
    host.camera.Refuse(kRegStreamDestination, Status::AccessDenied);
    EXPECT_THROW(acquisition.Start(1), Refusal);
    EXPECT_EQ(host.camera[kRegStreamPort], 0U);
    EXPECT_FALSE(acquisition.IsGrabbing());
}

TEST_F(CameraStreams, FindThePacketSizeByTestPackets) {
    constexpr uint32_t kLargest = 2000;
    host.isSizeChosen = false;
    host.camera.Watch([this](const RegisterWrite& write) {
        const uint32_t size = write.value & kPacketSizeMask;
        if (write.address == kRegStreamPacketSize && (write.value & kPacketSizeFireTest) != 0 &&
            size <= kLargest) {
            EXPECT_NE(write.value & kPacketSizeDontFragment, 0U);
            host.sender.SendTo(DestinationOf(host), Bytes(size - kIpUdpHeaderSize));
        }
    });
    acquisition.Start(GenTL::GENTL_INFINITE);
    const uint32_t set = host.camera[kRegStreamPacketSize];
    EXPECT_EQ(set & kPacketSizeFireTest, 0U);
    EXPECT_LE(set & kPacketSizeMask, kLargest);
    EXPECT_GE(set & kPacketSizeMask, kLargest - 128);
    EXPECT_EQ(Counter("StreamPacketSize"), set & kPacketSizeMask);
}

TEST_F(CameraStreams, KeepThePacketSizeThatTheUserSet) {
    acquisition.Start(GenTL::GENTL_INFINITE);
    EXPECT_EQ(host.camera[kRegStreamPacketSize], kPacketSize);
    acquisition.Stop(true);
    host.isSizeChosen = false;
    Set("StreamFindPacketSize", 0);
    acquisition.Start(GenTL::GENTL_INFINITE);
    EXPECT_EQ(host.camera[kRegStreamPacketSize], kPacketSize);
}

TEST_F(CameraStreams, OpenAFirewallByAPacketToTheSourcePort) {
    UdpSocket source = LoopbackSocket();
    host.camera[kRegStreamCapability] = kOffersStreamSourcePort;
    host.camera[kRegStreamSourcePort] = source.Local().port;
    acquisition.Start(GenTL::GENTL_INFINITE);
    const auto datagram = source.Receive(Clock::now() + 10s);
    ASSERT_TRUE(datagram);
    EXPECT_EQ(datagram->sender, DestinationOf(host));
}

TEST_F(CameraStreams, OfAReaderJoinTheGroupThatTheOwnerSendsTo) {
    host.isWritable = false;
    const Ipv4 group{0xEF010203};
    const uint16_t port = LoopbackSocket().Local().port;
    host.camera[kRegStreamDestination] = group.value;
    host.camera[kRegStreamPort] = port;
    Announce(1);
    acquisition.Start(GenTL::GENTL_INFINITE);
    EXPECT_TRUE(host.camera.Writes().empty());
    const in_addr out{htonl(kLoopback.value)};
    ASSERT_EQ(setsockopt(host.sender.File(), IPPROTO_IP, IP_MULTICAST_IF, &out, sizeof out), 0);
    SendBlock(1);
    EXPECT_EQ(Next()->facts->FrameId(), 1U);
    acquisition.Stop(true);
    EXPECT_TRUE(host.camera.Writes().empty());
}

TEST_F(CameraStreams, KeepTheGroupThatTheUserSet) {
    const Ipv4 group{0xEF010204};
    host.camera[kRegStreamDestination] = group.value;
    Announce(1);
    acquisition.Start(GenTL::GENTL_INFINITE);
    EXPECT_EQ(host.camera[kRegStreamDestination], group.value);
    const in_addr out{htonl(kLoopback.value)};
    ASSERT_EQ(setsockopt(host.sender.File(), IPPROTO_IP, IP_MULTICAST_IF, &out, sizeof out), 0);
    SendBlock(1);
    EXPECT_EQ(Next()->facts->FrameId(), 1U);
}

TEST_F(CameraStreams, OfAReaderNeedAGroup) {
    host.isWritable = false;
    host.camera[kRegStreamDestination] = kLoopback.value;
    host.camera[kRegStreamPort] = 5000;
    try {
        acquisition.Start(1);
        FAIL() << "It was started";
    } catch (const OvProducer::Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_ACCESS_DENIED);
    }
}

TEST_F(CameraStreams, LeaveIncompleteFramesOutIfTheUserWantsSo) {
    Set("StreamDeliverIncomplete", 0);
    Set("StreamResend", 0);
    Announce(2);
    acquisition.Start(GenTL::GENTL_INFINITE);
    SendLeader(1, 3);
    SendData(1, 1);
    SendBlock(2);
    EXPECT_EQ(Next()->facts->FrameId(), 2U);
    EXPECT_EQ(Counter("StreamBlockLeftOutCount"), 1U);
}

TEST_F(CameraStreams, KeepTheirSettingsWithinTheirRanges) {
    Set("StreamResendLimit", 50);
    EXPECT_EQ(Counter("StreamResendLimit"), 50U);
    for (const SettingFeature& feature : SettingFeatures()) {
        EXPECT_THROW(Set(feature.name, feature.min - 1), OvProducer::Failure) << feature.name;
        EXPECT_THROW(Set(feature.name, feature.max + 1), OvProducer::Failure) << feature.name;
        EXPECT_GE(static_cast<int64_t>(Counter(feature.name)), feature.min) << feature.name;
        EXPECT_LE(static_cast<int64_t>(Counter(feature.name)), feature.max) << feature.name;
    }
    EXPECT_THROW(Set("StreamPacketUsedCount", 0), OvProducer::Failure);
}

TEST_F(CameraStreams, RunWithoutTheRightToBeUrgent) {
    Announce(1);
    Set("StreamThreadPriority", 50);
    Set("StreamThreadProcessor", 1023);
    Set("StreamBusyPoll", 1'000'000);
    acquisition.Start(GenTL::GENTL_INFINITE);
    SendBlock(1);
    EXPECT_EQ(Next()->facts->FrameId(), 1U);
}

}  // namespace
