#include <gtest/gtest.h>

#include <array>

#include "HexBytes.h"
#include "gige/protocol/Gvsp.h"
#include "gige/protocol/GvspBlock.h"
#include "gige/protocol/GvspResend.h"

namespace {

using namespace OvGige;

Bytes Written(const StreamHeader& header) {
    Bytes bytes(header.Size());
    WriteStreamHeader(bytes, header);
    return bytes;
}

TEST(StreamHeader, HasShortForm) {
    const StreamHeader header{.status = Status::PacketResend,
                              .format = PacketFormat::Data,
                              .blockId = 0xFFFF,
                              .packetId = 0xABCDEF};
    const Bytes bytes = FromHex("01 00 FF FF 03 AB CD EF");
    EXPECT_EQ(Written(header), bytes);
    EXPECT_EQ(ParseStreamHeader(bytes), header);
    EXPECT_TRUE(header.IsResent());
    EXPECT_TRUE(header.IsGood());
}

TEST(StreamHeader, HasExtendedForm) {
    const StreamHeader header{.isExtended = true,
                              .flags = kStreamFlagResent,
                              .format = PacketFormat::Leader,
                              .parts = 3,
                              .blockId = 0x0102030405060708,
                              .packetId = 0xAABBCCDD};
    const Bytes bytes = FromHex("00 00 00 01 81 00 00 03 01 02 03 04 05 06 07 08 AA BB CC DD");
    EXPECT_EQ(Written(header), bytes);
    EXPECT_EQ(ParseStreamHeader(bytes), header);
    EXPECT_TRUE(header.IsResent());
}

TEST(StreamHeader, IsNoneWhenItIsCut) {
    EXPECT_FALSE(ParseStreamHeader(FromHex("00 00 00 01 03 00 00")));
    EXPECT_FALSE(
        ParseStreamHeader(FromHex("00 00 00 00 83 00 00 00 00 00 00 00 00 00 00 01 00 00 00")));
}

TEST(StreamHeader, IsNotGoodWithAnErrorStatus) {
    const auto header = ParseStreamHeader(FromHex("80 0C 00 01 03 00 00 07"));
    ASSERT_TRUE(header);
    EXPECT_FALSE(header->IsGood());
    EXPECT_FALSE(header->IsResent());
    EXPECT_EQ(header->status, Status::PacketUnavailable);
}

TEST(DataPrefix, HasPartAndOffset) {
    const DataPrefix prefix{.part = 2, .zoneInfo = 0x40, .offset = 0x010203040506};
    std::array<std::byte, 8> bytes{};
    WriteDataPrefix(bytes, PacketFormat::MultiPartData, prefix);
    EXPECT_EQ(Bytes(bytes.begin(), bytes.end()), FromHex("02 40 01 02 03 04 05 06"));
    EXPECT_EQ(ParseDataPrefix(PacketFormat::MultiPartData, bytes), prefix);
}

TEST(DataPrefix, HasTimeOfVideo) {
    const DataPrefix prefix{.timestamp = 0x0102030405060708};
    std::array<std::byte, 8> bytes{};
    WriteDataPrefix(bytes, PacketFormat::H264Data, prefix);
    EXPECT_EQ(Bytes(bytes.begin(), bytes.end()), FromHex("01 02 03 04 05 06 07 08"));
    EXPECT_EQ(ParseDataPrefix(PacketFormat::H264Data, bytes), prefix);
}

TEST(DataPerPacket, IsWhatHeadersLeave) {
    EXPECT_EQ(DataPerPacket(1500, false, PacketFormat::Data), 1464U);
    EXPECT_EQ(DataPerPacket(1500, true, PacketFormat::Data), 1452U);
    EXPECT_EQ(DataPerPacket(1500, true, PacketFormat::MultiPartData), 1444U);
    EXPECT_EQ(DataPerPacket(9000, false, PacketFormat::Data), 8964U);
    EXPECT_EQ(DataPerPacket(36, false, PacketFormat::Data), 0U);
}

const Bytes kImageLeader = FromHex(
    "12 34 00 01 00 00 00 00 00 00 10 00 01 08 00 01 00 00 02 80 00 00 01 E0"
    "00 00 00 08 00 00 00 04 00 02 00 03");

TEST(Leader, OfAnImageHasItsShape) {
    const auto leader = ParseLeader(kImageLeader);
    ASSERT_TRUE(leader);
    EXPECT_EQ(leader->Type(), PayloadType::Image);
    EXPECT_FALSE(leader->HasChunks());
    EXPECT_EQ(leader->fieldInfo, 0x12);
    EXPECT_EQ(leader->genericFlags, 0x34);
    EXPECT_EQ(leader->timestamp, 0x1000U);
    EXPECT_EQ(leader->shape, (ImageShape{.pixelFormat = 0x01080001,
                                         .sizeX = 640,
                                         .sizeY = 480,
                                         .offsetX = 8,
                                         .offsetY = 4,
                                         .paddingX = 2,
                                         .paddingY = 3}));
    EXPECT_EQ(BuildLeader(*leader), kImageLeader);
}

TEST(Leader, IsNoneWhenItIsTooShortForItsType) {
    EXPECT_FALSE(ParseLeader(ByteView(kImageLeader).first(35)));
    EXPECT_FALSE(ParseLeader(FromHex("00 00 00 04 00 00 00 00 00 00 00")));
    EXPECT_TRUE(ParseLeader(FromHex("00 00 00 04 00 00 00 00 00 00 00 01")));
}

TEST(Leader, MarksChunksThatFollowTheData) {
    Bytes bytes = kImageLeader;
    bytes[2] = std::byte{0x40};
    const auto leader = ParseLeader(bytes);
    ASSERT_TRUE(leader);
    EXPECT_EQ(leader->Type(), PayloadType::Image);
    EXPECT_TRUE(leader->HasChunks());
    EXPECT_EQ(BuildLeader(*leader), bytes);
}

TEST(Leader, OfAMakersOwnTypeHasNoMark) {
    const auto leader = ParseLeader(FromHex("00 00 C0 01 00 00 00 00 00 00 00 01"));
    ASSERT_TRUE(leader);
    EXPECT_EQ(leader->Type(), PayloadType{0xC001});
    EXPECT_FALSE(leader->HasChunks());
    EXPECT_EQ(leader->timestamp, 1U);
}

TEST(Leader, OfAnyTypeIsWrittenAsItWasRead) {
    for (const char* text :
         {"00 00 00 02 00 00 00 00 00 00 00 01 00 00 00 00 00 00 10 00",
          "00 00 00 03 00 00 00 00 00 00 00 01 00 00 00 00 00 00 10 00 61 2E 62 00",
          "00 00 00 06 00 00 00 00 00 00 00 01 00 00 00 00 00 00 10 00 00 00 00 00 3B 9A CA 00 00 "
          "00 00 01",
          "00 00 00 08 00 00 00 00 00 00 10 00 00 01 05 DC 00 42 80 1E 00 03 00 04 00 00 00 05 00 "
          "00 00 06",
          "00 00 00 09 00 00 00 00 00 00 00 01 80 00 00 00 01 08 00 01 00 00 02 80 00 00 01 E0 00 "
          "00 00 00 00 00 00 00 00 00 00 00"}) {
        const Bytes bytes = FromHex(text);
        const auto leader = ParseLeader(bytes);
        ASSERT_TRUE(leader) << text;
        EXPECT_EQ(BuildLeader(*leader), bytes) << text;
    }
}

TEST(Leader, OfAFileHasItsName) {
    const Bytes bytes =
        FromHex("00 00 00 03 00 00 00 00 00 00 00 01 00 00 00 00 00 00 10 00 61 2E 62 00");
    const auto leader = ParseLeader(bytes);
    ASSERT_TRUE(leader);
    EXPECT_EQ(leader->size, 0x1000U);
    EXPECT_EQ(ReadText(leader->fileName), "a.b");
}

TEST(Leader, OfSeveralPartsHasTheirRecords) {
    const BlockPart first{.dataType = 1,
                          .length = 0x010203040506,
                          .source = 1,
                          .purpose = 2,
                          .region = 3,
                          .shape = {.pixelFormat = 0x01080001, .sizeX = 4, .sizeY = 2}};
    const BlockPart second{.dataType = 9, .length = 16};
    Bytes records = BuildPart(first);
    EXPECT_EQ(records.size(), kBlockPartSize);
    Append(records, BuildPart(second));
    BlockLeader built;
    built.payloadType = static_cast<uint16_t>(PayloadType::MultiPart);
    built.timestamp = 5;
    built.parts = records;
    const Bytes bytes = BuildLeader(built);
    EXPECT_EQ(bytes.size(), 12 + 2 * kBlockPartSize);
    const auto leader = ParseLeader(bytes);
    ASSERT_TRUE(leader);
    ASSERT_EQ(leader->PartCount(), 2U);
    EXPECT_EQ(leader->Part(0), first);
    EXPECT_EQ(leader->Part(1), second);
}

struct TrailerCase {
    const char* text;
    BlockTrailer trailer;
};

TEST(Trailer, HasTheFieldsOfItsType) {
    for (const TrailerCase& one : std::to_array<TrailerCase>({
             {"00 00 00 01 00 00 01 E0", {.payloadType = 1, .sizeY = 480}},
             {"00 00 00 02", {.payloadType = 2}},
             {"00 00 00 04 00 00 10 00", {.payloadType = 4, .chunkPayloadLength = 0x1000}},
             {"00 00 00 05 00 00 10 00 00 00 01 E0 00 00 00 07",
              {.payloadType = 5, .sizeY = 480, .chunkPayloadLength = 0x1000, .chunkLayoutId = 7}},
             {"00 00 40 01 00 00 01 E0 00 00 10 00 00 00 00 07",
              {.payloadType = 0x4001,
              .sizeY = 480,
              .chunkPayloadLength = 0x1000,
              .chunkLayoutId = 7}},
             {"00 00 40 02 00 00 10 00 00 00 00 07",
              {.payloadType = 0x4002, .chunkPayloadLength = 0x1000, .chunkLayoutId = 7}},
             {"00 00 00 09 00 00 00 02", {.payloadType = 9, .sizeY = 2}},
         })) {
        const Bytes bytes = FromHex(one.text);
        EXPECT_EQ(ParseTrailer(bytes), one.trailer) << one.text;
        EXPECT_EQ(BuildTrailer(one.trailer), bytes) << one.text;
    }
}

TEST(Trailer, MayLackItsLastFields) {
    EXPECT_EQ(ParseTrailer(FromHex("00 00 00 01")), BlockTrailer{.payloadType = 1});
    EXPECT_FALSE(ParseTrailer(FromHex("00 00 00")));
}

TEST(Trailer, OfSeveralPartsHasItsChunkWordsAtItsEnd) {
    Bytes bytes = FromHex("00 00 40 0A");
    AppendZeros(bytes, 32);
    Append(bytes, FromHex("00 00 10 00 00 00 00 07"));
    const auto trailer = ParseTrailer(bytes);
    ASSERT_TRUE(trailer);
    EXPECT_EQ(trailer->chunkPayloadLength, 0x1000U);
    EXPECT_EQ(trailer->chunkLayoutId, 7U);
}

TEST(WholeBlock, HasLeaderTrailerAndData) {
    Bytes bytes = kImageLeader;
    Append(bytes, FromHex("00 00 00 01 00 00 01 E0"));
    Append(bytes, FromHex("11 22 33"));
    const auto block = ParseWholeBlock(bytes);
    ASSERT_TRUE(block);
    EXPECT_EQ(block->leader.shape.sizeX, 640U);
    EXPECT_EQ(block->trailer.sizeY, 480U);
    EXPECT_EQ(Bytes(block->data.begin(), block->data.end()), FromHex("11 22 33"));
    EXPECT_EQ(BuildWholeBlock(*block), bytes);
}

TEST(WholeBlock, IsNoneWhenItIsCutOrOfSeveralParts) {
    Bytes bytes = kImageLeader;
    Append(bytes, FromHex("00 00 00 01 00 00 01"));
    EXPECT_FALSE(ParseWholeBlock(bytes));
    Bytes parts = FromHex("00 00 00 0A 00 00 00 00 00 00 00 01");
    Append(parts, FromHex("00 00 00 0A"));
    EXPECT_FALSE(ParseWholeBlock(parts));
    Bytes other = kImageLeader;
    Append(other, FromHex("00 00 00 02 00 00 01 E0"));
    EXPECT_FALSE(ParseWholeBlock(other));
}

TEST(ResendRequest, HasShortForm) {
    const ResendRequest request{
        .channel = 1, .blockId = 0xFFFE, .firstPacket = 2, .lastPacket = 0xABCDEF};
    const Bytes bytes = FromHex("00 01 FF FE 00 00 00 02 00 AB CD EF");
    EXPECT_EQ(request.Flags(), 0);
    EXPECT_EQ(BuildResend(request), bytes);
    EXPECT_EQ(ParseResend(bytes, 0), request);
}

TEST(ResendRequest, HasExtendedForm) {
    const ResendRequest request{.channel = 1,
                                .isExtended = true,
                                .blockId = 0x0102030405060708,
                                .firstPacket = 2,
                                .lastPacket = 0xFFFFFFFE};
    const Bytes bytes = FromHex("00 01 00 00 00 00 00 02 FF FF FF FE 01 02 03 04 05 06 07 08");
    EXPECT_EQ(request.Flags(), kFlagExtendedIds);
    EXPECT_EQ(BuildResend(request), bytes);
    EXPECT_EQ(ParseResend(bytes, kFlagExtendedIds), request);
}

TEST(ResendRequest, IsNoneWithTheLengthOfTheOtherForm) {
    const Bytes bytes = FromHex("00 01 FF FE 00 00 00 02 00 AB CD EF");
    EXPECT_FALSE(ParseResend(bytes, kFlagExtendedIds));
    EXPECT_FALSE(ParseResend(ByteView(bytes).first(8), 0));
}

}  // namespace
