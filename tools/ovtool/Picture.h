#pragma once
/// From a raw frame to a picture file.

#include <cstdint>
#include <string>
#include <vector>

/// A frame as the camera sent it.
struct RawFrame {
    int32_t width = 0;
    int32_t height = 0;
    int32_t pixelFormat = 0;
    std::vector<uint8_t> bytes;
};

/// A picture of interleaved channels, rows without gaps.
struct Picture {
    uint32_t width = 0;
    uint32_t height = 0;
    int channels = 3;
    /// 8, or 16 in the machine's byte order.
    int bitDepth = 8;
    std::vector<uint8_t> bytes;
};

/// Turns a frame into a picture in its true colours. Raises for a pixel format
/// that the tool can't show.
Picture MakePicture(const RawFrame& frame);

void WritePng(const Picture& picture, const std::string& path);
void WriteRaw(const RawFrame& frame, const std::string& path);
