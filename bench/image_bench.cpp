// How fast frames become pictures, beside a plain copy of as many bytes.

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "QyImageProc.h"

namespace {

constexpr uint32_t kWidth = 2448;
constexpr uint32_t kHeight = 2048;
constexpr size_t kPixels = size_t{kWidth} * kHeight;

std::vector<uint8_t> Noise(size_t bytes) {
    std::vector<uint8_t> noise(bytes);
    uint32_t state = 1;
    for (uint8_t& byte : noise) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<uint8_t>(state >> 24);
    }
    return noise;
}

void CountPixels(benchmark::State& state) {
    state.counters["pixels"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(kPixels),
                           benchmark::Counter::kIsRate);
}

void CopyThreeBytesAPixel(benchmark::State& state) {
    const std::vector<uint8_t> source = Noise(kPixels * 3);
    std::vector<uint8_t> destination(source.size());
    for (auto _ : state) {
        std::memcpy(destination.data(), source.data(), source.size());
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}

void Raw8toRGB24(benchmark::State& state) {
    const std::vector<uint8_t> source = Noise(kPixels);
    std::vector<uint8_t> destination(kPixels * 3);
    for (auto _ : state) {
        QyRaw8toRGB24(source.data(), destination.data(), kWidth, kHeight,
                      static_cast<QyInterpolationMethod>(state.range(0)), QY_BAYER_RG, 0);
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}

void Raw8toARGB32(benchmark::State& state) {
    const std::vector<uint8_t> source = Noise(kPixels);
    std::vector<uint8_t> destination(kPixels * 4);
    for (auto _ : state) {
        QyRaw8toARGB32(source.data(), destination.data(), kWidth, kHeight, kWidth,
                       static_cast<QyInterpolationMethod>(state.range(0)), QY_BAYER_RG, 0, 255);
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}

void Raw16toRGB48(benchmark::State& state) {
    const std::vector<uint8_t> source = Noise(kPixels * 2);
    std::vector<uint8_t> destination(kPixels * 6);
    for (auto _ : state) {
        QyRaw16toRGB48(source.data(), destination.data(), kWidth, kHeight, 16,
                       static_cast<QyInterpolationMethod>(state.range(0)), QY_BAYER_RG, 0);
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}

BENCHMARK(CopyThreeBytesAPixel)->Unit(benchmark::kMillisecond);
BENCHMARK(Raw8toRGB24)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(Raw8toARGB32)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(Raw16toRGB48)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

}  // namespace
