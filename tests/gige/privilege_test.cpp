#include "gige/control/Privilege.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "ScriptedLink.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/Registers.h"

namespace {

using namespace OvGige;
using namespace std::chrono_literals;
using OvProducer::Failure;

/// A camera of a few registers that may refuse the privilege to this host.
class PrivilegeTest : public testing::Test {
protected:
    PrivilegeTest() {
        m_link->Answer([this](const CommandPacket& command) {
            return std::vector<ScriptedReply>{{0ms, Serve(command)}};
        });
        m_memory.SetCapability(kOffersOwner);
        m_registers[kRegHeartbeatTimeout] = 3000;
        m_registers[kRegOwnerIp] = 0xC0A80105;
        m_registers[kRegOwnerPort] = 50000;
    }

    Bytes Serve(const CommandPacket& command) {
        if (command.command == Command::WriteRegister) {
            const RegisterWrite write = ParseWrites(command.payload).value().front();
            if (m_refusals > 0) {
                --m_refusals;
                return AnswerOf(command, {}, m_refusal);
            }
            m_registers[write.address] = write.value;
            return AnswerOf(command, BuildCount(1));
        }
        if (m_readsRefused) {
            return AnswerOf(command, {}, Status::AccessDenied);
        }
        const uint32_t address = ParseNumbers(command.payload).value().front();
        return AnswerOf(command, BuildNumbers(std::array{m_registers[address]}));
    }

    void Take(Access access) {
        TakeAccess(
            m_memory, access,
            [this](const Endpoint& owner) {
                m_asked.push_back(TextOf(owner));
                return m_isAbandoned;
            },
            [this](std::chrono::milliseconds time) { m_paused += time; });
    }

    void ExpectRefused(Access access, const char* text) {
        try {
            Take(access);
            FAIL();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Code(), GenTL::GC_ERR_ACCESS_DENIED);
            EXPECT_STREQ(failure.what(), text);
        }
    }

    std::map<uint32_t, uint32_t> m_registers;
    int m_refusals = 0;
    Status m_refusal = Status::AccessDenied;
    bool m_readsRefused = false;
    bool m_isAbandoned = false;
    std::vector<std::string> m_asked;
    std::chrono::milliseconds m_paused{0};
    ScriptedLink* const m_link = new ScriptedLink;  // owned by the channel
    ControlChannel m_channel{std::unique_ptr<DatagramLink>(m_link), 1};
    CameraMemory m_memory{m_channel};
};

TEST_F(PrivilegeTest, OfControlAndExclusiveAccessIsWritten) {
    Take(Access::Control);
    EXPECT_EQ(m_registers[kRegPrivilege], 2U);
    Take(Access::Exclusive);
    EXPECT_EQ(m_registers[kRegPrivilege], 1U);
}

TEST_F(PrivilegeTest, IsNotTakenForReading) {
    m_registers[kRegPrivilege] = kPrivilegeControl;
    Take(Access::ReadOnly);
    EXPECT_EQ(m_registers[kRegPrivilege], kPrivilegeControl);
}

TEST_F(PrivilegeTest, OfAnExclusiveOwnerForbidsReading) {
    m_registers[kRegPrivilege] = kPrivilegeExclusive;
    ExpectRefused(Access::ReadOnly, "The camera is in use by 192.168.1.5:50000");
    m_readsRefused = true;
    ExpectRefused(Access::ReadOnly, "The camera is in use; it doesn't say by whom");
}

TEST_F(PrivilegeTest, OfSomebodyElseIsRefusedAtOnceWithTheOwnersAddress) {
    m_refusals = 1;
    ExpectRefused(Access::Control, "The camera is in use by 192.168.1.5:50000");
    EXPECT_EQ(m_asked, std::vector<std::string>({"192.168.1.5:50000"}));
    EXPECT_EQ(m_paused, 0ms);
}

TEST_F(PrivilegeTest, OfAnUnknownOwnerIsRefusedAtOnce) {
    for (int round = 0; round < 3; ++round) {
        m_refusals = 1;
        m_memory.SetCapability(round == 0 ? 0 : kOffersOwner);
        m_registers[kRegOwnerIp] = 0;
        m_readsRefused = round == 2;
        ExpectRefused(Access::Control, "The camera is in use; it doesn't say by whom");
    }
}

TEST_F(PrivilegeTest, OfAProcessThatHasGoneIsWaitedFor) {
    m_refusals = 7;
    m_isAbandoned = true;
    Take(Access::Control);
    EXPECT_EQ(m_registers[kRegPrivilege], kPrivilegeControl);
    EXPECT_EQ(m_paused, 700ms);
}

TEST_F(PrivilegeTest, IsWaitedForNoLongerThanTheHeartbeatAndAPause) {
    m_refusals = 1000;
    m_isAbandoned = true;
    ExpectRefused(Access::Control, "The camera is in use by 192.168.1.5:50000");
    EXPECT_EQ(m_paused, 3100ms);
}

TEST_F(PrivilegeTest, PassesOtherFailuresOn) {
    m_refusals = 1;
    m_refusal = Status::Busy;
    EXPECT_THROW(Take(Access::Control), Refusal);
}

TEST_F(PrivilegeTest, IsGivenBack) {
    Take(Access::Control);
    ReleaseAccess(m_memory);
    EXPECT_EQ(m_registers[kRegPrivilege], 0U);
}

TEST_F(PrivilegeTest, IsGivenBackToACameraThatHasGone) {
    m_link->Answer([](const CommandPacket&) { return std::vector<ScriptedReply>{}; });
    ReleaseAccess(m_memory);
    EXPECT_EQ(m_channel.Counters().abandoned, 1U);
}

}  // namespace
