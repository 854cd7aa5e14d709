#pragma once
/// What was measured, for people to read.

#include <vector>

#include "image_row.h"
#include "image_time.h"

namespace ImageBench {

/// A row with all that was measured for it.
struct Measured {
    Row row;
    std::vector<Rival> rivals;
    PerSize<Times> times;
};

/// Prints machine and compiler, a line for each row and each rival, and what was
/// missed.
/// @param passes  how often all was measured
void PrintTable(const std::vector<Measured>& all, int passes);

}  // namespace ImageBench
