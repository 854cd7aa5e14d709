#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "HexBytes.h"
#include "LoopbackSocket.h"
#include "framework/Failure.h"
#include "gige/net/UdpLink.h"
#include "gige/net/UdpSocket.h"

namespace {

using namespace OvGige;
using namespace std::chrono_literals;

Clock::time_point Soon() {
    return Clock::now() + 10s;
}

TEST(UdpSocketTest, CarriesDatagramsWithTheirSenderAndDestination) {
    UdpSocket one = LoopbackSocket();
    UdpSocket other = LoopbackSocket();
    one.SendTo(other.Local(), FromHex("01 02 03"));
    const auto datagram = other.Receive(Soon());
    ASSERT_TRUE(datagram);
    EXPECT_EQ(datagram->bytes, FromHex("01 02 03"));
    EXPECT_EQ(datagram->sender, one.Local());
    EXPECT_EQ(datagram->arrivedAt, kLoopback);
}

TEST(UdpSocketTest, CarriesEmptyAndLargestDatagrams) {
    UdpSocket one = LoopbackSocket();
    UdpSocket other = LoopbackSocket();
    one.SendTo(other.Local(), {});
    one.SendTo(other.Local(), Bytes(65507));
    EXPECT_EQ(other.Receive(Soon())->bytes.size(), 0U);
    EXPECT_EQ(other.Receive(Soon())->bytes.size(), 65507U);
    EXPECT_THROW(one.SendTo(other.Local(), Bytes(65508)), OvProducer::Failure);
}

TEST(UdpSocketTest, ReturnsNothingAfterTheDeadline) {
    UdpSocket socket = LoopbackSocket();
    EXPECT_FALSE(socket.Receive(Clock::now()));
    EXPECT_FALSE(socket.Receive(Clock::now() - 1s));
}

TEST(UdpSocketTest, TakesWhatIsThereAlsoAfterTheDeadline) {
    UdpSocket one = LoopbackSocket();
    UdpSocket other = LoopbackSocket();
    one.SendTo(other.Local(), FromHex("01"));
    ASSERT_TRUE(other.Receive(Soon()));
    one.SendTo(other.Local(), FromHex("02"));
    one.SendTo(other.Local(), FromHex("03"));
    ASSERT_TRUE(other.Receive(Soon()));
    EXPECT_TRUE(other.Receive(Clock::now() - 1s));
}

TEST(UdpSocketTest, IsWokenByAFile) {
    UdpSocket socket = LoopbackSocket();
    const int wake = eventfd(1, EFD_CLOEXEC);
    EXPECT_FALSE(socket.Receive(Clock::time_point::max(), wake));
    close(wake);
}

TEST(UdpLinkTest, EndsWaitsOnceItIsCancelled) {
    const UdpSocket camera = LoopbackSocket();
    UdpLink link(LoopbackSocket(), camera.Local());
    link.Cancel();
    EXPECT_FALSE(link.Receive(Clock::time_point::max()));
    EXPECT_FALSE(link.Receive(Clock::time_point::max()));
}

TEST(UdpSocketTest, SurvivesAPortThatNobodyHas) {
    UdpSocket one = LoopbackSocket();
    Endpoint nobody;
    {
        UdpSocket gone = LoopbackSocket();
        nobody = gone.Local();
    }
    one.SendTo(nobody, FromHex("01"));
    one.SendTo(nobody, FromHex("01"));
    EXPECT_FALSE(one.Receive(Clock::now()));
}

TEST(UdpSocketTest, SaysWhichAddressCantBeUsed) {
    UdpSocket one = LoopbackSocket();
    UdpSocket other;
    try {
        other.Bind(one.Local());
        FAIL();
    } catch (const OvProducer::Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_IO);
        EXPECT_EQ(failure.what(),
                  "The address " + TextOf(one.Local()) + " can't be used: Address already in use");
    }
}

TEST(UdpSocketTest, ReturnsTheReceiveBufferThatTheSystemAllows) {
    UdpSocket socket;
    const size_t small = socket.SetReceiveBuffer(64 << 10);
    EXPECT_GE(small, 64U << 10);
    EXPECT_GE(socket.SetReceiveBuffer(128 << 10), small);
}

TEST(UdpSocketTest, SendsFromItsOwnAddressByAnAdapterThatHasSeveral) {
    UdpSocket host = LoopbackSocket();
    UdpSocket sender;
    sender.Bind({{0x7F000005}, 0});
    constexpr int kLoopbackIndex = 1;
    sender.SendTo(host.Local(), FromHex("01"), kLoopbackIndex);
    EXPECT_EQ(host.Receive(Soon())->sender, sender.Local());
}

TEST(UdpSocketTest, KnowsNoAdapterThatIsntThere) {
    UdpSocket socket;
    EXPECT_FALSE(socket.BindToDevice("no-such-adapter"));
}

TEST(UdpLinkTest, DropsDatagramsOfOthers) {
    UdpSocket camera = LoopbackSocket();
    UdpSocket stranger = LoopbackSocket();
    UdpLink link(LoopbackSocket(), camera.Local());
    stranger.SendTo(link.Local(), FromHex("BA D0"));
    camera.SendTo(link.Local(), FromHex("60 0D"));
    EXPECT_EQ(link.Receive(Soon()), FromHex("60 0D"));
    EXPECT_FALSE(link.Receive(Clock::now()));
}

}  // namespace
