#pragma once
/// Prints the results as a table.

#include <vector>

#include "image_row.h"
#include "image_time.h"

namespace ImageBench {

/// A row with all its measurements.
struct Measured {
    Row row;
    std::vector<Rival> rivals;
    PerSize<Times> times;
};

/// Prints machine and compiler, a line for each row and each rival, and the goals that
/// were missed.
/// @param passes  number of passes that were measured
void PrintTable(const std::vector<Measured>& all, int passes);

}  // namespace ImageBench
