#include "virtual/Scene.h"

#include <algorithm>
#include <cmath>

#include "virtual/Backdrop.h"

namespace OvVirtual {
namespace {

// Each camera shows another time, so that their frames differ.
constexpr uint64_t kMomentsBetweenCameras = 150;

const Sprite& Balloon() {
    static const Sprite sprite = MakeBalloon();
    return sprite;
}

const Sprite& Car() {
    static const Sprite sprite = MakeCar();
    return sprite;
}

/// Draws a sprite's line over the signals of a sensor line.
void Overlay(const Sprite& sprite, const Place& place, bool color, size_t y,
             std::vector<uint16_t>& line) {
    const int64_t spriteY = static_cast<int64_t>(y) - place.y;
    if (spriteY < 0 || spriteY >= static_cast<int64_t>(sprite.height)) {
        return;
    }
    const int64_t first = std::max<int64_t>(place.x, 0);
    const int64_t end =
        std::min(place.x + static_cast<int64_t>(sprite.width), static_cast<int64_t>(kSensorWidth));
    const size_t base = static_cast<size_t>(spriteY) * sprite.width;
    for (int64_t at = first; at < end; ++at) {
        const auto x = static_cast<size_t>(at);
        const size_t i = base + static_cast<size_t>(at - place.x);
        const float cover = sprite.cover[i];
        if (cover > 0) {
            const float behind = line[x];
            const float signal = SignalOf(sprite.colors[i], color, x, y);
            line[x] = static_cast<uint16_t>(std::lround(behind + (signal - behind) * cover));
        }
    }
}

double Clip(double level) {
    return std::clamp(level, 0.0, static_cast<double>(kTopLevel));
}

/// The output of the camera for each signal, by channel.
LookUpTable ToneTable(const FrameSettings& settings, size_t channel) {
    const double sums = (settings.sumX ? static_cast<double>(settings.binningX) : 1.0) *
                        (settings.sumY ? static_cast<double>(settings.binningY) : 1.0);
    const double amplify =
        settings.exposure / 10000.0 * std::pow(10.0, settings.gain / 20.0) * sums;
    LookUpTable table{};
    for (size_t signal = 0; signal < kLevels; ++signal) {
        // The range of the converter ends here: signals that are too bright are cut
        // before the digital steps, as in a real camera.
        const double raw = Clip(static_cast<double>(signal) * amplify + settings.blackLevel);
        double level =
            Clip((raw - settings.blackLevel) * settings.balance[channel] + settings.blackLevel);
        if (settings.gamma != 1) {
            level = kTopLevel * std::pow(level / kTopLevel, settings.gamma);
        }
        const auto rounded = static_cast<size_t>(std::lround(level));
        table[signal] = settings.lut ? (*settings.lut)[rounded] : static_cast<uint16_t>(rounded);
    }
    return table;
}

/// The place on the sensor of a position of the image: the first of the pixels that are
/// binned into it. With a colour filter, pixels of the same colour are binned, and
/// mirrors swap whole pairs, so that the order of the colours is always that of the pixel
/// format.
size_t SensorPosition(size_t position, size_t binning, bool reverse, bool color, size_t size) {
    if (reverse) {
        position = size / binning - 1 - position;
        position = color ? position ^ 1 : position;
    }
    const size_t phase = color ? position & 1 : 0;
    return (position - phase) * binning + phase;
}

}  // namespace

size_t FrameSize(const FrameSettings& settings) {
    return settings.width * settings.height * BitsOf(settings.format) / 8;
}

bool FrameRenderer::Render(const FrameSettings& settings, uint64_t frame, std::span<std::byte> out,
                           const std::stop_token& abort) {
    Prepare(settings);
    m_moment = frame + settings.camera * kMomentsBetweenCameras;
    const size_t lineBytes = settings.width * BitsOf(settings.format) / 8;
    const bool grey = settings.color && !IsBayer(settings.format);
    std::byte* line = out.data();
    for (size_t y = 0; y < settings.height; ++y) {
        if (abort.stop_requested()) {
            return false;
        }
        if (grey) {
            GreyRow(y, frame, m_row);
        } else {
            FinishedRow(y, frame, m_row);
        }
        PackRow(settings.format, m_row, line);
        line += lineBytes;
    }
    return true;
}

void FrameRenderer::Prepare(const FrameSettings& settings) {
    if (m_prepared && settings == m_settings) {
        return;
    }
    m_settings = settings;
    m_prepared = true;
    for (size_t channel = 0; channel < 3; ++channel) {
        m_tone[channel] = ToneTable(settings, settings.color ? channel : 1);
    }
    m_columns.resize(settings.width);
    for (size_t x = 0; x < settings.width; ++x) {
        m_columns[x] = SensorPosition(settings.offsetX + x, settings.binningX, settings.reverseX,
                                      settings.color, kSensorWidth);
    }
    for (Row* row : {&m_row, &m_current, &m_next}) {
        row->resize(settings.width);
    }
}

void FrameRenderer::ExpandSensorRow(size_t y) {
    const std::span<const uint16_t> backdrop = Backdrop::Of(m_settings.color).Line(y);
    m_sensorRow.assign(backdrop.begin(), backdrop.end());
    Overlay(Balloon(), BalloonPlace(m_moment), m_settings.color, y, m_sensorRow);
    Overlay(Car(), CarPlace(m_moment), m_settings.color, y, m_sensorRow);
}

void FrameRenderer::SignalRow(size_t y, Row& row) {
    const FrameSettings& s = m_settings;
    const size_t step = s.color ? 2 : 1;
    const size_t top =
        SensorPosition(s.offsetY + y, s.binningY, s.reverseY, s.color, kSensorHeight);
    if (s.binningX == 1 && s.binningY == 1) {
        ExpandSensorRow(top);
        if (!s.reverseX) {
            std::copy_n(m_sensorRow.data() + s.offsetX, s.width, row.data());
            return;
        }
        for (size_t x = 0; x < s.width; ++x) {
            row[x] = m_sensorRow[m_columns[x]];
        }
        return;
    }
    m_sums.assign(s.width, 0);
    for (size_t j = 0; j < s.binningY; ++j) {
        ExpandSensorRow(top + j * step);
        for (size_t i = 0; i < s.binningX; ++i) {
            for (size_t x = 0; x < s.width; ++x) {
                m_sums[x] += m_sensorRow[m_columns[x] + i * step];
            }
        }
    }
    const auto count = std::max(static_cast<uint32_t>(s.binningX * s.binningY), 1U);
    for (size_t x = 0; x < s.width; ++x) {
        row[x] = static_cast<uint16_t>((m_sums[x] + count / 2) / count);
    }
}

void FrameRenderer::ToneRow(size_t y, Row& row) const {
    const size_t evenY = m_settings.color ? y & 1 : 0;
    const LookUpTable& even = m_tone[m_settings.color ? FilterAt(0, evenY) : 1];
    const LookUpTable& odd = m_tone[m_settings.color ? FilterAt(1, evenY) : 1];
    for (size_t x = 0; x < row.size(); x += 2) {
        row[x] = even[row[x]];
        row[x + 1] = odd[row[x + 1]];
    }
}

void FrameRenderer::PatternRow(size_t y, uint64_t frame, Row& row) const {
    constexpr Color kBars[] = {{1, 1, 1}, {1, 1, 0}, {0, 1, 1}, {0, 1, 0},
                               {1, 0, 1}, {1, 0, 0}, {0, 0, 1}, {0, 0, 0}};
    const size_t width = m_settings.width;
    const auto ramp = [](uint64_t position) {
        return static_cast<uint16_t>((position & 0xFF) << 4);
    };
    const auto paint = [&](auto level) {
        for (size_t x = 0; x < width; ++x) {
            row[x] = static_cast<uint16_t>(level(x));
        }
    };
    switch (m_settings.pattern) {
        case TestPattern::White:
            return paint([](size_t) { return kTopLevel; });
        case TestPattern::GreyHorizontalRamp:
            return paint([&](size_t x) { return ramp(x); });
        case TestPattern::GreyVerticalRamp:
            return paint([&](size_t) { return ramp(y); });
        case TestPattern::GreyHorizontalRampMoving:
            return paint([&](size_t x) { return ramp(x + frame); });
        case TestPattern::GreyVerticalRampMoving:
            return paint([&](size_t) { return ramp(y + frame); });
        case TestPattern::HorizontalLineMoving:
            return paint([&](size_t) { return y == frame % m_settings.height ? kTopLevel : 0; });
        case TestPattern::VerticalLineMoving:
            return paint([&](size_t x) { return x == frame % width ? kTopLevel : 0; });
        case TestPattern::ColorBar:
            return paint([&](size_t x) {
                const Color& bar = kBars[x * 8 / width];
                const float level = m_settings.color
                                        ? bar[FilterAt(x, y)]
                                        : 0.299F * bar.r + 0.587F * bar.g + 0.114F * bar.b;
                return static_cast<uint16_t>(std::lround(level * kTopLevel));
            });
        default:
            return paint([](size_t) { return 0; });
    }
}

void FrameRenderer::FinishedRow(size_t y, uint64_t frame, Row& row) {
    if (m_settings.pattern != TestPattern::Off) {
        PatternRow(y, frame, row);
        return;
    }
    SignalRow(y, row);
    ToneRow(y, row);
}

void FrameRenderer::GreyRow(size_t y, uint64_t frame, Row& row) {
    if (y == 0) {
        FinishedRow(0, frame, m_current);
    }
    FinishedRow(y + 1 < m_settings.height ? y + 1 : y - 1, frame, m_next);
    const auto mean = [&](size_t x, size_t besides) {
        const unsigned sum = m_current[x] + m_current[besides] + m_next[x] + m_next[besides];
        row[x] = static_cast<uint16_t>((sum + 2U) / 4U);
    };
    const size_t last = row.size() - 1;
    for (size_t x = 0; x < last; ++x) {
        mean(x, x + 1);
    }
    mean(last, last - 1);
    m_current.swap(m_next);
}

}  // namespace OvVirtual
