#include <gtest/gtest.h>

#include <vector>

#include "HexBytes.h"
#include "gige/protocol/GvcpEvent.h"

namespace {

using namespace OvGige;

/// An event of a list with bytes of its own.
struct Event {
    uint16_t id = 0;
    Bytes bytes;

    bool operator==(const Event&) const = default;
};
struct Events {
    std::vector<Event> events;
    bool isWhole = false;

    bool operator==(const Events&) const = default;
};

Events Parse(Command command, uint8_t flags, std::string_view payload) {
    const Bytes bytes = FromHex(payload);
    const EventList list =
        ParseEvents({.flags = flags, .command = command, .requestId = 1, .payload = bytes});
    Events events{.events = {}, .isWhole = list.isWhole};
    for (const EventItem& event : list.events) {
        events.events.push_back({event.id, Bytes(event.bytes.begin(), event.bytes.end())});
    }
    return events;
}

constexpr const char* kShort = "0000 9001 FFFF 0007 0000000000000102";
constexpr const char* kOther = "0000 9002 0000 0008 0000000000000103";
constexpr const char* kLong = "0000 9001 FFFF 0000 0000000000000007 0000000000000102";
constexpr const char* kData = "DEADBEEF 01020304";

std::string Join(std::initializer_list<const char*> texts) {
    std::string joined;
    for (const char* const text : texts) {
        joined += text;
    }
    return joined;
}

TEST(EventMessage, OfOneEventIsThatEvent) {
    EXPECT_EQ(Parse(Command::Event, 0, kShort), (Events{{{0x9001, FromHex(kShort)}}, true}));
    EXPECT_EQ(Parse(Command::Event, kFlagExtendedIds, kLong),
              (Events{{{0x9001, FromHex(kLong)}}, true}));
}

TEST(EventMessage, OfSeveralEventsWithoutDataIsSplitByTheirForm) {
    EXPECT_EQ(
        Parse(Command::Event, 0, Join({kShort, kOther, kShort})),
        (Events{{{0x9001, FromHex(kShort)}, {0x9002, FromHex(kOther)}, {0x9001, FromHex(kShort)}},
                true}));
    EXPECT_EQ(Parse(Command::Event, kFlagExtendedIds, Join({kLong, kLong})),
              (Events{{{0x9001, FromHex(kLong)}, {0x9001, FromHex(kLong)}}, true}));
}

TEST(EventMessage, WithDataThatDoesntSayItsSizeIsOneEvent) {
    const std::string payload = Join({kShort, kData});
    EXPECT_EQ(Parse(Command::EventData, 0, payload), (Events{{{0x9001, FromHex(payload)}}, true}));
    const std::string extended = Join({kLong, kData});
    EXPECT_EQ(Parse(Command::EventData, kFlagExtendedIds, extended),
              (Events{{{0x9001, FromHex(extended)}}, true}));
}

TEST(EventMessage, OfSeveralEventsWithDataIsSplitByTheirSizes) {
    const char* const first = "001C 9001 0000 0000 0000000000000007 0000000000000102 DEADBEEF";
    const char* const second = "0018 9002 0000 0000 0000000000000007 0000000000000103";
    EXPECT_EQ(Parse(Command::EventData, kFlagExtendedIds, Join({first, second})),
              (Events{{{0x9001, FromHex(first)}, {0x9002, FromHex(second)}}, true}));
}

TEST(EventMessage, TakesASizeThatTheShortFormStates) {
    const char* const sized = "0018 9001 0000 0007 0000000000000102 0000000000000007";
    EXPECT_EQ(Parse(Command::EventData, 0, sized), (Events{{{0x9001, FromHex(sized)}}, true}));
}

TEST(EventMessage, WithoutAnEventIsNotWhole) {
    EXPECT_EQ(Parse(Command::Event, 0, ""), Events());
    EXPECT_EQ(Parse(Command::Event, 0, "0000 9001 FFFF 0007 00000000000001"), Events());
    EXPECT_EQ(Parse(Command::Event, kFlagExtendedIds, kShort), Events());
    EXPECT_EQ(Parse(Command::EventData, 0, "00"), Events());
}

TEST(EventMessage, KeepsTheEventsBeforeOneThatIsCutOrHasAnImpossibleSize) {
    const Events first{{{0x9001, FromHex(kShort)}}, false};
    EXPECT_EQ(Parse(Command::Event, 0, Join({kShort, "0000 9002"})), first);
    EXPECT_EQ(Parse(Command::Event, 0, Join({kShort, "000F 9002 0000 0008 0000000000000103"})),
              first);
    EXPECT_EQ(Parse(Command::Event, 0, Join({kShort, "0011 9002 0000 0008 0000000000000103"})),
              first);
    EXPECT_EQ(Parse(Command::Event, 0, Join({kShort, "FFFF 9002 0000 0008 0000000000000103"})),
              first);
}

TEST(EventMessage, IsKnownByItsCommand) {
    EXPECT_TRUE(HasEvents({.command = Command::Event, .payload = {}}));
    EXPECT_TRUE(HasEvents({.command = Command::EventData, .payload = {}}));
    EXPECT_FALSE(HasEvents({.command = Command::ReadMemory, .payload = {}}));
}

TEST(Event, HasItsFieldsAtThePlacesOfEachForm) {
    const Bytes data = FromHex(kData);
    const EventFields fields{.id = 0x9001,
                             .channel = 2,
                             .blockId = 0x1122334455667788,
                             .timestamp = 0x0102030405060708,
                             .data = data};
    EXPECT_EQ(BuildEvent(fields, false),
              FromHex("0000 9001 0002 7788 0102030405060708 DEADBEEF01020304"));
    EXPECT_EQ(BuildEvent(fields, true),
              FromHex("0020 9001 0002 0000 1122334455667788 0102030405060708 DEADBEEF01020304"));
    EXPECT_EQ(BuildEvent({.id = 5}, false), FromHex("0000 0005 FFFF 0000 0000000000000000"));
}

TEST(Message, MayBeFilledUpAndHaveAnyNumber) {
    const Bytes packet = FromHex("42 11 00 C2 00 04 00 00 DEADBEEF 0000");
    const auto message = ParseMessage(packet);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->flags, kFlagAnswerRequired | kFlagExtendedIds);
    EXPECT_EQ(message->command, Command::EventData);
    EXPECT_EQ(message->requestId, 0);
    EXPECT_EQ(Bytes(message->payload.begin(), message->payload.end()), FromHex("DEADBEEF"));
}

TEST(Message, IsNoneWithAnotherKeyOrCut) {
    for (const char* text : {"", "42 01 00 C0 00 00 00", "00 00 00 C1 00 00 00 01",
                             "42 01 00 C0 00 04 00 01 DEADBE"}) {
        EXPECT_FALSE(ParseMessage(FromHex(text))) << text;
    }
}

}  // namespace
