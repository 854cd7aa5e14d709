#include "ServerTest.h"
#include "gige/protocol/Action.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;
using OvVirtual::TriggerSource;

class Actions : public ServerTest {
protected:
    static constexpr ActionRequest kRequest{.deviceKey = 1, .groupKey = 2, .groupMask = 4};

    Actions() {
        TakeControl();
        EXPECT_EQ(WriteRegister(kRegActionDeviceKey, kRequest.deviceKey), Status::Success);
        EXPECT_EQ(WriteRegister(kRegActionGroupKey, kRequest.groupKey), Status::Success);
        EXPECT_EQ(WriteRegister(kRegActionGroupMask, kRequest.groupMask), Status::Success);
    }

    std::optional<Answered> Act(const ActionRequest& request, const Endpoint& sender = kSender,
                                bool isRepeated = false) {
        m_requestId = static_cast<uint16_t>(m_requestId + (isRepeated ? 0 : 1));
        return AskWith({.flags = static_cast<uint8_t>(request.Flags() | kFlagAnswerRequired),
                        .command = Command::Action,
                        .requestId = m_requestId,
                        .payload = BuildAction(request)},
                       sender, true);
    }
    void ShareClock() {
        ASSERT_EQ(WriteRegister(kRegControlConfig, kConfigSharedClock | kConfigExtendedStatus2),
                  Status::Success);
    }
    /// An action at that many nanoseconds from now.
    Status ActIn(int64_t time) {
        ActionRequest request = kRequest;
        request.time = static_cast<uint64_t>(m_device.Camera().Ticks() + time);
        return Act(request).value().status;
    }

    static constexpr int64_t kHour = 3'600'000'000'000;
    /// The host that has control, by another port: that of its broadcasts.
    static constexpr Endpoint kSender{kFirst.ip, 40009};
};

TEST_F(Actions, AreDoneAndAnswered) {
    const auto answer = Act(kRequest);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, Status::Success);
    EXPECT_EQ(answer->to, kSender);
    EXPECT_EQ(answer->answer, AnswerTo(Command::Action));
    EXPECT_EQ(m_account[Count::Actions], 1U);
}

TEST_F(Actions, AreAnsweredOnlyIfThatIsAskedFor) {
    EXPECT_FALSE(AskWith({.flags = 0,
                          .command = Command::Action,
                          .requestId = ++m_requestId,
                          .payload = BuildAction(kRequest)},
                         kSender, true));
    EXPECT_EQ(m_account[Count::Actions], 1U);
}

TEST_F(Actions, AreNoBusinessOfACameraThatIsNotMeant) {
    ActionRequest device = kRequest;
    ActionRequest group = kRequest;
    ActionRequest mask = kRequest;
    ++device.deviceKey;
    ++group.groupKey;
    mask.groupMask = 3;
    for (const ActionRequest& other : {device, group, mask}) {
        EXPECT_FALSE(Act(other));
    }
    EXPECT_EQ(m_account[Count::ActionsOfOthers], 3U);
    EXPECT_EQ(m_account[Count::Actions], 0U);
    mask.groupMask = 7;
    EXPECT_TRUE(Act(mask));
}

TEST_F(Actions, AssertEachSignalThatIsMeant) {
    WriteRegister(kRegActionGroupKey + kRegActionStride, kRequest.groupKey);
    WriteRegister(kRegActionGroupMask + kRegActionStride, kRequest.groupMask);
    Act(kRequest);
    EXPECT_EQ(m_account[Count::Actions], 2U);
}

TEST_F(Actions, AreDoneOnceIfTheyComeTwice) {
    Act(kRequest);
    EXPECT_EQ(Act(kRequest, kSender, true)->status, Status::Success);
    EXPECT_EQ(m_account[Count::Actions], 1U);
    EXPECT_EQ(m_account[Count::Repeated], 1U);
    Act(kRequest);
    EXPECT_EQ(m_account[Count::Actions], 2U);
}

TEST_F(Actions, OfHostsWithoutControlNeedLeave) {
    EXPECT_FALSE(Act(kRequest, kSecond));
    EXPECT_EQ(m_account[Count::Actions], 0U);
    WriteRegister(kRegControlConfig, kConfigUnconditionalAction);
    EXPECT_TRUE(Act(kRequest, kSecond));
    EXPECT_EQ(WriteRegister(kRegPrivilege, 0), Status::Success);
    EXPECT_TRUE(Act(kRequest, kSecond));
    EXPECT_EQ(m_account[Count::Actions], 2U);
}

TEST_F(Actions, OfNobodyInParticularNeedAnOwner) {
    EXPECT_EQ(WriteRegister(kRegPrivilege, 0), Status::Success);
    EXPECT_FALSE(Act(kRequest));
}

TEST_F(Actions, OfAnotherLengthAreIgnored) {
    const uint64_t ignored = m_account[Count::Ignored];
    EXPECT_FALSE(AskWith({.flags = kFlagAnswerRequired | kFlagScheduled,
                          .command = Command::Action,
                          .requestId = ++m_requestId,
                          .payload = BuildAction(kRequest)},
                         kSender, true));
    EXPECT_EQ(m_account[Count::Ignored], ignored + 1);
}

TEST_F(Actions, WaitForTheirTime) {
    ShareClock();
    EXPECT_FALSE(m_server.ActionTime(m_now));
    EXPECT_EQ(ActIn(kHour / 2), Status::Success);
    EXPECT_EQ(m_account[Count::ScheduledActions], 1U);
    m_server.RunDueActions();
    EXPECT_EQ(m_account[Count::Actions], 0U);
    const auto due = m_server.ActionTime(m_now).value() - m_now;
    EXPECT_GT(due, std::chrono::nanoseconds(0));
    EXPECT_LE(due, std::chrono::nanoseconds(kHour / 2));
}

TEST_F(Actions, AreDoneWhenTheirTimeHasCome) {
    ShareClock();
    EXPECT_EQ(ActIn(1'000'000), Status::Success);
    while (m_account[Count::Actions] == 0) {
        m_server.RunDueActions();
    }
    EXPECT_FALSE(m_server.ActionTime(m_now));
}

TEST_F(Actions, AreDoneAtOnceIfTheirTimeIsPast) {
    ShareClock();
    EXPECT_EQ(ActIn(-1), Status::ActionLate);
    EXPECT_EQ(m_account[Count::LateActions], 1U);
    EXPECT_EQ(m_account[Count::Actions], 1U);
    ActionRequest request = kRequest;
    request.time = 0;
    EXPECT_EQ(Act(request)->status, Status::ActionLate);
}

TEST_F(Actions, WithATimeNeedASharedClock) {
    WriteRegister(kRegControlConfig, kConfigExtendedStatus2);
    EXPECT_EQ(ActIn(kHour), Status::NoReferenceTime);
    EXPECT_EQ(m_account[Count::Actions], 0U);
}

TEST_F(Actions, SayNoMoreThanTheHostUnderstands) {
    EXPECT_EQ(ActIn(kHour), Status::Error);
}

TEST_F(Actions, FitTheirQueue) {
    ShareClock();
    const uint32_t size = Register(kRegActionQueueSize);
    for (uint32_t i = 0; i < size; ++i) {
        ASSERT_EQ(ActIn(kHour), Status::Success);
    }
    EXPECT_EQ(ActIn(kHour), Status::Overflow);
}

TEST_F(Actions, AreForgottenWithoutTheirOwner) {
    ShareClock();
    EXPECT_EQ(ActIn(kHour), Status::Success);
    m_now += std::chrono::seconds(10);
    m_server.Expire(m_now);
    EXPECT_FALSE(m_server.ActionTime(m_now));
}

TEST_F(Actions, HaveTheTimeOfThisMachine) {
    ShareClock();
    EXPECT_EQ(Register(kRegClockState), kClockFollows);
    const auto now = [] {
        const auto time = std::chrono::system_clock::now().time_since_epoch();
        return std::chrono::nanoseconds(time).count();
    };
    const int64_t before = now();
    const int64_t ticks = m_device.Camera().Ticks();
    EXPECT_LE(before, ticks);
    EXPECT_LE(ticks, now());
    EXPECT_EQ(WriteRegister(kRegTimestampControl, 1), Status::AccessDenied);
    WriteRegister(kRegControlConfig, 0);
    EXPECT_EQ(Register(kRegClockState), kClockOff);
    EXPECT_LE(ticks, m_device.Camera().Ticks()) << "time doesn't go back";
    EXPECT_EQ(WriteRegister(kRegTimestampControl, 1), Status::Success);
    EXPECT_LT(m_device.Camera().Ticks(), ticks);
}

}  // namespace
