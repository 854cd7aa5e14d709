#pragma once
/// Counts the allocations of a benchmark's process, its libraries among it.

#include <cstdint>

uint64_t CountOfAllocations();
