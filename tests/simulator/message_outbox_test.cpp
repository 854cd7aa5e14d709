#include <gtest/gtest.h>

#include "simulator/message/MessageOutbox.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;
using namespace std::chrono_literals;
using OvSimulator::Clock;

/// A message that the outbox wants to be sent.
struct Sent {
    uint8_t flags = 0;
    Command command{};
    uint16_t requestId = 0;
    std::vector<uint64_t> frames;  ///< of events without data: their blocks
    bool isFromStranger = false;

    bool operator==(const Sent&) const = default;
};
using Sendings = std::vector<Sent>;

/// A camera's messages without its network.
class MessageOutboxes : public testing::Test {
protected:
    static constexpr Endpoint kHost{{0xC0A80714}, 50'000};

    MessageOutbox& Outbox() {
        if (!m_outbox) {
            m_outbox.emplace(m_profile, m_account);
            m_outbox->Configure(m_setup);
        }
        return *m_outbox;
    }
    void Happen(uint64_t frame) {
        Outbox().Add({.id = 0x9001, .frame = frame, .ticks = frame * 100});
    }
    Sendings Send() {
        Sendings sent;
        for (const Outgoing& outgoing : Outbox().SendDue(m_now)) {
            const CommandPacket message = ParseCommand(outgoing.packet).value();
            sent.push_back({message.flags, message.command, message.requestId, NumbersOf(message),
                            outgoing.isFromStranger});
        }
        return sent;
    }
    void Acknowledge(uint16_t requestId, Command command = Command::EventData) {
        Outbox().Take(
            BuildAnswer({.answer = AnswerTo(command), .requestId = requestId, .payload = {}}));
    }
    static Sent Message(uint16_t requestId, std::vector<uint64_t> frames, bool isStranger = false) {
        return {kFlagAnswerRequired, Command::EventData, requestId, std::move(frames), isStranger};
    }
    uint64_t Counted(Count count) const { return m_account[count]; }

    CameraProfile m_profile = MakeProfile(0, {}, kControlPort);
    MessageSetup m_setup{.destination = kHost, .timeout = 300ms, .retries = 2};
    Account m_account;
    Clock::time_point m_now = Clock::time_point() + 1h;

private:
    static std::vector<uint64_t> NumbersOf(const CommandPacket& message) {
        const EventList list = ParseEvents(message);
        EXPECT_TRUE(list.isWhole);
        const bool isExtended = (message.flags & kFlagExtendedIds) != 0;
        const size_t head = isExtended ? kExtendedEventSize : kEventSize;
        std::vector<uint64_t> numbers;
        for (const EventItem& event : list.events) {
            EXPECT_EQ(event.id, 0x9001);
            numbers.push_back(event.bytes.size() > head
                                  ? ReadBig<uint64_t>(event.bytes.subspan(head))
                                  : ReadBig<uint16_t>(event.bytes.subspan(6)));
        }
        return numbers;
    }

    std::optional<MessageOutbox> m_outbox;
};

TEST_F(MessageOutboxes, SendAnEventAtOnce) {
    EXPECT_FALSE(Outbox().Due());
    Happen(7);
    EXPECT_LE(Outbox().Due().value(), m_now);
    EXPECT_EQ(Send(), Sendings{Message(1, {7})});
    EXPECT_EQ(Counted(Count::Events), 1U);
    EXPECT_EQ(Counted(Count::Messages), 1U);
}

TEST_F(MessageOutboxes, SayWhichBlockHasTheFrame) {
    m_profile.messages = MessageKind::Event;
    Happen(7);
    EXPECT_EQ(Send(), Sendings({{kFlagAnswerRequired, Command::Event, 1, {8}}}));
}

TEST_F(MessageOutboxes, SendTheNextMessageOnceTheLastIsAcknowledged) {
    Happen(1);
    Happen(2);
    EXPECT_EQ(Send(), Sendings{Message(1, {1})});
    EXPECT_EQ(Send(), Sendings());
    Acknowledge(1);
    EXPECT_EQ(Send(), Sendings{Message(2, {2})});
    Acknowledge(2);
    EXPECT_FALSE(Outbox().Due());
    EXPECT_EQ(Counted(Count::Acknowledgements), 2U);
}

TEST_F(MessageOutboxes, IgnoreAnswersToSomethingElse) {
    Happen(1);
    Send();
    Acknowledge(2);
    Acknowledge(1, Command::Event);
    Outbox().Take(Bytes(1));
    EXPECT_EQ(Counted(Count::Acknowledgements), 0U);
    EXPECT_EQ(Outbox().Due(), m_now + 300ms);
}

TEST_F(MessageOutboxes, RepeatAMessageAsOftenAsTheHostWantsIt) {
    Happen(1);
    Happen(2);
    EXPECT_EQ(Send(), Sendings{Message(1, {1})});
    for (int repeat = 0; repeat < 2; ++repeat) {
        EXPECT_EQ(Outbox().Due(), m_now + 300ms);
        m_now += 299ms;
        EXPECT_EQ(Send(), Sendings());
        m_now += 1ms;
        EXPECT_EQ(Send(), Sendings{Message(1, {1})});
    }
    m_now += 300ms;
    EXPECT_EQ(Send(), Sendings{Message(2, {2})});
    EXPECT_EQ(Counted(Count::Messages), 2U);
    EXPECT_EQ(Counted(Count::RepeatedMessages), 2U);
    EXPECT_EQ(Counted(Count::AbandonedMessages), 1U);
}

TEST_F(MessageOutboxes, WantNoAnswersWithoutATimeout) {
    m_setup.timeout = 0ms;
    Happen(1);
    Happen(2);
    EXPECT_EQ(Send(), Sendings({{0, Command::EventData, 1, {1}}, {0, Command::EventData, 2, {2}}}));
    EXPECT_FALSE(Outbox().Due());
}

TEST_F(MessageOutboxes, JoinEventsWithoutData) {
    m_profile.messages = MessageKind::Event;
    for (uint64_t frame = 0; frame < 40; ++frame) {
        Happen(frame);
    }
    const Sendings first = Send();
    ASSERT_EQ(first.size(), 1U);
    EXPECT_EQ(first[0].frames.size(), 33U);  // 528 of 540 bytes
    Acknowledge(1, Command::Event);
    EXPECT_EQ(Send().at(0).frames, std::vector<uint64_t>({34, 35, 36, 37, 38, 39, 40}));
}

TEST_F(MessageOutboxes, JoinEventsWithDataOnlyWhereTheirSizesAreStated) {
    m_setup.joinsEvents = true;
    Happen(1);
    Happen(2);
    EXPECT_EQ(Send(), Sendings{Message(1, {1})});
    m_setup.isExtended = true;
    Outbox().Configure(m_setup);
    Acknowledge(1);
    Happen(3);
    EXPECT_EQ(Send(),
              Sendings({{kFlagAnswerRequired | kFlagExtendedIds, Command::EventData, 2, {2, 3}}}));
}

TEST_F(MessageOutboxes, SendOneEventAtATimeUntilTheHostWantsMore) {
    m_setup.isExtended = true;
    Happen(1);
    Happen(2);
    EXPECT_EQ(Send().at(0).frames, std::vector<uint64_t>{1});
}

TEST_F(MessageOutboxes, ForgetEverythingWhenTheChannelCloses) {
    Happen(1);
    Happen(2);
    Send();
    Outbox().Configure({});
    EXPECT_FALSE(Outbox().Due());
    Happen(3);
    EXPECT_EQ(Counted(Count::Events), 2U);
    Outbox().Configure(m_setup);
    EXPECT_FALSE(Outbox().Due());
}

TEST_F(MessageOutboxes, DropEventsThatWaitInVain) {
    for (uint64_t frame = 0; frame <= 1001; ++frame) {
        Happen(frame);
    }
    EXPECT_EQ(Counted(Count::Events), 1002U);
    EXPECT_EQ(Counted(Count::DroppedEvents), 2U);
}

TEST_F(MessageOutboxes, NeverSendWhatIsLost) {
    m_profile.faults.message.lost = 1;
    Happen(1);
    EXPECT_EQ(Send(), Sendings());
    EXPECT_EQ(Counted(Count::LostMessages), 1U);
    m_now += 300ms;
    EXPECT_EQ(Send(), Sendings());
    EXPECT_EQ(Counted(Count::LostMessages), 2U);
}

TEST_F(MessageOutboxes, SendTwiceWhatIsDoubled) {
    m_profile.faults.message.doubled = 1;
    Happen(1);
    EXPECT_EQ(Send(), Sendings({Message(1, {1}), Message(1, {1})}));
    EXPECT_EQ(Counted(Count::DoubledMessages), 1U);
}

TEST_F(MessageOutboxes, DontHearIgnoredAcknowledgements) {
    m_profile.faults.message.ignored = 1;
    Happen(1);
    Send();
    Acknowledge(1);
    m_now += 300ms;
    EXPECT_EQ(Send(), Sendings{Message(1, {1})});
    EXPECT_EQ(Counted(Count::IgnoredAcknowledgements), 1U);
    EXPECT_EQ(Counted(Count::Acknowledgements), 0U);
}

TEST_F(MessageOutboxes, HaveSomebodyElseSendUnderAnotherNumber) {
    m_profile.faults.message.foreign = 1;
    Happen(1);
    EXPECT_EQ(Send(), Sendings({Message(2, {1}, true), Message(1, {1})}));
    EXPECT_EQ(Counted(Count::ForeignMessages), 1U);
}

TEST_F(MessageOutboxes, RepeatTheirFaultsByTheirSeed) {
    m_profile.faults.message.lost = 0.5;
    m_profile.faults.seed = 3;
    const auto losses = [this] {
        Account account;
        MessageOutbox outbox(m_profile, account);
        outbox.Configure(m_setup);
        std::vector<bool> lost;
        auto now = m_now;
        for (uint64_t frame = 0; frame < 20; ++frame) {
            outbox.Add({.id = 1, .frame = frame});
            for (int sending = 0; sending < 3; ++sending, now += 300ms) {
                lost.push_back(outbox.SendDue(now).empty());
            }
        }
        return lost;
    };
    const std::vector<bool> once = losses();
    EXPECT_EQ(losses(), once);
    EXPECT_NE(once, std::vector<bool>(once.size(), true));
    EXPECT_NE(once, std::vector<bool>(once.size(), false));
}

}  // namespace
