#include <gtest/gtest.h>

#include <vector>

#include "gige/stream/PacketSizeSearch.h"

namespace {

using namespace OvGige;

/// A network that carries packets up to a size.
struct Network {
    size_t largest;
    size_t step = 1;  ///< the camera rounds down to multiples of it
    std::vector<size_t> tried{};

    std::optional<size_t> Find(size_t upTo) {
        return FindPacketSize(
            upTo, [this](size_t size, std::chrono::milliseconds) -> std::optional<size_t> {
                tried.push_back(size);
                const size_t sent = size / step * step;
                return sent <= largest ? std::optional(sent) : std::nullopt;
            });
    }
};

TEST(PacketSize, IsTheLargestIfThatComesThrough) {
    Network network{9000};
    EXPECT_EQ(network.Find(9000), 8992U);
    EXPECT_EQ(network.tried, (std::vector<size_t>{8992}));
}

TEST(PacketSize, IsNearlyWhatASwitchLetsThrough) {
    Network network{4321};
    const auto size = network.Find(9000);
    ASSERT_TRUE(size);
    EXPECT_LE(*size, 4321U);
    EXPECT_GT(*size + 128 + 16, 4321U);
}

TEST(PacketSize, MayBeSmallerThanUsual) {
    Network network{1000};
    const auto size = network.Find(1500);
    ASSERT_TRUE(size);
    EXPECT_LE(*size, 1000U);
    EXPECT_GE(*size, 576U);
}

TEST(PacketSize, IsNoneWithoutTestPackets) {
    Network network{0};
    EXPECT_EQ(network.Find(9000), std::nullopt);
    EXPECT_EQ(network.tried.size(), 9U) << "three sizes, three times each";
}

TEST(PacketSize, IsFoundThoughTheCameraRounds) {
    Network network{5000, 1024};
    EXPECT_EQ(network.Find(9000), 4096U);
}

TEST(PacketSize, IsFoundThoughTestPacketsGetLost) {
    int tries = 0;
    const auto size =
        FindPacketSize(9000, [&tries](size_t wanted, std::chrono::milliseconds patience) {
            ++tries;
            return patience > std::chrono::milliseconds(10) ? std::optional(wanted) : std::nullopt;
        });
    EXPECT_EQ(size, 8992U);
    EXPECT_EQ(tries, 2);
}

}  // namespace
