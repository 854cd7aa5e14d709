// Moves the bytes of an image to other places.

#include <algorithm>
#include <cstring>

#include "Geometry.h"

namespace QyGeometry {

void ReverseRows(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    for (size_t y = 0; y < height; ++y) {
        const uint8_t* const row = src + y * width;
        std::reverse_copy(row, row + width, dst + y * width);
    }
}

void ReverseOrderOfRows(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    for (size_t y = 0; y < height; ++y) {
        std::memcpy(dst + (height - 1 - y) * width, src + y * width, width);
    }
}

void TurnClockwise(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    for (size_t x = 0; x < width; ++x) {
        for (size_t y = 0; y < height; ++y) {
            dst[x * height + (height - 1 - y)] = src[y * width + x];
        }
    }
}

void TurnCounterClockwise(const uint8_t* src, uint8_t* dst, size_t width, size_t height) {
    for (size_t x = 0; x < width; ++x) {
        for (size_t y = 0; y < height; ++y) {
            dst[(width - 1 - x) * height + y] = src[y * width + x];
        }
    }
}

}  // namespace QyGeometry
