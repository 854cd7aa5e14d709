#pragma once
/// What a camera appends to its frames.

#include <cstdint>

#include "Session.h"

struct ChunkOptions {
    uint32_t count = 1;
    /// For each frame, in milliseconds.
    uint32_t timeout = 5000;
};

/// Takes frames and prints the features that can be read from each alone. The
/// camera's chunk mode is on meanwhile.
void PrintChunks(const CameraChoice& choice, const ChunkOptions& options, bool json);
