#include "virtual/SettingRegisters.h"

#include "virtual/CameraEvents.h"
#include "virtual/Chunks.h"

namespace OvVirtual {
namespace {

using S = CameraSettings;

constexpr std::int64_t kPatterns = static_cast<std::int64_t>(TestPattern::Count);

constexpr SettingRegister kSettings[] = {
    {0x0310, {&S::width, 16, kFullWidth, 4, true}},
    {0x0314, {&S::height, 16, kFullHeight, 2, true}},
    {0x0318, {&S::offsetX, 0, kFullWidth, 4, false}},
    {0x031C, {&S::offsetY, 0, kFullHeight, 2, false}},
    {0x0328, {&S::binningModeX, 0, 1, 1, false}},
    {0x032C, {&S::binningModeY, 0, 1, 1, false}},
    {0x0330, {&S::reverseX, 0, 1, 1, false}},
    {0x0334, {&S::reverseY, 0, 1, 1, false}},
    {0x0338, {&S::pixelFormat, 0, 0xFFFFFFFF, 1, true}},
    {0x033C, {&S::testPattern, 0, kPatterns - 1, 1, false}},
    {0x0400, {&S::acquisitionMode, 0, 2, 1, true}},
    {0x0404, {&S::frameCount, 1, 65535, 1, true}},
    {0x0410, {&S::frameRateMode, 0, 1, 1, false}},
    {0x0414, {&S::frameRate, 100, 1000000, 1, false}},
    {0x0420, {&S::triggerMode, 0, 1, 1, false}},
    {0x0424, {&S::triggerSource, 0, 1, 1, false}},
    {0x0428, {&S::triggerActivation, 0, 1, 1, false}},
    {0x0430, {&S::exposure, 40, 2000000, 1, false}},
    {0x0500, {&S::gain, 0, 240, 1, false}},
    {0x0504, {&S::blackLevel, 0, 16320, 1, false}},
    {0x0514, {&S::gammaEnable, 0, 1, 1, false}},
    {0x0518, {&S::gamma, 10, 400, 1, false}},
    {0x0600, {&S::lutEnable, 0, 1, 1, false}},
    {0x0808, {&S::chunkMode, 0, 1, 1, true}},
    // Odd numbers: the image is in every frame.
    {0x0814, {&S::chunksEnabled, 1, (1 << kChunks) - 1, 2, true}},
    {0x0A08, {&S::eventsEnabled, 0, (1 << kCameraEvents) - 1, 1, false}},
    {0x0A24, {&S::dropOffTime, 0, 3600000, 1, false}},
    {0x0A28, {&S::dropOffFrames, 0, 1000000, 1, false}},
};

constexpr SettingRegister kBinning[] = {
    {0x0320, {&S::binningX, 1, 4, 1, true}},
    {0x0324, {&S::binningY, 1, 4, 1, true}},
};

}  // namespace

std::span<const SettingRegister> SettingRegisters() {
    return kSettings;
}

std::span<const SettingRegister> BinningRegisters() {
    return kBinning;
}

}  // namespace OvVirtual
