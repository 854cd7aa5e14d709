#pragma once
/// Times of a row, of its rivals and of the copy, which are measured in turns so that the
/// machine's load is the same for all.

#include <limits>
#include <span>
#include <vector>

#include "image_row.h"

namespace ImageBench {

constexpr double kNever = std::numeric_limits<double>::max();

/// The best times so far, in nanoseconds of CPU time.
struct Times {
    double row = kNever;
    /// A copy that reads and writes as many bytes in total as the row does.
    double copy = kNever;
    std::vector<double> rivals;
};

/// @param rivals  functions of other libraries for the row's kind of work
/// @param times   the best times so far, which each call improves
/// @throws std::runtime_error if a rival's picture differs from ours and must not
void TimeRow(const Row& row, std::span<const Rival> rivals, Size size, Times& times);

}  // namespace ImageBench
