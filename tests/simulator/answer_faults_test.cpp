#include <gtest/gtest.h>

#include "gige/protocol/ControlPacket.h"
#include "gige/protocol/Registers.h"
#include "simulator/control/AnswerFaults.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;
using namespace std::chrono_literals;
using OvSimulator::Clock;

constexpr Endpoint kAsker{{0xC0A80714}, 40001};

class AnswerFaultsTest : public testing::Test {
protected:
    static Bytes Answer(uint16_t requestId = 7) {
        return BuildAnswer({.status = Status::Success,
                            .answer = AnswerTo(Command::ReadRegister),
                            .requestId = requestId,
                            .payload = m_payload});
    }
    std::vector<TimedReply> Apply(bool knowsPatience = false) {
        return AnswerFaults(m_faults, m_account).Apply({kAsker, Answer()}, knowsPatience, m_now);
    }

    static inline const Bytes m_payload = BuildNumbers(std::array{5U});
    const Clock::time_point m_now = Clock::time_point() + 1h;
    Faults m_faults;
    Account m_account;
};

TEST_F(AnswerFaultsTest, AreNoneUnlessAskedFor) {
    const auto replies = Apply(true);
    ASSERT_EQ(replies.size(), 1U);
    EXPECT_EQ(replies[0].reply.packet, Answer());
    EXPECT_EQ(replies[0].reply.to, kAsker);
    EXPECT_EQ(replies[0].time, m_now);
    EXPECT_FALSE(replies[0].isFromStranger);
}

TEST_F(AnswerFaultsTest, TakeAnswersAway) {
    m_faults.control.missing = 1;
    EXPECT_TRUE(Apply().empty());
    EXPECT_EQ(m_account[Count::MissingAnswers], 1U);
}

TEST_F(AnswerFaultsTest, DoubleAnswers) {
    m_faults.control.doubled = 1;
    const auto replies = Apply();
    ASSERT_EQ(replies.size(), 2U);
    EXPECT_EQ(replies[1].reply.packet, Answer());
    EXPECT_EQ(m_account[Count::DoubledAnswers], 1U);
}

TEST_F(AnswerFaultsTest, DelayAnswers) {
    m_faults.control.late = 1;
    m_faults.control.lateBy = 90ms;
    EXPECT_EQ(Apply().at(0).time, m_now + 90ms);
    EXPECT_EQ(m_account[Count::LateAnswers], 1U);
}

TEST_F(AnswerFaultsTest, PutAnswersOfOthersBefore) {
    m_faults.control.foreign = 1;
    const auto replies = Apply();
    ASSERT_EQ(replies.size(), 3U);
    EXPECT_EQ(replies[0].reply.packet, Answer(6));
    EXPECT_TRUE(replies[1].isFromStranger);
    EXPECT_EQ(ParseAnswer(replies[1].reply.packet)->requestId, 7);
    EXPECT_NE(replies[1].reply.packet, Answer());
    EXPECT_EQ(replies[2].reply.packet, Answer());
    EXPECT_FALSE(replies[2].isFromStranger);
    EXPECT_EQ(m_account[Count::ForeignAnswers], 1U);
}

TEST_F(AnswerFaultsTest, AskForPatienceOnlyIfTheHostKnowsIt) {
    m_faults.control.pending = 1;
    m_faults.control.pendingFor = 250ms;
    const auto replies = Apply(true);
    ASSERT_EQ(replies.size(), 2U);
    const auto pending = ParseAnswer(replies[0].reply.packet).value();
    EXPECT_EQ(pending.answer, kPendingAnswer);
    EXPECT_EQ(pending.requestId, 7);
    EXPECT_EQ(ParseCount(pending.payload), 250);
    EXPECT_EQ(replies[0].time, m_now);
    EXPECT_EQ(replies[1].time, m_now + 250ms);
    EXPECT_EQ(Apply(false).size(), 1U);
    EXPECT_EQ(m_account[Count::PendingAnswers], 1U);
}

TEST_F(AnswerFaultsTest, AreTheSameForTheSameSeed) {
    m_faults.control.missing = 0.5;
    const auto pattern = [this](uint64_t seed) {
        m_faults.seed = seed;
        AnswerFaults faults(m_faults, m_account);
        std::string text;
        for (int i = 0; i < 64; ++i) {
            text += faults.Apply({kAsker, Answer()}, false, m_now).empty() ? '-' : '+';
        }
        return text;
    };
    const std::string first = pattern(1);
    EXPECT_EQ(pattern(1), first);
    EXPECT_NE(pattern(2), first);
    EXPECT_NE(first.find('-'), std::string::npos);
    EXPECT_NE(first.find('+'), std::string::npos);
}

}  // namespace
