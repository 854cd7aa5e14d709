#pragma once
/// Times of short operations. Machines are noisy, so the median of many rounds counts (the best
/// would be a round that no other program has), and figures are ratios to others of the same run.

#include <algorithm>
#include <array>
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

/// CPU time of one of so many calls in nanoseconds.
template <class Call>
double NanosecondsOnce(size_t calls, const Call& call) {
    const double begin = ThreadNanoseconds();
    for (size_t i = 0; i < calls; ++i) {
        call();
    }
    return (ThreadNanoseconds() - begin) / static_cast<double>(calls);
}

/// CPU time of one call of each in nanoseconds: the medians of some rounds of `calls` calls. They
/// take turns, so that what disturbs the machine for a while slows all of them down.
template <class... Calls>
std::array<double, sizeof...(Calls)> NanosecondsInTurns(size_t calls, const Calls&... call) {
    constexpr int kRounds = 15;
    std::array<std::vector<double>, sizeof...(Calls)> times;
    for (int round = 0; round < kRounds; ++round) {
        size_t next = 0;
        (times[next++].push_back(NanosecondsOnce(calls, call)), ...);
    }
    std::array<double, sizeof...(Calls)> medians{};
    std::transform(times.begin(), times.end(), medians.begin(), Median);
    return medians;
}

/// CPU time of one call in nanoseconds: the median of some rounds of `calls` calls each.
template <class Call>
double Nanoseconds(size_t calls, const Call& call, int rounds = 15) {
    std::vector<double> times(static_cast<size_t>(rounds));
    std::generate(times.begin(), times.end(), [&] { return NanosecondsOnce(calls, call); });
    return Median(std::move(times));
}
