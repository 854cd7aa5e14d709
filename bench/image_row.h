#pragma once
/// The functions that are timed, and those of other libraries that do the same.

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ImageBench {

struct Size {
    int width;
    int height;
};

/// A frame's size, and what it is called in the rows.
struct NamedSize {
    Size size;
    const char* name;
};

/// A size that fits into most last-level caches, and one that doesn't.
constexpr std::array<NamedSize, 2> kSizes = {{{{1920, 1080}, "2 MP"}, {{4096, 3000}, "12 MP"}}};

/// Works on a frame once. Functions in place find a copy of the source in the destination
/// and don't use the source.
using Run = void (*)(const uint8_t* src, uint8_t* dst, int width, int height);

/// The base of rows and rivals.
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
    Run run;
    bool isInPlace = false;
};

/// A function of another library for the same kind of work.
struct Rival {
    const char* name;
    Kind kind;
    Run run;
    /// Whether its picture must be the same as that of our function, byte for byte.
    bool isExact = false;
};

std::vector<Row> BayerRows();
std::vector<Row> FormatRows();
std::vector<Row> ToneRows();
std::vector<Row> ColourRows();
std::vector<Row> GeometryRows();
/// The row whose function reads a colour record.
Row SharedRecordRow();

std::vector<Rival> PlainRivals();
std::vector<Rival> OpenCvRivals();
std::vector<Rival> Dc1394Rivals();

}  // namespace ImageBench
