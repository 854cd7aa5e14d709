#pragma once
/// The landscape as a sensor sees it: a 12-bit signal for each pixel, through the colour
/// filter if there is one, at an exposure of 10 ms without gain.

#include <array>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

#include "virtual/Picture.h"

namespace OvVirtual {

/// The signal of white in the channel that is most sensitive.
constexpr float kWhiteSignal = 3800;

/// The filter's colour at a pixel: 0 red, 1 green, 2 blue.
constexpr size_t FilterAt(size_t x, size_t y) {
    return (x & 1) + (y & 1);
}

/// The signal of a sensor for a colour at that pixel.
float SignalOf(const Color& scene, bool color, size_t x, size_t y);

/// Painted in bands of lines when they are first read, since a small image needs few of
/// them. Any thread may read it.
class Backdrop {
public:
    /// The backdrop of a sensor with or without a colour filter.
    static Backdrop& Of(bool color);

    std::span<const uint16_t> Line(size_t y);

private:
    explicit Backdrop(bool color) : m_color(color), m_pixels(kSensorWidth * kSensorHeight) {}
    void PaintBand(size_t band);

    static constexpr size_t kBandLines = 64;

    const bool m_color;
    std::vector<uint16_t> m_pixels;
    std::array<std::once_flag, kSensorHeight / kBandLines> m_painted;
};

}  // namespace OvVirtual
