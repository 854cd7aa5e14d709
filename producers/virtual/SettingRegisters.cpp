#include "virtual/SettingRegisters.h"

#include "virtual/CameraEvents.h"
#include "virtual/Chunks.h"

namespace OvVirtual {
namespace {

using Settings = CameraSettings;

constexpr auto kTriggerSources = static_cast<int64_t>(TriggerSource::Count);
constexpr int64_t kPatterns = static_cast<int64_t>(TestPattern::Count);

constexpr SettingRegister kSettings[] = {
    {0x0310, {&Settings::width, 16, kFullWidth, 4, true}},
    {0x0314, {&Settings::height, 16, kFullHeight, 2, true}},
    {0x0318, {&Settings::offsetX, 0, kFullWidth, 4, false}},
    {0x031C, {&Settings::offsetY, 0, kFullHeight, 2, false}},
    {0x0328, {&Settings::binningModeX, 0, 1, 1, false}},
    {0x032C, {&Settings::binningModeY, 0, 1, 1, false}},
    {0x0330, {&Settings::reverseX, 0, 1, 1, false}},
    {0x0334, {&Settings::reverseY, 0, 1, 1, false}},
    {0x0338, {&Settings::pixelFormat, 0, 0xFFFFFFFF, 1, true}},
    {0x033C, {&Settings::testPattern, 0, kPatterns - 1, 1, false}},
    {0x0400, {&Settings::acquisitionMode, 0, 2, 1, true}},
    {0x0404, {&Settings::frameCount, 1, 65535, 1, true}},
    {0x0410, {&Settings::frameRateMode, 0, 1, 1, false}},
    {0x0414, {&Settings::frameRate, 100, 1000000, 1, false}},
    {0x0420, {&Settings::triggerMode, 0, 1, 1, false}},
    {0x0424, {&Settings::triggerSource, 0, kTriggerSources - 1, 1, false}},
    {0x0428, {&Settings::triggerActivation, 0, 1, 1, false}},
    {0x0430, {&Settings::exposure, 40, 2000000, 1, false}},
    {0x0500, {&Settings::gain, 0, 240, 1, false}},
    {0x0504, {&Settings::blackLevel, 0, 16320, 1, false}},
    {0x0514, {&Settings::gammaEnable, 0, 1, 1, false}},
    {0x0518, {&Settings::gamma, 10, 400, 1, false}},
    {0x0600, {&Settings::lutEnable, 0, 1, 1, false}},
    {0x0808, {&Settings::chunkMode, 0, 1, 1, true}},
    // Only odd numbers: the lowest bit is the image, which every frame has.
    {0x0814, {&Settings::chunksEnabled, 1, (1 << kChunks) - 1, 2, true}},
    {0x0A08, {&Settings::eventsEnabled, 0, (1 << kCameraEvents) - 1, 1, false}},
    {0x0A24, {&Settings::dropOffTime, 0, 3600000, 1, false}},
    {0x0A28, {&Settings::dropOffFrames, 0, 1000000, 1, false}},
};

constexpr SettingRegister kBinning[] = {
    {0x0320, {&Settings::binningX, 1, 4, 1, true}},
    {0x0324, {&Settings::binningY, 1, 4, 1, true}},
};

}  // namespace

std::span<const SettingRegister> SettingRegisters() {
    return kSettings;
}

std::span<const SettingRegister> BinningRegisters() {
    return kBinning;
}

}  // namespace OvVirtual
