#pragma once
/// The ways in which an application takes frames.

#include <cstdint>
#include <string>
#include <vector>

#include "OvIAPI.h"

/// How long a frame is waited for, in milliseconds.
constexpr uint32_t kLongestFrame = 60000;

/// A frame as it came.
struct TakenFrame {
    OV_FRAME_STATUS status;
    uint64_t id;
    uint64_t timestamp;
    int32_t width;
    int32_t height;
    int32_t offsetX;
    int32_t format;
    std::vector<uint8_t> content;
};

/// Copies a frame from one of the records in which frames come.
template <class Record>
TakenFrame KeepFrame(OV_FRAME_STATUS status, const Record& record) {
    const auto* const first = static_cast<const uint8_t*>(record.pImgBuf);
    const size_t size = first == nullptr ? 0 : static_cast<size_t>(record.nImgSize);
    return {status,         record.nFrameID, record.nTimestamp,   record.nWidth,
            record.nHeight, record.nOffsetX, record.nPixelFormat, {first, first + size}};
}

/// One of the ways.
struct TakingWay {
    const char* name;
    /// Starts the camera, takes so many frames and stops it.
    std::vector<TakenFrame> (*take)(OV_DEV_HANDLE camera, size_t count);
};

extern const TakingWay kTakingWays[4];
