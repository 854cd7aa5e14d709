#pragma once
/// The ways in which an application takes frames.

#include <cstdint>
#include <string>
#include <vector>

#include "OvIAPI.h"

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

/// One of the ways.
struct TakingWay {
    const char* name;
    /// Starts the camera, takes so many frames and stops it.
    std::vector<TakenFrame> (*take)(OV_DEV_HANDLE camera, size_t count);
};

extern const TakingWay kTakingWays[4];
