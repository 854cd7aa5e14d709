#include <gtest/gtest.h>

#include "BlockStation.h"
#include "HexBytes.h"

namespace {

using namespace OvGige;
using namespace OvTest;
using namespace std::chrono_literals;

class BlockAssembly : public testing::Test {
protected:
    ~BlockAssembly() override {
        EXPECT_EQ(station.CountedPackets(), station.sent) << "a packet wasn't counted";
    }

    BlockStation station;
    BlockShelf& shelf = station.shelf;
    StreamAccount& account = station.account;
};

Bytes Filled(std::initializer_list<int> values, size_t each = kDataSize) {
    Bytes bytes;
    for (const int value : values) {
        bytes.insert(bytes.end(), each, static_cast<std::byte>(value));
    }
    return bytes;
}

Bytes DataOf(const Delivery& delivery) {
    return {delivery.bytes.begin(),
            delivery.bytes.begin() + static_cast<ptrdiff_t>(delivery.frame.sizeFilled)};
}

TEST_F(BlockAssembly, DeliversACompleteBlock) {
    station.Whole(1, 3);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    const Delivery& delivery = shelf.delivered[0];
    EXPECT_EQ(DataOf(delivery), Filled({1, 2, 3}));
    EXPECT_FALSE(delivery.frame.incomplete);
    EXPECT_FALSE(delivery.frame.largerThanBuffer);
    EXPECT_EQ(delivery.frame.frameId, 1U);
    EXPECT_EQ(delivery.frame.payloadType, GenTL::PAYLOAD_TYPE_RAW_DATA);
    EXPECT_FALSE(delivery.frame.imagePresent);
    EXPECT_EQ(account.complete.Value(), 1U);
    EXPECT_EQ(account.used.Value(), 5U);
}

TEST_F(BlockAssembly, TakesExtendedHeaders) {
    station.isExtended = true;
    station.settings.packetSize += kExtendedStreamHeaderSize - kStreamHeaderSize;
    station.Whole(0x100000000);
    station.Whole(0x100000001);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{0x100000000, 0x100000001}));
    EXPECT_EQ(DataOf(shelf.delivered[1]), Filled({1, 2}));
}

TEST_F(BlockAssembly, PutsPacketsInAnyOrderToTheirPlaces) {
    station.Leader(1, 4 * kDataSize);
    for (const uint32_t id : {3U, 1U, 4U, 2U}) {
        station.Data(1, id);
    }
    station.Trailer(1, 5);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_EQ(DataOf(shelf.delivered[0]), Filled({1, 2, 3, 4}));
    EXPECT_TRUE(shelf.requests.empty());
}

TEST_F(BlockAssembly, TakesTheTrailerBeforeTheLastData) {
    station.Some(1, 2, {1});
    station.Trailer(1, 3);
    EXPECT_TRUE(shelf.delivered.empty());
    station.Data(1, 2);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_FALSE(shelf.delivered[0].frame.incomplete);
}

TEST_F(BlockAssembly, CountsWhatComesTwice) {
    station.Leader(1, 16);
    station.Leader(1, 16);
    station.Data(1, 1);
    station.Data(1, 1);
    station.Data(1, 2);
    station.Trailer(1, 3);
    station.Trailer(1, 3);
    station.Data(1, 2);
    EXPECT_EQ(account.doubled.Value(), 4U);
    EXPECT_EQ(account.used.Value(), 4U);
    EXPECT_EQ(account.complete.Value(), 1U);
}

TEST_F(BlockAssembly, TakesAShorterBlockThanItsLeaderSays) {
    BlockLeader leader;
    leader.payloadType = static_cast<uint16_t>(PayloadType::Image);
    leader.shape = {.pixelFormat = 0x01080001, .sizeX = 8, .sizeY = 4};
    station.Leader(1, leader);
    station.Data(1, 1);
    station.Trailer(1, 2, {.payloadType = 1, .sizeY = 1});
    ASSERT_EQ(shelf.delivered.size(), 1U);
    const OvProducer::FrameInfo& frame = shelf.delivered[0].frame;
    EXPECT_FALSE(frame.incomplete);
    EXPECT_EQ(frame.height, 4U);
    EXPECT_EQ(frame.deliveredHeight, 1U);
    EXPECT_EQ(frame.sizeFilled, 8U);
}

TEST_F(BlockAssembly, TakesTheShortLastPacketOfAShorterBlockThanItsLeaderSays) {
    station.Leader(1, 4 * kDataSize);
    station.Data(1, 1);
    station.Data(1, 2, 3);
    station.Trailer(1, 3);
    EXPECT_EQ(account.ignored.Value(), 0U);
    EXPECT_TRUE(shelf.requests.empty());
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_EQ(shelf.delivered[0].frame.sizeFilled, kDataSize + 3);
}

TEST_F(BlockAssembly, TakesALongerBlockThanItsLeaderSays) {
    station.Leader(1, kDataSize);
    station.Data(1, 1);
    station.Data(1, 2);
    station.Trailer(1, 3);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_FALSE(shelf.delivered[0].frame.incomplete);
    EXPECT_EQ(DataOf(shelf.delivered[0]), Filled({1, 2}));
}

TEST_F(BlockAssembly, IsntMisledByADamagedPacketNumber) {
    station.Some(1, 3, {1, 2});
    station.Data(1, 6);
    station.Data(1, 100);
    station.Pass(1ms);
    ASSERT_EQ(shelf.requests.size(), 1U);
    EXPECT_EQ(shelf.requests[0].firstPacket, 3U);
    EXPECT_EQ(shelf.requests[0].lastPacket, 3U);
    station.Data(1, 3);
    station.Trailer(1, 4);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_EQ(DataOf(shelf.delivered[0]), Filled({1, 2, 3}));
    EXPECT_FALSE(shelf.delivered[0].frame.incomplete);
    EXPECT_FALSE(shelf.delivered[0].frame.largerThanBuffer);
}

TEST_F(BlockAssembly, NeverWritesPastTheBuffer) {
    station.shelf.free.clear();
    auto buffer = std::make_shared<OvProducer::Buffer>();
    buffer->ownMemory.assign(32, std::byte{0xEE});
    buffer->base = buffer->ownMemory.data();
    buffer->size = 20;
    shelf.free.push_back(buffer);
    station.Whole(1, 5);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    const Delivery& delivery = shelf.delivered[0];
    EXPECT_TRUE(delivery.frame.largerThanBuffer);
    EXPECT_TRUE(delivery.frame.incomplete);
    EXPECT_EQ(delivery.frame.sizeFilled, 20U);
    Bytes expected = Filled({1, 2});
    Append(expected, Filled({3}, 4));
    Append(expected, Filled({0xEE}, 12));
    EXPECT_EQ(delivery.bytes, expected);
    EXPECT_EQ(account.ignored.Value(), 2U);
    EXPECT_EQ(account.missing.Value(), 0U);
}

TEST_F(BlockAssembly, GoesOnAfterTheLastShortId) {
    station.Whole(65534);
    station.Whole(65535);
    station.Whole(1);
    station.Whole(2);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{65534, 65535, 65536, 65537}));
    EXPECT_EQ(account.lostOnWire.Value(), 0U);
    EXPECT_EQ(account.restarts.Value(), 0U);
}

TEST_F(BlockAssembly, AsksForABlockBeforeTheWrapByItsOwnId) {
    station.Some(65535, 4, {1, 2, 4});
    station.Leader(1, 16);
    station.Pass(1ms);
    ASSERT_FALSE(shelf.requests.empty());
    EXPECT_EQ(shelf.requests[0].blockId, 65535U);
}

TEST_F(BlockAssembly, DeliversInOrderThoughALaterBlockIsCompleteFirst) {
    station.Some(1, 2, {1});
    station.Whole(2);
    EXPECT_TRUE(shelf.delivered.empty());
    station.Data(1, 2);
    station.Trailer(1, 3);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1, 2}));
}

TEST_F(BlockAssembly, CountsABlockThatNeverCame) {
    station.Whole(1);
    station.Whole(4);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1}));
    station.Pass(20ms);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1, 4}));
    EXPECT_EQ(account.lostOnWire.Value(), 2U);
    EXPECT_EQ(account.complete.Value(), 2U);
    EXPECT_EQ(station.CountedBlocks(), 4U);
}

TEST_F(BlockAssembly, IsntMisledByADamagedIdAheadOfTheOthers) {
    station.Some(7, 2, {1});
    station.Data(57, 2);
    station.Data(7, 2);
    station.Trailer(7, 3);
    station.Whole(8);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{7, 8}));
    EXPECT_EQ(account.lostOnWire.Value(), 0U);
    EXPECT_EQ(account.restarts.Value(), 0U);
    EXPECT_EQ(account.ignored.Value(), 1U);
}

TEST_F(BlockAssembly, KeepsWhatComesFirstOfABlockAfterAGap) {
    station.Whole(1);
    station.Data(4, 1);
    EXPECT_EQ(station.CountedBlocks(), 1U);
    station.Leader(4, 2 * kDataSize);
    station.Data(4, 2);
    station.Trailer(4, 3);
    station.Pass(1ms);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1, 4}));
    EXPECT_EQ(DataOf(shelf.delivered[1]), Filled({1, 2}));
    EXPECT_FALSE(shelf.delivered[1].frame.incomplete);
    EXPECT_EQ(account.lostOnWire.Value(), 2U);
    EXPECT_EQ(account.ignored.Value(), 0U);
}

TEST_F(BlockAssembly, BelievesASinglePacketAfterAGapIfOthersFollow) {
    station.settings.resends = false;
    station.Whole(1);
    station.Data(4, 1);
    station.Leader(7, 2 * kDataSize);
    station.Whole(8);
    station.Pass(1ms);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1, 4, 7, 8}));
    EXPECT_EQ(account.lostOnWire.Value(), 4U);
    EXPECT_EQ(account.incomplete.Value(), 2U);
    EXPECT_EQ(account.ignored.Value(), 0U);
}

TEST_F(BlockAssembly, CountsEveryBlockOfALongGap) {
    station.Whole(1);
    station.Whole(4002);
    station.Pass(1ms);
    EXPECT_EQ(account.lostOnWire.Value(), 4000U);
    EXPECT_EQ(account.restarts.Value(), 0U);
}

TEST_F(BlockAssembly, TakesAnUnknownStatusForADamagedPacket) {
    station.Some(1, 2, {1});
    station.Refusal(1, 2, static_cast<Status>(0x00FF));
    station.Refusal(1, 2, static_cast<Status>(0xFF00));
    EXPECT_EQ(account.refused.Value(), 0U);
    EXPECT_EQ(account.ignored.Value(), 2U);
}

TEST_F(BlockAssembly, MissesAsManyPacketsAsBlocksUsuallyHave) {
    station.settings.resends = false;
    station.Whole(1, 5);
    station.Data(2, 1);
    station.Whole(3, 5);
    station.Pass(1ms);
    EXPECT_EQ(account.incomplete.Value(), 1U);
    EXPECT_EQ(account.missing.Value(), 6U) << "leader, four of data and trailer";
}

TEST_F(BlockAssembly, MissesTheTrailerOfAWholeBlock) {
    station.settings.resends = false;
    station.Some(1, 2, {1, 2});
    station.Whole(2);
    station.Pass(1ms);
    EXPECT_EQ(account.complete.Value(), 2U);
    EXPECT_EQ(account.missing.Value(), 1U);
}

TEST_F(BlockAssembly, BlamesTheSocketForABlockThatItDropped) {
    station.Whole(1);
    station.Assembler().NoteDrops(7);
    station.Whole(3);
    station.Pass(20ms);
    EXPECT_EQ(account.lostInSocket.Value(), 1U);
    EXPECT_EQ(account.lostOnWire.Value(), 0U);
    EXPECT_EQ(account.dropped.Value(), 7U);
}

TEST_F(BlockAssembly, TakesABlockThatWasOvertakenAsAWhole) {
    station.Whole(1);
    station.Whole(3);
    station.Whole(2);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1, 2, 3}));
    EXPECT_EQ(account.lostOnWire.Value(), 0U);
}

TEST_F(BlockAssembly, DropsABlockWithoutABuffer) {
    shelf.free.clear();
    station.Whole(1);
    shelf.Announce(64);
    station.Data(1, 2);
    station.Whole(2);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{2}));
    EXPECT_EQ(account.noBuffer.Value(), 1U);
    EXPECT_EQ(account.complete.Value(), 1U);
    EXPECT_EQ(account.ignored.Value(), 5U);
}

TEST_F(BlockAssembly, MarksABlockWithoutAllPackets) {
    station.settings.resends = false;
    station.Some(1, 3, {1, 3});
    station.Trailer(1, 4);
    station.Whole(2);
    EXPECT_TRUE(shelf.delivered.empty());
    station.Pass(20ms);
    ASSERT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1, 2}));
    EXPECT_TRUE(shelf.delivered[0].frame.incomplete);
    EXPECT_EQ(shelf.delivered[0].frame.sizeFilled, 3 * kDataSize);
    EXPECT_EQ(account.incomplete.Value(), 1U);
    EXPECT_EQ(account.missing.Value(), 1U);
    EXPECT_TRUE(shelf.requests.empty());
}

TEST_F(BlockAssembly, LeavesIncompleteBlocksOutIfTheUserWantsSo) {
    station.settings.resends = false;
    station.settings.deliversIncomplete = false;
    station.Some(1, 2, {1});
    station.Whole(2);
    station.Pass(20ms);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{2}));
    EXPECT_EQ(shelf.givenBack, 1);
    EXPECT_EQ(account.leftOut.Value(), 1U);
    EXPECT_EQ(account.incomplete.Value(), 1U);
}

TEST_F(BlockAssembly, GivesUpAfterTheRetentionTime) {
    station.Some(1, 2, {1});
    station.Pass(99'999us);
    EXPECT_TRUE(shelf.delivered.empty());
    station.Pass(1us);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_TRUE(shelf.delivered[0].frame.incomplete);
}

TEST_F(BlockAssembly, WaitsForEverAfterALoneLeader) {
    station.Leader(1, 16);
    station.Pass(1h);
    EXPECT_TRUE(shelf.delivered.empty());
    EXPECT_TRUE(shelf.requests.empty());
    station.Data(1, 1);
    station.Data(1, 2);
    station.Trailer(1, 3);
    EXPECT_EQ(shelf.delivered.size(), 1U);
}

TEST_F(BlockAssembly, KnowsNoShapeWithoutALeader) {
    station.settings.resends = false;
    station.Data(1, 1);
    station.Trailer(1, 2);
    station.Pass(100ms);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_TRUE(shelf.delivered[0].frame.incomplete);
    EXPECT_FALSE(shelf.delivered[0].frame.imagePresent);
    EXPECT_EQ(shelf.delivered[0].frame.payloadType, GenTL::PAYLOAD_TYPE_UNKNOWN);
    EXPECT_EQ(DataOf(shelf.delivered[0]), Filled({1}));
}

TEST_F(BlockAssembly, IsWholeWithoutATrailerIfTheLeaderSaidItsSize) {
    station.settings.resends = false;
    station.Some(1, 2, {1, 2});
    station.Pass(100ms);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_FALSE(shelf.delivered[0].frame.incomplete);
    EXPECT_EQ(account.complete.Value(), 1U);
}

TEST_F(BlockAssembly, IgnoresTestPacketsAndRubbish) {
    station.Data(0, 1);
    station.Assembler().Take(FromHex("00 00 00"), station.now);
    ++station.sent;
    station.Send(station.Header(1, 0, PacketFormat::Leader), FromHex("00 00 00 01"));
    station.Send(station.Header(1, 1, PacketFormat{0x3F}), {});
    station.Send(station.Header(1, 1, PacketFormat::Data), {});
    EXPECT_EQ(account.ignored.Value(), 5U);
    EXPECT_TRUE(shelf.delivered.empty());
}

TEST_F(BlockAssembly, IgnoresIdsThatNoCameraReaches) {
    station.isExtended = true;
    station.Whole(0xFFFFFFFFFFFFFFFF);
    station.Whole(0x4000000000000001);
    EXPECT_EQ(account.ignored.Value(), station.sent);
    station.Whole(1);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1}));
}

TEST_F(BlockAssembly, IgnoresWhatComesAfterItsBlockWasGivenUp) {
    station.Some(1, 2, {1});
    station.Pass(100ms);
    station.Data(1, 2);
    EXPECT_EQ(account.ignored.Value(), 1U);
    EXPECT_EQ(shelf.delivered.size(), 1U);
}

TEST_F(BlockAssembly, FollowsACameraThatCountsAnewNearby) {
    station.Whole(40);
    station.Whole(1);
    station.Whole(2);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{40, 1, 2}));
    EXPECT_EQ(account.restarts.Value(), 1U);
    EXPECT_EQ(account.lostOnWire.Value(), 0U);
    EXPECT_FALSE(shelf.delivered[1].frame.incomplete);
}

TEST_F(BlockAssembly, FollowsACameraThatCountsAnewAmongIdsThatItJustHad) {
    for (const uint64_t id : {1U, 2U, 3U, 1U, 1U, 2U}) {
        station.Whole(id);
    }
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1, 2, 3, 1, 1, 2}));
    EXPECT_EQ(account.restarts.Value(), 2U);
    EXPECT_EQ(account.complete.Value(), 6U);
}

TEST_F(BlockAssembly, TakesALeaderThatComesTwiceForNoRestart) {
    station.Whole(1);
    station.ticks = 0;
    station.Leader(1, 16);
    station.Data(1, 1);
    auto buffers = std::exchange(shelf.free, {});
    station.Data(2, 1);
    station.ticks = 7;
    station.Leader(2, 16);
    station.ticks = 7;
    station.Leader(2, 16);
    station.Data(2, 2);
    shelf.free = std::move(buffers);
    station.Whole(3);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1, 3}));
    EXPECT_EQ(account.restarts.Value(), 0U);
    EXPECT_EQ(account.noBuffer.Value(), 1U);
}

TEST_F(BlockAssembly, FollowsACameraThatCountsAnewFarAway) {
    station.Whole(5000);
    station.Some(5001, 2, {1});
    station.Whole(3);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{5000, 5001, 3}));
    EXPECT_TRUE(shelf.delivered[1].frame.incomplete);
    EXPECT_EQ(account.restarts.Value(), 1U);
}

TEST_F(BlockAssembly, IsntMisledByADamagedId) {
    station.Some(7, 2, {1});
    station.Data(40000, 2);
    station.Data(7, 2);
    station.Trailer(7, 3);
    station.Whole(8);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{7, 8}));
    EXPECT_EQ(account.restarts.Value(), 0U);
    EXPECT_EQ(account.lostOnWire.Value(), 0U);
}

TEST_F(BlockAssembly, CountsAnEmptyLeaderOfAnotherRun) {
    station.Whole(7);
    station.Send(station.Header(40000, 0, PacketFormat::Leader), {});
    EXPECT_EQ(account.ignored.Value(), 1U);
}

TEST_F(BlockAssembly, TakesALateLeaderForNoRestart) {
    station.Whole(40);
    station.ticks = 0;
    station.Leader(5, 16);
    station.Data(5, 1);
    station.Whole(41);
    EXPECT_EQ(account.restarts.Value(), 0U);
    EXPECT_EQ(account.ignored.Value(), 2U);
}

TEST_F(BlockAssembly, LearnsTheLengthOfPacketsThatAreLongerThanExpected) {
    station.Leader(1, 24);
    station.Data(1, 1, 12);
    station.Data(1, 2, 12);
    station.Trailer(1, 3);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_EQ(DataOf(shelf.delivered[0]), Filled({1, 2}, 12));
    EXPECT_FALSE(shelf.delivered[0].frame.incomplete);
}

TEST_F(BlockAssembly, LearnsTheLengthOfPacketsThatAreShorterThanExpected) {
    BlockLeader leader;
    leader.payloadType = static_cast<uint16_t>(PayloadType::Chunk);
    station.Leader(1, leader);
    for (const uint32_t id : {1U, 2U, 3U}) {
        station.Data(1, id, 5);
    }
    station.Trailer(1, 4, {.payloadType = 4, .chunkPayloadLength = 15});
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_EQ(DataOf(shelf.delivered[0]), Filled({1, 2, 3}, 5));
    EXPECT_FALSE(shelf.delivered[0].frame.incomplete);
}

TEST_F(BlockAssembly, AsksForAPacketThatWasCut) {
    station.Some(1, 4, {1, 2});
    station.Data(1, 3, 3);
    station.Data(1, 4);
    station.Trailer(1, 5);
    EXPECT_TRUE(shelf.delivered.empty());
    station.Pass(1ms);
    ASSERT_EQ(shelf.requests.size(), 1U);
    EXPECT_EQ(shelf.requests[0].firstPacket, 3U);
    EXPECT_EQ(shelf.requests[0].lastPacket, 3U);
    station.Data(1, 3);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_EQ(DataOf(shelf.delivered[0]), Filled({1, 2, 3, 4}));
}

TEST_F(BlockAssembly, NoticesACutPacketAlsoIfNobodyKnowsTheLength) {
    BlockLeader leader;
    leader.payloadType = static_cast<uint16_t>(PayloadType::Chunk);
    station.Leader(1, leader);
    station.Data(1, 1);
    station.Data(1, 2, 3);
    station.Data(1, 3);
    station.Pass(1ms);
    ASSERT_EQ(shelf.requests.size(), 1U);
    EXPECT_EQ(shelf.requests[0].firstPacket, 2U);
    EXPECT_EQ(shelf.requests[0].lastPacket, 2U);
}

TEST_F(BlockAssembly, NoticesACutLastPacket) {
    station.Leader(1, 16);
    station.Data(1, 1);
    station.Data(1, 2, 3);
    station.Trailer(1, 3);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_TRUE(shelf.delivered[0].frame.incomplete);
}

TEST_F(BlockAssembly, PlacesPartsByTheirOffsets) {
    Bytes records = BuildPart({.dataType = 1, .length = 5});
    Append(records, BuildPart({.dataType = 1, .length = 3}));
    BlockLeader leader;
    leader.payloadType = static_cast<uint16_t>(PayloadType::MultiPart);
    leader.parts = records;
    station.Leader(1, leader);
    const StreamHeader first = station.Header(1, 1, PacketFormat::MultiPartData);
    const StreamHeader second = station.Header(1, 2, PacketFormat::MultiPartData);
    station.Send(second, FromHex("01 40 00 00 00 00 00 05 AA BB CC"));
    station.Send(first, FromHex("00 40 00 00 00 00 00 00 11 22 33 44 55"));
    station.Trailer(1, 3, {.payloadType = 0xA});
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_EQ(DataOf(shelf.delivered[0]), FromHex("11 22 33 44 55 AA BB CC"));
    EXPECT_EQ(shelf.delivered[0].frame.payloadType, GenTL::PAYLOAD_TYPE_MULTI_PART);
    EXPECT_FALSE(shelf.delivered[0].frame.incomplete);
}

TEST_F(BlockAssembly, TakesAWholeBlockFromOnePacket) {
    BlockLeader leader;
    leader.payloadType = static_cast<uint16_t>(PayloadType::Image);
    leader.timestamp = 3;
    leader.shape = {.pixelFormat = 0x01080001, .sizeX = 3, .sizeY = 1};
    const Bytes pixels = FromHex("0A 0B 0C");
    station.Send(station.Header(1, 0, PacketFormat::AllIn),
                 BuildWholeBlock({leader, {.payloadType = 1, .sizeY = 1}, pixels}));
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_EQ(DataOf(shelf.delivered[0]), pixels);
    EXPECT_EQ(shelf.delivered[0].frame.width, 3U);
    EXPECT_FALSE(shelf.delivered[0].frame.incomplete);
}

TEST_F(BlockAssembly, FindsChunksAfterTheImage) {
    BlockLeader leader;
    leader.payloadType = static_cast<uint16_t>(PayloadType::Image) | kChunkMark;
    leader.shape = {.pixelFormat = 0x01080001, .sizeX = 4, .sizeY = 1};
    station.Leader(1, leader);
    const Bytes block =
        FromHex("01 02 03 04 00 00 00 0A 00 00 00 04 11 22 00 00 00 0B 00 00 00 02");
    for (uint32_t id = 1; id <= 3; ++id) {
        const ByteView data = ByteView(block).subspan((id - 1) * kDataSize);
        station.Send(station.Header(1, id, PacketFormat::Data),
                     data.first(std::min(kDataSize, data.size())));
    }
    station.Trailer(
        1, 4, {.payloadType = 0x4001, .sizeY = 1, .chunkPayloadLength = 22, .chunkLayoutId = 9});
    ASSERT_EQ(shelf.delivered.size(), 1U);
    const OvProducer::FrameInfo& frame = shelf.delivered[0].frame;
    ASSERT_EQ(frame.chunks.size(), 2U);
    EXPECT_EQ(frame.chunks[0].ChunkID, 0xAU);
    EXPECT_EQ(frame.chunks[0].ChunkOffset, 0);
    EXPECT_EQ(frame.chunks[0].ChunkLength, 4U);
    EXPECT_EQ(frame.chunks[1].ChunkID, 0xBU);
    EXPECT_EQ(frame.chunks[1].ChunkOffset, 12);
    EXPECT_EQ(frame.chunkLayoutId, 9U);
    EXPECT_EQ(frame.chunkPayloadSize, 22U);
    EXPECT_EQ(frame.payloadType, GenTL::PAYLOAD_TYPE_IMAGE);
}

/// Blocks with two chunks, whose data comes in three packets.
class ChunkedBlocks : public BlockAssembly {
protected:
    static constexpr uint16_t kMarkedImage = static_cast<uint16_t>(PayloadType::Image) | kChunkMark;

    ChunkedBlocks() { station.settings.resends = false; }

    /// @param filling  what follows the chunks
    void Send(std::initializer_list<uint32_t> packets, const std::string& filling = {},
              uint16_t type = kMarkedImage) {
        BlockLeader leader;
        leader.payloadType = type;
        leader.shape = {.pixelFormat = 0x01080001, .sizeX = 4, .sizeY = 1};
        station.Leader(1, leader);
        Bytes block = FromHex("01 02 03 04 00 00 00 0A 00 00 00 04 11 22 00 00 00 0B 00 00 00 02");
        Append(block, FromHex(filling));
        for (const uint32_t id : packets) {
            const ByteView data = ByteView(block).subspan((id - 1) * kDataSize);
            station.Send(station.Header(1, id, PacketFormat::Data),
                         data.first(std::min(kDataSize, data.size())));
        }
    }
    void End(uint32_t chunkBytes = 22, uint16_t type = kMarkedImage) {
        station.Trailer(1, 4, {.payloadType = type, .sizeY = 1, .chunkPayloadLength = chunkBytes});
        station.Pass(200ms);
    }
    const OvProducer::FrameInfo& Frame() { return shelf.delivered.at(0).frame; }
    std::vector<uint64_t> ChunkIds() {
        std::vector<uint64_t> ids;
        for (const auto& chunk : Frame().chunks) {
            ids.push_back(chunk.ChunkID);
        }
        return ids;
    }
    void ReadsAllOf(PayloadType type) {
        Send({1, 2, 3}, {}, static_cast<uint16_t>(type));
        End(22, static_cast<uint16_t>(type));
        EXPECT_EQ(ChunkIds(), (std::vector<uint64_t>{0xA, 0xB}));
        EXPECT_EQ(Frame().payloadType, GenTL::PAYLOAD_TYPE_CHUNK_DATA);
    }
};

TEST_F(ChunkedBlocks, EndWhereTheirTrailerSays) {
    Send({1, 2, 3}, "FF FF");
    End();
    EXPECT_EQ(ChunkIds(), (std::vector<uint64_t>{0xA, 0xB}));
    EXPECT_EQ(Frame().sizeFilled, 22U);
    EXPECT_FALSE(Frame().incomplete);
    EXPECT_FALSE(Frame().hasWrongChunks);
}

TEST_F(ChunkedBlocks, EndWithTheirDataIfTheirTrailerDoesntSay) {
    Send({1, 2, 3});
    End(0);
    EXPECT_EQ(ChunkIds(), (std::vector<uint64_t>{0xA, 0xB}));
    EXPECT_EQ(Frame().sizeFilled, 22U);
}

TEST_F(ChunkedBlocks, NeedNoImage) {
    ReadsAllOf(PayloadType::Chunk);
}

TEST_F(ChunkedBlocks, MayNameTheirImageInTheOldWay) {
    ReadsAllOf(PayloadType::ExtendedChunk);
    EXPECT_EQ(Frame().width, 4U);
}

TEST_F(ChunkedBlocks, KeepTheChunksAfterTheirLastGap) {
    Send({2, 3});
    End();
    EXPECT_TRUE(Frame().incomplete);
    ASSERT_EQ(ChunkIds(), (std::vector<uint64_t>{0xB}));
    EXPECT_EQ(Frame().chunks[0].ChunkOffset, 12);
    EXPECT_EQ(Frame().chunks[0].ChunkLength, 2U);
    EXPECT_FALSE(Frame().hasWrongChunks);
}

TEST_F(ChunkedBlocks, LackChunksWithoutTheirEnd) {
    Send({1, 2});
    End();
    EXPECT_TRUE(Frame().incomplete);
    EXPECT_TRUE(Frame().chunks.empty());
    EXPECT_FALSE(Frame().hasWrongChunks);
}

TEST_F(ChunkedBlocks, LackChunksWithoutTheirTrailer) {
    Send({1, 2, 3});
    station.Pass(200ms);
    EXPECT_TRUE(Frame().incomplete);
    EXPECT_TRUE(Frame().chunks.empty());
}

TEST_F(ChunkedBlocks, LackChunksIfTheyAreShorterThanTheirTrailerSays) {
    Send({1, 2, 3});
    End(23);
    EXPECT_TRUE(Frame().incomplete);
    EXPECT_TRUE(Frame().chunks.empty());
}

TEST_F(ChunkedBlocks, AreWrongIfTheirLengthsMakeNoSense) {
    Send({1, 2, 3}, "FF FF");
    End(24);
    EXPECT_FALSE(Frame().incomplete);
    EXPECT_TRUE(Frame().chunks.empty());
    EXPECT_TRUE(Frame().hasWrongChunks);
}

TEST_F(BlockAssembly, NamesTheFileOfABlock) {
    const Bytes name = FromHex("61 2E 62");
    BlockLeader leader;
    leader.payloadType = static_cast<uint16_t>(PayloadType::File);
    leader.size = kDataSize;
    leader.fileName = name;
    station.Leader(1, leader);
    station.Data(1, 1);
    station.Trailer(1, 2, {.payloadType = 3});
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_EQ(shelf.delivered[0].frame.fileName, "a.b");
}

TEST_F(BlockAssembly, TellsTimeInNanoseconds) {
    station.settings.tickFrequency = 125'000'000;
    station.ticks = 124'999'999;
    station.Whole(1);
    EXPECT_EQ(shelf.delivered.at(0).frame.timestamp, 125'000'000U);
    EXPECT_EQ(shelf.delivered.at(0).frame.timestampNs, 1'000'000'000U);
}

TEST_F(BlockAssembly, TellsTheHostsTimeOfACameraWithoutAClock) {
    station.Whole(1);
    EXPECT_EQ(shelf.delivered.at(0).frame.timestampNs,
              static_cast<uint64_t>(std::chrono::nanoseconds(1h).count()));
}

TEST_F(BlockAssembly, HoldsNoMoreBlocksThanItCanTell) {
    while (shelf.free.size() < 40) {
        shelf.Announce(64);
    }
    for (uint64_t id = 1; id <= 33; ++id) {
        station.Some(id, 2, {1});
    }
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1}));
}

TEST_F(BlockAssembly, DeliversAllAtItsEnd) {
    station.Some(1, 2, {1});
    station.Whole(2);
    EXPECT_TRUE(station.Assembler().IsBusy());
    station.Assembler().End(true);
    EXPECT_EQ(station.DeliveredIds(), (std::vector<uint64_t>{1, 2}));
    EXPECT_FALSE(station.Assembler().IsBusy());
    EXPECT_EQ(shelf.free.size(), 4U);
}

TEST_F(BlockAssembly, GivesBuffersBackAtItsEnd) {
    station.Some(1, 2, {1});
    station.Assembler().End(false);
    EXPECT_TRUE(shelf.delivered.empty());
    EXPECT_EQ(shelf.givenBack, 1);
}

TEST_F(BlockAssembly, PlansThePacketsThatComeNext) {
    station.Some(1, 3, {1});
    std::array<PlannedPacket, 8> plan;
    ASSERT_EQ(station.Assembler().Plan(plan), 2U);
    EXPECT_EQ(plan[0].packetId, 2U);
    EXPECT_EQ(plan[1].place, plan[0].place + kDataSize);
    EXPECT_EQ(plan[1].length, kDataSize);
    EXPECT_TRUE(
        station.Assembler().IsPlanned(station.Header(1, 2, PacketFormat::Data), {}, plan[0]));
    EXPECT_FALSE(
        station.Assembler().IsPlanned(station.Header(1, 3, PacketFormat::Data), {}, plan[0]));
    EXPECT_FALSE(
        station.Assembler().IsPlanned(station.Header(2, 2, PacketFormat::Data), {}, plan[0]));
    std::fill_n(plan[0].place, kDataSize, std::byte{2});
    station.Assembler().Take(station.Header(1, 2, PacketFormat::Data), {},
                             {plan[0].place, kDataSize}, station.now);
    ++station.sent;
    station.Data(1, 3);
    station.Trailer(1, 4);
    ASSERT_EQ(shelf.delivered.size(), 1U);
    EXPECT_EQ(DataOf(shelf.delivered[0]), Filled({1, 2, 3}));
    EXPECT_EQ(station.Assembler().Plan(plan), 0U);
}

}  // namespace
