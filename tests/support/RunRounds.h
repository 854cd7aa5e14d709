#pragma once
/// What a test does again and again.
///
/// `OV_TEST_ROUNDS` sets the number of rounds, for runs of half an hour.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>

/// Runs all rounds, or up to the first that fails.
/// @param share  of the number of rounds that quick tests make: slow ones make fewer
inline void RunRounds(const std::function<void(unsigned round)>& round, double share = 1) {
    constexpr unsigned kDefault = 20;
    const char* const wish = std::getenv("OV_TEST_ROUNDS");
    const unsigned wanted =
        wish == nullptr ? kDefault : static_cast<unsigned>(std::strtoul(wish, nullptr, 10));
    ASSERT_GT(wanted, 0U) << "OV_TEST_ROUNDS is no number";
    const unsigned rounds = std::max(1U, static_cast<unsigned>(wanted * share));
    unsigned done = 0;
    for (; done < rounds && !testing::Test::HasFailure(); ++done) {
        SCOPED_TRACE("round " + std::to_string(done));
        round(done);
    }
    testing::Test::RecordProperty("rounds", static_cast<int>(done));
    std::cout << "[  ROUNDS  ] " << done << '\n';
}
