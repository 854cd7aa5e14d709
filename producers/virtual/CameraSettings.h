#pragma once
/// The settings of a virtual camera, as its registers hold them.

#include <array>
#include <cstdint>
#include <memory>

#include "virtual/Scene.h"

namespace OvVirtual {

enum class AcquisitionMode : int64_t { Continuous = 0, SingleFrame = 1, MultiFrame = 2 };
enum class TriggerSource : int64_t { Software = 0, Line0 = 1 };

// The whole sensor, as the registers count it.
constexpr auto kFullWidth = static_cast<int64_t>(kSensorWidth);
constexpr auto kFullHeight = static_cast<int64_t>(kSensorHeight);

// Units of the registers.
constexpr double kExposureTicksPerMicrosecond = 2;
constexpr double kGainStepsPerDecibel = 10;
constexpr double kBlackLevelStepsPerLevel = 16;
constexpr double kBalanceOne = 4096;
constexpr double kGammaOne = 100;
constexpr double kFrameRateStepsPerHertz = 1000;

/// Where a setting of many switches has that of a chunk or an event.
template <class Entry>
constexpr int64_t BitOf(Entry entry) {
    return int64_t{1} << static_cast<int64_t>(entry);
}

/// What a user set stores. Every field is a register's value.
struct CameraSettings {
    int64_t width = kSensorWidth;
    int64_t height = kSensorHeight;
    int64_t offsetX = 0;
    int64_t offsetY = 0;
    int64_t binningX = 1;
    int64_t binningY = 1;
    int64_t binningModeX = 1;  ///< 0 sum, 1 average
    int64_t binningModeY = 1;
    int64_t reverseX = 0;
    int64_t reverseY = 0;
    int64_t pixelFormat = static_cast<int64_t>(PixelFormat::Mono8);
    int64_t testPattern = 0;
    int64_t acquisitionMode = 0;
    int64_t frameCount = 1;     ///< of a multi-frame acquisition
    int64_t frameRateMode = 1;  ///< 0 as fast as it goes, 1 at the frame rate
    int64_t frameRate = 30000;  ///< thousandths of a frame per second
    int64_t triggerMode = 0;    ///< 0 off, 1 on
    int64_t triggerSource = 0;
    int64_t triggerActivation = 0;  ///< 0 rising, 1 falling edge
    int64_t exposure = 20000;       ///< half microseconds
    int64_t gain = 0;               ///< tenths of a decibel
    int64_t blackLevel = 0;         ///< sixteenths of a level
    std::array<int64_t, 3> balance = {4096, 4096, 4096};
    int64_t gammaEnable = 0;
    int64_t gamma = 100;  ///< hundredths
    int64_t lutEnable = 0;
    int64_t chunkMode = 0;                   ///< 1: data follow the image
    int64_t chunksEnabled = 63;              ///< the bits of chunks (see Chunks.h)
    int64_t eventsEnabled = 0;               ///< the bits of events (see CameraEvents.h)
    int64_t dropOffTime = 1000;              ///< off the bus, milliseconds
    int64_t dropOffFrames = 0;               ///< frames before the camera drops off; 0: it stays
    std::shared_ptr<const LookUpTable> lut;  ///< never null in a camera
};

/// As a camera comes from the factory.
CameraSettings FactorySettings(bool color);

/// What the renderer needs of them.
FrameSettings FrameSettingsOf(const CameraSettings& settings, bool color, unsigned camera);

/// A field with the values that it takes; `step` counts from `min`.
struct SettingRange {
    int64_t CameraSettings::*field;
    int64_t min;
    int64_t max;
    int64_t step;
    bool shapesFrame;  ///< fixed while frames flow
};

/// -1019 unless the settings agree with each other: the image lies on the
/// sensor and the camera knows the format.
void CheckSettings(const CameraSettings& settings, bool color);

/// Fits the image into the sensor after the binning changed from the old one.
void FitToBinning(CameraSettings& settings, const CameraSettings& before);

/// In seconds.
double ExposureTime(const CameraSettings& settings);

/// Shortest time between two frames, in seconds: the sensor is read line by
/// line, and exposes no faster than it is told to.
double ShortestFrameTime(const CameraSettings& settings);

/// Time between two frames in seconds, with the frame rate that is asked for.
double FrameTime(const CameraSettings& settings);

}  // namespace OvVirtual
