#pragma once
/// The works on images that are timed, and who does the same kind of work.

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ImageBench {

struct Size {
    int width;
    int height;
};

/// One that fits into a cache of the last level, and one that doesn't.
constexpr std::array<Size, 2> kSizes = {{{1920, 1080}, {4096, 3000}}};
template <class T>
using PerSize = std::array<T, kSizes.size()>;

/// Works on a frame once. Work in place leaves the source alone and finds a copy of
/// it in the destination.
using Run = void (*)(const uint8_t* src, uint8_t* dst, int width, int height);

/// What rows and their rivals have in common.
enum class Kind {
    Other,
    Cells,
    Bilinear,
    EdgeAware,
    BilinearFourBytes,
    Bilinear16,
    EdgeAware16,
    Brightness,
    Contrast,
    Matrix,
    ColoursAndTables,
    RawPipeline,
    MirrorHorizontal,
    MirrorVertical,
    TurnClockwise,
    TurnCounterClockwise,
    SharpenThreeBytes,
    SharpenOneByte,
    ChannelSums,
    NoiseReduction,
};

/// A function of the library.
struct Row {
    const char* name;
    Kind kind;
    /// Bits of a pixel.
    double read;
    double written;
    /// How many times as long as the copy it takes at most; 0 without a goal.
    PerSize<double> goal;
    Run run;
    bool isInPlace = false;
};

/// Somebody else's function for the same kind of work.
struct Rival {
    const char* name;
    Kind kind;
    Run run;
    /// Whether it makes the library's picture byte for byte.
    bool isExact = false;
    /// How many times as long as the library it takes at least.
    double goal = 1;
};

std::vector<Row> BayerRows();
std::vector<Row> FormatRows();
std::vector<Row> ToneRows();
std::vector<Row> ColourRows();
std::vector<Row> GeometryRows();

std::vector<Rival> PlainRivals();
std::vector<Rival> OpenCvRivals();
std::vector<Rival> Dc1394Rivals();

}  // namespace ImageBench
