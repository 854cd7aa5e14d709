#pragma once
/// A function over an image beside a copy that moves as many bytes.

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "Measure.h"

namespace ImageRatio {

/// What a function over images costs at best: what it reads and what it writes.
struct Row {
    const char* name;
    /// Bits of a pixel.
    size_t read;
    size_t written;
    void (*run)(const uint8_t* src, uint8_t* dst, int width, int height);
};

inline std::vector<uint8_t> Noise(size_t bytes) {
    std::vector<uint8_t> noise(bytes);
    uint32_t state = 1;
    for (uint8_t& byte : noise) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<uint8_t>(state >> 24);
    }
    return noise;
}

/// Takes turns with the copy, so that both meet the same machine. The counters
/// are the time of a pixel and the best time of the function in copies of half of
/// the bytes read and written together, which moves as many.
inline void Run(benchmark::State& state, const Row& row, int width, int height) {
    const size_t pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
    const size_t copied = pixels * (row.read + row.written) / 16;
    const std::vector<uint8_t> src = Noise(std::max(pixels * row.read / 8, copied));
    std::vector<uint8_t> dst(std::max(pixels * row.written / 8, copied));
    double function = std::numeric_limits<double>::max();
    double copy = function;
    constexpr int kRounds = 5;
    for (auto _ : state) {
        function = std::min(
            function, Nanoseconds(
                          1, [&] { row.run(src.data(), dst.data(), width, height); }, kRounds));
        copy = std::min(copy, Nanoseconds(
                                  1,
                                  [&] {
                                      std::memcpy(dst.data(), src.data(), copied);
                                      benchmark::ClobberMemory();
                                  },
                                  kRounds));
    }
    state.counters["ns/pixel"] = function / static_cast<double>(pixels);
    state.counters["copies"] = function / copy;
}

/// Adds a row for both sizes of image that figures are quoted for.
inline void Register(const Row& row) {
    for (const auto& [width, height] : {std::pair{1920, 1080}, {4096, 3000}}) {
        const std::string name =
            std::string(row.name) + "/" + std::to_string(width) + "x" + std::to_string(height);
        benchmark::RegisterBenchmark(
            name.c_str(),
            [row, w = width, h = height](benchmark::State& state) { Run(state, row, w, h); });
    }
}

}  // namespace ImageRatio
