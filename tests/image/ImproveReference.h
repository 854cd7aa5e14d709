#pragma once
/// Colour correction and tone, pixel by pixel.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "QyImageProc.h"

namespace ImproveReference {

/// The corrections of an image whose pixels have `width` bytes.
struct Improvement {
    const QyColorCorrectionRecord* record = nullptr;
    const uint32_t* contrast = nullptr;
    const uint32_t* gamma = nullptr;
    size_t width = 3;
    /// Places of R and B in a pixel.
    size_t red = 0;
    size_t blue = 2;
};

inline uint8_t ToByte(int64_t value) {
    return static_cast<uint8_t>(std::clamp<int64_t>(value >> 4, 0, 255));
}

/// Maps a value of 12 bits by those tables that aren't null.
inline int64_t Tone(const Improvement& improvement, int64_t value) {
    if (improvement.gamma == nullptr && improvement.contrast == nullptr) {
        return value;
    }
    value = std::clamp<int64_t>(value, 0, 4095);
    if (improvement.gamma != nullptr) {
        value = improvement.gamma[value];
    }
    return improvement.contrast != nullptr ? improvement.contrast[value] : value;
}

inline std::vector<uint8_t> Improve(const std::vector<uint8_t>& image,
                                    const Improvement& improvement) {
    std::vector<uint8_t> out = image;
    for (size_t i = 0; i < image.size(); i += improvement.width) {
        if (improvement.record == nullptr) {
            for (size_t byte = i; byte < i + 3; ++byte) {
                out[byte] = ToByte(Tone(improvement, image[byte] * 16));
            }
            continue;
        }
        const auto& t = improvement.record->table;
        const uint8_t r = image[i + improvement.red];
        const uint8_t g = image[i + 1];
        const uint8_t b = image[i + improvement.blue];
        out[i + improvement.red] = ToByte(Tone(improvement, t[0][r] + t[1][g] + t[2][b]));
        out[i + 1] = ToByte(Tone(improvement, t[3][r] + t[4][g] + t[5][b]));
        out[i + improvement.blue] = ToByte(Tone(improvement, t[6][r] + t[7][g] + t[8][b]));
    }
    return out;
}

}  // namespace ImproveReference
