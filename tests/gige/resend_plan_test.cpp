#include <gtest/gtest.h>

#include "BlockStation.h"

namespace {

using namespace OvGige;
using namespace OvTest;
using namespace std::chrono_literals;

/// First and last packets of what was asked for.
using Runs = std::vector<std::pair<uint32_t, uint32_t>>;

class Resends : public testing::Test {
protected:
    /// What was asked for since the last call.
    Runs Asked() {
        Runs runs;
        for (const ResendRequest& request : station.shelf.requests) {
            runs.emplace_back(request.firstPacket, request.lastPacket);
        }
        station.shelf.requests.clear();
        return runs;
    }

    BlockStation station{4, 4096};
    StreamAccount& account = station.account;
};

TEST_F(Resends, AskForAGapAfterTheGapTime) {
    station.Some(1, 9, {1, 2, 5});
    station.Pass(999us);
    EXPECT_EQ(Asked(), Runs{});
    station.Pass(1us);
    EXPECT_EQ(Asked(), (Runs{{3, 4}}));
    EXPECT_EQ(account.asked.Value(), 2U);
}

TEST_F(Resends, DontAskForWhatWasOnlyOvertaken) {
    station.Some(1, 9, {1, 3, 2});
    station.Pass(1ms);
    EXPECT_EQ(Asked(), Runs{});
}

TEST_F(Resends, AskForTheLeader) {
    station.Data(1, 1);
    station.Pass(1ms);
    EXPECT_EQ(Asked(), (Runs{{0, 0}}));
}

TEST_F(Resends, AskForALaterGapInItsOwnTime) {
    station.Some(1, 9, {2});
    station.Pass(900us);
    station.Data(1, 4);
    station.Pass(100us);
    EXPECT_EQ(Asked(), (Runs{{1, 1}}));
    station.Pass(1ms);
    EXPECT_EQ(Asked(), (Runs{{3, 3}}));
}

TEST_F(Resends, RepeatWhatDoesntCome) {
    station.Some(1, 9, {2});
    station.Pass(1ms);
    EXPECT_EQ(Asked(), (Runs{{1, 1}}));
    station.Data(1, 3);
    station.Pass(19'999us);
    EXPECT_EQ(Asked(), Runs{});
    station.Pass(1us);
    EXPECT_EQ(Asked().at(0), (std::pair<uint32_t, uint32_t>{1, 1}));
}

TEST_F(Resends, AskForTheTailWhenNothingMoreComes) {
    station.Some(1, 4, {1});
    station.Pass(20ms);
    EXPECT_EQ(Asked(), (Runs{{2, 5}}));
    for (const uint32_t id : {2U, 3U, 4U}) {
        station.Data(1, id);
    }
    station.Trailer(1, 5);
    EXPECT_EQ(account.answered.Value(), 4U);
    EXPECT_EQ(account.complete.Value(), 1U);
}

TEST_F(Resends, AskForTheTailWhenTheNextBlockBegins) {
    station.Some(1, 4, {1});
    station.Leader(2, 32);
    station.Pass(1ms);
    EXPECT_EQ(Asked(), (Runs{{2, 5}}));
}

TEST_F(Resends, AskForTheTrailerAlone) {
    station.Some(1, 2, {1, 2});
    station.Leader(2, 16);
    station.Pass(1ms);
    EXPECT_EQ(Asked(), (Runs{{3, 3}}));
}

TEST_F(Resends, TakeTheUsualSizeOfBlocksThatDontSayTheirs) {
    BlockLeader leader;
    leader.payloadType = static_cast<uint16_t>(PayloadType::Chunk);
    for (const uint64_t block : {1U, 2U}) {
        station.Leader(block, leader);
        station.Data(block, 1);
        if (block == 1) {
            station.Data(block, 2);
            station.Trailer(block, 3, {.payloadType = 4, .chunkPayloadLength = 16});
        }
    }
    station.Pass(20ms);
    EXPECT_EQ(Asked(), (Runs{{2, 3}}));
}

TEST_F(Resends, StopAfterTheLimitOfABlock) {
    station.settings.resendPercent = 25;
    std::vector<uint32_t> ids;
    for (uint32_t id = 2; id <= 200; id += 2) {
        ids.push_back(id);
    }
    station.Some(1, 200, ids);
    for (int i = 0; i < 20; ++i) {
        station.Pass(1ms);
    }
    EXPECT_EQ(account.asked.Value(), 50U);
    EXPECT_TRUE(station.Assembler().IsBusy());
}

TEST_F(Resends, HaveTheirTimeAlsoWhenNoMoreAreAllowed) {
    station.Some(1, 40, {1, 18});
    station.Leader(2, 16);
    station.Pass(30ms);
    EXPECT_EQ(Asked(), (Runs{{2, 17}}));
    EXPECT_EQ(station.Assembler().Due(), station.now + 20ms);
    station.Pass(19'999us);
    EXPECT_TRUE(station.shelf.delivered.empty());
    station.Pass(1us);
    EXPECT_EQ(station.shelf.delivered.size(), 1U);
}

TEST_F(Resends, AreAllowedForSmallBlocks) {
    station.Some(1, 3, {1, 3});
    station.Trailer(1, 4);
    station.Pass(1ms);
    EXPECT_EQ(Asked(), (Runs{{2, 2}}));
}

TEST_F(Resends, StopAfterTheLimitOfASecond) {
    station.settings.resendsPerSecond = 3;
    station.settings.retention = 10s;
    station.Some(1, 40, {5});
    station.Pass(1ms);
    EXPECT_EQ(Asked(), (Runs{{1, 3}}));
    station.Pass(500ms);
    EXPECT_EQ(Asked(), Runs{});
    station.Pass(500ms);
    EXPECT_EQ(account.asked.Value(), 6U);
}

TEST_F(Resends, ComeInOneRequestForEachRun) {
    station.Some(1, 20, {1, 4, 5, 9});
    station.Pass(1ms);
    EXPECT_EQ(Asked(), (Runs{{2, 3}, {6, 8}}));
}

TEST_F(Resends, CountWhatWasAnsweredAndWhatWasRefused) {
    station.Some(1, 9, {4});
    station.Pass(1ms);
    EXPECT_EQ(Asked(), (Runs{{1, 3}}));
    station.Data(1, 1);
    station.Refusal(1, 2, Status::PacketRemoved);
    EXPECT_EQ(account.asked.Value(), 3U);
    EXPECT_EQ(account.answered.Value(), 1U);
    EXPECT_EQ(account.refused.Value(), 1U);
}

TEST_F(Resends, StopForABlockThatTheCameraNoLongerHas) {
    for (const Status status : {Status::PacketUnavailable, Status::PacketAndPreviousRemoved}) {
        BlockStation one(4, 4096);
        one.Some(1, 9, {4});
        one.Pass(1ms);
        one.shelf.requests.clear();
        one.Refusal(1, 1, status);
        one.Data(1, 7);
        one.Pass(20ms);
        EXPECT_TRUE(one.shelf.requests.empty()) << NameOf(status);
    }
}

TEST_F(Resends, LeaveOutAPacketThatTheCameraNoLongerHas) {
    station.Some(1, 4, {4});
    station.Trailer(1, 5);
    station.Pass(1ms);
    EXPECT_EQ(Asked(), (Runs{{1, 3}}));
    station.Refusal(1, 2, Status::PacketRemoved);
    station.Pass(20ms);
    EXPECT_EQ(Asked(), (Runs{{1, 1}, {3, 3}}));
    station.Data(1, 1);
    station.Data(1, 3);
    ASSERT_EQ(station.shelf.delivered.size(), 1U) << "nothing more can come";
    EXPECT_TRUE(station.shelf.delivered[0].frame.incomplete);
    EXPECT_EQ(account.missing.Value(), 1U);
}

TEST_F(Resends, WaitForACameraThatNeedsTime) {
    for (const Status status :
         {Status::PacketNotYetAvailable, Status::PacketTemporarilyUnavailable}) {
        BlockStation one(4, 4096);
        one.Some(1, 4, {2});
        one.Pass(1ms);
        one.shelf.requests.clear();
        one.Refusal(1, 1, status);
        one.Data(1, 3);
        one.Data(1, 4);
        one.Trailer(1, 5);
        one.Pass(39'999us);
        EXPECT_TRUE(one.shelf.requests.empty()) << NameOf(status);
        one.Pass(1us);
        EXPECT_EQ(one.shelf.requests.size(), 1U) << NameOf(status);
    }
}

TEST_F(Resends, DontMendABlockThatTheCameraDamaged) {
    station.Some(1, 2, {1});
    station.Refusal(1, 2, Status::DataOverrun);
    station.Data(1, 2);
    station.Trailer(1, 3);
    EXPECT_TRUE(station.shelf.delivered.at(0).frame.incomplete);
}

TEST_F(Resends, TakeAPacketMarkedAsSentAgain) {
    station.Some(1, 2, {1});
    StreamHeader header = station.Header(1, 2, PacketFormat::Data);
    header.status = Status::PacketResend;
    station.Send(header, Bytes(kDataSize));
    station.Trailer(1, 3);
    EXPECT_EQ(account.complete.Value(), 1U);
}

TEST_F(Resends, TellWhenTheyAreDue) {
    EXPECT_EQ(station.Assembler().Due(), Block::kNever);
    station.Leader(1, 16);
    EXPECT_EQ(station.Assembler().Due(), Block::kNever);
    station.Data(1, 1);
    EXPECT_EQ(station.Assembler().Due(), station.now + 20ms);
    station.Data(1, 3);
    EXPECT_EQ(station.Assembler().Due(), station.now + 1ms);
}

TEST_F(Resends, AreOffIfTheCameraHasNone) {
    station.settings.resends = false;
    station.Some(1, 4, {4});
    station.Pass(50ms);
    EXPECT_EQ(Asked(), Runs{});
}

}  // namespace
