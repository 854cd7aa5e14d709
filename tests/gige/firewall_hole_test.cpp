#include <gtest/gtest.h>

#include "LoopbackSocket.h"
#include "framework/Failure.h"
#include "gige/net/FirewallHole.h"

namespace {

using namespace OvGige;
using Clock = std::chrono::steady_clock;

TEST(FirewallHole, IsMadeAtOnceAndNotAgainBeforeItIsForgotten) {
    UdpSocket camera = LoopbackSocket();
    UdpSocket host = LoopbackSocket();
    FirewallHole hole(camera.Local());
    EXPECT_LE(hole.Due(), Clock::now());
    hole.KeepOpen(host);
    const auto packet = camera.Receive(Clock::now() + std::chrono::seconds(10));
    ASSERT_TRUE(packet.has_value());
    EXPECT_EQ(packet->sender, host.Local());
    EXPECT_EQ(packet->bytes.size(), 1U);
    EXPECT_GT(hole.Due(), Clock::now());
    hole.KeepOpen(host);
    EXPECT_FALSE(camera.Receive(Clock::now()).has_value());
}

TEST(FirewallHole, IsNotMadeWhereNobodyKnowsTheSource) {
    UdpSocket camera = LoopbackSocket();
    FirewallHole hole({camera.Local().ip, 0});
    hole.KeepOpen(camera);
    EXPECT_EQ(hole.Due(), Clock::time_point::max());
    EXPECT_FALSE(camera.Receive(Clock::now()).has_value());
}

TEST(FirewallHole, IsTriedAgainLaterWhenTheSocketFails) {
    UdpSocket host = LoopbackSocket();
    // No broadcast leaves a socket that wasn't allowed it.
    FirewallHole hole({{0xFFFFFFFF}, 1});
    EXPECT_THROW(hole.KeepOpen(host), OvProducer::Failure);
    EXPECT_GT(hole.Due(), Clock::now());
    EXPECT_NO_THROW(hole.KeepOpen(host));
}

}  // namespace
