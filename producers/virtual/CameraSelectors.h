/// @file
/// What chooses the meaning of other registers of a virtual camera.
#ifndef OV_VIRTUAL_CAMERA_SELECTORS_H
#define OV_VIRTUAL_CAMERA_SELECTORS_H

#include <cstdint>
#include <span>

namespace OvVirtual {

/// Not of the user sets: a camera with power keeps them beside its settings.
struct CameraSelectors {
    std::int64_t temperature = 0;
    std::int64_t status = 0;
    std::int64_t balance = 0;
    std::int64_t lutIndex = 0;
    std::int64_t userSet = 0;
    std::int64_t chunk = 0;
    std::int64_t event = 0;
    std::int64_t file = 0;
    std::int64_t fileOperation = 0;
};

using SelectorField = std::int64_t CameraSelectors::*;

struct SelectorRegister {
    std::uint64_t address;
    SelectorField field;
    std::int64_t max;
};

std::span<const SelectorRegister> SelectorRegisters();

}  // namespace OvVirtual

#endif
