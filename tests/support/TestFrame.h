#pragma once
/// The frames of the test producer, as they must arrive.

#include <cstddef>
#include <cstdint>
#include <string>

constexpr int kTestFrameWidth = 64;
constexpr int kTestFrameHeight = 48;
constexpr size_t kTestFrameSize = size_t{kTestFrameWidth} * kTestFrameHeight;
constexpr int kTestFrameFormat = 0x01080001;  // Mono8

/// The first place where frame n differs from the producer's; "" if it doesn't. The
/// record is one of the three of the flat interface.
template <class Record>
std::string DifferenceOf(uint64_t n, int32_t status, const Record& record) {
    const std::string frame = "frame " + std::to_string(n) + ": ";
    if (record.nFrameID != n) {
        return frame + "ID " + std::to_string(record.nFrameID);
    }
    if (status != 0 || record.nWidth != kTestFrameWidth || record.nHeight != kTestFrameHeight ||
        record.nPixelFormat != kTestFrameFormat || record.nOffsetX != 0 || record.nOffsetY != 0 ||
        record.nImgSize != static_cast<int32_t>(kTestFrameSize)) {
        return frame + "status, shape or size";
    }
    const auto* pixel = static_cast<const uint8_t*>(record.pImgBuf);
    for (unsigned y = 0; y < kTestFrameHeight; ++y) {
        for (unsigned x = 0; x < kTestFrameWidth; ++x, ++pixel) {
            if (*pixel != static_cast<uint8_t>(x + y + n)) {
                return frame + "pixel " + std::to_string(x) + ", " + std::to_string(y);
            }
        }
    }
    return "";
}
