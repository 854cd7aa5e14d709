#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "HexBytes.h"
#include "gige/protocol/ControlPacket.h"

namespace {

using namespace OvGige;

TEST(CommandPacket, HasKeyFlagsNumberLengthAndRequest) {
    const Bytes payload = FromHex("00 00 0A 00");
    EXPECT_EQ(BuildCommand({.flags = kFlagAnswerRequired,
                            .command = Command::ReadRegister,
                            .requestId = 0x1234,
                            .payload = payload}),
              FromHex("42 01 00 80 00 04 12 34 00 00 0A 00"));
}

TEST(CommandPacket, IsReadAsItWasBuilt) {
    const Bytes packet = FromHex("42 11 00 02 00 00 FF FF");
    const auto command = ParseCommand(packet);
    ASSERT_TRUE(command);
    EXPECT_EQ(command->flags, kFlagAnswerRequired | kFlagBroadcastAnswer);
    EXPECT_EQ(command->command, Command::Discovery);
    EXPECT_EQ(command->requestId, 0xFFFF);
    EXPECT_TRUE(command->payload.empty());
}

TEST(CommandPacket, IsNoneWithAnotherKeyLengthOrRequest) {
    for (const char* text :
         {"", "42 01 00 80 00 04 12", "43 01 00 80 00 00 12 34", "42 01 00 80 00 04 12 34 00 00 0A",
          "42 01 00 80 00 00 12 34 00", "42 01 00 80 00 00 00 00"}) {
        EXPECT_FALSE(ParseCommand(FromHex(text))) << text;
    }
}

TEST(CommandPacket, CantHaveMoreThanItsLengthNames) {
    const Bytes payload(0x10000);
    EXPECT_THROW(
        BuildCommand(
            {.flags = 0, .command = Command::WriteMemory, .requestId = 1, .payload = payload}),
        std::length_error);
}

TEST(AnswerPacket, HasStatusNumberLengthAndRequest) {
    const Bytes payload = FromHex("00 00 00 02");
    EXPECT_EQ(BuildAnswer({.status = Status::AccessDenied,
                           .answer = AnswerTo(Command::ReadRegister),
                           .requestId = 7,
                           .payload = payload}),
              FromHex("80 06 00 81 00 04 00 07 00 00 00 02"));
}

TEST(AnswerPacket, IsReadAsItWasBuilt) {
    const Bytes packet = FromHex("00 00 00 89 00 04 00 07 00 00 01 F4");
    const auto answer = ParseAnswer(packet);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, Status::Success);
    EXPECT_EQ(answer->answer, kPendingAnswer);
    EXPECT_EQ(answer->requestId, 7);
    EXPECT_EQ(Bytes(answer->payload.begin(), answer->payload.end()), FromHex("00 00 01 F4"));
}

TEST(AnswerPacket, MayBeFilledUp) {
    const Bytes packet = FromHex("00 00 00 83 00 00 00 07 00 00 00 00");
    const auto answer = ParseAnswer(packet);
    ASSERT_TRUE(answer);
    EXPECT_TRUE(answer->payload.empty());
}

TEST(AnswerPacket, IsNoneForACommandOrACutOne) {
    for (const char* text :
         {"", "00 00 00 81 00 00 00", "42 01 00 80 00 00 00 01", "00 00 00 81 00 04 00 07 00 00"}) {
        EXPECT_FALSE(ParseAnswer(FromHex(text))) << text;
    }
}

TEST(StatusName, IsInWords) {
    EXPECT_EQ(NameOf(Status::AccessDenied), std::string("access denied"));
    EXPECT_EQ(NameOf(Status{0x9999}), std::string("unknown status"));
}

}  // namespace
