#pragma once
/// Times of a row, of its rivals and of the copy, which are measured in turns so that the
/// machine's load is the same for all.

#include <span>
#include <vector>

#include "image_row.h"

namespace ImageBench {

/// Nanoseconds of CPU time of a call: medians of the rounds.
struct Times {
    double row;
    /// A copy that reads and writes as many bytes in total as the row does.
    double copy;
    std::vector<double> rivals;
};

/// @param rivals  functions of other libraries for the row's kind of work
/// @throws std::runtime_error if a rival's picture differs from ours and must not
Times TimeRow(const Row& row, std::span<const Rival> rivals, Size size, int rounds);

/// How many times as long two threads take for a picture each, with one colour record, as one
/// thread for one: the median of the rounds.
double TimeSharedRecord(Size size, int rounds);

}  // namespace ImageBench
