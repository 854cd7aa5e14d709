#include <gtest/gtest.h>

#include "HexBytes.h"
#include "gige/assembly/BlockIds.h"
#include "gige/assembly/PacketMap.h"
#include "gige/protocol/ChunkSeries.h"

namespace {

using namespace OvGige;

TEST(BlockIds, SkipZeroWhenTheyWrap) {
    BlockIds ids;
    ids.Start(65535);
    EXPECT_EQ(ids.Distance(1, false), 1);
    EXPECT_EQ(ids.Distance(65534, false), -1);
    ids.Advance(1, 1);
    EXPECT_EQ(ids.Newest(), 65536U);
    EXPECT_EQ(ids.Distance(65535, false), -1);
    EXPECT_EQ(ids.Distance(3, false), 2);
}

TEST(BlockIds, DontWrapInTheirExtendedForm) {
    BlockIds ids;
    ids.Start(65535);
    EXPECT_EQ(ids.Distance(65536, true), 1);
    EXPECT_EQ(ids.Distance(1, true), -65534);
}

TEST(PacketMap, FindsWhatIsMissing) {
    PacketMap map;
    map.Reset(200);
    for (uint32_t id = 0; id < 200; ++id) {
        if (id != 63 && id != 64 && id != 130) {
            map.Insert(id);
        }
    }
    map.MarkGone(130);
    EXPECT_EQ(map.Count(), 197U);
    EXPECT_EQ(map.GoneCount(), 1U);
    EXPECT_EQ(map.FirstMissing(0, 200), 63U);
    EXPECT_EQ(map.FirstSettled(63, 200), 65U);
    EXPECT_EQ(map.FirstMissing(65, 200), 200U);
    EXPECT_EQ(map.FirstMissing(0, 63), 63U);
    EXPECT_EQ(map.FirstSettled(63, 64), 64U);
}

TEST(PacketMap, CountsAPacketOnce) {
    PacketMap map;
    map.Reset(10);
    map.Insert(3);
    map.Insert(3);
    EXPECT_EQ(map.Count(), 1U);
    map.Erase(3);
    map.Erase(3);
    EXPECT_EQ(map.Count(), 0U);
    EXPECT_FALSE(map.Has(3));
}

TEST(PacketMap, HasALimit) {
    PacketMap map;
    map.Reset(uint64_t{1} << 40);
    EXPECT_EQ(map.Capacity(), PacketMap::kCapacityMax);
    map.Reset(5);
    EXPECT_EQ(map.Capacity(), 5U);
    EXPECT_EQ(map.Count(), 0U);
}

TEST(ChunkSeries, IsReadFromItsEnd) {
    std::vector<ChunkPlace> chunks;
    FindChunks(FromHex("01 02 03 04 00 00 00 0A 00 00 00 04 11 22 00 00 00 0B 00 00 00 02"),
               chunks);
    EXPECT_EQ(chunks, (std::vector<ChunkPlace>{{0xA, 0, 4}, {0xB, 12, 2}}));
}

TEST(ChunkSeries, EndsAtALengthThatCantBeRight) {
    std::vector<ChunkPlace> chunks{{1, 2, 3}};
    FindChunks(FromHex("01 00 00 00 0A 00 00 00 09 11 00 00 00 0B 00 00 00 01"), chunks);
    EXPECT_EQ(chunks, (std::vector<ChunkPlace>{{0xB, 9, 1}}));
    FindChunks(FromHex("00 00 00 0B 00 00 00 00"), chunks);
    EXPECT_TRUE(chunks.empty());
    FindChunks(FromHex("00 00 00 0B 00 00 00"), chunks);
    EXPECT_TRUE(chunks.empty());
}

}  // namespace
