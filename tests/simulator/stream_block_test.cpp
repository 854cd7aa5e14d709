#include <gtest/gtest.h>

#include "gige/protocol/GvspBlock.h"
#include "simulator/stream/StreamBlock.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;

constexpr size_t kSmallPacket = 576;
constexpr size_t kData = kSmallPacket - kIpUdpHeaderSize - kStreamHeaderSize;

StreamSetup SetupOf(bool isExtended = false) {
    StreamSetup setup;
    setup.packetSize = kSmallPacket;
    setup.isExtended = isExtended;
    return setup;
}

OvProducer::FrameInfo Frame(size_t size, uint64_t number = 0) {
    OvProducer::FrameInfo frame;
    frame.width = 64;
    frame.height = 32;
    frame.offsetX = 8;
    frame.offsetY = 6;
    frame.pixelFormat = 0x01080001;
    frame.timestamp = 0x123456789A;
    frame.frameId = number;
    frame.sizeFilled = size;
    return frame;
}

StreamBlock BlockOf(size_t size, const StreamSetup& setup = SetupOf()) {
    StreamBlock block;
    const auto room = block.MakeRoom(size);
    for (size_t i = 0; i < size; ++i) {
        room[i] = static_cast<std::byte>(i % 251);
    }
    block.Fill(setup, Frame(size));
    return block;
}

TEST(StreamBlock, BeginsWithItsLeader) {
    const StreamBlock block = BlockOf(100);
    EXPECT_EQ(block.Header(0).format, PacketFormat::Leader);
    const BlockLeader leader = ParseLeader(block.Payload(0)).value();
    EXPECT_EQ(leader.Type(), PayloadType::Image);
    EXPECT_FALSE(leader.HasChunks());
    EXPECT_EQ(leader.timestamp, 0x123456789AU);
    EXPECT_EQ(
        leader.shape,
        (ImageShape{
            .pixelFormat = 0x01080001, .sizeX = 64, .sizeY = 32, .offsetX = 8, .offsetY = 6}));
}

TEST(StreamBlock, EndsWithItsTrailer) {
    const StreamBlock block = BlockOf(100);
    EXPECT_EQ(block.PacketCount(), 3U);
    EXPECT_EQ(block.Header(2).format, PacketFormat::Trailer);
    EXPECT_EQ(ParseTrailer(block.Payload(2))->sizeY, 32U);
}

TEST(StreamBlock, FillsAllPacketsButTheLast) {
    const StreamBlock block = BlockOf(2 * kData + 1);
    EXPECT_EQ(block.PacketCount(), 5U);
    EXPECT_EQ(block.Payload(1).size(), kData);
    EXPECT_EQ(block.Payload(2).size(), kData);
    EXPECT_EQ(block.Payload(3).size(), 1U);
    EXPECT_EQ(block.Payload(3)[0], static_cast<std::byte>(2 * kData % 251));
    EXPECT_EQ(block.Header(3).format, PacketFormat::Data);
    EXPECT_EQ(block.Header(3).packetId, 3U);
}

TEST(StreamBlock, HasNoEmptyPacketAfterDataThatFit) {
    EXPECT_EQ(BlockOf(2 * kData).PacketCount(), 4U);
}

TEST(StreamBlock, HasLessDataInPacketsOfTheLongForm) {
    const StreamBlock block = BlockOf(2 * kData, SetupOf(true));
    EXPECT_EQ(block.PacketCount(), 5U);
    EXPECT_TRUE(block.Header(1).isExtended);
    EXPECT_EQ(block.Payload(1).size(), kData - 12);
}

TEST(StreamBlock, SaysImageAndChunksIfTheHostKnowsBoth) {
    StreamBlock block;
    block.MakeRoom(100);
    OvProducer::FrameInfo frame = Frame(100);
    frame.payloadType = GenTL::PAYLOAD_TYPE_CHUNK_DATA;
    frame.chunkPayloadSize = 100;
    block.Fill(SetupOf(), frame);
    const BlockLeader leader = ParseLeader(block.Payload(0)).value();
    EXPECT_EQ(leader.Type(), PayloadType::Image);
    EXPECT_TRUE(leader.HasChunks());
    EXPECT_EQ(ParseTrailer(block.Payload(2))->chunkPayloadLength, 100U);
    StreamSetup plain = SetupOf();
    plain.marksChunks = false;
    block.Fill(plain, frame);
    EXPECT_EQ(ParseLeader(block.Payload(0))->payloadType,
              static_cast<uint16_t>(PayloadType::Chunk));
    EXPECT_EQ(ParseTrailer(block.Payload(2))->chunkPayloadLength, 100U);
}

/// A block with an image of 16 bytes and a chunk of 4.
StreamBlock BlockWithChunks() {
    StreamBlock block;
    const auto room = block.MakeRoom(36);
    WriteBig(room.subspan(16), uint32_t{0xA});
    WriteBig(room.subspan(20), uint32_t{16});
    WriteBig(room.subspan(28), uint32_t{0xB});
    WriteBig(room.subspan(32), uint32_t{4});
    OvProducer::FrameInfo frame = Frame(36);
    frame.payloadType = GenTL::PAYLOAD_TYPE_CHUNK_DATA;
    frame.chunkPayloadSize = 36;
    frame.chunks = {{0xA, 0, 16}, {0xB, 24, 4}};
    block.Fill(SetupOf(), frame);
    return block;
}

TEST(StreamBlock, SpoilsTheEndOfAChunk) {
    constexpr size_t kId = 28;
    constexpr size_t kLength = 32;
    const auto spoilt = [](uint64_t fault, size_t at) {
        StreamBlock block = BlockWithChunks();
        EXPECT_TRUE(block.SpoilChunk(2 * fault + 1));
        return ReadBig<uint32_t>(block.Payload(1).subspan(at));
    };
    EXPECT_EQ(spoilt(0, kLength), 29U);  // begins before the block
    EXPECT_EQ(spoilt(1, kLength), 3U);
    EXPECT_EQ(spoilt(2, kLength), 0xFFFFFFF8U);  // 0 together with its end
    EXPECT_EQ(spoilt(3, kId), 0xFFFFFFF4U);
}

TEST(StreamBlock, HasNoChunkToSpoilWithoutChunks) {
    StreamBlock block = BlockOf(100);
    EXPECT_FALSE(block.SpoilChunk(1));
}

TEST(StreamBlock, CountsFromOneAndNeverHasTheNumberNone) {
    EXPECT_EQ(BlockIdOf(0, false), 1U);
    EXPECT_EQ(BlockIdOf(65534, false), 65535U);
    EXPECT_EQ(BlockIdOf(65535, false), 1U);
    EXPECT_EQ(BlockIdOf(65535, true), 65536U);
}

}  // namespace
