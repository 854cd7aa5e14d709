#include <gtest/gtest.h>

#include "HexBytes.h"
#include "NotingSink.h"
#include "framework/Event.h"
#include "gige/message/MessageIntake.h"

namespace {

using namespace OvGige;
using OvTest::NotedEvent;

/// The messages of one camera, packet by packet.
class MessageIntakes : public testing::Test {
protected:
    static constexpr Endpoint kCamera{{0xC0A80702}, 49152};
    static constexpr Endpoint kStranger{{0xC0A80703}, 49152};

    /// The answer; empty if there is none.
    Bytes Take(const Bytes& packet, const Endpoint& sender = kCamera) {
        return m_intake.Take({.sender = sender, .arrivedAt = {}, .bytes = packet})
            .value_or(Bytes());
    }
    static Bytes Message(uint16_t requestId, const Bytes& payload, Command command = Command::Event,
                         uint8_t flags = kFlagAnswerRequired) {
        return BuildCommand(
            {.flags = flags, .command = command, .requestId = requestId, .payload = payload});
    }
    static Bytes EventOf(uint16_t id, uint64_t timestamp = 0, bool isExtended = false) {
        return BuildEvent({.id = id, .timestamp = timestamp}, isExtended);
    }
    static Bytes Answer(uint16_t requestId, Command command = Command::Event,
                        Status status = Status::Success) {
        return BuildAnswer(
            {.status = status, .answer = AnswerTo(command), .requestId = requestId, .payload = {}});
    }
    std::vector<uint64_t> Ids() const {
        std::vector<uint64_t> ids;
        for (const NotedEvent& event : m_sink->Events()) {
            ids.push_back(event.id);
        }
        return ids;
    }

    std::shared_ptr<OvTest::NotingSink> m_sink = std::make_shared<OvTest::NotingSink>();
    MessageAccount m_account;
    MessageIntake m_intake{kCamera.ip, m_sink, m_account};
};

using IdList = std::vector<uint64_t>;

TEST_F(MessageIntakes, HandOnEachEventOfAMessageInItsOrder) {
    Bytes payload = EventOf(0x9001, 1);
    Append(payload, EventOf(0x9003, 2));
    Append(payload, EventOf(0x9001, 3));
    EXPECT_EQ(Take(Message(7, payload)), Answer(7));
    EXPECT_EQ(m_sink->Events(), (std::vector<NotedEvent>{{0x9001, EventOf(0x9001, 1)},
                                                         {0x9003, EventOf(0x9003, 2)},
                                                         {0x9001, EventOf(0x9001, 3)}}));
    EXPECT_EQ(m_account.events, 3U);
    EXPECT_EQ(m_account.messages, 1U);
    EXPECT_EQ(m_account.malformed, 0U);
}

TEST_F(MessageIntakes, HandOnAnEventAsItCame) {
    const Bytes event = FromHex("0000 9001 0000 0007 0000000000000102 DEADBEEF 01");
    EXPECT_EQ(Take(Message(1, event, Command::EventData)), Answer(1, Command::EventData));
    EXPECT_EQ(m_sink->Events(), (std::vector<NotedEvent>{{0x9001, event}}));
}

TEST_F(MessageIntakes, HandOnTheFormWithLongNumbersToo) {
    const Bytes event = EventOf(0x9001, 1, true);
    EXPECT_EQ(Take(Message(1, event, Command::Event, kFlagAnswerRequired | kFlagExtendedIds)),
              Answer(1));
    EXPECT_EQ(m_sink->Events(), (std::vector<NotedEvent>{{0x9001, event}}));
}

TEST_F(MessageIntakes, DropARepeatedMessageAndAnswerItAgain) {
    const Bytes message = Message(7, EventOf(0x9001));
    EXPECT_EQ(Take(message), Answer(7));
    EXPECT_EQ(Take(message), Answer(7));
    EXPECT_EQ(Ids(), IdList{0x9001});
    EXPECT_EQ(m_account.repeats, 1U);
}

TEST_F(MessageIntakes, DropARepeatedMessageThatIsntTheLast) {
    Take(Message(7, EventOf(0x9001)));
    Take(Message(8, EventOf(0x9002)));
    EXPECT_EQ(Take(Message(7, EventOf(0x9001))), Answer(7));
    EXPECT_EQ(Ids(), (IdList{0x9001, 0x9002}));
}

TEST_F(MessageIntakes, HandOnTheSameEventUnderAnotherNumber) {
    Take(Message(7, EventOf(0x9001)));
    Take(Message(8, EventOf(0x9001)));
    EXPECT_EQ(Ids(), (IdList{0x9001, 0x9001}));
}

TEST_F(MessageIntakes, HandOnAnotherEventUnderTheSameNumber) {
    Take(Message(0, EventOf(0x9001, 1)));
    Take(Message(0, EventOf(0x9001, 2)));
    EXPECT_EQ(Ids(), (IdList{0x9001, 0x9001}));
}

TEST_F(MessageIntakes, HandOnANumberThatComesAgainMuchLater) {
    constexpr uint16_t kMany = 100;
    for (uint16_t id = 1; id <= kMany; ++id) {
        Take(Message(id, EventOf(0x9001)));
    }
    Take(Message(1, EventOf(0x9001)));
    EXPECT_EQ(m_account.events, kMany + 1U);
}

TEST_F(MessageIntakes, AnswerNothingToWhatWantsNoAnswer) {
    EXPECT_EQ(Take(Message(7, EventOf(0x9001), Command::Event, 0)), Bytes());
    EXPECT_EQ(Ids(), IdList{0x9001});
}

TEST_F(MessageIntakes, TakeMessagesFromAnyPortOfTheCamera) {
    EXPECT_EQ(Take(Message(7, EventOf(0x9001)), {kCamera.ip, 3956}), Answer(7));
    EXPECT_EQ(Ids(), IdList{0x9001});
}

TEST_F(MessageIntakes, NeitherTakeNorAnswerMessagesOfOthers) {
    EXPECT_EQ(Take(Message(7, EventOf(0x9001)), kStranger), Bytes());
    EXPECT_EQ(Ids(), IdList());
    EXPECT_EQ(m_account.foreign, 1U);
    // Nor do these count as known.
    EXPECT_EQ(Take(Message(7, EventOf(0x9001))), Answer(7));
    EXPECT_EQ(Ids(), IdList{0x9001});
}

TEST_F(MessageIntakes, RefuseWhatHasNoEvents) {
    EXPECT_EQ(Take(Message(7, FromHex("00000000"), Command::ReadRegister)),
              Answer(7, Command::ReadRegister, Status::NotImplemented));
    EXPECT_EQ(Take(Message(8, Bytes(15))), Answer(8, Command::Event, Status::InvalidParameter));
    EXPECT_EQ(Take(FromHex("00")), Bytes());
    EXPECT_EQ(m_account.malformed, 3U);
    EXPECT_EQ(Ids(), IdList());
}

TEST_F(MessageIntakes, TakeTheWholeEventsOfAMessageThatIsCut) {
    Bytes payload = EventOf(0x9001);
    Append(payload, Bytes(3));
    EXPECT_EQ(Take(Message(7, payload)), Answer(7));
    EXPECT_EQ(Ids(), IdList{0x9001});
    EXPECT_EQ(m_account.malformed, 1U);
}

TEST_F(MessageIntakes, RefuseAnEventThatNoBufferOfAConsumerTakes) {
    constexpr size_t kMax = OvProducer::QueuedEvent::kPayloadMax;
    Bytes event = EventOf(0x9001);
    event.resize(kMax);
    EXPECT_EQ(Take(Message(1, event, Command::EventData)), Answer(1, Command::EventData));
    event.resize(kMax + 1);
    EXPECT_EQ(Take(Message(2, event, Command::EventData)),
              Answer(2, Command::EventData, Status::InvalidParameter));
    EXPECT_EQ(m_account.events, 1U);
    EXPECT_EQ(m_account.malformed, 1U);
}

TEST_F(MessageIntakes, BearThatNobodyListensAnyMore) {
    m_sink.reset();
    EXPECT_EQ(Take(Message(7, EventOf(0x9001))), Answer(7));
}

}  // namespace
