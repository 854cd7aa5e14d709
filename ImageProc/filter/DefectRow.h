#pragma once
/// Repairs the outliers in a row of a raw frame.

#include <cstddef>
#include <cstdint>

#include "support/Word.h"

namespace QyDefect {

using QySample::Word;

/// Distance to the next sample of the same colour, and so the width of the border in
/// which a sample doesn't have all four neighbours.
constexpr ptrdiff_t kReach = 2;

/// Repairs the samples of a row between its borders, from left to right: a repaired
/// sample is the left neighbour of a later one.
/// @param row        has kReach rows above and below
/// @param threshold  an outlier exceeds each of its neighbours by more than this
void RepairRow(uint8_t* row, size_t width, int32_t threshold);
void RepairRow(Word* row, size_t width, int32_t threshold);

}  // namespace QyDefect
