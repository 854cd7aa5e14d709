#pragma once
/// The rows of a raw frame whose outliers are repaired.

#include <cstddef>
#include <cstdint>

#include "support/Word.h"

namespace QyDefect {

using QySample::Word;

/// Samples from one to the next of the same colour, and around a frame that has
/// no such neighbour on every side.
constexpr ptrdiff_t kReach = 2;

/// Repairs the samples of a row but for the border, from left to right; a repair
/// is seen by the samples behind it.
/// @param row        has kReach rows above and below
/// @param threshold  by how much more than each neighbour an outlier has
void RepairRow(uint8_t* row, size_t width, int32_t threshold);
void RepairRow(Word* row, size_t width, int32_t threshold);

}  // namespace QyDefect
