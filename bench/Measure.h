#pragma once
/// Times of short operations. Machines are noisy, so the median of many rounds counts (the best
/// would be a round that no other program has), and figures are ratios to others of the same run.

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <utility>
#include <vector>

/// Keeps the compiler from removing the computation of the value.
template <class T>
inline void Keep(const T& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

/// CPU time of the calling thread in nanoseconds, so that other programs don't count.
inline double ThreadNanoseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// CPU time of one call in nanoseconds: the median of some rounds of `calls` calls each.
template <class Call>
double Nanoseconds(size_t calls, const Call& call, int rounds = 15) {
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const double begin = ThreadNanoseconds();
        for (size_t i = 0; i < calls; ++i) {
            call();
        }
        times.push_back((ThreadNanoseconds() - begin) / static_cast<double>(calls));
    }
    return Median(std::move(times));
}
