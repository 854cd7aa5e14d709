#pragma once
/// The registers that have one setting each.

#include <cstdint>
#include <span>

#include "virtual/CameraSettings.h"

namespace OvVirtual {

struct SettingRegister {
    uint64_t address;
    SettingRange range;
};

/// Registers whose setting doesn't affect others.
std::span<const SettingRegister> SettingRegisters();

/// Registers whose writes adapt size and offset of the image.
std::span<const SettingRegister> BinningRegisters();

}  // namespace OvVirtual
