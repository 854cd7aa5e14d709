#pragma once
/// What chooses the meaning of other registers of a virtual camera.

#include <cstdint>
#include <span>

namespace OvVirtual {

/// Not of the user sets: a camera with power keeps them beside its settings.
struct CameraSelectors {
    int64_t temperature = 0;
    int64_t status = 0;
    int64_t balance = 0;
    int64_t lutIndex = 0;
    int64_t userSet = 0;
    int64_t chunk = 0;
    int64_t event = 0;
    int64_t file = 0;
    int64_t fileOperation = 0;
};

using SelectorField = int64_t CameraSelectors::*;

struct SelectorRegister {
    uint64_t address;
    SelectorField field;
    int64_t max;
};

std::span<const SelectorRegister> SelectorRegisters();

}  // namespace OvVirtual
