#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

#include "HexBytes.h"
#include "ScriptedLink.h"
#include "gige/control/ControlChannel.h"
#include "gige/protocol/Registers.h"

namespace {

using namespace OvGige;
using namespace std::chrono_literals;
using OvProducer::Failure;

class ControlChannelTest : public testing::Test {
protected:
    void Answer(ScriptedLink::Script script) { m_link->Answer(std::move(script)); }
    Bytes Read() { return m_channel.Exchange(Command::ReadRegister, FromHex("00 00 0A 00")); }

    ScriptedLink* const m_link = new ScriptedLink;  // owned by the channel
    ControlChannel m_channel{std::unique_ptr<DatagramLink>(m_link), 1};
};

TEST_F(ControlChannelTest, ReturnsThePayloadOfTheAnswer) {
    Answer([](const CommandPacket& command) {
        return std::vector<ScriptedReply>{{1ms, AnswerOf(command, FromHex("00 00 00 02"))}};
    });
    EXPECT_EQ(Read(), FromHex("00 00 00 02"));
    EXPECT_EQ(m_link->Sent().front(), FromHex("42 01 00 80 00 04 00 01 00 00 0A 00"));
}

TEST_F(ControlChannelTest, NumbersCommandsAndLeavesOutZero) {
    auto* const link = new ScriptedLink;
    ControlChannel channel(std::unique_ptr<DatagramLink>(link), 0xFFFE);
    std::vector<uint16_t> ids;
    link->Answer([&](const CommandPacket& command) {
        ids.push_back(command.requestId);
        return std::vector<ScriptedReply>{{0ms, AnswerOf(command)}};
    });
    for (int i = 0; i < 3; ++i) {
        channel.Exchange(Command::ReadRegister, {});
    }
    EXPECT_EQ(ids, std::vector<uint16_t>({0xFFFE, 0xFFFF, 1}));
}

TEST_F(ControlChannelTest, AwaitsNoLongerThanItsLimit) {
    m_channel.SetPatience({.timeout = 200ms, .tries = 3});
    try {
        m_channel.Exchange(Command::ReadRegister, {}, 0, 300ms);
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_STREQ(failure.what(), "The camera doesn't answer a read: 2 tries of 200 ms");
    }
    EXPECT_EQ(m_link->Elapsed(), 300ms);
}

TEST_F(ControlChannelTest, TriesOnceHoweverShortItsLimitIs) {
    Answer([](const CommandPacket& command) {
        return std::vector<ScriptedReply>{{0ms, AnswerOf(command, FromHex("01"))}};
    });
    EXPECT_EQ(m_channel.Exchange(Command::ReadRegister, {}, 0, 0ms), FromHex("01"));
}

TEST_F(ControlChannelTest, SendsNothingOnceItIsAbandoned) {
    m_channel.Abandon();
    try {
        Read();
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_ABORT);
        EXPECT_STREQ(failure.what(), "The connection to the camera has ended");
    }
    EXPECT_TRUE(m_link->Sent().empty());
}

TEST_F(ControlChannelTest, EndsTheWaitThatRunsWhenItIsAbandoned) {
    Answer([this](const CommandPacket&) {
        m_channel.Abandon();
        return std::vector<ScriptedReply>();
    });
    try {
        Read();
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_ABORT);
    }
    EXPECT_EQ(m_link->Sent().size(), 1U);
    EXPECT_EQ(m_link->Elapsed(), 0ms);
}

TEST_F(ControlChannelTest, RepeatsTheSameBytesUntilTheTriesAreOver) {
    m_channel.SetPatience({.timeout = 200ms, .tries = 3});
    try {
        Read();
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_TIMEOUT);
        EXPECT_STREQ(failure.what(), "The camera doesn't answer a read: 3 tries of 200 ms");
    }
    ASSERT_EQ(m_link->Sent().size(), 3U);
    EXPECT_EQ(m_link->Sent()[1], m_link->Sent()[0]);
    EXPECT_EQ(m_link->Sent()[2], m_link->Sent()[0]);
    EXPECT_EQ(m_link->Elapsed(), 600ms);
    EXPECT_EQ(m_channel.Counters().repeats, 2U);
    EXPECT_EQ(m_channel.Counters().abandoned, 1U);
}

TEST_F(ControlChannelTest, TakesTheAnswerToALaterTry) {
    Answer([sends = 0](const CommandPacket& command) mutable {
        return ++sends < 3 ? std::vector<ScriptedReply>{}
                           : std::vector<ScriptedReply>{{0ms, AnswerOf(command)}};
    });
    EXPECT_NO_THROW(Read());
    EXPECT_EQ(m_link->Elapsed(), 1000ms);
}

TEST_F(ControlChannelTest, DropsALateAnswerToTheCommandBefore) {
    Bytes late;
    Answer([&](const CommandPacket& command) {
        std::vector<ScriptedReply> replies;
        if (!late.empty()) {
            replies.push_back({0ms, late});
        }
        late = AnswerOf(command, FromHex("11 11 11 11"));
        replies.push_back({1ms, AnswerOf(command, FromHex("22 22 22 22"))});
        return replies;
    });
    Read();
    EXPECT_EQ(Read(), FromHex("22 22 22 22"));
    EXPECT_EQ(m_channel.Counters().ignored, 1U);
}

TEST_F(ControlChannelTest, DropsWhatIsNoAnswerOrOneToAnotherCommand) {
    Answer([](const CommandPacket& command) {
        Bytes other = AnswerOf(command);
        other[3] = std::byte{0x85};
        return std::vector<ScriptedReply>{{0ms, FromHex("00")},
                                          {0ms, FromHex("42 01 00 80 00 00 00 01")},
                                          {0ms, other},
                                          {1ms, AnswerOf(command, FromHex("00 00 00 02"))}};
    });
    EXPECT_EQ(Read(), FromHex("00 00 00 02"));
    EXPECT_EQ(m_channel.Counters().ignored, 3U);
}

TEST_F(ControlChannelTest, IsNotHeldByChatter) {
    m_channel.SetPatience({.timeout = 100ms, .tries = 1});
    Answer([](const CommandPacket&) {
        std::vector<ScriptedReply> replies;
        for (int i = 1; i <= 20; ++i) {
            replies.push_back({i * 10ms, FromHex("00 00 00 81 00 00 77 77")});
        }
        return replies;
    });
    EXPECT_THROW(Read(), Failure);
    EXPECT_EQ(m_link->Elapsed(), 100ms);
}

TEST_F(ControlChannelTest, WaitsAsLongAsTheCameraAsks) {
    Answer([](const CommandPacket& command) {
        return std::vector<ScriptedReply>{{400ms, PendingOf(command, BuildCount(2000))},
                                          {2300ms, PendingOf(command, BuildCount(2000))},
                                          {4200ms, AnswerOf(command, FromHex("00 00 00 02"))}};
    });
    EXPECT_EQ(Read(), FromHex("00 00 00 02"));
    EXPECT_EQ(m_link->Sent().size(), 1U);
    EXPECT_EQ(m_channel.Counters().pendings, 2U);
}

TEST_F(ControlChannelTest, WaitsAtLeastItsTimeoutAfterAPendingAnswer) {
    m_channel.SetPatience({.timeout = 500ms, .tries = 1});
    Answer([](const CommandPacket& command) {
        return std::vector<ScriptedReply>{{400ms, PendingOf(command, BuildCount(1))},
                                          {890ms, AnswerOf(command)}};
    });
    EXPECT_NO_THROW(Read());
}

TEST_F(ControlChannelTest, DropsAPendingAnswerToAnotherCommand) {
    m_channel.SetPatience({.timeout = 500ms, .tries = 1});
    Answer([](const CommandPacket& command) {
        CommandPacket other = command;
        other.requestId = 0x7777;
        return std::vector<ScriptedReply>{{0ms, PendingOf(other, BuildCount(60000))},
                                          {600ms, AnswerOf(command)}};
    });
    EXPECT_THROW(Read(), Failure);
    EXPECT_EQ(m_link->Elapsed(), 500ms);
}

struct RefusalCase {
    Status status;
    GenTL::GC_ERROR code;
    const char* text;
};

class RefusalOf : public ControlChannelTest, public testing::WithParamInterface<RefusalCase> {};

TEST_P(RefusalOf, IsAFailureWithItsOwnCodeAndText) {
    Answer([](const CommandPacket& command) {
        return std::vector<ScriptedReply>{{0ms, AnswerOf(command, {}, GetParam().status)}};
    });
    try {
        Read();
        FAIL();
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.GetStatus(), GetParam().status);
        EXPECT_EQ(refusal.Code(), GetParam().code);
        EXPECT_STREQ(refusal.what(), GetParam().text);
    }
    EXPECT_EQ(m_link->Sent().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Status, RefusalOf,
    testing::Values(RefusalCase{Status::AccessDenied, GenTL::GC_ERR_ACCESS_DENIED,
                                "The camera refused a read: access denied (0x8006)"},
                    RefusalCase{Status::WriteProtect, GenTL::GC_ERR_ACCESS_DENIED,
                                "The camera refused a read: the register is read-only (0x8004)"},
                    RefusalCase{Status::NotImplemented, GenTL::GC_ERR_NOT_IMPLEMENTED,
                                "The camera refused a read: not implemented (0x8001)"},
                    RefusalCase{Status::InvalidParameter, GenTL::GC_ERR_INVALID_VALUE,
                                "The camera refused a read: invalid parameter (0x8002)"},
                    RefusalCase{Status::InvalidAddress, GenTL::GC_ERR_INVALID_ADDRESS,
                                "The camera refused a read: no such register (0x8003)"},
                    RefusalCase{Status::BadAlignment, GenTL::GC_ERR_INVALID_ADDRESS,
                                "The camera refused a read: bad alignment (0x8005)"},
                    RefusalCase{Status::Busy, GenTL::GC_ERR_BUSY,
                                "The camera refused a read: busy (0x8007)"},
                    RefusalCase{Status{0x9999}, GenTL::GC_ERR_IO,
                                "The camera refused a read: unknown status (0x9999)"}));

}  // namespace
