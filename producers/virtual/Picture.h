/// @file
/// The landscape in front of the virtual cameras, and what moves in it.
///
/// Brightness is chosen so that an unprocessed frame looks right on a display:
/// viewers show raw frames, and few correct for linear light.
#ifndef OV_VIRTUAL_PICTURE_H
#define OV_VIRTUAL_PICTURE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace OvVirtual {

/// Pixels of the sensors; the scene is as large.
constexpr std::size_t kSensorWidth = 2448;
constexpr std::size_t kSensorHeight = 2048;

/// Red, green, blue, each 0 to 1.
struct Color {
    float r = 0;
    float g = 0;
    float b = 0;

    float operator[](std::size_t channel) const { return channel == 0 ? r : channel == 1 ? g : b; }
};

/// The standing part of the scene at a pixel of the sensor.
Color LandscapeAt(std::size_t x, std::size_t y);

/// Something that moves in front of the landscape.
struct Sprite {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<Color> colors;  ///< line by line
    std::vector<float> cover;   ///< 0 lets the landscape through, 1 hides it
};

Sprite MakeBalloon();
Sprite MakeCar();

/// Left upper corner of a sprite; it may lie outside of the sensor.
struct Place {
    std::int64_t x = 0;
    std::int64_t y = 0;
};

/// Where the things are at a moment, counted in frames.
Place BalloonPlace(std::uint64_t moment);
Place CarPlace(std::uint64_t moment);

}  // namespace OvVirtual

#endif
