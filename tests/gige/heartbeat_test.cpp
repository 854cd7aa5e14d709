#include "gige/control/Heartbeat.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <semaphore>
#include <string>

#include "ScriptedLink.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/Registers.h"

namespace {

using namespace OvGige;
using namespace std::chrono_literals;

/// A camera that is asked on the heartbeat's thread. Its time-out is short, so that no test
/// takes long.
class HeartbeatTest : public testing::Test {
protected:
    HeartbeatTest() {
        m_channel.SetPatience({.timeout = 1ms, .tries = 1});
        m_link->Answer([this](const CommandPacket& command) {
            ++m_asked;
            m_beats.release();
            return Serve(command);
        });
    }

    std::vector<ScriptedReply> Serve(const CommandPacket& command) const {
        if (m_isSilent) {
            return {};
        }
        if (m_status != Status::Success) {
            return {{0ms, AnswerOf(command, {}, m_status)}};
        }
        const bool isPrivilege = ParseNumbers(command.payload).value().front() == kRegPrivilege;
        return {{0ms, AnswerOf(command, BuildNumbers(std::array{
                                            (isPrivilege ? m_privilege : m_timeout).load()}))}};
    }

    auto OnLoss() {
        return [this](const std::string& why) {
            m_why = why;
            m_lost.release();
        };
    }

    std::atomic<bool> m_isSilent = false;
    std::atomic<Status> m_status = Status::Success;
    std::atomic<uint32_t> m_privilege = kPrivilegeControl;
    std::atomic<uint32_t> m_timeout = 3;
    std::atomic<int> m_asked = 0;
    std::counting_semaphore<> m_beats{0};
    std::binary_semaphore m_lost{0};
    std::string m_why;
    ScriptedLink* const m_link = new ScriptedLink;  // owned by the channel
    ControlChannel m_channel{std::unique_ptr<DatagramLink>(m_link), 1};
    CameraMemory m_memory{m_channel};
};

TEST_F(HeartbeatTest, AsksAgainAndAgain) {
    const Heartbeat heartbeat(m_memory, true, OnLoss());
    for (int i = 0; i < 20; ++i) {
        m_beats.acquire();
    }
    EXPECT_FALSE(m_lost.try_acquire());
}

TEST_F(HeartbeatTest, NoticesThatTheCameraHasGivenUpItsOwner) {
    m_privilege = 0;
    const Heartbeat heartbeat(m_memory, true, OnLoss());
    m_lost.acquire();
    EXPECT_EQ(m_why, "The camera has given up this host as its owner");
}

TEST_F(HeartbeatTest, OfAReaderNeedsNoOwner) {
    m_privilege = 0;
    const Heartbeat heartbeat(m_memory, false, OnLoss());
    for (int i = 0; i < 6; ++i) {
        m_beats.acquire();
    }
    EXPECT_FALSE(m_lost.try_acquire());
}

TEST_F(HeartbeatTest, NoticesThatTheCameraHasAnotherOwner) {
    m_status = Status::AccessDenied;
    const Heartbeat heartbeat(m_memory, true, OnLoss());
    m_lost.acquire();
    EXPECT_EQ(m_why, "The camera has another owner");
}

TEST_F(HeartbeatTest, NoticesThatTheCameraHasNotAnsweredForItsTimeout) {
    const Heartbeat heartbeat(m_memory, true, OnLoss());
    m_beats.acquire();
    m_beats.acquire();  // the second register of a beat is the time-out: 3 ms
    m_beats.acquire();
    m_isSilent = true;
    m_lost.acquire();
    EXPECT_EQ(m_why, "The camera hasn't answered for 3 ms");
}

TEST_F(HeartbeatTest, IsNotLostByABusyCamera) {
    m_status = Status::Busy;
    const Heartbeat heartbeat(m_memory, true, OnLoss());
    m_beats.acquire();
    m_status = Status::Success;
    for (int i = 0; i < 6; ++i) {
        m_beats.acquire();
    }
    EXPECT_FALSE(m_lost.try_acquire());
}

TEST_F(HeartbeatTest, AsksNothingAfterALoss) {
    m_privilege = 0;
    {
        const Heartbeat heartbeat(m_memory, true, OnLoss());
        m_lost.acquire();
    }
    EXPECT_EQ(m_asked, 1);
}

TEST_F(HeartbeatTest, BeatsAtOnceWhenItIsToldTo) {
    m_timeout = 600'000;  // in turn, the second beat would come after minutes
    Heartbeat heartbeat(m_memory, true, OnLoss());
    for (int beat = 0; beat < 20; ++beat) {
        m_beats.acquire();
        m_beats.acquire();
        heartbeat.BeatNow();
    }
}

TEST_F(HeartbeatTest, EndsAtOnceHoweverLongItsTimeoutIs) {
    m_isSilent = true;  // the usual time-out of three seconds is in force
    const Heartbeat heartbeat(m_memory, true, OnLoss());
    m_beats.acquire();
}

}  // namespace
