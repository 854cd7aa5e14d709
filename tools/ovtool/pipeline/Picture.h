#pragma once
/// Frames, pictures, and their files.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "QyImageProc.h"
#include "pipeline/PipelineOptions.h"
#include "support/Json.h"

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
    /// 1, 3, or 4 with alpha.
    int channels = 3;
    /// 8, or 16 in the machine's byte order.
    int bitDepth = 8;
    QyChannelOrder order = QY_ORDER_RGB;
    std::vector<uint8_t> bytes;
    /// The white balance that was measured on it.
    std::optional<Ratios> balance;

    size_t PixelBytes() const { return static_cast<size_t>(channels * bitDepth / 8); }
};

/// In true colours, whatever the order of its bytes.
void WritePng(const Picture& picture, const std::string& path);
void WriteBytes(const std::vector<uint8_t>& bytes, const std::string& path);

/// As in "64x32, 3 channels of 8 bits", with the white balance if it was measured.
std::string ToText(const Picture& picture);
Json ToJson(const Picture& picture);
