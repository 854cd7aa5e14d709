#include "ServerTest.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;

constexpr uint32_t kWidth = kApplicationBase + 0x0310;
constexpr uint32_t kPayloadSize = kApplicationBase + 0x0800;
constexpr uint32_t kNoRegister = 0x0A08;

class Commands : public ServerTest {};

Bytes Word(uint32_t value) {
    Bytes bytes;
    Append(bytes, value);
    return bytes;
}

TEST_F(Commands, AnswersWithTheNumberOfTheCommand) {
    const Answered answer = ReadRegister(kRegVersion);
    EXPECT_EQ(answer.to, kFirst);
    EXPECT_EQ(answer.answer, AnswerTo(Command::ReadRegister));
    EXPECT_EQ(answer.requestId, m_requestId);
    EXPECT_EQ(answer.payload, Word(0x00020000));
}

TEST_F(Commands, ReadsSeveralRegistersAtOnce) {
    const std::array addresses{kRegVersion, kRegCurrentIp};
    const Answered answer = Ask(Command::ReadRegister, BuildNumbers(addresses));
    EXPECT_EQ(ParseNumbers(answer.payload), (std::vector<uint32_t>{0x00020000, 0xC0A80702}));
    EXPECT_EQ(m_account[Count::RegisterReads], 2U);
}

TEST_F(Commands, ReadsNothingIfOneOfTheRegistersIsMissing) {
    const std::array addresses{kRegVersion, kNoRegister};
    const Answered answer = Ask(Command::ReadRegister, BuildNumbers(addresses));
    EXPECT_EQ(answer.status, Status::InvalidAddress);
    EXPECT_EQ(answer.payload, Bytes());
    EXPECT_EQ(m_account[Count::Refusals], 1U);
}

TEST_F(Commands, WritesRegistersUntilOneFailsAndSaysWhich) {
    TakeControl();
    const std::array writes{RegisterWrite{kRegPersistentIp, 1}, RegisterWrite{kRegVersion, 2},
                            RegisterWrite{kRegPersistentMask, 3}};
    const Answered answer = Ask(Command::WriteRegister, BuildWrites(writes));
    EXPECT_EQ(answer.status, Status::WriteProtect);
    EXPECT_EQ(ParseCount(answer.payload), 1);
    EXPECT_EQ(Register(kRegPersistentIp), 1U);
    EXPECT_EQ(Register(kRegPersistentMask), 0U);
}

TEST_F(Commands, ReadsAndWritesTheCamerasMemory) {
    TakeControl();
    // The virtual camera has the lowest byte first.
    const Bytes width{std::byte{0x40}, std::byte{0x01}, std::byte{0}, std::byte{0}};
    const Answered written = WriteMemory(kWidth, width);
    EXPECT_EQ(written.status, Status::Success);
    EXPECT_EQ(ParseCount(written.payload), 4);
    const Answered answer = ReadMemory(kWidth, 4);
    EXPECT_EQ(ParseMemory(answer.payload)->address, kWidth);
    EXPECT_EQ(answer.payload, BuildMemory({.address = kWidth, .bytes = width}));
    EXPECT_EQ(Register(kWidth), 0x40010000U);
}

TEST_F(Commands, RefusesWhatTheCamerasMemoryHasNot) {
    TakeControl();
    EXPECT_EQ(ReadMemory(0x00010C00, 4).status, Status::InvalidAddress);
    EXPECT_EQ(ReadMemory(0x0000B000, 4).status, Status::InvalidAddress);
    EXPECT_EQ(ReadRegister(kRegStreamPort + kRegStreamChannelStride).status,
              Status::InvalidAddress);  // no such channel
    EXPECT_EQ(ReadMemory(0xFFFFFFFC, 8).status, Status::InvalidAddress);
    EXPECT_EQ(WriteMemory(kWidth, Word(0x05000000)).status, Status::InvalidParameter);
    EXPECT_EQ(WriteMemory(kPayloadSize, Word(0)).status, Status::AccessDenied);
}

TEST_F(Commands, RefusesToReadWhatCanOnlyBeWritten) {
    TakeControl();
    EXPECT_EQ(ReadRegister(kRegTimestampControl).status, Status::AccessDenied);
    EXPECT_EQ(WriteRegister(kRegTimestampControl, 2), Status::Success);
    EXPECT_NE(Register(kRegTimestampLow), 0U);
}

TEST_F(Commands, RefusesAccessesThatArentWholeWords) {
    TakeControl();
    EXPECT_EQ(ReadMemory(kRegVersion, 6).status, Status::BadAlignment);
    EXPECT_EQ(ReadMemory(2, 4).status, Status::BadAlignment);
    EXPECT_EQ(ReadRegister(1).status, Status::BadAlignment);
    EXPECT_EQ(WriteRegister(kRegHeartbeatTimeout + 2, 0), Status::BadAlignment);
    EXPECT_EQ(WriteMemory(kRegHeartbeatTimeout, Bytes(3)).status, Status::BadAlignment);
}

TEST_F(Commands, RefusesMoreThanFitsADatagram) {
    TakeControl();
    EXPECT_EQ(ReadMemory(kDescriptionAddress, 536).status, Status::Success);
    EXPECT_EQ(ReadMemory(kDescriptionAddress, 540).status, Status::InvalidParameter);
    EXPECT_EQ(WriteMemory(kApplicationBase + 0x2000, Bytes(536)).status, Status::Success);
    EXPECT_EQ(WriteMemory(kApplicationBase + 0x2000, Bytes(540)).status, Status::InvalidParameter);
    const std::vector<uint32_t> addresses(136, kRegVersion);
    EXPECT_EQ(Ask(Command::ReadRegister, BuildNumbers(addresses)).status, Status::InvalidParameter);
    EXPECT_EQ(Ask(Command::ReadRegister, BuildNumbers(std::span(addresses).first(135))).status,
              Status::Success);
    const std::vector<RegisterWrite> writes(68, {kRegPersistentIp, 1});
    EXPECT_EQ(Ask(Command::WriteRegister, BuildWrites(writes)).status, Status::InvalidParameter);
    EXPECT_EQ(Ask(Command::WriteRegister, BuildWrites(std::span(writes).first(67))).status,
              Status::Success);
}

TEST_F(Commands, RefusesPayloadsThatArentOfTheirCommand) {
    EXPECT_EQ(Ask(Command::ReadRegister, Bytes(6)).status, Status::InvalidParameter);
    EXPECT_EQ(Ask(Command::WriteRegister, Bytes(4)).status, Status::InvalidParameter);
    EXPECT_EQ(Ask(Command::ReadMemory, Bytes(4)).status, Status::InvalidParameter);
    EXPECT_EQ(Ask(Command::WriteMemory, Bytes(4)).status, Status::InvalidParameter);
    EXPECT_EQ(ReadMemory(kRegVersion, 0).status, Status::InvalidParameter);
}

TEST_F(Commands, SaysWhichCommandsItLacks) {
    constexpr Command kUnknown{0x0200};
    const Answered answer = Ask(kUnknown, {});
    EXPECT_EQ(answer.status, Status::NotImplemented);
    EXPECT_EQ(answer.answer, AnswerTo(kUnknown));
}

TEST_F(Commands, IgnoresWhatIsNoCommand) {
    const Bytes packet(7);
    EXPECT_TRUE(m_server.Handle({.sender = kFirst, .wasBroadcast = false, .packet = packet}, m_now)
                    .empty());
    EXPECT_EQ(m_account[Count::Ignored], 1U);
    EXPECT_EQ(m_account[Count::Commands], 0U);
}

TEST_F(Commands, IgnoresBroadcastsThatArentSearches) {
    const Bytes payload = BuildNumbers(std::array{kRegVersion});
    EXPECT_FALSE(AskWith({.flags = kFlagAnswerRequired,
                          .command = Command::ReadRegister,
                          .requestId = 1,
                          .payload = payload},
                         kFirst, true));
    EXPECT_EQ(m_account[Count::Ignored], 1U);
}

TEST_F(Commands, DoesWhatNeedsNoAnswerInSilence) {
    TakeControl();
    const Bytes payload = BuildWrites(std::array{RegisterWrite{kRegPersistentIp, 7}});
    EXPECT_FALSE(AskWith({.flags = 0,
                          .command = Command::WriteRegister,
                          .requestId = ++m_requestId,
                          .payload = payload},
                         kFirst));
    EXPECT_EQ(Register(kRegPersistentIp), 7U);
}

TEST_F(Commands, DoesARepeatedCommandOnce) {
    TakeControl();
    const Bytes payload = BuildWrites(std::array{RegisterWrite{kRegPersistentIp, 7}});
    const CommandPacket command{.flags = kFlagAnswerRequired,
                                .command = Command::WriteRegister,
                                .requestId = 99,
                                .payload = payload};
    EXPECT_EQ(AskWith(command, kFirst)->status, Status::Success);
    const Answered again = AskWith(command, kFirst).value();
    EXPECT_EQ(again.status, Status::Success);
    EXPECT_EQ(again.requestId, 99);
    EXPECT_EQ(m_account[Count::RegisterWrites], 2U);  // one took control
    EXPECT_EQ(m_account[Count::Repeated], 1U);
}

CommandPacket NumberedRead(ByteView payload) {
    return {.flags = kFlagAnswerRequired,
            .command = Command::ReadRegister,
            .requestId = 99,
            .payload = payload};
}

TEST_F(Commands, DoesTheSameNumberOfAnotherHostAnew) {
    const Bytes payload = BuildNumbers(std::array{kRegVersion});
    const CommandPacket command = NumberedRead(payload);
    AskWith(command, kFirst);
    AskWith(command, kSecond);
    EXPECT_EQ(m_account[Count::Repeated], 0U);
    EXPECT_EQ(m_account[Count::RegisterReads], 2U);
}

TEST_F(Commands, ForgetsACommandAfterAWhile) {
    const Bytes payload = BuildNumbers(std::array{kRegVersion});
    const CommandPacket command = NumberedRead(payload);
    AskWith(command, kFirst);
    m_now += std::chrono::seconds(3);
    AskWith(command, kFirst);
    EXPECT_EQ(m_account[Count::Repeated], 0U);
}

}  // namespace
