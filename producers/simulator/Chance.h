#pragma once
/// Chance that a seed repeats, on every machine and in any order.

#include <cstdint>

namespace OvSimulator {

/// Spreads every bit of the number over all bits.
constexpr uint64_t Mix(uint64_t number) {
    number += 0x9E3779B97F4A7C15;
    number = (number ^ number >> 30) * 0xBF58476D1CE4E5B9;
    number = (number ^ number >> 27) * 0x94D049BB133111EB;
    return number ^ number >> 31;
}

}  // namespace OvSimulator
