#include "virtual/CameraSettings.h"

#include <algorithm>
#include <cmath>

#include "framework/Failure.h"

namespace OvVirtual {
namespace {

constexpr double kLineTime = 8e-6;
constexpr double kFrameOverhead = 100e-6;

std::shared_ptr<const LookUpTable> StraightTable() {
    auto table = std::make_shared<LookUpTable>();
    for (size_t i = 0; i < table->size(); ++i) {
        (*table)[i] = static_cast<uint16_t>(i);
    }
    return table;
}

/// The largest multiple of `step` that isn't above `value`.
int64_t RoundDown(int64_t value, int64_t step) {
    return value - value % step;
}

void Fit(int64_t& size, int64_t& offset, int64_t before, int64_t now, int64_t sensor, int64_t step,
         int64_t least) {
    const int64_t whole = RoundDown(sensor / now, step);
    offset = RoundDown(offset * before / now, step);
    size = std::clamp(RoundDown(size * before / now, step), least, whole);
    offset = std::clamp<int64_t>(offset, 0, whole - size);
}

}  // namespace

CameraSettings FactorySettings(bool color) {
    CameraSettings settings;
    if (color) {
        settings.pixelFormat = static_cast<int64_t>(PixelFormat::BayerRG8);
        for (size_t channel = 0; channel < 3; ++channel) {
            settings.balance[channel] = std::lround(kBalanceOne / kSensitivity[channel]);
        }
    }
    settings.lut = StraightTable();
    return settings;
}

FrameSettings FrameSettingsOf(const CameraSettings& settings, bool color, unsigned camera) {
    FrameSettings frame;
    frame.camera = camera;
    frame.color = color;
    frame.width = static_cast<size_t>(settings.width);
    frame.height = static_cast<size_t>(settings.height);
    frame.offsetX = static_cast<size_t>(settings.offsetX);
    frame.offsetY = static_cast<size_t>(settings.offsetY);
    frame.binningX = static_cast<size_t>(settings.binningX);
    frame.binningY = static_cast<size_t>(settings.binningY);
    frame.sumX = settings.binningModeX == 0;
    frame.sumY = settings.binningModeY == 0;
    frame.reverseX = settings.reverseX != 0;
    frame.reverseY = settings.reverseY != 0;
    frame.format = static_cast<PixelFormat>(settings.pixelFormat);
    frame.exposure = static_cast<double>(settings.exposure) / kExposureTicksPerMicrosecond;
    frame.gain = static_cast<double>(settings.gain) / kGainStepsPerDecibel;
    frame.blackLevel = static_cast<double>(settings.blackLevel) / kBlackLevelStepsPerLevel;
    for (size_t channel = 0; color && channel < 3; ++channel) {
        frame.balance[channel] = static_cast<double>(settings.balance[channel]) / kBalanceOne;
    }
    frame.gamma = settings.gammaEnable != 0 ? static_cast<double>(settings.gamma) / kGammaOne : 1.0;
    frame.pattern = static_cast<TestPattern>(settings.testPattern);
    frame.lut = settings.lutEnable != 0 ? settings.lut : nullptr;
    return frame;
}

void CheckSettings(const CameraSettings& settings, bool color) {
    const bool fits = settings.offsetX + settings.width <= kFullWidth / settings.binningX &&
                      settings.offsetY + settings.height <= kFullHeight / settings.binningY;
    const auto format = static_cast<PixelFormat>(settings.pixelFormat);
    if (!fits || !Offers(color, format) || settings.binningX == 3 || settings.binningY == 3) {
        throw OvProducer::Failure(GenTL::GC_ERR_INVALID_VALUE,
                                  "The camera can't combine these settings");
    }
}

void FitToBinning(CameraSettings& settings, const CameraSettings& before) {
    Fit(settings.width, settings.offsetX, before.binningX, settings.binningX, kFullWidth, 4, 16);
    Fit(settings.height, settings.offsetY, before.binningY, settings.binningY, kFullHeight, 2, 16);
}

double ExposureTime(const CameraSettings& settings) {
    return static_cast<double>(settings.exposure) / kExposureTicksPerMicrosecond * 1e-6;
}

double ShortestFrameTime(const CameraSettings& settings) {
    const double readout =
        static_cast<double>(settings.height * settings.binningY) * kLineTime + kFrameOverhead;
    return std::max(readout, ExposureTime(settings));
}

double FrameTime(const CameraSettings& settings) {
    const double shortest = ShortestFrameTime(settings);
    if (settings.frameRateMode == 0) {
        return shortest;
    }
    return std::max(shortest, kFrameRateStepsPerHertz / static_cast<double>(settings.frameRate));
}

}  // namespace OvVirtual
