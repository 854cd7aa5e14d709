#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <thread>

#include "FakeCamera.h"
#include "HexBytes.h"
#include "gige/discovery/AdapterSearch.h"

namespace {

using namespace OvGige;
using namespace std::chrono_literals;

class AdapterSearchTest : public testing::Test {
protected:
    /// Searches until `count` cameras are found, or for a minute.
    std::vector<FoundCamera> SearchFor(size_t count, const std::vector<Endpoint>& cameras) {
        const auto end = Clock::now() + 60s;
        std::vector<FoundCamera> list;
        while (list.size() < count && Clock::now() < end) {
            m_search.Run(20ms, {false, false, cameras}, m_found);
            list = m_found.List(LoopbackAdapter(), SearchRange::Subnet, Clock::now());
        }
        return list;
    }

    AdapterSearch m_search{LoopbackAdapter(), kNobodysPort};
    FoundCameras m_found;
};

TEST_F(AdapterSearchTest, FindsWhatAnswers) {
    const auto answer = [](uint8_t number) {
        return [number](const CommandPacket& command) {
            return std::vector<Bytes>{AnswerOf(command, IdentityOf(number))};
        };
    };
    FakeCamera one(answer(1));
    FakeCamera two(answer(2));
    const auto list = SearchFor(2, {one.Address(), two.Address()});
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0].identity.mac.Value(), 1U);
    EXPECT_EQ(list[1].identity.mac.Value(), 2U);
}

TEST_F(AdapterSearchTest, AsksForAnswersThatMayBeBroadcast) {
    std::atomic<int> flags = -1;
    FakeCamera camera([&](const CommandPacket& command) {
        if (command.command == Command::Discovery) {
            flags = command.flags;
        }
        return std::vector<Bytes>{AnswerOf(command, IdentityOf(1))};
    });
    SearchFor(1, {camera.Address()});
    EXPECT_EQ(flags, 0x11);
}

TEST_F(AdapterSearchTest, SearchesAtLeastOnce) {
    UdpSocket camera = LoopbackSocket();
    m_search.Run(0ms, {false, false, {camera.Local()}}, m_found);
    EXPECT_TRUE(camera.Receive(Clock::now() + 60s));
}

TEST_F(AdapterSearchTest, KnowsWhereANamedCameraListens) {
    FakeCamera camera([](const CommandPacket& command) {
        return std::vector<Bytes>{AnswerOf(command, IdentityOf(1))};
    });
    const auto list = SearchFor(1, {camera.Address()});
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].endpoint, camera.Address());
    EXPECT_TRUE(list[0].isNamed);
}

/// What a camera says of its use, and what is made of it.
struct UseCase {
    const char* name;
    Status status;
    const char* privilege;
    CameraUse use;
};
class AdapterSearchUseTest : public AdapterSearchTest,
                             public testing::WithParamInterface<UseCase> {};

TEST_P(AdapterSearchUseTest, AsksWhoUsesACamera) {
    FakeCamera camera([](const CommandPacket& command) {
        return std::vector<Bytes>{
            command.command == Command::Discovery
                ? AnswerOf(command, IdentityOf(1))
                : AnswerOf(command, FromHex(GetParam().privilege), GetParam().status)};
    });
    while (m_search.Counters().uses == 0) {
        SearchFor(1, {camera.Address()});
        m_search.Run(20ms, {false, false, {camera.Address()}}, m_found);
    }
    EXPECT_EQ(m_found.List(LoopbackAdapter(), SearchRange::Subnet, Clock::now()).front().use,
              GetParam().use);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, AdapterSearchUseTest,
    testing::Values(UseCase{"Free", Status::Success, "00 00 00 00", CameraUse::Free},
                    UseCase{"Controlled", Status::Success, "00 00 00 02", CameraUse::Controlled},
                    UseCase{"Exclusive", Status::Success, "00 00 00 01", CameraUse::Exclusive},
                    UseCase{"Denied", Status::AccessDenied, "", CameraUse::Exclusive}),
    [](const auto& use) { return use.param.name; });

TEST_F(AdapterSearchTest, IgnoresAndCountsWhatIsNoAnswer) {
    FakeCamera camera([](const CommandPacket& command) {
        Bytes refusal = AnswerOf(command, {}, Status::Busy);
        Bytes cut = AnswerOf(command, FromHex("00 00"));
        Bytes other = AnswerOf(command, IdentityOf(9));
        other[3] = std::byte{0x05};
        return std::vector<Bytes>{FromHex("00"), refusal, cut, other,
                                  AnswerOf(command, IdentityOf(1))};
    });
    const auto list = SearchFor(1, {camera.Address()});
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].identity.mac.Value(), 1U);
    EXPECT_GE(m_search.Counters().ignored, 4U);
}

TEST_F(AdapterSearchTest, CountsALateAnswerForTheNextSearch) {
    UdpSocket camera = LoopbackSocket();
    m_search.Run(1ms, {false, false, {camera.Local()}}, m_found);
    const auto asked = camera.Receive(Clock::now() + 60s);
    ASSERT_TRUE(asked);
    EXPECT_TRUE(m_found.List(LoopbackAdapter(), SearchRange::Subnet, Clock::now()).empty());
    camera.SendTo(asked->sender, AnswerOf(ParseCommand(asked->bytes).value(), IdentityOf(1)));
    EXPECT_EQ(SearchFor(1, {}).size(), 1U);
}

TEST_F(AdapterSearchTest, TakesItsWholeTimeOnAnAdapterThatIsntThere) {
    Adapter gone = LoopbackAdapter();
    gone.name = "no-such-adapter";
    gone.index = 0x7FFFFFFF;
    AdapterSearch search(gone, kNobodysPort);
    const auto begin = Clock::now();
    search.Run(30ms, {true, true, {}}, m_found);
    EXPECT_GE(Clock::now(), begin + 30ms);
    EXPECT_EQ(search.Counters().sent, 0U);
    EXPECT_GE(search.Counters().failures, 1U);
}

TEST_F(AdapterSearchTest, IsStoppedByAnotherThread) {
    std::atomic<bool> isOver = false;
    std::thread searching([&] {
        m_search.Run(24h, {false, false, {}}, m_found);
        isOver = true;
    });
    // A stop ends only a search that runs, and nobody knows when it does.
    while (!isOver) {
        m_search.Stop();
        std::this_thread::yield();
    }
    searching.join();
}

TEST_F(AdapterSearchTest, FindsCamerasAfterAStoppedSearch) {
    FakeCamera camera([](const CommandPacket& command) {
        return std::vector<Bytes>{AnswerOf(command, IdentityOf(1))};
    });
    m_search.Stop();
    EXPECT_EQ(SearchFor(1, {camera.Address()}).size(), 1U);
}

}  // namespace
