#pragma once
/// What is done to a raw frame on its way to a picture, as the command line says it.

#include <array>
#include <cstdint>
#include <optional>

#include "QyImageProc.h"

namespace CLI {
class App;
class Option_group;
}  // namespace CLI

/// A gain for each of red, green and blue.
using Ratios = std::array<double, 3>;

/// By rows: what red, green and blue become of red, green and blue.
using Matrix = std::array<double, 9>;

/// A quarter turn.
enum class Turn { Clockwise, CounterClockwise };

/// Nothing given: a frame as it is, a mosaic interpolated by three by three samples.
struct PipelineOptions {
    std::optional<QyColorFilter> layout;
    std::optional<QyInterpolationMethod> method;
    bool flip = false;
    std::optional<QyChannelOrder> order;
    std::optional<int32_t> alpha;
    std::optional<int32_t> validBit;
    bool defects = false;
    bool denoise = false;
    bool onePass = false;
    std::optional<Matrix> matrix;
    bool autoBalance = false;
    std::optional<Ratios> balance;
    std::optional<double> gamma;
    std::optional<int32_t> contrastTable;
    std::optional<int32_t> brightness;
    std::optional<int32_t> contrast;
    std::optional<int32_t> saturation;
    std::optional<float> sharpen;
    std::optional<QyImageMirrorMode> mirror;
    std::optional<Turn> turn;
    std::optional<uint32_t> zoom;
};

/// Adds them to a command, as a group of its help. A value outside its range
/// raises when the command line is read.
CLI::Option_group* AddPipelineOptions(CLI::App& command, PipelineOptions& options);
