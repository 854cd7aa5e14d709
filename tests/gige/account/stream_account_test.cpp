// For each fault of a network or a camera: what the host says of a stream is what the camera
// did. A block that lacks nothing but its trailer is whole.

#include <gtest/gtest.h>

#include "FaultyStream.h"

namespace {

using namespace OvGige;
using namespace OvTest;
using OvSimulator::Count;
using OvSimulator::StreamFaults;

constexpr uint64_t kFrames = 300;

/// Each test runs once for each seed.
class StreamAccounts : public testing::TestWithParam<uint64_t> {
protected:
    FaultyStream& Run(const StreamFaults& faults, bool resends) {
        Prepare(faults, resends);
        return RunIt();
    }
    FaultyStream& Prepare(const StreamFaults& faults, bool resends) {
        stream.emplace(faults, GetParam());
        stream->settings.resends = resends;
        return *stream;
    }
    FaultyStream& RunIt() {
        stream->Run(kFrames);
        EXPECT_EQ(stream->Blocks(), kFrames);
        EXPECT_EQ(stream->Packets(), stream->arrived);
        EXPECT_EQ(stream->account.answered.Value(), stream->answered);
        return *stream;
    }
    uint64_t Camera(Count count) const { return stream->camera[count]; }
    /// Packets of blocks of which none came.
    uint64_t OfLostBlocks() const {
        return (account().lostOnWire.Value() + account().lostInSocket.Value()) *
               FaultyStream::kPackets;
    }
    const OvGige::StreamAccount& account() const { return stream->account; }

    std::optional<FaultyStream> stream;
};

TEST_P(StreamAccounts, EachLostPacketIsMissing) {
    Run({.lost = 0.01}, false);
    EXPECT_GT(Camera(Count::LostPackets), 0U);
    EXPECT_EQ(account().missing.Value(), Camera(Count::LostPackets));
    EXPECT_EQ(account().incomplete.Value() + stream->trailerOnly, Camera(Count::DamagedBlocks));
    EXPECT_EQ(account().used.Value(), stream->arrived);
    EXPECT_EQ(stream->WrongFrames(), 0U);
}

TEST_P(StreamAccounts, EachLostPacketIsAskedForOnceAndComes) {
    Run({.lost = 0.01}, true);
    EXPECT_EQ(account().complete.Value(), kFrames);
    EXPECT_EQ(account().asked.Value(), Camera(Count::LostPackets));
    EXPECT_EQ(account().answered.Value(), Camera(Count::LostPackets));
    EXPECT_EQ(account().missing.Value(), 0U);
    EXPECT_EQ(account().used.Value(), stream->arrived);
    EXPECT_EQ(stream->WrongFrames(), 0U);
}

TEST_P(StreamAccounts, LongBurstsLoseWholeBlocksOnTheWire) {
    Run({.lost = 0.01, .burst = 20}, false);
    EXPECT_GT(account().lostOnWire.Value(), 0U);
    EXPECT_EQ(account().incomplete.Value() + account().lostOnWire.Value() + stream->trailerOnly,
              Camera(Count::DamagedBlocks));
    EXPECT_EQ(account().missing.Value() + OfLostBlocks(), Camera(Count::LostPackets));
    EXPECT_EQ(account().used.Value(), stream->arrived);
}

TEST_P(StreamAccounts, ShortBurstsAreAskedFor) {
    Run({.lost = 0.01, .burst = 3}, true);
    EXPECT_EQ(account().complete.Value(), kFrames);
    EXPECT_EQ(account().asked.Value(), Camera(Count::LostPackets));
    EXPECT_EQ(account().answered.Value(), Camera(Count::LostPackets));
}

TEST_P(StreamAccounts, PacketsInAnotherOrderAreNotAskedFor) {
    Run({.delayed = 0.02, .reordered = 0.1}, true);
    EXPECT_GT(Camera(Count::ReorderedPackets), 0U);
    EXPECT_EQ(account().complete.Value(), kFrames);
    EXPECT_EQ(account().asked.Value(), 0U);
    EXPECT_EQ(account().used.Value(), stream->arrived);
    EXPECT_EQ(stream->WrongFrames(), 0U);
}

TEST_P(StreamAccounts, EachDoubledPacketIsCountedAsDouble) {
    Run({.doubled = 0.05}, true);
    EXPECT_GT(Camera(Count::DoubledPackets), 0U);
    EXPECT_EQ(account().doubled.Value(), Camera(Count::DoubledPackets));
    EXPECT_EQ(account().complete.Value(), kFrames);
    EXPECT_EQ(account().asked.Value(), 0U);
}

TEST_P(StreamAccounts, EachTruncatedPacketIsIgnoredAndItsBlockIncomplete) {
    Run({.truncated = 0.01}, false);
    EXPECT_GT(Camera(Count::TruncatedPackets), 0U);
    EXPECT_EQ(account().ignored.Value(), account().missing.Value());
    EXPECT_EQ(account().incomplete.Value() + stream->trailerOnly, Camera(Count::DamagedBlocks));
    EXPECT_EQ(stream->WrongFrames(), 0U);
}

TEST_P(StreamAccounts, DamagedHeadersLoseNoOtherBlocks) {
    Run({.corrupted = 0.001}, false);
    EXPECT_EQ(account().lostOnWire.Value(), 0U);
    EXPECT_EQ(account().restarts.Value(), 0U);
    EXPECT_LE(account().incomplete.Value(), Camera(Count::DamagedBlocks));
}

TEST_P(StreamAccounts, ManyDamagedPacketsAreCountedAsWhatTheyLookLike) {
    Run({.corrupted = 0.05}, true);
    EXPECT_EQ(account().lostOnWire.Value(), 0U);
    EXPECT_EQ(account().restarts.Value(), 0U);
}

TEST_P(StreamAccounts, ALeaderThatLiesAboutItsSizeSpoilsNoBlock) {
    Run({.wrongLeader = 0.1}, true);
    EXPECT_GT(Camera(Count::WrongLeaders), 0U);
    EXPECT_EQ(account().complete.Value(), kFrames);
    EXPECT_EQ(account().used.Value(), stream->arrived);
    EXPECT_EQ(stream->WrongFrames(), 0U);
}

TEST_P(StreamAccounts, EachJumpBackIsARestart) {
    Run({.jumpBack = 0.05}, true);
    EXPECT_GT(Camera(Count::JumpsBack), 0U);
    EXPECT_EQ(account().restarts.Value(), Camera(Count::JumpsBack));
    EXPECT_EQ(account().complete.Value(), kFrames);
    EXPECT_EQ(account().used.Value(), stream->arrived);
}

TEST_P(StreamAccounts, AllFaultsAtOnceLeaveEveryFrameWholeOrMarked) {
    Run({.lost = 0.01,
         .burst = 2,
         .truncated = 0.005,
         .doubled = 0.01,
         .delayed = 0.005,
         .reordered = 0.02,
         .wrongLeader = 0.01},
        true);
    EXPECT_GE(account().complete.Value() + 10, kFrames);
    EXPECT_EQ(stream->WrongFrames(), 0U);
}

TEST_P(StreamAccounts, WhatDidntFitTheSocketIsDroppedByIt) {
    Prepare({}, false).host = {.room = 25, .period = 31};
    RunIt();
    EXPECT_GT(stream->overflow, 0U);
    EXPECT_EQ(account().dropped.Value(), stream->overflow);
    EXPECT_EQ(account().missing.Value(), stream->overflow);
    EXPECT_EQ(account().lostOnWire.Value(), 0U);
}

TEST_P(StreamAccounts, BlocksThatDidntFitTheSocketAreLostInIt) {
    Prepare({}, false).host = {.room = 25, .period = 61};
    RunIt();
    EXPECT_GT(account().lostInSocket.Value(), 0U);
    EXPECT_EQ(account().lostOnWire.Value(), 0U);
    EXPECT_EQ(account().missing.Value() + OfLostBlocks(), stream->overflow);
}

TEST_P(StreamAccounts, WhatDidntFitTheSocketIsAskedFor) {
    Prepare({}, true).host = {.room = 12, .period = 14};
    RunIt();
    EXPECT_GT(stream->overflow, 0U);
    EXPECT_EQ(account().dropped.Value(), stream->overflow);
    EXPECT_EQ(account().complete.Value(), kFrames);
}

INSTANTIATE_TEST_SUITE_P(Seeds, StreamAccounts, testing::Range<uint64_t>(1, 6));

}  // namespace
