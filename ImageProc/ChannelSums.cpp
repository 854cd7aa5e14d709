// Sums over the pixels of an image.

#include "ChannelSums.h"

namespace QyWhiteBalance {

Sums SumChannels(const uint8_t* pixels, size_t width, size_t height, size_t rowBytes) {
    Sums sums{};
    for (size_t y = 0; y < height; ++y) {
        const uint8_t* const row = pixels + y * rowBytes;
        for (size_t i = 0; i < width * 3; ++i) {
            sums[i % 3] += row[i];
        }
    }
    return sums;
}

}  // namespace QyWhiteBalance
