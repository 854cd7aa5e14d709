// Packets that the system hands over as one message.

#include "CameraStreamTest.h"
#include "TrainNote.h"

namespace {

using namespace OvGige;
using namespace OvTest;

class PacketTrains : public CameraStreams {
protected:
    static constexpr uint32_t kPackets = 40;

    /// Sends data packets as one message, which this machine's loopback leaves as it is.
    void SendTrain(uint64_t block, const std::vector<uint32_t>& ids, size_t size = kData) {
        Bytes train;
        for (const uint32_t id : ids) {
            const StreamHeader header{
                .format = PacketFormat::Data, .blockId = block, .packetId = id};
            Bytes packet(header.Size());
            WriteStreamHeader(packet, header);
            Append(packet, Bytes(size, Filling(block, (id - 1) * size)));
            Append(train, packet);
        }
        sockaddr_in to{};
        to.sin_family = AF_INET;
        to.sin_port = htons(DestinationOf(host).port);
        to.sin_addr.s_addr = htonl(DestinationOf(host).ip.value);
        iovec part{train.data(), train.size()};
        msghdr message{};
        message.msg_name = &to;
        message.msg_namelen = sizeof to;
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        const TrainNote note(message, size + kStreamHeaderSize);
        ASSERT_EQ(sendmsg(host.sender.File(), &message, 0), static_cast<ssize_t>(train.size()));
    }
    static std::byte Filling(uint64_t block, size_t offset) {
        return static_cast<std::byte>(block * 50 + offset / kData + 1);
    }
    static std::vector<uint32_t> Ids(uint32_t first, uint32_t last) {
        std::vector<uint32_t> ids;
        for (uint32_t id = first; id <= last; ++id) {
            ids.push_back(id);
        }
        return ids;
    }
    void ExpectBlock(uint64_t block) {
        const auto buffer = Next();
        EXPECT_EQ(buffer->facts->FrameId(), block);
        for (size_t i = 0; i < buffer->size; ++i) {
            ASSERT_EQ(buffer->base[i], Filling(block, i)) << "block " << block << ", byte " << i;
        }
        pool.Queue(buffer->Handle());
    }
    void Start() {
        Announce(2, kPackets * kData);
        acquisition.Start(GenTL::GENTL_INFINITE);
    }
};

TEST_F(PacketTrains, FillBuffers) {
    Start();
    for (uint64_t block = 1; block <= 6; ++block) {
        SendLeader(block, kPackets);
        SendTrain(block, Ids(1, 25));
        SendTrain(block, Ids(26, kPackets));
        SendTrailer(block, kPackets + 1);
        ExpectBlock(block);
    }
    acquisition.Stop(true);
    EXPECT_EQ(Counter("StreamPacketUsedCount"), 6U * (kPackets + 2));
    EXPECT_EQ(Counter("StreamPacketIgnoredCount"), 0U);
}

TEST_F(PacketTrains, MayHavePacketsInAnyOrder) {
    Start();
    std::vector<uint32_t> ids = Ids(1, kPackets);
    std::swap(ids[10], ids[20]);
    for (uint64_t block = 1; block <= 4; ++block) {
        SendLeader(block, kPackets);
        SendTrain(block, ids);
        SendTrailer(block, kPackets + 1);
        ExpectBlock(block);
    }
}

TEST_F(PacketTrains, MayComeBetweenSinglePackets) {
    Start();
    for (uint64_t block = 1; block <= 4; ++block) {
        SendLeader(block, kPackets);
        for (uint32_t id = 1; id <= 20; ++id) {
            SendTrain(block, {id});
        }
        SendTrain(block, Ids(21, kPackets));
        SendTrailer(block, kPackets + 1);
        ExpectBlock(block);
    }
}

TEST_F(PacketTrains, MayHavePacketsOfAnotherSizeThanExpected) {
    Start();
    constexpr size_t kSize = kData / 2;
    constexpr uint32_t kCount = 2 * kPackets;
    for (uint64_t block = 1; block <= 4; ++block) {
        SendLeader(block, kPackets);
        SendTrain(block, Ids(1, kPackets), kSize);
        SendTrain(block, Ids(kPackets + 1, kCount), kSize);
        SendTrailer(block, kCount + 1);
        ExpectBlock(block);
    }
}

TEST_F(PacketTrains, MayGoOnPastTheEndOfTheBuffer) {
    Announce(1, (kPackets - 10) * kData);
    acquisition.Start(GenTL::GENTL_INFINITE);
    for (uint64_t block = 1; block <= 3; ++block) {
        SendLeader(block, kPackets);
        SendTrain(block, Ids(1, kPackets));
        SendTrailer(block, kPackets + 1);
        ExpectBlock(block);
    }
    acquisition.Stop(true);
    EXPECT_EQ(Counter("StreamBlockIncompleteCount"), 3U);
    EXPECT_EQ(Counter("StreamPacketIgnoredCount"), 30U);
}

TEST_F(PacketTrains, ComeAsSinglePacketsIfTheUserWantsSo) {
    Set("StreamJoinPackets", 0);
    Start();
    for (uint64_t block = 1; block <= 3; ++block) {
        SendLeader(block, kPackets);
        SendTrain(block, Ids(1, kPackets));
        SendTrailer(block, kPackets + 1);
        ExpectBlock(block);
    }
}

}  // namespace
