// The choice between writing through the caches and past them, by a clock that tests set.

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "support/CacheSize.h"
#include "support/WayOfWriting.h"

namespace {

using QyWriting::Machine;
using QyWriting::WayOfWriting;

constexpr size_t kStripeSize = WayOfWriting::kStripeBytes;
constexpr size_t kNoLimit = std::numeric_limits<size_t>::max();

int64_t theTime = 0;

int64_t TestTime() {
    return theTime;
}

/// What a stripe takes.
struct StripeCosts {
    int64_t through;
    int64_t past;
    /// The stripe, counted from 0, that takes longer, and by how much.
    int slow = -1;
    int64_t slower = 0;
};

/// Writes stripes of a picture by parts of equal size, and returns a letter for each stripe: '-'
/// through the caches, 'P' past them. The parts of a stripe must have the same way.
std::string Ways(WayOfWriting way, int stripes, const StripeCosts& costs, size_t parts = 4) {
    theTime = 1000;
    std::string ways;
    for (int stripe = 0; stripe < stripes; ++stripe) {
        const bool isPast = way.IsPast(kStripeSize / parts);
        for (size_t part = 1; part < parts; ++part) {
            EXPECT_EQ(way.IsPast(kStripeSize / parts), isPast) << stripe;
        }
        theTime += isPast ? costs.past : costs.through;
        theTime += stripe == costs.slow ? costs.slower : 0;
        ways += isPast ? 'P' : '-';
    }
    return ways;
}

WayOfWriting Undecided() {
    return {100, Machine{99, 100, TestTime}};
}

TEST(WayOfWriting, LeadsSmallPicturesThroughTheCaches) {
    EXPECT_EQ(Ways({100, Machine{100, kNoLimit, nullptr}}, 9, {2, 1}), "---------");
    EXPECT_EQ(Ways({0, Machine{0, 0, nullptr}}, 9, {2, 1}), "---------");
}

TEST(WayOfWriting, LeadsPicturesPastCachesThatAreSmaller) {
    EXPECT_EQ(Ways({101, Machine{0, 100, nullptr}}, 9, {1, 2}), "PPPPPPPPP");
    EXPECT_EQ(Ways({101, Machine{200, 100, nullptr}}, 9, {1, 2}), "PPPPPPPPP");
}

TEST(WayOfWriting, IsTheFasterOneAfterStripesOfBoth) {
    EXPECT_EQ(Ways(Undecided(), 12, {11, 10}), "-P-P-P-PPPPP");
    EXPECT_EQ(Ways(Undecided(), 12, {10, 11}), "-P-P-P------");
}

TEST(WayOfWriting, IsThroughTheCachesIfBothAreAsFast) {
    EXPECT_EQ(Ways(Undecided(), 12, {10, 10}), "-P-P-P------");
}

TEST(WayOfWriting, IgnoresStripesThatAreInterrupted) {
    for (int slow = 0; slow < 7; ++slow) {
        EXPECT_EQ(Ways(Undecided(), 9, {11, 10, slow, 1000}), "-P-P-P-PP") << slow;
        EXPECT_EQ(Ways(Undecided(), 9, {10, 11, slow, 1000}), "-P-P-P---") << slow;
    }
}

TEST(WayOfWriting, IgnoresTheFirstStripe) {
    EXPECT_EQ(Ways(Undecided(), 9, {11, 10, 0, -11}), "-P-P-P-PP");
}

TEST(WayOfWriting, ChangesOnlyBetweenParts) {
    EXPECT_EQ(Ways(Undecided(), 9, {2, 1}, 1), "-P-P-P-PP");
    theTime = 0;
    WayOfWriting way = Undecided();
    EXPECT_FALSE(way.IsPast(kStripeSize - 1));
    EXPECT_FALSE(way.IsPast(10 * kStripeSize));
    EXPECT_TRUE(way.IsPast(1));
}

TEST(WayOfWriting, OfThisMachineKeepsSmallPicturesAndHasAClock) {
    const Machine machine = QyWriting::ThisMachine();
    EXPECT_EQ(machine.kept, QyCache::kUsualBytes);
    EXPECT_EQ(machine.largest, QyCache::LargestBytes());
    const int64_t before = machine.now();
    EXPECT_GE(machine.now(), before);
}

}  // namespace
