#include <gtest/gtest.h>

#include "FakeCamera.h"
#include "HexBytes.h"
#include "framework/Failure.h"
#include "gige/discovery/ActionCall.h"

namespace {

using namespace OvGige;
using namespace std::chrono_literals;

constexpr ActionRequest kRequest{.deviceKey = 0x11223344, .groupKey = 0x5566, .groupMask = 0x3};

TEST(Action, HasItsKeysAndItsMask) {
    EXPECT_EQ(BuildAction(kRequest), FromHex("11 22 33 44 00 00 55 66 00 00 00 03"));
    EXPECT_EQ(kRequest.Flags(), 0);
    EXPECT_EQ(ParseAction(BuildAction(kRequest), 0), kRequest);
}

TEST(Action, HasATimeIfItIsScheduled) {
    ActionRequest request = kRequest;
    request.time = 0x0102030405060708;
    EXPECT_EQ(BuildAction(request),
              FromHex("11 22 33 44 00 00 55 66 00 00 00 03 01 02 03 04 05 06 07 08"));
    EXPECT_EQ(request.Flags(), 0x80);
    EXPECT_EQ(ParseAction(BuildAction(request), 0x81), request);
}

TEST(Action, IsNoneOfAnotherLength) {
    EXPECT_FALSE(ParseAction(FromHex("11 22 33 44 00 00 55 66 00 00 00"), 0));
    EXPECT_FALSE(ParseAction(BuildAction(kRequest), 0x80));
    ActionRequest request = kRequest;
    request.time = 1;
    EXPECT_FALSE(ParseAction(BuildAction(request), 0));
}

Adapter CableAdapter() {
    return {.name = "eth7",
            .index = 7,
            .mac = {},
            .ip = {0x0A010001},
            .mask = {0xFFFFFF00},
            .broadcast = {0x0A0100FF},
            .gateway = {}};
}

constexpr Endpoint kNear{{0x0A010002}, kControlPort};
constexpr Endpoint kNearElsewhere{{0x0A010002}, 4000};
constexpr Endpoint kFar{{0x0A020002}, kControlPort};

TEST(ActionTargets, AreOneBroadcastAndWhatItDoesntReach) {
    const Endpoint all{{0xFFFFFFFF}, kControlPort};
    const Endpoint subnet{{0x0A0100FF}, kControlPort};
    EXPECT_EQ(TargetsOfAction(CableAdapter(), all.ip, {}), (std::vector{all}));
    EXPECT_EQ(TargetsOfAction(CableAdapter(), subnet.ip, {}), (std::vector{subnet}));
    EXPECT_EQ(TargetsOfAction(CableAdapter(), all.ip, {kNear, kNearElsewhere, kFar}),
              (std::vector{kNearElsewhere, kFar, all}));
}

TEST(ActionTargets, AreNamedCamerasWhereThereAreNoBroadcasts) {
    EXPECT_EQ(TargetsOfAction(LoopbackAdapter(), {0xFFFFFFFF}, {kNear}), (std::vector{kNear}));
    EXPECT_TRUE(TargetsOfAction(LoopbackAdapter(), {0xFFFFFFFF}, {}).empty());
}

TEST(ActionTargets, AreTheCamerasOfOneAddress) {
    EXPECT_EQ(TargetsOfAction(CableAdapter(), kFar.ip, {kNear}), (std::vector{kFar}));
    EXPECT_EQ(TargetsOfAction(CableAdapter(), kNear.ip, {kNear, kNearElsewhere, kFar}),
              (std::vector{kNear, kNearElsewhere}));
}

/// Answers with a status.
FakeCamera::Script Saying(Status status) {
    return [status](const CommandPacket& command) {
        return std::vector<Bytes>{BuildAnswer({.status = status,
                                               .answer = AnswerTo(command.command),
                                               .requestId = command.requestId,
                                               .payload = {}})};
    };
}

TEST(ActionCall, TakesOneAnswerOfEachCamera) {
    FakeCamera one(Saying(Status::Success));
    FakeCamera late(Saying(Status::ActionLate));
    FakeCamera twice([](const CommandPacket& command) {
        std::vector<Bytes> packets = Saying(Status::Success)(command);
        packets.push_back(Saying(Status::Error)(command).front());
        return packets;
    });
    const std::vector<ActionAnswer> expected{{one.Address(), Status::Success},
                                             {late.Address(), Status::ActionLate},
                                             {twice.Address(), Status::Success}};
    // A machine that is busy may take longer to answer than is waited for.
    std::vector<ActionAnswer> answers;
    for (uint16_t number = 1; number < 100 && answers.size() < expected.size(); ++number) {
        answers = CallAction(LoopbackAdapter(), {one.Address(), late.Address(), twice.Address()},
                             {.request = kRequest, .requestId = number}, 100ms);
    }
    EXPECT_EQ(answers.size(), expected.size());
    for (const ActionAnswer& answer : expected) {
        EXPECT_NE(std::find(answers.begin(), answers.end(), answer), answers.end());
    }
}

TEST(ActionCall, LeavesOtherPacketsOut) {
    FakeCamera camera([](const CommandPacket& command) {
        CommandPacket other = command;
        ++other.requestId;
        std::vector<Bytes> packets = Saying(Status::Success)(other);
        other = command;
        other.command = Command::Discovery;
        packets.push_back(Saying(Status::Success)(other).front());
        packets.push_back(FromHex("00"));
        return packets;
    });
    EXPECT_TRUE(CallAction(LoopbackAdapter(), {camera.Address()},
                           {.request = kRequest, .requestId = 7}, 100ms)
                    .empty());
}

TEST(ActionCall, AsksForAnswersOnlyIfItWaitsForThem) {
    UdpSocket camera = LoopbackSocket();
    const auto flags = [&camera](std::chrono::milliseconds time) {
        CallAction(LoopbackAdapter(), {camera.Local()}, {.request = kRequest, .requestId = 7},
                   time);
        const auto datagram = camera.Receive(Clock::now() + 20s);
        return ParseCommand(datagram.value().bytes).value().flags;
    };
    EXPECT_EQ(flags(0ms), 0);
    EXPECT_EQ(flags(1ms), kFlagAnswerRequired);
}

TEST(ActionCall, FailsIfItReachesNobody) {
    try {
        CallAction(LoopbackAdapter(), {}, {.request = kRequest, .requestId = 7}, 1ms);
        FAIL() << "there was nobody to send to";
    } catch (const OvProducer::Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_IO);
        EXPECT_STREQ(failure.what(), "No camera can be reached by lo");
    }
}

}  // namespace
