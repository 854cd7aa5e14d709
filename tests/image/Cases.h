#pragma once
/// How many cases were compared with the plain references, for each instruction
/// set; the sums are printed when the program ends.

/// Counts a case for the instruction set that is in use.
void CountCase();
