#pragma once
/// The landscape in front of the virtual cameras, and what moves in it.
///
/// Brightness is chosen so that an unprocessed frame looks right on a display:
/// viewers show raw frames, and few correct for linear light.

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace OvVirtual {

/// Pixels of the sensors; the scene is as large.
constexpr size_t kSensorWidth = 2448;
constexpr size_t kSensorHeight = 2048;

/// Red, green, blue, each 0 to 1.
struct Color {
    float r = 0;
    float g = 0;
    float b = 0;

    float operator[](size_t channel) const { return channel == 0 ? r : channel == 1 ? g : b; }
};

/// The part of the scene that doesn't move, at a pixel of the sensor.
Color LandscapeAt(size_t x, size_t y);

/// Something that moves in front of the landscape.
struct Sprite {
    size_t width = 0;
    size_t height = 0;
    std::vector<Color> colors;  ///< line by line
    std::vector<float> cover;   ///< 0 lets the landscape through, 1 hides it
};

Sprite MakeBalloon();
Sprite MakeCar();

/// The upper left corner of a sprite, which may be outside of the sensor.
struct Place {
    int64_t x = 0;
    int64_t y = 0;
};

/// The positions of the sprites at a time, counted in frames.
Place BalloonPlace(uint64_t moment);
Place CarPlace(uint64_t moment);

}  // namespace OvVirtual
