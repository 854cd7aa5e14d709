#pragma once
/// The clock that simulated cameras go by.

#include <chrono>

namespace OvSimulator {

using Clock = std::chrono::steady_clock;

}  // namespace OvSimulator
