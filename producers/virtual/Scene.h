#pragma once
/// Makes the frames of the virtual cameras. A frame depends only on its settings and its
/// number, so that a test that knows both can compute it.

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

/// Signals have 12 bits until they are packed into the pixel format.
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

/// All settings that a frame depends on. Sizes and offsets are in pixels of the image,
/// after binning. Widths are multiples of 4, heights and offsets of 2.
struct FrameSettings {
    unsigned camera = 0;  ///< number of the camera, which shifts what moves
    bool color = true;  ///< whether the sensor has a colour filter, which begins with red and green
    size_t width = kSensorWidth;
    size_t height = kSensorHeight;
    size_t offsetX = 0;
    size_t offsetY = 0;
    size_t binningX = 1;  ///< 1, 2 or 4
    size_t binningY = 1;
    bool sumX = false;  ///< whether binned pixels are added instead of averaged
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

/// The sensitivity of the colour sensor to red, green and blue. Their reciprocals are the
/// balance ratios that make white things white.
constexpr std::array<double, 3> kSensitivity = {0.625, 1.0, 0.78125};

/// Size of a frame in bytes.
size_t FrameSize(const FrameSettings& settings);

/// Renders frames, and keeps tables and rows between frames. For one thread.
class FrameRenderer {
public:
    /// Writes the frame to `out`, which has at least `FrameSize` bytes. Returns false if
    /// it was stopped early.
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
    /// Each pixel is the mean of the two by two pixels that begin at it: one red, two
    /// green and one blue. At the last line and column they end at it instead. Rows must
    /// be rendered in order.
    void GreyRow(size_t y, uint64_t frame, Row& row);

    FrameSettings m_settings;
    bool m_prepared = false;
    uint64_t m_moment = 0;
    std::vector<size_t> m_columns;  ///< first sensor column of each image column
    std::array<LookUpTable, 3> m_tone{};
    Row m_sensorRow;
    std::vector<uint32_t> m_sums;
    Row m_row;
    Row m_current;  ///< for grey images: this row and the next, still with the filter's colours
    Row m_next;
};

}  // namespace OvVirtual
