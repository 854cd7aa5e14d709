#pragma once

#include <string>

namespace ImageBench {

/// The machine and what the benchmark was compiled with, in one line.
std::string MachineText();

}  // namespace ImageBench
