#pragma once
/// Makes the frames of the virtual cameras. A frame depends on its settings and
/// its number alone, so that whoever knows both can say what must be in it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stop_token>
#include <vector>

#include "virtual/Picture.h"
#include "virtual/PixelFormats.h"

namespace OvVirtual {

/// Signals are 12 bits wide up to the packing into the pixel format.
constexpr size_t kLevels = 4096;
constexpr uint16_t kTopLevel = 4095;

enum class TestPattern : int64_t {
    Off = 0,
    Black,
    White,
    GreyHorizontalRamp,
    GreyVerticalRamp,
    GreyHorizontalRampMoving,
    GreyVerticalRampMoving,
    HorizontalLineMoving,
    VerticalLineMoving,
    ColorBar,
    Count
};

using LookUpTable = std::array<uint16_t, kLevels>;

/// All that shapes a frame. Sizes and offsets are in pixels of the image, that
/// is after binning; widths are multiples of 4, heights and offsets of 2.
struct FrameSettings {
    unsigned camera = 0;  ///< shifts what moves, so that two cameras differ
    bool color = true;    ///< the sensor has a colour filter, red and green first
    size_t width = kSensorWidth;
    size_t height = kSensorHeight;
    size_t offsetX = 0;
    size_t offsetY = 0;
    size_t binningX = 1;  ///< 1, 2 or 4
    size_t binningY = 1;
    bool sumX = false;  ///< binned pixels are added, not averaged
    bool sumY = false;
    bool reverseX = false;
    bool reverseY = false;
    PixelFormat format = PixelFormat::BayerRG8;
    double exposure = 10000;                    ///< microseconds
    double gain = 0;                            ///< decibels
    double blackLevel = 0;                      ///< levels
    std::array<double, 3> balance = {1, 1, 1};  ///< red, green, blue
    double gamma = 1;
    TestPattern pattern = TestPattern::Off;
    std::shared_ptr<const LookUpTable> lut;  ///< null for none

    bool operator==(const FrameSettings&) const = default;
};

/// How strongly the colour sensor answers to red, green and blue. Balance
/// ratios of the reciprocals make white things white.
constexpr std::array<double, 3> kSensitivity = {0.625, 1.0, 0.78125};

/// Bytes of a frame.
size_t FrameSize(const FrameSettings& settings);

/// Renders frames; keeps tables and rows between frames. For one thread.
class FrameRenderer {
public:
    /// Writes the frame to `out`, which holds at least `FrameSize` bytes. False
    /// when it was broken off.
    bool Render(const FrameSettings& settings, uint64_t frame, std::span<std::byte> out,
                const std::stop_token& abort = {});

private:
    using Row = std::vector<uint16_t>;

    void Prepare(const FrameSettings& settings);
    void SignalRow(size_t y, Row& row);
    void ExpandSensorRow(size_t y);
    void ToneRow(size_t y, Row& row) const;
    void PatternRow(size_t y, uint64_t frame, Row& row) const;
    void FinishedRow(size_t y, uint64_t frame, Row& row);
    /// Each pixel is the mean of the quad that begins at it: one red, two green
    /// and one blue neighbour. The last line and column look back instead. Rows
    /// must come in their order.
    void GreyRow(size_t y, uint64_t frame, Row& row);

    FrameSettings m_settings;
    bool m_prepared = false;
    uint64_t m_moment = 0;
    std::vector<size_t> m_columns;  ///< first sensor column of each image column
    std::array<LookUpTable, 3> m_tone{};
    Row m_sensorRow;
    std::vector<uint32_t> m_sums;
    Row m_row;
    Row m_current;  ///< of a grey image: this row and the next, still in colours
    Row m_next;
};

}  // namespace OvVirtual
