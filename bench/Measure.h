#pragma once
/// Times of small things. Machines are noisy, so the best of many rounds counts,
/// and figures are quoted as ratios within one run.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <limits>
#include <vector>

/// Keeps the compiler from leaving out what makes the value.
template <class T>
inline void Keep(const T& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

/// Nanoseconds of one call: the best of the rounds, each of `calls` calls.
template <class Call>
double Nanoseconds(size_t calls, const Call& call, int rounds = 15) {
    using Clock = std::chrono::steady_clock;
    double best = std::numeric_limits<double>::max();
    for (int round = 0; round < rounds; ++round) {
        const auto begin = Clock::now();
        for (size_t i = 0; i < calls; ++i) {
            call();
        }
        const std::chrono::duration<double, std::nano> elapsed = Clock::now() - begin;
        best = std::min(best, elapsed.count() / static_cast<double>(calls));
    }
    return best;
}

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}
