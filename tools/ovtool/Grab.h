#pragma once
/// Frames from a camera to files.

#include <cstdint>
#include <string>

#include "PipelineOptions.h"
#include "Session.h"

struct GrabOptions {
    uint32_t count = 1;
    std::string folder = ".";
    bool png = true;
    bool raw = false;
    /// For each frame, in milliseconds.
    uint32_t timeout = 5000;
    /// What pictures go through.
    PipelineOptions pipeline;
};

void Grab(const CameraChoice& choice, const GrabOptions& options, bool json);
