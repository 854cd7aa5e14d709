// How fast frames become pictures, beside loops over single pixels and beside a
// plain copy of as many bytes.

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "QyImageProc.h"
#include "image_plain.h"

namespace {

constexpr uint32_t kWidth = 2448;
constexpr uint32_t kHeight = 2048;
constexpr size_t kPixels = size_t{kWidth} * kHeight;
constexpr int kFast = QY_RAW2RGB_NEIGHBOUR;
constexpr int kAdaptive = QY_RAW2RGB_ADAPTIVE;
constexpr int kFine = QY_RAW2RGB_NEIGHBOUR3;

std::vector<uint8_t> Noise(size_t bytes) {
    std::vector<uint8_t> noise(bytes);
    uint32_t state = 1;
    for (uint8_t& byte : noise) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<uint8_t>(state >> 24);
    }
    return noise;
}

/// One form of the output: the library's function and the memory that it needs.
struct Rgb24 {
    using Sample = uint8_t;
    static constexpr int kSamples = 3;
    static void Run(const void* src, void* dst, int method) {
        QyRaw8toRGB24(src, dst, kWidth, kHeight, method, QY_BAYER_RG, 0);
    }
};

struct Argb32 {
    using Sample = uint8_t;
    static constexpr int kSamples = 4;
    static void Run(const void* src, void* dst, int method) {
        QyRaw8toARGB32(src, dst, kWidth, kHeight, kWidth, method, QY_BAYER_RG, 0, 0);
    }
};

struct Rgb48 {
    using Sample = QyBayer::Word;
    static constexpr int kSamples = 3;
    static void Run(const void* src, void* dst, int method) {
        QyRaw16toRGB48(src, dst, kWidth, kHeight, 16, method, QY_BAYER_RG, 0);
    }
};

/// A frame in the memory of a form.
template <class Form>
class Frame {
public:
    using Image = QyBayer::Image<typename Form::Sample, Form::kSamples>;

    const void* Source() const { return m_source.data(); }
    std::vector<uint8_t>& Destination() { return m_destination; }
    Image AsImage() {
        Image image{};
        image.src = static_cast<const typename Form::Sample*>(Source());
        image.dst = static_cast<typename Form::Sample*>(static_cast<void*>(m_destination.data()));
        image.width = kWidth;
        image.height = kHeight;
        image.stride = size_t{kWidth} * Form::kSamples;
        image.red = QyBayer::R;
        image.blue = QyBayer::B;
        return image;
    }

private:
    static constexpr size_t kSampleBytes = sizeof(typename Form::Sample);
    std::vector<uint8_t> m_source = Noise(kPixels * kSampleBytes);
    std::vector<uint8_t> m_destination =
        std::vector<uint8_t>(kPixels * Form::kSamples * kSampleBytes);
};

/// Runs `work` over and over; the rate is that of pixels.
template <class Work>
void Measure(benchmark::State& state, const Work& work) {
    for (auto _ : state) {
        work();
        benchmark::ClobberMemory();
    }
    state.counters["pixels"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(kPixels),
                           benchmark::Counter::kIsRate);
}

template <class Form>
void Library(benchmark::State& state) {
    Frame<Form> frame;
    const auto method = static_cast<int>(state.range(0));
    Measure(state, [&] { Form::Run(frame.Source(), frame.Destination().data(), method); });
}

template <class Form>
void Plain(benchmark::State& state) {
    Frame<Form> frame;
    const auto method = static_cast<int>(state.range(0));
    const auto image = frame.AsImage();
    Measure(state, [&] { ImagePlain::Interpolate(image, method == kFine); });
    const std::vector<uint8_t> plain = frame.Destination();
    Form::Run(frame.Source(), frame.Destination().data(), method);
    if (plain != frame.Destination()) {
        state.SkipWithError("the loops over pixels give another picture");
    }
}

template <class Form>
void Copy(benchmark::State& state) {
    Frame<Form> frame;
    const std::vector<uint8_t> picture = frame.Destination();
    Measure(state,
            [&] { std::memcpy(frame.Destination().data(), picture.data(), picture.size()); });
}

void FastMethods(benchmark::internal::Benchmark* of) {
    of->Arg(kFast)->Arg(kFine);
}

void AllMethods(benchmark::internal::Benchmark* of) {
    of->Arg(kFast)->Arg(kFine)->Arg(kAdaptive);
}

BENCHMARK_TEMPLATE(Copy, Rgb24);
BENCHMARK_TEMPLATE(Plain, Rgb24)->Apply(FastMethods);
BENCHMARK_TEMPLATE(Library, Rgb24)->Apply(AllMethods);
BENCHMARK_TEMPLATE(Copy, Argb32);
BENCHMARK_TEMPLATE(Plain, Argb32)->Apply(FastMethods);
BENCHMARK_TEMPLATE(Library, Argb32)->Apply(AllMethods);
BENCHMARK_TEMPLATE(Copy, Rgb48);
BENCHMARK_TEMPLATE(Plain, Rgb48)->Apply(FastMethods);
BENCHMARK_TEMPLATE(Library, Rgb48)->Apply(AllMethods);

}  // namespace
