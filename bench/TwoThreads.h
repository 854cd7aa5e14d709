#pragma once
/// What two threads get done, beside one.

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <utility>
#include <vector>

#include "Measure.h"

/// Calls of `call(i)` of all threads in a second.
template <class Call>
double Rate(size_t threads, const Call& call) {
    constexpr int kRounds = 7;
    constexpr auto kRound = std::chrono::milliseconds(40);
    std::vector<double> rates;
    for (int round = 0; round < kRounds; ++round) {
        std::atomic<bool> stop{false};
        std::atomic<uint64_t> calls{0};
        const auto begin = std::chrono::steady_clock::now();
        std::vector<std::thread> all;
        for (size_t i = 0; i < threads; ++i) {
            all.emplace_back([&, i] {
                uint64_t own = 0;
                for (; !stop.load(std::memory_order_relaxed); ++own) {
                    call(i);
                }
                calls += own;
            });
        }
        std::this_thread::sleep_for(kRound);
        stop = true;
        for (std::thread& thread : all) {
            thread.join();
        }
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
        rates.push_back(static_cast<double>(calls) / time.count());
    }
    return Median(std::move(rates));
}

/// How many times the rate of one thread two threads reach, each of which calls `call(i)`.
template <class Call>
double RateOfTwo(const Call& call) {
    return Rate(2, call) / Rate(1, call);
}

/// The same of threads that share nothing: where the processor runs both on one core, that isn't
/// two.
inline double RateOfTwoApart() {
    return RateOfTwo([](size_t i) {
        auto number = static_cast<uint64_t>(i + 1);
        for (int step = 0; step < 100; ++step) {
            number = number * 6364136223846793005U + 1442695040888963407U;
            Keep(number);
        }
    });
}
