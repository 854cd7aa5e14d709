#pragma once
/// The settings of a virtual camera, with the values of its registers.

#include <array>
#include <cstdint>
#include <memory>

#include "virtual/Scene.h"

namespace OvVirtual {

enum class AcquisitionMode : int64_t { Continuous = 0, SingleFrame = 1, MultiFrame = 2 };
/// Only a camera on a network has actions.
enum class TriggerSource : int64_t { Software = 0, Line0, Action1, Action2, Count };

// Size of the whole sensor, in the type of the registers.
constexpr auto kFullWidth = static_cast<int64_t>(kSensorWidth);
constexpr auto kFullHeight = static_cast<int64_t>(kSensorHeight);

// Units of the registers.
constexpr double kExposureTicksPerMicrosecond = 2;
constexpr double kGainStepsPerDecibel = 10;
constexpr double kBlackLevelStepsPerLevel = 16;
constexpr double kBalanceOne = 4096;
constexpr double kGammaOne = 100;
constexpr double kFrameRateStepsPerHertz = 1000;

/// The bit of a chunk or an event in a setting of many switches.
template <class Entry>
constexpr int64_t BitOf(Entry entry) {
    return int64_t{1} << static_cast<int64_t>(entry);
}

/// The settings that a user set stores. Every field is the value of a register.
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
    int64_t frameRateMode = 1;  ///< 0 as fast as possible, 1 at the frame rate
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
    int64_t dropOffTime = 1000;              ///< how long the camera is off the bus, milliseconds
    int64_t dropOffFrames = 0;               ///< frames before the camera drops off; 0: it stays
    std::shared_ptr<const LookUpTable> lut;  ///< never null in a camera
};

/// The settings of a new camera.
CameraSettings FactorySettings(bool color);

/// The settings that the renderer needs.
FrameSettings FrameSettingsOf(const CameraSettings& settings, bool color, unsigned camera);

/// A field and its range. `step` counts from `min`.
struct SettingRange {
    int64_t CameraSettings::*field;
    int64_t min;
    int64_t max;
    int64_t step;
    bool shapesFrame;  ///< locked during an acquisition
};

/// Fails with -1019 unless the settings fit together: the image is on the sensor, and the
/// camera has the pixel format.
void CheckSettings(const CameraSettings& settings, bool color);

/// Adapts size and offset of the image to the sensor after the binning has changed.
void FitToBinning(CameraSettings& settings, const CameraSettings& before);

/// In seconds.
double ExposureTime(const CameraSettings& settings);

/// The shortest time between two frames, in seconds. It depends on the number of lines
/// that are read and on the exposure time.
double ShortestFrameTime(const CameraSettings& settings);

/// The time between two frames in seconds, with the frame rate that is set.
double FrameTime(const CameraSettings& settings);

}  // namespace OvVirtual
