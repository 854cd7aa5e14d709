#include <gtest/gtest.h>

#include "nodes/NearestNames.h"

namespace {

using Names = std::vector<std::string>;

TEST(NearestNames, CountChangesOfLetters) {
    EXPECT_EQ(DistanceOf("Width", "Width"), 0U);
    EXPECT_EQ(DistanceOf("Width", "width"), 0U);
    EXPECT_EQ(DistanceOf("Widht", "Width"), 2U);
    EXPECT_EQ(DistanceOf("Gain", "Gains"), 1U);
    EXPECT_EQ(DistanceOf("", "Gain"), 4U);
    EXPECT_EQ(DistanceOf("kitten", "sitting"), 3U);
}

TEST(NearestNames, AreTheThreeThatDifferLeast) {
    EXPECT_EQ(NearestNames("Gian", {"Gainer", "Gain", "Gamma", "Grain", "Main"}),
              (Names{"Gain", "Grain"}));
    EXPECT_EQ(NearestNames("Gain", {"Gainer", "Gains", "Gin", "Grain", "Gain"}),
              (Names{"Gain", "Gains", "Gin"}));
}

TEST(NearestNames, ContainWhatIsWanted) {
    EXPECT_EQ(NearestNames("exposure", {"ExposureTime", "Width", "AutoExposureTimeMax"}),
              (Names{"ExposureTime", "AutoExposureTimeMax"}));
}

TEST(NearestNames, AreNoneForWhatIsLikeNothing) {
    EXPECT_EQ(NearestNames("", {"Width"}), Names{});
    EXPECT_EQ(NearestNames("Xylophone", {"Width", "Height"}), Names{});
    EXPECT_EQ(NearestNames(std::string(100000, 'W'), {"Width"}), Names{});
}

}  // namespace
