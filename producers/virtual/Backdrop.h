#pragma once
/// The landscape as a sensor sees it: one 12-bit signal a pixel, through the
/// colour filter if there is one, at 10 ms of exposure and no gain.

#include <array>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

#include "virtual/Picture.h"

namespace OvVirtual {

/// Signal of full white where the sensor is most sensitive.
constexpr float kWhiteSignal = 3800;

/// The filter's colour over a pixel: 0 red, 1 green, 2 blue.
constexpr size_t FilterAt(size_t x, size_t y) {
    return (x & 1) + (y & 1);
}

/// What a sensor makes of a colour at that pixel.
float SignalOf(const Color& scene, bool color, size_t x, size_t y);

/// Painted when it is first looked at, a band of lines at a time, since a small
/// image needs little of it. All threads may read it.
class Backdrop {
public:
    /// The one for such a sensor.
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
