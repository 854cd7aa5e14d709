#pragma once
/// The registers that hold one setting each.

#include <cstdint>
#include <span>

#include "virtual/CameraSettings.h"

namespace OvVirtual {

struct SettingRegister {
    uint64_t address;
    SettingRange range;
};

/// Those that stand for themselves.
std::span<const SettingRegister> SettingRegisters();

/// Those that fit size and offset to them when they are written.
std::span<const SettingRegister> BinningRegisters();

}  // namespace OvVirtual
