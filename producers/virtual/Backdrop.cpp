#include "virtual/Backdrop.h"

#include <cmath>

#include "virtual/Scene.h"

namespace OvVirtual {
namespace {

// The landscape is computed at every second pixel and interpolated between them, which
// takes a quarter of the time and makes edges as soft as a lens does.
constexpr size_t kCoarseColumns = kSensorWidth / 2 + 1;

void CoarseLine(size_t coarseY, std::vector<Color>& line) {
    line.resize(kCoarseColumns);
    for (size_t i = 0; i < kCoarseColumns; ++i) {
        line[i] = LandscapeAt(2 * i, 2 * coarseY);
    }
}

Color Middle(const Color& a, const Color& b) {
    return {(a.r + b.r) / 2, (a.g + b.g) / 2, (a.b + b.b) / 2};
}

Color Blend(const std::vector<Color>& line, size_t x) {
    return (x & 1) == 0 ? line[x / 2] : Middle(line[x / 2], line[x / 2 + 1]);
}

}  // namespace

float SignalOf(const Color& scene, bool color, size_t x, size_t y) {
    if (!color) {
        return kWhiteSignal * (0.299F * scene.r + 0.587F * scene.g + 0.114F * scene.b);
    }
    const size_t channel = FilterAt(x, y);
    return kWhiteSignal * static_cast<float>(kSensitivity[channel]) * scene[channel];
}

Backdrop& Backdrop::Of(bool color) {
    static Backdrop colored(true);
    static Backdrop grey(false);
    return color ? colored : grey;
}

std::span<const uint16_t> Backdrop::Line(size_t y) {
    const size_t band = y / kBandLines;
    std::call_once(m_painted[band], [&] { PaintBand(band); });
    return std::span(m_pixels).subspan(y * kSensorWidth, kSensorWidth);
}

void Backdrop::PaintBand(size_t band) {
    std::vector<Color> upper;
    std::vector<Color> lower;
    const size_t first = band * kBandLines;
    CoarseLine(first / 2, upper);
    for (size_t y = first; y < first + kBandLines; ++y) {
        const bool between = (y & 1) != 0;
        if (between) {
            CoarseLine(y / 2 + 1, lower);
        }
        uint16_t* out = m_pixels.data() + y * kSensorWidth;
        for (size_t x = 0; x < kSensorWidth; ++x) {
            const Color scene =
                between ? Middle(Blend(upper, x), Blend(lower, x)) : Blend(upper, x);
            out[x] = static_cast<uint16_t>(std::lround(SignalOf(scene, m_color, x, y)));
        }
        if (between) {
            upper.swap(lower);
        }
    }
}

}  // namespace OvVirtual
