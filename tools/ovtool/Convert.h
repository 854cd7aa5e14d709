#pragma once
/// Raw files to pictures.

#include <cstdint>
#include <string>
#include <vector>

#include "PipelineOptions.h"

/// Longest side of a frame in a file.
constexpr int32_t kLongestSide = 16384;

struct ConvertOptions {
    std::vector<std::string> files;
    int32_t width = 0;
    int32_t height = 0;
    std::string pixelFormat;
    /// For a single file; else each picture goes beside its file.
    std::string output;
    PipelineOptions pipeline;
};

/// An output that ends in ".raw" is the picture's bytes alone, all others are PNG.
void Convert(const ConvertOptions& options, bool json);
