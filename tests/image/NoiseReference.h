#pragma once
/// The noise reduction, pixel by pixel.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace NoiseReference {

/// Built in another way than the library's table.
inline int Tolerance(int level) {
    static constexpr int kFirst[] = {28,  42,  55,  71,  82,  93,  103, 113, 120, 128, 138, 146,
                                     151, 157, 161, 167, 171, 176, 180, 183, 187, 189, 192, 194,
                                     195, 197, 199, 200, 202, 203, 204, 205, 205, 205};
    static constexpr int kMiddle[] = {205, 205, 204, 204, 203, 202, 202, 201, 201, 200, 199, 198,
                                      198, 197, 196, 195, 194, 193, 193, 192, 191, 190, 189};
    if (level <= 33) {
        return kFirst[level];
    }
    if (level <= 42) {
        return 206;
    }
    if (level <= 65) {
        return kMiddle[level - 43];
    }
    if (level <= 127) {
        return 188 - (level - 66);
    }
    if (level == 128) {
        return 127;
    }
    return level == 129 ? 126 : 126 - (level - 130);
}

inline uint8_t Clip(int value) {
    return static_cast<uint8_t>(std::clamp(value, 0, 255));
}

/// The difference if it is below the tolerance of a level, or 0.
inline int Taken(int difference, int level) {
    return std::abs(difference) < Tolerance(level) ? difference : 0;
}

inline std::vector<uint8_t> Pass(const std::vector<uint8_t>& source, int width, int height,
                                 int radius) {
    const auto at = [&](int x, int y) {
        return source.data() +
               (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 3;
    };
    std::vector<uint8_t> result = source;
    for (int y = radius; y <= height - radius - 1; ++y) {
        for (int x = radius; x <= width - radius - 1; ++x) {
            const uint8_t* const b = at(x, y);
            int sums[3] = {};
            for (int dy = -radius; dy <= radius; dy += radius) {
                for (int dx = -radius; dx <= radius; dx += radius) {
                    const uint8_t* const q = at(x + dx, y + dy);
                    sums[0] += Taken((q[0] - q[1]) - (b[0] - b[1]), b[0]);
                    sums[1] += Taken(q[1] - b[1], b[1]);
                    sums[2] += Taken((q[2] - q[1]) - (b[2] - b[1]), b[2]);
                }
            }
            const int green = b[1] + sums[1] / 15;
            uint8_t* const out = result.data() + (b - source.data());
            out[0] = Clip(b[0] - b[1] + green + sums[0] / 9);
            out[1] = Clip(green);
            out[2] = Clip(b[2] - b[1] + green + sums[2] / 9);
        }
    }
    return result;
}

inline std::vector<uint8_t> Reduce(const std::vector<uint8_t>& source, int width, int height) {
    return Pass(Pass(source, width, height, 1), width, height, 2);
}

}  // namespace NoiseReference
