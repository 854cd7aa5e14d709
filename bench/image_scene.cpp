#include "image_scene.h"

#include <algorithm>
#include <cmath>

namespace ImageBench {

namespace {

class Random {
public:
    unsigned Byte() {
        m_state = m_state * 1664525 + 1013904223;
        return m_state >> 24;
    }

private:
    uint32_t m_state = 1;
};

/// Brightness at a place, 0 .. 255: a gradient with boxes and discs on it.
unsigned Light(unsigned x, unsigned y) {
    const unsigned slope = 40 + x / 32 % 64 + y / 32 % 32;
    const auto dx = static_cast<int>(x % 240) - 120;
    const auto dy = static_cast<int>(y % 240) - 120;
    if (dx * dx + dy * dy < 70 * 70) {
        return 230 - slope / 2;
    }
    return (x / 97 + y / 61) % 3 == 0 ? slope + 70 : slope;
}

/// Noise of a few levels, and a few samples that are far too bright.
unsigned Sample(unsigned light, unsigned colour, Random& random) {
    constexpr unsigned kShares[] = {90, 100, 70};
    const unsigned noise = random.Byte();
    if (noise == 255 && random.Byte() < 16) {
        return 255;
    }
    return light * kShares[colour] / 100 + noise % 8;
}

}  // namespace

std::vector<uint8_t> MakeScene(double bits, Size size) {
    const bool isMosaic = bits < 24;
    const size_t sampleBytes = bits == 16 || bits == 48 ? 2 : 1;
    const auto rowBytes = static_cast<size_t>(std::ceil(size.width * bits / 8));
    const size_t perPixel = isMosaic ? sampleBytes : 3 * sampleBytes;
    std::vector<uint8_t> scene(rowBytes * static_cast<size_t>(size.height));
    Random random;
    for (size_t i = 0; i < scene.size(); i += sampleBytes) {
        const auto x = static_cast<unsigned>(i % rowBytes / perPixel);
        const auto y = static_cast<unsigned>(i / rowBytes);
        const auto channel = static_cast<unsigned>(i % rowBytes % perPixel / sampleBytes);
        const unsigned colour = isMosaic ? x % 2 + y % 2 : channel;
        const unsigned sample = Sample(Light(x, y), colour, random);
        scene[i + sampleBytes - 1] = static_cast<uint8_t>(std::min(sample, 255U));
        if (sampleBytes == 2) {
            scene[i] = static_cast<uint8_t>(random.Byte());
        }
    }
    return scene;
}

}  // namespace ImageBench
