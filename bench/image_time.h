#pragma once
/// Times of a row, of its rivals and of the copy, taken in turns so that all of
/// them meet the same machine.

#include <limits>
#include <span>
#include <vector>

#include "image_row.h"

namespace ImageBench {

constexpr double kNever = std::numeric_limits<double>::max();

/// The best of all calls so far, in nanoseconds of this thread.
struct Times {
    double row = kNever;
    /// A copy that reads and writes as many bytes as the row does in sum.
    double copy = kNever;
    std::vector<double> rivals;
};

/// @param rivals  of the row's kind
/// @param times   gets better from call to call
/// @throws std::runtime_error if a rival's picture isn't what it must be
void TimeRow(const Row& row, std::span<const Rival> rivals, Size size, Times& times);

}  // namespace ImageBench
